// Readers and writers of the user configuration's sections, syntax version 1. Readers return a
// new reference (the stored section, or its defaults when the document lacks it) or null; writers
// borrow the new section and return 0 or -1.
#pragma once

#include <jansson.h>

#include <cstdint>

json_t* readJSONZT4UserConfigWebSyntaxVersion1() noexcept;
json_t* readJSONZT4UserConfigRadioLoRaSyntaxVersion1() noexcept;
json_t* readJSONZT4UserConfigRadioLoRaWithDevEUISyntaxVersion1() noexcept;
json_t* readJSONZT4UserConfigWiFiSyntaxVersion1() noexcept;
json_t* readJSONZT4UserConfigEthernetSyntaxVersion1() noexcept;
json_t* readJSONZT4UserConfigModbusSyntaxVersion1() noexcept;
json_t* readJSONZT4UserConfigBACnetSyntaxVersion1() noexcept;

int writeJSONZT4UserConfigWebSyntaxVersion1(json_t* section) noexcept;
int writeJSONZT4UserConfigRadioLoRaSyntaxVersion1(json_t* section) noexcept;
int writeJSONZT4UserConfigWiFiSyntaxVersion1(json_t* section) noexcept;
int writeJSONZT4UserConfigEthernetSyntaxVersion1(json_t* section) noexcept;
int writeJSONZT4UserConfigModbusSyntaxVersion1(json_t* section) noexcept;
int writeJSONZT4UserConfigBACnetSyntaxVersion1(json_t* section) noexcept;

json_t* readJSONZT4UserConfigElectricalConfigurationSyntaxVersion1() noexcept;
json_t* readJSONZT4UserConfigConnectorsSyntaxVersion1() noexcept;
json_t* readJSONZT4UserConfigExpertSyntaxVersion1() noexcept;
json_t* readJSONZT4UserConfigExpertConnectorsSyntaxVersion1() noexcept;
json_t* readJSONZT4UserConfigExpertNumberConnectorThreephaseSyntaxVersion1() noexcept;

int writeJSONZT4UserConfigConnectorsSyntaxVersion1(json_t* connectors) noexcept;
int writeJSONZT4UserConfigConnectorByIdSyntaxVersion1(json_t* connector, std::uint8_t id) noexcept;
int writeJSONZT4UserConfigVoltageTransformerSyntaxVersion1(json_t* section) noexcept;
int writeJSONZT4UserConfigExpertSyntaxVersion1(json_t* section) noexcept;
int writeJSONZT4UserConfigExpertNumberConnectorThreephaseSyntaxVersion1(json_t* setup) noexcept;
