// What every fuzz target shares: a private device root (a copy of the example device tree made
// once per process), files written from fuzzed bytes, and documents parsed the library's way.
#pragma once

#include <jansson.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace zt4fuzz {

// The device root of this process (ZT4_ROOT points to it), filled from the example tree on the
// first call.
const std::string& root();

// Writes `size` bytes to `devicePath` ("/home/nvram/...") under the root; false when it cannot.
bool writeDeviceFile(const char* devicePath, const uint8_t* data, std::size_t size);
bool writeDeviceFile(const char* devicePath, const std::string& text);

// Puts the example tree's copy of `devicePath` back (removes the file when the example has none).
void restoreDeviceFile(const char* devicePath);

// The fuzzed bytes parsed as a JSON value of any kind with the documents' flags (duplicate keys
// rejected, NUL allowed): a new reference, or null when they are not JSON.
json_t* parseJson(const uint8_t* data, std::size_t size);

// The byte that picks an operation and the bytes that remain.
struct Split {
    uint8_t selector;
    const uint8_t* data;
    std::size_t size;
};
Split split(const uint8_t* data, std::size_t size);

// A writer of a fuzzed JSON value; the selector byte may also pick its argument.
using Writer = int (*)(json_t* json, uint8_t selector);

// Runs the writer the first byte picks on the value the rest parses to: it must return 0 or -1,
// and the user and system documents must still load afterwards (else abort). The `restored`
// device files are then put back for the next input.
void runWriter(const Writer* writers, std::size_t count, const uint8_t* data, std::size_t size,
               const char* const* restored, std::size_t restoredCount);

}  // namespace zt4fuzz
