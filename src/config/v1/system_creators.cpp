// The creators of default system sections, syntax version 1: the sections' defaults from their
// descriptions, with the availability the caller asks for.
#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "config/descriptions/engine.hpp"
#include "config/descriptions/system_descriptions.hpp"
#include "zt4config/system.h"

namespace sections = zt4::sections;
using zt4::JsonRef;

namespace {

// The defaults of `section` with "Enable" set to `enable` in it and in each of its object members
// that hold one: new reference, or null after "<what> NULL".
json_t* defaultsEnabled(const char* function, const sections::Section& section, uint8_t enable,
                        const char* what) {
    JsonRef object(sections::buildDefaults(section, function));
    if (!object) {
        zt4::logError(function, "%s NULL", what);
        return nullptr;
    }
    const char* key = nullptr;
    json_t* member = nullptr;
    json_object_foreach(object.get(), key, member) {
        if (json_is_object(member) && json_object_get(member, "Enable") != nullptr) {
            json_object_set_new(member, "Enable", json_integer(enable));
        }
    }
    if (json_object_get(object.get(), "Enable") != nullptr) {
        json_object_set_new(object.get(), "Enable", json_integer(enable));
    }
    return object.release();
}

}  // namespace

json_t* createJSONZT4SystemEnableSyntaxVersion1(uint8_t enable) noexcept {
    return defaultsEnabled(__func__, sections::kSystemEnable, enable, "obj");
}

json_t* createJSONZT4SystemSagEnableSyntaxVersion1(uint8_t enable) noexcept {
    return defaultsEnabled(__func__, sections::kSystemExpertSag, enable, "obj");
}

json_t* createJSONZT4SystemExpertSyntaxVersion1(uint8_t enable) noexcept {
    return defaultsEnabled(__func__, sections::kSystemExpert, enable, "expert");
}

json_t* createJSONZT4SystemConnectorSyntaxVersion1(uint8_t enable) noexcept {
    return defaultsEnabled(__func__, sections::kSystemConnector, enable, "connector");
}

json_t* createJSONZT4SystemConnectorsSyntaxVersion1(uint8_t count) noexcept {
    JsonRef connectors(json_array());
    for (unsigned number = 1; connectors && number <= 6; ++number) {
        json_t* connector = createJSONZT4SystemConnectorSyntaxVersion1(number <= count ? 1 : 0);
        if (connector == nullptr) return nullptr;
        if (json_array_append_new(connectors.get(), connector) != 0) break;
    }
    if (!connectors || json_array_size(connectors.get()) != 6) {
        zt4::logError(__func__, "connector NULL");
        return nullptr;
    }
    return connectors.release();
}

// The radio section as created lists the service's identity before its settings.
json_t* createJSONZT4SystemRadioLoRaSyntaxVersion1(uint8_t enable) noexcept {
    JsonRef defaults(defaultsEnabled(__func__, sections::kSystemRadioLoRa, enable, "radio"));
    JsonRef radio(json_object());
    if (!defaults || !radio) {
        if (defaults) zt4::logError(__func__, "radio NULL");
        return nullptr;
    }
    for (const char* key : {"Enable", "Daemon", "Script"}) {
        json_object_set(radio.get(), key, json_object_get(defaults.get(), key));
    }
    if (json_object_update_missing(radio.get(), defaults.get()) != 0) {
        zt4::logError(__func__, "radio NULL");
        return nullptr;
    }
    return radio.release();
}
