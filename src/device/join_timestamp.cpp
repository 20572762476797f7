// The time of the radio's last network join, shared by the radio daemon and the web back end
// under the file's write lock (taken even for reading).
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "common/api.hpp"
#include "common/log.hpp"
#include "common/path.hpp"
#include "zt4config/lock.h"
#include "zt4config/radio.h"

namespace {

constexpr const char* kJoinTimestampPath = "/var/run/timestamp_join";
constexpr std::size_t kTimestampDigits = 15;

// Unlocks and closes the file, whichever way it is held; false when the unlock failed.
bool release(const char* function, const std::string& path, std::FILE* file, int fd) {
    bool unlocked = UnLockWriteFile(file ? fileno(file) : fd, path.c_str()) == 0;
    if (!unlocked) zt4::logError(function, "FAILED to unlock file '%s'", path.c_str());
    if (file) {
        std::fclose(file);
    } else {
        close(fd);
    }
    return unlocked;
}

}  // namespace

extern "C" int getTimestampLastJoin(int32_t* timestamp) noexcept {
    if (timestamp == nullptr) {
        zt4::logLine(LOG_ERR, "error.[%s] value is NULL", __func__);
        return -1;
    }
    *timestamp = 0;
    const char* function = __func__;
    return zt4::guarded(function, -1, [&] {
        std::string path = zt4::resolvePath(kJoinTimestampPath);
        int fd = open(path.c_str(), O_RDWR | O_SYNC, 0666);
        if (fd < 0) {
            if (zt4::debugLevel() > 1) zt4::logError(function, "fd INVALID");
            return -1;
        }
        if (LockWriteFile(fd, path.c_str()) != 0) {
            zt4::logError(function, "FAILED to lock file '%s'", path.c_str());
            close(fd);
            return -1;
        }
        std::FILE* file = fdopen(fd, "r");
        if (file == nullptr) {
            zt4::logError(function, "FAILED to fdopen '%s'", path.c_str());
            release(function, path, nullptr, fd);
            return -1;
        }
        char text[kTimestampDigits + 1];
        std::size_t length = std::fread(text, 1, kTimestampDigits, file);
        text[length] = '\0';
        int result = -1;
        if (length > 0) {
            *timestamp = static_cast<int32_t>(std::atoi(text));
            result = 0;
        } else {
            zt4::logLine(LOG_ERR, "error.[%s] value is empty", function);
        }
        if (!release(function, path, file, fd)) result = -1;
        return result;
    });
}

extern "C" int setTimestampLastJoin(int32_t timestamp) noexcept {
    const char* function = __func__;
    return zt4::guarded(function, -1, [&] {
        std::string path = zt4::resolvePath(kJoinTimestampPath);
        // Not truncated: a shorter number leaves the end of a longer one in place.
        int fd = open(path.c_str(), O_RDWR | O_CREAT | O_SYNC, 0666);
        if (fd < 0) {
            zt4::logError(function, "fd INVALID");
            return -1;
        }
        if (LockWriteFile(fd, path.c_str()) != 0) {
            zt4::logError(function, "FAILED to lock file '%s'", path.c_str());
            close(fd);
            return -1;
        }
        std::FILE* file = fdopen(fd, "w+");
        if (file == nullptr) {
            zt4::logError(function, "FAILED to fdopen '%s'", path.c_str());
            release(function, path, nullptr, fd);
            return -1;
        }
        int result = 0;
        if (std::fprintf(file, "%d", static_cast<int>(timestamp)) < 0 || std::fflush(file) != 0 ||
            fsync(fileno(file)) != 0) {
            zt4::logLine(LOG_ERR, "[%s] FAILED to write file '%s'", function, path.c_str());
            result = -1;
        }
        if (!release(function, path, file, fd)) result = -1;
        return result;
    });
}
