// The section checks of the user configuration, syntax version 1.
//
// Each takes the section (object or array, borrowed; null asks for the defaults alone) and a
// status, and returns a new reference to the section's defaults (overlaid with the stored section
// for top-level sections), or null when no defaults can be built. The status is 0 when the input
// is valid and -1 otherwise (always -1 without input). Missing keys are inserted into the input.
#pragma once

#include <jansson.h>

#include <cstdint>

json_t* checkJSONZT4UserConfigWebSyntaxVersion1(json_t* section, std::int8_t* status) noexcept;
json_t* checkJSONZT4UserConfigRadioLoRaSyntaxVersion1(json_t* section, std::int8_t* status) noexcept;
json_t* checkJSONZT4UserConfigWiFiSyntaxVersion1(json_t* section, std::int8_t* status) noexcept;
json_t* checkJSONZT4UserConfigEthernetSyntaxVersion1(json_t* section, std::int8_t* status) noexcept;
json_t* checkJSONZT4UserConfigModbusSyntaxVersion1(json_t* section, std::int8_t* status) noexcept;
json_t* checkJSONZT4UserConfigBACnetSyntaxVersion1(json_t* section, std::int8_t* status) noexcept;

json_t* checkJSONZT4UserConfigElectricalConfigurationSyntaxVersion1(json_t* section, std::int8_t* status) noexcept;
json_t* checkJSONZT4UserConfigVoltageTransformerSyntaxVersion1(json_t* section, std::int8_t* status) noexcept;
json_t* checkJSONZT4UserConfigConnectorsSyntaxVersion1(json_t* connectors, std::int8_t* status) noexcept;
json_t* checkJSONZT4UserConfigConnectorSyntaxVersion1(json_t* connector, std::int8_t* status) noexcept;
json_t* checkJSONZT4UserConfigConnectorChannelCommonSyntaxVersion1(json_t* channel, std::int8_t* status) noexcept;
json_t* checkJSONZT4UserConfigConnectorChannel1PSyntaxVersion1(json_t* channel, std::int8_t* status) noexcept;
json_t* checkJSONZT4UserConfigConnectorChannel3PSyntaxVersion1(json_t* channel, std::int8_t* status) noexcept;
json_t* checkJSONZT4UserConfigExpertSyntaxVersion1(json_t* section, std::int8_t* status) noexcept;
json_t* checkJSONZT4UserConfigExpertSagSyntaxVersion1(json_t* sag, std::int8_t* status) noexcept;
json_t* checkJSONZT4UserConfigExpertSwellSyntaxVersion1(json_t* swell, std::int8_t* status) noexcept;
json_t* checkJSONZT4UserConfigExpertCurrentAverageMaxSyntaxVersion1(json_t* object, std::int8_t* status) noexcept;
json_t* checkJSONZT4UserConfigExpertOverCurrentSyntaxVersion1(json_t* object, std::int8_t* status) noexcept;
json_t* checkJSONZT4UserConfigExpertConnectorsSyntaxVersion1(json_t* connectors, std::int8_t* status) noexcept;
json_t* checkJSONZT4UserConfigExpertConnector3PSyntaxVersion1(json_t* connector, std::int8_t* status) noexcept;
json_t* checkJSONZT4UserConfigExpertConnectorChannelSyntaxVersion1(json_t* channel, std::int8_t* status) noexcept;
json_t* checkJSONZT4SystemExpertCircuitBreakerTripSyntaxVersion1(json_t* object, std::int8_t* status) noexcept;
