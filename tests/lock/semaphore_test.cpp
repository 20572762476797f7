#include <sys/ipc.h>
#include <sys/sem.h>

#include <syslog.h>

#include <ctime>
#include <string>

#include "lock/child_process.hpp"
#include "support/harness.hpp"
#include "zt4config.h"

namespace {

using zt4test::ChildProcess;
using zt4test::kMustHappenMs;
using zt4test::kMustNotHappenMs;

// A private one-semaphore set for each test, removed afterwards.
class Semaphore : public zt4test::DeviceTest {
protected:
    void SetUp() override {
        DeviceTest::SetUp();
        semid_ = semget(IPC_PRIVATE, 1, IPC_CREAT | 0600);
        ASSERT_GE(semid_, 0);
    }
    void TearDown() override {
        if (semid_ >= 0) semctl(semid_, 0, IPC_RMID);
        DeviceTest::TearDown();
    }
    void setValue(int value) { ASSERT_EQ(semctl(semid_, 0, SETVAL, value), 0); }
    int value() const { return semctl(semid_, 0, GETVAL); }
    void removeSet() {
        semctl(semid_, 0, IPC_RMID);
        removedId_ = semid_;
        semid_ = -1;
    }

    int semid_ = -1;
    int removedId_ = -1;
};

// Quiet up to debug level 2; from 3 each operation first reports the set.
TEST_F(Semaphore, WaitAndSignalMoveTheValue) {
    setValue(2);
    debug_level = 2;
    EXPECT_EQ(Psem(semid_), 0);
    EXPECT_EQ(value(), 1);
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
    debug_level = 3;
    EXPECT_EQ(Psem(semid_), 0);
    EXPECT_EQ(value(), 0);
    EXPECT_EQ(Vsem(semid_), 0);
    EXPECT_EQ(value(), 1);
    ASSERT_EQ(zt4test::capturedLog().size(), 2u) << zt4test::logDump();
    EXPECT_EQ(zt4test::capturedLog()[0].text.rfind("BEFORE PSEM | value=1, ncount=0, zcount=0", 0), 0u);
    EXPECT_EQ(zt4test::capturedLog()[1].text.rfind("BEFORE VSEM | value=0, ncount=0, zcount=0", 0), 0u);
}

TEST_F(Semaphore, WaitBlocksUntilAnotherProcessSignals) {
    setValue(0);
    const int semid = semid_;
    ChildProcess waiter([semid] { return 10 + Psem(semid); });
    ASSERT_TRUE(waiter.started());
    EXPECT_EQ(waiter.report(kMustNotHappenMs), -1) << "Psem did not wait";
    ASSERT_EQ(Vsem(semid_), 0);
    EXPECT_EQ(waiter.report(kMustHappenMs), 10) << "Psem never returned after Vsem";
    EXPECT_EQ(waiter.wait(), 0);
}

// SEM_UNDO: a process that dies holding the semaphore gives it back.
TEST_F(Semaphore, ExitingWithoutSignalGivesTheSemaphoreBack) {
    setValue(1);
    const int semid = semid_;
    ChildProcess holder([semid] { return Psem(semid); });
    ASSERT_EQ(holder.report(kMustHappenMs), 0);
    EXPECT_EQ(holder.wait(), 0);
    EXPECT_EQ(value(), 1);
}

struct RemovedSetCase {
    const char* name;
    int (*operation)(int);
};

class RemovedSet : public Semaphore, public ::testing::WithParamInterface<RemovedSetCase> {};

TEST_P(RemovedSet, FailsWithOneAndTheSpacedMessage) {
    removeSet();
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(GetParam().operation(removedId_), 1);
    const std::string stderrText = ::testing::internal::GetCapturedStderr();
    EXPECT_NE(stderrText.find("semop: "), std::string::npos) << stderrText;
    const std::string expected =
        std::string("error. [") + GetParam().name + "]: semop() Invalid argument 22";
    EXPECT_TRUE(zt4test::logged(expected, LOG_ERR)) << zt4test::logDump();
    // The report on a removed set flags only the status.
    zt4test::clearLog();
    displayInfoSem(removedId_, 1, -1);
    EXPECT_TRUE(zt4test::logged("error.[displayInfoSem]: semctl() IPC_STAT: Invalid argument"));
    EXPECT_TRUE(zt4test::logged("error.[displayInfoSem]: semctl() GETPID: Invalid argument"));
    EXPECT_EQ(zt4test::loggedCount("AFTER  PSEM | ERR STAT | value=-1, ncount=-1, zcount=-1, "
                                   "pid=-1 semid="), 1) << zt4test::logDump();
}

INSTANTIATE_TEST_SUITE_P(Operations, RemovedSet, ::testing::Values(
    RemovedSetCase{"Psem", Psem}, RemovedSetCase{"Vsem", Vsem}),
    [](const auto& param) { return std::string(param.param.name); });

struct ReportCase {
    int moment;
    int operation;
    const char* prefix;
};

class Report : public Semaphore, public ::testing::WithParamInterface<ReportCase> {};

TEST_P(Report, DescribesTheSet) {
    setValue(3);
    displayInfoSem(semid_, GetParam().moment, GetParam().operation);
    ASSERT_EQ(zt4test::capturedLog().size(), 1u);
    const std::string line = zt4test::capturedLog()[0].text;
    const std::string expectedStart =
        std::string(GetParam().prefix) + "value=3, ncount=0, zcount=0, pid=" +
        std::to_string(getpid()) + " semid=" +
        std::to_string(semid_) + ", uid=" + std::to_string(getuid());
    EXPECT_EQ(line.rfind(expectedStart, 0), 0u) << line;
    // No operation yet: the last-operation time is the epoch, as ctime(3) renders it.
    const time_t epoch = 0;
    char epochText[32];
    ASSERT_NE(ctime_r(&epoch, epochText), nullptr);
    EXPECT_NE(line.find(std::string(", mode=0600, N\xC2\xB0sem=1, otime=") + epochText + ", ctime="),
              std::string::npos) << line;
}

INSTANTIATE_TEST_SUITE_P(Moments, Report, ::testing::Values(
    ReportCase{1, 1, "AFTER  VSEM | "}, ReportCase{2, 0, "Info: "}, ReportCase{-1, 7, "Info: "}));

}  // namespace
