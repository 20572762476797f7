// Syntax version 0 of the system section readers: the stored sections, unchanged.
#include "config/v0/policy.hpp"
#include "zt4config/system.h"

using zt4::ConfigDocument;

json_t* readJSONZT4SystemDeviceSyntaxVersion0(void) noexcept {
    return zt4::v0::storedSection(__func__, ConfigDocument::System, {"Device"});
}

json_t* readJSONZT4SystemWebSyntaxVersion0(void) noexcept {
    return zt4::v0::storedSection(__func__, ConfigDocument::System, {"Web"});
}

json_t* readJSONZT4SystemRadioLoRaSyntaxVersion0(void) noexcept {
    return zt4::v0::storedSection(__func__, ConfigDocument::System, {"RadioLoRa"});
}

json_t* readJSONZT4SystemWiFiSyntaxVersion0(void) noexcept {
    return zt4::v0::storedSection(__func__, ConfigDocument::System, {"WiFi"});
}

json_t* readJSONZT4SystemEthernetSyntaxVersion0(void) noexcept {
    return zt4::v0::storedSection(__func__, ConfigDocument::System, {"Ethernet"});
}

json_t* readJSONZT4SystemModbusSyntaxVersion0(void) noexcept {
    return zt4::v0::storedSection(__func__, ConfigDocument::System, {"Modbus"});
}

json_t* readJSONZT4SystemBACnetSyntaxVersion0(void) noexcept {
    return zt4::v0::storedSection(__func__, ConfigDocument::System, {"BACnet"});
}

json_t* readJSONZT4SystemConnectorsSyntaxVersion0(void) noexcept {
    return zt4::v0::storedSection(__func__, ConfigDocument::System, {"ElectricalConfiguration", "Connectors"});
}

json_t* readJSONZT4SystemExpertSyntaxVersion0(void) noexcept {
    return zt4::v0::storedSection(__func__, ConfigDocument::System, {"ElectricalConfiguration", "Expert"});
}

json_t* readJSONZT4FactorySystemDeviceSyntaxVersion0(void) noexcept {
    return zt4::v0::storedSection(__func__, ConfigDocument::FactorySystem, {"Device"});
}
