#include <fcntl.h>
#include <unistd.h>

#include <syslog.h>

#include <cstring>

#include <string>

#include "lock/child_process.hpp"
#include "support/harness.hpp"
#include "zt4config.h"

namespace {

using zt4test::ChildProcess;
using zt4test::kMustHappenMs;
using zt4test::kMustNotHappenMs;

using LockFunction = int (*)(int, const char*);

class FileLock : public zt4test::DeviceTest {
protected:
    void SetUp() override {
        DeviceTest::SetUp();
        file_ = path("/var/tmp/shared.cfg");
        writeFile("/var/tmp/shared.cfg", "x=1\n");
    }
    int openShared(int flags = O_RDWR) const { return open(file_.c_str(), flags); }

    // Whether another process could take a lock of `type` right now, without waiting.
    bool otherProcessCanLock(short type) const {
        const std::string file = file_;
        ChildProcess child([file, type] {
            int fd = open(file.c_str(), O_RDWR);
            struct flock probe;
            std::memset(&probe, 0, sizeof probe);
            probe.l_type = type;
            probe.l_whence = SEEK_SET;
            return fd >= 0 && fcntl(fd, F_SETLK, &probe) == 0 ? 1 : 0;
        });
        EXPECT_TRUE(child.started());
        return child.report(kMustHappenMs) == 1;
    }

    std::string file_;
};

struct ContentionCase {
    const char* name;
    LockFunction holderLock;
    LockFunction holderUnlock;
    LockFunction waiterLock;
    bool waits;
};

class Contention : public FileLock, public ::testing::WithParamInterface<ContentionCase> {};

// A second process asking for a conflicting lock waits inside the call and proceeds as soon as
// the holder releases; a compatible request is granted at once.
TEST_P(Contention, SecondProcessWaitsOnlyForConflictingLocks) {
    const ContentionCase& c = GetParam();
    int fd = openShared();
    ASSERT_GE(fd, 0);
    ASSERT_EQ(c.holderLock(fd, file_.c_str()), 0);

    const std::string file = file_;
    LockFunction waiterLock = c.waiterLock;
    ChildProcess waiter([file, waiterLock] {
        int childFd = open(file.c_str(), O_RDWR);
        return childFd >= 0 ? 10 + waiterLock(childFd, file.c_str()) : 99;
    });
    ASSERT_TRUE(waiter.started());
    if (c.waits) {
        EXPECT_EQ(waiter.report(kMustNotHappenMs), -1) << "the second process did not wait";
        ASSERT_EQ(c.holderUnlock(fd, file_.c_str()), 0);
        EXPECT_EQ(waiter.report(kMustHappenMs), 10) << "the second process never got the lock";
    } else {
        EXPECT_EQ(waiter.report(kMustHappenMs), 10);
        EXPECT_EQ(c.holderUnlock(fd, file_.c_str()), 0);
    }
    EXPECT_EQ(waiter.wait(), 0);
    close(fd);
}

INSTANTIATE_TEST_SUITE_P(Pairs, Contention, ::testing::Values(
    ContentionCase{"ReaderThenReader", LockReadFile, UnLockReadFile, LockReadFile, false},
    ContentionCase{"ReaderThenWriter", LockReadFile, UnLockReadFile, LockWriteFile, true},
    ContentionCase{"WriterThenReader", LockWriteFile, UnLockWriteFile, LockReadFile, true},
    ContentionCase{"WriterThenWriter", LockWriteFile, UnLockWriteFile, LockWriteFile, true}),
    [](const auto& param) { return std::string(param.param.name); });

struct BadCallCase {
    LockFunction call;
    enum { Closed, Invalid, ReadOnly, Valid } descriptor;
    const char* name;
    const char* expectedLog;  // "" when nothing may be logged
};

class BadCall : public FileLock, public ::testing::WithParamInterface<BadCallCase> {};

TEST_P(BadCall, FailsWithItsMessage) {
    const BadCallCase& c = GetParam();
    int fd = -1;
    if (c.descriptor == BadCallCase::Closed) fd = 1000;
    if (c.descriptor == BadCallCase::ReadOnly) fd = openShared(O_RDONLY);
    if (c.descriptor == BadCallCase::Valid) fd = openShared();
    EXPECT_EQ(c.call(fd, c.name), -1);
    if (*c.expectedLog) {
        EXPECT_TRUE(zt4test::logged(c.expectedLog, LOG_ERR)) << zt4test::logDump();
        EXPECT_EQ(zt4test::capturedLog().size(), 1u);
    } else {
        EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
    }
    // A refused call must not leave a lock behind.
    EXPECT_TRUE(otherProcessCanLock(F_WRLCK));
    if (fd >= 0 && fd != 1000) close(fd);
}

INSTANTIATE_TEST_SUITE_P(Arguments, BadCall, ::testing::Values(
    BadCallCase{LockReadFile, BadCallCase::Invalid, "f", ""},
    BadCallCase{LockReadFile, BadCallCase::Valid, nullptr, ""},
    BadCallCase{LockWriteFile, BadCallCase::Invalid, "f",
                "error.[LockWriteFile]: fd INVALID for f"},
    BadCallCase{LockWriteFile, BadCallCase::Valid, nullptr,
                "error.[LockWriteFile]: filename NULL"},
    BadCallCase{UnLockWriteFile, BadCallCase::Invalid, nullptr,
                "error.[UnLockWriteFile]: filename NULL"},
    BadCallCase{LockWriteFile, BadCallCase::ReadOnly, "f",
                "error.[LockWriteFile]: fnctl() Bad file descriptor while locking file f"},
    BadCallCase{LockReadFile, BadCallCase::Closed, "f",
                "error.[LockReadFile]: fnctl() Bad file descriptor while locking file f"},
    BadCallCase{UnLockReadFile, BadCallCase::Closed, "f",
                "error.[UnLockReadFile]: fnctl() Bad file descriptor while unlocking file f"}));

TEST_F(FileLock, TracesProgressFromDebugLevelThree) {
    int fd = openShared();
    ASSERT_GE(fd, 0);
    debug_level = 2;
    ASSERT_EQ(LockWriteFile(fd, "shared.cfg"), 0);
    ASSERT_EQ(UnLockWriteFile(fd, "shared.cfg"), 0);
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
    debug_level = 3;
    ASSERT_EQ(LockReadFile(fd, "shared.cfg"), 0);
    ASSERT_EQ(UnLockReadFile(fd, "shared.cfg"), 0);
    EXPECT_TRUE(zt4test::logged("[LockReadFile]: lock file shared.cfg", LOG_INFO));
    EXPECT_TRUE(zt4test::logged("[UnLockReadFile]: unlock file shared.cfg", LOG_INFO));
    close(fd);
}

}  // namespace
