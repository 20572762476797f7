// Descriptions of the system configuration's sections. A key whose rule is an exact value is a
// fixed property of the device: any other value makes the section invalid.
#include "config/descriptions/system_descriptions.hpp"

#include "config/descriptions/user_descriptions.hpp"
#include "zt4config/system.h"

namespace zt4::sections {
namespace {

constexpr Field kWebFields[] = {
    integerAtLeast("Debug", 1, 0),
};

constexpr Field kRadioLoRaFields[] = {
    booleanField("Enable", 0),
    integerAtLeast("Debug", 2, 0),
    integerExactly("Baudrate", 9600),
    integerExactly("PayloadLength", 50),
    textExactly("Daemon", "radiod"),
    textExactly("Script", "/etc/scripts/radiod"),
};

constexpr Field kWiFiFields[] = {
    integerAtLeast("Debug", 0, 0),
    integerAtLeast("Lease", 86400, 0),
    textExactly("Interface", "wlan0"),
    textExactly("Daemon", "wifi"),
    textExactly("Script", "/etc/scripts/wifi"),
};

constexpr Field kEthernetFields[] = {
    booleanField("Enable", 1),
    integerExactly("DHCP", 0),
    textExactly("Interface", "br0"),
    textExactly("Daemon", "ethernet"),
    textExactly("Script", "/etc/scripts/ethernet"),
};

constexpr Field kModbusFields[] = {
    integerAtLeast("Debug", 1, 0),
    integerExactly("Port", 502),
    textExactly("Daemon", "modbustcpd"),
    textExactly("Script", "/etc/scripts/modbustcpd"),
};

constexpr Field kBACnetFields[] = {
    integerAtLeast("Debug", 1, 0),
    textExactly("Daemon", "bacnetd"),
    textExactly("Script", "/etc/scripts/bacnetd"),
};

constexpr Field kConnectorFields[] = {booleanField("Enable", 1)};

constexpr Field kEnableFields[] = {booleanField("Enable", 0)};

// The "Cycle" result replaces the "Enable" result: a sag with a wrong "Enable" but a correct
// "Cycle" passes. Devices in the field rely on it.
constexpr Field kSagFields[] = {
    booleanField("Enable", 0),
    integerExactly("Cycle", 1).assigningStatus(),
};

constexpr Field expertMember(const char* key, const Section& section, const char* checkLabel) {
    return nestedField(key, section).checkedAs(checkLabel);
}

constexpr Field kExpertFields[] = {
    expertMember("CircuitBreakerTrip", kExpertCircuitBreakerTrip, "System Expert CircuitBreakerTrip"),
    expertMember("Sag", kSystemExpertSag, "System Expert Sag"),
    expertMember("Swell", kSystemEnable, "System Expert Swell"),
    expertMember("OperatingTime", kSystemEnable, "System Expert OperatingTime"),
    expertMember("StartupCycle", kSystemEnable, "System Expert StartupCycle"),
    expertMember("CurrentImbalance", kSystemEnable, "System Expert CurrentImbalance"),
    expertMember("PowerImbalance", kSystemEnable, "System Expert PowerImbalance"),
    expertMember("VoltageImbalance", kSystemEnable, "System Expert VoltageImbalance"),
    expertMember("CurrentAverageMax", kSystemEnable, "System Expert CurrentAverageMax"),
    expertMember("THD", kSystemEnable, "System Expert THD"),
    expertMember("OverCurrent", kSystemEnable, "System Expert OverCurrent"),
};

}  // namespace

const Section kSystemWeb = storedSystemSection(
    objectSection("checkJSONZT4SystemWebSyntaxVersion1", "web", kWebFields),
    readJSONZT4SystemWebSyntaxVersion1, "Web");
const Section kSystemRadioLoRa = storedSystemSection(
    objectSection("checkJSONZT4SystemRadioLoRaSyntaxVersion1", "radio", kRadioLoRaFields),
    readJSONZT4SystemRadioLoRaSyntaxVersion1, "RadioLoRa");
const Section kSystemWiFi = storedSystemSection(
    objectSection("checkJSONZT4SystemWiFiSyntaxVersion1", "wifi", kWiFiFields),
    readJSONZT4SystemWiFiSyntaxVersion1, "WiFi");
const Section kSystemEthernet = storedSystemSection(
    objectSection("checkJSONZT4SystemEthernetSyntaxVersion1", "ethernet", kEthernetFields),
    readJSONZT4SystemEthernetSyntaxVersion1, "Ethernet");
const Section kSystemModbus = storedSystemSection(
    objectSection("checkJSONZT4SystemModbusSyntaxVersion1", "modbus", kModbusFields),
    readJSONZT4SystemModbusSyntaxVersion1, "Modbus");
const Section kSystemBACnet = storedSystemSection(
    objectSection("checkJSONZT4SystemBACnetSyntaxVersion1", "bacnet", kBACnetFields),
    readJSONZT4SystemBACnetSyntaxVersion1, "BACnet");
const Section kSystemConnector =
    objectSection("checkJSONZT4SystemConnectorsSyntaxVersion1", "connector", kConnectorFields);
const Section kSystemExpert = storedSystemSection(
    objectSection("checkJSONZT4SystemExpertSyntaxVersion1", "expert", kExpertFields),
    readJSONZT4SystemExpertSyntaxVersion1, "Expert");
const Section kSystemExpertSag =
    objectSection("checkJSONZT4SystemExpertSagSyntaxVersion1", "sag", kSagFields);
const Section kSystemEnable =
    objectSection("checkJSONZT4EnableSyntaxVersion1", "enable", kEnableFields);

}  // namespace zt4::sections
