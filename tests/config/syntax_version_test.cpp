#include <syslog.h>

#include "config/document.hpp"
#include "support/harness.hpp"
#include "zt4config/config.h"

namespace {

using zt4test::logged;

struct VersionCase {
    const char* document;
    int expected;
    const char* info;  // the one line logged at LOG_INFO, or nullptr for none
};

class SyntaxVersion : public ::testing::TestWithParam<VersionCase> {
protected:
    void SetUp() override { zt4test::clearLog(); }
};

TEST_P(SyntaxVersion, OnlyVersionOneIsOne) {
    const VersionCase& c = GetParam();
    json_t* document = zt4test::parse(c.document);
    EXPECT_EQ(readJSONSyntaxVersion(document), c.expected);
    if (c.info) {
        EXPECT_TRUE(logged(c.info, LOG_INFO)) << zt4test::logDump();
        EXPECT_EQ(zt4test::capturedLog().size(), 1u);
    } else {
        EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
    }
    json_decref(document);
}

INSTANTIATE_TEST_SUITE_P(Documents, SyntaxVersion, ::testing::Values(
    VersionCase{"{\"Syntax\":{\"Version\":1}}", 1, nullptr},
    VersionCase{"{\"Syntax\":{\"Version\":0}}", 0, nullptr},
    VersionCase{"{\"Web\":{}}", 0, "Configuration file Syntax 0 by default"},
    VersionCase{"{\"Syntax\":{}}", 0, "Configuration file Syntax Version 0 by default"},
    VersionCase{"{\"Syntax\":{\"Version\":2}}", 0, nullptr},
    VersionCase{"{\"Syntax\":{\"Version\":-1}}", 0, nullptr},
    // Only the low 32 bits count.
    VersionCase{"{\"Syntax\":{\"Version\":4294967297}}", 1, nullptr},
    VersionCase{"{\"Syntax\":{\"Version\":4294967296}}", 0, nullptr},
    // The type is not checked: anything but an integer reads as 0.
    VersionCase{"{\"Syntax\":{\"Version\":\"1\"}}", 0, nullptr},
    VersionCase{"{\"Syntax\":{\"Version\":1.0}}", 0, nullptr}));

TEST(SyntaxVersionNull, NullDocumentIsVersionZero) {
    zt4test::clearLog();
    EXPECT_EQ(readJSONSyntaxVersion(nullptr), 0);
    EXPECT_TRUE(logged("Configuration file Syntax 0 by default", LOG_INFO));
}

struct FileCase {
    int (*read)(void);
    const char* path;
    const char* missing;  // logged when the file cannot be read
};

class FileSyntaxVersion : public zt4test::DeviceTest, public ::testing::WithParamInterface<FileCase> {};

TEST_P(FileSyntaxVersion, ReadsItsOwnFileAndFallsBackToZero) {
    const FileCase& c = GetParam();
    EXPECT_EQ(c.read(), 0);
    EXPECT_TRUE(logged(c.missing, LOG_ERR)) << zt4test::logDump();

    writeFile(c.path, "{\"Syntax\":{\"Version\":1}}");
    zt4test::clearLog();
    EXPECT_EQ(c.read(), 1);
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();

    writeFile(c.path, "{\"Syntax\":{\"Version\":1},");
    EXPECT_EQ(c.read(), 0);
    EXPECT_TRUE(logged(c.missing, LOG_ERR)) << zt4test::logDump();

    // The other documents do not count.
    for (const char* other : {"/home/nvram/zt4config.json", "/etc/zt4config_factory.json",
                              "/home/nvram/zt4system.json", "/etc/zt4system_factory.json"}) {
        if (std::string(other) != c.path) writeFile(other, "{\"Syntax\":{\"Version\":1}}");
    }
    writeFile(c.path, "{\"Syntax\":{\"Version\":0}}");
    EXPECT_EQ(c.read(), 0);
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
