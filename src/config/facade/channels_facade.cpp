// The channels of a connector, routed on the user file's version.
#include "config/facade/dispatch.hpp"
#include "config/v0/channels_v0.hpp"
#include "config/v1/by_key.hpp"
#include "zt4config/config.h"

json_t* readJSONZT4Cnl(json_t* jsonConnector) noexcept {
    return zt4::dispatch<readJSONZT4ChannelsSyntaxVersion0, readJSONZT4ChannelsSyntaxVersion1>(
        __func__, zt4::ConfigDocument::User, jsonConnector);
}
