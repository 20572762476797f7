// Descriptions of the network sections of the user configuration.
#include "config/descriptions/user_descriptions.hpp"
#include "config/descriptions/device_defaults.hpp"
#include "config/v1/user_sections.hpp"

namespace zt4::sections {
namespace {

constexpr const char* kLanguages[] = {"fr", "en"};
constexpr const char* kInterfaces[] = {"TCP", "RTU"};
constexpr long long kBaudrates[] = {115200, 9600, 57600, 38400, 19200};
constexpr long long kParities[] = {0, 1, 2};
constexpr long long kModbusMappings[] = {2, 3};
constexpr long long kBACnetMappings[] = {1, 2};

constexpr const char* kBands[] = {"AS-923", "AU-915", "EU-868", "IN-865", "US-915"};
constexpr long long kFrameFormats[] = {1, 2, 3};

constexpr Field kWebFields[] = {
    textOneOf("Language", "fr", kLanguages, 7),
};

// Identifiers are empty (not yet known) or in the radio's text format: a key of 16 bytes (47
// characters), an EUI of 8 bytes (23 characters). Only the first 6 characters of a band count.
// A complete document names the application EUI and may leave the key out (or empty).
constexpr Field kAppKeyCompliance = euiField("APPKEY", radioAppKeyDefault, 47, 16, euiTextValid).optionalField();
constexpr Field kAppEuiCompliance = euiField("APPEUI", radioAppEuiDefault, 23, 8, euiTextValid).nonEmptyText();
constexpr Field kRadioLoRaFields[] = {
    booleanField("Enable", 0),
    integerAtLeast("Period", 10, 10),
    integerOneOf("FrameFormat", 1, kFrameFormats),
    textPrefixOneOf("Band", "EU-868", kBands, 6),
    euiField("APPKEY", radioAppKeyDefault, 47, 16, euiTextValid).compliesAs(kAppKeyCompliance),
    euiField("APPEUI", radioAppEuiDefault, 23, 8, euiTextValid).compliesAs(kAppEuiCompliance),
};

// Compliance reads the application EUI before the (optional) application key.
constexpr std::uint8_t kRadioLoRaComplianceOrder[] = {0, 1, 2, 3, 5, 4};

constexpr Field kWiFiFields[] = {
    booleanField("Enable", 1),
    provided(textField("SSID", ""), wifiSsidDefault),
    nestedField("DHCP", kWiFiDhcp),
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

const Section kWeb = storedSection(
    objectSection("checkJSONZT4UserConfigWebSyntaxVersion1", "web", kWebFields),
    readJSONZT4UserConfigWebSyntaxVersion1, "Web");
const Section kRadioLoRa = storedSection(
    compliedInOrder(objectSection("checkJSONZT4UserConfigRadioLoRaSyntaxVersion1", "radio",
                                  kRadioLoRaFields),
                    kRadioLoRaComplianceOrder),
    readJSONZT4UserConfigRadioLoRaSyntaxVersion1, "RadioLoRa");
const Section kWiFi = storedSection(
    objectSection("checkJSONZT4UserConfigWiFiSyntaxVersion1", "wifi", kWiFiFields),
    readJSONZT4UserConfigWiFiSyntaxVersion1, "WiFi");
// The DHCP object has no check of its own: its messages carry the WiFi check's name.
const Section kWiFiDhcp = objectSection(nullptr, "dhcp", kWiFiDhcpFields);
const Section kEthernet = storedSection(
    objectSection("checkJSONZT4UserConfigEthernetSyntaxVersion1", "ethernet", kEthernetFields),
    readJSONZT4UserConfigEthernetSyntaxVersion1, "Ethernet");
const Section kModbus = storedSection(
    objectSection("checkJSONZT4UserConfigModbusSyntaxVersion1", "modbus", kModbusFields),
    readJSONZT4UserConfigModbusSyntaxVersion1, "Modbus");
const Section kBACnet = storedSection(
    objectSection("checkJSONZT4UserConfigBACnetSyntaxVersion1", "bacnet", kBACnetFields),
    readJSONZT4UserConfigBACnetSyntaxVersion1, "BACnet");

}  // namespace zt4::sections
