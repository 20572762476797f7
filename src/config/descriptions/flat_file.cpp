// The flat parameter file's view of the configuration sections.
//
// The read-back fields are those of the user sections' descriptions, in their order, with a
// nested object's fields in its place (the WiFi "DHCP" addresses) and the same defaults, except
// where the flat file keeps defaults of its own (kFlatDefaults below).
#include "config/descriptions/flat_file.hpp"

#include <cstring>
#include <iterator>

#include "config/descriptions/user_descriptions.hpp"
#include "zt4config/model.h"

namespace zt4::flat {
namespace {

constexpr Renamed kRadioRenamed[] = {{"FrameFormat", "TransmitMode"}};
constexpr Renamed kModbusRenamed[] = {{"MappingVersion", "Version"}, {"SlaveID", "ID"}};
constexpr Renamed kBACnetRenamed[] = {{"MappingVersion", "Version"}};
constexpr Renamed kDhcpMembers[] = {{"AddressIP", "AddressIP"},
                                    {"Netmask", "Netmask"},
                                    {"DHCPRangeStartIP", "StartIP"},
                                    {"DHCPRangeEndIP", "EndIP"}};

constexpr Flattened kNothingFlattened = {nullptr, nullptr, 0};

// A default of the flat file that differs from the section's description (or that the
// description takes from the device, where the flat file has a fixed one).
struct FlatDefault {
    const char* section;
    const char* key;
    std::int32_t integer;
    const char* text;  // null: an integer default
};
constexpr FlatDefault kFlatDefaults[] = {
    {"RadioLoRa", "APPEUI", 0, "00:11:22:33:44:55:66:77"},
    {"Modbus", "MappingVersion", 2, nullptr},
};

struct ReadBackSource {
    const char* section;
    const sections::Section* description;
};
const ReadBackSource kReadBackSources[] = {
    {"Web", &sections::kWeb},           {"RadioLoRa", &sections::kRadioLoRa},
    {"WiFi", &sections::kWiFi},         {"Ethernet", &sections::kEthernet},
    {"Modbus", &sections::kModbus},     {"BACnet", &sections::kBACnet},
};
constexpr std::size_t kSourceCount = std::size(kReadBackSources);
constexpr std::size_t kMostFields = 8;

void copyText(char* target, std::size_t size, const char* text) {
    std::strncpy(target, text != nullptr ? text : "", size - 1);
    target[size - 1] = '\0';
}

const FlatDefault* flatDefault(const char* section, const char* key) {
    for (const FlatDefault& row : kFlatDefaults) {
        if (std::strcmp(row.section, section) == 0 && std::strcmp(row.key, key) == 0) return &row;
    }
    return nullptr;
}

// Appends the scalar fields of `description` (a nested object's fields in its place).
std::size_t appendFields(const char* section, const sections::Section& description,
                         zt4FlatField* fields, std::size_t count) {
    for (std::size_t i = 0; i < description.fieldCount; ++i) {
        const sections::Field& field = description.fields[i];
        if (field.complianceOnly) continue;
        if (field.defaultKind == sections::DefaultKind::Nested) {
            if (field.nested != nullptr && !field.nested->isArray()) {
                count = appendFields(section, *field.nested, fields, count);
            }
            continue;
        }
        if (count == kMostFields) break;
        zt4FlatField& flat = fields[count++];
        flat = zt4FlatField{};
        copyText(flat.name, sizeof flat.name, field.key);
        switch (field.defaultKind) {
            case sections::DefaultKind::Integer:
                flat.type = ZT4_FLAT_INTEGER;
                flat.defaultInteger = static_cast<std::int32_t>(field.defaultInteger);
                break;
            case sections::DefaultKind::Real:
                flat.type = ZT4_FLAT_REAL;
                flat.defaultReal = static_cast<float>(field.defaultReal);
                break;
            default:  // texts, and the values read from the device, which start empty here
                flat.type = ZT4_FLAT_STRING;
                copyText(flat.defaultString, sizeof flat.defaultString,
                         field.defaultKind == sections::DefaultKind::Text ? field.defaultText : "");
                break;
        }
        if (const FlatDefault* own = flatDefault(section, field.key)) {
            if (own->text != nullptr) {
                copyText(flat.defaultString, sizeof flat.defaultString, own->text);
            } else {
                flat.defaultInteger = own->integer;
            }
        }
    }
    return count;
}

struct ReadBackTables {
    zt4FlatField fields[kSourceCount][kMostFields];
    ReadBackTable tables[kSourceCount];

    ReadBackTables() : fields{}, tables{} {
        for (std::size_t s = 0; s < kSourceCount; ++s) {
            const ReadBackSource& source = kReadBackSources[s];
            const std::size_t count = appendFields(source.section, *source.description, fields[s], 0);
            tables[s] = ReadBackTable{source.section, fields[s], count};
        }
    }
};

}  // namespace

const SectionPrefix kSectionPrefixes[5] = {
    {"RadioLoRa", "Radio", kRadioRenamed, std::size(kRadioRenamed), kNothingFlattened},
    {"WiFi", "DHCPD", nullptr, 0, {"DHCP", kDhcpMembers, std::size(kDhcpMembers)}},
    {"Ethernet", "Static", nullptr, 0, kNothingFlattened},
    {"Modbus", "Modbus", kModbusRenamed, std::size(kModbusRenamed), kNothingFlattened},
    {"BACnet", "BACnet", kBACnetRenamed, std::size(kBACnetRenamed), kNothingFlattened},
};

const SectionPrefix* userSectionPrefix(const char* section) noexcept {
    for (const SectionPrefix& row : kSectionPrefixes) {
        if (std::strncmp(section, row.section, std::strlen(row.section)) == 0) return &row;
    }
    return nullptr;
}

const SectionPrefix* systemSectionPrefix(const char* section) noexcept {
    for (const SectionPrefix& row : kSectionPrefixes) {
        if (std::strcmp(section, row.section) == 0) return &row;
    }
    return nullptr;
}

const ReadBackTable* readBackTable(const char* section) noexcept {
    static const ReadBackTables built;
    for (const ReadBackTable& table : built.tables) {
        if (std::strcmp(table.section, section) == 0) return &table;
    }
    return nullptr;
}

const ConnectorLine kConnectorLines[8] = {
    {"Mode", ZT4_FLAT_INTEGER, ConnectorTarget::ConnectorMode, nullptr, isModeValid, nullptr, nullptr},
    {"Plier", ZT4_FLAT_INTEGER, ConnectorTarget::ConnectorModel, nullptr, isPlierValid, nullptr, nullptr},
    {"Enable", ZT4_FLAT_INTEGER, ConnectorTarget::ChannelMember, "Enable", nullptr, isEnableValid, nullptr},
    {"Name", ZT4_FLAT_STRING, ConnectorTarget::ChannelMember, "Name", nullptr, nullptr, nullptr},
    {"Phase", ZT4_FLAT_INTEGER, ConnectorTarget::ChannelMember, "Phase", isPhaseValid, nullptr, nullptr},
    {"Dir", ZT4_FLAT_INTEGER, ConnectorTarget::ChannelDirection, nullptr, nullptr, isDirectionValid, nullptr},
    {"xGeneral", ZT4_FLAT_REAL, ConnectorTarget::ChannelMember, "GeneralFactor", nullptr, nullptr, isXGeneralValid},
    {"CTPrimary", ZT4_FLAT_INTEGER, ConnectorTarget::ChannelPrimary, nullptr, nullptr, isXValid, nullptr},
};

}  // namespace zt4::flat
