// The channels of the connectors, read without naming a connector: the "Channel" array of every
// connector, in connector order, so that a caller gets all of them in one read.
#include <jansson.h>

#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "config/v1/by_key.hpp"
#include "config/v1/user_sections.hpp"

namespace {

// An array holding the "Channel" array of each connector that `readConnectors` returns (the
// stored connectors, or their defaults): a new reference, or null after a message.
json_t* channelsOfEveryConnector(const char* function, json_t* (*readConnectors)() noexcept) {
    zt4::JsonRef connectors(readConnectors());
    if (!connectors || !json_is_array(connectors.get())) {
        zt4::logError(function, "jsonConnectors NULL");
        return nullptr;
    }
    zt4::JsonRef all(json_array());
    if (!all) {
        zt4::logError(function, "jsonChannels NULL");
        return nullptr;
    }
    size_t index = 0;
    json_t* connector = nullptr;
    json_array_foreach(connectors.get(), index, connector) {
        zt4::JsonRef channels(readJSONZT4ChannelsSyntaxVersion1(connector));
        if (!channels || json_array_append(all.get(), channels.get()) != 0) {
            zt4::logError(function, "FAILED to read Object JSON Cnl of Connector%u",
                          static_cast<unsigned>(index + 1));
            return nullptr;
        }
    }
    return all.release();
}

}  // namespace

json_t* readJSONZT4UserConfigConnectorChannelsSyntaxVersion1() noexcept {
    return channelsOfEveryConnector(__func__, readJSONZT4UserConfigConnectorsSyntaxVersion1);
}

json_t* readJSONZT4UserConfigExpertConnectorChannelsSyntaxVersion1() noexcept {
    return channelsOfEveryConnector(__func__, readJSONZT4UserConfigExpertConnectorsSyntaxVersion1);
}
