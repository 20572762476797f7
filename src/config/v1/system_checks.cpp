// The section checks of the system configuration, syntax version 1. The service sections, the
// Expert object and its members are driven by their descriptions; RadioLoRa first insists on a
// stored radio section, and the connectors keep a stored connector's availability.
#include "config/v1/system_checks.hpp"

#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "config/descriptions/engine.hpp"
#include "config/descriptions/system_descriptions.hpp"
#include "config/v1/user_checks.hpp"
#include "zt4config/json.h"
#include "zt4config/system.h"

namespace sections = zt4::sections;
using zt4::JsonRef;

json_t* checkJSONZT4SystemWebSyntaxVersion1(json_t* section, std::int8_t* status) noexcept {
    return sections::check(sections::kSystemWeb, section, status);
}

// A radio section is only ever checked against the device's stored one: without a stored
// "RadioLoRa" holding "Enable" there are no defaults and the section is refused.
json_t* checkJSONZT4SystemRadioLoRaSyntaxVersion1(json_t* section, std::int8_t* status) noexcept {
    if (status != nullptr) *status = sections::kInvalid;
    JsonRef stored(readJSONZT4SystemRadioLoRaSyntaxVersion1());
    if (!stored) {
        zt4::logError(__func__, "FAILED to read system configuration RadioLoRa");
        return nullptr;
    }
    const json_t* storedEnable = json_object_get(stored.get(), "Enable");
    if (storedEnable == nullptr) {
        zt4::logError(__func__, "FAILED to read system configuration RadioLoRa parameter Enable");
        return nullptr;
    }
    JsonRef defaults(sections::check(sections::kSystemRadioLoRa, section, status));
    // The defaults offer the radio exactly when the device does.
    const auto enable = static_cast<std::uint8_t>(json_integer_value(storedEnable));
    if (defaults) json_object_set_new(defaults.get(), "Enable", json_integer(enable));
    return defaults.release();
}

json_t* checkJSONZT4SystemWiFiSyntaxVersion1(json_t* section, std::int8_t* status) noexcept {
    return sections::check(sections::kSystemWiFi, section, status);
}

json_t* checkJSONZT4SystemEthernetSyntaxVersion1(json_t* section, std::int8_t* status) noexcept {
    return sections::check(sections::kSystemEthernet, section, status);
}

json_t* checkJSONZT4SystemModbusSyntaxVersion1(json_t* section, std::int8_t* status) noexcept {
    return sections::check(sections::kSystemModbus, section, status);
}

json_t* checkJSONZT4SystemBACnetSyntaxVersion1(json_t* section, std::int8_t* status) noexcept {
    return sections::check(sections::kSystemBACnet, section, status);
}

namespace {

// The stored availability of connector `number`, or null after the message naming what is missing.
json_t* storedConnectorEnable(const char* function, unsigned number) {
    JsonRef stored(readJSONZT4SystemConnectorsSyntaxVersion1());
    if (!stored) {
        zt4::logError(function, "System Connectors NULL");
        return nullptr;
    }
    JsonRef connector(readJSONZT4ConnectorById(stored.get(), static_cast<uint8_t>(number)));
    if (!connector) {
        zt4::logError(function, "FAILED to read File JSON SystemConnector%u", number);
        return nullptr;
    }
    json_t* enable = json_object_get(connector.get(), "Enable");
    if (enable == nullptr) {
        zt4::logError(function, "FAILED to read File JSON SystemConnectorEnable%u", number);
        return nullptr;
    }
    return json_incref(enable);
}

}  // namespace

json_t* checkJSONZT4SystemConnectorsSyntaxVersion1(json_t* connectors, std::int8_t* status) noexcept {
    std::int8_t ignored = 0;
    if (status == nullptr) status = &ignored;
    JsonRef defaults(createJSONZT4SystemConnectorsSyntaxVersion1(6));
    if (!defaults) {
        zt4::logError(__func__, "Default System Connectors NULL");
        *status = sections::kInvalid;
        return nullptr;
    }
    *status = sections::kValid;
    if (connectors == nullptr) {
        *status = sections::kInvalid;
        return defaults.release();
    }
    if (!json_is_array(connectors)) {
        zt4::logError(__func__, "json NOT JSON_ARRAY");
        *status = sections::kInvalid;
        return defaults.release();
    }
    const sections::Field& enable = sections::kSystemConnector.fields[0];
    // Every entry is checked, however many there are; an entry past the sixth has no number and
    // fails to be read.
    const std::size_t size = json_array_size(connectors);
    for (std::size_t index = 0; index < size; ++index) {
        const unsigned number = static_cast<unsigned>(index + 1);
        JsonRef connector(readJSONZT4ConnectorById(connectors, number > 255 ? 0 : static_cast<uint8_t>(number)));
        if (!connector) {
            zt4::logError(__func__, "FAILED to read Object JSON SystemConnector%u", number);
            *status = sections::kInvalid;
            return defaults.release();
        }
        if (json_object_get(connector.get(), enable.key) == nullptr) {
            zt4::logError(__func__, "%s NULL", enable.key);
            JsonRef kept(storedConnectorEnable(__func__, number));
            if (!kept || json_object_set(connector.get(), enable.key, kept.get()) != 0) {
                *status = sections::kInvalid;
                return defaults.release();
            }
            json_array_set(connectors, index, connector.get());
        }
        *status = static_cast<std::int8_t>(*status | sections::checkField(enable, connector.get(), __func__));
    }
    return defaults.release();
}

json_t* checkJSONZT4SystemExpertSyntaxVersion1(json_t* expert, std::int8_t* status) noexcept {
    if (expert == nullptr) {
        // Callers ask for the defaults this way; the line says so, at the error level on purpose.
        zt4::logLine(LOG_ERR, "[%s]: return Default Expert Object", __func__);
    }
    return sections::check(sections::kSystemExpert, expert, status);
}

json_t* checkJSONZT4SystemExpertSagSyntaxVersion1(json_t* sag, std::int8_t* status) noexcept {
    return sections::check(sections::kSystemExpertSag, sag, status);
}

json_t* checkJSONZT4EnableSyntaxVersion1(json_t* member, std::int8_t* status) noexcept {
    return sections::check(sections::kSystemEnable, member, status);
}
