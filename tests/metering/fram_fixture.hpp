// What the FRAM tests share: the memory as an image file under the test's root, filled with
// patterns in which every byte differs from its neighbours, and register images to compare.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "support/harness.hpp"

namespace zt4test {

inline constexpr const char* kFramNode = "/sys/bus/i2c/devices/0-0050/eeprom";
inline constexpr std::size_t kImageWords = 3318;
inline constexpr std::size_t kFramBytes = 8192;

// `size` bytes where byte i is (i x 7 + seed) mod 251: a displaced or foreign byte shows.
inline std::string patterned(std::size_t size, unsigned seed = 1) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>((i * 7 + seed) % 251);
    return bytes;
}

// A register image whose every byte is `fill`.
inline std::vector<uint16_t> filledImage(unsigned char fill) {
    std::vector<uint16_t> image(kImageWords);
    std::memset(image.data(), fill, image.size() * 2);
    return image;
}

// A register image holding `bytes` from byte 0.
inline std::vector<uint16_t> imageOf(const std::string& bytes) {
    std::vector<uint16_t> image(kImageWords);
    std::memcpy(image.data(), bytes.data(), std::min(bytes.size(), image.size() * 2));
    return image;
}

inline std::string bytesOf(const std::vector<uint16_t>& image) {
    return std::string(reinterpret_cast<const char*>(image.data()), image.size() * 2);
}

inline std::string floatsBytes(const std::vector<float>& values) {
    std::string bytes(values.size() * 4, '\0');
    std::memcpy(&bytes[0], values.data(), bytes.size());
    return bytes;
}

inline std::string unsignedBytes(const std::vector<uint32_t>& values) {
    std::string bytes(values.size() * 4, '\0');
    std::memcpy(&bytes[0], values.data(), bytes.size());
    return bytes;
}

class FramTest : public DeviceTest {
protected:
    std::string framPath() const { return path(kFramNode); }
    void writeFram(const std::string& bytes) const { writeFile(kFramNode, bytes); }
    std::string fram() const { return readFile(kFramNode); }
    // Replaces `bytes.size()` bytes of the memory at `offset`.
    void patchFram(std::size_t offset, const std::string& bytes) const {
        std::string memory = fram();
        memory.replace(offset, bytes.size(), bytes);
        writeFram(memory);
    }
};

}  // namespace zt4test
