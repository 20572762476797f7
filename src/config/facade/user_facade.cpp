// The exported entries of the user configuration's sections: each follows the syntax version of
// the stored user document.
#include "zt4config/user.h"

#include "config/facade/connector_by_id.hpp"
#include "config/facade/dispatch.hpp"
#include "config/v0/user_sections_v0.hpp"
#include "config/v1/user_sections.hpp"

extern "C" {

json_t* readJSONZT4ConfigWeb(void) noexcept {
    return zt4::dispatch<readJSONZT4UserConfigWebSyntaxVersion0,
                         readJSONZT4UserConfigWebSyntaxVersion1>(__func__, zt4::ConfigDocument::User);
}

json_t* readJSONZT4ConfigRadio(void) noexcept {
    return zt4::dispatch<readJSONZT4UserConfigRadioLoRaSyntaxVersion0,
                         readJSONZT4UserConfigRadioLoRaSyntaxVersion1>(__func__, zt4::ConfigDocument::User);
}

json_t* readJSONZT4ConfigRadioWithDevEUI(void) noexcept {
    return zt4::dispatch<readJSONZT4UserConfigRadioLoRaWithDevEUISyntaxVersion0,
                         readJSONZT4UserConfigRadioLoRaWithDevEUISyntaxVersion1>(__func__, zt4::ConfigDocument::User);
}

json_t* readJSONZT4ConfigWiFi(void) noexcept {
    return zt4::dispatch<readJSONZT4UserConfigWiFiSyntaxVersion0,
                         readJSONZT4UserConfigWiFiSyntaxVersion1>(__func__, zt4::ConfigDocument::User);
}

json_t* readJSONZT4ConfigEthernet(void) noexcept {
    return zt4::dispatch<readJSONZT4UserConfigEthernetSyntaxVersion0,
                         readJSONZT4UserConfigEthernetSyntaxVersion1>(__func__, zt4::ConfigDocument::User);
}

json_t* readJSONZT4ConfigModbus(void) noexcept {
    return zt4::dispatch<readJSONZT4UserConfigModbusSyntaxVersion0,
                         readJSONZT4UserConfigModbusSyntaxVersion1>(__func__, zt4::ConfigDocument::User);
}

json_t* readJSONZT4ConfigBACnet(void) noexcept {
    return zt4::dispatch<readJSONZT4UserConfigBACnetSyntaxVersion0,
                         readJSONZT4UserConfigBACnetSyntaxVersion1>(__func__, zt4::ConfigDocument::User);
}

int writeJSONZT4ConfigWeb(json_t* json) noexcept {
    return zt4::dispatch<writeJSONZT4UserConfigWebSyntaxVersion0,
                         writeJSONZT4UserConfigWebSyntaxVersion1>(__func__, zt4::ConfigDocument::User, json);
}

int writeJSONZT4ConfigRadio(json_t* json) noexcept {
    return zt4::dispatch<writeJSONZT4UserConfigRadioLoRaSyntaxVersion0,
                         writeJSONZT4UserConfigRadioLoRaSyntaxVersion1>(__func__, zt4::ConfigDocument::User, json);
}

int writeJSONZT4ConfigWiFi(json_t* json) noexcept {
    return zt4::dispatch<writeJSONZT4UserConfigWiFiSyntaxVersion0,
                         writeJSONZT4UserConfigWiFiSyntaxVersion1>(__func__, zt4::ConfigDocument::User, json);
}

int writeJSONZT4ConfigEthernet(json_t* json) noexcept {
    return zt4::dispatch<writeJSONZT4UserConfigEthernetSyntaxVersion0,
                         writeJSONZT4UserConfigEthernetSyntaxVersion1>(__func__, zt4::ConfigDocument::User, json);
}

int writeJSONZT4ConfigModbus(json_t* json) noexcept {
    return zt4::dispatch<writeJSONZT4UserConfigModbusSyntaxVersion0,
                         writeJSONZT4UserConfigModbusSyntaxVersion1>(__func__, zt4::ConfigDocument::User, json);
}

int writeJSONZT4ConfigBACnet(json_t* json) noexcept {
    return zt4::dispatch<writeJSONZT4UserConfigBACnetSyntaxVersion0,
                         writeJSONZT4UserConfigBACnetSyntaxVersion1>(__func__, zt4::ConfigDocument::User, json);
}

json_t* readJSONZT4ConfigSetupConnectors(void) noexcept {
    return zt4::dispatch<readJSONZT4UserConfigSetupConnectorsSyntaxVersion0,
                         readJSONZT4UserConfigExpertNumberConnectorThreephaseSyntaxVersion1>(__func__, zt4::ConfigDocument::User);
}

int writeJSONZT4ConfigSetupConnectors(json_t* json) noexcept {
    return zt4::dispatch<writeJSONZT4UserConfigSetupConnectorsSyntaxVersion0,
                         writeJSONZT4UserConfigExpertNumberConnectorThreephaseSyntaxVersion1>(__func__, zt4::ConfigDocument::User,json);
}

json_t* readJSONZT4ConfigConnector(void) noexcept {
    return zt4::dispatch<readJSONZT4UserConfigConnectorsSyntaxVersion0,
                         readJSONZT4UserConfigConnectorsSyntaxVersion1>(__func__, zt4::ConfigDocument::User);
}

int writeJSONZT4ConfigConnector(json_t* json) noexcept {
    return zt4::dispatch<writeJSONZT4UserConfigConnectorsSyntaxVersion0,
                         writeJSONZT4UserConfigConnectorsSyntaxVersion1>(__func__, zt4::ConfigDocument::User, json);
}

int writeJSONZT4ConfigConnectorById(json_t* json, uint8_t id) noexcept {
    return zt4::dispatch<writeJSONZT4UserConfigConnectorByIdSyntaxVersion0,
                         writeJSONZT4UserConfigConnectorByIdSyntaxVersion1>(__func__, zt4::ConfigDocument::User, json, id);
}

json_t* readJSONZT4ConfigExpert(void) noexcept {
    return zt4::dispatch<readJSONZT4UserConfigExpertSyntaxVersion0,
                         readJSONZT4UserConfigExpertSyntaxVersion1>(__func__, zt4::ConfigDocument::User);
}

int writeJSONZT4ConfigExpert(json_t* json) noexcept {
    return zt4::dispatch<writeJSONZT4UserConfigExpertSyntaxVersion0,
                         writeJSONZT4UserConfigExpertSyntaxVersion1>(__func__, zt4::ConfigDocument::User, json);
}

json_t* readJSONZT4ConfigConnectorById(uint8_t id) noexcept {
    return zt4::connectorById(__func__, id, readJSONZT4ConfigConnector);
}

}  // extern "C"
