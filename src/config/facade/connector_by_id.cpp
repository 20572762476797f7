#include "config/facade/connector_by_id.hpp"

#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "zt4config/json.h"

namespace zt4 {

json_t* connectorById(const char* function, uint8_t id, json_t* (*readConnectors)()) noexcept {
    const unsigned number = id;
    if (number == 0 || number > 6) {
        logError(function, "Connector id=%u INVALID", number);
        return nullptr;
    }
    JsonRef connectors(readConnectors());
    if (!connectors) {
        logError(function, "jsonConnectors NULL");
        return nullptr;
    }
    json_t* connector = readJSONZT4ConnectorById(connectors.get(), id);
    // The number in this message counts from 0, unlike every other: kept as the devices log it.
    if (connector == nullptr) logError(function, "FAILED to read Object Connector%u", number - 1);
    return connector;
}

}  // namespace zt4
