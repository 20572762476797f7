// Each operation's level-6 line, and what the documents do on an older (version-0) device: the
// sections pass through, the Ethernet addressing lives in its own setting, the SSID writer
// refuses silently.
#include <syslog.h>

#include <string>

#include "webapi/web_device.hpp"
#include "zt4config.h"

namespace {

using zt4test::kUserFile;

// Every operation, run with an empty object as its argument (writers refuse it or not, readers
// ignore it).
template <json_t* (*Read)(void)>
void reading(json_t*) { json_decref(Read()); }
void readingConnector(json_t*) { json_decref(readJSONZT4WebAPIConfigConnectorById(3)); }
void writingConnector(json_t* argument) { writeJSONZT4WebAPIConfigConnectorById(argument, 3); }
void readingDataConnectors(json_t*) {
    static uint16_t image[ZT4_MODBUS_IMAGE_WORDS];
    zt4Data data{};
    json_decref(readJSONZT4WebAPIDataConnectors(image, &data));
}
template <int (*Operation)(json_t*)>
void calling(json_t* argument) { Operation(argument); }

struct Operation {
    const char* name;
    void (*run)(json_t* argument);
    const char* line;  // level 6
};

const Operation kOperations[] = {
    {"readJSONZT4WebAPIConfigFile", reading<readJSONZT4WebAPIConfigFile>, "Read User configuration file via Web API"},
    {"readJSONZT4WebAPISystemFile", reading<readJSONZT4WebAPISystemFile>, "Read System configuration file via Web API"},
    {"readJSONZT4WebAPIDeviceInfo", calling<readJSONZT4WebAPIDeviceInfo>, "Read Device information via Web API"},
    {"readJSONZT4WebAPIDataConnectors", readingDataConnectors, "Read Data connectors via Web API"},
    {"readJSONZT4WebAPIConfigWeb", reading<readJSONZT4WebAPIConfigWeb>, "Read User configuration web via Web API"},
    {"readJSONZT4WebAPIConfigRadio", reading<readJSONZT4WebAPIConfigRadio>, "Read User configuration RadioLoRa via Web API"},
    {"readJSONZT4WebAPIConfigRadioWithDevEUI", reading<readJSONZT4WebAPIConfigRadioWithDevEUI>, "Read User configuration RadioLoRa via Web API"},
    {"readJSONZT4WebAPIConfigWiFi", reading<readJSONZT4WebAPIConfigWiFi>, "Read User configuration WiFi via Web API"},
    {"readJSONZT4WebAPIConfigEthernet", reading<readJSONZT4WebAPIConfigEthernet>, "Read User configuration Ethernet via Web API"},
    {"readJSONZT4WebAPIConfigModbus", reading<readJSONZT4WebAPIConfigModbus>, "Read User configuration Modbus via Web API"},
    {"readJSONZT4WebAPIConfigBACnet", reading<readJSONZT4WebAPIConfigBACnet>, "Read User configuration BACnet via Web API"},
    {"readJSONZT4WebAPIConfigSetupConnectors", reading<readJSONZT4WebAPIConfigSetupConnectors>, "Read User configuration setup connectors via Web API"},
    {"readJSONZT4WebAPIConfigConnectors", reading<readJSONZT4WebAPIConfigConnectors>, "Read User configuration connectors via Web API"},
    {"readJSONZT4WebAPIConfigConnectorById", readingConnector, "Read User configuration connector 3 via Web API"},
    {"readJSONZT4WebAPIConfigExpert", reading<readJSONZT4WebAPIConfigExpert>, "Read User configuration Expert via Web API"},
    {"writeJSONZT4WebAPIConfigFile", calling<writeJSONZT4WebAPIConfigFile>, "Write User configuration file via Web API"},
    {"writeJSONZT4WebAPISystemFile", calling<writeJSONZT4WebAPISystemFile>, "Write System configuration file via Web API"},
    {"writeJSONZT4WebAPIConfigWeb", calling<writeJSONZT4WebAPIConfigWeb>, "Write User configuration web via Web API"},
    {"writeJSONZT4WebAPIConfigRadio", calling<writeJSONZT4WebAPIConfigRadio>, "Write User configuration RadioLoRa via Web API"},
    {"writeJSONZT4WebAPIConfigWiFi", calling<writeJSONZT4WebAPIConfigWiFi>, "Write User configuration WiFi via Web API"},
    {"writeJSONZT4WebAPIConfigWiFiSSID", calling<writeJSONZT4WebAPIConfigWiFiSSID>, "Write User configuration WiFi SSID via Web API"},
    {"writeJSONZT4WebAPIConfigEthernet", calling<writeJSONZT4WebAPIConfigEthernet>, "Write User configuration Ethernet via Web API"},
    {"writeJSONZT4WebAPIConfigModbus", calling<writeJSONZT4WebAPIConfigModbus>, "Write User configuration Modbus via Web API"},
    {"writeJSONZT4WebAPIConfigBACnet", calling<writeJSONZT4WebAPIConfigBACnet>, "Write User configuration BACnet via Web API"},
    {"writeJSONZT4WebAPIConfigSetupConnectors", calling<writeJSONZT4WebAPIConfigSetupConnectors>, "Write User configuration Setup connectors via Web API"},
    {"writeJSONZT4WebAPIConfigConnectors", calling<writeJSONZT4WebAPIConfigConnectors>, "Write User configuration Connectors via Web API"},
    {"writeJSONZT4WebAPIConfigConnectorById", writingConnector, "Write User configuration Connector 3 via Web API"},
    {"writeJSONZT4WebAPIConfigExpert", calling<writeJSONZT4WebAPIConfigExpert>, "Write User configuration Expert via Web API"},
};

class EveryOperation : public zt4test::WebDevice, public ::testing::WithParamInterface<Operation> {};

TEST_P(EveryOperation, SaysWhatTheWebInterfaceDoesAtLevel6) {
    json_t* argument = json_object();
    GetParam().run(argument);
    json_decref(argument);
    EXPECT_TRUE(zt4test::logged("[" + std::string(GetParam().name) + "]: " + GetParam().line, LOG_INFO)) << zt4test::logDump();
}

INSTANTIATE_TEST_SUITE_P(WebAPI, EveryOperation, ::testing::ValuesIn(kOperations), zt4test::RowName());

using WebExample = zt4test::WebDevice;

// The measurements document is the connector data document of the same image and record.
TEST_F(WebExample, DataConnectorsAreTheConnectorDataDocument) {
    static uint16_t image[ZT4_MODBUS_IMAGE_WORDS];
    for (uint16_t& word : image) word = 0x4120;  // measurements other than zero
    zt4Data data{};
    data.connectors[1].enabled = 1;
    json_t* expected = readJSONZT4DataConnector(image, &data);
    EXPECT_EQ(zt4test::compactOwned(readJSONZT4WebAPIDataConnectors(image, &data)), zt4test::compact(expected));
    EXPECT_EQ(json_array_size(expected), 6u);
    json_decref(expected);
}

// ---- Syntax version 0 --------------------------------------------------------------------------

class Version0 : public zt4test::WebDevice {
protected:
    void SetUp() override {
        WebDevice::SetUp();
        writeFile(kUserFile, R"({"Syntax": {"Version": 0},
 "RadioLoRa": {"Enable": 1, "Protocol": "LoRa", "TransmitMode": 1, "ADBitRate": 1},
 "WiFi": {"Enable": 1, "AddressIP": "10.42.0.1", "StartIP": "10.42.0.100"},
 "Ethernet": {"AddressIP": "192.168.1.66"},
 "Modbus": {"Enable": 0, "Version": 2, "ID": 9},
 "SetupConnectors": {"Setup": 2},
 "Connectors": [{"Cnl": [{"Mode": 4, "Plier": 1, "Name": "Old", "Dir": 0}]}],
 "Expert": {"Sag": {"Enable": 1}}})");
        zt4test::clearLog();
    }
};

struct PassThroughCase {
    const char* name;
    json_t* (*read)(void);
    const char* expected;  // the stored member, compact
};

class Version0PassThrough : public Version0, public ::testing::WithParamInterface<PassThroughCase> {};

TEST_P(Version0PassThrough, GivesTheStoredDocumentAsItIs) {
    EXPECT_EQ(zt4test::compactOwned(GetParam().read()), GetParam().expected) << zt4test::logDump();
}

INSTANTIATE_TEST_SUITE_P(WebAPI, Version0PassThrough, ::testing::Values(
    PassThroughCase{"Radio", readJSONZT4WebAPIConfigRadio, R"({"ADBitRate":1,"Enable":1,"Protocol":"LoRa","TransmitMode":1})"},
    PassThroughCase{"WiFi", readJSONZT4WebAPIConfigWiFi, R"({"AddressIP":"10.42.0.1","Enable":1,"StartIP":"10.42.0.100"})"},
    PassThroughCase{"Modbus", readJSONZT4WebAPIConfigModbus, R"({"Enable":0,"ID":9,"Version":2})"},
    PassThroughCase{"SetupConnectors", readJSONZT4WebAPIConfigSetupConnectors, R"({"Setup":2})"},
    PassThroughCase{"Connectors", readJSONZT4WebAPIConfigConnectors, R"([{"Cnl":[{"Dir":0,"Mode":4,"Name":"Old","Plier":1}]}])"},
    PassThroughCase{"Expert", readJSONZT4WebAPIConfigExpert, R"({"Sag":{"Enable":1}})"}),
    zt4test::RowName());

TEST_F(Version0, TheWiFiSsidWriterRefusesSilently) {
    const std::string before = readFile(kUserFile);
    json_t* wifi = zt4test::parse(R"({"Enable": 1, "SSID": "Elsewhere"})");
    EXPECT_EQ(writeJSONZT4WebAPIConfigWiFiSSID(wifi), -1);
    json_decref(wifi);
    EXPECT_EQ(readFile(kUserFile), before);
    EXPECT_EQ(zt4test::loggedCount("error."), 0) << zt4test::logDump();
}

// Ethernet: the addressing mode is the device's setting, kept when it begins as a known one.
struct AddressingCase {
    const char* name;
    const char* setting;   // the setting file before (null: none)
    const char* document;  // written (null: read instead)
    const char* expected;  // the member read, or the setting file after the write
    const char* logged = nullptr;  // the write's "IPv4Addressing = %s"
};

class Version0Ethernet : public Version0, public ::testing::WithParamInterface<AddressingCase> {};

TEST_P(Version0Ethernet, KeepsTheAddressingInItsSetting) {
    const AddressingCase& c = GetParam();
    constexpr const char* kSetting = "/home/nvram/ethernetipv4addressing";
    c.setting != nullptr ? writeFile(kSetting, c.setting) : removeFile(kSetting);
    if (c.document == nullptr) {
        EXPECT_EQ(zt4test::compactOwned(readJSONZT4WebAPIConfigEthernet()),
                  std::string(R"({"AddressIP":"192.168.1.66","IPv4Addressing":")") + c.expected + "\"}");
        return;
    }
    const std::string before = readFile(kUserFile);
    json_t* ethernet = zt4test::parse(c.document);
    const std::string argument = zt4test::compact(ethernet);
    // The rest goes to the version-0 section writer, which refuses.
    EXPECT_EQ(writeJSONZT4WebAPIConfigEthernet(ethernet), -1);
    EXPECT_EQ(zt4test::compact(ethernet), argument);
    json_decref(ethernet);
    EXPECT_EQ(readFile(kSetting), c.expected);
    EXPECT_EQ(readFile(kUserFile), before);
    EXPECT_TRUE(zt4test::logged(std::string("[writeJSONZT4WebAPIConfigEthernetSyntaxVersion0]: IPv4Addressing = ") + c.logged, LOG_INFO))
        << zt4test::logDump();
}

INSTANTIATE_TEST_SUITE_P(WebAPI, Version0Ethernet, ::testing::Values(
    AddressingCase{"ReadDhcp", "DHCP\n", nullptr, "DHCP"},
    AddressingCase{"ReadBeginsWithStatic", "Static4", nullptr, "Static4"},
    AddressingCase{"ReadCutAtSeven", "DHCPLONGERTEXT", nullptr, "DHCPLON"},
    AddressingCase{"ReadManual", "Manual\n", nullptr, "Static"},
    AddressingCase{"ReadLowerCase", "dhcp\n", nullptr, "Static"},
    AddressingCase{"ReadNoSetting", nullptr, nullptr, "Static"},
    AddressingCase{"WriteManual", "untouched", R"({"IPv4Addressing": "Manual", "AddressIP": "10.0.0.2"})", "Static\n", "Static"},
    AddressingCase{"WriteDhcp", "untouched", R"({"IPv4Addressing": "DHCP"})", "DHCP\n", "DHCP"},
    AddressingCase{"WriteCutToSeven", "untouched", R"({"IPv4Addressing": "DHCPserver"})", "DHCPser\n", "DHCPser"},
    AddressingCase{"WriteNotText", "untouched", R"({"IPv4Addressing": 1})", "Static\n", "Static"},
    AddressingCase{"WriteAbsent", "untouched", R"({"AddressIP": "10.0.0.2"})", "untouched", "Static"}),
    zt4test::RowName());

}  // namespace
