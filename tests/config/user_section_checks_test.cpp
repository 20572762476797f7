// The section checks against section values: repairs, rules in order, combined status.
#include <syslog.h>

#include <cstdint>
#include <string>
#include <vector>

#include "config/v1/user_checks.hpp"
#include "support/harness.hpp"

namespace {

using SectionCheck = json_t* (*)(json_t*, std::int8_t*);

struct SectionCase {
    const char* name;
    SectionCheck check;
    const char* checkName;
    const char* input;
    int status;
    std::vector<std::string> lines;  // every error line of the check and the typed checks, in order
    const char* repaired;            // the input after the check ("" when not compared)
};

}  // namespace

// Error lines logged by the section checks and the typed checks they delegate to.
std::vector<std::string> checkLines() {
    std::vector<std::string> lines;
    for (const auto& entry : zt4test::capturedLog()) {
        if (entry.priority != LOG_ERR) continue;
        // The checks' lines, those of the typed checks and of the phase reader they call.
        if (entry.text.rfind("error.[check", 0) == 0 || entry.text.rfind("error.[json_check_", 0) == 0 ||
            entry.text.rfind("error.[readJSONZT4PhaseById]", 0) == 0) {
            lines.push_back(entry.text);
        }
    }
    return lines;
}

namespace {

class SectionCheckTest : public zt4test::DeviceTest,
                         public ::testing::WithParamInterface<SectionCase> {
protected:
    // The checks compare with the stored section: give them a document to read.
    void SetUp() override {
        DeviceTest::SetUp();
        writeFile("/home/nvram/zt4config.json", R"({"Syntax": {"Version": 1}})");
        writeFile("/var/tmp/radioappkey", "");
        writeFile("/var/tmp/radioappeui", "");
        writeFile("/home/nvram/hostapd.conf", "ssid=ZT4-0042\n");
    }
};

TEST_P(SectionCheckTest, StatusLinesAndRepairs) {
    const SectionCase& c = GetParam();
    json_t* input = zt4test::parse(c.input);
    std::int8_t status = 7;
    json_t* defaults = c.check(input, &status);
    ASSERT_NE(defaults, nullptr);
    EXPECT_EQ(status, c.status);
    EXPECT_EQ(checkLines(), c.lines) << zt4test::logDump();
    if (*c.repaired) {
        json_t* expected = zt4test::parse(c.repaired);
        EXPECT_EQ(zt4test::compact(input), zt4test::compact(expected));
        json_decref(expected);
    }
    json_decref(defaults);
    json_decref(input);
}

std::string caseName(const ::testing::TestParamInfo<SectionCase>& info) { return info.param.name; }

#define WEB checkJSONZT4UserConfigWebSyntaxVersion1, "checkJSONZT4UserConfigWebSyntaxVersion1"
#define ETHERNET checkJSONZT4UserConfigEthernetSyntaxVersion1, "checkJSONZT4UserConfigEthernetSyntaxVersion1"
#define MODBUS checkJSONZT4UserConfigModbusSyntaxVersion1, "checkJSONZT4UserConfigModbusSyntaxVersion1"
#define BACNET checkJSONZT4UserConfigBACnetSyntaxVersion1, "checkJSONZT4UserConfigBACnetSyntaxVersion1"
#define RADIO checkJSONZT4UserConfigRadioLoRaSyntaxVersion1, "checkJSONZT4UserConfigRadioLoRaSyntaxVersion1"
#define WIFI checkJSONZT4UserConfigWiFiSyntaxVersion1, "checkJSONZT4UserConfigWiFiSyntaxVersion1"
#define RADIO_LINE "error.[checkJSONZT4UserConfigRadioLoRaSyntaxVersion1]: "
#define WIFI_LINE "error.[checkJSONZT4UserConfigWiFiSyntaxVersion1]: "
#define RADIO_OK R"("Enable": 1, "Period": 10, "FrameFormat": 3)"
#define KEY16 "00:11:22:33:44:55:66:77:88:99:AA:BB:CC:DD:EE:FF"
#define DHCP_OK R"("DHCP": {"AddressIP": "10.42.0.1", "Netmask": "255.255.255.0", "DHCPRangeStartIP": "10.42.0.100", "DHCPRangeEndIP": "10.42.0.120"})"

INSTANTIATE_TEST_SUITE_P(Network, SectionCheckTest, ::testing::Values(
    SectionCase{"WebEnglish", WEB, R"({"Language": "en"})", 0, {}, ""},
    SectionCase{"WebGerman", WEB, R"({"Language": "de"})", -1,
                {"error.[checkJSONZT4UserConfigWebSyntaxVersion1]: Language value INVALID (de)"}, ""},
    // Seven characters are compared: "fr" followed by more text is not "fr".
    SectionCase{"WebLongText", WEB, R"({"Language": "french"})", -1,
                {"error.[checkJSONZT4UserConfigWebSyntaxVersion1]: Language value INVALID (french)"}, ""},
    SectionCase{"WebNumber", WEB, R"({"Language": 1})", -1,
                {"error.[checkJSONZT4UserConfigWebSyntaxVersion1]: Language NOT JSON_STRING"}, ""},
    SectionCase{"WebRepaired", WEB, R"({"Other": 1})", 0,
                {"error.[checkJSONZT4UserConfigWebSyntaxVersion1]: Language NULL"},
                R"({"Other": 1, "Language": "fr"})"},
    SectionCase{"EthernetDhcpPrefix", ETHERNET,
                R"({"IPv4Addressing": "DHCP client", "AddressIP": "1.2.3.4", "Netmask": "255.0.0.0",
                    "GW": "1.2.3.1", "Dns": "1.1.1.1"})", 0, {}, ""},
    SectionCase{"EthernetEveryKeyBad", ETHERNET,
                R"({"IPv4Addressing": "Auto", "AddressIP": "1.2.3", "Netmask": 255,
                    "GW": "1.2.3.1.", "Dns": ""})", -1,
                {"error.[json_check_ipv4_addressing]: IPv4Addressing value Auto INVALID",
                 "error.[json_check_ipv4]: AddressIP value INVALID",
                 "error.[json_check_ipv4]: Netmask NOT JSON_STRING",
                 "error.[json_check_ipv4]: GW value INVALID",
                 "error.[json_check_ipv4]: Dns value INVALID"}, ""},
    SectionCase{"ModbusEmptyRepaired", MODBUS, "{}", 0,
                {"error.[checkJSONZT4UserConfigModbusSyntaxVersion1]: Enable NULL",
                 "error.[checkJSONZT4UserConfigModbusSyntaxVersion1]: MappingVersion NULL",
                 "error.[checkJSONZT4UserConfigModbusSyntaxVersion1]: Interface NULL",
                 "error.[checkJSONZT4UserConfigModbusSyntaxVersion1]: RTUBaudrate NULL",
                 "error.[checkJSONZT4UserConfigModbusSyntaxVersion1]: RTU Parity NULL",
                 "error.[checkJSONZT4UserConfigModbusSyntaxVersion1]: SlaveID NULL"},
                R"({"Enable": 0, "MappingVersion": 3, "Interface": "TCP", "RTUBaudrate": 115200,
                    "Parity": 1, "SlaveID": 1})"},
    SectionCase{"ModbusRtu", MODBUS,
                R"({"Enable": 1, "MappingVersion": 2, "Interface": "RTU", "RTUBaudrate": 19200,
                    "Parity": 2, "SlaveID": 247})", 0, {}, ""},
    SectionCase{"ModbusEveryKeyBad", MODBUS,
                R"({"Enable": true, "MappingVersion": 4, "Interface": "UDP", "RTUBaudrate": 4800,
                    "Parity": 3, "SlaveID": 0})", -1,
                {"error.[json_check_boolean]: Enable NOT JSON_INTEGER",
                 "error.[checkJSONZT4UserConfigModbusSyntaxVersion1]: MappingVersion value INVALID (4)",
                 "error.[checkJSONZT4UserConfigModbusSyntaxVersion1]: Interface value INVALID (UDP)",
                 "error.[checkJSONZT4UserConfigModbusSyntaxVersion1]: RTUBaudrate value INVALID (4800)",
                 "error.[checkJSONZT4UserConfigModbusSyntaxVersion1]: RTU Parity value INVALID (3)",
                 "error.[json_check_integer_superior]: SlaveID value INVALID (0)"}, ""},
    SectionCase{"ModbusParityType", MODBUS,
                R"({"Enable": 0, "MappingVersion": "3", "Interface": "TCP", "RTUBaudrate": 9600,
                    "Parity": 1.0, "SlaveID": 1})", -1,
                {"error.[checkJSONZT4UserConfigModbusSyntaxVersion1]: MappingVersion NOT JSON_INTEGER",
                 "error.[checkJSONZT4UserConfigModbusSyntaxVersion1]: RTU Parity NOT JSON_INTEGER"}, ""},
    SectionCase{"BACnetBounds", BACNET,
                R"({"Enable": 1, "MappingVersion": 2, "DeviceID": 1, "Port": 65535,
                    "DeviceName": "", "DeviceLocation": "Lyon"})", 0, {}, ""},
    SectionCase{"BACnetEveryKeyBad", BACNET,
                R"({"Enable": 2, "MappingVersion": 3, "DeviceID": 0, "Port": 1023,
                    "DeviceName": 5, "DeviceLocation": null})", -1,
                {"error.[json_check_boolean]: Enable value INVALID (2)",
                 "error.[checkJSONZT4UserConfigBACnetSyntaxVersion1]: MappingVersion value INVALID (3)",
                 "error.[json_check_integer_superior]: DeviceID value INVALID (0)",
                 "error.[json_check_integer_range]: Port value INVALID (1023)",
                 "error.[checkJSONZT4UserConfigBACnetSyntaxVersion1]: DeviceName NOT JSON_STRING",
                 "error.[checkJSONZT4UserConfigBACnetSyntaxVersion1]: DeviceLocation NOT JSON_STRING"},
                ""},
    SectionCase{"RadioValid", RADIO,
                "{" RADIO_OK R"(, "Band": "US-915", "APPKEY": ")" KEY16 R"(", "APPEUI": "70:B3:D5:7E:D0:01:23:45"})",
                0, {}, ""},
    // The band is compared on its first six characters only.
    SectionCase{"RadioBandSuffix", RADIO, "{" RADIO_OK R"(, "Band": "EU-868-x", "APPKEY": "", "APPEUI": ""})",
                0, {}, ""},
    SectionCase{"RadioEveryKeyBad", RADIO,
                R"({"Enable": true, "Period": 9, "FrameFormat": 4, "Band": "EU868",
                    "APPKEY": "00:11", "APPEUI": "70:B3:D5:7E:D0:01:23"})", -1,
                {"error.[json_check_boolean]: Enable NOT JSON_INTEGER",
                 "error.[json_check_integer_superior]: Period value INVALID (9)",
                 RADIO_LINE "FrameFormat value INVALID (4)",
                 RADIO_LINE "Band value EU868 INVALID",
                 "error.[checkEUIformat].43 size wrong 5 '00:11' (exp. 47) bytes",
                 RADIO_LINE "APPKEY value INVALID",
                 "error.[checkEUIformat].43 size wrong 20 '70:B3:D5:7E:D0:01:23' (exp. 23) bytes",
                 RADIO_LINE "APPEUI value INVALID"}, ""},
    SectionCase{"RadioTypes", RADIO,
                R"({"Enable": 1, "Period": 10, "FrameFormat": "1", "Band": 868, "APPKEY": null, "APPEUI": ""})", -1,
                {RADIO_LINE "FrameFormat NOT JSON_INTEGER", RADIO_LINE "Band NOT JSON_STRING",
                 RADIO_LINE "APPKEY NOT JSON_STRING"}, ""},
    SectionCase{"WiFiValid", WIFI, R"({"Enable": 0, "SSID": "meter", )" DHCP_OK "}", 0, {}, ""},
    SectionCase{"WiFiDhcpKeyRepaired", WIFI, R"({"Enable": 1, "SSID": "m", "DHCP": {"AddressIP": "10.0.0.1"}})", 0,
                {WIFI_LINE "Netmask NULL", WIFI_LINE "DHCPRangeStartIP NULL", WIFI_LINE "DHCPRangeEndIP NULL"},
                R"({"Enable": 1, "SSID": "m", "DHCP": {"AddressIP": "10.0.0.1", "Netmask": "255.255.255.0",
                    "DHCPRangeStartIP": "10.42.0.100", "DHCPRangeEndIP": "10.42.0.120"}})"},
    SectionCase{"WiFiDhcpNotObject", WIFI, R"({"Enable": 1, "SSID": "m", "DHCP": "10.0.0.1"})", -1,
                {WIFI_LINE "DHCP NOT JSON_OBJECT"}, ""},
    SectionCase{"WiFiBadAddress", WIFI,
                R"({"Enable": 1, "SSID": 5, "DHCP": {"AddressIP": "10.0.0.1", "Netmask": "255.255.255.0",
                    "DHCPRangeStartIP": "10.0.0.300", "DHCPRangeEndIP": "10.0.0.20"}})", -1,
                {WIFI_LINE "SSID NOT JSON_STRING", "error.[json_check_ipv4]: DHCPRangeStartIP value INVALID"}, ""}),
    caseName);

class DeviceBoundDefaults : public zt4test::DeviceTest {};

TEST_F(DeviceBoundDefaults, RadioIdentifiersComeFromTheRadioFiles) {
    writeFile("/var/tmp/radioappkey", KEY16 "\n");
    std::int8_t status = 0;
    json_t* radio = checkJSONZT4UserConfigRadioLoRaSyntaxVersion1(nullptr, &status);
    ASSERT_NE(radio, nullptr);
    EXPECT_STREQ(json_string_value(json_object_get(radio, "APPKEY")), KEY16);
    EXPECT_STREQ(json_string_value(json_object_get(radio, "APPEUI")), "");
    EXPECT_TRUE(zt4test::logged("[checkJSONZT4UserConfigRadioLoRaSyntaxVersion1]: APPKEY: '" KEY16 "'", LOG_INFO));
    EXPECT_TRUE(zt4test::logged("error.[checkJSONZT4UserConfigRadioLoRaSyntaxVersion1] FAILED to open file '" +
                                path("/var/tmp/radioappeui") + "'", LOG_ERR)) << zt4test::logDump();
    EXPECT_STREQ(json_string_value(json_object_get(radio, "Band")), "EU-868");
    EXPECT_EQ(json_integer_value(json_object_get(radio, "Period")), 10);
    json_decref(radio);
}

TEST_F(DeviceBoundDefaults, WiFiNamesTheAccessPointAfterTheDevice) {
    writeFile("/home/nvram/hostapd.conf", "interface=wlan0\nssid=ZT4-0042\n");
    std::int8_t status = 0;
    json_t* wifi = checkJSONZT4UserConfigWiFiSyntaxVersion1(nullptr, &status);
    ASSERT_NE(wifi, nullptr);
    EXPECT_EQ(zt4test::compact(wifi),
              R"({"DHCP":{"AddressIP":"10.42.0.1","DHCPRangeEndIP":"10.42.0.120","DHCPRangeStartIP":"10.42.0.100",)"
              R"("Netmask":"255.255.255.0"},"Enable":1,"SSID":"ZT4-0042"})");
    json_decref(wifi);
}

struct ExampleSection {
    const char* key;
    SectionCheck check;
};

class ExampleDeviceSection : public zt4test::DeviceTest,
                             public ::testing::WithParamInterface<ExampleSection> {};

// Every section of the example device's user document passes its check untouched.
TEST_P(ExampleDeviceSection, PassesItsCheckWithoutRepair) {
    json_t* document = json_load_file(ZT4_EXAMPLE_DEVICE "/home/nvram/zt4config.json", 0, nullptr);
    ASSERT_NE(document, nullptr);
    writeFile("/var/tmp/radioappkey", "");
    writeFile("/var/tmp/radioappeui", "");
    writeFile("/home/nvram/hostapd.conf", "ssid=ZT4-0042\n");
    ASSERT_EQ(json_dump_file(document, path("/home/nvram/zt4config.json").c_str(), 0), 0);
    zt4test::clearLog();
    json_t* section = json_deep_copy(json_object_get(document, GetParam().key));
    ASSERT_NE(section, nullptr);
    std::int8_t status = -1;
    json_t* result = GetParam().check(section, &status);
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(checkLines().empty()) << zt4test::logDump();
    EXPECT_TRUE(json_equal(section, json_object_get(document, GetParam().key)));
    json_decref(result);
    json_decref(section);
    json_decref(document);
}

INSTANTIATE_TEST_SUITE_P(Sections, ExampleDeviceSection, ::testing::Values(
    ExampleSection{"Web", checkJSONZT4UserConfigWebSyntaxVersion1},
    ExampleSection{"RadioLoRa", checkJSONZT4UserConfigRadioLoRaSyntaxVersion1},
    ExampleSection{"WiFi", checkJSONZT4UserConfigWiFiSyntaxVersion1},
    ExampleSection{"Ethernet", checkJSONZT4UserConfigEthernetSyntaxVersion1},
    ExampleSection{"Modbus", checkJSONZT4UserConfigModbusSyntaxVersion1},
    ExampleSection{"BACnet", checkJSONZT4UserConfigBACnetSyntaxVersion1},
    ExampleSection{"ElectricalConfiguration", checkJSONZT4UserConfigElectricalConfigurationSyntaxVersion1}),
    [](const ::testing::TestParamInfo<ExampleSection>& row) { return std::string(row.param.key); });

}  // namespace
