// Sections of a user configuration in syntax version 0. Readers hand back the stored section as
// it is; everything that would have to reshape an older section is refused.
#pragma once

#include <jansson.h>

#include <cstdint>

json_t* readJSONZT4UserConfigWebSyntaxVersion0() noexcept;
json_t* readJSONZT4UserConfigRadioLoRaSyntaxVersion0() noexcept;
json_t* readJSONZT4UserConfigRadioLoRaWithDevEUISyntaxVersion0() noexcept;
json_t* readJSONZT4UserConfigWiFiSyntaxVersion0() noexcept;
json_t* readJSONZT4UserConfigEthernetSyntaxVersion0() noexcept;
json_t* readJSONZT4UserConfigModbusSyntaxVersion0() noexcept;
json_t* readJSONZT4UserConfigBACnetSyntaxVersion0() noexcept;
json_t* readJSONZT4UserConfigSetupConnectorsSyntaxVersion0() noexcept;
json_t* readJSONZT4UserConfigConnectorsSyntaxVersion0() noexcept;
json_t* readJSONZT4UserConfigExpertSyntaxVersion0() noexcept;

int writeJSONZT4UserConfigWebSyntaxVersion0(json_t* section) noexcept;
int writeJSONZT4UserConfigRadioLoRaSyntaxVersion0(json_t* section) noexcept;
int writeJSONZT4UserConfigWiFiSyntaxVersion0(json_t* section) noexcept;
int writeJSONZT4UserConfigEthernetSyntaxVersion0(json_t* section) noexcept;
int writeJSONZT4UserConfigModbusSyntaxVersion0(json_t* section) noexcept;
int writeJSONZT4UserConfigBACnetSyntaxVersion0(json_t* section) noexcept;
int writeJSONZT4UserConfigSetupConnectorsSyntaxVersion0(json_t* setup) noexcept;
int writeJSONZT4UserConfigConnectorsSyntaxVersion0(json_t* connectors) noexcept;
int writeJSONZT4UserConfigConnectorByIdSyntaxVersion0(json_t* connector, std::uint8_t id) noexcept;
int writeJSONZT4UserConfigExpertSyntaxVersion0(json_t* section) noexcept;
