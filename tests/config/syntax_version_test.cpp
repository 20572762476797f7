#include "json/expect.hpp"
#include "zt4config/config.h"

namespace {

struct VersionCase {
    const char* document;
    int expected;
    const char* info;  // the line logged at LOG_INFO, nullptr for none
};

class SyntaxVersion : public ::testing::TestWithParam<VersionCase> {};

TEST_P(SyntaxVersion, OnlyVersionOneIsOne) {
    const VersionCase& c = GetParam();
    zt4test::clearLog();
    json_t* document = zt4test::parse(c.document);
    EXPECT_EQ(readJSONSyntaxVersion(document), c.expected);
    EXPECT_EQ(zt4test::capturedLog().size(), c.info ? 1u : 0u);
    EXPECT_TRUE(!c.info || zt4test::logged(c.info, LOG_INFO)) << zt4test::logDump();
    json_decref(document);
}

INSTANTIATE_TEST_SUITE_P(Documents, SyntaxVersion, ::testing::Values(
    VersionCase{"{\"Syntax\":{\"Version\":1}}", 1, nullptr},
    VersionCase{"{\"Syntax\":{\"Version\":0}}", 0, nullptr},
    VersionCase{"{\"Web\":{}}", 0, "Configuration file Syntax 0 by default"},
    VersionCase{"{\"Syntax\":{}}", 0, "Configuration file Syntax Version 0 by default"},
    VersionCase{"{\"Syntax\":{\"Version\":2}}", 0, nullptr},
    // Only the low 32 bits count, and only an integer.
    VersionCase{"{\"Syntax\":{\"Version\":4294967297}}", 1, nullptr},
    VersionCase{"{\"Syntax\":{\"Version\":4294967296}}", 0, nullptr},
    VersionCase{"{\"Syntax\":{\"Version\":\"1\"}}", 0, nullptr},
    VersionCase{"{\"Syntax\":{\"Version\":1.0}}", 0, nullptr}));

struct FileCase {
    int (*read)(void);
    const char* path;
    const char* failure;  // logged when the file cannot be read
};

class FileSyntaxVersion : public zt4test::DeviceTest, public ::testing::WithParamInterface<FileCase> {};

TEST_P(FileSyntaxVersion, ReadsItsOwnFileAndFallsBackToZero) {
    const FileCase& c = GetParam();
    for (const char* content : {static_cast<const char*>(nullptr), "{\"Syntax\":{\"Version\":1},"}) {
        if (content) writeFile(c.path, content);
        zt4test::clearLog();
        EXPECT_EQ(c.read(), 0);
        EXPECT_TRUE(zt4test::logged(c.failure, LOG_ERR)) << zt4test::logDump();
    }
    writeFile(c.path, "{\"Syntax\":{\"Version\":1}}");
    EXPECT_EQ(c.read(), 1);
}

INSTANTIATE_TEST_SUITE_P(Files, FileSyntaxVersion, ::testing::Values(
    FileCase{readZT4UserConfigFileSyntaxVersion, "/home/nvram/zt4config.json",
             "error.[readZT4UserConfigFileSyntaxVersion]: Failed to read User configuration file"},
    FileCase{readZT4FactoryUserConfigFileSyntaxVersion, "/etc/zt4config_factory.json",
             "error.[readZT4FactoryUserConfigFileSyntaxVersion]: Failed to read Factory User configuration file"},
    FileCase{readZT4SystemConfigFileSyntaxVersion, "/home/nvram/zt4system.json",
             "error.[readZT4SystemConfigFileSyntaxVersion]: Failed to read System configuration file"},
    FileCase{readZT4FactorySystemConfigFileSyntaxVersion, "/etc/zt4system_factory.json",
             "error.[readZT4FactorySystemConfigFileSyntaxVersion]: Failed to read Factory System configuration file"}));

}  // namespace
