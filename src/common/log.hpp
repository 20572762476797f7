// The library's single way to the system log. Every message goes through syslog(3); the library
// never opens the log itself, the host program decides where it goes.
#pragma once

#include <syslog.h>

#define ZT4_PRINTF(format_index, first_arg) __attribute__((format(printf, format_index, first_arg)))

namespace zt4 {

// Logs the formatted text exactly as given, at `priority`.
void logLine(int priority, const char* format, ...) ZT4_PRINTF(2, 3);

// Logs "error.[function]: " followed by the formatted text, at LOG_ERR.
void logError(const char* function, const char* format, ...) ZT4_PRINTF(2, 3);

// Logs "[function]: " followed by the formatted text, at LOG_INFO.
void logInfo(const char* function, const char* format, ...) ZT4_PRINTF(2, 3);

// Logs "error.[function]: " followed by the formatted text, at `priority` (for the few errors the
// system reports at another level than LOG_ERR).
void logErrorAt(int priority, const char* function, const char* format, ...) ZT4_PRINTF(3, 4);

// The host's debug level, read at each call.
int debugLevel() noexcept;

}  // namespace zt4
