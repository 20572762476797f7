// Wait and signal on semaphore 0 of a caller's System V semaphore set, and a one-line report of
// the set for debugging.
#include <sys/ipc.h>
#include <sys/sem.h>
#include <sys/types.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "common/log.hpp"
#include "zt4config/lock.h"

namespace zt4 {
namespace {

// semctl(2) leaves the definition of its fourth argument to the caller.
union SemaphoreArgument {
    int value;
    struct semid_ds* status;
    unsigned short* values;
};

// Flags of the report, one per failed query.
constexpr int kStatusFailed = 1;
constexpr int kValueFailed = 2;
constexpr int kWaitersFailed = 4;
constexpr int kZeroWaitersFailed = 8;
constexpr int kPidFailed = 16;

int operateSemaphore(const char* function, int semid, short operation) noexcept {
    if (debugLevel() > 2) displayInfoSem(semid, 0, operation);
    struct sembuf step;
    step.sem_num = 0;
    step.sem_op = operation;
    step.sem_flg = SEM_UNDO;
    if (semop(semid, &step, 1) == -1) {
        const int error = errno;
        std::perror("semop");
        // This one message has a space after "error."; kept as log readers know it.
        logLine(LOG_ERR, "error. [%s]: semop() %s %d", function, std::strerror(error), error);
        return 1;
    }
    return 0;
}

const char* momentText(int moment) noexcept {
    switch (moment) {
        case 0: return "BEFORE ";
        case 1: return "AFTER  ";
        default: return "";
    }
}

const char* operationText(int operation) noexcept {
    switch (operation) {
        case -1: return "PSEM | ";
        case 1: return "VSEM | ";
        default: return "Info: ";
    }
}

// ctime(3)'s rendering of a time, its trailing newline included.
void renderTime(time_t when, char (&text)[32]) noexcept {
    if (ctime_r(&when, text) == nullptr) text[0] = '\0';
}

}  // namespace
}  // namespace zt4

extern "C" {

int Psem(int semid) noexcept { return zt4::operateSemaphore(__func__, semid, -1); }

int Vsem(int semid) noexcept { return zt4::operateSemaphore(__func__, semid, 1); }

void displayInfoSem(int semid, int moment, int operation) noexcept {
    using namespace zt4;
    int flags = 0;
    struct semid_ds status;
    std::memset(&status, 0, sizeof status);
    SemaphoreArgument argument;
    argument.status = &status;
    if (semctl(semid, 0, IPC_STAT, argument) == -1) {
        logError(__func__, "semctl() IPC_STAT: %s", std::strerror(errno));
        flags |= kStatusFailed;
    }
    // Only a failure to read the last process is reported; the value and the waiter counts
    // print as -1 when they cannot be read.
    const int value = semctl(semid, 0, GETVAL);
    const int waiters = semctl(semid, 0, GETNCNT);
    const int zeroWaiters = semctl(semid, 0, GETZCNT);
    const int lastPid = semctl(semid, 0, GETPID);
    if (lastPid == -1) {
        logError(__func__, "semctl() GETPID: %s", std::strerror(errno));
        flags |= kPidFailed;
    }
    const int allQueries = kStatusFailed | kValueFailed | kWaitersFailed | kZeroWaitersFailed;
    char lastOperation[32];
    char lastChange[32];
    renderTime(status.sem_otime, lastOperation);
    renderTime(status.sem_ctime, lastChange);
    logLine(LOG_INFO,
            "%s%s%s%s%s%s%svalue=%d, ncount=%d, zcount=%d, pid=%d semid=%u, uid=%u, gid=%u, "
            "cuid=%u, cgid=%u, mode=0%o, N\xC2\xB0sem=%lu, otime=%s, ctime=%s",
            momentText(moment), operationText(operation),
            (flags & kStatusFailed) ? "ERR STAT | " : "",
            (flags & kValueFailed) ? "ERR VAL | " : "",
            (flags & kWaitersFailed) ? "ERR NCNT | " : "",
            (flags & kZeroWaitersFailed) ? "ERR ZCNT | " : "",
            (flags & allQueries) == allQueries ? "ERR PID | " : "", value, waiters, zeroWaiters,
            lastPid, static_cast<unsigned>(semid), static_cast<unsigned>(status.sem_perm.uid),
            static_cast<unsigned>(status.sem_perm.gid), static_cast<unsigned>(status.sem_perm.cuid),
            static_cast<unsigned>(status.sem_perm.cgid), static_cast<unsigned>(status.sem_perm.mode),
            static_cast<unsigned long>(status.sem_nsems), lastOperation, lastChange);
}

}  // extern "C"
