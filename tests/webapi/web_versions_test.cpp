// What the web documents do on each syntax version of the user document: their level-6 lines,
// the older documents passed through, the Ethernet addressing
// setting and the WiFi SSID writer of older devices.
#include <syslog.h>

#include <string>

#include "webapi/web_device.hpp"
#include "zt4config.h"

namespace {

using zt4test::compactOwned;
using zt4test::kUserFile;

struct RowName {
    template <class Row>
    std::string operator()(const ::testing::TestParamInfo<Row>& row) const { return row.param.name; }
};

// Every operation of the family, run with one argument that its writers refuse or its readers
// ignore; the result is 0 for success and -1 for failure (a null document counts as failure).
struct Operation {
    const char* name;
    int (*run)(json_t* argument);
    const char* line;  // level 6
};

template <json_t* (*Read)(void)>
int reading(json_t*) {
    json_t* result = Read();
    json_decref(result);
    return result != nullptr ? 0 : -1;
}
template <json_t* (*Read)(uint8_t)>
int readingConnector(json_t*) {
    json_t* result = Read(3);
    json_decref(result);
    return result != nullptr ? 0 : -1;
}
int readingDataConnectors(json_t*) {
    static uint16_t image[ZT4_MODBUS_IMAGE_WORDS];
    zt4Data data{};
    json_t* result = readJSONZT4WebAPIDataConnectors(image, &data);
    json_decref(result);
    return result != nullptr ? 0 : -1;
}
template <int (*Write)(json_t*, uint8_t)>
int writingConnector(json_t* argument) { return Write(argument, 3); }

const Operation kOperations[] = {
    {"readJSONZT4WebAPIConfigFile", reading<readJSONZT4WebAPIConfigFile>, "Read User configuration file via Web API"},
    {"readJSONZT4WebAPISystemFile", reading<readJSONZT4WebAPISystemFile>, "Read System configuration file via Web API"},
    {"readJSONZT4WebAPIDeviceInfo", readJSONZT4WebAPIDeviceInfo, "Read Device information via Web API"},
    {"readJSONZT4WebAPIDataConnectors", readingDataConnectors, "Read Data connectors via Web API"},
    {"readJSONZT4WebAPIConfigWeb", reading<readJSONZT4WebAPIConfigWeb>, "Read User configuration web via Web API"},
    {"readJSONZT4WebAPIConfigRadio", reading<readJSONZT4WebAPIConfigRadio>, "Read User configuration RadioLoRa via Web API"},
    {"readJSONZT4WebAPIConfigRadioWithDevEUI", reading<readJSONZT4WebAPIConfigRadioWithDevEUI>,
     "Read User configuration RadioLoRa via Web API"},
    {"readJSONZT4WebAPIConfigWiFi", reading<readJSONZT4WebAPIConfigWiFi>, "Read User configuration WiFi via Web API"},
    {"readJSONZT4WebAPIConfigEthernet", reading<readJSONZT4WebAPIConfigEthernet>, "Read User configuration Ethernet via Web API"},
    {"readJSONZT4WebAPIConfigModbus", reading<readJSONZT4WebAPIConfigModbus>, "Read User configuration Modbus via Web API"},
    {"readJSONZT4WebAPIConfigBACnet", reading<readJSONZT4WebAPIConfigBACnet>, "Read User configuration BACnet via Web API"},
    {"readJSONZT4WebAPIConfigSetupConnectors", reading<readJSONZT4WebAPIConfigSetupConnectors>,
     "Read User configuration setup connectors via Web API"},
    {"readJSONZT4WebAPIConfigConnectors", reading<readJSONZT4WebAPIConfigConnectors>,
     "Read User configuration connectors via Web API"},
    {"readJSONZT4WebAPIConfigConnectorById", readingConnector<readJSONZT4WebAPIConfigConnectorById>,
     "Read User configuration connector 3 via Web API"},
    {"readJSONZT4WebAPIConfigExpert", reading<readJSONZT4WebAPIConfigExpert>, "Read User configuration Expert via Web API"},
    {"writeJSONZT4WebAPIConfigFile", writeJSONZT4WebAPIConfigFile, "Write User configuration file via Web API"},
    {"writeJSONZT4WebAPISystemFile", writeJSONZT4WebAPISystemFile, "Write System configuration file via Web API"},
    {"writeJSONZT4WebAPIConfigWeb", writeJSONZT4WebAPIConfigWeb, "Write User configuration web via Web API"},
    {"writeJSONZT4WebAPIConfigRadio", writeJSONZT4WebAPIConfigRadio, "Write User configuration RadioLoRa via Web API"},
    {"writeJSONZT4WebAPIConfigWiFi", writeJSONZT4WebAPIConfigWiFi, "Write User configuration WiFi via Web API"},
    {"writeJSONZT4WebAPIConfigWiFiSSID", writeJSONZT4WebAPIConfigWiFiSSID, "Write User configuration WiFi SSID via Web API"},
    {"writeJSONZT4WebAPIConfigEthernet", writeJSONZT4WebAPIConfigEthernet, "Write User configuration Ethernet via Web API"},
    {"writeJSONZT4WebAPIConfigModbus", writeJSONZT4WebAPIConfigModbus, "Write User configuration Modbus via Web API"},
    {"writeJSONZT4WebAPIConfigBACnet", writeJSONZT4WebAPIConfigBACnet, "Write User configuration BACnet via Web API"},
    {"writeJSONZT4WebAPIConfigSetupConnectors", writeJSONZT4WebAPIConfigSetupConnectors,
     "Write User configuration Setup connectors via Web API"},
    {"writeJSONZT4WebAPIConfigConnectors", writeJSONZT4WebAPIConfigConnectors, "Write User configuration Connectors via Web API"},
    {"writeJSONZT4WebAPIConfigConnectorById", writingConnector<writeJSONZT4WebAPIConfigConnectorById>,
     "Write User configuration Connector 3 via Web API"},
    {"writeJSONZT4WebAPIConfigExpert", writeJSONZT4WebAPIConfigExpert, "Write User configuration Expert via Web API"},
};

class EveryOperation : public zt4test::WebDevice, public ::testing::WithParamInterface<Operation> {};

TEST_P(EveryOperation, SaysWhatTheWebInterfaceDoesAtLevel6) {
    const Operation& op = GetParam();
    json_t* argument = json_object();
    op.run(argument);
    json_decref(argument);
    EXPECT_TRUE(zt4test::logged("[" + std::string(op.name) + "]: " + op.line, LOG_INFO)) << zt4test::logDump();
}

INSTANTIATE_TEST_SUITE_P(WebAPI, EveryOperation, ::testing::ValuesIn(kOperations), RowName());

using WebExample = zt4test::WebDevice;

// The measurements document is the connector data document of the same image and record.
TEST_F(WebExample, DataConnectorsAreTheConnectorDataDocument) {
    static uint16_t image[ZT4_MODBUS_IMAGE_WORDS];
    for (uint16_t& word : image) word = 0x4120;  // measurements other than zero
    zt4Data data{};
    data.connectors[1].enabled = 1;
    json_t* document = readJSONZT4WebAPIDataConnectors(image, &data);
    json_t* expected = readJSONZT4DataConnector(image, &data);
    ASSERT_NE(document, nullptr) << zt4test::logDump();
    EXPECT_EQ(json_array_size(document), 6u);
    EXPECT_EQ(zt4test::compact(document), zt4test::compact(expected));
    json_decref(document);
    json_decref(expected);
}

// ---- Syntax version 0 --------------------------------------------------------------------------

constexpr const char* kVersion0Document = R"({
 "Syntax": {"Version": 0},
 "Web": {"Language": "fr"},
 "RadioLoRa": {"Enable": 1, "Protocol": "LoRa", "TransmitMode": 1, "ADBitRate": 1},
 "WiFi": {"Enable": 1, "AddressIP": "10.42.0.1", "Netmask": "255.255.255.0", "StartIP": "10.42.0.100", "EndIP": "10.42.0.120"},
 "Ethernet": {"AddressIP": "192.168.1.66", "Netmask": "255.255.255.0", "GW": "192.168.1.1", "Dns": "8.8.8.8"},
 "Modbus": {"Enable": 0, "Version": 2, "ID": 9},
 "BACnet": {"Enable": 0, "Version": 1},
 "SetupConnectors": {"Setup": 2},
 "Connectors": [{"Cnl": [{"Mode": 4, "Plier": 1, "Enable": 1, "Name": "Old", "Dir": 0, "xGeneral": 1.0, "CTPrimary": 5}]}],
 "Expert": {"Sag": {"Enable": 1}}
})";

class Version0 : public zt4test::WebDevice {
protected:
    void SetUp() override {
        WebDevice::SetUp();
        writeFile(kUserFile, kVersion0Document);
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
    EXPECT_EQ(compactOwned(GetParam().read()), GetParam().expected) << zt4test::logDump();
}

INSTANTIATE_TEST_SUITE_P(WebAPI, Version0PassThrough, ::testing::Values(
    PassThroughCase{"Web", readJSONZT4WebAPIConfigWeb, R"({"Language":"fr"})"},
    PassThroughCase{"Radio", readJSONZT4WebAPIConfigRadio, R"({"ADBitRate":1,"Enable":1,"Protocol":"LoRa","TransmitMode":1})"},
    PassThroughCase{"RadioWithDevEUI", readJSONZT4WebAPIConfigRadioWithDevEUI,
                    R"({"ADBitRate":1,"Enable":1,"Protocol":"LoRa","TransmitMode":1})"},
    PassThroughCase{"WiFi", readJSONZT4WebAPIConfigWiFi,
                    R"({"AddressIP":"10.42.0.1","Enable":1,"EndIP":"10.42.0.120","Netmask":"255.255.255.0","StartIP":"10.42.0.100"})"},
    PassThroughCase{"Modbus", readJSONZT4WebAPIConfigModbus, R"({"Enable":0,"ID":9,"Version":2})"},
    PassThroughCase{"BACnet", readJSONZT4WebAPIConfigBACnet, R"({"Enable":0,"Version":1})"},
    PassThroughCase{"SetupConnectors", readJSONZT4WebAPIConfigSetupConnectors, R"({"Setup":2})"},
    PassThroughCase{"Connectors", readJSONZT4WebAPIConfigConnectors,
                    R"([{"Cnl":[{"CTPrimary":5,"Dir":0,"Enable":1,"Mode":4,"Name":"Old","Plier":1,"xGeneral":1.0}]}])"},
    PassThroughCase{"Expert", readJSONZT4WebAPIConfigExpert, R"({"Sag":{"Enable":1}})"}),
    RowName());

TEST_F(Version0, TheWiFiSsidWriterRefusesSilently) {
    const std::string before = readFile(kUserFile);
    json_t* wifi = zt4test::parse(R"({"Enable": 1, "SSID": "Elsewhere"})");
    EXPECT_EQ(writeJSONZT4WebAPIConfigWiFiSSID(wifi), -1);
    json_decref(wifi);
    EXPECT_EQ(readFile(kUserFile), before);
    EXPECT_EQ(zt4test::loggedCount("error."), 0) << zt4test::logDump();
}

TEST_F(Version0, OtherWritersAreNotSupported) {
    const std::string before = readFile(kUserFile);
    json_t* web = zt4test::parse(R"({"Language": "en"})");
    EXPECT_EQ(writeJSONZT4WebAPIConfigWeb(web), -1);
    json_decref(web);
    EXPECT_EQ(readFile(kUserFile), before);
    EXPECT_TRUE(zt4test::logged("error.[writeJSONZT4UserConfigWebSyntaxVersion0]: syntax version 0 is not supported", LOG_ERR))
        << zt4test::logDump();
}

// Ethernet: the addressing mode is the device's setting, read as it begins.
struct AddressingReadCase {
    const char* name;
    const char* setting;  // null: no setting file
    const char* expected;
};

class Version0EthernetRead : public Version0, public ::testing::WithParamInterface<AddressingReadCase> {};

TEST_P(Version0EthernetRead, AddsTheAddressingSetting) {
    const AddressingReadCase& c = GetParam();
    if (c.setting != nullptr) {
        writeFile("/home/nvram/ethernetipv4addressing", c.setting);
    } else {
        removeFile("/home/nvram/ethernetipv4addressing");
    }
    EXPECT_EQ(compactOwned(readJSONZT4WebAPIConfigEthernet()),
              std::string(R"({"AddressIP":"192.168.1.66","Dns":"8.8.8.8","GW":"192.168.1.1","IPv4Addressing":)") +
                  c.expected + R"(,"Netmask":"255.255.255.0"})")
        << zt4test::logDump();
}

INSTANTIATE_TEST_SUITE_P(WebAPI, Version0EthernetRead, ::testing::Values(
    AddressingReadCase{"Static", "Static\n", R"("Static")"},
    AddressingReadCase{"Dhcp", "DHCP\n", R"("DHCP")"},
    AddressingReadCase{"DhcpWithoutLineEnd", "DHCP", R"("DHCP")"},
    AddressingReadCase{"BeginsWithStatic", "Static4", R"("Static4")"},
    AddressingReadCase{"CutAtSevenCharacters", "DHCPLONGERTEXT", R"("DHCPLON")"},
    AddressingReadCase{"Manual", "Manual\n", R"("Static")"},
    AddressingReadCase{"LowerCase", "dhcp\n", R"("Static")"},
    AddressingReadCase{"NoSetting", nullptr, R"("Static")"}),
    RowName());

struct AddressingWriteCase {
    const char* name;
    const char* document;
    const char* stored;  // the setting file afterwards (written with its line end)
    const char* logged;  // the value in "IPv4Addressing = %s"
};

class Version0EthernetWrite : public Version0, public ::testing::WithParamInterface<AddressingWriteCase> {};

TEST_P(Version0EthernetWrite, StoresTheAddressingSetting) {
    const AddressingWriteCase& c = GetParam();
    writeFile("/home/nvram/ethernetipv4addressing", "untouched");
    const std::string before = readFile(kUserFile);
    json_t* ethernet = zt4test::parse(c.document);
    const std::string argument = zt4test::compact(ethernet);
    // The rest goes to the older section writer, which version 0 does not offer.
    EXPECT_EQ(writeJSONZT4WebAPIConfigEthernet(ethernet), -1);
    EXPECT_EQ(zt4test::compact(ethernet), argument);
    json_decref(ethernet);
    EXPECT_EQ(readFile("/home/nvram/ethernetipv4addressing"), c.stored);
    EXPECT_EQ(readFile(kUserFile), before);
    EXPECT_TRUE(zt4test::logged(std::string("[writeJSONZT4WebAPIConfigEthernetSyntaxVersion0]: IPv4Addressing = ") + c.logged,
                                LOG_INFO))
        << zt4test::logDump();
    EXPECT_TRUE(zt4test::logged("error.[writeJSONZT4UserConfigEthernetSyntaxVersion0]: syntax version 0 is not supported",
                                LOG_ERR));
}

INSTANTIATE_TEST_SUITE_P(WebAPI, Version0EthernetWrite, ::testing::Values(
    AddressingWriteCase{"Manual", R"({"IPv4Addressing": "Manual", "AddressIP": "10.0.0.2"})", "Static\n", "Static"},
    AddressingWriteCase{"Dhcp", R"({"IPv4Addressing": "DHCP"})", "DHCP\n", "DHCP"},
    AddressingWriteCase{"Static", R"({"IPv4Addressing": "Static"})", "Static\n", "Static"},
    AddressingWriteCase{"CutToSeven", R"({"IPv4Addressing": "DHCPserver"})", "DHCPser\n", "DHCPser"},
    AddressingWriteCase{"NotText", R"({"IPv4Addressing": 1})", "Static\n", "Static"},
    AddressingWriteCase{"Absent", R"({"AddressIP": "10.0.0.2"})", "untouched", "Static"}),
    RowName());

}  // namespace
