// The whole flat file of the example device, byte for byte (data/flat_example.cfg), its failures,
// and the version routing of every flat-file, upgrade and system-document operation.
#include <sys/stat.h>
#include <unistd.h>

#include <functional>
#include <map>

#include "config/flat_fixture.hpp"
#include "zt4config.h"

namespace {

class FlatFile : public zt4test::DeviceTest {
protected:
    void SetUp() override {
        DeviceTest::SetUp();
        for (const char* file : {"/home/nvram/zt4config.json", "/home/nvram/zt4system.json", "/home/nvram/hostapd.conf",
                                 "/etc/zt4config_factory.json"}) {
            writeFile(file, zt4test::exampleFile(file));
        }
    }
};

TEST_F(FlatFile, ExampleDeviceByteForByte) {
    writeFile("/home/nvram/zt4.cfg", std::string(20000, 'x'));
    // Descriptor 0 free, as in a daemon started without stdin: the file may get it.
    const int input = dup(0);
    close(0);
    const int result = printZT4UserConfigFileSyntaxVersion1();  // the version read before would take it
    dup2(input, 0);
    close(input);
    ASSERT_EQ(result, 0) << zt4test::logDump();
    EXPECT_EQ(readFile("/home/nvram/zt4.cfg"), zt4test::dataFile("flat_example.cfg"));
}

TEST_F(FlatFile, UnopenableFileIsRefused) {
    ASSERT_EQ(mkdir(path("/home/nvram/zt4.cfg").c_str(), 0755), 0);
    EXPECT_EQ(printZT4ConfigFile(), -1);
    EXPECT_TRUE(zt4test::logged("error.[printZT4UserConfigFileSyntaxVersion1]: FAILED open file " + path("/home/nvram/zt4.cfg") +
                                ". (Is a directory)", LOG_ERR)) << zt4test::logDump();
}

// A member that cannot be written fails the whole file, yet every other line is there; each
// section's fault is reported under its own writer's name, in the file's order.
TEST_F(FlatFile, FaultsNamedAfterTheirWriters) {
    for (json_t* (*read)(void) : {readJSONZT4ConfigFile, readJSONZT4SystemFile}) {
        json_t* document = read();
        for (const char* section : {"Device", "Web", "RadioLoRa", "WiFi", "Ethernet", "Modbus", "BACnet"}) {
            json_object_set_new(json_object_get(document, section), "Bad", json_null());
        }
        json_object_set_new(json_object_get(document, "Web"), "Language", json_true());
        json_object_set_new(json_object_get(document, "Web"), "Debug", json_false());
        if (read == readJSONZT4SystemFile) json_array_append_new(json_object_get(json_object_get(document, "ElectricalConfiguration"), "Connectors"), json_integer(5));
        ASSERT_EQ(read == readJSONZT4ConfigFile ? writeJSONZT4ConfigFile(document) : writeJSONZT4SystemFile(document), 0);
        json_decref(document);
    }
    zt4test::clearLog();
    EXPECT_EQ(printZT4ConfigFile(), -1);
    EXPECT_EQ(readFile("/home/nvram/zt4.cfg"), zt4test::dataFile("flat_example_faulty.cfg"));
    std::vector<std::string> undefined;
    for (const zt4test::LogEntry& entry : zt4test::capturedLog()) {
        if (entry.text.find("value undefined") != std::string::npos) undefined.push_back(entry.text);
    }
    std::vector<std::string> writers;
    for (const char* writer : {"SystemDevice", "UserConfigWeb", "UserConfigWeb", "UserConfigWeb", "SystemWeb", "SystemWeb", "SystemWeb", "UserConfigRadioLoRa",
                               "SystemRadioLoRa", "UserConfigWiFi", "SystemWiFi", "UserConfigEthernet", "SystemEthernet",
                               "UserConfigModbus", "SystemModbus", "UserConfigBACnet", "SystemBACnet"}) {
        writers.push_back(std::string("[setParameter") + writer + "SyntaxVersion1]: value undefined");
    }
    EXPECT_EQ(undefined, writers);
    EXPECT_TRUE(zt4test::logged("error.[setParameterSystemConnectorsSyntaxVersion1]: jsonConnector7 NULL", LOG_ERR)) << zt4test::logDump();
}

// ---- Routing by syntax version -----------------------------------------------------------------

FILE* sink() {
    static FILE* stream = std::fopen("/dev/null", "w");
    return stream;
}
json_t* document() {
    static json_t* json = json_pack("{s:s,s:s,s:s,s:s,s:i}", "AddressIP", "1.1.1.1", "Netmask", "255.0.0.0", "GW", "1.1.1.1", "Dns",
                                    "1.1.1.1", "Enable", 1);
    return json;
}
ConnectorConfig gConnectors[ZT4_CONNECTOR_COUNT];
zt4Data gData;

// Each operation, called with harmless arguments.
#define S(facade) {#facade, [] { facade(sink()); }}
#define N(facade) {#facade, [] { facade(sink(), "Web"); }}
#define C(facade) {#facade, [] { json_decref(facade(1)); }}
#define D(facade) {#facade, [] { facade(document()); }}
const std::map<std::string, std::function<void()>> kOperations = {
    N(setParameterConfig), S(setParameterConfigWeb), S(setParameterConfigRadio), S(setParameterConfigWiFi),
    S(setParameterConfigEthernet), S(setParameterConfigModbus), S(setParameterConfigBACnet), S(setParameterConfigConnector),
    N(setParameterSystem), S(setParameterSystemDevice), S(setParameterSystemWeb), S(setParameterSystemRadio),
    S(setParameterSystemWiFi), S(setParameterSystemEthernet), S(setParameterSystemModbus), S(setParameterSystemBACnet),
    S(setParameterSystemConnector), S(setParameterSystemExpert), N(setParameterFactorySystem), S(setParameterFactorySystemDevice),
    C(createJSONZT4SystemEnable), C(createJSONZT4SystemRadio), C(createJSONZT4SystemConnector), C(createJSONZT4SystemConnectors),
    C(createJSONZT4SystemExpert), D(updateZT4ConfigEthernet), D(updateZT4ConfigWiFi), D(writeJSONZT4SystemWeb),
    D(writeJSONZT4SystemRadio), D(writeJSONZT4SystemWiFi), D(writeJSONZT4SystemEthernet), D(writeJSONZT4SystemModbus),
    D(writeJSONZT4SystemBACnet), D(writeJSONZT4SystemConnector), D(writeJSONZT4SystemExpert),
    {"printZT4ConfigFile", [] { printZT4ConfigFile(); }}, {"printZT4JSONConfigFile", [] { printZT4JSONConfigFile(); }},
    {"upgradeJSONZT4ConfigFile", [] { upgradeJSONZT4ConfigFile(); }}, {"updateJSONZT4ConfigRadioTransmitMode", [] { updateJSONZT4ConfigRadioTransmitMode(1); }},
    {"updateJSONZT4ConfigSetupConnectors", [] { updateJSONZT4ConfigSetupConnectors(2); }}, {"readZT4SystemConnector", [] { readZT4SystemConnector(gConnectors); }},
    {"readZT4SystemExpert", [] { readZT4SystemExpert(&gData); }}, {"readZT4ConfigConnector", [] { readZT4ConfigConnector(&gData); }},
    {"readZT4ConfigExpert", [] { readZT4ConfigExpert(&gData); }},
};

// Rows of data/flat_routes.json: the operation, its version-0 implementation (which refuses) and
// the document whose syntax version decides.
class Routing : public zt4test::DeviceTest, public ::testing::WithParamInterface<const json_t*> {};

// Each document in turn is the only one of version 0: the operation refuses exactly when it is its own.
TEST_P(Routing, FollowsItsOwnDocument) {
    const std::map<std::string, const char*> paths = {{"user", "/home/nvram/zt4config.json"}, {"system", "/home/nvram/zt4system.json"},
                                                      {"factory system", "/etc/zt4system_factory.json"}, {"factory user", "/etc/zt4config_factory.json"}};
    const std::string refusal = std::string("error.[") + zt4test::text(GetParam(), "version0") + "]: syntax version 0 is not supported";
    for (const auto& version0 : paths) {
        for (const auto& other : paths) writeFile(other.second, other.first == version0.first ? R"({"Web": {}})" : R"({"Syntax": {"Version": 1}})");
        writeFile("/home/nvram/zt4.cfg", "Static_GW=1\n");
        zt4test::clearLog();
        kOperations.at(zt4test::text(GetParam(), "facade"))();
        EXPECT_EQ(zt4test::logged(refusal, LOG_ERR), version0.first == zt4test::text(GetParam(), "document")) << "version 0 in " << version0.second;
    }
}

INSTANTIATE_TEST_SUITE_P(Operations, Routing, ::testing::ValuesIn(zt4test::dataRows("flat_routes.json")), zt4test::rowName);

}  // namespace
