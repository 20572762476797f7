// Descriptions of the network sections of the user configuration.
#include "config/sections/user_sections.hpp"

namespace zt4::sections {
namespace {

constexpr const char* kLanguages[] = {"fr", "en"};
constexpr const char* kInterfaces[] = {"TCP", "RTU"};
constexpr long long kBaudrates[] = {115200, 9600, 57600, 38400, 19200};
constexpr long long kParities[] = {0, 1, 2};
constexpr long long kModbusMappings[] = {2, 3};
constexpr long long kBACnetMappings[] = {1, 2};

constexpr Field kWebFields[] = {
    textOneOf("Language", "fr", kLanguages, 7),
};

constexpr Field kWiFiDhcpFields[] = {
    ipv4Field("AddressIP", "10.42.0.1"),
    ipv4Field("Netmask", "255.255.255.0"),
    ipv4Field("DHCPRangeStartIP", "10.42.0.100"),
    ipv4Field("DHCPRangeEndIP", "10.42.0.120"),
};

// A complete document may leave the name server empty.
constexpr Field kDnsCompliance = ipv4OrEmpty("Dns", "");

constexpr Field kEthernetFields[] = {
    addressingField("IPv4Addressing", "Static"),
    ipv4Field("AddressIP", "192.168.1.66"),
    ipv4Field("Netmask", "255.255.255.0"),
    ipv4Field("GW", "192.168.1.1"),
    ipv4Field("Dns", "8.8.8.8").compliesAs(kDnsCompliance),
};

constexpr Field kModbusFields[] = {
    booleanField("Enable", 0),
    integerOneOf("MappingVersion", 3, kModbusMappings),
    textOneOf("Interface", "TCP", kInterfaces, 7),
    integerOneOf("RTUBaudrate", 115200, kBaudrates),
    integerOneOf("Parity", 1, kParities).labelled("RTU Parity"),
    integerAtLeast("SlaveID", 1, 1),
};

constexpr Field kBACnetFields[] = {
    booleanField("Enable", 0),
    integerOneOf("MappingVersion", 1, kBACnetMappings),
    integerAtLeast("DeviceID", 1, 1),
    integerBetween("Port", 47808, 1024, 65535),
    textField("DeviceName", "Kelvane"),
    textField("DeviceLocation", "Paris"),
};

}  // namespace

const Section kWeb = objectSection("checkJSONZT4UserConfigWebSyntaxVersion1", "web", kWebFields);
// The DHCP object has no check of its own: its messages carry the WiFi check's name.
const Section kWiFiDhcp = objectSection(nullptr, "dhcp", kWiFiDhcpFields);
const Section kEthernet =
    objectSection("checkJSONZT4UserConfigEthernetSyntaxVersion1", "ethernet", kEthernetFields);
const Section kModbus =
    objectSection("checkJSONZT4UserConfigModbusSyntaxVersion1", "modbus", kModbusFields);
const Section kBACnet =
    objectSection("checkJSONZT4UserConfigBACnetSyntaxVersion1", "bacnet", kBACnetFields);

}  // namespace zt4::sections
