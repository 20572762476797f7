// Defaults and tests of section keys that come from the device itself: the radio's identifiers
// and the access point's SSID.
#pragma once

#include <jansson.h>

#include "config/descriptions/section.hpp"

namespace zt4::sections {

// The radio's application key / EUI as left by the radio daemon, or "" when the file is missing.
json_t* radioAppKeyDefault(const char* function);
json_t* radioAppEuiDefault(const char* function);
// The device's SSID, or "" after logging "Failed to get SSID".
json_t* wifiSsidDefault(const char* function);
// True when `text` is an identifier of the field's length and number of bytes.
bool euiTextValid(const char* text, const Field& field);

}  // namespace zt4::sections
