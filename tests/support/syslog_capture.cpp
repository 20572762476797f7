// Takes the place of the C library's syslog entry points in the test programs, so that tests read
// exactly what the library logged, with its priority, and need no syslog daemon.
#include <cstdarg>
#include <cstdio>
#include <string>
#include <vector>

#include "support/harness.hpp"

namespace zt4test {
namespace {

std::vector<LogEntry>& entries() {
    static std::vector<LogEntry> log;
    return log;
}

__attribute__((format(printf, 2, 0))) void record(int priority, const char* format, va_list args) {
    va_list copy;
    va_copy(copy, args);
    int length = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    std::string text(length > 0 ? static_cast<size_t>(length) : 0, '\0');
    if (length > 0) std::vsnprintf(text.data(), text.size() + 1, format, args);
    entries().push_back({priority & 0x07, std::move(text)});
}

}  // namespace

const std::vector<LogEntry>& capturedLog() { return entries(); }
void clearLog() { entries().clear(); }

bool logged(const std::string& text, int priority) {
    for (const LogEntry& entry : entries()) {
        if (entry.text == text && (priority < 0 || entry.priority == priority)) return true;
    }
    return false;
}

int loggedCount(const std::string& fragment) {
    int count = 0;
    for (const LogEntry& entry : entries()) count += entry.text.find(fragment) != std::string::npos;
    return count;
}

std::string logDump() {
    std::string dump;
    for (const LogEntry& entry : entries()) {
        dump += "  <" + std::to_string(entry.priority) + "> " + entry.text + "\n";
    }
    return dump;
}

}  // namespace zt4test

extern "C" {

__attribute__((format(printf, 2, 0))) void vsyslog(int priority, const char* format, va_list args) {
    zt4test::record(priority, format, args);
}

__attribute__((format(printf, 2, 3))) void syslog(int priority, const char* format, ...) {
    va_list args;
    va_start(args, format);
    zt4test::record(priority, format, args);
    va_end(args);
}

__attribute__((format(printf, 3, 0))) void __vsyslog_chk(int priority, int, const char* format,
                                                         va_list args) {
    zt4test::record(priority, format, args);
}

__attribute__((format(printf, 3, 4))) void __syslog_chk(int priority, int, const char* format, ...) {
    va_list args;
    va_start(args, format);
    zt4test::record(priority, format, args);
    va_end(args);
}

}  // extern "C"
