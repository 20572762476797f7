// The system document: creators of default sections, section checks, readers (both syntax
// versions), writers (checked, filled in, refused) and the tool's system command.
#include <map>

#include "config/flat_fixture.hpp"
#include "config/v1/system_checks.hpp"
#include "json/expect.hpp"
#include "support/cli.hpp"
#include "zt4config/config.h"
#include "zt4config/system.h"

namespace {

using zt4test::compact;
using zt4test::expectResult;
using zt4test::logged;
using zt4test::taken;

constexpr const char* kSystemPath = "/home/nvram/zt4system.json";

#define EXPERT_DEFAULTS(sag)                                                                                            \
    R"({"CircuitBreakerTrip":{"CurrentTransformerThreshold":2},"CurrentAverageMax":{"Enable":0},"CurrentImbalance":{"Enable":0},)" \
    R"("OperatingTime":{"Enable":0},"OverCurrent":{"Enable":0},"PowerImbalance":{"Enable":0},"Sag":)" sag                        \
    R"(,"StartupCycle":{"Enable":0},"Swell":{"Enable":0},"THD":{"Enable":0},"VoltageImbalance":{"Enable":0}})"
#define RADIO(enable, debug) R"({"Baudrate":9600,"Daemon":"radiod","Debug":)" debug R"(,"Enable":)" enable R"(,"PayloadLength":50,"Script":"/etc/scripts/radiod"})"
#define CONNECTORS(a, b, c, d, e, f) R"([{"Enable":)" a R"(},{"Enable":)" b R"(},{"Enable":)" c R"(},{"Enable":)" d R"(},{"Enable":)" e R"(},{"Enable":)" f "}]"

#define CHECK(section) "error.[checkJSONZT4System" section "SyntaxVersion1]: "
#define WRITE(section) "error.[writeJSONZT4System" section "SyntaxVersion1]: "

class SystemTest : public zt4test::DeviceTest {
protected:
    void SetUp() override {
        DeviceTest::SetUp();
        writeFile(kSystemPath, zt4test::exampleFile(kSystemPath));
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
    template <class Edit>
    void editStored(Edit edit) {
        json_t* document = readJSONZT4SystemFile();
        edit(document);
        ASSERT_EQ(writeJSONZT4SystemFile(document), 0);
        json_decref(document);
        zt4test::clearLog();
    }
};

// ---- Creators and checks asked for their defaults ------------------------------------------------

TEST_F(SystemTest, CreatorsAndDefaults) {
    const std::pair<json_t*, const char*> created[] = {
        {createJSONZT4SystemEnable(1), R"({"Enable":1})"},
        {createJSONZT4SystemSagEnableSyntaxVersion1(0), R"({"Cycle":1,"Enable":0})"},
        {createJSONZT4SystemConnector(0), R"({"Enable":0})"},
        {createJSONZT4SystemConnectors(0), CONNECTORS("0", "0", "0", "0", "0", "0")},
        {createJSONZT4SystemConnectors(3), CONNECTORS("1", "1", "1", "0", "0", "0")},
        {createJSONZT4SystemConnectors(6), CONNECTORS("1", "1", "1", "1", "1", "1")},
        {createJSONZT4SystemConnectors(9), CONNECTORS("1", "1", "1", "1", "1", "1")},
        {createJSONZT4SystemExpert(0), EXPERT_DEFAULTS(R"({"Cycle":1,"Enable":0})")},
        {createJSONZT4SystemExpert(1), R"({"CircuitBreakerTrip":{"CurrentTransformerThreshold":2},"CurrentAverageMax":{"Enable":1},"CurrentImbalance":{"Enable":1},)"
                                       R"("OperatingTime":{"Enable":1},"OverCurrent":{"Enable":1},"PowerImbalance":{"Enable":1},"Sag":{"Cycle":1,"Enable":1},)"
                                       R"("StartupCycle":{"Enable":1},"Swell":{"Enable":1},"THD":{"Enable":1},"VoltageImbalance":{"Enable":1}})"},
    };
    for (const auto& c : created) EXPECT_EQ(taken(c.first), c.second);
    // The radio keeps its documented key order.
    json_t* radio = createJSONZT4SystemRadio(0);
    char* text = json_dumps(radio, JSON_COMPACT);
    EXPECT_STREQ(text, R"({"Enable":0,"Daemon":"radiod","Script":"/etc/scripts/radiod","Debug":2,"Baudrate":9600,"PayloadLength":50})");
    free(text);
    json_decref(radio);

    // A check given no section gives its defaults and status -1; the radio takes the stored "Enable".
    editStored([](json_t* d) { json_object_set_new(json_object_get(d, "RadioLoRa"), "Enable", json_integer(257)); });
    const std::pair<json_t* (*)(json_t*, std::int8_t*), const char*> checks[] = {
        {checkJSONZT4SystemWebSyntaxVersion1, R"({"Debug":1})"},
        {checkJSONZT4SystemRadioLoRaSyntaxVersion1, RADIO("1", "2")},
        {checkJSONZT4SystemWiFiSyntaxVersion1, R"({"Daemon":"wifi","Debug":0,"Interface":"wlan0","Lease":86400,"Script":"/etc/scripts/wifi"})"},
        {checkJSONZT4SystemEthernetSyntaxVersion1, R"({"DHCP":0,"Daemon":"ethernet","Enable":1,"Interface":"br0","Script":"/etc/scripts/ethernet"})"},
        {checkJSONZT4SystemModbusSyntaxVersion1, R"({"Daemon":"modbustcpd","Debug":1,"Port":502,"Script":"/etc/scripts/modbustcpd"})"},
        {checkJSONZT4SystemBACnetSyntaxVersion1, R"({"Daemon":"bacnetd","Debug":1,"Script":"/etc/scripts/bacnetd"})"},
        {checkJSONZT4SystemConnectorsSyntaxVersion1, CONNECTORS("1", "1", "1", "1", "1", "1")},
        {checkJSONZT4SystemExpertSyntaxVersion1, EXPERT_DEFAULTS(R"({"Cycle":1,"Enable":0})")},
        {checkJSONZT4SystemExpertSagSyntaxVersion1, R"({"Cycle":1,"Enable":0})"},
        {checkJSONZT4EnableSyntaxVersion1, R"({"Enable":0})"},
    };
    for (const auto& c : checks) {
        std::int8_t status = 0;
        EXPECT_EQ(taken(c.first(nullptr, &status)), c.second);
        EXPECT_EQ(status, -1) << c.second;
    }
    EXPECT_TRUE(logged("[checkJSONZT4SystemExpertSyntaxVersion1]: return Default Expert Object", LOG_ERR));
    EXPECT_EQ(zt4test::loggedCount("error."), 0) << zt4test::logDump();
}

// ---- Readers ----------------------------------------------------------------------------------------

const char* const kSystemBody =
    R"("Device":{"Model":"ZT4"},"Web":{"Debug":1},"RadioLoRa":{"Enable":0},"WiFi":{"Lease":86400},"Ethernet":{"Enable":1},"Modbus":{"Port":502},)"
    R"("BACnet":{"Debug":1},"ElectricalConfiguration":{"Connectors":[{"Enable":1},{"Enable":0}],"Expert":{"Sag":{"Enable":0,"Cycle":1}}}})";

struct ReaderCase {
    const char* name;
    json_t* (*facade)(void);
    json_t* (*version0)(void);
    json_t* (*version1)(void);
    const char* expected;
};

class SystemReader : public zt4test::DeviceTest, public ::testing::WithParamInterface<ReaderCase> {};

// Both versions hand back the stored section; the facade picks by the system file.
TEST_P(SystemReader, ReturnsTheStoredSectionInBothVersions) {
    const ReaderCase& c = GetParam();
    for (const char* syntax : {R"("Syntax":{"Version":1},)", "", R"("Syntax":{"Version":0},)"}) {
        writeFile(kSystemPath, std::string("{") + syntax + kSystemBody);
        for (auto read : {c.facade, c.version0, c.version1}) EXPECT_EQ(taken(read()), c.expected) << c.name << " " << syntax;
    }
    // Version 0 names a missing member; without a system file the facade goes to version 0.
    writeFile(kSystemPath, R"({"Syntax":{"Version":0},"ElectricalConfiguration":{}})");
    zt4test::clearLog();
    EXPECT_EQ(c.version0(), nullptr);
    EXPECT_EQ(zt4test::loggedCount("SyntaxVersion0]: FAILED to read Object "), 1) << zt4test::logDump();
    removeFile(kSystemPath);
    zt4test::clearLog();
    EXPECT_EQ(c.facade(), nullptr);
    EXPECT_TRUE(logged("error.[readZT4SystemConfigFileSyntaxVersion]: Failed to read System configuration file"));
    EXPECT_EQ(zt4test::loggedCount("SyntaxVersion0]: zt4 NULL"), 1) << zt4test::logDump();
}

INSTANTIATE_TEST_SUITE_P(Sections, SystemReader, ::testing::Values(
    ReaderCase{"Device", readJSONZT4SystemDevice, readJSONZT4SystemDeviceSyntaxVersion0, readJSONZT4SystemDeviceSyntaxVersion1, R"({"Model":"ZT4"})"},
    ReaderCase{"Web", readJSONZT4SystemWeb, readJSONZT4SystemWebSyntaxVersion0, readJSONZT4SystemWebSyntaxVersion1, R"({"Debug":1})"},
    ReaderCase{"Radio", readJSONZT4SystemRadio, readJSONZT4SystemRadioLoRaSyntaxVersion0, readJSONZT4SystemRadioLoRaSyntaxVersion1, R"({"Enable":0})"},
    ReaderCase{"WiFi", readJSONZT4SystemWiFi, readJSONZT4SystemWiFiSyntaxVersion0, readJSONZT4SystemWiFiSyntaxVersion1, R"({"Lease":86400})"},
    ReaderCase{"Ethernet", readJSONZT4SystemEthernet, readJSONZT4SystemEthernetSyntaxVersion0, readJSONZT4SystemEthernetSyntaxVersion1, R"({"Enable":1})"},
    ReaderCase{"Modbus", readJSONZT4SystemModbus, readJSONZT4SystemModbusSyntaxVersion0, readJSONZT4SystemModbusSyntaxVersion1, R"({"Port":502})"},
    ReaderCase{"BACnet", readJSONZT4SystemBACnet, readJSONZT4SystemBACnetSyntaxVersion0, readJSONZT4SystemBACnetSyntaxVersion1, R"({"Debug":1})"},
    ReaderCase{"Connector", readJSONZT4SystemConnector, readJSONZT4SystemConnectorsSyntaxVersion0, readJSONZT4SystemConnectorsSyntaxVersion1, R"([{"Enable":1},{"Enable":0}])"},
    ReaderCase{"Expert", readJSONZT4SystemExpert, readJSONZT4SystemExpertSyntaxVersion0, readJSONZT4SystemExpertSyntaxVersion1, R"({"Sag":{"Cycle":1,"Enable":0}})"}),
    [](const ::testing::TestParamInfo<ReaderCase>& p) { return std::string(p.param.name); });

TEST_F(SystemTest, ReadersNameWhatIsMissing) {
    writeFile(kSystemPath, R"({"Syntax":{"Version":1},"Web":{}})");
    expectResult(readJSONZT4SystemConnector(), nullptr, "error.[readJSONZT4SystemConnectorsSyntaxVersion1]: jsonElectricalConfiguration NULL");
    expectResult(readJSONZT4SystemExpert(), nullptr, "error.[readJSONZT4SystemExpertSyntaxVersion1]: jsonElectricalConfiguration NULL");
    writeFile(kSystemPath, R"({"Syntax":{"Version":1},"ElectricalConfiguration":{"Connectors":{},"Expert":[]}})");
    expectResult(readJSONZT4SystemConnector(), nullptr, "error.[readJSONZT4SystemConnectorsSyntaxVersion1]: FAILED to read System Object Connectors");
    expectResult(readJSONZT4SystemExpert(), nullptr, "error.[readJSONZT4SystemExpertSyntaxVersion1]: FAILED to read System Object Expert");
    // The factory device follows the factory file.
    expectResult(readJSONZT4FactorySystemDevice(), nullptr, "error.[readJSONZT4FactorySystemDeviceSyntaxVersion0]: zt4 NULL");
    writeFile("/etc/zt4system_factory.json", R"({"Syntax":{"Version":1},"Device":{"Model":"factory"}})");
    zt4test::clearLog();
    expectResult(readJSONZT4FactorySystemDevice(), R"({"Model":"factory"})", nullptr);
    writeFile("/etc/zt4system_factory.json", R"({"Syntax":{"Version":1}})");
    expectResult(readJSONZT4FactorySystemDeviceSyntaxVersion1(), nullptr, "error.[readJSONZT4FactorySystemByKeyObject]: FAILED to read Object Device");
    // Connectors by id; the message counts from zero: connector 3 of two is "Connector2".
    const char* const two = R"({"Syntax":{"Version":1},"ElectricalConfiguration":{"Connectors":[{"Enable":1},{"Enable":0}]}})";
    const std::tuple<unsigned, const char*, const char*, const char*> cases[] = {
        {0, two, nullptr, "error.[readJSONZT4SystemConnectorById]: Connector id=0 INVALID"},
        {7, two, nullptr, "error.[readJSONZT4SystemConnectorById]: Connector id=7 INVALID"},
        {1, nullptr, nullptr, "error.[readJSONZT4SystemConnectorById]: jsonConnectors NULL"},
        {3, two, nullptr, "error.[readJSONZT4SystemConnectorById]: FAILED to read Object Connector2"},
        {2, two, R"({"Enable":0})", nullptr},
        {6, R"({"ElectricalConfiguration":{"Connectors":[{},{},{},{},{},{"Enable":1}]}})", R"({"Enable":1})", nullptr},
    };
    for (const auto& [id, document, expected, line] : cases) {
        if (document) writeFile(kSystemPath, document); else removeFile(kSystemPath);
        zt4test::clearLog();
        json_t* connector = readJSONZT4SystemConnectorById(static_cast<uint8_t>(id));
        if (line) expectResult(connector, expected, line);
        else { EXPECT_EQ(taken(connector), expected) << id; }
    }
}

// ---- Writers -----------------------------------------------------------------------------------------

// Rows of data/system_writers.json: the writer, the stored member it writes (in "ElectricalConfiguration"
// when "inner"), removed first when "removeStored", the input, the stored member expected afterwards
// (null: unchanged), lines logged at level 3 and the number of lines with " NULL".
class SystemWriter : public SystemTest, public ::testing::WithParamInterface<const json_t*> {};

TEST_P(SystemWriter, StoresOnlyValidSections) {
    const json_t* row = GetParam();
    static const std::map<std::string, int (*)(json_t*)> writers = {
        {"writeJSONZT4SystemWeb", writeJSONZT4SystemWeb}, {"writeJSONZT4SystemRadio", writeJSONZT4SystemRadio},
        {"writeJSONZT4SystemWiFi", writeJSONZT4SystemWiFi}, {"writeJSONZT4SystemEthernet", writeJSONZT4SystemEthernet},
        {"writeJSONZT4SystemModbus", writeJSONZT4SystemModbus}, {"writeJSONZT4SystemBACnet", writeJSONZT4SystemBACnet},
        {"writeJSONZT4SystemConnector", writeJSONZT4SystemConnector}, {"writeJSONZT4SystemExpert", writeJSONZT4SystemExpert}};
    const char* section = zt4test::text(row, "section");
    const char* inner = zt4test::text(row, "inner");
    if (json_is_true(json_object_get(row, "removeStored"))) {
        editStored([&](json_t* d) { json_object_del(inner ? json_object_get(d, section) : d, inner ? inner : section); });
    }
    const std::string before = stored(section, inner);
    zt4test::clearLog();
    json_t* input = json_deep_copy(json_object_get(row, "input"));
    EXPECT_EQ(writers.at(zt4test::text(row, "writer"))(input), 0);
    EXPECT_EQ(compact(input), zt4test::member(row, "input")) << "the caller's section is not modified";
    json_decref(input);
    EXPECT_EQ(stored(section, inner), json_is_null(json_object_get(row, "expected")) ? before : zt4test::member(row, "expected"));
    zt4test::expectLogged(row, "lines", LOG_ERR);
    EXPECT_EQ(zt4test::loggedCount(" NULL"), zt4test::number(row, "nullLines")) << zt4test::logDump();
}

INSTANTIATE_TEST_SUITE_P(Sections, SystemWriter, ::testing::ValuesIn(zt4test::dataRows("system_writers.json")), zt4test::rowName);

TEST_F(SystemTest, RefusedWritesTouchNoFile) {
    const std::tuple<void (*)(json_t*), int (*)(json_t*), const char*, int, const char*> cases[] = {
        {[](json_t* d) { json_object_del(d, "RadioLoRa"); }, writeJSONZT4SystemRadio, R"({"Enable":1})", -1,
         CHECK("RadioLoRa") "FAILED to read system configuration RadioLoRa\n" WRITE("RadioLoRa") "FAILED to check SystemRadioLoRa JSON object"},
        {[](json_t* d) { json_object_del(json_object_get(d, "RadioLoRa"), "Enable"); }, writeJSONZT4SystemRadio, R"({"Enable":1})", -1,
         CHECK("RadioLoRa") "FAILED to read system configuration RadioLoRa parameter Enable"},
        {[](json_t* d) { json_object_del(d, "ElectricalConfiguration"); }, writeJSONZT4SystemConnector, R"([{"Enable":1}])", -1, WRITE("Connectors") "system jsonEC NULL"},
        {[](json_t* d) { json_object_del(d, "ElectricalConfiguration"); }, writeJSONZT4SystemExpert, "{}", -1, WRITE("Expert") "system jsonEC NULL"},
        {[](json_t* d) { json_object_del(json_object_get(d, "ElectricalConfiguration"), "Connectors"); }, writeJSONZT4SystemConnector, "[{}]", 0,
         CHECK("Connectors") "System Connectors NULL\n" WRITE("Connectors") "INVALID Configuration Connector"},
        {[](json_t* d) { json_object_set_new(json_object_get(d, "ElectricalConfiguration"), "Connectors", json_pack("[{si}{si}]", "Enable", 1, "Enable", 1)); }, writeJSONZT4SystemConnector,
         R"([{"Enable":1},{"Enable":1},{}])", 0, CHECK("Connectors") "FAILED to read File JSON SystemConnector3"},
        {[](json_t* d) { json_object_del(json_array_get(json_object_get(json_object_get(d, "ElectricalConfiguration"), "Connectors"), 1), "Enable"); },
         writeJSONZT4SystemConnector, R"([{"Enable":1},{}])", 0, CHECK("Connectors") "FAILED to read File JSON SystemConnectorEnable2"},
        {[](json_t* d) { json_object_del(json_object_get(d, "ElectricalConfiguration"), "Expert"); }, writeJSONZT4SystemExpert, "{}", 0, ""},
        {[](json_t* d) { json_object_del(d, "Syntax"); }, writeJSONZT4SystemWeb, R"({"Debug":1})", -1, "error.[writeJSONZT4SystemWebSyntaxVersion0]: syntax version 0 is not supported"},
    };
    for (const auto& [prepare, write, text, expected, lines] : cases) {
        writeFile(kSystemPath, zt4test::exampleFile(kSystemPath));
        editStored(prepare);
        const std::string before = readFile(kSystemPath);
        json_t* input = zt4test::parse(text);
        EXPECT_EQ(write(input), expected) << lines;
        json_decref(input);
        // Only existing members of the electrical configuration are updated: a missing Expert stays missing.
        EXPECT_EQ(readFile(kSystemPath), before) << lines;
        std::istringstream in(lines);
        for (std::string line; std::getline(in, line);) { EXPECT_TRUE(logged(line, LOG_ERR)) << line << "\n" << zt4test::logDump(); }
    }
    for (auto write : {writeJSONZT4SystemWebSyntaxVersion1, writeJSONZT4SystemExpertSyntaxVersion1}) EXPECT_EQ(write(nullptr), -1);
    EXPECT_TRUE(logged(WRITE("Web") "json NULL", LOG_ERR));
    EXPECT_TRUE(logged(WRITE("Expert") "json NULL", LOG_ERR));
}

// ---- The tool's system command -------------------------------------------------------------------

struct CliCase {
    const char* args;
    int status;
    const char* output;  // fragment of stdout and stderr together
    const char* stored;  // fragment the system file must hold afterwards, or null
};
void PrintTo(const CliCase& c, std::ostream* out) { *out << c.args; }

class SystemCli : public SystemTest, public ::testing::WithParamInterface<CliCase> {};

TEST_P(SystemCli, ExitStatusOutputAndFile) {
    const CliCase& c = GetParam();
    std::string output;
    EXPECT_EQ(zt4test::runCli(root(), c.args, output), c.status) << output;
    EXPECT_NE(output.find(c.output), std::string::npos) << output;
    if (c.stored) { EXPECT_NE(readFile(kSystemPath).find(c.stored), std::string::npos); }
}

INSTANTIATE_TEST_SUITE_P(Commands, SystemCli, ::testing::Values(
    CliCase{"system get modbus", 0, "\"Port\": 502", nullptr},
    CliCase{"system set wifi '{\"Debug\":3}'", 0, "error.[checkJSONZT4SystemWiFiSyntaxVersion1]: Lease NULL", "\"Lease\": 86400"},
    CliCase{"system set modbus '{\"Port\":503}'", 1, "INVALID Configuration Modbus", "\"Port\": 502"},
    CliCase{"system set device '{}'", 2, "device cannot be written", nullptr},
    CliCase{"system get lora", 2, "unknown system section lora", nullptr}));

}  // namespace
