#include "metering/calibration_staging.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "zt4config/lock.h"

extern char** environ;

namespace zt4 {
namespace {

// Bound on the times a scratch file can be renamed away under a waiting writer.
constexpr int kScratchAttempts = 100;

bool namesThisFile(const std::string& path, int fd) {
    struct stat named, opened;
    return stat(path.c_str(), &named) == 0 && fstat(fd, &opened) == 0 &&
           named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
}

int spawnAndWait(const std::string& source, const std::string& target) {
    char program[] = "cp";
    char* argv[] = {program, const_cast<char*>(source.c_str()), const_cast<char*>(target.c_str()),
                    nullptr};
    pid_t child = -1;
    const int error = posix_spawnp(&child, program, nullptr, nullptr, argv, environ);
    if (error != 0) {
        // A copy command that cannot be executed ends the way a shell would end it: status 127
        // (not found) or 126 (not executable). Whether the spawn reports this itself or the child
        // exits with it depends on the C library and the emulator; both read the same here.
        if (error == ENOENT || error == ENOTDIR) return W_EXITCODE(127, 0);
        if (error == EACCES || error == ENOEXEC || error == EPERM) return W_EXITCODE(126, 0);
        errno = error;
        return -1;
    }
    int status = 0;
    while (waitpid(child, &status, 0) == -1) {
        if (errno != EINTR) return -1;
    }
    return status;
}

}  // namespace

int openScratchFile(const std::string& path, ScratchFailure& failure) {
    for (int attempt = 0; attempt < kScratchAttempts; ++attempt) {
        const int fd = open(path.c_str(), O_RDWR | O_CREAT | O_SYNC, 0666);
        if (fd < 0) {
            failure = ScratchFailure::Open;
            return -1;
        }
        if (LockWriteFile(fd, path.c_str()) != 0) {
            close(fd);
            failure = ScratchFailure::Lock;
            return -1;
        }
        if (namesThisFile(path, fd)) {
            if (ftruncate(fd, 0) != 0) {
                UnLockWriteFile(fd, path.c_str());
                close(fd);
                failure = ScratchFailure::Open;
                return -1;
            }
            failure = ScratchFailure::None;
            return fd;
        }
        close(fd);  // another writer staged it meanwhile: start again on a new file
    }
    failure = ScratchFailure::Lock;
    return -1;
}

int copyStagedFile(const std::string& source, const std::string& target) {
    // An existing target only: creating it here would leave an empty file if cp failed.
    const int fd = open(target.c_str(), O_RDWR | O_SYNC);
    const bool locked = fd >= 0 && LockWriteFile(fd, target.c_str()) == 0;
    const int status = spawnAndWait(source, target);
    const int spawnError = errno;
    if (locked) UnLockWriteFile(fd, target.c_str());
    if (fd >= 0) close(fd);
    errno = spawnError;
    return status;
}

}  // namespace zt4
