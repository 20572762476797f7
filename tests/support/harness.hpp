// What every test gets: its own temporary device root (ZT4_ROOT), a clean captured log, and the
// debug level at 0.
#pragma once

#include <gtest/gtest.h>
#include <jansson.h>

#include <string>
#include <vector>

namespace zt4test {

struct LogEntry {
    int priority;  // 0 to 7, the facility masked off
    std::string text;
};

// Every line the library logged since the last clearLog(), in order.
const std::vector<LogEntry>& capturedLog();
void clearLog();
// True when a line with exactly `text` was logged (at `priority`, when given).
bool logged(const std::string& text, int priority = -1);
// Number of lines containing `fragment`.
int loggedCount(const std::string& fragment);
std::string logDump();

// Runs a shell-free recursive removal of a directory tree.
void removeTree(const std::string& path);
// Whole host files, byte for byte ("" when unreadable); writing creates the missing folders.
std::string readText(const std::string& path);
void writeText(const std::string& path, const std::string& content);
// A file of the example device tree (ZT4_EXAMPLE_DEVICE), by its device path, as text or parsed
// (a new reference; a test failure when it is not JSON).
std::string exampleFile(const std::string& devicePath);
json_t* exampleJson(const std::string& devicePath);
// Names the instances of a parameterised test after their rows' `name` member.
struct ByName {
    template <class Info>
    std::string operator()(const Info& info) const { return info.param.name; }
};
// Creates a directory and its missing parents (host path), failing the test when it cannot.
void makeDirectories(const std::string& path);

class DeviceTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // The host path of a device path ("/home/nvram/x" -> "<root>/home/nvram/x").
    std::string path(const std::string& devicePath) const { return root_ + devicePath; }
    void writeFile(const std::string& devicePath, const std::string& content) const;
    std::string readFile(const std::string& devicePath) const;
    bool exists(const std::string& devicePath) const;
    // A device file parsed (a new reference; a test failure when it is not JSON).
    json_t* readJson(const std::string& devicePath) const;
    // Copies the whole example device tree into the root, over what is there.
    void useExampleDevice() const;
    void removeFile(const std::string& devicePath) const;
    // Writes a JSON text as a device file, byte for byte.
    void writeJson(const std::string& devicePath, const std::string& jsonText) const {
        writeFile(devicePath, jsonText);
    }
    const std::string& root() const { return root_; }

private:
    std::string root_;
};

// Parses a JSON text, failing the test on a syntax error; the caller owns the result.
json_t* parse(const char* text);
// Compact, key-sorted text of a value, for comparisons in assertions.
std::string compact(const json_t* value);

}  // namespace zt4test
