// The JSON layer: typed checks, members and elements by number, document files and text.
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

#include <string>

#include "support/harness.hpp"
#include "zt4config.h"

namespace {

// Checks a result (released here) against its compact text ("(null)" for none), and that `line`
// was the only line logged, at `priority`; a null `line`: nothing logged.
void expectResult(json_t* result, const char* expected, const char* line, int priority = LOG_ERR) {
    EXPECT_EQ(zt4test::compact(result), expected);
    EXPECT_EQ(zt4test::capturedLog().size(), line ? 1u : 0u) << zt4test::logDump();
    EXPECT_TRUE(!line || zt4test::logged(line, priority)) << "missing: " << line << "\n" << zt4test::logDump();
    json_decref(result);
    zt4test::clearLog();
}

using Check = int (*)(const json_t*, const char*);
int default7(const json_t* j, const char* k) { return json_check_integer_default(j, k, 7); }
int atLeast10(const json_t* j, const char* k) { return json_check_integer_superior(j, k, 10); }
int port(const json_t* j, const char* k) { return json_check_integer_range(j, k, 1024, 65535); }
int atLeast0(const json_t* j, const char* k) { return json_check_float_superior(j, k, 0.0f); }
int atLeast100(const json_t* j, const char* k) { return json_check_float_superior(j, k, 100.0f); }
int above0(const json_t* j, const char* k) { return json_check_float_superior_strict(j, k, 0.0f); }
int fr(const json_t* j, const char* k) { return json_check_string_default(j, k, "fr"); }
int text31(const json_t* j, const char* k) { return json_check_string_default(j, k, "abcdefghijklmnopqrstuvwxyz01234"); }

struct CheckRow { Check check; const char* document; const char* line; };  // line "": passes

TEST(TypedCheck, PassesOrLogsOneLineAndNeverChangesTheObject) {
    const CheckRow rows[] = {
        {default7, R"({"k": 7})", ""}, {default7, R"({"k": 8})", "error.[json_check_integer_default]: k value INVALID (8)"},
        {default7, R"({"x": 7})", "error.[json_check_integer_default]: k NULL"},
        {default7, R"({"k": 7.0})", "error.[json_check_integer_default]: k NOT JSON_INTEGER"},
        {atLeast10, R"({"k": 10})", ""}, {atLeast10, R"({"k": 9})", "error.[json_check_integer_superior]: k value INVALID (9)"},
        {port, R"({"k": 1024})", ""}, {port, R"({"k": 65535})", ""},
        {port, R"({"k": 1023})", "error.[json_check_integer_range]: k value INVALID (1023)"},
        {port, R"({"k": 65536})", "error.[json_check_integer_range]: k value INVALID (65536)"},
        {port, R"({"k": 4294968320})", "error.[json_check_integer_range]: k value INVALID (4294968320)"},
        {json_check_boolean, R"({"k": 0})", ""}, {json_check_boolean, R"({"k": 1})", ""},
        {json_check_boolean, R"({"k": 2})", "error.[json_check_boolean]: k value INVALID (2)"},
        {json_check_boolean, R"({"k": -1})", "error.[json_check_boolean]: k value INVALID (-1)"},
        {json_check_boolean, R"({"k": true})", "error.[json_check_boolean]: k NOT JSON_INTEGER"},
        {json_check_boolean, R"({})", "error.[json_check_boolean]: k NULL"},
        {atLeast0, R"({"k": 5})", ""}, {atLeast0, R"({"k": 0.0})", ""},
        {atLeast0, R"({"k": -0.5})", "error.[json_check_float_superior]: k value INVALID (-0.500000)"},
        {atLeast0, R"({"k": "1"})", "error.[json_check_float_superior]: k NOT JSON_REAL"},
        {atLeast0, R"({})", "error.[json_check_float_superior]: k NULL"},
        {atLeast100, R"({"k": 99.9})", "error.[json_check_float_superior]: k value INVALID (99.900000)"},
        {above0, R"({"k": 0})", "error.[json_check_float_superior_strict]: k value INVALID (0.000000)"},
        {above0, R"({"k": 0.001})", ""}, {above0, R"({"k": [1]})", "error.[json_check_float_superior_strict]: k NOT JSON_REAL"},
        {fr, R"({"k": "fr"})", ""}, {fr, R"({"k": "fra"})", "error.[json_check_string_default]: k value INVALID (fra)"},
        {fr, R"({"k": 1})", "error.[json_check_string_default]: k NOT JSON_STRING"},
        {fr, R"({})", "error.[json_check_string_default]: k NULL"},
        // Only the first 31 characters of the stored value take part.
        {text31, R"({"k": "abcdefghijklmnopqrstuvwxyz01234-and-more"})", ""},
        {text31, R"({"k": "abcdefghijklmnopqrstuvwxyz0123"})",
         "error.[json_check_string_default]: k value INVALID (abcdefghijklmnopqrstuvwxyz0123)"},
        {json_check_ipv4, R"({"k": "192.168.1.66"})", ""}, {json_check_ipv4, R"({"k": "0.0.0.0"})", ""},
        {json_check_ipv4, R"({"k": "256.1.1.1"})", "error.[json_check_ipv4]: k value INVALID"},
        {json_check_ipv4, R"({"k": "10.42.0"})", "error.[json_check_ipv4]: k value INVALID"},
        {json_check_ipv4, R"({"k": 10})", "error.[json_check_ipv4]: k NOT JSON_STRING"},
        {json_check_ipv4_addressing, R"({"k": "DHCPv6 please"})", ""}, {json_check_ipv4_addressing, R"({"k": "Statically"})", ""},
        {json_check_ipv4_addressing, R"({"k": "static"})", "error.[json_check_ipv4_addressing]: k value static INVALID"},
        {json_check_ipv4_addressing, R"({"k": "DHC"})", "error.[json_check_ipv4_addressing]: k value DHC INVALID"},
        {json_check_ipv4_addressing, R"({"k": {}})", "error.[json_check_ipv4_addressing]: k NOT JSON_STRING"},
    };
    for (const CheckRow& row : rows) {
        zt4test::clearLog();
        json_t* document = zt4test::parse(row.document);
        const std::string before = zt4test::compact(document);
        EXPECT_EQ(row.check(document, "k"), *row.line ? -1 : 0) << row.document << " " << row.line;
        EXPECT_EQ(zt4test::compact(document), before);
        EXPECT_EQ(zt4test::capturedLog().size(), *row.line ? 1u : 0u) << zt4test::logDump();
        EXPECT_TRUE(!*row.line || zt4test::logged(row.line, LOG_ERR)) << zt4test::logDump();
        json_decref(document);
    }
    zt4test::clearLog();
    EXPECT_EQ(json_check_boolean(nullptr, "k"), -1);
    EXPECT_TRUE(zt4test::logged("error.[json_check_boolean]: json NULL", LOG_ERR));
    json_t* object = json_object();
    EXPECT_EQ(json_check_ipv4(object, nullptr), -1);
    EXPECT_TRUE(zt4test::logged("error.[json_check_ipv4]: key NULL", LOG_ERR));
    json_decref(object);
}

struct ElementRow { json_t* (*read)(json_t*, uint8_t); const char* array; unsigned id; const char* expected; const char* line; };

TEST(ElementById, ReturnsANewReferenceOrLogsWhy) {
    const ElementRow rows[] = {
        {readJSONZT4ConnectorById, "[{\"a\":1},{\"a\":2}]", 2, "{\"a\":2}", nullptr},
        {readJSONZT4ConnectorById, "[{},{},{},{},{},{\"a\":6}]", 6, "{\"a\":6}", nullptr},
        // The connector id is checked before the array; 7 is refused even in a seven-element array.
        {readJSONZT4ConnectorById, nullptr, 0, "(null)", "error.[readJSONZT4ConnectorById]: Connector id=0 INVALID"},
        {readJSONZT4ConnectorById, "[{},{},{},{},{},{},{}]", 7, "(null)", "error.[readJSONZT4ConnectorById]: Connector id=7 INVALID"},
        {readJSONZT4ConnectorById, nullptr, 1, "(null)", "error.[readJSONZT4ConnectorById]: jsonConnectors NULL"},
        {readJSONZT4ConnectorById, "[]", 1, "(null)", "error.[readJSONZT4ConnectorById]: size Array JSON Connect NULL"},
        {readJSONZT4ConnectorById, "[{},{}]", 3, "(null)", "error.[readJSONZT4ConnectorById]: Connector3 not in Array JSON Connect"},
        {readJSONZT4ConnectorById, "[{},[1]]", 2, "(null)", "error.[readJSONZT4ConnectorById]: Connector2 IS NOT Object JSON"},
        // Channels and phases check the array first.
        {readJSONZT4ChannelById, "[{},{},{\"c\":3}]", 3, "{\"c\":3}", nullptr},
        {readJSONZT4ChannelById, nullptr, 9, "(null)", "error.[readJSONZT4ChannelById]: jsonChannels NULL"},
        {readJSONZT4ChannelById, "[{},{},{},{}]", 4, "(null)", "error.[readJSONZT4ChannelById]: Channel id=4 INVALID"},
        {readJSONZT4ChannelById, "[{}]", 0, "(null)", "error.[readJSONZT4ChannelById]: Channel id=0 INVALID"},
        {readJSONZT4ChannelById, "[]", 1, "(null)", "error.[readJSONZT4ChannelById]: size Array JSON Cnl NULL"},
        {readJSONZT4ChannelById, "[{}]", 2, "(null)", "error.[readJSONZT4ChannelById]: Channel2 not in Array JSON Cnl"},
        {readJSONZT4ChannelById, "[1]", 1, "(null)", "error.[readJSONZT4ChannelById]: Channel1 IS NOT Object JSON"},
        {readJSONZT4PhaseById, "[{},{},{\"Enable\":0}]", 3, "{\"Enable\":0}", nullptr},
        {readJSONZT4PhaseById, nullptr, 0, "(null)", "error.[readJSONZT4PhaseById]: jsonPhases NULL"},
        {readJSONZT4PhaseById, "[{},{},{},{}]", 4, "(null)", "error.[readJSONZT4PhaseById]: Phase id=4 INVALID"},
        // Phases keep the channel array's wording.
        {readJSONZT4PhaseById, "[]", 1, "(null)", "error.[readJSONZT4PhaseById]: size Array JSON Cnl NULL"},
        {readJSONZT4PhaseById, "[{},{}]", 3, "(null)", "error.[readJSONZT4PhaseById]: Phase3 not in Array JSON Cnl"},
        {readJSONZT4PhaseById, "[{},\"x\"]", 2, "(null)", "error.[readJSONZT4PhaseById]: Phase2 IS NOT Object JSON"},
    };
    for (const ElementRow& row : rows) {
        zt4test::clearLog();
        json_t* array = row.array ? zt4test::parse(row.array) : nullptr;
        json_t* element = row.read(array, static_cast<uint8_t>(row.id));
        EXPECT_TRUE(element == nullptr || element->refcount == 2u) << row.expected;  // a new reference
        expectResult(element, row.expected, row.line);
        EXPECT_TRUE(array == nullptr || array->refcount == 1u);
        json_decref(array);
    }
}

struct MemberRow { json_t* (*read)(json_t*, const char*); const char* json; const char* key; const char* expected; const char* line; };

TEST(Member, ReturnsANewReferenceOfTheRightType) {
    const MemberRow rows[] = {
        {readJSONObject, "{\"Web\":{\"Port\":80}}", "Web", "{\"Port\":80}", nullptr},
        {readJSONObject, "{\"Web\":[1]}", "Web", "(null)", nullptr},  // another type: quiet
        {readJSONObject, "{}", "Web", "(null)", "error.[readJSONObject]: jsonObject NULL"},
        {readJSONObject, nullptr, "Web", "(null)", "error.[readJSONObject]: json NULL"},
        {readJSONObject, "{}", nullptr, "(null)", "error.[readJSONObject]: key NULL"},
        {readJSONArray, "{\"Phase\":[{}]}", "Phase", "[{}]", nullptr},
        {readJSONArray, "{\"Phase\":{}}", "Phase", "(null)", nullptr},
        {readJSONArray, "{}", "Phase", "(null)", "error.[readJSONArray]: jsonArray NULL"},
        {readJSONArray, nullptr, "Phase", "(null)", "error.[readJSONArray]: json NULL"},
        {readJSONArray, "{}", nullptr, "(null)", "error.[readJSONArray]: key NULL"},
    };
    for (const MemberRow& row : rows) {
        zt4test::clearLog();
        json_t* json = row.json ? zt4test::parse(row.json) : nullptr;
        json_t* member = row.read(json, row.key);
        EXPECT_TRUE(member == nullptr || member->refcount == 2u) << row.expected;
        expectResult(member, row.expected, row.line);
        json_decref(json);
    }
}

class Document : public zt4test::DeviceTest {};

TEST_F(Document, ReadParsesOrSaysWhy) {
    const std::string file = path("/home/nvram/doc.json"), failed = "error.[readJSONFile]: FAILED reading '" + file + "'. ";
    const struct { const char* content; const char* expected; std::string line; } rows[] = {
        {nullptr, "(null)", "error.[readJSONFile]: fd INVALID for " + file},
        {"{\"Syntax\":{\"Version\":1},\"a\":\"x\\u0000y\"}", "{\"Syntax\":{\"Version\":1},\"a\":\"x\\u0000y\"}", ""},
        {"{\"a\":1,\"a\":2}", "(null)", failed + "duplicate object key near '\"a\"'"},
        {"", "(null)", failed + "'[' or '{' expected near end of file"},
    };
    for (const auto& row : rows) {
        if (row.content) writeFile("/home/nvram/doc.json", row.content);
        zt4test::clearLog();
        expectResult(readJSONFile(file.c_str()), row.expected, row.line.empty() ? nullptr : row.line.c_str());
    }
    // The file must be writable too: a directory never is, a read-only file is not unless root.
    expectResult(readJSONFile(path("/home/nvram").c_str()), "(null)", ("error.[readJSONFile]: fd INVALID for " + path("/home/nvram")).c_str());
    ASSERT_EQ(chmod(file.c_str(), 0444), 0);
    if (geteuid() != 0) expectResult(readJSONFile(file.c_str()), "(null)", ("error.[readJSONFile]: fd INVALID for " + file).c_str());
}

TEST_F(Document, WriteKeepsOrderEscapesAndIndentsBy17OrFailsAfterTruncating) {
    json_t* document = zt4test::parse("{\"b\":1,\"a\":[2,{\"c\":\"\xc3\xa9\"}]}");
    writeFile("/home/nvram/out.json", "{\"previous\": 1, \"longer\": \"than what replaces it: truncated\"}");
    ASSERT_EQ(writeJSONFile(path("/home/nvram/out.json").c_str(), document), 0);
    const std::string i1(17, ' '), i2(34, ' '), i3(51, ' ');
    EXPECT_EQ(readFile("/home/nvram/out.json"), "{\n" + i1 + "\"b\": 1,\n" + i1 + "\"a\": [\n" + i2 + "2,\n" + i2 + "{\n" + i3 +
                                                    "\"c\": \"\\u00E9\"\n" + i2 + "}\n" + i1 + "]\n}");
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
    EXPECT_EQ(writeJSONFile(path("/nowhere/out.json").c_str(), document), -1);
    EXPECT_TRUE(zt4test::logged("error.[writeJSONFile]: fd INVALID", LOG_ERR));
    EXPECT_EQ(writeJSONFile(path("/home/nvram/x.json").c_str(), nullptr), -1);
    EXPECT_EQ(writeJSONFile(nullptr, document), -1);
    EXPECT_FALSE(exists("/home/nvram/x.json"));
    // Text that is not UTF-8 cannot be dumped ASCII-only; the file is already truncated by then.
    json_object_set_new(document, "k", json_string_nocheck("\xff\xfe"));
    EXPECT_EQ(writeJSONFile(path("/home/nvram/out.json").c_str(), document), -1);
    EXPECT_TRUE(zt4test::logged("error.[writeJSONFile]: FAILED dumping '" + path("/home/nvram/out.json") + "'", LOG_ERR));
    EXPECT_EQ(readFile("/home/nvram/out.json"), "");
    json_decref(document);
}

TEST_F(Document, JSONifyParsesWithTheDocumentFlags) {
    expectResult(JSONify("{\"b\":[1,2.5],\"a\":\"x\\u0000y\"}"), "{\"a\":\"x\\u0000y\",\"b\":[1,2.5]}", nullptr);
    expectResult(JSONify(nullptr), "(null)", "error.[JSONify]: root NULL");
    // A parse failure is a warning carrying the parser's details.
    expectResult(JSONify("{\"a\":\n tru}"), "(null)", "error.[JSONify]: json_loads on line 2: text: invalid token near 'tru'. "
                                                      "source: <buffer>. column: 4. position: 10", LOG_WARNING);
    expectResult(JSONify("{\"a\":1,\"a\":2}"), "(null)", "error.[JSONify]: json_loads on line 1: text: duplicate object key near "
                                                          "'\"a\"'. source: <buffer>. column: 10. position: 10", LOG_WARNING);
}

TEST_F(Document, PrintJSONLogsOnlyAboveLevelTwo) {
    json_t* value = zt4test::parse("{\"b\":1,\"a\":[true,\"s\"]}");
    const struct { int level; const char* label; const char* line; } rows[] = {
        {2, "Web", nullptr}, {3, "Web", "Web: {\"b\": 1, \"a\": [true, \"s\"]}"}, {7, nullptr, " {\"b\": 1, \"a\": [true, \"s\"]}"}};
    for (const auto& row : rows) {
        zt4test::clearLog();
        debug_level = row.level;
        printJSON(value, row.label);
        EXPECT_EQ(zt4test::capturedLog().size(), row.line ? 1u : 0u) << row.level;
        EXPECT_TRUE(!row.line || zt4test::logged(row.line, LOG_INFO)) << zt4test::logDump();
        printJSON(nullptr, row.label);
        EXPECT_TRUE(zt4test::logged("error.[printJSON]: json NULL", LOG_INFO)) << row.level;
    }
    EXPECT_EQ(value->refcount, 1u);
    json_decref(value);
}

}  // namespace
