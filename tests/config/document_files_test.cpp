#include <sys/stat.h>
#include <syslog.h>

#include "support/harness.hpp"
#include "zt4config/config.h"

namespace {

using zt4test::logged;

struct ReaderCase {
    json_t* (*read)(void);
    const char* path;
};

class DocumentReader : public zt4test::DeviceTest, public ::testing::WithParamInterface<ReaderCase> {};

TEST_P(DocumentReader, ReadsItsDevicePath) {
    const ReaderCase& c = GetParam();
    EXPECT_EQ(c.read(), nullptr);
    EXPECT_TRUE(logged("error.[readJSONFile]: fd INVALID for " + path(c.path), LOG_ERR));
    writeFile(c.path, std::string("{\"path\":\"") + c.path + "\"}");
    json_t* document = c.read();
    EXPECT_EQ(zt4test::compact(document), std::string("{\"path\":\"") + c.path + "\"}");
    json_decref(document);
}

INSTANTIATE_TEST_SUITE_P(Documents, DocumentReader, ::testing::Values(
    ReaderCase{readJSONZT4ConfigFile, "/home/nvram/zt4config.json"},
    ReaderCase{readJSONZT4UserConfigFile, "/home/nvram/zt4config.json"},
    ReaderCase{readJSONZT4FactoryConfigFile, "/etc/zt4config_factory.json"},
    ReaderCase{readJSONZT4FactoryUserConfigFile, "/etc/zt4config_factory.json"},
    ReaderCase{readJSONZT4SystemFile, "/home/nvram/zt4system.json"},
    ReaderCase{readJSONZT4SystemConfigFile, "/home/nvram/zt4system.json"},
    ReaderCase{readJSONZT4FactorySystemConfigFile, "/etc/zt4system_factory.json"},
    ReaderCase{readJSONZT4FactorySystemFile, "/etc/zt4system_factory.json"}));

struct WriterCase {
    int (*write)(json_t*);
    const char* name;  // the operation that logs
    const char* path;
    const char* temporary;
};

class DocumentWriter : public zt4test::DeviceTest, public ::testing::WithParamInterface<WriterCase> {
protected:
    std::string line(const char* text, const char* file) const {
        std::string result = text;
        return result.replace(result.find("%s"), 2, path(file));
    }
};

TEST_P(DocumentWriter, ReplacesThroughTheTemporaryFile) {
    const WriterCase& c = GetParam();
    writeFile(c.temporary, "left over");
    json_t* document = zt4test::parse("{\"Syntax\":{\"Version\":1},\"Web\":{\"Port\":80}}");
    ASSERT_EQ(c.write(document), 0);
    EXPECT_FALSE(exists(c.temporary));
    EXPECT_TRUE(logged(std::string("[") + c.name + line("]: File '%s' renamed successfully", c.temporary),
                       LOG_INFO)) << zt4test::logDump();
    json_t* back = zt4test::parse(readFile(c.path).c_str());
    EXPECT_TRUE(json_equal(back, document));
    json_decref(back);
    json_decref(document);
}

TEST_P(DocumentWriter, FailuresLeaveThePreviousDocument) {
    const WriterCase& c = GetParam();
    const std::string previous = "{\"previous\": 1}";
    writeFile(c.path, previous);
    const std::string prefix = std::string("error.[") + c.name + "]: ";

    EXPECT_EQ(c.write(nullptr), -1);
    EXPECT_TRUE(logged(prefix + "json NULL", LOG_ERR));

    // The temporary path is taken by a directory: the write fails before the rename.
    ASSERT_EQ(mkdir(path(c.temporary).c_str(), 0755), 0);
    json_t* document = zt4test::parse("{\"a\":1}");
    zt4test::clearLog();
    EXPECT_EQ(c.write(document), -1);
    EXPECT_TRUE(logged(prefix + line("FAILED to write in file '%s'", c.temporary), LOG_ERR))
        << zt4test::logDump();
    EXPECT_EQ(readFile(c.path), previous);
    ASSERT_EQ(rmdir(path(c.temporary).c_str()), 0);

    // The target is a directory that is not empty: the rename fails, logged at the info level.
    removeFile(c.path);
    ASSERT_EQ(mkdir(path(c.path).c_str(), 0755), 0);
    writeFile(std::string(c.path) + "/keep", "x");
    zt4test::clearLog();
    EXPECT_EQ(c.write(document), -1);
    EXPECT_TRUE(logged(prefix + line("FAILED to rename the file '%s'", c.temporary), LOG_INFO))
        << zt4test::logDump();
    EXPECT_EQ(readFile(std::string(c.path) + "/keep"), "x");
    json_decref(document);
}

INSTANTIATE_TEST_SUITE_P(Documents, DocumentWriter, ::testing::Values(
    WriterCase{writeJSONZT4ConfigFile, "writeJSONZT4ConfigFile", "/home/nvram/zt4config.json",
               "/home/nvram/zt4configuration-tmp.json"},
    WriterCase{writeJSONZT4UserConfigFile, "writeJSONZT4ConfigFile", "/home/nvram/zt4config.json",
               "/home/nvram/zt4configuration-tmp.json"},
    WriterCase{writeJSONZT4SystemFile, "writeJSONZT4SystemFile", "/home/nvram/zt4system.json",
               "/home/nvram/zt4system-tmp.json"},
    WriterCase{writeJSONZT4SystemConfigFile, "writeJSONZT4SystemFile", "/home/nvram/zt4system.json",
               "/home/nvram/zt4system-tmp.json"}));

struct MergeCase {
    int (*update)(json_t*);
    const char* name;
    const char* path;
    const char* writer;
    bool announcesSteps;
};

class DocumentMerge : public zt4test::DeviceTest, public ::testing::WithParamInterface<MergeCase> {};

TEST_P(DocumentMerge, UpdatesExistingMembersThenAddsNewOnes) {
    const MergeCase& c = GetParam();
    writeFile(c.path, "{\"Syntax\":{\"Version\":1},\"Web\":{\"Port\":80,\"Debug\":1},\"WiFi\":{\"Lease\":1}}");
    json_t* update = zt4test::parse("{\"Modbus\":{\"Port\":502},\"Web\":{\"Port\":81}}");
    EXPECT_EQ(c.update(update), 0);
    // Whole top-level members are replaced, new members go last, the others are kept.
    EXPECT_EQ(readFile(c.path).find("\"Syntax\""), 2u + 17u);
    json_t* stored = zt4test::parse(readFile(c.path).c_str());
    EXPECT_EQ(zt4test::compact(stored),
              "{\"Modbus\":{\"Port\":502},\"Syntax\":{\"Version\":1},\"Web\":{\"Port\":81},\"WiFi\":{\"Lease\":1}}");
    const char* last = json_object_iter_key(json_object_iter_at(stored, "Modbus"));
    EXPECT_STREQ(last, "Modbus");
    EXPECT_EQ(json_object_iter_next(stored, json_object_iter_at(stored, "Modbus")), nullptr);
    json_decref(stored);
    // Written twice, once per step.
    EXPECT_EQ(zt4test::loggedCount(std::string("[") + c.writer + "]: File '"), 2);
    const std::string file = path(c.path);
    EXPECT_EQ(logged("Updating file '" + file + "' with existing keys", LOG_ERR), c.announcesSteps);
    EXPECT_EQ(logged("Updating file '" + file + "' with new keys", LOG_ERR), c.announcesSteps);
    EXPECT_EQ(update->refcount, 1u);
    json_decref(update);
}

TEST_P(DocumentMerge, Failures) {
    const MergeCase& c = GetParam();
    const std::string prefix = std::string("error.[") + c.name + "]: ";
    const std::string file = path(c.path);
    json_t* update = zt4test::parse("{\"Web\":{}}");

    EXPECT_EQ(c.update(nullptr), -1);
    EXPECT_TRUE(logged(prefix + "json NULL", LOG_ERR));

    EXPECT_EQ(c.update(update), -1);
    EXPECT_TRUE(logged(prefix + "FAILED to read in file '" + file + "'", LOG_ERR)) << zt4test::logDump();
    EXPECT_FALSE(exists(c.path));

    // Not an object: neither step can merge, nothing is written.
    writeFile(c.path, "{\"Web\":{\"Port\":80}}");
    json_t* array = zt4test::parse("[1]");
    zt4test::clearLog();
    EXPECT_EQ(c.update(array), -1);
    EXPECT_TRUE(logged(prefix + "FAILED to update file '" + file + "' with existing keys", LOG_ERR));
    EXPECT_TRUE(logged(prefix + "FAILED to update file '" + file + "' with new keys", LOG_ERR));
    EXPECT_EQ(zt4test::loggedCount("renamed successfully"), 0);
    EXPECT_EQ(readFile(c.path), "{\"Web\":{\"Port\":80}}");
    json_decref(array);
    json_decref(update);
}

INSTANTIATE_TEST_SUITE_P(Documents, DocumentMerge, ::testing::Values(
    MergeCase{updateJSONZT4UserConfigFile, "updateJSONZT4UserConfigFile", "/home/nvram/zt4config.json",
              "writeJSONZT4ConfigFile", true},
    MergeCase{updateJSONZT4SystemFile, "updateJSONZT4SystemFile", "/home/nvram/zt4system.json",
              "writeJSONZT4SystemFile", false}));

}  // namespace
