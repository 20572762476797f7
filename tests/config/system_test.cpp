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

// Rows of data/system_defaults.json: a creator with its argument, or a check given no section (its
// defaults, status -1; the radio's takes the stored "Enable"), and the result in its key order.
TEST_F(SystemTest, CreatorsAndDefaults) {
#define F(name) {#name, name}
    const std::map<std::string, json_t* (*)(uint8_t)> creators = {F(createJSONZT4SystemEnable), F(createJSONZT4SystemSagEnableSyntaxVersion1),
        F(createJSONZT4SystemConnector), F(createJSONZT4SystemConnectors), F(createJSONZT4SystemExpert), F(createJSONZT4SystemRadio)};
    const std::map<std::string, json_t* (*)(json_t*, std::int8_t*)> checks = {F(checkJSONZT4SystemWebSyntaxVersion1),
        F(checkJSONZT4SystemRadioLoRaSyntaxVersion1), F(checkJSONZT4SystemWiFiSyntaxVersion1), F(checkJSONZT4SystemEthernetSyntaxVersion1),
        F(checkJSONZT4SystemModbusSyntaxVersion1), F(checkJSONZT4SystemBACnetSyntaxVersion1), F(checkJSONZT4SystemConnectorsSyntaxVersion1),
        F(checkJSONZT4SystemExpertSyntaxVersion1), F(checkJSONZT4SystemExpertSagSyntaxVersion1), F(checkJSONZT4EnableSyntaxVersion1)};
    editStored([](json_t* d) { json_object_set_new(json_object_get(d, "RadioLoRa"), "Enable", json_integer(257)); });
    for (const json_t* row : zt4test::dataRows("system_defaults.json")) {
        const std::string call = zt4test::text(row, "call");
        std::int8_t status = 0;
        json_t* result = creators.count(call) ? creators.at(call)(static_cast<uint8_t>(zt4test::number(row, "argument")))
                                              : checks.at(call)(nullptr, &status);
        char* ordered = json_dumps(result, JSON_COMPACT);
        char* expected = json_dumps(json_object_get(row, "expected"), JSON_COMPACT);
        EXPECT_STREQ(ordered, expected) << zt4test::text(row, "name");
        EXPECT_EQ(status, creators.count(call) ? 0 : -1) << zt4test::text(row, "name");
        std::free(ordered);
        std::free(expected);
        json_decref(result);
    }
    EXPECT_TRUE(logged("[checkJSONZT4SystemExpertSyntaxVersion1]: return Default Expert Object", LOG_ERR));
    EXPECT_EQ(zt4test::loggedCount("error."), 0) << zt4test::logDump();
}

// ---- Readers ----------------------------------------------------------------------------------------

const char* const kSystemBody =
    R"("Device":{"Model":"ZT4"},"Web":{"Debug":1},"RadioLoRa":{"Enable":0},"WiFi":{"Lease":86400},"Ethernet":{"Enable":1},"Modbus":{"Port":502},)"
    R"("BACnet":{"Debug":1},"ElectricalConfiguration":{"Connectors":[{"Enable":1},{"Enable":0}],"Expert":{"Sag":{"Enable":0,"Cycle":1}}}})";

// Each reader's facade, version 0 and version 1, and the section they give.
using ReaderCase = std::tuple<json_t* (*)(void), json_t* (*)(void), json_t* (*)(void), const char*>;

class SystemReader : public zt4test::DeviceTest, public ::testing::WithParamInterface<ReaderCase> {};

// Both versions hand back the stored section; the facade picks by the system file.
TEST_P(SystemReader, ReturnsTheStoredSectionInBothVersions) {
    const auto [facade, version0, version1, expected] = GetParam();
    for (const char* syntax : {R"("Syntax":{"Version":1},)", "", R"("Syntax":{"Version":0},)"}) {
        writeFile(kSystemPath, std::string("{") + syntax + kSystemBody);
        for (auto read : {facade, version0, version1}) EXPECT_EQ(taken(read()), expected) << syntax;
    }
    // Version 0 names a missing member; without a system file the facade goes to version 0.
    writeFile(kSystemPath, R"({"Syntax":{"Version":0},"ElectricalConfiguration":{}})");
    zt4test::clearLog();
    EXPECT_EQ(version0(), nullptr);
    EXPECT_EQ(zt4test::loggedCount("SyntaxVersion0]: FAILED to read Object "), 1) << zt4test::logDump();
    removeFile(kSystemPath);
    zt4test::clearLog();
    EXPECT_EQ(facade(), nullptr);
    EXPECT_TRUE(logged("error.[readZT4SystemConfigFileSyntaxVersion]: Failed to read System configuration file"));
    EXPECT_EQ(zt4test::loggedCount("SyntaxVersion0]: zt4 NULL"), 1) << zt4test::logDump();
}

INSTANTIATE_TEST_SUITE_P(Sections, SystemReader, ::testing::Values(
    ReaderCase{readJSONZT4SystemDevice, readJSONZT4SystemDeviceSyntaxVersion0, readJSONZT4SystemDeviceSyntaxVersion1, R"({"Model":"ZT4"})"},
    ReaderCase{readJSONZT4SystemWeb, readJSONZT4SystemWebSyntaxVersion0, readJSONZT4SystemWebSyntaxVersion1, R"({"Debug":1})"},
    ReaderCase{readJSONZT4SystemRadio, readJSONZT4SystemRadioLoRaSyntaxVersion0, readJSONZT4SystemRadioLoRaSyntaxVersion1, R"({"Enable":0})"},
    ReaderCase{readJSONZT4SystemWiFi, readJSONZT4SystemWiFiSyntaxVersion0, readJSONZT4SystemWiFiSyntaxVersion1, R"({"Lease":86400})"},
    ReaderCase{readJSONZT4SystemEthernet, readJSONZT4SystemEthernetSyntaxVersion0, readJSONZT4SystemEthernetSyntaxVersion1, R"({"Enable":1})"},
    ReaderCase{readJSONZT4SystemModbus, readJSONZT4SystemModbusSyntaxVersion0, readJSONZT4SystemModbusSyntaxVersion1, R"({"Port":502})"},
    ReaderCase{readJSONZT4SystemBACnet, readJSONZT4SystemBACnetSyntaxVersion0, readJSONZT4SystemBACnetSyntaxVersion1, R"({"Debug":1})"},
    ReaderCase{readJSONZT4SystemConnector, readJSONZT4SystemConnectorsSyntaxVersion0, readJSONZT4SystemConnectorsSyntaxVersion1, R"([{"Enable":1},{"Enable":0}])"},
    ReaderCase{readJSONZT4SystemExpert, readJSONZT4SystemExpertSyntaxVersion0, readJSONZT4SystemExpertSyntaxVersion1, R"({"Sag":{"Cycle":1,"Enable":0}})"}));

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

// Rows of data/system_writers.json: "edits" of the stored document (a member's "path" deleted, or set
// to "value"), the writer, the stored member it writes (in "ElectricalConfiguration" when "inner"),
// the input, the result (0 when absent), the stored member expected afterwards (null: unchanged),
// the whole file unchanged when "sameFile", lines logged at level 3 and the lines with " NULL".
class SystemWriter : public SystemTest, public ::testing::WithParamInterface<const json_t*> {};

TEST_P(SystemWriter, StoresOnlyValidSections) {
    const json_t* row = GetParam();
    static const std::map<std::string, int (*)(json_t*)> writers = {
        {"writeJSONZT4SystemWeb", writeJSONZT4SystemWeb}, {"writeJSONZT4SystemRadio", writeJSONZT4SystemRadio},
        {"writeJSONZT4SystemWiFi", writeJSONZT4SystemWiFi}, {"writeJSONZT4SystemEthernet", writeJSONZT4SystemEthernet},
        {"writeJSONZT4SystemModbus", writeJSONZT4SystemModbus}, {"writeJSONZT4SystemBACnet", writeJSONZT4SystemBACnet},
        {"writeJSONZT4SystemConnector", writeJSONZT4SystemConnector}, {"writeJSONZT4SystemExpert", writeJSONZT4SystemExpert}};
    editStored([&](json_t* document) {
        const json_t* edits = json_object_get(row, "edits");
        for (size_t e = 0; e < json_array_size(edits); ++e) {
            const json_t* path = json_object_get(json_array_get(edits, e), "path");
            json_t* parent = document;
            for (size_t i = 0; i + 1 < json_array_size(path); ++i) {
                const json_t* key = json_array_get(path, i);
                parent = json_is_integer(key) ? json_array_get(parent, json_integer_value(key)) : json_object_get(parent, json_string_value(key));
            }
            const char* key = json_string_value(json_array_get(path, json_array_size(path) - 1));
            json_t* value = json_object_get(json_array_get(edits, e), "value");
            if (value != nullptr) json_object_set(parent, key, value);
            else json_object_del(parent, key);
        }
    });
    const char* section = zt4test::text(row, "section");
    const char* inner = zt4test::text(row, "inner");
    const std::string before = stored(section, inner), file = readFile(kSystemPath);
    json_t* input = json_deep_copy(json_object_get(row, "input"));
    EXPECT_EQ(writers.at(zt4test::text(row, "writer"))(input), zt4test::number(row, "result"));
    EXPECT_EQ(compact(input), zt4test::member(row, "input")) << "the caller's section is not modified";
    json_decref(input);
    EXPECT_EQ(stored(section, inner), json_is_object(json_object_get(row, "expected")) || json_is_array(json_object_get(row, "expected"))
                                          ? zt4test::member(row, "expected") : before);
    if (json_is_true(json_object_get(row, "sameFile"))) { EXPECT_EQ(readFile(kSystemPath), file); }
    zt4test::expectLogged(row, "lines", LOG_ERR, root());
    if (json_object_get(row, "nullLines") != nullptr) {
        EXPECT_EQ(zt4test::loggedCount(" NULL"), zt4test::number(row, "nullLines")) << zt4test::logDump();
    }
}

INSTANTIATE_TEST_SUITE_P(Sections, SystemWriter, ::testing::ValuesIn(zt4test::dataRows("system_writers.json")), zt4test::rowName);

TEST_F(SystemTest, NoSectionGiven) {
    for (auto write : {writeJSONZT4SystemWebSyntaxVersion1, writeJSONZT4SystemExpertSyntaxVersion1}) EXPECT_EQ(write(nullptr), -1);
    EXPECT_TRUE(logged(WRITE("Web") "json NULL", LOG_ERR));
    EXPECT_TRUE(logged(WRITE("Expert") "json NULL", LOG_ERR));
}

// ---- The tool's system command: exit status, output and stored file -----------------------------

TEST_F(SystemTest, ToolCommand) {
    const std::tuple<const char*, int, const char*, const char*> cases[] = {
        {"system get modbus", 0, "\"Port\": 502", "\"Port\": 502"},
        {"system set wifi '{\"Debug\":3}'", 0, "error.[checkJSONZT4SystemWiFiSyntaxVersion1]: Lease NULL", "\"Debug\": 3"},
        {"system set modbus '{\"Port\":503}'", 1, "INVALID Configuration Modbus", "\"Port\": 502"},
        {"system get lora", 2, "unknown system section lora", "\"Debug\": 3"}};
    for (const auto& [arguments, status, output, stored] : cases) {
        std::string printed;
        EXPECT_EQ(zt4test::runCli(root(), arguments, printed), status) << arguments << "\n" << printed;
        EXPECT_NE(printed.find(output), std::string::npos) << printed;
        EXPECT_NE(readFile(kSystemPath).find(stored), std::string::npos) << arguments;
    }
}

}  // namespace
