#include <fcntl.h>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

#include <csetjmp>
#include <csignal>
#include <cstring>
#include <string>

#include "support/harness.hpp"
#include "zt4config.h"

namespace {

using zt4test::logged;
using zt4test::loggedCount;

constexpr const char* kEui = "70:B3:D5:7E:D0:01:23:45";
constexpr const char* kEuiLine = "70:B3:D5:7E:D0:01:23:45\n";
constexpr const char* kKey = "2B:7E:15:16:28:AE:D2:A6:AB:F7:15:88:09:CF:4F:3C";

// ---- identifier format ----------------------------------------------------------------------

struct FormatCase {
    const char* text;
    size_t length;
    int groups;
    int result;
    const char* logFragment;  // nullptr: nothing logged
};

class EuiFormat : public zt4test::DeviceTest, public ::testing::WithParamInterface<FormatCase> {};

// Runs the check under a two-second alarm that jumps back here, so that a scan that never ends
// fails the test instead of hanging it (the ARM emulator runs neither threads nor fork).
// Gives the result, or 99 when the check did not finish.
sigjmp_buf escapeFromCheck;
void onAlarm(int) { siglongjmp(escapeFromCheck, 1); }

int checkWithTimeBound(const FormatCase& c, std::string& text) {
    struct sigaction action = {}, previous = {};
    action.sa_handler = onAlarm;
    sigaction(SIGALRM, &action, &previous);
    volatile int result = 99;
    if (sigsetjmp(escapeFromCheck, 1) == 0) {
        alarm(2);
        result = checkEUIformat(text.data(), c.length, c.groups);
    }
    alarm(0);
    sigaction(SIGALRM, &previous, nullptr);
    return result;
}

TEST_P(EuiFormat, ChecksLengthAndColonSpacingAndAlwaysEnds) {
    const FormatCase& c = GetParam();
    std::string text = c.text;
    ASSERT_EQ(checkWithTimeBound(c, text), c.result);
    if (c.logFragment) {
        EXPECT_EQ(loggedCount(c.logFragment), 1) << zt4test::logDump();
    } else {
        EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
        EXPECT_EQ(std::strlen(text.c_str()), c.length);  // the newline is gone
    }
}

INSTANTIATE_TEST_SUITE_P(Texts, EuiFormat, ::testing::Values(
    FormatCase{"70:B3:D5:7E:D0:01:23:45", 23, 8, 0, nullptr},
    FormatCase{"70:B3:D5:7E:D0:01:23:45\n", 23, 8, 0, nullptr},
    FormatCase{"70:B3:D5:7E:D0:01:23:4", 23, 8, -1,
               "size wrong 22 '70:B3:D5:7E:D0:01:23:4' (exp. 23) bytes"},
    FormatCase{"70:B3:D5:7E:D0:01:23:45\n\n", 23, 8, -1, "size wrong 24"},
    FormatCase{"70B3D57ED0012345ABCDEFG", 23, 8, -1, "format wrong"},
    FormatCase{"70:B3:D5:7ED0:01:23:4:5", 23, 8, -1, "format wrong"},
    FormatCase{"70::B3D5:7E:D0:01:23:45", 23, 8, -1, "format wrong"},
    FormatCase{"2B:7E:15:16:28:AE:D2:A6:AB:F7:15:88:09:CF:4F:3C", 47, 16, 0, nullptr},
    FormatCase{"2B:7E:15:16:28:AE:D2:A6:AB:F7:15:88:09:CF:4F:3C", 47, 8, -1, "format wrong"}));

TEST(EuiFormatNull, RefusesNull) {
    zt4test::clearLog();
    EXPECT_EQ(checkEUIformat(nullptr, 23, 8), -1);
    EXPECT_TRUE(logged("error: [checkEUIformat] parameter is NULL", LOG_ERR));
}

// ---- persistent state and user settings -----------------------------------------------------

using Getter = int (*)(char*, size_t);
using Setter = int (*)(const char*);

struct StateCase {
    const char* getterName;
    Getter get;
    const char* setterName;
    Setter set;
    const char* devicePath;
    const char* value;
    const char* readBack;  // what the getter gives after the setter wrote `value`
};

class RadioState : public zt4test::DeviceTest, public ::testing::WithParamInterface<StateCase> {};

TEST_P(RadioState, WritesValueAndNewlineReadsItBackAndRefusesBadArguments) {
    const StateCase& c = GetParam();
    const std::string setter = c.setterName, getter = c.getterName;
    EXPECT_EQ(c.set(nullptr), -1);
    EXPECT_TRUE(logged("error.[" + setter + "] value is NULL", LOG_ERR));
    EXPECT_EQ(c.set(""), -1);
    EXPECT_TRUE(logged("error.[" + setter + "] value length is NULL", LOG_ERR));
    EXPECT_FALSE(exists(c.devicePath));
    ASSERT_EQ(c.set(c.value), 0) << zt4test::logDump();
    EXPECT_EQ(readFile(c.devicePath), std::string(c.value) + "\n");
    char buffer[64];
    ASSERT_EQ(c.get(buffer, sizeof buffer), 0) << zt4test::logDump();
    EXPECT_STREQ(buffer, c.readBack);
    EXPECT_EQ(c.get(nullptr, 8), -1);
    EXPECT_TRUE(logged("error.[" + getter + "] value is NULL", LOG_ERR));
    EXPECT_EQ(c.get(buffer, 0), -1);
    EXPECT_TRUE(logged("error.[" + getter + "] value size is NULL", LOG_ERR));
    writeFile(c.devicePath, "");
    EXPECT_EQ(c.get(buffer, sizeof buffer), -1);
    EXPECT_TRUE(logged("error.[" + getter + "] value is empty", LOG_ERR));
}

#define STATE(getter, setter) #getter, getter, #setter, setter

INSTANTIATE_TEST_SUITE_P(Files, RadioState, ::testing::Values(
    StateCase{STATE(getRadioDEVEUI, setRadioDEVEUI), "/home/nvram/radiodeveui", kEui, kEui},
    StateCase{STATE(getRadioAPPKEY, setRadioAPPKEY), "/home/nvram/radioappkey", kKey, kKey},
    StateCase{STATE(getRadioJoined, writeRadioJoined), "/home/nvram/radiojoined", "1", "1\n"},
    StateCase{STATE(readRadioLocalTime, writeRadioLocalTime), "/home/nvram/radiolocaltime", "1:2", "1:2\n"},
    StateCase{STATE(getRadioVersion, setRadioVersion), "/home/nvram/radioversion", "1.0.3", "1.0.3\n"},
    StateCase{STATE(getRadioRegionBand, setRadioRegionBand), "/home/nvram/currentradioregionband", "EU", "EU\n"},
    StateCase{STATE(readUserConfigRadioRegionBand, writeUserConfigRadioRegionBand), "/home/nvram/regionbandlora",
              "US-915", "US-915\n"},
    StateCase{STATE(readUserConfigLineFrequency, writeUserConfigLineFrequency), "/home/nvram/linefrequency", "50",
              "50\n"},
    StateCase{STATE(readUserConfigEthernetIPv4Addressing, writeUserConfigEthernetIPv4Addressing),
              "/home/nvram/ethernetipv4addressing", "DHCP", "DHCP\n"}));

// Whether a setter rewrites a file that may already hold its value; judged by the file's
// modification time, set far in the past beforehand.
struct SkipCase {
    const char* label;
    Setter set;  // nullptr: setRadioJoined()
    const char* devicePath;
    const char* before;
    const char* value;
    bool rewritten;
    const char* after;
};

class SkipWhenUnchanged : public zt4test::DeviceTest,
                          public ::testing::WithParamInterface<SkipCase> {};

TEST_P(SkipWhenUnchanged, RewritesOnlyAChangedValue) {
    const SkipCase& c = GetParam();
    writeFile(c.devicePath, c.before);
    struct timespec old[2] = {{1000, 0}, {1000, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, path(c.devicePath).c_str(), old, 0), 0);
    ASSERT_EQ(c.set ? c.set(c.value) : setRadioJoined(), 0) << zt4test::logDump();
    struct stat info;
    ASSERT_EQ(stat(path(c.devicePath).c_str(), &info), 0);
    EXPECT_EQ(info.st_mtime != 1000, c.rewritten);
    EXPECT_EQ(readFile(c.devicePath), c.after);
}

INSTANTIATE_TEST_SUITE_P(Values, SkipWhenUnchanged, ::testing::Values(
    SkipCase{"euiSame", setRadioDEVEUI, "/home/nvram/radiodeveui", kEuiLine, kEuiLine, false, kEuiLine},
    SkipCase{"euiChanged", setRadioDEVEUI, "/home/nvram/radiodeveui", "70:B3:D5:7E:D0:01:23:46\n", kEui, true,
             kEuiLine},
    SkipCase{"keySame", setRadioAPPKEY, "/home/nvram/radioappkey", kKey, kKey, false, kKey},
    SkipCase{"joinedWithNewlineIsRewritten", nullptr, "/home/nvram/radiojoined", "1\n", nullptr, true, "1\n"},
    SkipCase{"joinedWithoutNewline", writeRadioJoined, "/home/nvram/radiojoined", "1", "1", false, "1"},
    SkipCase{"localTimeSameNewline", writeRadioLocalTime, "/home/nvram/radiolocaltime", "1:2\n", "1:2\n", false,
             "1:2\n"},
    SkipCase{"localTimeWithoutNewline", writeRadioLocalTime, "/home/nvram/radiolocaltime", "1:2\n", "1:2", true,
             "1:2\n"},
    SkipCase{"versionAlwaysWritten", setRadioVersion, "/home/nvram/radioversion", "1.0\n", "1.0", true, "1.0\n"}),
    [](const ::testing::TestParamInfo<SkipCase>& row) { return std::string(row.param.label); });

TEST_F(RadioState, IdentifiersAreCheckedBothWays) {
    writeFile("/home/nvram/radiodeveui", kEuiLine);
    EXPECT_EQ(setRadioDEVEUI("70:B3:D5:7E:D0:01:23"), -1);
    EXPECT_TRUE(logged("error.[setRadioDEVEUI] value format is wrong", LOG_ERR));
    EXPECT_EQ(readFile("/home/nvram/radiodeveui"), kEuiLine);
    EXPECT_EQ(setRadioAPPKEY(kEui), -1);
    EXPECT_FALSE(exists("/home/nvram/radioappkey"));
    writeFile("/home/nvram/radioappkey", kEui);
    char buffer[64];
    EXPECT_EQ(getRadioAPPKEY(buffer, sizeof buffer), -1);
    EXPECT_TRUE(logged("error.[getRadioAPPKEY] value format is wrong", LOG_ERR));
    // A buffer too small for the identifier cuts it, and the cut value fails the check.
    EXPECT_EQ(getRadioDEVEUI(buffer, 20), -1);
    EXPECT_EQ(std::strlen(buffer), 19u);
}

TEST_F(RadioState, MissingFilesAreNamed) {
    char buffer[16] = "untouched";
    EXPECT_EQ(getRadioDEVEUI(buffer, sizeof buffer), -1);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(getRadioVersion(buffer, sizeof buffer), -1);
    EXPECT_EQ(readUserConfigLineFrequency(buffer, sizeof buffer), -1);
    const std::string nvram = path("/home/nvram/");
    EXPECT_TRUE(logged("error.[getRadioDEVEUI] FAILED to open file '" + nvram + "radiodeveui'", LOG_ERR));
    EXPECT_TRUE(logged("error.[getRadioVersion] Failed to open file '" + nvram + "radioversion'", LOG_ERR));
    EXPECT_TRUE(logged("error.[readUserConfigLineFrequency] No file '" + nvram + "linefrequency'", LOG_ERR));
}

TEST_F(RadioState, BuffersAndLinesAreCutNeverOverflowed) {
    writeFile("/home/nvram/radioversion", "1.22.333\n");
    char buffer[8];
    std::memset(buffer, 'x', sizeof buffer);
    ASSERT_EQ(getRadioVersion(buffer, 5), 0);
    EXPECT_STREQ(buffer, "1.22");
    EXPECT_EQ(buffer[5], 'x');
    EXPECT_EQ(getRadioVersion(buffer, 1), -1);  // room for the terminator only: empty
    std::string longValue(100, 'v');
    ASSERT_EQ(setRadioVersion(longValue.c_str()), 0);
    EXPECT_EQ(readFile("/home/nvram/radioversion"), std::string(62, 'v') + "\n");
}

// ---- daemon parameter files -----------------------------------------------------------------

struct ParameterCase {
    const char* label;
    Getter get;
    Setter set;
    const char* name;
    const char* value;  // written by `set` or, without a setter, into the file for `get`
    int result;
    const char* stored;     // file content after `set`, value given by `get`
    const char* refusedBy;  // the function that logs "value format is wrong", or null
};

class DaemonParameter : public zt4test::DeviceTest,
                        public ::testing::WithParamInterface<ParameterCase> {};

// Setters write without a newline; getters check identifiers and drop their newline. The format
// is checked, and a wrong one logged, by the checked forms (Key16: 8 groups, Key32: 16 groups)
// that the named parameters go through.
TEST_P(DaemonParameter, WritesReadsAndChecks) {
    const ParameterCase& c = GetParam();
    const std::string devicePath = std::string("/var/tmp/radio") + c.name;
    char buffer[64];
    if (c.set) {
        EXPECT_EQ(c.set(c.value), c.result) << zt4test::logDump();
        EXPECT_EQ(readFile(devicePath), c.stored);
    } else {
        writeFile(devicePath, c.value);
        EXPECT_EQ(c.get(buffer, sizeof buffer), c.result) << zt4test::logDump();
        if (c.result == 0) {
            EXPECT_STREQ(buffer, c.stored);
        }
    }
    EXPECT_EQ(loggedCount("value format is wrong"), c.refusedBy ? 1 : 0) << zt4test::logDump();
    if (c.refusedBy) {
        EXPECT_TRUE(logged(std::string("error.[") + c.refusedBy + "] value format is wrong", LOG_ERR))
            << zt4test::logDump();
    }
}

#define GET(f) #f, f, nullptr
#define SET(f) #f, nullptr, f
// The forms that take the parameter's name, on a parameter of the caller's choosing.
int getAny(char* buffer, size_t size) { return getConfigRadio("custom", buffer, size); }
int getAny16(char* buffer, size_t size) { return getConfigRadioKey16("custom", buffer, size); }
int getAny32(char* buffer, size_t size) { return getConfigRadioKey32("custom", buffer, size); }
int setAny(const char* value) { return setConfigRadio("custom", value); }
int setAny16(const char* value) { return setConfigRadioKey16("custom", value); }
int setAny32(const char* value) { return setConfigRadioKey32("custom", value); }

INSTANTIATE_TEST_SUITE_P(Files, DaemonParameter, ::testing::Values(
    ParameterCase{GET(getConfigRadioAppeui), "appeui", kEuiLine, 0, kEui, nullptr},
    ParameterCase{GET(getConfigRadioNetworkKey), "nwkkey", kKey, 0, kKey, nullptr},
    ParameterCase{GET(getConfigRadioNetworkKey), "nwkkey", kEui, -1, "", "getConfigRadioKey32"},
    ParameterCase{GET(getConfigRadioNetworkSKey), "nwkskey", kKey, -1, "", "getConfigRadioKey16"},
    ParameterCase{GET(getConfigRadioAppSKey), "appskey", kEui, 0, kEui, nullptr},
    ParameterCase{GET(getConfigRadioADR), "adr", "1\n", 0, "1\n", nullptr},
    ParameterCase{GET(getConfigRadioDR), "dr", "", -1, "", nullptr},
    ParameterCase{GET(getConfigRadioVersion), "version", "2.1", 0, "2.1", nullptr},
    ParameterCase{SET(setConfigRadioAppeui), "appeui", "70:B3", -1, "", "setConfigRadioKey16"},
    ParameterCase{SET(setConfigRadioDeveui), "deveui", kEuiLine, 0, kEui, nullptr},
    ParameterCase{SET(setConfigRadioAppkey), "appkey", kEui, -1, "", "setConfigRadioKey32"},
    ParameterCase{SET(setConfigRadioLocalTime), "localtime", "12:00:00\n", 0, "12:00:00\n", nullptr},
    ParameterCase{SET(setConfigRadioEpochTime), "epochtime", "1795000000", 0, "1795000000", nullptr},
    ParameterCase{SET(setConfigRadioRegionBand), "regionband", "EU-868", 0, "EU-868", nullptr},
    ParameterCase{GET(getAny), "custom", "any text\n", 0, "any text\n", nullptr},
    ParameterCase{GET(getAny16), "custom", kKey, -1, "", "getConfigRadioKey16"},
    ParameterCase{GET(getAny32), "custom", kKey, 0, kKey, nullptr},
    ParameterCase{SET(setAny), "custom", "free text\n", 0, "free text\n", nullptr},
    ParameterCase{SET(setAny16), "custom", kEuiLine, 0, kEui, nullptr},
    ParameterCase{SET(setAny32), "custom", kEui, -1, "", "setConfigRadioKey32"}),
    [](const ::testing::TestParamInfo<ParameterCase>& row) {
        return std::string(row.param.label) + "_" + std::to_string(row.index);
    });

// Failures of the file itself are reported by the function that reads or writes it, whichever
// named parameter asked.
TEST_F(DaemonParameter, FailuresAreReported) {
    char buffer[32];
    EXPECT_EQ(getConfigRadioDR(buffer, sizeof buffer), -1);
    EXPECT_TRUE(logged("error.[getConfigRadio] Failed to open file '" + path("/var/tmp/radiodr") + "'", LOG_ERR));
    writeFile("/var/tmp/radiodr", "");
    debug_level = 2;
    EXPECT_EQ(getConfigRadioDR(buffer, sizeof buffer), -1);
    EXPECT_TRUE(logged("error.[getConfigRadio] value dr is empty", LOG_ERR));
    EXPECT_EQ(setConfigRadioDR(""), -1);
    EXPECT_TRUE(logged("error.[setConfigRadio] value length is NULL", LOG_ERR));
    EXPECT_EQ(setConfigRadioKey32("appkey", nullptr), -1);
    EXPECT_TRUE(logged("error.[setConfigRadioKey32] value is NULL", LOG_ERR));
    EXPECT_EQ(getConfigRadioKey16(nullptr, buffer, sizeof buffer), -1);
    EXPECT_TRUE(logged("error.[getConfigRadioKey16] name is NULL", LOG_ERR));
    EXPECT_EQ(setConfigRadio(nullptr, "1"), -1);
    EXPECT_TRUE(logged("error.[setConfigRadio] name is NULL", LOG_ERR));
    EXPECT_EQ(getConfigRadioKey32("appkey", buffer, 0), -1);
    EXPECT_TRUE(logged("error.[getConfigRadioKey32] value size is NULL", LOG_ERR));
    EXPECT_EQ(getConfigRadio("dr", nullptr, sizeof buffer), -1);
    EXPECT_TRUE(logged("error.[getConfigRadio] value is NULL", LOG_ERR));
    // "/var/tmp/radio" and 49 characters fit the 64-byte device path with its terminator.
    const std::string longName(50, 'n');
    EXPECT_EQ(getConfigRadio(longName.c_str(), buffer, sizeof buffer), -1);
    EXPECT_TRUE(logged("error.[getConfigRadio] name is too long '" + longName + "'", LOG_ERR));
    EXPECT_EQ(setConfigRadio(longName.c_str(), "1"), -1);
    EXPECT_TRUE(logged("error.[setConfigRadio] name is too long '" + longName + "'", LOG_ERR));
    EXPECT_EQ(setConfigRadio(longName.substr(1).c_str(), "1"), 0);
    EXPECT_EQ(readFile("/var/tmp/radio" + longName.substr(1)), "1");
    zt4test::removeTree(path("/var/tmp"));
    EXPECT_EQ(setConfigRadioDR("1"), -1);
    EXPECT_TRUE(logged("error.[setConfigRadio] FAILED to open file '" + path("/var/tmp/radiodr") + "'", LOG_ERR));
}

}  // namespace
