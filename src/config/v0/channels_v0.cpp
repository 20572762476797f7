#include "config/v0/channels_v0.hpp"

#include "config/v0/policy.hpp"

json_t* readJSONZT4ChannelsSyntaxVersion0(json_t* jsonConnector) noexcept {
    return zt4::v0::memberUnchanged(__func__, jsonConnector, {"Channel"});
}
