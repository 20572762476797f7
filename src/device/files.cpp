// Marker files: created empty or removed, then flushed to storage. Paths are the caller's.
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "common/log.hpp"
#include "zt4config/leds.h"

extern "C" {

int CreateFile(const char* path) noexcept {
    if (path == nullptr) {
        zt4::logError(__func__, "path NULL");
        return -1;
    }
    FILE* file = std::fopen(path, "w+");
    if (file == nullptr) {
        zt4::logError(__func__, "Failed to create file '%s'. (%s)", path, std::strerror(errno));
        return -1;
    }
    std::fflush(file);
    sync();
    if (std::fclose(file) != 0) {
        zt4::logError(__func__, "Failed to create file '%s'. (%s)", path, std::strerror(errno));
        return -1;
    }
    return 0;
}

int DeleteFile(const char* path) noexcept {
    if (path == nullptr) {
        zt4::logError(__func__, "path NULL");
        return -1;
    }
    if (unlink(path) != 0 && errno != ENOENT) {
        zt4::logError(__func__, "Failed to delete file %s (%s)", path, std::strerror(errno));
        return -1;
    }
    sync();
    return 0;
}

}  // extern "C"
