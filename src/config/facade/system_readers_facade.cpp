// The system section readers of the facade: one line each, routed on the system file's version.
#include "config/facade/connector_by_id.hpp"
#include "config/facade/dispatch.hpp"
#include "zt4config/system.h"

using zt4::ConfigDocument;

json_t* readJSONZT4SystemDevice(void) noexcept {
    return zt4::dispatch<readJSONZT4SystemDeviceSyntaxVersion0, readJSONZT4SystemDeviceSyntaxVersion1>(
        __func__, ConfigDocument::System);
}

json_t* readJSONZT4SystemWeb(void) noexcept {
    return zt4::dispatch<readJSONZT4SystemWebSyntaxVersion0, readJSONZT4SystemWebSyntaxVersion1>(
        __func__, ConfigDocument::System);
}

json_t* readJSONZT4SystemRadio(void) noexcept {
    return zt4::dispatch<readJSONZT4SystemRadioLoRaSyntaxVersion0, readJSONZT4SystemRadioLoRaSyntaxVersion1>(
        __func__, ConfigDocument::System);
}

json_t* readJSONZT4SystemWiFi(void) noexcept {
    return zt4::dispatch<readJSONZT4SystemWiFiSyntaxVersion0, readJSONZT4SystemWiFiSyntaxVersion1>(
        __func__, ConfigDocument::System);
}

json_t* readJSONZT4SystemEthernet(void) noexcept {
    return zt4::dispatch<readJSONZT4SystemEthernetSyntaxVersion0, readJSONZT4SystemEthernetSyntaxVersion1>(
        __func__, ConfigDocument::System);
}

json_t* readJSONZT4SystemModbus(void) noexcept {
    return zt4::dispatch<readJSONZT4SystemModbusSyntaxVersion0, readJSONZT4SystemModbusSyntaxVersion1>(
        __func__, ConfigDocument::System);
}

json_t* readJSONZT4SystemBACnet(void) noexcept {
    return zt4::dispatch<readJSONZT4SystemBACnetSyntaxVersion0, readJSONZT4SystemBACnetSyntaxVersion1>(
        __func__, ConfigDocument::System);
}

json_t* readJSONZT4SystemConnector(void) noexcept {
    return zt4::dispatch<readJSONZT4SystemConnectorsSyntaxVersion0, readJSONZT4SystemConnectorsSyntaxVersion1>(
        __func__, ConfigDocument::System);
}

json_t* readJSONZT4SystemExpert(void) noexcept {
    return zt4::dispatch<readJSONZT4SystemExpertSyntaxVersion0, readJSONZT4SystemExpertSyntaxVersion1>(
        __func__, ConfigDocument::System);
}

json_t* readJSONZT4FactorySystemDevice(void) noexcept {
    return zt4::dispatch<readJSONZT4FactorySystemDeviceSyntaxVersion0,
                         readJSONZT4FactorySystemDeviceSyntaxVersion1>(__func__,
                                                                       ConfigDocument::FactorySystem);
}

json_t* readJSONZT4SystemConnectorById(uint8_t id) noexcept {
    return zt4::connectorById(__func__, id, readJSONZT4SystemConnector);
}
