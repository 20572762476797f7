// The flat parameter file's writers: for each stored section, the exact lines that the daemons
// read, the result, and the line logged (each written line is also logged at level 6).
#include <syslog.h>

#include <map>

#include "config/flat_fixture.hpp"
#include "zt4config/export.h"

extern int debug_level;

namespace {

using Writer = int (*)(FILE*);
using SectionWriter = int (*)(FILE*, const char*);

#define W(name) {#name, name}
const std::map<std::string, Writer> kWriters = {
    W(setParameterConfigWeb), W(setParameterConfigRadio), W(setParameterConfigWiFi), W(setParameterConfigEthernet), W(setParameterConfigModbus),
    W(setParameterConfigBACnet), W(setParameterConfigConnector), W(setParameterSystemDevice), W(setParameterSystemWeb), W(setParameterSystemRadio),
    W(setParameterSystemWiFi), W(setParameterSystemEthernet), W(setParameterSystemModbus), W(setParameterSystemBACnet), W(setParameterSystemConnector),
    W(setParameterSystemExpert), W(setParameterFactorySystemDevice), W(setParameterUserConfigModbusSyntaxVersion1),
    W(setParameterSystemWebSyntaxVersion1), W(setParameterFactorySystemDeviceSyntaxVersion1)};
const std::map<std::string, SectionWriter> kSectionWriters = {W(setParameterConfig), W(setParameterSystem), W(setParameterFactorySystem)};

// Rows of data/flat_writers.json: the document's top-level members ("members", null: no file), the
// writer (with its "section" when it takes one), the lines written, the result and a line logged.
class FlatWriter : public zt4test::DeviceTest, public ::testing::WithParamInterface<const json_t*> {};

TEST_P(FlatWriter, WritesTheLines) {
    const json_t* row = GetParam();
    const std::map<std::string, const char*> paths = {
        {"user", "/home/nvram/zt4config.json"}, {"system", "/home/nvram/zt4system.json"}, {"factory", "/etc/zt4system_factory.json"}};
    for (const auto& entry : paths) writeFile(entry.second, R"({"Syntax": {"Version": 1}})");
    const char* path = paths.at(zt4test::text(row, "document"));
    json_t* members = json_object_get(row, "members");
    if (json_is_object(members)) {
        json_t* document = json_pack("{s{si}}", "Syntax", "Version", 1);
        json_object_update(document, members);
        char* text = json_dumps(document, JSON_PRESERVE_ORDER);
        writeFile(path, text);
        std::free(text);
        json_decref(document);
    } else {
        removeFile(path);
    }
    static const json_t* current = nullptr;
    current = row;
    int result = 7;
    const std::string lines = json_object_get(row, "section") == nullptr
        ? zt4test::linesOf(kWriters.at(zt4test::text(row, "writer")), result)
        : zt4test::linesOf([](FILE* s) { return kSectionWriters.at(zt4test::text(current, "writer"))(s, zt4test::text(current, "section")); }, result);
    EXPECT_EQ(lines, zt4test::text(row, "lines"));
    EXPECT_EQ(result, zt4test::number(row, "result"));
    if (zt4test::text(row, "logged") != nullptr) {
        EXPECT_TRUE(zt4test::logged(zt4test::text(row, "logged"), zt4test::number(row, "priority"))) << zt4test::logDump();
    }
}

INSTANTIATE_TEST_SUITE_P(Sections, FlatWriter, ::testing::ValuesIn(zt4test::dataRows("flat_writers.json")), zt4test::rowName);

// ---- The generic writer ----------------------------------------------------------------------

struct ObjectCase {
    const char* object;
    const char* lines;
    int result;
};

class ObjectWriter : public zt4test::DeviceTest, public ::testing::WithParamInterface<ObjectCase> {};

TEST_P(ObjectWriter, WritesScalarMembers) {
    const ObjectCase& c = GetParam();
    static json_t* current = nullptr;
    current = zt4test::parse(c.object);
    int result = 7;
    EXPECT_EQ(zt4test::linesOf([](FILE* s) { return setParameterConfigJSON(s, "Connector_1", current); }, result), c.lines);
    EXPECT_EQ(result, c.result);
    EXPECT_EQ(zt4test::logged("[setParameterJSON]: value undefined", LOG_INFO), c.result != 0);
    json_decref(current);
}

INSTANTIATE_TEST_SUITE_P(Members, ObjectWriter, ::testing::Values(
    ObjectCase{R"({"OffsetIndex": 5, "Mode": 4, "PhaseOffsetIndex": -1, "OffsetIndexB": 0})", "Connector_1_Mode=4\nConnector_1_PhaseOffsetIndex=-1\n", 0},
    ObjectCase{R"({"Name": "", "Site": "A b"})", "Connector_1_Site=\"A b\"\n", 0},
    ObjectCase{R"({"Factor": 0.1, "Minus": -2})", "Connector_1_Factor=0.100000\nConnector_1_Minus=4294967294\n", 0},
    ObjectCase{R"({"Primary": {"A": 1}, "Transformers": [{"Direction": 0}]})", "", 0},
    ObjectCase{R"({"X": null, "Mode": 1, "Y": true})", "Connector_1_Mode=1\n", -1}));

TEST(FamilyObject, SystemAndFactoryCarryTheirFamily) {
    static json_t* current = zt4test::parse(R"({"Enable": 1})");
    int result = 7;
    EXPECT_EQ(zt4test::linesOf([](FILE* s) { return setParameterSystemJSON(s, "Expert_Sag", current); }, result), "System_Expert_Sag_Enable=1\n");
    EXPECT_EQ(zt4test::linesOf([](FILE* s) { return setParameterFactoryJSON(s, "Connector_2", current); }, result), "Factory_Connector_2_Enable=1\n");
    // Prefixes hold 47 characters.
    EXPECT_EQ(zt4test::linesOf([](FILE* s) { return setParameterSystemJSON(s, "Expert_ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789", current); }, result),
              "System_Expert_ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456_Enable=1\n");
    for (auto write : {setParameterSystemJSON, setParameterFactoryJSON}) {
        zt4test::clearLog();
        EXPECT_EQ(write(stdout, nullptr, current), -1);
        EXPECT_EQ(zt4test::capturedLog().size(), 1u);
    }
    EXPECT_TRUE(zt4test::logged("error.[setParameterFactoryJSON]: section NULL"));
    EXPECT_EQ(setParameterConfigJSON(stdout, nullptr, current), -1);
    EXPECT_TRUE(zt4test::logged("error.[setParameterJSON]: section NULL"));
    json_decref(current);
}

// Above debug level 3 each member's key is logged before its line.
class FlatWriterTrace : public zt4test::DeviceTest {};

TEST_F(FlatWriterTrace, KeysLoggedAboveLevelThree) {
    writeFile("/home/nvram/zt4config.json", R"({"Syntax": {"Version": 1}, "Web": {"Language": "fr"}})");
    for (int level : {3, 4}) {
        debug_level = level;
        int result = 7;
        EXPECT_EQ(zt4test::linesOf(setParameterConfigWeb, result), "Web_Language=\"fr\"\n");
        EXPECT_EQ(zt4test::logged("[setParameterUserConfigWebSyntaxVersion1]: key=Language", LOG_INFO), level == 4);
    }
    debug_level = 0;
}

// Every writer refuses a missing stream.
class NullStream : public zt4test::DeviceTest, public ::testing::WithParamInterface<std::pair<Writer, const char*>> {};

TEST_P(NullStream, IsRefused) {
    for (const char* path : {"/home/nvram/zt4config.json", "/home/nvram/zt4system.json", "/etc/zt4system_factory.json"}) {
        writeFile(path, R"({"Syntax": {"Version": 1}})");
    }
    EXPECT_EQ(GetParam().first(nullptr), -1);
    EXPECT_TRUE(zt4test::logged(std::string("error.[") + GetParam().second + "]: stream NULL", LOG_ERR)) << zt4test::logDump();
    EXPECT_EQ(zt4test::capturedLog().size(), 1u) << zt4test::logDump();
}

INSTANTIATE_TEST_SUITE_P(Writers, NullStream, ::testing::Values(
    std::make_pair(setParameterConfigWeb, "setParameterUserConfigWebSyntaxVersion1"),
    std::make_pair(setParameterConfigConnector, "setParameterUserConfigConnectorsSyntaxVersion1"),
    std::make_pair(setParameterSystemDevice, "setParameterSystemDeviceSyntaxVersion1"),
    std::make_pair(setParameterSystemConnector, "setParameterSystemConnectorsSyntaxVersion1"),
    std::make_pair(setParameterSystemExpert, "setParameterSystemExpertSyntaxVersion1"),
    std::make_pair(setParameterFactorySystemDevice, "setParameterFactorySystemDeviceSyntaxVersion1"),
    std::make_pair<Writer>([](FILE* s) { return setParameterConfigJSON(s, "P", nullptr); }, "setParameterJSON")));

}  // namespace
