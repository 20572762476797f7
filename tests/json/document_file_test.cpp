#include <sys/stat.h>
#include <unistd.h>

#include <syslog.h>

#include "support/harness.hpp"
#include "zt4config/json.h"

namespace {

using zt4test::logged;

class DocumentFile : public zt4test::DeviceTest {};

struct ReadCase {
    const char* name;
    const char* content;  // nullptr: no file
    const char* expected;  // compact document, or nullptr for a failure
    const char* message;   // expected line after "error.[readJSONFile]: ", %s for the path
};

class ReadJsonFile : public zt4test::DeviceTest, public ::testing::WithParamInterface<ReadCase> {};

TEST_P(ReadJsonFile, ParsesOrLogs) {
    const ReadCase& c = GetParam();
    const std::string file = path("/home/nvram/doc.json");
    if (c.content) writeFile("/home/nvram/doc.json", c.content);
    json_t* document = readJSONFile(file.c_str());
    EXPECT_EQ(zt4test::compact(document), c.expected ? c.expected : "(null)");
    if (c.message) {
        std::string expected = c.message;
        expected.replace(expected.find("%s"), 2, file);
        EXPECT_TRUE(logged(std::string("error.[readJSONFile]: ") + expected, LOG_ERR))
            << zt4test::logDump();
    } else {
        EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
    }
    json_decref(document);
}

INSTANTIATE_TEST_SUITE_P(Files, ReadJsonFile, ::testing::Values(
    ReadCase{"Document", "{\"Syntax\":{\"Version\":1},\"Web\":{}}", "{\"Syntax\":{\"Version\":1},\"Web\":{}}", nullptr},
    ReadCase{"NulInsideStringAllowed", "{\"a\":\"x\\u0000y\"}", "{\"a\":\"x\\u0000y\"}", nullptr},
    ReadCase{"Missing", nullptr, nullptr, "fd INVALID for %s"},
    ReadCase{"DuplicateKeys", "{\"a\":1,\"a\":2}", nullptr,
             "FAILED reading '%s'. duplicate object key near '\"a\"'"},
    ReadCase{"Truncated", "{\"a\":", nullptr, "FAILED reading '%s'. unexpected token near end of file"},
    ReadCase{"Empty", "", nullptr, "FAILED reading '%s'. '[' or '{' expected near end of file"}),
    [](const ::testing::TestParamInfo<ReadCase>& p) { return std::string(p.param.name); });

TEST_F(DocumentFile, ReadRefusesWhatCannotBeRewritten) {
    // A directory cannot be opened for writing, whoever runs the test.
    std::string directory = path("/home/nvram");
    EXPECT_EQ(readJSONFile(directory.c_str()), nullptr);
    EXPECT_TRUE(logged("error.[readJSONFile]: fd INVALID for " + directory, LOG_ERR));
    if (geteuid() != 0) {
        writeFile("/home/nvram/ro.json", "{}");
        std::string file = path("/home/nvram/ro.json");
        ASSERT_EQ(chmod(file.c_str(), 0444), 0);
        EXPECT_EQ(readJSONFile(file.c_str()), nullptr);
        EXPECT_TRUE(logged("error.[readJSONFile]: fd INVALID for " + file, LOG_ERR));
    }
    EXPECT_EQ(readJSONFile(nullptr), nullptr);
}

TEST_F(DocumentFile, WriteKeepsOrderEscapesAndIndentsBy17) {
    json_t* document = zt4test::parse("{\"b\":1,\"a\":[2,{\"c\":\"\xc3\xa9\"}]}");
    const std::string file = path("/home/nvram/out.json");
    ASSERT_EQ(writeJSONFile(file.c_str(), document), 0);
    const std::string indent1(17, ' '), indent2(34, ' '), indent3(51, ' ');
    EXPECT_EQ(readFile("/home/nvram/out.json"),
              "{\n" + indent1 + "\"b\": 1,\n" + indent1 + "\"a\": [\n" + indent2 + "2,\n" + indent2 +
                  "{\n" + indent3 + "\"c\": \"\\u00E9\"\n" + indent2 + "}\n" + indent1 + "]\n}");
    // What is written reads back equal.
    json_t* back = readJSONFile(file.c_str());
    EXPECT_TRUE(json_equal(back, document));
    json_decref(back);
    json_decref(document);
}

TEST_F(DocumentFile, WriteFailures) {
    json_t* document = zt4test::parse("{\"a\":1}");
    const std::string noDirectory = path("/nowhere/out.json");
    EXPECT_EQ(writeJSONFile(noDirectory.c_str(), document), -1);
    EXPECT_TRUE(logged("error.[writeJSONFile]: fd INVALID", LOG_ERR));
    EXPECT_EQ(writeJSONFile(path("/home/nvram/x.json").c_str(), nullptr), -1);
    EXPECT_EQ(writeJSONFile(nullptr, document), -1);
    EXPECT_FALSE(exists("/home/nvram/x.json"));

    // Text that is not UTF-8 cannot be dumped ASCII-only: the file is left truncated.
    writeFile("/home/nvram/bad.json", "{\"previous\": 1}");
    json_t* bad = json_object();
    json_object_set_new(bad, "k", json_string_nocheck("\xff\xfe"));
    const std::string file = path("/home/nvram/bad.json");
    zt4test::clearLog();
    EXPECT_EQ(writeJSONFile(file.c_str(), bad), -1);
    EXPECT_TRUE(logged("error.[writeJSONFile]: FAILED dumping '" + file + "'", LOG_ERR))
        << zt4test::logDump();
    EXPECT_EQ(readFile("/home/nvram/bad.json").find("previous"), std::string::npos);
    json_decref(bad);
    json_decref(document);
}

}  // namespace
