// Syntax version 0 of the upgrade, the targeted updates and the record readers: refused.
#include <cstdint>

#include "config/v0/policy.hpp"
#include "zt4config/record_readers.h"
#include "zt4config/upgrade.h"

int upgradeJSONZT4UserConfigFileSyntaxVersion0(void) noexcept { return zt4::v0::unsupported<int>(__func__); }
int updateJSONZT4UserConfigRadioLoRaTransmitModeSyntaxVersion0(std::uint8_t) noexcept {
    return zt4::v0::unsupported<int>(__func__);
}
int updateJSONZT4UserConfigSetupConnectorsSyntaxVersion0(std::uint8_t) noexcept {
    return zt4::v0::unsupported<int>(__func__);
}
int updateZT4UserConfigEthernetSyntaxVersion0(json_t*) noexcept { return zt4::v0::unsupported<int>(__func__); }
int updateZT4UserConfigWiFiSyntaxVersion0(json_t*) noexcept { return zt4::v0::unsupported<int>(__func__); }

int readZT4SystemConnectorsSyntaxVersion0(ConnectorConfig*) noexcept { return zt4::v0::unsupported<int>(__func__); }
int readZT4SystemExpertSyntaxVersion0(zt4Data*) noexcept { return zt4::v0::unsupported<int>(__func__); }
int readZT4ConfigConnectorsSyntaxVersion0(zt4Data*) noexcept { return zt4::v0::unsupported<int>(__func__); }
int readZT4ConfigExpertSyntaxVersion0(zt4Data*) noexcept { return zt4::v0::unsupported<int>(__func__); }
