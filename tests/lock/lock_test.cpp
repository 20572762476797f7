// Record locks and semaphores between processes: who waits for whom, refused calls, the semaphore report.
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/sem.h>
#include <sys/wait.h>
#include <syslog.h>
#include <unistd.h>

#include <ctime>
#include <functional>
#include <map>
#include <string>

#include "json/table_file.hpp"
#include "support/harness.hpp"
#include "zt4config.h"

namespace {

// A child reports kReady just before its blocking call; bounds for what must happen and for a blocked child's silence.
constexpr int kReady = 200, kMustMs = 5000, kMustNotMs = 100;

// A forked child reporting bytes through a pipe (its body gets the write end); it ends with _exit.
class Child {
public:
    explicit Child(const std::function<int(int)>& body) {
        if (pipe(pipe_) != 0) return;
        if ((pid_ = fork()) == 0) {
            const unsigned char result = static_cast<unsigned char>(body(pipe_[1]));
            _exit(write(pipe_[1], &result, 1) == 1 ? 0 : 3);
        }
        close(pipe_[1]);
    }
    ~Child() {
        if (pid_ > 0) kill(pid_, SIGKILL), waitpid(pid_, nullptr, 0);
        close(pipe_[0]);
    }
    static void ready(int out) {
        const unsigned char r = kReady;
        if (write(out, &r, 1) != 1) _exit(4);
    }
    int report(int timeoutMs) {  // the next byte, -1 when none comes in time
        struct pollfd readable = {pipe_[0], POLLIN, 0};
        unsigned char result = 0;
        return poll(&readable, 1, timeoutMs) == 1 && read(pipe_[0], &result, 1) == 1 ? result : -1;
    }
    int pid_ = -1, pipe_[2] = {-1, -1};
};

using LockFunction = int (*)(int, const char*);

class Lock : public zt4test::DeviceTest {
protected:
    void SetUp() override {
        DeviceTest::SetUp();
        writeFile("/var/tmp/shared.cfg", "x=1\n");
        file_ = path("/var/tmp/shared.cfg");
        ASSERT_GE(semid_ = semget(IPC_PRIVATE, 1, IPC_CREAT | 0600), 0);
    }
    void TearDown() override {
        semctl(semid_, 0, IPC_RMID);
        DeviceTest::TearDown();
    }
    bool otherCanWriteLock() const {  // without waiting
        Child child([file = file_](int) {
            struct flock probe = {};
            probe.l_type = F_WRLCK;
            return fcntl(open(file.c_str(), O_RDWR), F_SETLK, &probe) == 0 ? 1 : 0;
        });
        return child.report(kMustMs) == 1;
    }
    std::string line(size_t i) const { return zt4test::capturedLog().at(i).text; }
    std::string numbers(int value) const {  // the report from the value to the set's owner
        return "value=" + std::to_string(value) + ", ncount=0, zcount=0, pid=" + std::to_string(getpid()) +
               " semid=" + std::to_string(semid_) + ", uid=" + std::to_string(getuid());
    }
    std::string file_;
    int semid_ = -1;
};

// A conflicting request waits inside the call and proceeds once the holder releases.
TEST_F(Lock, ASecondProcessWaitsOnlyForAConflictingLock) {
    const struct { LockFunction hold, release, request; bool waits; } rows[] = {
        {LockReadFile, UnLockReadFile, LockReadFile, false}, {LockReadFile, UnLockReadFile, LockWriteFile, true},
        {LockWriteFile, UnLockWriteFile, LockReadFile, true}};
    for (const auto& row : rows) {
        const int fd = open(file_.c_str(), O_RDWR);
        ASSERT_EQ(row.hold(fd, "f"), 0);
        Child waiter([&](int out) {
            const int childFd = open(file_.c_str(), O_RDWR);
            Child::ready(out);
            return 10 + row.request(childFd, "f");
        });
        ASSERT_EQ(waiter.report(kMustMs), kReady);
        EXPECT_EQ(waiter.report(row.waits ? kMustNotMs : kMustMs), row.waits ? -1 : 10) << row.waits;
        EXPECT_EQ(row.release(fd, "f"), 0);
        EXPECT_EQ(row.waits ? waiter.report(kMustMs) : 10, 10) << "never got the lock";
        close(fd);
    }
    // Descriptor 0 is a descriptor like any other; from debug level 3 each call says what it did.
    const int saved = dup(0);
    ASSERT_EQ(dup2(open(file_.c_str(), O_RDWR), 0), 0);
    for (int level : {2, 3}) {
        debug_level = level;
        zt4test::clearLog();
        ASSERT_EQ(LockWriteFile(0, "w.cfg") + UnLockWriteFile(0, "w.cfg") + LockReadFile(0, "r.cfg") + UnLockReadFile(0, "r.cfg"), 0);
        EXPECT_EQ(zt4test::capturedLog().size(), level == 2 ? 0u : 4u) << zt4test::logDump();
    }
    ASSERT_EQ(dup2(saved, 0), 0);
    close(saved);
    for (const char* text : {"[LockWriteFile]: lock file w.cfg", "[UnLockWriteFile]: unlock file w.cfg",
                             "[LockReadFile]: lock file r.cfg", "[UnLockReadFile]: unlock file r.cfg"}) {
        EXPECT_TRUE(zt4test::logged(text, LOG_INFO)) << text;
    }
}

TEST_F(Lock, RefusedCallsSayWhyAndLockNothing) {
    const std::map<std::string, LockFunction> calls = {{"LockReadFile", LockReadFile}, {"UnLockReadFile", UnLockReadFile},
                                                       {"LockWriteFile", LockWriteFile}, {"UnLockWriteFile", UnLockWriteFile}};
    for (const zt4test::Row& row : zt4test::tableFile("lock", "refused_calls.tsv")) {
        zt4test::clearLog();
        const bool opened = row.at(1) == "valid" || row[1] == "read-only";
        const int fd = opened ? open(file_.c_str(), row[1] == "valid" ? O_RDWR : O_RDONLY) : row[1] == "closed" ? 1000 : -1;
        EXPECT_EQ(calls.at(row[0])(fd, zt4test::orNull(row.at(2))), -1) << row[3];
        EXPECT_EQ(zt4test::capturedLog().size(), row.at(3) == "-" ? 0u : 1u) << zt4test::logDump();
        EXPECT_TRUE(row[3] == "-" || zt4test::logged(row[3], LOG_ERR)) << zt4test::logDump();
        EXPECT_TRUE(otherCanWriteLock()) << row[3];
        if (opened) close(fd);
    }
}

TEST_F(Lock, WaitAndSignalMoveTheValueAndReportFromLevelThree) {
    ASSERT_EQ(semctl(semid_, 0, SETVAL, 2), 0);
    debug_level = 2;
    EXPECT_EQ(Psem(semid_), 0);
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
    debug_level = 3;
    EXPECT_EQ(Psem(semid_), 0);
    EXPECT_EQ(semctl(semid_, 0, GETVAL), 0);
    EXPECT_EQ(Vsem(semid_), 0);
    EXPECT_EQ(semctl(semid_, 0, GETVAL), 1);
    ASSERT_EQ(zt4test::capturedLog().size(), 2u) << zt4test::logDump();
    EXPECT_EQ(line(0).rfind("BEFORE PSEM | " + numbers(1), 0), 0u) << line(0);
    EXPECT_EQ(line(1).rfind("BEFORE VSEM | " + numbers(0), 0), 0u) << line(1);
    // A child that takes the semaphore and dies gives it back; a waiting child goes on after Vsem.
    const int id = semid_;
    debug_level = 0;
    EXPECT_EQ(Child([id](int) { return Psem(id); }).report(kMustMs), 0);
    ASSERT_EQ(semctl(semid_, 0, GETVAL), 1);
    ASSERT_EQ(semctl(semid_, 0, SETVAL, 0), 0);
    Child waiter([id](int out) { Child::ready(out); return 10 + Psem(id); });
    ASSERT_EQ(waiter.report(kMustMs), kReady);
    EXPECT_EQ(waiter.report(kMustNotMs), -1) << "Psem did not wait";
    ASSERT_EQ(Vsem(semid_), 0);
    EXPECT_EQ(waiter.report(kMustMs), 10);
}

TEST_F(Lock, TheSemaphoreReportDescribesTheSet) {
    ASSERT_EQ(semctl(semid_, 0, SETVAL, 3), 0);
    const struct { int moment, operation; const char* prefix; } rows[] = {
        {1, 1, "AFTER  VSEM | "}, {1, -1, "AFTER  PSEM | "}, {0, 7, "BEFORE Info: "}, {2, 0, "Info: "}, {-1, 1, "VSEM | "}};
    const time_t epoch = 0;
    char epochText[32];
    ASSERT_NE(ctime_r(&epoch, epochText), nullptr);
    for (const auto& row : rows) {
        zt4test::clearLog();
        displayInfoSem(semid_, row.moment, row.operation);
        ASSERT_EQ(zt4test::capturedLog().size(), 1u);
        EXPECT_EQ(line(0).rfind(row.prefix + numbers(3) + ", gid=" + std::to_string(getgid()) + ", cuid=" +
                                std::to_string(getuid()) + ", cgid=" + std::to_string(getgid()), 0), 0u) << line(0);
        // No operation yet: the last-operation time is the epoch as ctime(3) renders it.
        EXPECT_NE(line(0).find(std::string(", mode=0600, N\xC2\xB0sem=1, otime=") + epochText + ", ctime="), std::string::npos);
    }
    // A removed set: the operations fail with 1 and the spaced message, the report flags the status.
    semctl(semid_, 0, IPC_RMID);
    for (auto [name, operation] : {std::pair<const char*, int (*)(int)>{"Psem", Psem}, {"Vsem", Vsem}}) {
        zt4test::clearLog();
        ::testing::internal::CaptureStderr();
        EXPECT_EQ(operation(semid_), 1);
        EXPECT_EQ(::testing::internal::GetCapturedStderr(), "semop: Invalid argument\n");
        EXPECT_TRUE(zt4test::logged(std::string("error. [") + name + "]: semop() Invalid argument 22", LOG_ERR));
    }
    zt4test::clearLog();
    displayInfoSem(semid_, 1, -1);
    ASSERT_EQ(zt4test::capturedLog().size(), 3u) << zt4test::logDump();
    EXPECT_EQ(line(0), "error.[displayInfoSem]: semctl() IPC_STAT: Invalid argument");
    EXPECT_EQ(line(1), "error.[displayInfoSem]: semctl() GETPID: Invalid argument");
    EXPECT_EQ(line(2).rfind("AFTER  PSEM | ERR STAT | value=-1, ncount=-1, zcount=-1, pid=-1 semid=" + std::to_string(semid_) + ", ", 0), 0u);
}

}  // namespace
