#include "common/log.hpp"

#include <cstdarg>
#include <cstdio>

#include "zt4config/common.h"

namespace zt4 {
namespace {

// Messages are short; a longer one is cut rather than allocated for.
constexpr int kMessageCapacity = 1024;

ZT4_PRINTF(4, 0) void logPrefixed(int priority, const char* prefix, const char* function, const char* format,
                 va_list args) {
    char message[kMessageCapacity];
    std::vsnprintf(message, sizeof message, format, args);
    syslog(priority, "%s[%s]: %s", prefix, function ? function : "", message);
}

}  // namespace

void logLine(int priority, const char* format, ...) {
    va_list args;
    va_start(args, format);
    vsyslog(priority, format, args);
    va_end(args);
}

void logError(const char* function, const char* format, ...) {
    va_list args;
    va_start(args, format);
    logPrefixed(LOG_ERR, "error.", function, format, args);
    va_end(args);
}

void logErrorAt(int priority, const char* function, const char* format, ...) {
    va_list args;
    va_start(args, format);
    logPrefixed(priority, "error.", function, format, args);
    va_end(args);
}

void logInfo(const char* function, const char* format, ...) {
    va_list args;
    va_start(args, format);
    logPrefixed(LOG_INFO, "", function, format, args);
    va_end(args);
}

int debugLevel() noexcept { return debug_level; }

}  // namespace zt4
