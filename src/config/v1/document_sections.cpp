#include "config/v1/document_sections.hpp"

#include "config/descriptions/user_descriptions.hpp"

namespace zt4::v1 {
namespace {

using namespace zt4::sections;

constexpr long long kVersions[] = {0, 1};
constexpr Field kSyntaxFields[] = {integerOneOf("Version", 1, kVersions).labelled("Syntax Version")};

}  // namespace

const Section kSyntaxSection = objectSection(nullptr, "syntax", kSyntaxFields);

const DocumentSection kDocumentSections[8] = {
    {"Syntax", 1, &kSyntaxSection},
    {"Web", 2, &kWeb},
    {"RadioLoRa", 3, &kRadioLoRa},
    {"WiFi", 4, &kWiFi},
    {"Ethernet", 5, &kEthernet},
    {"Modbus", 6, &kModbus},
    {"BACnet", 7, &kBACnet},
    {"ElectricalConfiguration", 8, &kElectricalConfiguration},
};

}  // namespace zt4::v1
