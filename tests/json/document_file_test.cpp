#include <sys/stat.h>
#include <unistd.h>

#include "json/expect.hpp"
#include "zt4config/json.h"

namespace {

class DocumentFile : public zt4test::DeviceTest {};

TEST_F(DocumentFile, ReadParsesOrSaysWhy) {
    const std::string file = path("/home/nvram/doc.json");
    struct Case {
        const char* content;   // nullptr: no file
        const char* expected;  // compact document, nullptr for a failure
        std::string line;
    } cases[] = {
        {nullptr, nullptr, "error.[readJSONFile]: fd INVALID for " + file},
        {"{\"Syntax\":{\"Version\":1},\"a\":\"x\\u0000y\"}", "{\"Syntax\":{\"Version\":1},\"a\":\"x\\u0000y\"}", ""},
        {"{\"a\":1,\"a\":2}", nullptr, "error.[readJSONFile]: FAILED reading '" + file + "'. duplicate object key near '\"a\"'"},
        {"", nullptr, "error.[readJSONFile]: FAILED reading '" + file + "'. '[' or '{' expected near end of file"},
    };
    for (const Case& c : cases) {
        if (c.content) writeFile("/home/nvram/doc.json", c.content);
        zt4test::clearLog();
        zt4test::expectResult(readJSONFile(file.c_str()), c.expected, c.line.empty() ? nullptr : c.line.c_str());
    }
    // The file must be writable too: a directory never is, a read-only file is not unless root.
    std::string directory = path("/home/nvram");
    zt4test::expectResult(readJSONFile(directory.c_str()), nullptr,
                          ("error.[readJSONFile]: fd INVALID for " + directory).c_str());
    if (geteuid() != 0) {
        ASSERT_EQ(chmod(file.c_str(), 0444), 0);
        zt4test::expectResult(readJSONFile(file.c_str()), nullptr,
                              ("error.[readJSONFile]: fd INVALID for " + file).c_str());
    }
}

TEST_F(DocumentFile, WriteKeepsOrderEscapesAndIndentsBy17) {
    json_t* document = zt4test::parse("{\"b\":1,\"a\":[2,{\"c\":\"\xc3\xa9\"}]}");
    const std::string file = path("/home/nvram/out.json");
    ASSERT_EQ(writeJSONFile(file.c_str(), document), 0);
    const std::string i1(17, ' '), i2(34, ' '), i3(51, ' ');
    EXPECT_EQ(readFile("/home/nvram/out.json"), "{\n" + i1 + "\"b\": 1,\n" + i1 + "\"a\": [\n" + i2 + "2,\n" +
                                                    i2 + "{\n" + i3 + "\"c\": \"\\u00E9\"\n" + i2 + "}\n" + i1 + "]\n}");
    json_decref(document);
}

TEST_F(DocumentFile, WriteFailures) {
    json_t* document = zt4test::parse("{\"a\":1}");
    EXPECT_EQ(writeJSONFile(path("/nowhere/out.json").c_str(), document), -1);
    EXPECT_TRUE(zt4test::logged("error.[writeJSONFile]: fd INVALID", LOG_ERR));
    EXPECT_EQ(writeJSONFile(path("/home/nvram/x.json").c_str(), nullptr), -1);
    EXPECT_EQ(writeJSONFile(nullptr, document), -1);
    EXPECT_FALSE(exists("/home/nvram/x.json"));

    // Text that is not UTF-8 cannot be dumped ASCII-only; the file is already truncated by then.
    writeFile("/home/nvram/bad.json", "{\"previous\": 1}");
    json_object_set_new(document, "k", json_string_nocheck("\xff\xfe"));
    const std::string file = path("/home/nvram/bad.json");
    EXPECT_EQ(writeJSONFile(file.c_str(), document), -1);
    EXPECT_TRUE(zt4test::logged("error.[writeJSONFile]: FAILED dumping '" + file + "'", LOG_ERR));
    EXPECT_EQ(readFile("/home/nvram/bad.json").find("previous"), std::string::npos);
    json_decref(document);
}

}  // namespace
