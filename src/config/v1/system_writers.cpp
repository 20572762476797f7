// The section writers of the system configuration, syntax version 1. A section is checked on a
// copy (missing keys filled in); an invalid one is refused and logged but reported as success.
// How a checked section reaches the document depends on the section:
//   - a service section updates the stored one, so stored keys the caller leaves out survive;
//   - RadioLoRa replaces the stored section whole;
//   - Connectors and Expert update the stored "ElectricalConfiguration" by its existing keys only.
#include <string>

#include "common/api.hpp"
#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "common/path.hpp"
#include "config/v1/by_key.hpp"
#include "config/v1/system_checks.hpp"
#include "zt4config/config.h"
#include "zt4config/system.h"

using zt4::JsonRef;

namespace {

enum class Placement { UpdateStored, ReplaceStored, InElectrical };

struct SystemWriter {
    const char* key;           // member of the document (of "ElectricalConfiguration" for InElectrical)
    json_t* (*check)(json_t*, std::int8_t*);
    Placement placement;
    const char* outerNull;     // the wrapping object cannot be made
    const char* checkFailed;   // the check gave no result
    const char* invalid;       // the section breaks a rule
    const char* storedMissing; // UpdateStored: no stored section to update
};

constexpr SystemWriter kWeb = {"Web", checkJSONZT4SystemWebSyntaxVersion1, Placement::UpdateStored,
                               "jsonWeb NULL", "FAILED to check SystemWeb JSON object",
                               "INVALID Configuration Web", "FAILED to read web system"};
constexpr SystemWriter kWiFi = {"WiFi", checkJSONZT4SystemWiFiSyntaxVersion1, Placement::UpdateStored,
                                "jsonWiFi NULL", "FAILED to check SystemWiFi JSON object",
                                "INVALID Configuration WiFi", "FAILED to read WiFi system"};
constexpr SystemWriter kEthernet = {
    "Ethernet", checkJSONZT4SystemEthernetSyntaxVersion1, Placement::UpdateStored,
    "jsonEthernet NULL", "FAILED to check SystemEthernet JSON object",
    "INVALID Configuration Ethernet", "FAILED to read Ethernet system"};
constexpr SystemWriter kModbus = {
    "Modbus", checkJSONZT4SystemModbusSyntaxVersion1, Placement::UpdateStored, "jsonModbus NULL",
    "FAILED to check SystemModbus JSON object", "INVALID Configuration Modbus",
    "FAILED to read Modbus system"};
constexpr SystemWriter kBACnet = {
    "BACnet", checkJSONZT4SystemBACnetSyntaxVersion1, Placement::UpdateStored, "jsonBACnet NULL",
    "FAILED to check SystemBACnet JSON object", "INVALID Configuration BACnet",
    "FAILED to read BACnet system"};
constexpr SystemWriter kRadioLoRa = {
    "RadioLoRa", checkJSONZT4SystemRadioLoRaSyntaxVersion1, Placement::ReplaceStored,
    "jsonRadio NULL", "FAILED to check SystemRadioLoRa JSON object",
    "INVALID Configuration RadioLoRa", nullptr};
constexpr SystemWriter kConnectors = {
    "Connectors", checkJSONZT4SystemConnectorsSyntaxVersion1, Placement::InElectrical,
    "jsonConnectors NULL", "FAILED to check SystemConnector JSON object",
    "INVALID Configuration Connector", nullptr};
constexpr SystemWriter kExpert = {
    "Expert", checkJSONZT4SystemExpertSyntaxVersion1, Placement::InElectrical, "jsonExpert NULL",
    "FAILED to check Expert System JSON object", "INVALID Configuration Expert system", nullptr};

// The stored section updated with the checked one (existing keys, then new keys), or the checked
// one alone when nothing is stored: new reference.
json_t* updatedSection(const char* function, const SystemWriter& writer, json_t* checked) {
    JsonRef stored(readJSONZT4SystemByKeyObject(writer.key));
    if (!stored) {
        zt4::logError(function, "%s", writer.storedMissing);
        return json_incref(checked);
    }
    if (json_object_update_existing(stored.get(), checked) != 0) {
        zt4::logError(function, "FAILED to update system %s with existing keys", writer.key);
    }
    if (json_object_update_missing(stored.get(), checked) != 0) {
        zt4::logError(function, "FAILED to update system %s with new keys", writer.key);
    }
    return stored.release();
}

// {"ElectricalConfiguration": stored one with `wrapper`'s members updated where it has them}.
int writeInElectrical(const char* function, const SystemWriter& writer, json_t* wrapper) {
    JsonRef electrical(readJSONZT4SystemByKeyObject("ElectricalConfiguration"));
    if (!electrical) {
        zt4::logError(function, "system jsonEC NULL");
        return -1;
    }
    if (json_object_update_existing(electrical.get(), wrapper) != 0) {
        return zt4::guarded(function, -1, [&] {
            const std::string path = zt4::resolvePath("/home/nvram/zt4system.json");
            zt4::logError(function, "FAILED to update file '%s' with system %s key", path.c_str(), writer.key);
            return -1;
        });
    }
    JsonRef document(json_object());
    if (!document || json_object_set(document.get(), "ElectricalConfiguration", electrical.get()) != 0) {
        zt4::logError(function, "FAILED to create object system ElectricalConfiguration");
        return -1;
    }
    return updateJSONZT4SystemFile(document.get());
}

int writeSection(const char* function, const SystemWriter& writer, json_t* section) noexcept {
    if (section == nullptr) {
        zt4::logError(function, "json NULL");
        return -1;
    }
    JsonRef outer(json_object());
    if (!outer) {
        zt4::logError(function, "%s", writer.outerNull);
        return -1;
    }
    JsonRef copy(json_deep_copy(section));
    if (!copy) {
        zt4::logError(function, "jsonCopy NULL");
        return -1;
    }
    std::int8_t status = 0;
    JsonRef defaults(writer.check(copy.get(), &status));
    if (!defaults) {
        zt4::logError(function, "%s", writer.checkFailed);
        return -1;
    }
    if (status != 0) {
        // Refused, yet reported as success: callers treat a refused section as handled.
        zt4::logError(function, "%s", writer.invalid);
        return 0;
    }
    JsonRef placed(writer.placement == Placement::UpdateStored ? updatedSection(function, writer, copy.get())
                                                               : copy.release());
    if (json_object_set(outer.get(), writer.key, placed.get()) != 0) {
        zt4::logError(function, "%s", writer.outerNull);
        return -1;
    }
    if (writer.placement == Placement::InElectrical) return writeInElectrical(function, writer, outer.get());
    return updateJSONZT4SystemFile(outer.get());
}

}  // namespace

int writeJSONZT4SystemWebSyntaxVersion1(json_t* json) noexcept {
    return writeSection(__func__, kWeb, json);
}

int writeJSONZT4SystemRadioLoRaSyntaxVersion1(json_t* json) noexcept {
    return writeSection(__func__, kRadioLoRa, json);
}

int writeJSONZT4SystemWiFiSyntaxVersion1(json_t* json) noexcept {
    return writeSection(__func__, kWiFi, json);
}

int writeJSONZT4SystemEthernetSyntaxVersion1(json_t* json) noexcept {
    return writeSection(__func__, kEthernet, json);
}

int writeJSONZT4SystemModbusSyntaxVersion1(json_t* json) noexcept {
    return writeSection(__func__, kModbus, json);
}

int writeJSONZT4SystemBACnetSyntaxVersion1(json_t* json) noexcept {
    return writeSection(__func__, kBACnet, json);
}

int writeJSONZT4SystemConnectorsSyntaxVersion1(json_t* json) noexcept {
    return writeSection(__func__, kConnectors, json);
}

int writeJSONZT4SystemExpertSyntaxVersion1(json_t* json) noexcept {
    return writeSection(__func__, kExpert, json);
}
