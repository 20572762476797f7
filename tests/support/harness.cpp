// The temporary device root of each test, file helpers, and the captured system log: this file
// takes the place of the C library's syslog entry points in the test programs, so that tests read
// exactly what the library logged, with its priority, and need no syslog daemon.
#include "support/harness.hpp"

#include <sys/stat.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "zt4config/common.h"

// The host program defines the debug level; for the tests, it is here.
int debug_level = 0;

namespace {

std::vector<zt4test::LogEntry>& entries() {
    static std::vector<zt4test::LogEntry> log;
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

namespace zt4test {

void removeTree(const std::string& path) {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

std::string readText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

void writeText(const std::string& path, const std::string& content) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << content;
    EXPECT_TRUE(out.good()) << path;
}

std::string exampleFile(const std::string& devicePath) { return readText(ZT4_EXAMPLE_DEVICE + devicePath); }
json_t* exampleJson(const std::string& devicePath) { return parse(exampleFile(devicePath).c_str()); }

void makeDirectories(const std::string& path) {
    std::error_code error;
    std::filesystem::create_directories(path, error);
    EXPECT_TRUE(std::filesystem::is_directory(path)) << path << ": " << error.message();
}

void DeviceTest::SetUp() {
    const char* tmp = std::getenv("TMPDIR");
    std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/zt4test.XXXXXX";
    std::vector<char> buffer(pattern.begin(), pattern.end());
    buffer.push_back('\0');
    ASSERT_NE(mkdtemp(buffer.data()), nullptr);
    root_ = buffer.data();
    for (const char* dir : {"/home/nvram", "/etc", "/var/tmp", "/var/zt4", "/sys/class/leds",
                            "/sys/bus/i2c/devices/0-0050"}) {
        std::filesystem::create_directories(root_ + dir);
    }
    setenv("ZT4_ROOT", root_.c_str(), 1);
    debug_level = 0;
    clearLog();
}

void DeviceTest::TearDown() {
    if (HasFailure()) std::fprintf(stderr, "captured log:\n%s", logDump().c_str());
    unsetenv("ZT4_ROOT");
    removeTree(root_);
}

void DeviceTest::writeFile(const std::string& devicePath, const std::string& content) const {
    writeText(path(devicePath), content);
}

std::string DeviceTest::readFile(const std::string& devicePath) const { return readText(path(devicePath)); }
json_t* DeviceTest::readJson(const std::string& devicePath) const { return parse(readFile(devicePath).c_str()); }

void DeviceTest::useExampleDevice() const {
    std::filesystem::copy(ZT4_EXAMPLE_DEVICE, root_, std::filesystem::copy_options::recursive |
                                                          std::filesystem::copy_options::overwrite_existing);
}

bool DeviceTest::exists(const std::string& devicePath) const {
    struct stat info;
    return stat(path(devicePath).c_str(), &info) == 0;
}

void DeviceTest::removeFile(const std::string& devicePath) const {
    std::remove(path(devicePath).c_str());
}

json_t* parse(const char* text) {
    json_error_t error;
    json_t* value = json_loads(text, JSON_REJECT_DUPLICATES, &error);
    EXPECT_NE(value, nullptr) << "bad JSON in test: " << error.text << " in " << text;
    return value;
}

std::string compact(const json_t* value) {
    if (value == nullptr) return "(null)";
    char* text = json_dumps(value, JSON_COMPACT | JSON_SORT_KEYS | JSON_ENCODE_ANY);
    std::string result = text ? text : "(undumpable)";
    std::free(text);
    return result;
}


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
    record(priority, format, args);
}

__attribute__((format(printf, 2, 3))) void syslog(int priority, const char* format, ...) {
    va_list args;
    va_start(args, format);
    record(priority, format, args);
    va_end(args);
}

__attribute__((format(printf, 3, 0))) void __vsyslog_chk(int priority, int, const char* format,
                                                         va_list args) {
    record(priority, format, args);
}

__attribute__((format(printf, 3, 4))) void __syslog_chk(int priority, int, const char* format, ...) {
    va_list args;
    va_start(args, format);
    record(priority, format, args);
    va_end(args);
}

}  // extern "C"
