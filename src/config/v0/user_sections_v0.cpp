#include "config/v0/user_sections_v0.hpp"

#include "config/v0/policy.hpp"

namespace {

json_t* stored(const char* function, const char* key) {
    return zt4::v0::storedSection(function, zt4::ConfigDocument::User, {key});
}

}  // namespace

json_t* readJSONZT4UserConfigWebSyntaxVersion0() noexcept { return stored(__func__, "Web"); }
json_t* readJSONZT4UserConfigRadioLoRaSyntaxVersion0() noexcept { return stored(__func__, "RadioLoRa"); }
json_t* readJSONZT4UserConfigWiFiSyntaxVersion0() noexcept { return stored(__func__, "WiFi"); }
json_t* readJSONZT4UserConfigEthernetSyntaxVersion0() noexcept { return stored(__func__, "Ethernet"); }
json_t* readJSONZT4UserConfigModbusSyntaxVersion0() noexcept { return stored(__func__, "Modbus"); }
json_t* readJSONZT4UserConfigBACnetSyntaxVersion0() noexcept { return stored(__func__, "BACnet"); }
json_t* readJSONZT4UserConfigSetupConnectorsSyntaxVersion0() noexcept {
    return stored(__func__, "SetupConnectors");
}
json_t* readJSONZT4UserConfigConnectorsSyntaxVersion0() noexcept { return stored(__func__, "Connectors"); }
json_t* readJSONZT4UserConfigExpertSyntaxVersion0() noexcept { return stored(__func__, "Expert"); }

json_t* readJSONZT4UserConfigRadioLoRaWithDevEUISyntaxVersion0() noexcept {
    return zt4::v0::unsupported<json_t*>(__func__);
}

int writeJSONZT4UserConfigWebSyntaxVersion0(json_t*) noexcept { return zt4::v0::unsupported<int>(__func__); }
int writeJSONZT4UserConfigRadioLoRaSyntaxVersion0(json_t*) noexcept { return zt4::v0::unsupported<int>(__func__); }
int writeJSONZT4UserConfigWiFiSyntaxVersion0(json_t*) noexcept { return zt4::v0::unsupported<int>(__func__); }
int writeJSONZT4UserConfigEthernetSyntaxVersion0(json_t*) noexcept { return zt4::v0::unsupported<int>(__func__); }
int writeJSONZT4UserConfigModbusSyntaxVersion0(json_t*) noexcept { return zt4::v0::unsupported<int>(__func__); }
int writeJSONZT4UserConfigBACnetSyntaxVersion0(json_t*) noexcept { return zt4::v0::unsupported<int>(__func__); }
int writeJSONZT4UserConfigSetupConnectorsSyntaxVersion0(json_t*) noexcept { return zt4::v0::unsupported<int>(__func__); }
int writeJSONZT4UserConfigConnectorsSyntaxVersion0(json_t*) noexcept { return zt4::v0::unsupported<int>(__func__); }
int writeJSONZT4UserConfigConnectorByIdSyntaxVersion0(json_t*, std::uint8_t) noexcept {
    return zt4::v0::unsupported<int>(__func__);
}
int writeJSONZT4UserConfigExpertSyntaxVersion0(json_t*) noexcept { return zt4::v0::unsupported<int>(__func__); }
