// The section checks of the system configuration, syntax version 1, used by its writers.
//
// Each takes the section (borrowed; null asks for the defaults alone) and a status, and returns
// a new reference to the section's defaults overlaid with the stored section, or null when they
// cannot be built. The status is 0 when the section is valid and -1 otherwise (always -1 without
// a section). Missing keys are logged and inserted into the section with their defaults.
#pragma once

#include <jansson.h>

#include <cstdint>

json_t* checkJSONZT4SystemWebSyntaxVersion1(json_t* section, std::int8_t* status) noexcept;
json_t* checkJSONZT4SystemRadioLoRaSyntaxVersion1(json_t* section, std::int8_t* status) noexcept;
json_t* checkJSONZT4SystemWiFiSyntaxVersion1(json_t* section, std::int8_t* status) noexcept;
json_t* checkJSONZT4SystemEthernetSyntaxVersion1(json_t* section, std::int8_t* status) noexcept;
json_t* checkJSONZT4SystemModbusSyntaxVersion1(json_t* section, std::int8_t* status) noexcept;
json_t* checkJSONZT4SystemBACnetSyntaxVersion1(json_t* section, std::int8_t* status) noexcept;
json_t* checkJSONZT4SystemConnectorsSyntaxVersion1(json_t* connectors, std::int8_t* status) noexcept;
json_t* checkJSONZT4SystemExpertSyntaxVersion1(json_t* expert, std::int8_t* status) noexcept;
json_t* checkJSONZT4SystemExpertSagSyntaxVersion1(json_t* sag, std::int8_t* status) noexcept;
json_t* checkJSONZT4EnableSyntaxVersion1(json_t* member, std::int8_t* status) noexcept;
