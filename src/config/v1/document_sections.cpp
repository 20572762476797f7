#include "config/v1/document_sections.hpp"

#include <cstring>

#include "config/sections/user_sections.hpp"
#include "zt4config/radio.h"

namespace zt4::v1 {
namespace {

using namespace zt4::sections;

constexpr long long kVersions[] = {0, 1};
constexpr Field kSyntaxFields[] = {integerOneOf("Version", 1, kVersions).labelled("Syntax Version")};

// An identifier in the radio's text format, with the field's length and number of bytes.
bool identifierValid(const char* text, const Field& field) {
    char copy[64];
    const std::size_t length = std::strlen(text);
    if (length >= sizeof copy) return false;
    std::memcpy(copy, text, length + 1);
    return checkEUIformat(copy, field.euiLength, field.euiGroups) == 0;
}

json_t* noDefault(const char*) { return json_string(""); }

constexpr const char* kBands[] = {"AS-923", "AU-915", "EU-868", "IN-865", "US-915"};
constexpr long long kFrameFormats[] = {1, 2, 3};

constexpr Field kRadioLoRaFields[] = {
    booleanField("Enable", 0),
    integerAtLeast("Period", 10, 10),
    integerOneOf("FrameFormat", 1, kFrameFormats),
    textPrefixOneOf("Band", "EU-868", kBands, 6),
    euiField("APPEUI", noDefault, ZT4_EUI_LENGTH, ZT4_EUI_GROUPS, identifierValid).nonEmptyText(),
    euiField("APPKEY", noDefault, ZT4_KEY_LENGTH, ZT4_KEY_GROUPS, identifierValid).optionalField(),
};

constexpr Field kWiFiFields[] = {
    booleanField("Enable", 1),
    textField("SSID", ""),
    nestedField("DHCP", kWiFiDhcp),
};

}  // namespace

const Section kSyntaxSection = objectSection(nullptr, "syntax", kSyntaxFields);
const Section kRadioLoRaDocument = objectSection(nullptr, "radio", kRadioLoRaFields);
const Section kWiFiDocument = objectSection(nullptr, "wifi", kWiFiFields);

const DocumentSection kDocumentSections[8] = {
    {"Syntax", 1, &kSyntaxSection},
    {"Web", 2, &kWeb},
    {"RadioLoRa", 3, &kRadioLoRaDocument},
    {"WiFi", 4, &kWiFiDocument},
    {"Ethernet", 5, &kEthernet},
    {"Modbus", 6, &kModbus},
    {"BACnet", 7, &kBACnet},
    {"ElectricalConfiguration", 8, &kElectricalConfiguration},
};

}  // namespace zt4::v1
