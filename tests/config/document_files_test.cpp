#include <sys/stat.h>

#include "json/expect.hpp"
#include "zt4config/config.h"

namespace {

struct ReaderCase {
    json_t* (*read)(void);
    const char* path;
};

class DocumentReader : public zt4test::DeviceTest, public ::testing::WithParamInterface<ReaderCase> {};

TEST_P(DocumentReader, ReadsItsDevicePath) {
    const ReaderCase& c = GetParam();
    zt4test::expectResult(c.read(), nullptr, ("error.[readJSONFile]: fd INVALID for " + path(c.path)).c_str());
    const std::string document = std::string("{\"path\":\"") + c.path + "\"}";
    writeFile(c.path, document);
    zt4test::clearLog();
    zt4test::expectResult(c.read(), document.c_str(), nullptr);
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
    std::string name;  // the operation that logs
    std::string path, temporary;
};

class DocumentWriter : public zt4test::DeviceTest, public ::testing::WithParamInterface<WriterCase> {};

TEST_P(DocumentWriter, ReplacesThroughTheTemporaryFile) {
    const WriterCase& c = GetParam();
    writeFile(c.temporary, "left over");
    json_t* document = zt4test::parse("{\"Syntax\":{\"Version\":1},\"Web\":{\"Port\":80}}");
    ASSERT_EQ(c.write(document), 0);
    EXPECT_FALSE(exists(c.temporary));
    EXPECT_TRUE(zt4test::logged("[" + c.name + "]: File '" + path(c.temporary) + "' renamed successfully", LOG_INFO));
    json_t* back = zt4test::parse(readFile(c.path).c_str());
    EXPECT_TRUE(json_equal(back, document));
    json_decref(back);
    json_decref(document);
}

TEST_P(DocumentWriter, FailuresLeaveThePreviousDocument) {
    const WriterCase& c = GetParam();
    const std::string previous = "{\"previous\": 1}", prefix = "error.[" + c.name + "]: ";
    writeFile(c.path, previous);
    json_t* document = zt4test::parse("{\"a\":1}");
    EXPECT_EQ(c.write(nullptr), -1);
    EXPECT_TRUE(zt4test::logged(prefix + "json NULL", LOG_ERR));

    // A directory in the temporary file's place: the write fails before the rename.
    ASSERT_EQ(mkdir(path(c.temporary).c_str(), 0755), 0);
    EXPECT_EQ(c.write(document), -1);
    EXPECT_TRUE(zt4test::logged(prefix + "FAILED to write in file '" + path(c.temporary) + "'", LOG_ERR));
    EXPECT_EQ(readFile(c.path), previous);
    ASSERT_EQ(rmdir(path(c.temporary).c_str()), 0);

    // A directory that is not empty in the document's place: the rename fails, at the info level.
    removeFile(c.path);
    writeFile(c.path + "/keep", "x");
    EXPECT_EQ(c.write(document), -1);
    EXPECT_TRUE(zt4test::logged(prefix + "FAILED to rename the file '" + path(c.temporary) + "'", LOG_INFO));
    EXPECT_EQ(readFile(c.path + "/keep"), "x");
    json_decref(document);
}

INSTANTIATE_TEST_SUITE_P(Documents, DocumentWriter, ::testing::Values(
    WriterCase{writeJSONZT4ConfigFile, "writeJSONZT4ConfigFile", "/home/nvram/zt4config.json", "/home/nvram/zt4configuration-tmp.json"},
    WriterCase{writeJSONZT4UserConfigFile, "writeJSONZT4ConfigFile", "/home/nvram/zt4config.json", "/home/nvram/zt4configuration-tmp.json"},
    WriterCase{writeJSONZT4SystemFile, "writeJSONZT4SystemFile", "/home/nvram/zt4system.json", "/home/nvram/zt4system-tmp.json"},
    WriterCase{writeJSONZT4SystemConfigFile, "writeJSONZT4SystemFile", "/home/nvram/zt4system.json", "/home/nvram/zt4system-tmp.json"}));

struct MergeCase {
    int (*update)(json_t*);
    std::string name, path, writer;
    bool announcesSteps;
};

class DocumentMerge : public zt4test::DeviceTest, public ::testing::WithParamInterface<MergeCase> {};

TEST_P(DocumentMerge, UpdatesExistingMembersThenAddsNewOnes) {
    const MergeCase& c = GetParam();
    writeFile(c.path, "{\"Syntax\":{\"Version\":1},\"Web\":{\"Port\":80,\"Debug\":1},\"WiFi\":{\"Lease\":1}}");
    json_t* update = zt4test::parse("{\"Modbus\":{\"Port\":502},\"Web\":{\"Port\":81}}");
    EXPECT_EQ(c.update(update), 0);
    // Whole members are replaced, new members go last, the others stay.
    json_t* stored = zt4test::parse(readFile(c.path).c_str());
    EXPECT_EQ(zt4test::compact(stored),
              "{\"Modbus\":{\"Port\":502},\"Syntax\":{\"Version\":1},\"Web\":{\"Port\":81},\"WiFi\":{\"Lease\":1}}");
    EXPECT_EQ(json_object_iter_next(stored, json_object_iter_at(stored, "Modbus")), nullptr);
    json_decref(stored);
    EXPECT_EQ(zt4test::loggedCount("[" + c.writer + "]: File '"), 2);  // written once per step
    EXPECT_EQ(zt4test::logged("Updating file '" + path(c.path) + "' with existing keys", LOG_ERR), c.announcesSteps);
    EXPECT_EQ(zt4test::logged("Updating file '" + path(c.path) + "' with new keys", LOG_ERR), c.announcesSteps);
    EXPECT_EQ(update->refcount, 1u);
    json_decref(update);
}

TEST_P(DocumentMerge, Failures) {
    const MergeCase& c = GetParam();
    const std::string prefix = "error.[" + c.name + "]: ", file = path(c.path);
    json_t* update = zt4test::parse("{\"Web\":{}}");
    json_t* array = zt4test::parse("[1]");
    EXPECT_EQ(c.update(nullptr), -1);
    EXPECT_TRUE(zt4test::logged(prefix + "json NULL", LOG_ERR));
    EXPECT_EQ(c.update(update), -1);
    EXPECT_TRUE(zt4test::logged(prefix + "FAILED to read in file '" + file + "'", LOG_ERR));
    EXPECT_FALSE(exists(c.path));

    // Not an object: neither step merges and nothing is written.
    writeFile(c.path, "{\"Web\":{\"Port\":80}}");
    EXPECT_EQ(c.update(array), -1);
    EXPECT_TRUE(zt4test::logged(prefix + "FAILED to update file '" + file + "' with existing keys", LOG_ERR));
    EXPECT_TRUE(zt4test::logged(prefix + "FAILED to update file '" + file + "' with new keys", LOG_ERR));
    EXPECT_EQ(readFile(c.path), "{\"Web\":{\"Port\":80}}");
    json_decref(array);
    json_decref(update);
}

INSTANTIATE_TEST_SUITE_P(Documents, DocumentMerge, ::testing::Values(
    MergeCase{updateJSONZT4UserConfigFile, "updateJSONZT4UserConfigFile", "/home/nvram/zt4config.json", "writeJSONZT4ConfigFile", true},
    MergeCase{updateJSONZT4SystemFile, "updateJSONZT4SystemFile", "/home/nvram/zt4system.json", "writeJSONZT4SystemFile", false}));

}  // namespace
