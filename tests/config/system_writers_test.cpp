#include <fstream>
#include <sstream>

#include "json/expect.hpp"
#include "zt4config/config.h"
#include "zt4config/system.h"

namespace {

using zt4test::compact;
using zt4test::logged;

std::string exampleFile(const std::string& devicePath) {
    std::ifstream in(std::string(ZT4_EXAMPLE_DEVICE) + devicePath);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// Names each instance after its case.
struct CaseName {
    template <class Info>
    std::string operator()(const Info& info) const { return info.param.name; }
};

class SystemTest : public zt4test::DeviceTest {
protected:
    void SetUp() override {
        DeviceTest::SetUp();
        writeFile(kSystemPath, exampleFile(kSystemPath));
    }
    // A member of the stored system document, compact; "(null)" when absent.
    std::string stored(const char* key, const char* inner = nullptr) {
        json_t* document = readJSONZT4SystemFile();
        json_t* member = json_object_get(document, key);
        if (inner != nullptr) member = json_object_get(member, inner);
        std::string text = compact(member);
        json_decref(document);
        return text;
    }
    // Rewrites the stored document with `edit` applied.
    template <class Edit>
    void editStored(Edit edit) {
        json_t* document = readJSONZT4SystemFile();
        edit(document);
        ASSERT_EQ(writeJSONZT4SystemFile(document), 0);
        json_decref(document);
        zt4test::clearLog();
    }
    static constexpr const char* kSystemPath = "/home/nvram/zt4system.json";
};

// ---- Creators ------------------------------------------------------------------------------

struct CreatorCase {
    const char* name;
    json_t* (*create)(uint8_t);
    uint8_t argument;
    const char* expected;
};

class SystemCreator : public SystemTest, public ::testing::WithParamInterface<CreatorCase> {};

TEST_P(SystemCreator, BuildsTheDefaultSection) {
    const CreatorCase& c = GetParam();
    json_t* created = c.create(c.argument);
    EXPECT_EQ(compact(created), c.expected);
    json_decref(created);
}

const CreatorCase kCreatorCases[] = {
    CreatorCase{"Enable", createJSONZT4SystemEnable, 1, "{\"Enable\":1}"},
    CreatorCase{"Sag", createJSONZT4SystemSagEnableSyntaxVersion1, 0, "{\"Cycle\":1,\"Enable\":0}"},
    CreatorCase{"Connector", createJSONZT4SystemConnector, 0, "{\"Enable\":0}"},
    CreatorCase{"NoConnector", createJSONZT4SystemConnectors, 0,
                "[{\"Enable\":0},{\"Enable\":0},{\"Enable\":0},{\"Enable\":0},{\"Enable\":0},{\"Enable\":0}]"},
    CreatorCase{"ThreeConnectors", createJSONZT4SystemConnectors, 3,
                "[{\"Enable\":1},{\"Enable\":1},{\"Enable\":1},{\"Enable\":0},{\"Enable\":0},{\"Enable\":0}]"},
    CreatorCase{"NineConnectors", createJSONZT4SystemConnectors, 9,
                "[{\"Enable\":1},{\"Enable\":1},{\"Enable\":1},{\"Enable\":1},{\"Enable\":1},{\"Enable\":1}]"},
    CreatorCase{"Radio", createJSONZT4SystemRadio, 1,
                "{\"Baudrate\":9600,\"Daemon\":\"radiod\",\"Debug\":2,\"Enable\":1,\"PayloadLength\":50,"
                "\"Script\":\"/etc/scripts/radiod\"}"},
    CreatorCase{"Expert", createJSONZT4SystemExpert, 0,
                "{\"CircuitBreakerTrip\":{\"CurrentTransformerThreshold\":2},\"CurrentAverageMax\":{\"Enable\":0},"
                "\"CurrentImbalance\":{\"Enable\":0},\"OperatingTime\":{\"Enable\":0},\"OverCurrent\":{\"Enable\":0},"
                "\"PowerImbalance\":{\"Enable\":0},\"Sag\":{\"Cycle\":1,\"Enable\":0},\"StartupCycle\":{\"Enable\":0},"
                "\"Swell\":{\"Enable\":0},\"THD\":{\"Enable\":0},\"VoltageImbalance\":{\"Enable\":0}}"},
};
INSTANTIATE_TEST_SUITE_P(Items, SystemCreator, ::testing::ValuesIn(kCreatorCases), CaseName());

TEST_F(SystemTest, CreatorsKeepTheDocumentedKeyOrder) {
    json_t* radio = createJSONZT4SystemRadio(0);
    char* text = json_dumps(radio, JSON_COMPACT);
    EXPECT_STREQ(text, "{\"Enable\":0,\"Daemon\":\"radiod\",\"Script\":\"/etc/scripts/radiod\",\"Debug\":2,"
                       "\"Baudrate\":9600,\"PayloadLength\":50}");
    free(text);
    json_decref(radio);
}

// ---- Writers -------------------------------------------------------------------------------

struct WriterCase {
    const char* name;
    int (*write)(json_t*);
    const char* section;   // stored member written (in "ElectricalConfiguration" when `inner`)
    const char* inner;
    const char* input;
    const char* expected;  // stored member afterwards; null: unchanged
    const char* line;      // a line that must have been logged, or null
    int nullLines;         // number of "... NULL" repair lines
};

class SystemWriter : public SystemTest, public ::testing::WithParamInterface<WriterCase> {};

TEST_P(SystemWriter, StoresOnlyValidSections) {
    const WriterCase& c = GetParam();
    const std::string inner = c.inner ? c.inner : "";
    const std::string before = c.inner ? stored(c.section, c.inner) : stored(c.section);
    zt4test::clearLog();
    json_t* input = zt4test::parse(c.input);
    const std::string inputText = compact(input);
    EXPECT_EQ(c.write(input), 0);
    EXPECT_EQ(compact(input), inputText) << "the caller's section is not modified";
    json_decref(input);
    const std::string after = c.inner ? stored(c.section, c.inner) : stored(c.section);
    EXPECT_EQ(after, c.expected ? c.expected : before);
    if (c.line) {
        EXPECT_TRUE(logged(c.line)) << zt4test::logDump();
    }
    EXPECT_EQ(zt4test::loggedCount(" NULL"), c.nullLines) << zt4test::logDump();
}

const WriterCase kWriterCases[] = {
    WriterCase{"WiFiDefaultsFilledIn", writeJSONZT4SystemWiFi, "WiFi", nullptr, "{\"Debug\":3}",
               "{\"Daemon\":\"wifi\",\"Debug\":3,\"Interface\":\"wlan0\",\"Lease\":86400,\"Script\":\"/etc/scripts/wifi\"}",
               "error.[checkJSONZT4SystemWiFiSyntaxVersion1]: Lease NULL", 4},
    WriterCase{"ModbusFixedPort", writeJSONZT4SystemModbus, "Modbus", nullptr, "{\"Port\":503}", nullptr,
               "error.[writeJSONZT4SystemModbusSyntaxVersion1]: INVALID Configuration Modbus", 3},
    WriterCase{"EthernetFixedDhcp", writeJSONZT4SystemEthernet, "Ethernet", nullptr,
               "{\"Enable\":0,\"DHCP\":1,\"Interface\":\"br0\",\"Daemon\":\"ethernet\",\"Script\":\"/etc/scripts/ethernet\"}",
               nullptr, "error.[writeJSONZT4SystemEthernetSyntaxVersion1]: INVALID Configuration Ethernet", 0},
    WriterCase{"BACnetWrongDaemon", writeJSONZT4SystemBACnet, "BACnet", nullptr,
               "{\"Debug\":1,\"Daemon\":\"bacnet\",\"Script\":\"/etc/scripts/bacnetd\"}", nullptr,
               "error.[writeJSONZT4SystemBACnetSyntaxVersion1]: INVALID Configuration BACnet", 0},
    WriterCase{"WebNegativeDebug", writeJSONZT4SystemWeb, "Web", nullptr, "{\"Debug\":-1}", nullptr,
               "error.[writeJSONZT4SystemWebSyntaxVersion1]: INVALID Configuration Web", 0},
    WriterCase{"WebKeepsStoredKeys", writeJSONZT4SystemWeb, "Web", nullptr, "{\"Debug\":4,\"Extra\":1}",
               "{\"Debug\":4,\"Extra\":1}", nullptr, 0},
    WriterCase{"RadioReplacedWhole", writeJSONZT4SystemRadio, "RadioLoRa", nullptr,
               "{\"Enable\":0,\"Debug\":5,\"Baudrate\":9600,\"PayloadLength\":50,\"Daemon\":\"radiod\","
               "\"Script\":\"/etc/scripts/radiod\",\"Note\":\"x\"}",
               "{\"Baudrate\":9600,\"Daemon\":\"radiod\",\"Debug\":5,\"Enable\":0,\"Note\":\"x\",\"PayloadLength\":50,"
               "\"Script\":\"/etc/scripts/radiod\"}", nullptr, 0},
    WriterCase{"RadioMissingEnableAddedAsZero", writeJSONZT4SystemRadio, "RadioLoRa", nullptr, "{\"Debug\":2}",
               "{\"Baudrate\":9600,\"Daemon\":\"radiod\",\"Debug\":2,\"Enable\":0,\"PayloadLength\":50,"
               "\"Script\":\"/etc/scripts/radiod\"}", nullptr, 5},
    WriterCase{"RadioWrongBaudrate", writeJSONZT4SystemRadio, "RadioLoRa", nullptr, "{\"Enable\":1,\"Baudrate\":115200}",
               nullptr, "error.[writeJSONZT4SystemRadioLoRaSyntaxVersion1]: INVALID Configuration RadioLoRa", 4},
    WriterCase{"ConnectorKeepsStoredAvailability", writeJSONZT4SystemConnector, "ElectricalConfiguration",
               "Connectors", "[{\"Enable\":0},{\"Enable\":0},{},{\"Enable\":0},{\"Enable\":0},{\"Enable\":0}]",
               "[{\"Enable\":0},{\"Enable\":0},{\"Enable\":1},{\"Enable\":0},{\"Enable\":0},{\"Enable\":0}]",
               "error.[checkJSONZT4SystemConnectorsSyntaxVersion1]: Enable NULL", 1},
    WriterCase{"ConnectorNotBoolean", writeJSONZT4SystemConnector, "ElectricalConfiguration", "Connectors",
               "[{\"Enable\":2}]", nullptr,
               "error.[writeJSONZT4SystemConnectorsSyntaxVersion1]: INVALID Configuration Connector", 0},
    WriterCase{"SeventhConnector", writeJSONZT4SystemConnector, "ElectricalConfiguration", "Connectors",
               "[{\"Enable\":0},{\"Enable\":0},{\"Enable\":0},{\"Enable\":0},{\"Enable\":0},{\"Enable\":0},{\"Enable\":0}]",
               nullptr, "error.[checkJSONZT4SystemConnectorsSyntaxVersion1]: FAILED to read Object JSON SystemConnector7", 0},
    WriterCase{"SagWrongCycle", writeJSONZT4SystemExpert, "ElectricalConfiguration", "Expert",
               "{\"Sag\":{\"Enable\":1,\"Cycle\":2}}", nullptr,
               "error.[writeJSONZT4SystemExpertSyntaxVersion1]: INVALID Configuration Expert system", 10},
    WriterCase{"ExpertMemberNotBoolean", writeJSONZT4SystemExpert, "ElectricalConfiguration", "Expert",
               "{\"THD\":{\"Enable\":3}}", nullptr,
               "error.[writeJSONZT4SystemExpertSyntaxVersion1]: INVALID Configuration Expert system", 10},
    WriterCase{"ExpertMemberNotObject", writeJSONZT4SystemExpert, "ElectricalConfiguration", "Expert",
               "{\"THD\":1}", nullptr, "error.[checkJSONZT4SystemExpertSyntaxVersion1]: THD NOT JSON_OBJECT", 10},
};
INSTANTIATE_TEST_SUITE_P(Sections, SystemWriter, ::testing::ValuesIn(kWriterCases), CaseName());

// The sag's "Cycle" result decides alone: a wrong "Enable" beside a right "Cycle" is stored.
TEST_F(SystemTest, ExpertWriterFillsMissingMembersWithDefaults) {
    json_t* expert = zt4test::parse("{\"Sag\":{\"Enable\":7,\"Cycle\":1},\"THD\":{\"Enable\":0}}");
    EXPECT_EQ(writeJSONZT4SystemExpert(expert), 0);
    json_decref(expert);
    EXPECT_EQ(stored("ElectricalConfiguration", "Expert"),
              "{\"CircuitBreakerTrip\":{\"CurrentTransformerThreshold\":2},\"CurrentAverageMax\":{\"Enable\":0},"
              "\"CurrentImbalance\":{\"Enable\":0},\"OperatingTime\":{\"Enable\":0},\"OverCurrent\":{\"Enable\":0},"
              "\"PowerImbalance\":{\"Enable\":0},\"Sag\":{\"Cycle\":1,\"Enable\":7},\"StartupCycle\":{\"Enable\":0},"
              "\"Swell\":{\"Enable\":0},\"THD\":{\"Enable\":0},\"VoltageImbalance\":{\"Enable\":0}}");
    EXPECT_TRUE(logged("error.[checkJSONZT4SystemExpertSyntaxVersion1]: Swell NULL"));
}

TEST_F(SystemTest, ElectricalMembersAreUpdatedOnlyWhereStored) {
    editStored([](json_t* document) {
        json_object_del(json_object_get(document, "ElectricalConfiguration"), "Expert");
    });
    json_t* expert = createJSONZT4SystemExpert(1);
    EXPECT_EQ(writeJSONZT4SystemExpert(expert), 0);
    json_decref(expert);
    EXPECT_EQ(stored("ElectricalConfiguration", "Expert"), "(null)");
    EXPECT_NE(stored("ElectricalConfiguration", "Connectors"), "(null)");
}

TEST_F(SystemTest, RefusedWritesTouchNoFile) {
    struct Case {
        const char* name;
        void (*prepare)(json_t* document);
        int (*write)(json_t*);
        const char* input;
        int expected;  // a refused section is reported as written
        const char* line;
    };
    const Case cases[] = {
        {"no stored radio", [](json_t* d) { json_object_del(d, "RadioLoRa"); }, writeJSONZT4SystemRadio,
         "{\"Enable\":1}", -1,
         "error.[checkJSONZT4SystemRadioLoRaSyntaxVersion1]: FAILED to read system configuration RadioLoRa"},
        {"stored radio without Enable",
         [](json_t* d) { json_object_del(json_object_get(d, "RadioLoRa"), "Enable"); }, writeJSONZT4SystemRadio,
         "{\"Enable\":1}", -1, "error.[writeJSONZT4SystemRadioLoRaSyntaxVersion1]: FAILED to check SystemRadioLoRa JSON object"},
        {"no stored electrical configuration", [](json_t* d) { json_object_del(d, "ElectricalConfiguration"); },
         writeJSONZT4SystemConnector, "[{\"Enable\":1}]", -1,
         "error.[writeJSONZT4SystemConnectorsSyntaxVersion1]: system jsonEC NULL"},
        {"connector missing Enable and no stored connectors",
         [](json_t* d) { json_object_del(json_object_get(d, "ElectricalConfiguration"), "Connectors"); },
         writeJSONZT4SystemConnector, "[{}]", 0, "error.[checkJSONZT4SystemConnectorsSyntaxVersion1]: System Connectors NULL"},
        {"version 0 document", [](json_t* d) { json_object_del(d, "Syntax"); }, writeJSONZT4SystemWeb,
         "{\"Debug\":1}", -1, "error.[writeJSONZT4SystemWebSyntaxVersion0]: syntax version 0 is not supported"},
    };
    for (const Case& c : cases) {
        writeFile(kSystemPath, exampleFile(kSystemPath));
        editStored(c.prepare);
        const std::string before = readFile(kSystemPath);
        json_t* input = zt4test::parse(c.input);
        const int result = c.write(input);
        json_decref(input);
        EXPECT_EQ(result, c.expected) << c.name;
        EXPECT_EQ(readFile(kSystemPath), before) << c.name;
        EXPECT_TRUE(logged(c.line)) << c.name << "\n" << zt4test::logDump();
    }
    EXPECT_EQ(writeJSONZT4SystemWebSyntaxVersion1(nullptr), -1);
    EXPECT_TRUE(logged("error.[writeJSONZT4SystemWebSyntaxVersion1]: json NULL"));
}

}  // namespace
