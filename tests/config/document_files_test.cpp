// The four documents' files: reading, replacing through the temporary file, merging, their syntax
// version and the dispatch on it, and a writer killed at any moment.
#include <signal.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <random>

#include "config/facade/dispatch.hpp"
#include "config/v0/policy.hpp"
#include "json/expect.hpp"
#include "zt4config/config.h"

namespace {

using zt4test::logged;
const char* const kPaths[] = {"/home/nvram/zt4config.json", "/etc/zt4config_factory.json", "/home/nvram/zt4system.json",
                              "/etc/zt4system_factory.json"};

struct ReaderCase {
    json_t* (*read)(void);
    int path;
};
class DocumentReader : public zt4test::DeviceTest, public ::testing::WithParamInterface<ReaderCase> {};

TEST_P(DocumentReader, ReadsItsDevicePath) {
    const char* file = kPaths[GetParam().path];
    zt4test::expectResult(GetParam().read(), nullptr, ("error.[readJSONFile]: fd INVALID for " + path(file)).c_str());
    const std::string document = std::string("{\"path\":\"") + file + "\"}";
    writeFile(file, document);
    zt4test::clearLog();
    zt4test::expectResult(GetParam().read(), document.c_str(), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Documents, DocumentReader, ::testing::Values(
    ReaderCase{readJSONZT4ConfigFile, 0}, ReaderCase{readJSONZT4UserConfigFile, 0}, ReaderCase{readJSONZT4FactoryConfigFile, 1},
    ReaderCase{readJSONZT4FactoryUserConfigFile, 1}, ReaderCase{readJSONZT4SystemFile, 2}, ReaderCase{readJSONZT4SystemConfigFile, 2},
    ReaderCase{readJSONZT4FactorySystemConfigFile, 3}, ReaderCase{readJSONZT4FactorySystemFile, 3}));

struct WriterCase {
    int (*write)(json_t*);
    std::string name, path, temporary;  // name: the operation that logs
};
class DocumentWriter : public zt4test::DeviceTest, public ::testing::WithParamInterface<WriterCase> {};

TEST_P(DocumentWriter, ReplacesThroughTheTemporaryFile) {
    const WriterCase& c = GetParam();
    writeFile(c.temporary, "left over");
    json_t* document = zt4test::parse("{\"Syntax\":{\"Version\":1},\"Web\":{\"Port\":80}}");
    ASSERT_EQ(c.write(document), 0);
    EXPECT_FALSE(exists(c.temporary));
    EXPECT_TRUE(logged("[" + c.name + "]: File '" + path(c.temporary) + "' renamed successfully", LOG_INFO));
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
    EXPECT_TRUE(logged(prefix + "json NULL", LOG_ERR));
    // A directory in the temporary file's place: the write fails before the rename.
    ASSERT_EQ(mkdir(path(c.temporary).c_str(), 0755), 0);
    EXPECT_EQ(c.write(document), -1);
    EXPECT_TRUE(logged(prefix + "FAILED to write in file '" + path(c.temporary) + "'", LOG_ERR));
    EXPECT_EQ(readFile(c.path), previous);
    ASSERT_EQ(rmdir(path(c.temporary).c_str()), 0);
    // A directory that is not empty in the document's place: the rename fails, at the info level.
    removeFile(c.path);
    writeFile(c.path + "/keep", "x");
    EXPECT_EQ(c.write(document), -1);
    EXPECT_TRUE(logged(prefix + "FAILED to rename the file '" + path(c.temporary) + "'", LOG_INFO));
    EXPECT_EQ(readFile(c.path + "/keep"), "x");
    json_decref(document);
}

INSTANTIATE_TEST_SUITE_P(Documents, DocumentWriter, ::testing::Values(
    WriterCase{writeJSONZT4ConfigFile, "writeJSONZT4ConfigFile", kPaths[0], "/home/nvram/zt4configuration-tmp.json"},
    WriterCase{writeJSONZT4UserConfigFile, "writeJSONZT4ConfigFile", kPaths[0], "/home/nvram/zt4configuration-tmp.json"},
    WriterCase{writeJSONZT4SystemFile, "writeJSONZT4SystemFile", kPaths[2], "/home/nvram/zt4system-tmp.json"},
    WriterCase{writeJSONZT4SystemConfigFile, "writeJSONZT4SystemFile", kPaths[2], "/home/nvram/zt4system-tmp.json"}));

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
    EXPECT_EQ(logged("Updating file '" + path(c.path) + "' with existing keys", LOG_ERR), c.announcesSteps);
    EXPECT_EQ(logged("Updating file '" + path(c.path) + "' with new keys", LOG_ERR), c.announcesSteps);
    EXPECT_EQ(update->refcount, 1u);
    json_decref(update);
}

TEST_P(DocumentMerge, Failures) {
    const MergeCase& c = GetParam();
    const std::string prefix = "error.[" + c.name + "]: ", file = path(c.path);
    json_t* update = zt4test::parse("{\"Web\":{}}");
    json_t* array = zt4test::parse("[1]");
    EXPECT_EQ(c.update(nullptr), -1);
    EXPECT_TRUE(logged(prefix + "json NULL", LOG_ERR));
    EXPECT_EQ(c.update(update), -1);
    EXPECT_TRUE(logged(prefix + "FAILED to read in file '" + file + "'", LOG_ERR));
    EXPECT_FALSE(exists(c.path));
    // Not an object: neither step merges and nothing is written.
    writeFile(c.path, "{\"Web\":{\"Port\":80}}");
    EXPECT_EQ(c.update(array), -1);
    EXPECT_TRUE(logged(prefix + "FAILED to update file '" + file + "' with existing keys", LOG_ERR));
    EXPECT_TRUE(logged(prefix + "FAILED to update file '" + file + "' with new keys", LOG_ERR));
    EXPECT_EQ(readFile(c.path), "{\"Web\":{\"Port\":80}}");
    json_decref(array);
    json_decref(update);
}

INSTANTIATE_TEST_SUITE_P(Documents, DocumentMerge, ::testing::Values(
    MergeCase{updateJSONZT4UserConfigFile, "updateJSONZT4UserConfigFile", kPaths[0], "writeJSONZT4ConfigFile", true},
    MergeCase{updateJSONZT4SystemFile, "updateJSONZT4SystemFile", kPaths[2], "writeJSONZT4SystemFile", false}));

struct VersionFileCase {
    int (*read)(void);
    std::string name, document;  // the document named in the failure line
    int path;
};
class FileSyntaxVersion : public zt4test::DeviceTest, public ::testing::WithParamInterface<VersionFileCase> {};

TEST_P(FileSyntaxVersion, ReadsItsOwnFileAndFallsBackToZero) {
    const VersionFileCase& c = GetParam();
    const char* file = kPaths[c.path];
    for (const char* content : {static_cast<const char*>(nullptr), "{\"Syntax\":{\"Version\":1},"}) {
        if (content) writeFile(file, content);
        zt4test::clearLog();
        EXPECT_EQ(c.read(), 0);
        EXPECT_TRUE(logged("error.[" + c.name + "]: Failed to read " + c.document + " configuration file", LOG_ERR))
            << zt4test::logDump();
    }
    writeFile(file, "{\"Syntax\":{\"Version\":1}}");
    EXPECT_EQ(c.read(), 1);
}

INSTANTIATE_TEST_SUITE_P(Files, FileSyntaxVersion, ::testing::Values(
    VersionFileCase{readZT4UserConfigFileSyntaxVersion, "readZT4UserConfigFileSyntaxVersion", "User", 0},
    VersionFileCase{readZT4FactoryUserConfigFileSyntaxVersion, "readZT4FactoryUserConfigFileSyntaxVersion", "Factory User", 1},
    VersionFileCase{readZT4SystemConfigFileSyntaxVersion, "readZT4SystemConfigFileSyntaxVersion", "System", 2},
    VersionFileCase{readZT4FactorySystemConfigFileSyntaxVersion, "readZT4FactorySystemConfigFileSyntaxVersion", "Factory System", 3}));

// Stand-ins for the two versions of an operation: each says which one ran and what it was given.
json_t* pointerVersion0(int value, const char* text) { return json_pack("[i,i,s]", 0, value, text); }
json_t* pointerVersion1(int value, const char* text) { return json_pack("[i,i,s]", 1, value, text); }
int numberVersion0(int value) { return value; }
int numberVersion1(int value) { return 100 + value; }

class Dispatch : public zt4test::DeviceTest, public ::testing::WithParamInterface<int> {};

// Each document routes on its own version; every other document says the opposite.
TEST_P(Dispatch, FollowsTheVersionOfItsOwnDocument) {
    const int document = GetParam();
    const struct {
        const char* content;  // nullptr: missing
        int version;
    } cases[] = {{"{\"Syntax\":{\"Version\":1}}", 1}, {"{\"Syntax\":{\"Version\":0}}", 0},
                 {"{\"Syntax\":{\"Version\":2}}", 0}, {nullptr, 0}, {"{\"Syntax\":", 0}};
    for (const auto& c : cases) {
        for (int i = 0; i < 4; ++i) writeFile(kPaths[i], c.version ? "{\"Syntax\":{\"Version\":0}}" : "{\"Syntax\":{\"Version\":1}}");
        if (c.content) writeFile(kPaths[document], c.content); else removeFile(kPaths[document]);
        const auto which = static_cast<zt4::ConfigDocument>(document);
        json_t* result = zt4::dispatch<pointerVersion0, pointerVersion1>("facade", which, 7, "x");
        EXPECT_EQ(zt4test::compact(result), "[" + std::to_string(c.version) + ",7,\"x\"]") << c.content;
        json_decref(result);
        EXPECT_EQ((zt4::dispatch<numberVersion0, numberVersion1>("facade", which, 5)), c.version ? 105 : 5);
    }
    EXPECT_EQ(zt4test::loggedCount("Failed to read version configuration file"), 0);
}

INSTANTIATE_TEST_SUITE_P(Documents, Dispatch, ::testing::Range(0, 4));

TEST(DispatchGuard, UnknownVersionFailsByResultType) {
    for (int version : {-1, 2, 255}) {
        zt4test::clearLog();
        EXPECT_EQ((zt4::dispatchVersion<pointerVersion0, pointerVersion1>("readJSONZT4ConfigWeb", version, 1, "x")), nullptr);
        EXPECT_EQ((zt4::dispatchVersion<numberVersion0, numberVersion1>("setParameterConfig", version, 1)), -1);
        EXPECT_TRUE(logged("error.[readJSONZT4ConfigWeb]: Failed to read version configuration file", LOG_ERR));
        EXPECT_TRUE(logged("error.[setParameterConfig]: Failed to read version configuration file", LOG_ERR));
    }
    EXPECT_EQ(zt4::v0::unsupported<json_t*>("writeJSONZT4SystemWebSyntaxVersion0"), nullptr);
    EXPECT_EQ(zt4::v0::unsupported<int>("printZT4UserConfigFileSyntaxVersion0"), -1);
    EXPECT_TRUE(logged("error.[writeJSONZT4SystemWebSyntaxVersion0]: syntax version 0 is not supported", LOG_ERR));
    EXPECT_TRUE(logged("error.[printZT4UserConfigFileSyntaxVersion0]: syntax version 0 is not supported", LOG_ERR));
}

class Channels : public zt4test::DeviceTest {};

TEST_F(Channels, ReadJSONZT4CnlRoutesOnTheUserFile) {
    json_t* connector = zt4test::parse("{\"Mode\":0,\"Channel\":[{\"Enable\":1}]}");
    json_t* bare = zt4test::parse("{\"Mode\":0}");
    const char* const cases[][2] = {
        {"{\"Syntax\":{\"Version\":1}}", "error.[readJSONZT4ChannelsSyntaxVersion1]: FAILED to read Array JSON Cnl"},
        {"{\"Syntax\":{\"Version\":0}}", "error.[readJSONZT4ChannelsSyntaxVersion0]: FAILED to read Object Channel"},
        {nullptr, "error.[readJSONZT4ChannelsSyntaxVersion0]: FAILED to read Object Channel"}};
    for (const auto& c : cases) {
        if (c[0]) writeFile(kPaths[0], c[0]); else removeFile(kPaths[0]);
        json_t* channels = readJSONZT4Cnl(connector);
        EXPECT_EQ(zt4test::compact(channels), "[{\"Enable\":1}]");
        json_decref(channels);
        zt4test::clearLog();
        EXPECT_EQ(readJSONZT4Cnl(bare), nullptr);
        EXPECT_TRUE(logged(c[1], LOG_ERR)) << zt4test::logDump();
    }
    writeFile(kPaths[0], "{\"Syntax\":{\"Version\":1}}");
    EXPECT_EQ(readJSONZT4Cnl(nullptr), nullptr);
    EXPECT_TRUE(logged("error.[readJSONZT4ChannelsSyntaxVersion1]: jsonConnector NULL", LOG_ERR));
    EXPECT_EQ(connector->refcount, 1u);
    json_decref(bare);
    json_decref(connector);
}

// A writer killed at any moment leaves the user document whole. The child is made by the bare system
// call: glibc's fork() child does not survive qemu-arm's user emulation, where these tests also run.
TEST_F(Channels, KilledWriterNeverLeavesAPartialDocument) {
    std::vector<json_t*> versions;  // of different sizes, so that a cut-off file cannot pass for one
    const auto start = std::chrono::steady_clock::now();
    for (int size : {1, 40, 900}) {
        json_t* list = json_array();
        for (int i = 0; i < size; ++i) json_array_append_new(list, json_pack("{s:i,s:s}", "n", i, "t", "abcdef\xc3\xa9"));
        versions.push_back(json_pack("{s:{s:i},s:o}", "Syntax", "Version", 1, "List", list));
        ASSERT_EQ(writeJSONZT4ConfigFile(versions.back()), 0);
    }
    std::mt19937 random(std::random_device{}());
    const long long took = std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start).count();
    std::uniform_int_distribution<long long> moment(0, std::clamp(took * 2, 2000LL, 60000LL));  // a little over a write
    int changed = 0;
    std::string previous = zt4test::compact(versions.back());
    for (int round = 0; round < 150; ++round) {
        const pid_t child = static_cast<pid_t>(syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0));
        ASSERT_GE(child, 0);
        if (child == 0) {
            alarm(10);  // never outlive a parent that failed to kill
            for (size_t i = static_cast<size_t>(round);; ++i) writeJSONZT4ConfigFile(versions[i % versions.size()]);
        }
        usleep(static_cast<useconds_t>(moment(random)));
        ASSERT_EQ(kill(child, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        json_t* stored = readJSONZT4ConfigFile();
        ASSERT_NE(stored, nullptr) << "round " << round << ": " << readFile(kPaths[0]).substr(0, 200);
        ASSERT_TRUE(std::any_of(versions.begin(), versions.end(), [&](json_t* v) { return json_equal(v, stored); }));
        changed += zt4test::compact(stored) != previous;
        previous = zt4test::compact(stored);
        json_decref(stored);
    }
    EXPECT_GT(changed, 0);  // the writer did get through whole writes between kills
    for (json_t* version : versions) json_decref(version);
}

}  // namespace
