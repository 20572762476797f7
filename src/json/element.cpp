// Connectors, channels and phases fetched out of their arrays by number.
#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "zt4config/json.h"

namespace {

// What differs between the three readers: the bound, the order of the first two tests and the
// words of the messages. The phase reader keeps the channel array's name ("Cnl") on purpose.
struct ElementKind {
    unsigned maximum;
    bool idBeforeArray;
    const char* arrayNull;      // null array
    const char* idInvalid;      // id out of range, with the id
    const char* arrayEmpty;     // empty array
    const char* notInArray;     // id past the end, with the id
    const char* elementNull;    // null element
    const char* notObject;      // element of another type, with the id
};

constexpr ElementKind kConnector = {6, true, "jsonConnectors NULL", "Connector id=%u INVALID",
                                    "size Array JSON Connect NULL",
                                    "Connector%u not in Array JSON Connect", "jsonConnector NULL",
                                    "Connector%u IS NOT Object JSON"};
constexpr ElementKind kChannel = {3, false, "jsonChannels NULL", "Channel id=%u INVALID",
                                  "size Array JSON Cnl NULL", "Channel%u not in Array JSON Cnl",
                                  "jsonChannel NULL", "Channel%u IS NOT Object JSON"};
constexpr ElementKind kPhase = {3, false, "jsonPhases NULL", "Phase id=%u INVALID",
                                "size Array JSON Cnl NULL", "Phase%u not in Array JSON Cnl",
                                "jsonPhase NULL", "Phase%u IS NOT Object JSON"};

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
json_t* elementById(const char* function, const ElementKind& kind, json_t* array, uint8_t id) {
    const unsigned number = id;
    const bool idValid = number >= 1 && number <= kind.maximum;
    if (kind.idBeforeArray && !idValid) {
        zt4::logError(function, kind.idInvalid, number);
        return nullptr;
    }
    if (array == nullptr) {
        zt4::logError(function, "%s", kind.arrayNull);
        return nullptr;
    }
    if (!idValid) {
        zt4::logError(function, kind.idInvalid, number);
        return nullptr;
    }
    const size_t size = json_array_size(array);
    if (size == 0) {
        zt4::logError(function, "%s", kind.arrayEmpty);
        return nullptr;
    }
    if (number - 1 >= size) {
        zt4::logError(function, kind.notInArray, number);
        return nullptr;
    }
    json_t* element = json_array_get(array, number - 1);
    if (element == nullptr) {
        zt4::logError(function, "%s", kind.elementNull);
        return nullptr;
    }
    zt4::JsonRef owned = zt4::JsonRef::borrow(element);
    if (!json_is_object(owned.get())) {
        zt4::logError(function, kind.notObject, number);
        return nullptr;
    }
    return owned.release();
}
#pragma GCC diagnostic pop

}  // namespace

json_t* readJSONZT4ConnectorById(json_t* jsonConnectors, uint8_t id) noexcept {
    return elementById(__func__, kConnector, jsonConnectors, id);
}

json_t* readJSONZT4ChannelById(json_t* jsonChannels, uint8_t id) noexcept {
    return elementById(__func__, kChannel, jsonChannels, id);
}

json_t* readJSONZT4PhaseById(json_t* jsonPhases, uint8_t id) noexcept {
    return elementById(__func__, kPhase, jsonPhases, id);
}
