// Reading the flat file back into user sections: each field from its line or its default, the
// connectors from their own line forms, a file the library wrote, and the merge into the user document.
#include <syslog.h>

#include <map>

#include "config/flat_fixture.hpp"
#include "zt4config/config.h"
#include "zt4config/export.h"

namespace {

using Reader = json_t* (*)(void);
using zt4test::taken;
constexpr const char* kFlatFile = "/home/nvram/zt4.cfg";

// Rows of data/flat_read_back.json: the flat file (null: none; with "exampleFile", the example device's
// whole file, where texts keep their quotes and are cut at their first blank, and the Radio_, DHCPD_,
// Static_ lines and the renamed Modbus and BACnet keys are not found), the reader, the section (or, for
// the connectors, connector "connector") it gives and the lines logged at level 6.
class ReadBack : public zt4test::DeviceTest, public ::testing::WithParamInterface<const json_t*> {};

TEST_P(ReadBack, FieldsFromTheirLinesOrDefaults) {
    const json_t* row = GetParam();
    static const std::map<std::string, Reader> readers = {
        {"readZT4JSONUserConfigWebSyntaxVersion1", readZT4JSONUserConfigWebSyntaxVersion1},
        {"readZT4JSONUserConfigRadioLoRaSyntaxVersion1", readZT4JSONUserConfigRadioLoRaSyntaxVersion1},
        {"readZT4JSONUserConfigWiFiSyntaxVersion1", readZT4JSONUserConfigWiFiSyntaxVersion1},
        {"readZT4JSONUserConfigEthernetSyntaxVersion1", readZT4JSONUserConfigEthernetSyntaxVersion1},
        {"readZT4JSONUserConfigModbusSyntaxVersion1", readZT4JSONUserConfigModbusSyntaxVersion1},
        {"readZT4JSONUserConfigBACnetSyntaxVersion1", readZT4JSONUserConfigBACnetSyntaxVersion1},
        {"readZT4JSONUserConfigConnectorsSyntaxVersion1", readZT4JSONUserConfigConnectorsSyntaxVersion1}};
    const bool example = json_is_true(json_object_get(row, "exampleFile"));
    if (!json_is_true(json_object_get(row, "noDeviceName"))) {
        writeFile("/home/nvram/hostapd.conf", example ? zt4test::exampleFile("/home/nvram/hostapd.conf") : "interface=wlan0\nssid=ZT4-0042\n");
    }
    if (zt4test::text(row, "file") != nullptr) writeFile(kFlatFile, example ? zt4test::dataFile(zt4test::text(row, "file")) : zt4test::text(row, "file"));
    json_t* read = readers.at(zt4test::text(row, "reader"))();
    if (json_object_get(row, "connector") != nullptr) {
        EXPECT_EQ(json_array_size(read), 6u);
        EXPECT_EQ(zt4test::compact(json_array_get(read, static_cast<size_t>(zt4test::number(row, "connector") - 1))), zt4test::member(row, "expected"));
        json_decref(read);
    } else {
        EXPECT_EQ(taken(read), zt4test::member(row, "expected"));
    }
    zt4test::expectLogged(row, "logged", LOG_INFO);
}

INSTANTIATE_TEST_SUITE_P(Lines, ReadBack, ::testing::ValuesIn(zt4test::dataRows("flat_read_back.json")), zt4test::rowName);

#define WIFI_DEFAULTS R"({"AddressIP":"10.42.0.1","DHCPRangeEndIP":"10.42.0.120","DHCPRangeStartIP":"10.42.0.100","Enable":1,"Netmask":"255.255.255.0",)"

class FlatReadBack : public zt4test::DeviceTest {};

TEST_F(FlatReadBack, MessagesOfTheFailures) {
    EXPECT_EQ(taken(readZT4JSONUserConfigWebSyntaxVersion1()), R"({"Language":"fr"})");
    EXPECT_TRUE(zt4test::logged("error.[readZT4JSONUserConfigObject]: FAILED open file '" + path(kFlatFile) + "'. (No such file or directory)", LOG_ERR));
    EXPECT_EQ(taken(readZT4JSONUserConfigWiFiSyntaxVersion1()), WIFI_DEFAULTS R"("SSID":""})");
    EXPECT_TRUE(zt4test::logged("error.[readZT4JSONUserConfigObject]: Failed to get SSID", LOG_ERR));
    EXPECT_EQ(readZT4JSONUserConfigConnectorsSyntaxVersion1(), nullptr);
    EXPECT_TRUE(zt4test::logged("error.[readZT4JSONUserConfigConnectorsSyntaxVersion1]: FAILED open file " + path(kFlatFile) + ". (No such file or directory)", LOG_ERR));
    EXPECT_EQ(printZT4JSONUserConfigFileSyntaxVersion1(), -1);
    EXPECT_TRUE(zt4test::logged("error.[printZT4JSONUserConfigFileSyntaxVersion1]: FAILED open file " + path(kFlatFile) + ". (No such file or directory)", LOG_ERR));
}

// A table of the caller's.
TEST_F(FlatReadBack, CallerTable) {
    const zt4FlatField fields[3] = {{"Gain", ZT4_FLAT_REAL, 0, 1.5f, ""}, {"Count", ZT4_FLAT_INTEGER, 7, 0.0f, ""}, {"Label", ZT4_FLAT_STRING, 0, 0.0f, "none"}};
    writeFile(kFlatFile, "Meter_Gain=0.25\nOther_Count=3\nMeter_Label=a\n");
    EXPECT_EQ(taken(readZT4JSONUserConfigObject("Meter", fields, 3)), R"({"Count":7,"Gain":0.25,"Label":"a"})");
    for (const char* line : {"Default Gain=1.500000", "Default Count=7", "Default Label='none'", "Gain=0.250000", "Label='a'"}) {
        EXPECT_TRUE(zt4test::logged(line, LOG_INFO)) << line;
    }
    EXPECT_EQ(readZT4JSONUserConfigObject(nullptr, fields, 3), nullptr);
    EXPECT_EQ(readZT4JSONUserConfigObject("Meter", nullptr, 3), nullptr);
    EXPECT_EQ(readZT4JSONUserConfigObject("Meter", fields, 0), nullptr);
    for (const char* line : {"name NULL", "keyword NULL", "size NULL"}) {
        EXPECT_TRUE(zt4test::logged(std::string("error.[readZT4JSONUserConfigObject]: ") + line, LOG_ERR));
    }
}

TEST_F(FlatReadBack, ConnectorsAndElectricalConfiguration) {
    writeFile(kFlatFile, "Connect_4_Cnl_2_Enable=1\nConnect_6_Cnl_1_Mode=3\n");
    json_t* electrical = readZT4JSONUserConfigElectricalConfigurationSyntaxVersion1();
    EXPECT_TRUE(zt4test::logged("error.[readZT4JSONUserConfigConnectorsSyntaxVersion1]: json_Channel2 NULL", LOG_ERR));
    std::string keys;
    const char* key = nullptr;
    json_t* value = nullptr;
    json_object_foreach(electrical, key, value) keys += std::string(key) + " ";
    EXPECT_EQ(keys, "LineFrequency NominalVoltage VoltageTransformer Connectors Expert ");
    EXPECT_EQ(zt4test::compact(json_object_get(electrical, "LineFrequency")), "0.0");
    EXPECT_EQ(zt4test::compact(json_object_get(electrical, "NominalVoltage")), "0.0");
    EXPECT_EQ(zt4test::compact(json_object_get(electrical, "VoltageTransformer")), R"({"Enable":0,"VoltagePrimary":400.0,"VoltageSecondary":230.0})");
    EXPECT_EQ(zt4test::compact(json_object_get(json_array_get(json_object_get(electrical, "Connectors"), 5), "Mode")), "3");
    EXPECT_EQ(zt4test::compact(json_object_get(json_object_get(electrical, "Expert"), "NumberConnectorThreephase")), "3");
    json_decref(electrical);
}

// The user document takes the sections read back, by the factory user file's version.
TEST_F(FlatReadBack, ImportMergesIntoTheUserDocument) {
    writeFile("/home/nvram/zt4config.json", zt4test::exampleFile("/home/nvram/zt4config.json"));
    writeFile("/etc/zt4config_factory.json", R"({"Syntax": {"Version": 1}})");
    writeFile(kFlatFile, "Web_Language=\"en\"\nModbus_SlaveID=9\n");
    ASSERT_EQ(printZT4JSONConfigFile(), 0) << zt4test::logDump();
    json_t* document = readJSONZT4ConfigFile();
    const char* const rows[][3] = {{"Web", "Language", R"("\"en\"")"}, {"Modbus", "SlaveID", "9"}, {"RadioLoRa", "APPEUI", R"("00:11:22:33:44:55:66:77")"},
                                   {"WiFi", "DHCPRangeEndIP", R"("10.42.0.120")"}, {"Ethernet", "AddressIP", R"("192.168.1.66")"},
                                   {"BACnet", "DeviceName", R"("Kelvane")"}, {"ElectricalConfiguration", "LineFrequency", "0.0"}};
    for (const auto& row : rows) EXPECT_EQ(zt4test::compact(json_object_get(json_object_get(document, row[0]), row[1])), row[2]) << row[0];
    json_decref(document);
}

}  // namespace
