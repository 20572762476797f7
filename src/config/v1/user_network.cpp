// The network sections of the user configuration, syntax version 1: checks, readers, writers.
#include "config/descriptions/engine.hpp"
#include "config/descriptions/user_descriptions.hpp"
#include "config/v1/by_key.hpp"
#include "config/v1/user_checks.hpp"
#include "config/v1/user_section_writer.hpp"
#include "config/v1/user_sections.hpp"
#include "zt4config/config.h"

namespace sections = zt4::sections;
using zt4::v1::renameKey;
using zt4::v1::SectionWriter;
using zt4::v1::writeSection;

// ---- Checks -----------------------------------------------------------------------------------

json_t* checkJSONZT4UserConfigWebSyntaxVersion1(json_t* section, std::int8_t* status) noexcept {
    return sections::check(sections::kWeb, section, status);
}

json_t* checkJSONZT4UserConfigEthernetSyntaxVersion1(json_t* section, std::int8_t* status) noexcept {
    return sections::check(sections::kEthernet, section, status);
}

json_t* checkJSONZT4UserConfigModbusSyntaxVersion1(json_t* section, std::int8_t* status) noexcept {
    return sections::check(sections::kModbus, section, status);
}

json_t* checkJSONZT4UserConfigBACnetSyntaxVersion1(json_t* section, std::int8_t* status) noexcept {
    return sections::check(sections::kBACnet, section, status);
}

// ---- Readers ----------------------------------------------------------------------------------

json_t* readJSONZT4UserConfigWebSyntaxVersion1() noexcept {
    return readJSONZT4UserConfigByKeyObject("Web");
}

json_t* readJSONZT4UserConfigEthernetSyntaxVersion1() noexcept {
    return readJSONZT4UserConfigByKeyObject("Ethernet");
}

json_t* readJSONZT4UserConfigModbusSyntaxVersion1() noexcept {
    return readJSONZT4UserConfigByKeyObject("Modbus");
}

json_t* readJSONZT4UserConfigBACnetSyntaxVersion1() noexcept {
    return readJSONZT4UserConfigByKeyObject("BACnet");
}

// ---- Writers ----------------------------------------------------------------------------------

namespace {

json_t* modbusCopy(const json_t* input, const char*) {
    json_t* copy = json_deep_copy(input);
    renameKey(copy, "Version", "MappingVersion");
    renameKey(copy, "ID", "SlaveID");
    return copy;
}

json_t* bacnetCopy(const json_t* input, const char*) {
    json_t* copy = json_deep_copy(input);
    renameKey(copy, "Version", "MappingVersion");
    return copy;
}

constexpr SectionWriter kWebWriter = {
    "Web", "jsonWeb", "ConfigWeb", "Web", "web config",
    checkJSONZT4UserConfigWebSyntaxVersion1, readJSONZT4UserConfigWebSyntaxVersion1, nullptr, nullptr};
constexpr SectionWriter kEthernetWriter = {
    "Ethernet", "jsonEthernet", "ConfigEthernet", "Ethernet", "Ethernet config",
    checkJSONZT4UserConfigEthernetSyntaxVersion1, readJSONZT4UserConfigEthernetSyntaxVersion1,
    nullptr, nullptr};
constexpr SectionWriter kModbusWriter = {
    "Modbus", "jsonModbus", "ConfigModbus", "Modbus", "Modbus config",
    checkJSONZT4UserConfigModbusSyntaxVersion1, readJSONZT4UserConfigModbusSyntaxVersion1,
    modbusCopy, nullptr};
constexpr SectionWriter kBACnetWriter = {
    "BACnet", "jsonBACnet", "ConfigBACnet", "BACnet", "BACnet config",
    checkJSONZT4UserConfigBACnetSyntaxVersion1, readJSONZT4UserConfigBACnetSyntaxVersion1,
    bacnetCopy, nullptr};

}  // namespace

int writeJSONZT4UserConfigWebSyntaxVersion1(json_t* section) noexcept {
    return writeSection(kWebWriter, section, __func__);
}

int writeJSONZT4UserConfigEthernetSyntaxVersion1(json_t* section) noexcept {
    return writeSection(kEthernetWriter, section, __func__);
}

int writeJSONZT4UserConfigModbusSyntaxVersion1(json_t* section) noexcept {
    return writeSection(kModbusWriter, section, __func__);
}

int writeJSONZT4UserConfigBACnetSyntaxVersion1(json_t* section) noexcept {
    return writeSection(kBACnetWriter, section, __func__);
}
