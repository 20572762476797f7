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
        if (entry.text.rfind("error.[check", 0) == 0 || entry.text.rfind("error.[json_check_", 0) == 0) {
            lines.push_back(entry.text);
        }
    }
    return lines;
}

namespace {

class SectionCheckTest : public zt4test::DeviceTest,
                         public ::testing::WithParamInterface<SectionCase> {};

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
                ""}), caseName);

struct DefaultsCase {
    const char* name;
    SectionCheck check;
    const char* defaults;
};

class SectionDefaults : public zt4test::DeviceTest,
                        public ::testing::WithParamInterface<DefaultsCase> {};

TEST_P(SectionDefaults, NoInputGivesDefaultsAndInvalidStatus) {
    std::int8_t status = 0;
    json_t* defaults = GetParam().check(nullptr, &status);
    ASSERT_NE(defaults, nullptr);
    EXPECT_EQ(status, -1);
    json_t* expected = zt4test::parse(GetParam().defaults);
    EXPECT_EQ(zt4test::compact(defaults), zt4test::compact(expected));
    json_decref(expected);
    json_decref(defaults);
}

INSTANTIATE_TEST_SUITE_P(Network, SectionDefaults, ::testing::Values(
    DefaultsCase{"Web", checkJSONZT4UserConfigWebSyntaxVersion1, R"({"Language": "fr"})"},
    DefaultsCase{"Ethernet", checkJSONZT4UserConfigEthernetSyntaxVersion1,
                 R"({"IPv4Addressing": "Static", "AddressIP": "192.168.1.66",
                     "Netmask": "255.255.255.0", "GW": "192.168.1.1", "Dns": "8.8.8.8"})"},
    DefaultsCase{"Modbus", checkJSONZT4UserConfigModbusSyntaxVersion1,
                 R"({"Enable": 0, "MappingVersion": 3, "Interface": "TCP", "RTUBaudrate": 115200,
                     "Parity": 1, "SlaveID": 1})"},
    DefaultsCase{"BACnet", checkJSONZT4UserConfigBACnetSyntaxVersion1,
                 R"({"Enable": 0, "MappingVersion": 1, "DeviceID": 1, "Port": 47808,
                     "DeviceName": "Kelvane", "DeviceLocation": "Paris"})"}),
    [](const ::testing::TestParamInfo<DefaultsCase>& row) { return std::string(row.param.name); });

}  // namespace
