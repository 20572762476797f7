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

}  // namespace zt4fuzz
