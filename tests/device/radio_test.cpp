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
constexpr const char* kKey = "2B:7E:15:16:28:AE:D2:A6:AB:F7:15:88:09:CF:4F:3C";

// ---- identifier format ----------------------------------------------------------------------

struct FormatCase {
    const char* text;
    size_t length;
    int groups;
    int result;
    const char* textAfter;  // the text once checked
    const char* logFragment;  // nullptr: nothing logged
};
void PrintTo(const FormatCase& c, std::ostream* out) { *out << c.text; }

class EuiFormat : public zt4test::DeviceTest, public ::testing::WithParamInterface<FormatCase> {};

// Runs the check under a two-second alarm that jumps back here, so that a scan that never ends
// fails the test instead of hanging it. (Neither threads nor fork work under the emulator that
// runs the ARM build.) Gives the result, or 99 when the check did not finish.
sigjmp_buf escapeFromCheck;

void onAlarm(int) { siglongjmp(escapeFromCheck, 1); }

int checkWithTimeBound(const FormatCase& c, std::string& textAfter) {
    struct sigaction action = {}, previous = {};
    action.sa_handler = onAlarm;
    sigaction(SIGALRM, &action, &previous);
    std::string text = c.text;
    volatile int result = 99;
    if (sigsetjmp(escapeFromCheck, 1) == 0) {
        alarm(2);
        result = checkEUIformat(text.data(), c.length, c.groups);
    }
    alarm(0);
    sigaction(SIGALRM, &previous, nullptr);
    textAfter = text.c_str();
    return result;
}

TEST_P(EuiFormat, ChecksLengthAndColonSpacingAndAlwaysEnds) {
    const FormatCase& c = GetParam();
    std::string textAfter;
    ASSERT_EQ(checkWithTimeBound(c, textAfter), c.result) << c.text;
    EXPECT_EQ(textAfter, c.textAfter);
    if (c.logFragment) {
        EXPECT_EQ(loggedCount(c.logFragment), 1) << zt4test::logDump();
    } else {
        EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
    }
}

INSTANTIATE_TEST_SUITE_P(Texts, EuiFormat, ::testing::Values(
    FormatCase{"70:B3:D5:7E:D0:01:23:45", 23, 8, 0, "70:B3:D5:7E:D0:01:23:45", nullptr},
    FormatCase{"70:B3:D5:7E:D0:01:23:45\n", 23, 8, 0, "70:B3:D5:7E:D0:01:23:45", nullptr},
    FormatCase{"70:b3:zz:7E:D0:01:23:45", 23, 8, 0, "70:b3:zz:7E:D0:01:23:45", nullptr},
    FormatCase{"70:B3:D5:7E:D0:01:23:4", 23, 8, -1, "70:B3:D5:7E:D0:01:23:4",
               "size wrong 22 '70:B3:D5:7E:D0:01:23:4' (exp. 23) bytes"},
    FormatCase{"70:B3:D5:7E:D0:01:23:45\n\n", 23, 8, -1, "70:B3:D5:7E:D0:01:23:45\n",
               "size wrong 24"},
    FormatCase{"", 23, 8, -1, "", "size wrong 0"},
    FormatCase{"70B3D57ED0012345ABCDEFG", 23, 8, -1, "70B3D57ED0012345ABCDEFG", "format wrong"},
    FormatCase{"70:B3:D5:7ED0:01:23:4:5", 23, 8, -1, "70:B3:D5:7ED0:01:23:4:5", "format wrong"},
    FormatCase{"70::B3D5:7E:D0:01:23:45", 23, 8, -1, "70::B3D5:7E:D0:01:23:45", "format wrong"},
    FormatCase{"70-B3-D5-7E-D0-01:23:45", 23, 8, -1, "70-B3-D5-7E-D0-01:23:45", "format wrong"},
    FormatCase{"2B:7E:15:16:28:AE:D2:A6:AB:F7:15:88:09:CF:4F:3C", 47, 16, 0,
               "2B:7E:15:16:28:AE:D2:A6:AB:F7:15:88:09:CF:4F:3C", nullptr},
    FormatCase{"2B:7E:15:16:28:AE:D2:A6:AB:F7:15:88:09:CF:4F:3C", 23, 8, -1,
               "2B:7E:15:16:28:AE:D2:A6:AB:F7:15:88:09:CF:4F:3C", "size wrong 47"},
    FormatCase{"2B:7E:15:16:28:AE:D2:A6:AB:F7:15:88:09:CF:4F:3C", 47, 8, -1,
               "2B:7E:15:16:28:AE:D2:A6:AB:F7:15:88:09:CF:4F:3C", "format wrong"}));

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
void PrintTo(const StateCase& c, std::ostream* out) { *out << c.setterName; }

class RadioState : public zt4test::DeviceTest, public ::testing::WithParamInterface<StateCase> {};

TEST_P(RadioState, WritesValueAndNewlineAndReadsItBack) {
    const StateCase& c = GetParam();
    ASSERT_EQ(c.set(c.value), 0) << zt4test::logDump();
    EXPECT_EQ(readFile(c.devicePath), std::string(c.value) + "\n");
    char buffer[64];
    ASSERT_EQ(c.get(buffer, sizeof buffer), 0) << zt4test::logDump();
    EXPECT_STREQ(buffer, c.readBack);
}

TEST_P(RadioState, RefusesMissingArgumentsAndEmptyFiles) {
    const StateCase& c = GetParam();
    const std::string setter = c.setterName, getter = c.getterName;
    EXPECT_EQ(c.set(nullptr), -1);
    EXPECT_TRUE(logged("error.[" + setter + "] value is NULL", LOG_ERR));
    EXPECT_EQ(c.set(""), -1);
    EXPECT_TRUE(logged("error.[" + setter + "] value length is NULL", LOG_ERR));
    EXPECT_FALSE(exists(c.devicePath));

    char buffer[8];
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
    StateCase{STATE(readRadioLocalTime, writeRadioLocalTime), "/home/nvram/radiolocaltime",
              "2026-11-23T11:00:00", "2026-11-23T11:00:00\n"},
    StateCase{STATE(getRadioVersion, setRadioVersion), "/home/nvram/radioversion", "1.0.3",
              "1.0.3\n"},
    StateCase{STATE(getRadioRegionBand, setRadioRegionBand),
              "/home/nvram/currentradioregionband", "EU-868", "EU-868\n"},
    StateCase{STATE(readUserConfigRadioRegionBand, writeUserConfigRadioRegionBand),
              "/home/nvram/regionbandlora", "US-915", "US-915\n"},
    StateCase{STATE(readUserConfigLineFrequency, writeUserConfigLineFrequency),
              "/home/nvram/linefrequency", "50", "50\n"},
    StateCase{STATE(readUserConfigEthernetIPv4Addressing, writeUserConfigEthernetIPv4Addressing),
              "/home/nvram/ethernetipv4addressing", "dhcp", "dhcp\n"}));

// Whether a setter rewrites a file that may already hold its value; judged by the file's
// modification time, set far in the past beforehand.
struct SkipCase {
    const char* label;
    Setter set;
    const char* devicePath;
    const char* before;
    const char* value;  // nullptr: setRadioJoined()
    bool rewritten;
    const char* after;
};
void PrintTo(const SkipCase& c, std::ostream* out) { *out << c.label; }

class SkipWhenUnchanged : public zt4test::DeviceTest,
                          public ::testing::WithParamInterface<SkipCase> {};

TEST_P(SkipWhenUnchanged, RewritesOnlyAChangedValue) {
    const SkipCase& c = GetParam();
    writeFile(c.devicePath, c.before);
    struct timespec old[2] = {{1000, 0}, {1000, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, path(c.devicePath).c_str(), old, 0), 0);
    ASSERT_EQ(c.value ? c.set(c.value) : setRadioJoined(), 0) << zt4test::logDump();
    struct stat info;
    ASSERT_EQ(stat(path(c.devicePath).c_str(), &info), 0);
    EXPECT_EQ(info.st_mtime != 1000, c.rewritten);
    EXPECT_EQ(readFile(c.devicePath), c.after);
}

INSTANTIATE_TEST_SUITE_P(Values, SkipWhenUnchanged, ::testing::Values(
    SkipCase{"euiSame", setRadioDEVEUI, "/home/nvram/radiodeveui",
             "70:B3:D5:7E:D0:01:23:45\n", kEui, false, "70:B3:D5:7E:D0:01:23:45\n"},
    SkipCase{"euiSameGivenWithNewline", setRadioDEVEUI, "/home/nvram/radiodeveui",
             "70:B3:D5:7E:D0:01:23:45\n", "70:B3:D5:7E:D0:01:23:45\n", false,
             "70:B3:D5:7E:D0:01:23:45\n"},
    SkipCase{"euiChanged", setRadioDEVEUI, "/home/nvram/radiodeveui",
             "70:B3:D5:7E:D0:01:23:46\n", kEui, true, "70:B3:D5:7E:D0:01:23:45\n"},
    SkipCase{"euiStoredBadly", setRadioDEVEUI, "/home/nvram/radiodeveui", "70:B3\n", kEui, true,
             "70:B3:D5:7E:D0:01:23:45\n"},
    SkipCase{"keySame", setRadioAPPKEY, "/home/nvram/radioappkey",
             "2B:7E:15:16:28:AE:D2:A6:AB:F7:15:88:09:CF:4F:3C\n", kKey, false,
             "2B:7E:15:16:28:AE:D2:A6:AB:F7:15:88:09:CF:4F:3C\n"},
    SkipCase{"joinedWithNewlineIsRewritten", nullptr, "/home/nvram/radiojoined", "1\n", nullptr,
             true, "1\n"},
    SkipCase{"joinedWithoutNewline", writeRadioJoined, "/home/nvram/radiojoined", "1", "1", false,
             "1"},
    SkipCase{"joinedSameNewline", writeRadioJoined, "/home/nvram/radiojoined", "1\n", "1\n",
             false, "1\n"},
    SkipCase{"joinedCleared", writeRadioJoined,
             "/home/nvram/radiojoined", "1\n", "0", true, "0\n"},
    SkipCase{"localTimeSameNewline", writeRadioLocalTime, "/home/nvram/radiolocaltime",
             "12:00:00\n", "12:00:00\n", false, "12:00:00\n"},
    SkipCase{"localTimeWithoutNewline", writeRadioLocalTime, "/home/nvram/radiolocaltime",
             "12:00:00\n", "12:00:00", true, "12:00:00\n"},
    SkipCase{"versionAlwaysWritten", setRadioVersion, "/home/nvram/radioversion", "1.0\n", "1.0",
             true, "1.0\n"},
    SkipCase{"userBandAlwaysWritten", writeUserConfigRadioRegionBand,
             "/home/nvram/regionbandlora", "EU-868\n", "EU-868", true, "EU-868\n"}),
    [](const ::testing::TestParamInfo<SkipCase>& row) { return std::string(row.param.label); });

TEST_F(RadioState, ClearAndSetJoinedWriteTheFlag) {
    ASSERT_EQ(clearRadioJoined(), 0);
    EXPECT_EQ(readFile("/home/nvram/radiojoined"), "0\n");
    ASSERT_EQ(setRadioJoined(), 0);
    EXPECT_EQ(readFile("/home/nvram/radiojoined"), "1\n");
}

TEST_F(RadioState, IdentifierSettersRefuseABadFormatAndKeepTheFile) {
    writeFile("/home/nvram/radiodeveui", "70:B3:D5:7E:D0:01:23:45\n");
    EXPECT_EQ(setRadioDEVEUI("70:B3:D5:7E:D0:01:23"), -1);
    EXPECT_TRUE(logged("error.[setRadioDEVEUI] value format is wrong", LOG_ERR));
    EXPECT_EQ(readFile("/home/nvram/radiodeveui"), "70:B3:D5:7E:D0:01:23:45\n");
    EXPECT_EQ(setRadioAPPKEY(kEui), -1);
    EXPECT_TRUE(logged("error.[setRadioAPPKEY] value format is wrong", LOG_ERR));
    EXPECT_FALSE(exists("/home/nvram/radioappkey"));
}

TEST_F(RadioState, GettersCheckTheStoredIdentifier) {
    writeFile("/home/nvram/radiodeveui", kKey);
    char buffer[64];
    EXPECT_EQ(getRadioDEVEUI(buffer, sizeof buffer), -1);
    EXPECT_TRUE(logged("error.[getRadioDEVEUI] value format is wrong", LOG_ERR));
    writeFile("/home/nvram/radioappkey", std::string(kKey) + "\n");
    ASSERT_EQ(getRadioAPPKEY(buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, kKey);
    // A buffer too small for the identifier cuts it, and the cut value fails the check.
    EXPECT_EQ(getRadioAPPKEY(buffer, 24), -1);
    EXPECT_EQ(std::strlen(buffer), 23u);
}

struct MissingCase {
    Getter get;
    const char* message;
};
void PrintTo(const MissingCase& c, std::ostream* out) { *out << c.message; }

class MissingStateFile : public zt4test::DeviceTest,
                         public ::testing::WithParamInterface<MissingCase> {};

TEST_P(MissingStateFile, NamesTheFile) {
    char buffer[16] = "untouched";
    EXPECT_EQ(GetParam().get(buffer, sizeof buffer), -1);
    std::string expected = GetParam().message;
    size_t mark = expected.find('@');
    expected.replace(mark, 1, root());
    EXPECT_TRUE(logged(expected, LOG_ERR)) << zt4test::logDump();
    EXPECT_STREQ(buffer, "");
}

INSTANTIATE_TEST_SUITE_P(Readers, MissingStateFile, ::testing::Values(
    MissingCase{getRadioDEVEUI,
                "error.[getRadioDEVEUI] FAILED to open file '@/home/nvram/radiodeveui'"},
    MissingCase{getRadioVersion,
                "error.[getRadioVersion] Failed to open file '@/home/nvram/radioversion'"},
    MissingCase{readUserConfigLineFrequency,
                "error.[readUserConfigLineFrequency] No file '@/home/nvram/linefrequency'"},
    MissingCase{readUserConfigEthernetIPv4Addressing,
                "error.[readUserConfigEthernetIPv4Addressing] No file "
                "'@/home/nvram/ethernetipv4addressing'"}));

TEST_F(RadioState, ATightBufferIsCutAndTerminated) {
    writeFile("/home/nvram/radioversion", "1.22.333\n");
    char buffer[8];
    std::memset(buffer, 'x', sizeof buffer);
    ASSERT_EQ(getRadioVersion(buffer, 5), 0);
    EXPECT_STREQ(buffer, "1.22");
    EXPECT_EQ(buffer[5], 'x');
    ASSERT_EQ(getRadioVersion(buffer, 1), -1);  // room for the terminator only: empty
    EXPECT_EQ(buffer[0], '\0');
}

TEST_F(RadioState, ALongValueIsCutToOneLine) {
    std::string longValue(100, 'v');
    ASSERT_EQ(setRadioVersion(longValue.c_str()), 0);
    EXPECT_EQ(readFile("/home/nvram/radioversion"), std::string(62, 'v') + "\n");
}

// ---- daemon parameter files -----------------------------------------------------------------

struct ParameterGetCase {
    const char* function;
    Getter get;
    const char* name;
    const char* content;
    int result;
    const char* value;
    const char* logFragment;
};
void PrintTo(const ParameterGetCase& c, std::ostream* out) {
    *out << c.function << " " << c.content;
}

class DaemonParameterGet : public zt4test::DeviceTest,
                           public ::testing::WithParamInterface<ParameterGetCase> {};

TEST_P(DaemonParameterGet, ReadsAndChecks) {
    const ParameterGetCase& c = GetParam();
    writeFile(std::string("/var/tmp/radio") + c.name, c.content);
    char buffer[64];
    EXPECT_EQ(c.get(buffer, sizeof buffer), c.result) << zt4test::logDump();
    if (c.result == 0) {
        EXPECT_STREQ(buffer, c.value);
    }
    if (c.logFragment) {
        EXPECT_EQ(loggedCount(std::string("[") + c.function + "] " + c.logFragment), 1)
            << zt4test::logDump();
    }
}

#define GETTER(f) #f, f

INSTANTIATE_TEST_SUITE_P(Files, DaemonParameterGet, ::testing::Values(
    ParameterGetCase{GETTER(getConfigRadioAppeui), "appeui", "70:B3:D5:7E:D0:00:00:01\n", 0,
                     "70:B3:D5:7E:D0:00:00:01", nullptr},
    ParameterGetCase{GETTER(getConfigRadioDeveui), "deveui", kEui, 0, kEui, nullptr},
    ParameterGetCase{GETTER(getConfigRadioAppkey), "appkey", kKey, 0, kKey, nullptr},
    ParameterGetCase{GETTER(getConfigRadioNetworkKey), "nwkkey", kKey, 0, kKey, nullptr},
    ParameterGetCase{GETTER(getConfigRadioNetworkKey), "nwkkey", kEui, -1, "",
                     "value format is wrong"},
    ParameterGetCase{GETTER(getConfigRadioAddress), "address", "00:00:00:00:26:01:1B:8F", 0,
                     "00:00:00:00:26:01:1B:8F", nullptr},
    ParameterGetCase{GETTER(getConfigRadioNetworkID), "networkid", "00:00:00:00:00:00:00:13", 0,
                     "00:00:00:00:00:00:00:13", nullptr},
    ParameterGetCase{GETTER(getConfigRadioNetworkSKey), "nwkskey", kKey, -1, "",
                     "value format is wrong"},
    ParameterGetCase{GETTER(getConfigRadioAppSKey), "appskey", kEui, 0, kEui, nullptr},
    ParameterGetCase{GETTER(getConfigRadioADR), "adr", "1\n", 0, "1\n", nullptr},
    ParameterGetCase{GETTER(getConfigRadioDR), "dr", "5", 0, "5", nullptr},
    ParameterGetCase{GETTER(getConfigRadioJoined), "joined", "0", 0, "0", nullptr},
    ParameterGetCase{GETTER(getConfigRadioNetworkStatus), "networkstatus", "joined", 0, "joined",
                     nullptr},
    ParameterGetCase{GETTER(getConfigRadioDRMaxReached), "drdone", "1", 0, "1", nullptr},
    ParameterGetCase{GETTER(getConfigRadioVersion), "version", "1.0.3", 0, "1.0.3", nullptr},
    ParameterGetCase{GETTER(getConfigRadioBand), "regionband", "EU-868", 0, "EU-868", nullptr},
    ParameterGetCase{GETTER(getConfigRadioDR), "dr", "", -1, "", nullptr}));

TEST_F(DaemonParameterGet, MissingFileAndEmptyValueAreReported) {
    char buffer[32];
    EXPECT_EQ(getConfigRadioDR(buffer, sizeof buffer), -1);
    EXPECT_TRUE(logged("error.[getConfigRadioDR] Failed to open file '" +
                       path("/var/tmp/radiodr") + "'", LOG_ERR));
    writeFile("/var/tmp/radiodr", "");
    debug_level = 2;
    EXPECT_EQ(getConfigRadioDR(buffer, sizeof buffer), -1);
    EXPECT_TRUE(logged("error.[getConfigRadioDR] value dr is empty", LOG_ERR));
}

struct ParameterSetCase {
    const char* function;
    Setter set;
    const char* name;
    const char* value;
    int result;
    const char* content;  // nullptr: no file
};
void PrintTo(const ParameterSetCase& c, std::ostream* out) {
    *out << c.function << " " << (c.value ? c.value : "NULL");
}

class DaemonParameterSet : public zt4test::DeviceTest,
                           public ::testing::WithParamInterface<ParameterSetCase> {};

TEST_P(DaemonParameterSet, WritesWithoutNewline) {
    const ParameterSetCase& c = GetParam();
    const std::string devicePath = std::string("/var/tmp/radio") + c.name;
    EXPECT_EQ(c.set(c.value), c.result) << zt4test::logDump();
    if (c.content) {
        EXPECT_EQ(readFile(devicePath), c.content);
    } else {
        EXPECT_FALSE(exists(devicePath));
        EXPECT_TRUE(logged(std::string("error.[") + c.function + "] " +
                           (c.value && *c.value ? "value format is wrong"
                            : c.value ? "value length is NULL" : "value is NULL"), LOG_ERR))
            << zt4test::logDump();
    }
}

#define SETTER(f) #f, f

INSTANTIATE_TEST_SUITE_P(Files, DaemonParameterSet, ::testing::Values(
    ParameterSetCase{SETTER(setConfigRadioAppeui), "appeui", kEui, 0, kEui},
    ParameterSetCase{SETTER(setConfigRadioAppeui), "appeui", "70:B3", -1, nullptr},
    ParameterSetCase{SETTER(setConfigRadioDeveui), "deveui", "70:B3:D5:7E:D0:01:23:45\n", 0, kEui},
    ParameterSetCase{SETTER(setConfigRadioAppkey), "appkey", kKey, 0, kKey},
    ParameterSetCase{SETTER(setConfigRadioAppkey), "appkey", kEui, -1, nullptr},
    ParameterSetCase{SETTER(setConfigRadioDR), "dr", "3", 0, "3"},
    ParameterSetCase{SETTER(setConfigRadioDR), "dr", "", -1, nullptr},
    ParameterSetCase{SETTER(setConfigRadioDR), "dr", nullptr, -1, nullptr},
    ParameterSetCase{SETTER(setConfigRadioJoined), "joined", "1", 0, "1"},
    ParameterSetCase{SETTER(setConfigRadioNetworkStatus), "networkstatus", "idle", 0, "idle"},
    ParameterSetCase{SETTER(setConfigRadioVersion), "version", "1.0.3", 0, "1.0.3"},
    ParameterSetCase{SETTER(setConfigRadioRegionBand), "regionband", "AS-923", 0, "AS-923"},
    ParameterSetCase{SETTER(setConfigRadioLocalTime), "localtime", "12:00:00\n", 0, "12:00:00\n"},
    ParameterSetCase{SETTER(setConfigRadioEpochTime), "epochtime", "1795000000", 0,
                     "1795000000"}));

TEST_F(DaemonParameterSet, ReplacesALongerValue) {
    writeFile("/var/tmp/radiodr", "12345");
    ASSERT_EQ(setConfigRadioDR("1"), 0);
    EXPECT_EQ(readFile("/var/tmp/radiodr"), "1");
}

TEST_F(DaemonParameterSet, AnUnwritableDirectoryFailsCleanly) {
    zt4test::removeTree(path("/var/tmp"));
    EXPECT_EQ(setConfigRadioDR("1"), -1);
    EXPECT_TRUE(logged("error.[setConfigRadioDR] FAILED to open file '" +
                       path("/var/tmp/radiodr") + "'", LOG_ERR));
}

}  // namespace
