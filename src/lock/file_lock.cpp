// Whole-file advisory record locks (fcntl, F_SETLKW). A lock covers the file from offset 0 with
// length 0, so it keeps covering the file however long it grows.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "common/log.hpp"
#include "zt4config/lock.h"

namespace zt4 {
namespace {

enum class LockAction { Lock, Unlock };

// Applies `type` to the whole file and waits until the kernel grants it.
int applyRecordLock(const char* function, int fd, const char* filename, short type,
                    LockAction action) noexcept {
    struct flock description;
    std::memset(&description, 0, sizeof description);
    description.l_type = type;
    description.l_whence = SEEK_SET;
    description.l_start = 0;
    description.l_len = 0;
    if (fcntl(fd, F_SETLKW, &description) == -1) {
        // The system call's name is misspelt in these messages; log readers match on it.
        if (action == LockAction::Lock) {
            logError(function, "fnctl() %s while locking file %s", std::strerror(errno), filename);
        } else {
            logError(function, "fnctl() %s while unlocking file %s", std::strerror(errno),
                     filename);
        }
        return -1;
    }
    if (debugLevel() >= 3) {
        logInfo(function, action == LockAction::Lock ? "lock file %s" : "unlock file %s",
                filename);
    }
    return 0;
}

// The writer-side operations say what is wrong with their arguments; the reader side does not.
bool writerArgumentsValid(const char* function, int fd, const char* filename) noexcept {
    if (filename == nullptr) {
        logError(function, "filename NULL");
        return false;
    }
    if (fd < 0) {
        logError(function, "fd INVALID for %s", filename);
        return false;
    }
    return true;
}

}  // namespace
}  // namespace zt4

extern "C" {

int LockReadFile(int fd, const char* filename) noexcept {
    if (fd < 0 || filename == nullptr) return -1;
    return zt4::applyRecordLock(__func__, fd, filename, F_RDLCK, zt4::LockAction::Lock);
}

int UnLockReadFile(int fd, const char* filename) noexcept {
    if (fd < 0 || filename == nullptr) return -1;
    return zt4::applyRecordLock(__func__, fd, filename, F_UNLCK, zt4::LockAction::Unlock);
}

int LockWriteFile(int fd, const char* filename) noexcept {
    if (!zt4::writerArgumentsValid(__func__, fd, filename)) return -1;
    return zt4::applyRecordLock(__func__, fd, filename, F_WRLCK, zt4::LockAction::Lock);
}

int UnLockWriteFile(int fd, const char* filename) noexcept {
    if (!zt4::writerArgumentsValid(__func__, fd, filename)) return -1;
    return zt4::applyRecordLock(__func__, fd, filename, F_UNLCK, zt4::LockAction::Unlock);
}

}  // extern "C"
