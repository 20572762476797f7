#include "config/v1/section_defaults.hpp"

#include <cstring>
#include <iterator>

namespace zt4::v1 {
namespace {

// Each section plugs its check in here (the check's own function, called with a null section).
// Until it does, a missing section reads as null, after the reader's message.
constexpr SectionDefaults kUserSections[] = {
    {"Web", nullptr},
    {"RadioLoRa", nullptr},
    {"WiFi", nullptr},
    {"Ethernet", nullptr},
    {"Modbus", nullptr},
    {"BACnet", nullptr},
    {"ElectricalConfiguration", nullptr},
    {"VoltageTransformer", nullptr},
    {"Connectors", nullptr},
};

// Members of the "Expert" section, same arrangement.
constexpr SectionDefaults kUserExpertSections[] = {
    {"Sag", nullptr},
    {"Swell", nullptr},
    {"CurrentAverageMax", nullptr},
    {"Connectors", nullptr},
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
