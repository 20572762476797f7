// Event counters and the operating time in FRAM: start-ups, sags, swells and over-currents.
// Each counter has a reader to a block-sized buffer, a reader to the image and a writer.
#include <cstring>

#include "common/log.hpp"
#include "metering/fram_layout.hpp"
#include "metering/fram_transfer.hpp"

namespace {

using zt4::fram::BlockBuffer;
using zt4::fram::Device;
using zt4::fram::Quote;

constexpr uint8_t kOperatingTime = 16;
constexpr uint8_t kStartup = 17;
constexpr uint8_t kSag = 18;
constexpr uint8_t kSwell = 19;
constexpr uint8_t kOverCurrent = 22;
constexpr uint8_t kOperatingTimeSeconds = 26;
constexpr uint8_t kOperatingTimeNanoseconds = 27;

// Reads counter `block` into a temporary buffer: true on success.
bool readCounter(const char* function, uint8_t block, BlockBuffer& into) {
    const zt4::fram::Counter& counter = zt4::fram::counterOf(block);
    const FRAMRegisterBlock& row = zt4::fram::currentLayout().rows[counter.row];
    return zt4::fram::readImageBlock(function, &row, block, Quote::Single, into);
}

int readToBuffer(const char* function, uint8_t block, uint16_t* buffer) {
    if (buffer == nullptr) {
        zt4::logError(function, "zt4Rg NULL");
        return 1;
    }
    BlockBuffer read;
    if (!readCounter(function, block, read)) return 1;
    std::memcpy(buffer, read.words, ModbusBase[block].bytes);
    return 0;
}

void copyToImage(uint16_t* image, uint8_t block, const void* from) {
    const ModbusRegisterBlock& geometry = ModbusBase[block];
    std::memcpy(image + geometry.base, from, geometry.bytes);
}

int readToImage(const char* function, uint8_t block, uint16_t* image) {
    if (image == nullptr) {
        zt4::logError(function, "zt4Rg NULL");
        return 1;
    }
    BlockBuffer read;
    if (!readCounter(function, block, read)) return 1;
    copyToImage(image, block, read.words);
    return 0;
}

int writeFromImage(const char* function, uint8_t block, const uint16_t* image) {
    if (image == nullptr) {
        zt4::logError(function, "zt4Rg NULL");
        return -1;
    }
    const ModbusRegisterBlock& geometry = ModbusBase[block];
    if (!zt4::fram::sizeChecked(function, geometry.bytes, geometry.count, geometry.words)) return -1;
    Device device(function, Device::Access::Update);
    if (!device.isOpen()) return -1;
    const zt4::fram::Counter& counter = zt4::fram::counterOf(block);
    const FRAMRegisterBlock& row = zt4::fram::currentLayout().rows[counter.row];
    const auto transfer = zt4::fram::transferOf(row, geometry, Quote::Single);
    return device.write(transfer, image + geometry.base) ? 0 : -1;
}

}  // namespace

extern "C" int GetZT4FRAMOperatingTimeToRegister(uint16_t* buffer) noexcept {
    return readToBuffer(__func__, kOperatingTime, buffer);
}

// Besides the hours, the seconds and nanoseconds they make, for the blocks that publish them.
extern "C" int GetZT4FRAMOperatingTime(uint16_t* zt4Rg) noexcept {
    if (zt4Rg == nullptr) {
        zt4::logError(__func__, "ZT4 register is NULL");
        return 1;
    }
    BlockBuffer hours;
    if (!readCounter(__func__, kOperatingTime, hours)) return 1;
    BlockBuffer seconds;
    BlockBuffer nanoseconds;
    const uint32_t registers = ModbusBase[kOperatingTime].count;
    for (uint32_t i = 0; i < registers; ++i) {
        float hour = 0.0f;
        std::memcpy(&hour, &hours.words[2 * i], sizeof hour);
        const double total = static_cast<double>(hour) * 3600.0;
        const uint32_t whole = zt4::fram::truncateToUnsigned32(total);
        const uint32_t nano = zt4::fram::truncateToUnsigned32((total - whole) * 1e9);
        std::memcpy(&seconds.words[2 * i], &whole, sizeof whole);
        std::memcpy(&nanoseconds.words[2 * i], &nano, sizeof nano);
    }
    copyToImage(zt4Rg, kOperatingTime, hours.words);
    copyToImage(zt4Rg, kOperatingTimeSeconds, seconds.words);
    copyToImage(zt4Rg, kOperatingTimeNanoseconds, nanoseconds.words);
    return 0;
}

extern "C" int SetZT4FRAMOperatingTime(const uint16_t* zt4Rg) noexcept {
    return writeFromImage(__func__, kOperatingTime, zt4Rg);
}

extern "C" int GetZT4FRAMStartupToRegister(uint16_t* buffer) noexcept {
    return readToBuffer(__func__, kStartup, buffer);
}
extern "C" int GetZT4FRAMStartup(uint16_t* zt4Rg) noexcept {
    return readToImage(__func__, kStartup, zt4Rg);
}
extern "C" int SetZT4FRAMStartup(const uint16_t* zt4Rg) noexcept {
    return writeFromImage(__func__, kStartup, zt4Rg);
}

extern "C" int GetZT4FRAMSagToRegister(uint16_t* buffer) noexcept {
    return readToBuffer(__func__, kSag, buffer);
}
extern "C" int GetZT4FRAMSag(uint16_t* zt4Rg) noexcept { return readToImage(__func__, kSag, zt4Rg); }
extern "C" int SetZT4FRAMSag(const uint16_t* zt4Rg) noexcept {
    return writeFromImage(__func__, kSag, zt4Rg);
}

extern "C" int GetZT4FRAMSwellToRegister(uint16_t* buffer) noexcept {
    return readToBuffer(__func__, kSwell, buffer);
}
extern "C" int GetZT4FRAMSwell(uint16_t* zt4Rg) noexcept {
    return readToImage(__func__, kSwell, zt4Rg);
}
extern "C" int SetZT4FRAMSwell(const uint16_t* zt4Rg) noexcept {
    return writeFromImage(__func__, kSwell, zt4Rg);
}

extern "C" int GetZT4FRAMOverCurrentToRegister(uint16_t* buffer) noexcept {
    return readToBuffer(__func__, kOverCurrent, buffer);
}
extern "C" int GetZT4FRAMOverCurrent(uint16_t* zt4Rg) noexcept {
    return readToImage(__func__, kOverCurrent, zt4Rg);
}
extern "C" int SetZT4FRAMOverCurrent(const uint16_t* zt4Rg) noexcept {
    return writeFromImage(__func__, kOverCurrent, zt4Rg);
}
