#include "json/expect.hpp"
#include "zt4config/config.h"
#include "zt4config/system.h"

namespace {

using zt4test::expectResult;
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
    writeFile("/home/nvram/zt4system.json", "{\"Syntax\":{\"Version\":1},\"Web\":{}}");
    expectResult(readJSONZT4SystemConnector(), nullptr,
                 "error.[readJSONZT4SystemConnectorsSyntaxVersion1]: jsonElectricalConfiguration NULL");
    expectResult(readJSONZT4SystemExpert(), nullptr,
                 "error.[readJSONZT4SystemExpertSyntaxVersion1]: jsonElectricalConfiguration NULL");
    writeFile("/home/nvram/zt4system.json",
              "{\"Syntax\":{\"Version\":1},\"ElectricalConfiguration\":{\"Connectors\":{},\"Expert\":[]}}");
    expectResult(readJSONZT4SystemConnector(), nullptr,
                 "error.[readJSONZT4SystemConnectorsSyntaxVersion1]: FAILED to read System Object Connectors");
    expectResult(readJSONZT4SystemExpert(), nullptr,
                 "error.[readJSONZT4SystemExpertSyntaxVersion1]: FAILED to read System Object Expert");
}

TEST_F(SystemSections, FactoryDeviceFollowsTheFactoryFile) {
    writeFile("/home/nvram/zt4system.json", "{\"Syntax\":{\"Version\":1},\"Device\":{\"Model\":\"user\"}}");
    expectResult(readJSONZT4FactorySystemDevice(), nullptr, "error.[readJSONZT4FactorySystemDeviceSyntaxVersion0]: zt4 NULL");
    writeFile("/etc/zt4system_factory.json", "{\"Syntax\":{\"Version\":1},\"Device\":{\"Model\":\"factory\"}}");
    zt4test::clearLog();
    expectResult(readJSONZT4FactorySystemDevice(), "{\"Model\":\"factory\"}", nullptr);
    writeFile("/etc/zt4system_factory.json", "{\"Syntax\":{\"Version\":1}}");
    expectResult(readJSONZT4FactorySystemDeviceSyntaxVersion1(), nullptr,
                 "error.[readJSONZT4FactorySystemByKeyObject]: FAILED to read Object Device");
}

TEST_F(SystemSections, ConnectorById) {
    const char* const two = "{\"Syntax\":{\"Version\":1},\"ElectricalConfiguration\":{\"Connectors\":[{\"Enable\":1},{\"Enable\":0}]}}";
    struct Case {
        unsigned id;
        const char* document;  // nullptr: no system file
        const char* expected;  // compact connector, nullptr for a failure
        const char* line;
    } cases[] = {
        {0, two, nullptr, "error.[readJSONZT4SystemConnectorById]: Connector id=0 INVALID"},
        {7, two, nullptr, "error.[readJSONZT4SystemConnectorById]: Connector id=7 INVALID"},
        {1, nullptr, nullptr, "error.[readJSONZT4SystemConnectorById]: jsonConnectors NULL"},
        // The message counts from zero: connector 3 of two is "Connector2".
        {3, two, nullptr, "error.[readJSONZT4SystemConnectorById]: FAILED to read Object Connector2"},
        {2, two, "{\"Enable\":0}", nullptr},
        {1, "{\"ElectricalConfiguration\":{\"Connectors\":[{\"Enable\":1}]}}", "{\"Enable\":1}", nullptr},
    };
    for (const Case& c : cases) {
        if (c.document) writeFile("/home/nvram/zt4system.json", c.document); else removeFile("/home/nvram/zt4system.json");
        zt4test::clearLog();
        json_t* connector = readJSONZT4SystemConnectorById(static_cast<uint8_t>(c.id));
        if (c.line) {
            expectResult(connector, c.expected, c.line);
        } else {
            EXPECT_EQ(zt4test::compact(connector), c.expected) << c.id;
            json_decref(connector);
        }
    }
}

}  // namespace
