// The system creators and writers of the facade: one line each, routed on the system file's version.
#include "config/facade/dispatch.hpp"
#include "zt4config/system.h"

using zt4::ConfigDocument;
using zt4::dispatch;

json_t* createJSONZT4SystemEnable(uint8_t enable) noexcept {
    return dispatch<createJSONZT4SystemEnableSyntaxVersion0, createJSONZT4SystemEnableSyntaxVersion1>(
        __func__, ConfigDocument::System, enable);
}

json_t* createJSONZT4SystemRadio(uint8_t enable) noexcept {
    return dispatch<createJSONZT4SystemRadioLoRaSyntaxVersion0, createJSONZT4SystemRadioLoRaSyntaxVersion1>(
        __func__, ConfigDocument::System, enable);
}

json_t* createJSONZT4SystemConnector(uint8_t enable) noexcept {
    return dispatch<createJSONZT4SystemConnectorSyntaxVersion0, createJSONZT4SystemConnectorSyntaxVersion1>(
        __func__, ConfigDocument::System, enable);
}

json_t* createJSONZT4SystemConnectors(uint8_t count) noexcept {
    return dispatch<createJSONZT4SystemConnectorsSyntaxVersion0, createJSONZT4SystemConnectorsSyntaxVersion1>(
        __func__, ConfigDocument::System, count);
}

json_t* createJSONZT4SystemExpert(uint8_t enable) noexcept {
    return dispatch<createJSONZT4SystemExpertSyntaxVersion0, createJSONZT4SystemExpertSyntaxVersion1>(
        __func__, ConfigDocument::System, enable);
}

int writeJSONZT4SystemWeb(json_t* json) noexcept {
    return dispatch<writeJSONZT4SystemWebSyntaxVersion0, writeJSONZT4SystemWebSyntaxVersion1>(
        __func__, ConfigDocument::System, json);
}

int writeJSONZT4SystemRadio(json_t* json) noexcept {
    return dispatch<writeJSONZT4SystemRadioLoRaSyntaxVersion0, writeJSONZT4SystemRadioLoRaSyntaxVersion1>(
        __func__, ConfigDocument::System, json);
}

int writeJSONZT4SystemWiFi(json_t* json) noexcept {
    return dispatch<writeJSONZT4SystemWiFiSyntaxVersion0, writeJSONZT4SystemWiFiSyntaxVersion1>(
        __func__, ConfigDocument::System, json);
}

int writeJSONZT4SystemEthernet(json_t* json) noexcept {
    return dispatch<writeJSONZT4SystemEthernetSyntaxVersion0, writeJSONZT4SystemEthernetSyntaxVersion1>(
        __func__, ConfigDocument::System, json);
}

int writeJSONZT4SystemModbus(json_t* json) noexcept {
    return dispatch<writeJSONZT4SystemModbusSyntaxVersion0, writeJSONZT4SystemModbusSyntaxVersion1>(
        __func__, ConfigDocument::System, json);
}

int writeJSONZT4SystemBACnet(json_t* json) noexcept {
    return dispatch<writeJSONZT4SystemBACnetSyntaxVersion0, writeJSONZT4SystemBACnetSyntaxVersion1>(
        __func__, ConfigDocument::System, json);
}

int writeJSONZT4SystemConnector(json_t* json) noexcept {
    return dispatch<writeJSONZT4SystemConnectorsSyntaxVersion0, writeJSONZT4SystemConnectorsSyntaxVersion1>(
        __func__, ConfigDocument::System, json);
}

int writeJSONZT4SystemExpert(json_t* json) noexcept {
    return dispatch<writeJSONZT4SystemExpertSyntaxVersion0, writeJSONZT4SystemExpertSyntaxVersion1>(
        __func__, ConfigDocument::System, json);
}
