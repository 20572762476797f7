// The JSON layer: typed checks, members and elements by number, document files and text.
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

#include <map>
#include <string>

#include "json/expect.hpp"
#include "json/table_file.hpp"
#include "support/harness.hpp"
#include "zt4config.h"

namespace {

using Check = int (*)(const json_t*, const char*);
const std::map<std::string, Check> kChecks = {
    {"default7", [](const json_t* j, const char* k) { return json_check_integer_default(j, k, 7); }},
    {"atLeast10", [](const json_t* j, const char* k) { return json_check_integer_superior(j, k, 10); }},
    {"port", [](const json_t* j, const char* k) { return json_check_integer_range(j, k, 1024, 65535); }},
    {"atLeast0", [](const json_t* j, const char* k) { return json_check_float_superior(j, k, 0.0f); }},
    {"atLeast100", [](const json_t* j, const char* k) { return json_check_float_superior(j, k, 100.0f); }},
    {"above0", [](const json_t* j, const char* k) { return json_check_float_superior_strict(j, k, 0.0f); }},
    {"fr", [](const json_t* j, const char* k) { return json_check_string_default(j, k, "fr"); }},
    {"text31", [](const json_t* j, const char* k) { return json_check_string_default(j, k, "abcdefghijklmnopqrstuvwxyz01234"); }},
    {"boolean", json_check_boolean}, {"ipv4", json_check_ipv4}, {"addressing", json_check_ipv4_addressing}};

TEST(TypedCheck, PassesOrLogsOneLineAndNeverChangesTheObject) {
    for (const zt4test::Row& row : zt4test::tableFile("json", "checks.tsv")) {
        zt4test::clearLog();
        json_t* document = zt4test::parse(row.at(1).c_str());
        const std::string before = zt4test::compact(document);
        EXPECT_EQ(kChecks.at(row[0])(document, "k"), row.at(2) == "-" ? 0 : -1) << row[0] << " " << row[1];
        EXPECT_EQ(zt4test::compact(document), before);
        EXPECT_EQ(zt4test::capturedLog().size(), row[2] == "-" ? 0u : 1u) << zt4test::logDump();
        EXPECT_TRUE(row[2] == "-" || zt4test::logged(row[2], LOG_ERR)) << zt4test::logDump();
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

// Elements by number and members by key: each returns a new reference or logs why not.
TEST(Readers, ElementsAndMembers) {
    const std::map<std::string, json_t* (*)(json_t*, uint8_t)> elements = {
        {"connector", readJSONZT4ConnectorById}, {"channel", readJSONZT4ChannelById}, {"phase", readJSONZT4PhaseById}};
    const std::map<std::string, json_t* (*)(json_t*, const char*)> members = {{"object", readJSONObject}, {"array", readJSONArray}};
    for (const zt4test::Row& row : zt4test::tableFile("json", "elements.tsv")) {
        ASSERT_EQ(row.size(), 5u);
        zt4test::clearLog();
        json_t* from = row[1] == "-" ? nullptr : zt4test::parse(row[1].c_str());
        json_t* result = elements.count(row[0]) ? elements.at(row[0])(from, static_cast<uint8_t>(std::stoi(row[2])))
                                                : members.at(row[0])(from, zt4test::orNull(row[2]));
        EXPECT_TRUE(result == nullptr || result->refcount == 2u) << row[3];
        zt4test::expectResult(result, row[3].c_str(), zt4test::orNull(row[4]));
        EXPECT_LE(zt4test::capturedLog().size(), 1u) << zt4test::logDump();  // the one line, nothing after it
        EXPECT_TRUE(from == nullptr || from->refcount == 1u);
        json_decref(from);
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
        zt4test::expectResult(readJSONFile(file.c_str()), row.expected, row.line.empty() ? nullptr : row.line.c_str());
    }
    // The file must be writable too: a directory never is, a read-only file is not unless root.
    zt4test::expectResult(readJSONFile(path("/home/nvram").c_str()), "(null)", ("error.[readJSONFile]: fd INVALID for " + path("/home/nvram")).c_str());
    ASSERT_EQ(chmod(file.c_str(), 0444), 0);
    if (geteuid() != 0) zt4test::expectResult(readJSONFile(file.c_str()), "(null)", ("error.[readJSONFile]: fd INVALID for " + file).c_str());
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
    EXPECT_EQ(writeJSONFile(path("/home/nvram/x.json").c_str(), nullptr) + writeJSONFile(nullptr, document), -2);
    EXPECT_FALSE(exists("/home/nvram/x.json"));
    // Text that is not UTF-8 cannot be dumped ASCII-only; the file is already truncated by then.
    json_object_set_new(document, "k", json_string_nocheck("\xff\xfe"));
    EXPECT_EQ(writeJSONFile(path("/home/nvram/out.json").c_str(), document), -1);
    EXPECT_TRUE(zt4test::logged("error.[writeJSONFile]: FAILED dumping '" + path("/home/nvram/out.json") + "'", LOG_ERR));
    EXPECT_EQ(readFile("/home/nvram/out.json"), "");
    json_decref(document);
}

TEST_F(Document, JSONifyParsesWithTheDocumentFlagsAndPrintJSONLogsAboveLevelTwo) {
    zt4test::expectResult(JSONify("{\"b\":[1,2.5],\"a\":\"x\\u0000y\"}"), "{\"a\":\"x\\u0000y\",\"b\":[1,2.5]}", nullptr);
    zt4test::expectResult(JSONify(nullptr), "(null)", "error.[JSONify]: root NULL");
    // A parse failure is a warning carrying the parser's details.
    zt4test::expectResult(JSONify("{\"a\":\n tru}"), "(null)", "error.[JSONify]: json_loads on line 2: text: invalid token near 'tru'. "
                                                      "source: <buffer>. column: 4. position: 10", LOG_WARNING);
    zt4test::expectResult(JSONify("{\"a\":1,\"a\":2}"), "(null)", "error.[JSONify]: json_loads on line 1: text: duplicate object key near "
                                                          "'\"a\"'. source: <buffer>. column: 10. position: 10", LOG_WARNING);
    // printJSON logs the document only above debug level 2.
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
