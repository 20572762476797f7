#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

#include <string>

#include "support/harness.hpp"
#include "zt4config.h"

namespace {

using zt4test::logged;

class Leds : public zt4test::DeviceTest {
protected:
    void SetUp() override {
        DeviceTest::SetUp();
        drainBrightnessCache();
    }
    // The maximum-brightness cache lives as long as the process. An LED without attribute files
    // shortens a filled cache at each leds_on, and only an empty cache makes leds_on open
    // max_brightness; so calling it until it tries that file leaves the cache empty.
    void drainBrightnessCache() {
        for (int attempt = 0; attempt < 9; ++attempt) {
            zt4test::clearLog();
            leds_on("drain");
            if (zt4test::loggedCount("/drain/max_brightness") > 0) {
                zt4test::clearLog();
                return;
            }
        }
        FAIL() << "the brightness cache never emptied";
    }
    std::string led(const std::string& name, const std::string& attribute) const {
        return "/sys/class/leds/" + name + "/" + attribute;
    }
    void makeLed(const std::string& name, const std::string& maxBrightness) const {
        writeFile(led(name, "max_brightness"), maxBrightness);
        writeFile(led(name, "brightness"), "stale-value");
        writeFile(led(name, "trigger"), "stale-trigger");
    }
};

struct AttributeCase {
    const char* name;
    int (*operation)(const char*);
    const char* attribute;
    const char* written;
    const char* untouched;
};

class LedAttribute : public Leds, public ::testing::WithParamInterface<AttributeCase> {};

TEST_P(LedAttribute, ReplacesOnlyItsAttribute) {
    const AttributeCase& c = GetParam();
    makeLed("status", "255\n");
    EXPECT_EQ(c.operation("status"), 0);
    EXPECT_EQ(readFile(led("status", c.attribute)), c.written);
    EXPECT_EQ(readFile(led("status", c.untouched)).rfind("stale-", 0), 0u);
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();

    // The same operation on an LED the kernel does not have: the attribute writer reports it.
    EXPECT_EQ(c.operation("absent"), -1);
    EXPECT_TRUE(logged("error.[leds_file] Failed to open file '" +
                           path(led("absent", c.attribute)) + "'",
                       LOG_ERR))
        << zt4test::logDump();
}

INSTANTIATE_TEST_SUITE_P(Operations, LedAttribute, ::testing::Values(
    AttributeCase{"leds_off", leds_off, "brightness", "0", "trigger"},
    AttributeCase{"leds_blink", leds_blink, "trigger", "timer", "brightness"},
    AttributeCase{"leds_heartbeat", leds_heartbeat, "trigger", "heartbeat", "brightness"}),
    [](const auto& param) { return std::string(param.param.name); });

TEST_F(Leds, OnShortensTheSharedCacheAtEachCall) {
    makeLed("status", "255\n");
    makeLed("alarm", "7\n");
    ASSERT_EQ(leds_on("status"), 0);
    EXPECT_EQ(readFile(led("status", "brightness")), "255");
    EXPECT_EQ(readFile(led("status", "trigger")), "default-on");
    // Another LED gets the same cache, one character shorter, not its own maximum.
    ASSERT_EQ(leds_on("alarm"), 0);
    EXPECT_EQ(readFile(led("alarm", "brightness")), "25");
    ASSERT_EQ(leds_on("status"), 0);
    EXPECT_EQ(readFile(led("status", "brightness")), "2");
    // Now the cache empties: nothing valid to write as brightness, the trigger still goes on.
    writeFile(led("status", "trigger"), "none");
    EXPECT_EQ(leds_on("status"), -1);
    EXPECT_EQ(readFile(led("status", "brightness")), "2");
    EXPECT_EQ(readFile(led("status", "trigger")), "default-on");
    // An empty cache is filled again from the file.
    EXPECT_EQ(leds_on("alarm"), 0);
    EXPECT_EQ(readFile(led("alarm", "brightness")), "7");
}

TEST_F(Leds, OnNeedsAMaximumAndReadsAtMostSevenCharactersOfIt) {
    EXPECT_EQ(leds_on("status"), -1);
    EXPECT_TRUE(logged("error.[leds_on] Failed to open file '" + path(led("status", "max_brightness")) + "'",
                       LOG_ERR));
    makeLed("status", "");
    EXPECT_EQ(leds_on("status"), -1);
    EXPECT_TRUE(logged("error.[leds_on] Max brightness NULL", LOG_ERR));
    EXPECT_EQ(readFile(led("status", "brightness")), "stale-value");
    makeLed("status", "123456789\n");
    ASSERT_EQ(leds_on("status"), 0);
    EXPECT_EQ(readFile(led("status", "brightness")), "123456");
}

TEST_F(Leds, WriteFailureIsReported) {
    if (access("/dev/full", W_OK) != 0) GTEST_SKIP() << "no /dev/full";
    ASSERT_EQ(mkdir(path("/sys/class/leds/full").c_str(), 0755), 0);
    ASSERT_EQ(symlink("/dev/full", path(led("full", "trigger")).c_str()), 0);
    EXPECT_EQ(leds_blink("full"), -1);
    EXPECT_TRUE(logged("error.[leds_file] Failed to write 'timer' in file '" +
                           path(led("full", "trigger")) + "'",
                       LOG_ERR))
        << zt4test::logDump();
}

// Device paths of attributes must fit in 64 bytes: "/sys/class/leds/" + name + "/brightness"
// allows names of 36 characters, "/max_brightness" names of 32.
TEST_F(Leds, NamesAreCheckedBeforeAnyPathIsBuilt) {
    const std::string longest(36, 'a');
    makeLed(longest, "");
    EXPECT_EQ(leds_off(longest.c_str()), 0);
    EXPECT_EQ(readFile(led(longest, "brightness")), "0");
    EXPECT_EQ(leds_off((longest + "b").c_str()), -1);
    EXPECT_TRUE(logged("error.[leds_file] LED name too long: '" + longest + "b'", LOG_ERR));
    const std::string tooLongForMaximum(33, 'm');
    makeLed(tooLongForMaximum, "255\n");
    EXPECT_EQ(leds_on(tooLongForMaximum.c_str()), -1);
    EXPECT_TRUE(logged("error.[leds_on] LED name too long: '" + tooLongForMaximum + "'", LOG_ERR));

    zt4test::clearLog();
    for (const char* bad : {"", ".", "..", "../../etc", "status/brightness"}) {
        EXPECT_EQ(leds_heartbeat(bad), -1) << bad;
        EXPECT_TRUE(logged(std::string("error.[leds_file] Invalid LED name '") + bad + "'"));
    }
    for (int (*operation)(const char*) : {leds_on, leds_off, leds_blink, leds_heartbeat,
                                          CreateFile, DeleteFile}) {
        EXPECT_EQ(operation(nullptr), -1);
    }
}

class Files : public zt4test::DeviceTest {};

TEST_F(Files, CreateEmptiesAndDeleteAcceptsOnlyAMissingFile) {
    const std::string marker = path("/var/tmp/marker");
    writeFile("/var/tmp/marker", "old content");
    ASSERT_EQ(CreateFile(marker.c_str()), 0);
    EXPECT_EQ(readFile("/var/tmp/marker"), "");
    ASSERT_EQ(DeleteFile(marker.c_str()), 0);
    EXPECT_FALSE(exists("/var/tmp/marker"));
    EXPECT_EQ(DeleteFile(marker.c_str()), 0);
    ASSERT_EQ(CreateFile(marker.c_str()), 0);
    EXPECT_TRUE(exists("/var/tmp/marker"));
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();

    const std::string nowhere = path("/no/such/dir/marker"), directory = path("/var/zt4");
    EXPECT_EQ(CreateFile(nowhere.c_str()), -1);
    EXPECT_TRUE(logged("error.[CreateFile]: Failed to create file '" + nowhere + "'. (No such file or directory)",
                       LOG_ERR));
    EXPECT_EQ(DeleteFile(directory.c_str()), -1);
    EXPECT_TRUE(exists("/var/zt4"));
    EXPECT_EQ(zt4test::loggedCount("error.[DeleteFile]: Failed to delete file " + directory + " ("), 1)
        << zt4test::logDump();
}

}  // namespace
