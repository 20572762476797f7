// What the metering tests share: expected data files, the FRAM as an image file under the test's
// root, patterns in which every byte differs from its neighbours, and register images as bytes.
#pragma once

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "support/harness.hpp"

namespace zt4test {

inline constexpr const char* kFramNode = "/sys/bus/i2c/devices/0-0050/eeprom";
inline constexpr std::size_t kImageWords = 3318;

inline std::string dataFile(const char* name) {
    return (std::filesystem::path(ZT4_EXAMPLE_DEVICE).parent_path().parent_path() / "tests/metering/data" / name).string();
}
// The sections of a data file: a line "== NAME" opens section NAME, the lines after it are its own.
inline std::map<std::string, std::vector<std::string>> sections(const char* name) {
    std::map<std::string, std::vector<std::string>> all;
    std::ifstream file(dataFile(name));
    std::string line, current;
    while (std::getline(file, line)) {
        if (line.rfind("== ", 0) == 0) current = line.substr(3), all[current];
        else all[current].push_back(line);
    }
    return all;
}
// The `n` fields of a row separated by '|', the last one holding the rest of the row.
inline std::vector<std::string> fields(const std::string& row, std::size_t n) {
    std::vector<std::string> f;
    std::size_t at = 0;
    for (std::size_t bar; f.size() + 1 < n && (bar = row.find('|', at)) != std::string::npos; at = bar + 1) {
        f.push_back(row.substr(at, bar - at));
    }
    f.push_back(row.substr(std::min(at, row.size())));
    return f;
}
// The text of every line logged so far.
inline std::vector<std::string> loggedLines() {
    std::vector<std::string> lines;
    for (const auto& entry : capturedLog()) lines.push_back(entry.text);
    return lines;
}

// `size` bytes where byte i is (7 i + seed) mod 251: a displaced or foreign byte shows.
inline std::string patterned(std::size_t size = 8192, unsigned seed = 1) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>((i * 7 + seed) % 251);
    return bytes;
}

// The little-endian bytes of values: floats, unsigned, register words.
template <class T>
std::string bytesOfValues(const std::vector<T>& values) {
    return std::string(reinterpret_cast<const char*>(values.data()), values.size() * sizeof(T));
}

// A register image holding `bytes` from byte 0 (zeros after them).
inline std::vector<uint16_t> imageOf(const std::string& bytes) {
    std::vector<uint16_t> image(kImageWords);
    std::memcpy(image.data(), bytes.data(), std::min(bytes.size(), image.size() * 2));
    return image;
}
inline std::vector<uint16_t> filledImage(char fill) { return imageOf(std::string(kImageWords * 2, fill)); }
inline std::string bytesOf(const std::vector<uint16_t>& image) { return bytesOfValues(image); }

class FramTest : public DeviceTest {
protected:
    std::string framPath() const { return path(kFramNode); }
    void writeFram(const std::string& bytes) const { writeFile(kFramNode, bytes); }
    std::string fram() const { return readFile(kFramNode); }
    std::string withPath(std::string text) const {  // "PATH" replaced by the memory's path
        const std::size_t at = text.find("PATH");
        return at == std::string::npos ? text : text.replace(at, 4, framPath());
    }
    void copyExampleDevice() const {
        std::filesystem::copy(ZT4_EXAMPLE_DEVICE, root(), std::filesystem::copy_options::recursive |
                                                              std::filesystem::copy_options::overwrite_existing);
    }
};

}  // namespace zt4test
