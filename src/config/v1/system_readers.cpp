// Syntax version 1 of the system section readers: each reads the system file afresh.
#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "config/v1/by_key.hpp"
#include "zt4config/system.h"

json_t* readJSONZT4SystemDeviceSyntaxVersion1(void) noexcept {
    return readJSONZT4SystemByKeyObject("Device");
}

json_t* readJSONZT4SystemWebSyntaxVersion1(void) noexcept {
    return readJSONZT4SystemByKeyObject("Web");
}

json_t* readJSONZT4SystemRadioLoRaSyntaxVersion1(void) noexcept {
    return readJSONZT4SystemByKeyObject("RadioLoRa");
}

json_t* readJSONZT4SystemWiFiSyntaxVersion1(void) noexcept {
    return readJSONZT4SystemByKeyObject("WiFi");
}

json_t* readJSONZT4SystemEthernetSyntaxVersion1(void) noexcept {
    return readJSONZT4SystemByKeyObject("Ethernet");
}

json_t* readJSONZT4SystemModbusSyntaxVersion1(void) noexcept {
    return readJSONZT4SystemByKeyObject("Modbus");
}

json_t* readJSONZT4SystemBACnetSyntaxVersion1(void) noexcept {
    return readJSONZT4SystemByKeyObject("BACnet");
}

namespace {

// A member of the stored "ElectricalConfiguration" section.
json_t* electricalMember(const char* function, const char* key, const char* missing) noexcept {
    zt4::JsonRef electrical(readJSONZT4SystemByKeyObject("ElectricalConfiguration"));
    if (!electrical) {
        zt4::logError(function, "jsonElectricalConfiguration NULL");
        return nullptr;
    }
    json_t* member = readJSONZT4ByKeyObject(electrical.get(), key);
    if (member == nullptr) zt4::logError(function, "%s", missing);
    return member;
}

}  // namespace

json_t* readJSONZT4SystemConnectorsSyntaxVersion1(void) noexcept {
    return electricalMember(__func__, "Connectors", "FAILED to read System Object Connectors");
}

json_t* readJSONZT4SystemExpertSyntaxVersion1(void) noexcept {
    return electricalMember(__func__, "Expert", "FAILED to read System Object Expert");
}

json_t* readJSONZT4FactorySystemDeviceSyntaxVersion1(void) noexcept {
    return readJSONZT4FactorySystemByKeyObject("Device");
}
