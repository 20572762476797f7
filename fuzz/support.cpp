#include "support.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <system_error>

#include "zt4config.h"

// The host defines the debug level the library reads. The trace lines run too (they format
// fuzzed values): ZT4_FUZZ_DEBUG sets the level, 4 (every trace) unless given.
__attribute__((visibility("default"))) int debug_level = 4;

namespace {

// Messages are formatted, so that a bad argument is caught, and then dropped: no syslog daemon
// is involved.
__attribute__((format(printf, 1, 0))) void format(const char* text, va_list args) {
    char message[1024];
    std::vsnprintf(message, sizeof message, text, args);
}

}  // namespace

extern "C" {
__attribute__((format(printf, 2, 0))) void vsyslog(int, const char* text, va_list args) { format(text, args); }
__attribute__((format(printf, 2, 3))) void syslog(int, const char* text, ...) {
    va_list args;
    va_start(args, text);
    format(text, args);
    va_end(args);
}
__attribute__((format(printf, 3, 0))) void __vsyslog_chk(int, int, const char* text, va_list args) {
    format(text, args);
}
__attribute__((format(printf, 3, 4))) void __syslog_chk(int, int, const char* text, ...) {
    va_list args;
    va_start(args, text);
    format(text, args);
    va_end(args);
}
// The private root lives in memory and is thrown away: flushing the whole machine's caches after
// each document write would only slow the search down.
void sync(void) noexcept {}
}

namespace zt4fuzz {
namespace {

namespace fs = std::filesystem;

// The example files as they were when the process started, by device path.
std::map<std::string, std::string>& originals() {
    static std::map<std::string, std::string> files;
    return files;
}

void removeRoot() {
    std::error_code ignored;
    fs::remove_all(root(), ignored);
}

std::string makeRoot() {
    const char* base = std::getenv("TMPDIR");
    if (base == nullptr || *base == '\0') base = access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
    std::string pattern = std::string(base) + "/zt4fuzz.XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) {
        std::perror("mkdtemp");
        std::abort();
    }
    const fs::path example(ZT4_EXAMPLE_DEVICE);
    fs::copy(example, pattern, fs::copy_options::recursive);
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(example)) {
        if (!entry.is_regular_file()) continue;
        std::ifstream in(entry.path(), std::ios::binary);
        std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        originals()["/" + fs::relative(entry.path(), example).string()] = std::move(bytes);
    }
    // Folders of the network daemons' files that the example tree does not hold.
    for (const char* folder : {"/var/zt4/eth0", "/var/zt4/br0", "/var/zt4/wlan0", "/var/tmp"}) {
        fs::create_directories(pattern + folder);
    }
    setenv("ZT4_ROOT", pattern.c_str(), 1);
    if (const char* level = std::getenv("ZT4_FUZZ_DEBUG")) debug_level = std::atoi(level);
    return pattern;
}

}  // namespace

const std::string& root() {
    static const std::string directory = makeRoot();
    static const bool cleaned = std::atexit(removeRoot) == 0;
    (void)cleaned;
    return directory;
}

bool writeDeviceFile(const char* devicePath, const uint8_t* data, std::size_t size) {
    const std::string path = root() + devicePath;
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (descriptor < 0) return false;
    std::size_t done = 0;
    while (done < size) {
        const ssize_t put = write(descriptor, data + done, size - done);
        if (put <= 0) break;
        done += static_cast<std::size_t>(put);
    }
    close(descriptor);
    return done == size;
}

bool writeDeviceFile(const char* devicePath, const std::string& text) {
    return writeDeviceFile(devicePath, reinterpret_cast<const uint8_t*>(text.data()), text.size());
}

void restoreDeviceFile(const char* devicePath) {
    root();
    const auto found = originals().find(devicePath);
    if (found != originals().end()) {
        writeDeviceFile(devicePath, found->second);
    } else {
        unlink((root() + devicePath).c_str());
    }
}

json_t* parseJson(const uint8_t* data, std::size_t size) {
    json_error_t error;
    return json_loadb(reinterpret_cast<const char*>(data), size,
                      JSON_REJECT_DUPLICATES | JSON_ALLOW_NUL | JSON_DECODE_ANY, &error);
}

Split split(const uint8_t* data, std::size_t size) {
    if (size == 0) return {0, data, 0};
    return {data[0], data + 1, size - 1};
}

void runWriter(const Writer* writers, std::size_t count, const uint8_t* data, std::size_t size,
               const char* const* restored, std::size_t restoredCount) {
    root();
    const Split input = split(data, size);
    json_t* value = parseJson(input.data, input.size);
    if (value == nullptr) return;
    const int result = writers[input.selector % count](value, input.selector);
    json_decref(value);
    if (result != 0 && result != -1) std::abort();
    for (json_t* (*reader)() : {readJSONZT4UserConfigFile, readJSONZT4SystemFile}) {
        json_t* document = reader();
        if (document == nullptr) std::abort();
        json_decref(document);
    }
    for (std::size_t i = 0; i < restoredCount; ++i) restoreDeviceFile(restored[i]);
}

}  // namespace zt4fuzz
