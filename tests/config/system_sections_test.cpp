#include <syslog.h>

#include "support/harness.hpp"
#include "zt4config/config.h"
#include "zt4config/system.h"

namespace {

using zt4test::logged;

const char* const kSystemBody =
    "\"Device\":{\"Model\":\"ZT4\"},\"Web\":{\"Debug\":1},\"RadioLoRa\":{\"Enable\":0},"
    "\"WiFi\":{\"Lease\":86400},\"Ethernet\":{\"Enable\":1},\"Modbus\":{\"Port\":502},"
    "\"BACnet\":{\"Debug\":1},\"ElectricalConfiguration\":{\"Connectors\":[{\"Enable\":1},"
    "{\"Enable\":0}],\"Expert\":{\"Sag\":{\"Enable\":0,\"Cycle\":1}}}";

struct ReaderCase {
    const char* name;
    json_t* (*facade)(void);
    json_t* (*version0)(void);
    json_t* (*version1)(void);
    const char* expected;
};

class SystemReader : public zt4test::DeviceTest, public ::testing::WithParamInterface<ReaderCase> {};

// Version 1 and version 0 both hand back the stored section; the facade picks by the system file.
TEST_P(SystemReader, ReturnsTheStoredSectionInBothVersions) {
    const ReaderCase& c = GetParam();
    for (const char* syntax : {"\"Syntax\":{\"Version\":1},", "", "\"Syntax\":{\"Version\":0},"}) {
        writeFile("/home/nvram/zt4system.json", std::string("{") + syntax + kSystemBody + "}");
        for (auto read : {c.facade, c.version0, c.version1}) {
            json_t* section = read();
            EXPECT_EQ(zt4test::compact(section), c.expected) << c.name << " " << syntax;
            json_decref(section);
        }
    }
    // Without a system file the facade goes to version 0, which has nothing to return.
    removeFile("/home/nvram/zt4system.json");
    zt4test::clearLog();
    EXPECT_EQ(c.facade(), nullptr);
    EXPECT_TRUE(logged("error.[readZT4SystemConfigFileSyntaxVersion]: Failed to read System configuration file"));
    EXPECT_EQ(zt4test::loggedCount("SyntaxVersion0]: zt4 NULL"), 1) << zt4test::logDump();
}

INSTANTIATE_TEST_SUITE_P(Sections, SystemReader, ::testing::Values(
    ReaderCase{"Device", readJSONZT4SystemDevice, readJSONZT4SystemDeviceSyntaxVersion0,
               readJSONZT4SystemDeviceSyntaxVersion1, "{\"Model\":\"ZT4\"}"},
    ReaderCase{"Web", readJSONZT4SystemWeb, readJSONZT4SystemWebSyntaxVersion0,
               readJSONZT4SystemWebSyntaxVersion1, "{\"Debug\":1}"},
    ReaderCase{"Radio", readJSONZT4SystemRadio, readJSONZT4SystemRadioLoRaSyntaxVersion0,
               readJSONZT4SystemRadioLoRaSyntaxVersion1, "{\"Enable\":0}"},
    ReaderCase{"WiFi", readJSONZT4SystemWiFi, readJSONZT4SystemWiFiSyntaxVersion0,
               readJSONZT4SystemWiFiSyntaxVersion1, "{\"Lease\":86400}"},
    ReaderCase{"Ethernet", readJSONZT4SystemEthernet, readJSONZT4SystemEthernetSyntaxVersion0,
               readJSONZT4SystemEthernetSyntaxVersion1, "{\"Enable\":1}"},
    ReaderCase{"Modbus", readJSONZT4SystemModbus, readJSONZT4SystemModbusSyntaxVersion0,
               readJSONZT4SystemModbusSyntaxVersion1, "{\"Port\":502}"},
    ReaderCase{"BACnet", readJSONZT4SystemBACnet, readJSONZT4SystemBACnetSyntaxVersion0,
               readJSONZT4SystemBACnetSyntaxVersion1, "{\"Debug\":1}"},
    ReaderCase{"Connector", readJSONZT4SystemConnector, readJSONZT4SystemConnectorsSyntaxVersion0,
               readJSONZT4SystemConnectorsSyntaxVersion1, "[{\"Enable\":1},{\"Enable\":0}]"},
    ReaderCase{"Expert", readJSONZT4SystemExpert, readJSONZT4SystemExpertSyntaxVersion0,
               readJSONZT4SystemExpertSyntaxVersion1, "{\"Sag\":{\"Cycle\":1,\"Enable\":0}}"}),
    [](const ::testing::TestParamInfo<ReaderCase>& p) { return std::string(p.param.name); });

class SystemSections : public zt4test::DeviceTest {};

TEST_F(SystemSections, ElectricalMembersNameWhatIsMissing) {
    struct Case {
        const char* document;
        const char* connectorsLine;
        const char* expertLine;
    } cases[] = {
        {"{\"Syntax\":{\"Version\":1},\"Web\":{}}",
         "error.[readJSONZT4SystemConnectorsSyntaxVersion1]: jsonElectricalConfiguration NULL",
         "error.[readJSONZT4SystemExpertSyntaxVersion1]: jsonElectricalConfiguration NULL"},
        {"{\"Syntax\":{\"Version\":1},\"ElectricalConfiguration\":{\"Connectors\":{},\"Expert\":[]}}",
         "error.[readJSONZT4SystemConnectorsSyntaxVersion1]: FAILED to read System Object Connectors",
         "error.[readJSONZT4SystemExpertSyntaxVersion1]: FAILED to read System Object Expert"},
    };
    for (const Case& c : cases) {
        writeFile("/home/nvram/zt4system.json", c.document);
        zt4test::clearLog();
        EXPECT_EQ(readJSONZT4SystemConnector(), nullptr);
        EXPECT_EQ(readJSONZT4SystemExpert(), nullptr);
        EXPECT_TRUE(logged(c.connectorsLine, LOG_ERR)) << zt4test::logDump();
        EXPECT_TRUE(logged(c.expertLine, LOG_ERR)) << zt4test::logDump();
    }
}

TEST_F(SystemSections, FactoryDeviceFollowsTheFactoryFile) {
    writeFile("/home/nvram/zt4system.json", "{\"Syntax\":{\"Version\":1},\"Device\":{\"Model\":\"user\"}}");
    EXPECT_EQ(readJSONZT4FactorySystemDevice(), nullptr);
    EXPECT_TRUE(logged("error.[readJSONZT4FactorySystemDeviceSyntaxVersion0]: zt4 NULL", LOG_ERR));

    writeFile("/etc/zt4system_factory.json", "{\"Syntax\":{\"Version\":1},\"Device\":{\"Model\":\"factory\"}}");
    zt4test::clearLog();
    json_t* device = readJSONZT4FactorySystemDevice();
    EXPECT_EQ(zt4test::compact(device), "{\"Model\":\"factory\"}");
    json_decref(device);
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();

    writeFile("/etc/zt4system_factory.json", "{\"Syntax\":{\"Version\":1}}");
    EXPECT_EQ(readJSONZT4FactorySystemDeviceSyntaxVersion1(), nullptr);
    EXPECT_TRUE(logged("error.[readJSONZT4FactorySystemByKeyObject]: FAILED to read Object Device", LOG_ERR));
}

TEST_F(SystemSections, ConnectorById) {
    struct Case {
        unsigned id;
        const char* document;  // nullptr: no system file
        const char* expected;  // compact connector, or nullptr
        const char* line;
    } cases[] = {
        {0, "{\"Syntax\":{\"Version\":1}}", nullptr, "error.[readJSONZT4SystemConnectorById]: Connector id=0 INVALID"},
        {7, "{\"Syntax\":{\"Version\":1}}", nullptr, "error.[readJSONZT4SystemConnectorById]: Connector id=7 INVALID"},
        {1, nullptr, nullptr, "error.[readJSONZT4SystemConnectorById]: jsonConnectors NULL"},
        {1, "{\"Syntax\":{\"Version\":1},\"Web\":{}}", nullptr, "error.[readJSONZT4SystemConnectorById]: jsonConnectors NULL"},
        // The message counts from zero: connector 3 of two is "Connector2".
        {3, "{\"Syntax\":{\"Version\":1},\"ElectricalConfiguration\":{\"Connectors\":[{\"Enable\":1},{\"Enable\":0}]}}",
         nullptr, "error.[readJSONZT4SystemConnectorById]: FAILED to read Object Connector2"},
        {2, "{\"Syntax\":{\"Version\":1},\"ElectricalConfiguration\":{\"Connectors\":[{\"Enable\":1},{\"Enable\":0}]}}",
         "{\"Enable\":0}", nullptr},
        {1, "{\"ElectricalConfiguration\":{\"Connectors\":[{\"Enable\":1}]}}", "{\"Enable\":1}", nullptr},
    };
    for (const Case& c : cases) {
        if (c.document) writeFile("/home/nvram/zt4system.json", c.document); else removeFile("/home/nvram/zt4system.json");
        zt4test::clearLog();
        json_t* connector = readJSONZT4SystemConnectorById(static_cast<uint8_t>(c.id));
        EXPECT_EQ(zt4test::compact(connector), c.expected ? c.expected : "(null)") << c.id;
        if (c.line) {
            EXPECT_TRUE(logged(c.line, LOG_ERR)) << zt4test::logDump();
        }
        json_decref(connector);
    }
}

}  // namespace
