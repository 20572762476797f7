#include "config/v1/section_defaults.hpp"

#include <cstring>
#include <iterator>

#include "config/v1/user_checks.hpp"

namespace zt4::v1 {
namespace {

// Each section's check, called with a null section, gives its defaults.
constexpr SectionDefaults kUserSections[] = {
    {"Web", checkJSONZT4UserConfigWebSyntaxVersion1},
    {"RadioLoRa", checkJSONZT4UserConfigRadioLoRaSyntaxVersion1},
    {"WiFi", checkJSONZT4UserConfigWiFiSyntaxVersion1},
    {"Ethernet", checkJSONZT4UserConfigEthernetSyntaxVersion1},
    {"Modbus", checkJSONZT4UserConfigModbusSyntaxVersion1},
    {"BACnet", checkJSONZT4UserConfigBACnetSyntaxVersion1},
    {"ElectricalConfiguration", checkJSONZT4UserConfigElectricalConfigurationSyntaxVersion1},
    {"VoltageTransformer", checkJSONZT4UserConfigVoltageTransformerSyntaxVersion1},
    {"Connectors", checkJSONZT4UserConfigConnectorsSyntaxVersion1},
};

// Members of the "Expert" section, same arrangement.
constexpr SectionDefaults kUserExpertSections[] = {
    {"Sag", checkJSONZT4UserConfigExpertSagSyntaxVersion1},
    {"Swell", checkJSONZT4UserConfigExpertSwellSyntaxVersion1},
    {"CurrentAverageMax", checkJSONZT4UserConfigExpertCurrentAverageMaxSyntaxVersion1},
    {"Connectors", checkJSONZT4UserConfigExpertConnectorsSyntaxVersion1},
};

template <size_t N>
const SectionDefaults* find(const SectionDefaults (&table)[N], const char* key) noexcept {
    if (key == nullptr) return nullptr;
    for (const SectionDefaults& entry : table) {
        if (std::strcmp(entry.key, key) == 0) return &entry;
    }
    return nullptr;
}

}  // namespace

const SectionDefaults* findUserSectionDefaults(const char* key) noexcept {
    return find(kUserSections, key);
}

const SectionDefaults* findUserExpertSectionDefaults(const char* key) noexcept {
    return find(kUserExpertSections, key);
}

json_t* sectionDefaults(const SectionDefaults* entry) noexcept {
    if (entry == nullptr || entry->check == nullptr) return nullptr;
    // Without a section the check reports -1 and returns the defaults: the status is not news.
    int8_t status = 0;
    return entry->check(nullptr, &status);
}

}  // namespace zt4::v1
