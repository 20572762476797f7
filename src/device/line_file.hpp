// One-line value files: the device's small text files whose first line is the value.
#pragma once

#include <cstddef>
#include <string>

namespace zt4 {

enum class LineRead {
    Ok,          // the first line is in the buffer (possibly empty: the file was empty)
    Missing,     // no such file
    OpenFailed,  // the file exists but cannot be opened; errno tells why
};

// Reads at most size-1 bytes of the first line of `path` into `buffer` (size > 0), keeping a
// trailing newline when it fits. The buffer is always terminated, empty on failure.
LineRead readFirstLine(const std::string& path, char* buffer, std::size_t size) noexcept;

// Checks a caller's output buffer, logging under `function`: false for NULL or a zero size.
bool checkOutputBuffer(const char* function, const char* buffer, std::size_t size) noexcept;

// True when `text` is NULL or empty, logging "value is NULL" / "value length is NULL".
bool refuseEmptyValue(const char* function, const char* text) noexcept;

enum class LineWrite { Ok, OpenFailed, WriteFailed };

// Replaces the content of `path` with `text` ("w+", one fputs, fflush, close, then sync).
LineWrite writeWholeFile(const std::string& path, const char* text) noexcept;

}  // namespace zt4
