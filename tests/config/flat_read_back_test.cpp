// Reading the flat file back into user sections: each field from its line or its default, the
// connectors from their own line forms, and a round trip through a file the library wrote.
#include <syslog.h>

#include <fstream>
#include <sstream>
#include <string>

#include "support/harness.hpp"
#include "zt4config/config.h"
#include "zt4config/export.h"

namespace {

using Reader = json_t* (*)(void);

constexpr const char* kFlatFile = "/home/nvram/zt4.cfg";

struct SectionCase {
    const char* name;
    Reader read;
    const char* file;  // null: no flat file
    const char* expected;
    const char* logged;  // a line (or, ending in "'", the beginning of one) logged, or null
};

class ReadBack : public zt4test::DeviceTest, public ::testing::WithParamInterface<SectionCase> {};

TEST_P(ReadBack, FieldsFromTheirLinesOrDefaults) {
    const SectionCase& c = GetParam();
    writeFile("/home/nvram/hostapd.conf", "interface=wlan0\nssid=ZT4-0042\n");
    if (std::string(c.name) == "WiFiWithoutDeviceName") removeFile("/home/nvram/hostapd.conf");
    if (c.file != nullptr) writeFile(kFlatFile, c.file);
    json_t* section = c.read();
    EXPECT_EQ(zt4test::compact(section), c.expected);
    json_decref(section);
    if (c.logged != nullptr) {
        EXPECT_EQ(zt4test::loggedCount(c.logged), 1) << zt4test::logDump();
    }
}

std::string caseName(const ::testing::TestParamInfo<SectionCase>& info) { return info.param.name; }

#define RADIO_DEFAULTS R"("APPEUI":"00:11:22:33:44:55:66:77","APPKEY":"","Band":"EU-868")"

INSTANTIATE_TEST_SUITE_P(Sections, ReadBack, ::testing::Values(
    // Texts are scanned up to the first blank, their quotes included.
    SectionCase{"WebQuotesKept", readZT4JSONUserConfigWebSyntaxVersion1, "Web_Language=\"en\"\n",
                R"({"Language":"\"en\""})", "Language='\"en\"'"},
    SectionCase{"WebWithoutFile", readZT4JSONUserConfigWebSyntaxVersion1, nullptr, R"({"Language":"fr"})",
                "error.[readZT4JSONUserConfigObject]: FAILED open file '"},
    SectionCase{"WebCommentPassedOver", readZT4JSONUserConfigWebSyntaxVersion1,
                "// Web_Language=\"en\"\nWeb_Language=de\n", R"({"Language":"de"})", nullptr},
    // The writer's "Radio_" lines are not the "RadioLoRa_" lines looked for.
    SectionCase{"RadioWriterLinesNotFound", readZT4JSONUserConfigRadioLoRaSyntaxVersion1,
                "Radio_Enable=1\nRadio_TransmitMode=2\n",
                "{" RADIO_DEFAULTS R"(,"Enable":0,"FrameFormat":1,"Period":10})", "Default Period=10"},
    SectionCase{"RadioOwnLines", readZT4JSONUserConfigRadioLoRaSyntaxVersion1,
                "RadioLoRa_Enable=1\nRadioLoRa_Period=4294967295\nRadioLoRa_FrameFormat=x\n",
                "{" RADIO_DEFAULTS R"(,"Enable":1,"FrameFormat":1,"Period":-1})", "Period=-1"},
    SectionCase{"WiFiNamedAfterTheDevice", readZT4JSONUserConfigWiFiSyntaxVersion1,
                "DHCPD_SSID=\"x\"\nWiFi_Netmask=255.0.0.0\nWiFi_DHCPRangeEndIP=10.42.0.199\n",
                R"({"AddressIP":"10.42.0.1","DHCPRangeEndIP":"10.42.0.199","DHCPRangeStartIP":"10.42.0.100",)"
                R"("Enable":1,"Netmask":"255.0.0.0","SSID":"ZT4-0042"})", "Default SSID='ZT4-0042'"},
    SectionCase{"WiFiWithoutDeviceName", readZT4JSONUserConfigWiFiSyntaxVersion1, "",
                R"({"AddressIP":"10.42.0.1","DHCPRangeEndIP":"10.42.0.120","DHCPRangeStartIP":"10.42.0.100",)"
                R"("Enable":1,"Netmask":"255.255.255.0","SSID":""})",
                "error.[readZT4JSONUserConfigObject]: Failed to get SSID"},
    SectionCase{"EthernetWriterLinesNotFound", readZT4JSONUserConfigEthernetSyntaxVersion1,
                "Static_AddressIP=\"1.2.3.4\"\n",
                R"({"AddressIP":"192.168.1.66","Dns":"8.8.8.8","GW":"192.168.1.1","IPv4Addressing":"Static",)"
                R"("Netmask":"255.255.255.0"})", nullptr},
    SectionCase{"ModbusDefaults", readZT4JSONUserConfigModbusSyntaxVersion1, "",
                R"({"Enable":0,"Interface":"TCP","MappingVersion":2,"Parity":1,"RTUBaudrate":115200,"SlaveID":1})",
                "Default MappingVersion=2"},
    SectionCase{"ModbusRenamedLinesNotFound", readZT4JSONUserConfigModbusSyntaxVersion1,
                "Modbus_Version=3\nModbus_ID=9\nModbus_Parity=x\nModbus_RTUBaudrate=9600\n",
                R"({"Enable":0,"Interface":"TCP","MappingVersion":2,"Parity":1,"RTUBaudrate":9600,"SlaveID":1})",
                nullptr},
    SectionCase{"BACnetTextsCutAtTheFirstBlank", readZT4JSONUserConfigBACnetSyntaxVersion1,
                "BACnet_DeviceName=\"ZT4 main switchboard\"\nBACnet_Port=47809\n"
                "BACnet_DeviceLocation=ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789abcdefghijklmnopqrstuvwxyz\n",
                R"({"DeviceID":1,"DeviceLocation":"ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789abcdefghijk",)"
                R"("DeviceName":"\"ZT4","Enable":0,"MappingVersion":1,"Port":47809})", nullptr}
), caseName);

// ---- A table of the caller's ---------------------------------------------------------------------

class CallerTable : public zt4test::DeviceTest {
protected:
    const zt4FlatField kFields[3] = {
        {"Gain", ZT4_FLAT_REAL, 0, 1.5f, ""},
        {"Count", ZT4_FLAT_INTEGER, 7, 0.0f, ""},
        {"Label", ZT4_FLAT_STRING, 0, 0.0f, "none"},
    };
};

TEST_F(CallerTable, ReadsItsFields) {
    writeFile(kFlatFile, "Meter_Gain=0.25\nOther_Count=3\nMeter_Label=a\n");
    json_t* object = readZT4JSONUserConfigObject("Meter", kFields, 3);
    EXPECT_EQ(zt4test::compact(object), R"({"Count":7,"Gain":0.25,"Label":"a"})");
    json_decref(object);
    EXPECT_TRUE(zt4test::logged("Default Gain=1.500000", LOG_INFO));
    EXPECT_TRUE(zt4test::logged("Gain=0.250000", LOG_INFO));
    EXPECT_TRUE(zt4test::logged("Label='a'", LOG_INFO));
}

TEST_F(CallerTable, RefusesMissingArguments) {
    EXPECT_EQ(readZT4JSONUserConfigObject(nullptr, kFields, 3), nullptr);
    EXPECT_EQ(readZT4JSONUserConfigObject("Meter", nullptr, 3), nullptr);
    EXPECT_EQ(readZT4JSONUserConfigObject("Meter", kFields, 0), nullptr);
    for (const char* line : {"name NULL", "keyword NULL", "size NULL"}) {
        EXPECT_TRUE(zt4test::logged(std::string("error.[readZT4JSONUserConfigObject]: ") + line));
    }
}

// ---- Connectors ---------------------------------------------------------------------------------

#define CHANNEL_DEFAULTS R"("CurrentTransformerPrimary":{"CurrentPrimary":5,"Enable":0},"Enable":0,"GeneralFactor":1.0,"Name":"")"
#define CONNECTOR_DEFAULTS R"({"Channel":[{)" CHANNEL_DEFAULTS R"(}],"CurrentTransformerModel":0,"Mode":0})"

struct ConnectorCase {
    const char* name;
    const char* file;
    int connector;  // 1 to 6
    const char* expected;
    const char* logged;
};

class ConnectorReadBack : public zt4test::DeviceTest, public ::testing::WithParamInterface<ConnectorCase> {};

TEST_P(ConnectorReadBack, ValidValuesTaken) {
    const ConnectorCase& c = GetParam();
    writeFile(kFlatFile, c.file);
    json_t* connectors = readZT4JSONUserConfigConnectorsSyntaxVersion1();
    ASSERT_EQ(json_array_size(connectors), 6u);
    EXPECT_EQ(zt4test::compact(json_array_get(connectors, static_cast<size_t>(c.connector - 1))), c.expected);
    json_decref(connectors);
    if (c.logged != nullptr) {
        EXPECT_TRUE(zt4test::logged(c.logged)) << zt4test::logDump();
    }
}

std::string connectorName(const ::testing::TestParamInfo<ConnectorCase>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(Lines, ConnectorReadBack, ::testing::Values(
    ConnectorCase{"ModeAndPlier", "Connect_2_Cnl_1_Mode=1\nConnect_2_Cnl_1_Plier=3\n", 2,
                  R"({"Channel":[{)" CHANNEL_DEFAULTS R"(}],"CurrentTransformerModel":3,"Mode":1})", "Plier=3"},
    ConnectorCase{"InvalidModeRefused", "Connect_3_Cnl_1_Mode=9\nConnect_3_Cnl_1_Plier=9\n", 3, CONNECTOR_DEFAULTS,
                  nullptr},
    ConnectorCase{"ModeOnlyOnTheFirstChannel", "Connect_3_Cnl_2_Mode=2\n", 3, CONNECTOR_DEFAULTS, nullptr},
    ConnectorCase{"ChannelValues",
                  "Connect_1_Cnl_1_Enable=1\nConnect_1_Cnl_1_Name=Main incomer\nConnect_1_Cnl_1_xGeneral=2.5\n"
                  "Connect_1_Cnl_1_CTPrimary=400\nConnect_1_Cnl_1_Dir=1\nConnect_1_Cnl_1_Phase=2\n", 1,
                  R"({"Channel":[{"CurrentTransformer":[{"Direction":1}],"CurrentTransformerPrimary":{"CurrentPrimary":400,)"
                  R"("Enable":0},"Enable":1,"GeneralFactor":2.5,"Name":"Main","Phase":2}],"CurrentTransformerModel":0,"Mode":0})",
                  "xGeneral=2.500000"},
    ConnectorCase{"InvalidChannelValuesRefused",
                  "Connect_1_Cnl_1_Enable=2\nConnect_1_Cnl_1_xGeneral=0\nConnect_1_Cnl_1_Phase=4\nConnect_1_Cnl_1_Dir=2\n",
                  1, CONNECTOR_DEFAULTS, nullptr},
    ConnectorCase{"MissingChannel", "Connect_4_Cnl_2_Enable=1\n", 4, CONNECTOR_DEFAULTS,
                  "error.[readZT4JSONUserConfigConnectorsSyntaxVersion1]: json_Channel2 NULL"},
    // The writer's "Connector_" lines are not the "Connect_" lines looked for.
    ConnectorCase{"WriterLinesNotFound", "Connector_1_Mode=4\nConnector_1_Channel_1_Enable=1\n", 1,
                  CONNECTOR_DEFAULTS, nullptr},
    ConnectorCase{"CommentPassedOver", "// Connect_5_Cnl_1_Mode=2\n", 5, CONNECTOR_DEFAULTS, nullptr}
), connectorName);

TEST_F(ConnectorReadBack, ElectricalConfigurationWithoutFrequencyOrVoltage) {
    writeFile(kFlatFile, "Connect_6_Cnl_1_Mode=3\n");
    json_t* electrical = readZT4JSONUserConfigElectricalConfigurationSyntaxVersion1();
    std::string keys;
    const char* key = nullptr;
    json_t* value = nullptr;
    json_object_foreach(electrical, key, value) keys += std::string(key) + " ";
    EXPECT_EQ(keys, "LineFrequency NominalVoltage VoltageTransformer Connectors Expert ");
    EXPECT_EQ(zt4test::compact(json_object_get(electrical, "LineFrequency")), "0.0");
    EXPECT_EQ(zt4test::compact(json_object_get(electrical, "NominalVoltage")), "0.0");
    EXPECT_EQ(zt4test::compact(json_object_get(electrical, "VoltageTransformer")),
              R"({"Enable":0,"VoltagePrimary":400.0,"VoltageSecondary":230.0})");
    EXPECT_EQ(zt4test::compact(json_object_get(json_array_get(json_object_get(electrical, "Connectors"), 5), "Mode")),
              "3");
    EXPECT_EQ(zt4test::compact(json_object_get(json_object_get(electrical, "Expert"), "NumberConnectorThreephase")),
              "3");
    json_decref(electrical);
}

TEST_F(ConnectorReadBack, WithoutFileNoConnectors) {
    EXPECT_EQ(readZT4JSONUserConfigConnectorsSyntaxVersion1(), nullptr);
    EXPECT_EQ(zt4test::loggedCount("error.[readZT4JSONUserConfigConnectorsSyntaxVersion1]: FAILED open file /"), 1);
}

// ---- Round trip ----------------------------------------------------------------------------------

std::string exampleFile(const std::string& devicePath) {
    std::ifstream in(std::string(ZT4_EXAMPLE_DEVICE) + devicePath);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

struct RoundTripCase {
    const char* section;
    const char* key;
    const char* stored;    // the example document's value
    const char* readBack;  // what the read-back of the written file gives
    const char* mismatch;  // why they differ ("" when they must not)
};

const char* const kQuotes = "texts come back with their quotes";
const char* const kCut = "texts come back cut at their first blank, quotes included";
const char* const kRadio = "written as Radio_..., looked for as RadioLoRa_...: the default";
const char* const kWiFi = "written as DHCPD_..., looked for as WiFi_...: the default";
const char* const kEthernet = "written as Static_..., looked for as Ethernet_...: the default";
const char* const kRenamed = "written under another name: the default";

const RoundTripCase kRoundTrip[] = {
    {"Web", "Language", R"("en")", R"("\"en\"")", kQuotes},
    {"RadioLoRa", "Enable", "1", "0", kRadio},
    {"RadioLoRa", "Period", "15", "10", kRadio},
    {"RadioLoRa", "FrameFormat", "2", "1", kRadio},
    {"RadioLoRa", "Band", R"("EU-868")", R"("EU-868")", kRadio},
    {"RadioLoRa", "APPEUI", R"("70:B3:D5:7E:D0:00:4A:21")", R"("00:11:22:33:44:55:66:77")", kRadio},
    {"RadioLoRa", "APPKEY", R"("2B:7E:15:16:28:AE:D2:A6:AB:F7:15:88:09:CF:4F:3C")", R"("")", kRadio},
    {"WiFi", "Enable", "1", "1", kWiFi},
    {"WiFi", "SSID", R"("ZT4-D0012345")", R"("ZT4-D0012345")", "the default is the device's own name"},
    {"WiFi", "AddressIP", R"("10.42.0.1")", R"("10.42.0.1")", kWiFi},
    {"WiFi", "Netmask", R"("255.255.255.0")", R"("255.255.255.0")", kWiFi},
    {"WiFi", "DHCPRangeStartIP", R"("10.42.0.100")", R"("10.42.0.100")", kWiFi},
    {"WiFi", "DHCPRangeEndIP", R"("10.42.0.120")", R"("10.42.0.120")", kWiFi},
    {"Ethernet", "IPv4Addressing", R"("Static")", R"("Static")", kEthernet},
    {"Ethernet", "AddressIP", R"("192.168.10.42")", R"("192.168.1.66")", kEthernet},
    {"Ethernet", "Netmask", R"("255.255.255.0")", R"("255.255.255.0")", kEthernet},
    {"Ethernet", "GW", R"("192.168.10.1")", R"("192.168.1.1")", kEthernet},
    {"Ethernet", "Dns", R"("192.168.10.1")", R"("8.8.8.8")", kEthernet},
    {"Modbus", "Enable", "1", "1", ""},
    {"Modbus", "MappingVersion", "3", "2", kRenamed},
    {"Modbus", "Interface", R"("TCP")", R"("\"TCP\"")", kQuotes},
    {"Modbus", "RTUBaudrate", "115200", "115200", ""},
    {"Modbus", "Parity", "1", "1", ""},
    {"Modbus", "SlaveID", "17", "1", kRenamed},
    {"BACnet", "Enable", "0", "0", ""},
    {"BACnet", "MappingVersion", "2", "1", kRenamed},
    {"BACnet", "DeviceID", "4101", "4101", ""},
    {"BACnet", "Port", "47808", "47808", ""},
    {"BACnet", "DeviceName", R"("ZT4 main switchboard")", R"("\"ZT4")", kCut},
    {"BACnet", "DeviceLocation", R"("Building A, level -1")", R"("\"Building")", kCut},
};

class RoundTrip : public zt4test::DeviceTest {};

TEST_F(RoundTrip, WrittenFileReadBack) {
    for (const char* file : {"/home/nvram/zt4config.json", "/home/nvram/zt4system.json", "/home/nvram/hostapd.conf"}) {
        writeFile(file, exampleFile(file));
    }
    ASSERT_EQ(printZT4ConfigFile(), 0);
    json_t* document = readJSONZT4ConfigFile();
    struct Section {
        const char* name;
        Reader read;
    };
    const Section sections[] = {
        {"Web", readZT4JSONUserConfigWebSyntaxVersion1},         {"RadioLoRa", readZT4JSONUserConfigRadioLoRaSyntaxVersion1},
        {"WiFi", readZT4JSONUserConfigWiFiSyntaxVersion1},       {"Ethernet", readZT4JSONUserConfigEthernetSyntaxVersion1},
        {"Modbus", readZT4JSONUserConfigModbusSyntaxVersion1},   {"BACnet", readZT4JSONUserConfigBACnetSyntaxVersion1},
    };
    size_t checked = 0;
    for (const Section& section : sections) {
        json_t* readBack = section.read();
        size_t rows = 0;
        for (const RoundTripCase& row : kRoundTrip) {
            if (std::string(row.section) != section.name) continue;
            SCOPED_TRACE(std::string(row.section) + "." + row.key + ": " + row.mismatch);
            // The DHCP addresses sit in the WiFi section's "DHCP" object.
            json_t* stored = json_object_get(document, row.section);
            if (json_object_get(stored, row.key) == nullptr) stored = json_object_get(stored, "DHCP");
            EXPECT_EQ(zt4test::compact(json_object_get(stored, row.key)), row.stored);
            EXPECT_EQ(zt4test::compact(json_object_get(readBack, row.key)), row.readBack);
            if (*row.mismatch == '\0') {
                EXPECT_EQ(std::string(row.readBack), row.stored);
            }
            ++rows;
        }
        // Every field read back has its row.
        EXPECT_EQ(json_object_size(readBack), rows) << section.name;
        checked += rows;
        json_decref(readBack);
    }
    EXPECT_EQ(checked, std::size(kRoundTrip));
    json_decref(document);
}

// The user document takes the sections read back, by the factory user file's version.
TEST_F(RoundTrip, ImportMergesIntoTheUserDocument) {
    writeFile("/home/nvram/zt4config.json", exampleFile("/home/nvram/zt4config.json"));
    writeFile("/etc/zt4config_factory.json", R"({"Syntax": {"Version": 1}})");
    writeFile(kFlatFile, "Web_Language=\"en\"\nModbus_SlaveID=9\n");
    ASSERT_EQ(printZT4JSONConfigFile(), 0) << zt4test::logDump();
    json_t* document = readJSONZT4ConfigFile();
    EXPECT_EQ(zt4test::compact(json_object_get(document, "Web")), R"({"Language":"\"en\""})");
    EXPECT_EQ(zt4test::compact(json_object_get(json_object_get(document, "Modbus"), "SlaveID")), "9");
    // Every section read back replaces the stored one, defaults included.
    EXPECT_EQ(zt4test::compact(json_object_get(json_object_get(document, "RadioLoRa"), "APPEUI")),
              R"("00:11:22:33:44:55:66:77")");
    EXPECT_EQ(zt4test::compact(json_object_get(json_object_get(document, "WiFi"), "DHCPRangeEndIP")), R"("10.42.0.120")");
    EXPECT_EQ(zt4test::compact(json_object_get(json_object_get(document, "Ethernet"), "AddressIP")), R"("192.168.1.66")");
    EXPECT_EQ(zt4test::compact(json_object_get(json_object_get(document, "BACnet"), "DeviceName")), R"("Kelvane")");
    EXPECT_EQ(zt4test::compact(json_object_get(json_object_get(document, "ElectricalConfiguration"), "LineFrequency")),
              "0.0");
    json_decref(document);

    // A version-0 factory file routes to version 0, which refuses, whatever the user file says.
    writeFile("/etc/zt4config_factory.json", R"({"Web": {}})");
    EXPECT_EQ(printZT4JSONConfigFile(), -1);
    EXPECT_TRUE(zt4test::logged("error.[printZT4JSONUserConfigFileSyntaxVersion0]: syntax version 0 is not supported"));
    // Without a flat file nothing is merged.
    writeFile("/etc/zt4config_factory.json", R"({"Syntax": {"Version": 1}})");
    removeFile(kFlatFile);
    EXPECT_EQ(printZT4JSONConfigFile(), -1);
    EXPECT_EQ(zt4test::loggedCount("error.[printZT4JSONUserConfigFileSyntaxVersion1]: FAILED open file /"), 1);
}

}  // namespace
