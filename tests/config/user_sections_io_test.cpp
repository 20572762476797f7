// Reading and writing the user configuration's sections through the exported entries.
#include <syslog.h>

#include <cstdint>
#include <string>

#include "config/v1/user_checks.hpp"
#include "support/harness.hpp"
#include "zt4config.h"

namespace {

constexpr const char* kUserFile = "/home/nvram/zt4config.json";

json_t* defaultsOf(json_t* (*check)(json_t*, std::int8_t*)) {
    std::int8_t status = 0;
    return check(nullptr, &status);
}

// A complete, valid version-1 user document built from the sections' own defaults.
std::string completeDocument() {
    json_t* document = json_pack("{s{si}}", "Syntax", "Version", 1);
    json_object_set_new(document, "Web", defaultsOf(checkJSONZT4UserConfigWebSyntaxVersion1));
    json_object_set_new(document, "Ethernet", defaultsOf(checkJSONZT4UserConfigEthernetSyntaxVersion1));
    json_object_set_new(document, "Modbus", defaultsOf(checkJSONZT4UserConfigModbusSyntaxVersion1));
    json_object_set_new(document, "BACnet", defaultsOf(checkJSONZT4UserConfigBACnetSyntaxVersion1));
    json_object_set_new(document, "ElectricalConfiguration",
                        defaultsOf(checkJSONZT4UserConfigElectricalConfigurationSyntaxVersion1));
    char* text = json_dumps(document, JSON_INDENT(17) | JSON_PRESERVE_ORDER);
    std::string result = text;
    free(text);
    json_decref(document);
    return result;
}

class UserSections : public zt4test::DeviceTest {
protected:
    void SetUp() override {
        DeviceTest::SetUp();
        writeFile(kUserFile, completeDocument());
        zt4test::clearLog();
    }
    // Member `key` of the stored document's section `section`, as compact text ("" if absent).
    std::string stored(const char* section, const char* key = nullptr) {
        json_t* document = zt4test::parse(readFile(kUserFile).c_str());
        json_t* value = json_object_get(document, section);
        if (key != nullptr) value = json_object_get(value, key);
        std::string text = value ? zt4test::compact(value) : "";
        json_decref(document);
        return text;
    }
};

using Writer = int (*)(json_t*);

struct RefusedCase {
    const char* name;
    Writer write;
    const char* section;
    const char* reason;  // the check's line, also logged
    const char* refusal;
};

class RefusedSection : public UserSections, public ::testing::WithParamInterface<RefusedCase> {};

TEST_P(RefusedSection, IsRefusedWholeAndTheFileIsUntouched) {
    const RefusedCase& c = GetParam();
    const std::string before = readFile(kUserFile);
    json_t* section = zt4test::parse(c.section);
    const std::string argument = zt4test::compact(section);
    EXPECT_EQ(c.write(section), -1);
    EXPECT_EQ(zt4test::compact(section), argument);
    json_decref(section);
    EXPECT_EQ(readFile(kUserFile), before);
    EXPECT_TRUE(zt4test::logged(c.reason, LOG_ERR)) << zt4test::logDump();
    EXPECT_TRUE(zt4test::logged(c.refusal, LOG_ERR)) << zt4test::logDump();
}

INSTANTIATE_TEST_SUITE_P(Writers, RefusedSection, ::testing::Values(
    RefusedCase{"WebGerman", writeJSONZT4ConfigWeb, R"({"Language": "de"})",
                "error.[checkJSONZT4UserConfigWebSyntaxVersion1]: Language value INVALID (de)",
                "error.[writeJSONZT4UserConfigWebSyntaxVersion1]: INVALID Configuration Web"},
    RefusedCase{"EthernetGateway", writeJSONZT4ConfigEthernet, R"({"GW": "192.168.1"})",
                "error.[json_check_ipv4]: GW value INVALID",
                "error.[writeJSONZT4UserConfigEthernetSyntaxVersion1]: INVALID Configuration Ethernet"},
    RefusedCase{"ModbusBaudrate", writeJSONZT4ConfigModbus, R"({"RTUBaudrate": 4800})",
                "error.[checkJSONZT4UserConfigModbusSyntaxVersion1]: RTUBaudrate value INVALID (4800)",
                "error.[writeJSONZT4UserConfigModbusSyntaxVersion1]: INVALID Configuration Modbus"},
    RefusedCase{"ModbusEnableTrue", writeJSONZT4ConfigModbus, R"({"Enable": true})",
                "error.[json_check_boolean]: Enable NOT JSON_INTEGER",
                "error.[writeJSONZT4UserConfigModbusSyntaxVersion1]: INVALID Configuration Modbus"},
    RefusedCase{"BACnetPort", writeJSONZT4ConfigBACnet, R"({"Port": 1023})",
                "error.[json_check_integer_range]: Port value INVALID (1023)",
                "error.[writeJSONZT4UserConfigBACnetSyntaxVersion1]: INVALID Configuration BACnet"},
    RefusedCase{"BACnetLegacyVersion", writeJSONZT4ConfigBACnet, R"({"Version": 3})",
                "error.[checkJSONZT4UserConfigBACnetSyntaxVersion1]: MappingVersion value INVALID (3)",
                "error.[writeJSONZT4UserConfigBACnetSyntaxVersion1]: INVALID Configuration BACnet"},
    RefusedCase{"ConnectorsFive", writeJSONZT4ConfigConnector, R"([{}, {}, {}, {}, {}])",
                "error.[checkJSONZT4UserConfigConnectorsSyntaxVersion1]: Array size 5 Connectors INVALID",
                "error.[writeJSONZT4UserConfigConnectorsSyntaxVersion1]: INVALID Configuration Connector"},
    RefusedCase{"ExpertSagHundred", writeJSONZT4ConfigExpert, R"({"Sag": {"RateLevel": 100.0}})",
                "error.[checkJSONZT4UserConfigExpertSagSyntaxVersion1]: RateLevel value INVALID (100.000000)",
                "error.[writeJSONZT4UserConfigExpertSyntaxVersion1]: INVALID Configuration Expert"},
    RefusedCase{"SetupWithoutValue", writeJSONZT4ConfigSetupConnectors, R"({"Count": 2})",
                "error.[writeJSONZT4UserConfigExpertNumberConnectorThreephaseSyntaxVersion1]: read NumberConnectorThreephase NULL",
                "error.[writeJSONZT4UserConfigExpertNumberConnectorThreephaseSyntaxVersion1]: read NumberConnectorThreephase NULL"},
    RefusedCase{"SetupNegative", writeJSONZT4ConfigSetupConnectors, R"({"Setup": -1})",
                "error.[json_check_integer_superior]: NumberConnectorThreephase value INVALID (-1)",
                "error.[writeJSONZT4UserConfigExpertNumberConnectorThreephaseSyntaxVersion1]: FAILED to update number Connector Threephase config"}),
    [](const ::testing::TestParamInfo<RefusedCase>& row) { return std::string(row.param.name); });

struct StoredCase {
    const char* name;
    Writer write;
    const char* section;   // written
    const char* document;  // member of the stored document that is compared
    const char* key;       // its key compared, or nullptr for the whole member
    const char* expected;  // compact text expected there
};

class StoredSection : public UserSections, public ::testing::WithParamInterface<StoredCase> {};

TEST_P(StoredSection, IsMergedIntoTheDocument) {
    const StoredCase& c = GetParam();
    json_t* section = zt4test::parse(c.section);
    const std::string argument = zt4test::compact(section);
    EXPECT_EQ(c.write(section), 0) << zt4test::logDump();
    EXPECT_EQ(zt4test::compact(section), argument);
    json_decref(section);
    json_t* expected = json_loads(c.expected, JSON_DECODE_ANY, nullptr);
    ASSERT_NE(expected, nullptr);
    EXPECT_EQ(stored(c.document, c.key), zt4test::compact(expected));
    json_decref(expected);
}

INSTANTIATE_TEST_SUITE_P(Writers, StoredSection, ::testing::Values(
    StoredCase{"WebEnglish", writeJSONZT4ConfigWeb, R"({"Language": "en"})", "Web", "Language", R"("en")"},
    StoredCase{"ModbusEmptyGetsDefaults", writeJSONZT4ConfigModbus, "{}", "Modbus", nullptr,
               R"({"Enable": 0, "MappingVersion": 3, "Interface": "TCP", "RTUBaudrate": 115200,
                   "Parity": 1, "SlaveID": 1})"},
    StoredCase{"ModbusLegacyKeys", writeJSONZT4ConfigModbus, R"({"Version": 2, "ID": 5})", "Modbus", nullptr,
               R"({"Enable": 0, "MappingVersion": 2, "Interface": "TCP", "RTUBaudrate": 115200,
                   "Parity": 1, "SlaveID": 5})"},
    StoredCase{"BACnetUnknownKeyKept", writeJSONZT4ConfigBACnet, R"({"Port": 65535, "Room": "B2"})",
               "BACnet", "Room", R"("B2")"},
    StoredCase{"EthernetDhcp", writeJSONZT4ConfigEthernet, R"({"IPv4Addressing": "DHCP"})", "Ethernet",
               "IPv4Addressing", R"("DHCP")"},
    StoredCase{"VoltageTransformerKept", writeJSONZT4ConfigConnector,
               R"([{"Mode": 1}, {}, {}, {}, {}, {"CurrentTransformerModel": 8}])", "ElectricalConfiguration",
               "VoltageTransformer", R"({"Enable": 0, "VoltagePrimary": 400.0, "VoltageSecondary": 230.0})"}),
    [](const ::testing::TestParamInfo<StoredCase>& row) { return std::string(row.param.name); });

TEST_F(UserSections, ExpertAndSetupLandInTheElectricalSection) {
    json_t* expert = zt4test::parse(R"({"Swell": {"RateLevel": 100.0}})");
    ASSERT_EQ(writeJSONZT4ConfigExpert(expert), 0) << zt4test::logDump();
    json_decref(expert);
    json_t* setup = zt4test::parse(R"({"Setup": 2})");
    ASSERT_EQ(writeJSONZT4ConfigSetupConnectors(setup), 0) << zt4test::logDump();
    json_decref(setup);

    json_t* read = readJSONZT4ConfigExpert();
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(json_real_value(json_object_get(json_object_get(read, "Swell"), "RateLevel")), 100.0);
    // The defaults filled in by the write are stored alongside.
    EXPECT_EQ(json_array_size(json_object_get(json_object_get(read, "Swell"), "Phase")), 3u);
    json_decref(read);
    json_t* count = readJSONZT4ConfigSetupConnectors();
    ASSERT_NE(count, nullptr);
    EXPECT_EQ(zt4test::compact(count), R"({"Setup":2})");
    json_decref(count);
    EXPECT_EQ(stored("Expert"), "");
}

TEST_F(UserSections, ConnectorByIdReplacesOnlyThatConnector) {
    json_t* connector = zt4test::parse(R"({"Mode": 2, "CurrentTransformerModel": 4})");
    ASSERT_EQ(writeJSONZT4ConfigConnectorById(connector, 3), 0) << zt4test::logDump();
    json_decref(connector);
    for (uint8_t id = 1; id <= 6; ++id) {
        json_t* read = readJSONZT4ConfigConnectorById(id);
        ASSERT_NE(read, nullptr);
        EXPECT_EQ(json_integer_value(json_object_get(read, "Mode")), id == 3 ? 2 : 0);
        EXPECT_EQ(json_array_size(json_object_get(read, "Channel")), 1u);
        json_decref(read);
    }
    connector = zt4test::parse("{}");
    EXPECT_EQ(writeJSONZT4ConfigConnectorById(connector, 7), -1);
    EXPECT_TRUE(zt4test::logged(
        "error.[writeJSONZT4UserConfigConnectorByIdSyntaxVersion1]: Connector id=7 INVALID", LOG_ERR));
    json_decref(connector);
}

TEST_F(UserSections, ConnectorByIdOnAShortArrayNamesTheZeroBasedNumber) {
    writeFile(kUserFile, R"({"Syntax": {"Version": 1}, "ElectricalConfiguration": {"Connectors": [{}, {}]}})");
    EXPECT_EQ(readJSONZT4ConfigConnectorById(3), nullptr);
    EXPECT_TRUE(zt4test::logged("error.[readJSONZT4ConfigConnectorById]: FAILED to read Object Connector2",
                                LOG_ERR)) << zt4test::logDump();
    EXPECT_EQ(readJSONZT4ConfigConnectorById(0), nullptr);
    EXPECT_TRUE(zt4test::logged("error.[readJSONZT4ConfigConnectorById]: Connector id=0 INVALID", LOG_ERR));
}

TEST_F(UserSections, ReadersGiveNewReferencesAndDefaultsForMissingSections) {
    writeFile(kUserFile, R"({"Syntax": {"Version": 1}, "Web": {"Language": "en"}})");
    json_t* web = readJSONZT4ConfigWeb();
    ASSERT_NE(web, nullptr);
    EXPECT_EQ(zt4test::compact(web), R"({"Language":"en"})");
    json_object_set_new(web, "Language", json_string("xx"));
    json_decref(web);
    web = readJSONZT4ConfigWeb();
    EXPECT_EQ(zt4test::compact(web), R"({"Language":"en"})");
    json_decref(web);

    json_t* bacnet = readJSONZT4ConfigBACnet();
    ASSERT_NE(bacnet, nullptr);
    EXPECT_EQ(json_integer_value(json_object_get(bacnet, "Port")), 47808);
    json_decref(bacnet);
    json_t* connectors = readJSONZT4ConfigConnector();
    ASSERT_NE(connectors, nullptr);
    EXPECT_EQ(json_array_size(connectors), 6u);
    json_decref(connectors);
}

TEST_F(UserSections, VersionZeroReadsAsStoredAndRefusesWrites) {
    const std::string document = R"({"Web": {"Language": "de", "Old": 1}, "SetupConnectors": {"Setup": 4}})";
    writeFile(kUserFile, document);
    json_t* web = readJSONZT4ConfigWeb();
    ASSERT_NE(web, nullptr);
    EXPECT_EQ(zt4test::compact(web), R"({"Language":"de","Old":1})");
    json_decref(web);
    json_t* setup = readJSONZT4ConfigSetupConnectors();
    ASSERT_NE(setup, nullptr);
    EXPECT_EQ(zt4test::compact(setup), R"({"Setup":4})");
    json_decref(setup);

    json_t* section = zt4test::parse(R"({"Language": "en"})");
    EXPECT_EQ(writeJSONZT4ConfigWeb(section), -1);
    json_decref(section);
    EXPECT_TRUE(zt4test::logged(
        "error.[writeJSONZT4UserConfigWebSyntaxVersion0]: syntax version 0 is not supported", LOG_ERR));
    EXPECT_EQ(readFile(kUserFile), document);
}

constexpr const char* kKey16 = "00:11:22:33:44:55:66:77:88:99:AA:BB:CC:DD:EE:FF";
constexpr const char* kEui = "70:B3:D5:7E:D0:01:23:45";

TEST_F(UserSections, RadioWriteTakesLegacyKeysAndPassesOnlyExactBands) {
    json_t* radio = zt4test::parse(R"({"Enable": 1, "TransmitMode": 2, "ADBitRate": 5, "Protocol": "x",
                                       "Band": "US-915", "APPKEY": "", "APPEUI": ""})");
    ASSERT_EQ(writeJSONZT4ConfigRadio(radio), 0) << zt4test::logDump();
    json_decref(radio);
    EXPECT_EQ(stored("RadioLoRa", "FrameFormat"), "2");
    EXPECT_EQ(stored("RadioLoRa", "TransmitMode"), "");
    EXPECT_EQ(stored("RadioLoRa", "ADBitRate"), "");
    EXPECT_EQ(stored("RadioLoRa", "Protocol"), "");
    EXPECT_EQ(readFile("/home/nvram/regionbandlora"), "US-915\n");

    radio = zt4test::parse(R"({"Band": "EU-868 Europe"})");
    ASSERT_EQ(writeJSONZT4ConfigRadio(radio), 0) << zt4test::logDump();
    json_decref(radio);
    EXPECT_EQ(stored("RadioLoRa", "Band"), R"("EU-868 Europe")");
    EXPECT_EQ(readFile("/home/nvram/regionbandlora"), "US-915\n");
}

TEST_F(UserSections, RadioReadFillsEmptyIdentifiersFromTheRadio) {
    writeFile(kUserFile, R"({"Syntax": {"Version": 1}, "RadioLoRa": {"APPKEY": "", "APPEUI": "", "Period": 60}})");
    writeFile("/var/tmp/radioappkey", kKey16);
    writeFile("/var/tmp/radioappeui", kEui);
    writeFile("/var/tmp/radiodeveui", kEui);
    json_t* radio = readJSONZT4ConfigRadioWithDevEUI();
    ASSERT_NE(radio, nullptr) << zt4test::logDump();
    EXPECT_STREQ(json_string_value(json_object_get(radio, "APPKEY")), kKey16);
    EXPECT_STREQ(json_string_value(json_object_get(radio, "APPEUI")), kEui);
    EXPECT_STREQ(json_string_value(json_object_get(radio, "DEVEUI")), kEui);
    EXPECT_EQ(json_integer_value(json_object_get(radio, "Period")), 60);
    json_decref(radio);
}

TEST_F(UserSections, WiFiIsWrittenFromTheFlatForm) {
    json_t* flat = zt4test::parse(R"({"Enable": 0, "SSID": "meter", "AddressIP": "10.1.0.1",
                                      "Netmask": "255.255.0.0", "StartIP": "10.1.0.10", "EndIP": "10.1.0.20"})");
    ASSERT_EQ(writeJSONZT4ConfigWiFi(flat), 0) << zt4test::logDump();
    json_decref(flat);
    EXPECT_EQ(stored("WiFi"),
              R"({"DHCP":{"AddressIP":"10.1.0.1","DHCPRangeEndIP":"10.1.0.20","DHCPRangeStartIP":"10.1.0.10",)"
              R"("Netmask":"255.255.0.0"},"Enable":0,"SSID":"meter"})");

    const std::string before = readFile(kUserFile);
    flat = zt4test::parse(R"({"Enable": 1, "SSID": "meter", "EndIP": "10.1.0"})");
    EXPECT_EQ(writeJSONZT4ConfigWiFi(flat), -1);
    json_decref(flat);
    EXPECT_TRUE(zt4test::logged("error.[writeJSONZT4UserConfigWiFiSyntaxVersion1]: INVALID Configuration Wifi",
                                LOG_ERR));
    EXPECT_EQ(readFile(kUserFile), before);
}

}  // namespace

namespace {

// The channel readers give one "Channel" array per connector, from the stored connectors.
TEST_F(UserSections, ChannelReadersGiveEveryConnectorsChannels) {
    json_t* monophase = zt4test::parse(
        R"({"Mode": 1, "CurrentTransformerModel": 2, "Channel": [
             {"Enable": 1, "Name": "a", "GeneralFactor": 1.0, "Phase": 1,
              "CurrentTransformerPrimary": {"Enable": 0, "CurrentPrimary": 5}},
             {"Enable": 1, "Name": "b", "GeneralFactor": 1.0, "Phase": 2,
              "CurrentTransformerPrimary": {"Enable": 0, "CurrentPrimary": 5}},
             {"Enable": 0, "Name": "c", "GeneralFactor": 1.0, "Phase": 3,
              "CurrentTransformerPrimary": {"Enable": 0, "CurrentPrimary": 5}}]})");
    ASSERT_EQ(writeJSONZT4ConfigConnectorById(monophase, 4), 0);
    json_decref(monophase);

    json_t* channels = readJSONZT4UserConfigConnectorChannelsSyntaxVersion1();
    ASSERT_TRUE(json_is_array(channels));
    ASSERT_EQ(json_array_size(channels), 6u);
    EXPECT_EQ(json_array_size(json_array_get(channels, 0)), 1u);
    json_t* fourth = json_array_get(channels, 3);
    ASSERT_EQ(json_array_size(fourth), 3u);
    EXPECT_STREQ(json_string_value(json_object_get(json_array_get(fourth, 1), "Name")), "b");
    EXPECT_EQ(channels->refcount, 1u);
    json_decref(channels);

    json_t* expert = readJSONZT4UserConfigExpertConnectorChannelsSyntaxVersion1();
    ASSERT_EQ(json_array_size(expert), 6u);
    EXPECT_TRUE(json_is_object(json_array_get(json_array_get(expert, 5), 0)));
    json_decref(expert);

    removeFile(kUserFile);
    json_t* defaults = readJSONZT4UserConfigConnectorChannelsSyntaxVersion1();
    EXPECT_EQ(json_array_size(defaults), 6u);
    json_decref(defaults);
}

}  // namespace
