#include <fcntl.h>
#include <syslog.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>

#include "support/harness.hpp"
#include "zt4config.h"

namespace {

using zt4test::logged;

constexpr const char* kJoinFile = "/var/run/timestamp_join";

class JoinTimestamp : public zt4test::DeviceTest {
protected:
    void SetUp() override {
        zt4test::DeviceTest::SetUp();
        std::filesystem::create_directories(path("/var/run"));
    }
};

struct RoundTrip {
    const char* before;  // nullptr: no file
    int32_t written;
    const char* after;
    int32_t readBack;
};

TEST_F(JoinTimestamp, WritesOverTheStartWithoutTruncating) {
    const RoundTrip cases[] = {
        {nullptr, 1795431600, "1795431600", 1795431600},
        {"1234567", 89, "8934567", 8934567},
        {"7\n", 0, "0\n", 0},
    };
    for (const RoundTrip& c : cases) {
        removeFile(kJoinFile);
        if (c.before) writeFile(kJoinFile, c.before);
        ASSERT_EQ(setTimestampLastJoin(c.written), 0) << zt4test::logDump();
        EXPECT_EQ(readFile(kJoinFile), c.after);
        int32_t timestamp = -1;
        ASSERT_EQ(getTimestampLastJoin(&timestamp), 0);
        EXPECT_EQ(timestamp, c.readBack) << c.after;
    }
}

TEST_F(JoinTimestamp, MissingOrEmptyFileIsAFailureWithZero) {
    int32_t timestamp = 77;
    EXPECT_EQ(getTimestampLastJoin(&timestamp), -1);
    EXPECT_EQ(timestamp, 0);
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
    debug_level = 2;
    EXPECT_EQ(getTimestampLastJoin(&timestamp), -1);
    EXPECT_TRUE(logged("error.[getTimestampLastJoin]: fd INVALID", LOG_ERR));
    writeFile(kJoinFile, "");
    timestamp = 77;
    EXPECT_EQ(getTimestampLastJoin(&timestamp), -1);
    EXPECT_EQ(timestamp, 0);
}

void onAlarm(int) {}

// Another holder of the file's write lock (an open-file-description lock, which conflicts with
// the library's record lock even within this process) makes both operations wait; an alarm
// interrupts the wait, and the operations report the lock failure without touching the file.
TEST_F(JoinTimestamp, BothOperationsWaitForTheWriteLock) {
    writeFile(kJoinFile, "1795431600");
    int holder = open(path(kJoinFile).c_str(), O_RDWR);
    ASSERT_GE(holder, 0);
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    ASSERT_EQ(fcntl(holder, F_OFD_SETLK, &lock), 0);

    struct sigaction action = {}, previous = {};
    action.sa_handler = onAlarm;  // no SA_RESTART: the waiting lock call is interrupted
    sigaction(SIGALRM, &action, &previous);
    int32_t timestamp = 0;
    alarm(1);
    EXPECT_EQ(getTimestampLastJoin(&timestamp), -1);
    alarm(1);
    EXPECT_EQ(setTimestampLastJoin(1), -1);
    alarm(0);
    sigaction(SIGALRM, &previous, nullptr);
    close(holder);

    const std::string file = path(kJoinFile);
    EXPECT_TRUE(logged("error.[getTimestampLastJoin]: FAILED to lock file '" + file + "'"));
    EXPECT_TRUE(logged("error.[setTimestampLastJoin]: FAILED to lock file '" + file + "'"));
    EXPECT_EQ(readFile(kJoinFile), "1795431600");
    ASSERT_EQ(getTimestampLastJoin(&timestamp), 0);
    EXPECT_EQ(timestamp, 1795431600);
}

}  // namespace
