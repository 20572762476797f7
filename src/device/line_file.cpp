#include "device/line_file.hpp"

#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>

#include "common/log.hpp"

namespace zt4 {

LineRead readFirstLine(const std::string& path, char* buffer, std::size_t size) noexcept {
    buffer[0] = '\0';
    std::FILE* file = std::fopen(path.c_str(), "r");
    if (file == nullptr) return errno == ENOENT ? LineRead::Missing : LineRead::OpenFailed;
    int capacity = size > static_cast<std::size_t>(INT_MAX) ? INT_MAX : static_cast<int>(size);
    if (std::fgets(buffer, capacity, file) == nullptr) buffer[0] = '\0';
    std::fclose(file);
    return LineRead::Ok;
}

bool checkOutputBuffer(const char* function, const char* buffer, std::size_t size) noexcept {
    if (buffer == nullptr) {
        logLine(LOG_ERR, "error.[%s] value is NULL", function);
        return false;
    }
    if (size == 0) {
        logLine(LOG_ERR, "error.[%s] value size is NULL", function);
        return false;
    }
    return true;
}

bool refuseEmptyValue(const char* function, const char* text) noexcept {
    if (text == nullptr) {
        logLine(LOG_ERR, "error.[%s] value is NULL", function);
        return true;
    }
    if (text[0] == '\0') {
        logLine(LOG_ERR, "error.[%s] value length is NULL", function);
        return true;
    }
    return false;
}

LineWrite writeWholeFile(const std::string& path, const char* text) noexcept {
    std::FILE* file = std::fopen(path.c_str(), "w+");
    if (file == nullptr) return LineWrite::OpenFailed;
    bool written = std::fputs(text, file) >= 0;
    written = std::fflush(file) == 0 && written;
    written = std::fclose(file) == 0 && written;
    sync();
    return written ? LineWrite::Ok : LineWrite::WriteFailed;
}

}  // namespace zt4
