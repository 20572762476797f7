// The exported entries of the upgrade, the targeted updates and the record readers: each follows
// the syntax version of its document (the upgrade, the factory user document's).
#include "config/facade/dispatch.hpp"
#include "zt4config/record_readers.h"
#include "zt4config/upgrade.h"

using zt4::ConfigDocument;

int upgradeJSONZT4ConfigFile(void) noexcept {
    return zt4::dispatch<upgradeJSONZT4UserConfigFileSyntaxVersion0,
                         upgradeJSONZT4UserConfigFileSyntaxVersion1>(__func__, ConfigDocument::FactoryUser);
}

int updateJSONZT4ConfigRadioTransmitMode(uint8_t mode) noexcept {
    return zt4::dispatch<updateJSONZT4UserConfigRadioLoRaTransmitModeSyntaxVersion0,
                         updateJSONZT4UserConfigRadioLoRaFrameFormatSyntaxVersion1>(__func__, ConfigDocument::User, mode);
}

int updateJSONZT4ConfigSetupConnectors(uint8_t count) noexcept {
    return zt4::dispatch<updateJSONZT4UserConfigSetupConnectorsSyntaxVersion0,
                         updateJSONZT4UserConfigExpertNumberConnectorThreephaseSyntaxVersion1>(__func__, ConfigDocument::User, count);
}

int updateZT4ConfigEthernet(json_t* json) noexcept {
    return zt4::dispatch<updateZT4UserConfigEthernetSyntaxVersion0,
                         updateZT4UserConfigEthernetSyntaxVersion1>(__func__, ConfigDocument::User, json);
}

int updateZT4ConfigWiFi(json_t* json) noexcept {
    return zt4::dispatch<updateZT4UserConfigWiFiSyntaxVersion0,
                         updateZT4UserConfigWiFiSyntaxVersion1>(__func__, ConfigDocument::User, json);
}

int readZT4SystemConnector(ConnectorConfig* connectors) noexcept {
    return zt4::dispatch<readZT4SystemConnectorsSyntaxVersion0,
                         readZT4SystemConnectorsSyntaxVersion1>(__func__, ConfigDocument::System, connectors);
}

int readZT4SystemExpert(zt4Data* data) noexcept {
    return zt4::dispatch<readZT4SystemExpertSyntaxVersion0,
                         readZT4SystemExpertSyntaxVersion1>(__func__, ConfigDocument::System, data);
}

int readZT4ConfigConnector(zt4Data* data) noexcept {
    return zt4::dispatch<readZT4ConfigConnectorsSyntaxVersion0,
                         readZT4ConfigConnectorsSyntaxVersion1>(__func__, ConfigDocument::User, data);
}

int readZT4ConfigExpert(zt4Data* data) noexcept {
    return zt4::dispatch<readZT4ConfigExpertSyntaxVersion0,
                         readZT4ConfigExpertSyntaxVersion1>(__func__, ConfigDocument::User, data);
}
