// Typed accessors on the caller's register image. Each is one address computation from the map,
// one bounds check and one memcpy load or store: no allocation, and nothing formatted unless the
// debug level asks for the trace lines.
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "common/log.hpp"
#include "metering/register_map.hpp"
#include "zt4config/model.h"

namespace zt4::modbus {
namespace {

constexpr std::uint32_t kModeBlock = 3;
constexpr std::uint32_t kSoftwareVersionBlock = 0;
constexpr std::uint32_t kModbusVersionBlock = 1;
constexpr std::uint32_t kMacBlock = 2;
constexpr unsigned kMacDigits = 12;

// Read in place rather than through debugLevel(): one load on the hot path, no call.
bool tracing() noexcept { return debug_level > 3; }

template <class Value>
Value load(const std::uint16_t* image, std::uint32_t address) noexcept {
    Value value;
    std::memcpy(&value, image + address, sizeof value);
    return value;
}

template <class Value>
void store(std::uint16_t* image, std::uint32_t address, Value value) noexcept {
    std::memcpy(image + address, &value, sizeof value);
}

std::uint32_t baseOf(std::uint32_t index) noexcept { return ModbusBase[index].base; }
std::uint32_t wordsOf(std::uint32_t index) noexcept { return ModbusBase[index].words; }

// The logging paths stay out of line, so that the accessors themselves are a few instructions
// without a stack frame.
[[gnu::cold, gnu::noinline]] void logOutsideImage(const char* function, std::uint32_t index,
                                                  std::uint32_t connector, std::uint32_t channel) {
    logError(function, "Register @index %u (%u %u) outside the register image", index, connector,
             channel);
}

[[gnu::cold, gnu::noinline]] void logNull(const char* function, const char* what) {
    logError(function, "%s NULL", what);
}

// "get"/"set": a 32-bit float register.
[[gnu::cold, gnu::noinline]] void traceFloat(const char* function, const char* verb,
                                             std::uint32_t index, std::uint32_t address,
                                             std::uint32_t connector, std::uint32_t channel,
                                             float value) {
    logInfo(function, "%s @index %u @ addr %u (%u %u %u) (%u 16-words) value=%f (%zu bytes)", verb,
            index, address, baseOf(index), connector, channel, wordsOf(index),
            static_cast<double>(value), sizeof value);
}

// "Get"/"Set": a 32-bit integer register, spelt with "@addr".
[[gnu::cold, gnu::noinline]] void traceInteger(const char* function, const char* verb,
                                               std::uint32_t index, std::uint32_t address,
                                               std::uint32_t connector, std::uint32_t channel,
                                               std::uint32_t value) {
    logInfo(function, "%s @index %u @addr %u (%u %u %u) (%u 16-words) value=%u (%zu bytes)", verb,
            index, address, baseOf(index), connector, channel, wordsOf(index), value, sizeof value);
}

// "get"/"set": a 64-bit double register.
[[gnu::cold, gnu::noinline]] void traceDouble(const char* function, const char* verb,
                                              std::uint32_t index, std::uint32_t address,
                                              std::uint32_t connector, std::uint32_t channel,
                                              double value) {
    logInfo(function, "%s @index %u @ addr %u (%u %u %u) (%u word-64) value=%e (%zu bytes)", verb,
            index, address, baseOf(index), connector, channel, wordsOf(index), value, sizeof value);
}

// "get"/"set": a 16-bit mode word.
[[gnu::cold, gnu::noinline]] void traceMode(const char* function, const char* verb,
                                            std::uint32_t address, std::uint32_t connector,
                                            std::uint32_t channel, std::uint16_t value) {
    logInfo(function, "%s @index %u @ addr %u (%u %u %u) (%u 16-words) value=%u (%zu bytes)", verb,
            kModeBlock, address, baseOf(kModeBlock), connector, channel, wordsOf(kModeBlock), value,
            sizeof value);
}

// The address of a Value-sized register, or false (logged) when it would reach past the image.
template <class Value>
bool locate(const char* function, std::uint32_t index, std::uint32_t connector,
            std::uint32_t channel, std::uint32_t& address) noexcept {
    address = registerAddress(index, connector, channel);
    if (insideImage(address, sizeof(Value) / 2)) return true;
    logOutsideImage(function, index, connector, channel);
    return false;
}

// Stores only what the type can represent: NaN and infinities leave the register as it was.
template <class Value>
bool storable(Value value) noexcept {
    return std::fabs(value) <= std::numeric_limits<Value>::max();
}

}  // namespace
}  // namespace zt4::modbus

using namespace zt4::modbus;

extern "C" {

uint16_t GetModbusSWVersion(const uint16_t* zt4Rg) noexcept {
    if (zt4Rg == nullptr) {
        logNull(__func__, "zt4Rg");
        return 0;
    }
    return zt4Rg[baseOf(kSoftwareVersionBlock)];
}

void SetModbusSWVersion(uint16_t* zt4Rg, uint16_t version) noexcept {
    if (zt4Rg == nullptr) {
        logNull(__func__, "zt4Rg");
        return;
    }
    zt4Rg[baseOf(kSoftwareVersionBlock)] = version;
}

uint16_t GetModbusVersion(const uint16_t* zt4Rg) noexcept {
    if (zt4Rg == nullptr) {
        logNull(__func__, "zt4Rg");
        return 0;
    }
    return zt4Rg[baseOf(kModbusVersionBlock)];
}

void SetModbusVersion(uint16_t* zt4Rg, uint16_t version) noexcept {
    if (zt4Rg == nullptr) {
        logNull(__func__, "zt4Rg");
        return;
    }
    zt4Rg[baseOf(kModbusVersionBlock)] = version;
}

// Each group of four hexadecimal digits is one word, first digits in the high half. The text is
// taken as bare digits: colons are not skipped.
void SetModbusMAC(uint16_t* zt4Rg, const char* str) noexcept {
    if (zt4Rg == nullptr) {
        logNull(__func__, "zt4Rg");
        return;
    }
    if (str == nullptr) {
        zt4::logError(__func__, "str NULL");
        return;
    }
    if (str[0] == '\0') return;
    if (strnlen(str, kMacDigits) < kMacDigits) {
        zt4::logError(__func__, "MAC address %s INVALID", str);
        return;
    }
    for (unsigned i = 0; i < 3; ++i) {
        char group[5] = {str[4 * i], str[4 * i + 1], str[4 * i + 2], str[4 * i + 3], '\0'};
        zt4Rg[baseOf(kMacBlock) + i] = static_cast<uint16_t>(std::strtoul(group, nullptr, 16));
    }
}

uint16_t GetModbusInfoConnector(const uint16_t* zt4Rg, uint8_t connector, uint8_t channel) noexcept {
    if (zt4Rg == nullptr) {
        logNull(__func__, "zt4Rg");
        return 0;
    }
    uint32_t address;
    if (!locate<uint16_t>(__func__, kModeBlock, connector, channel, address)) return 0;
    const uint16_t mode = zt4Rg[address];
    if (tracing()) traceMode(__func__, "get", address, connector, channel, mode);
    return mode;
}

void SetModbusInfoConnector(uint16_t* zt4Rg, uint8_t connector, uint8_t channel,
                            uint16_t mode) noexcept {
    if (zt4Rg == nullptr) {
        logNull(__func__, "zt4Rg");
        return;
    }
    uint32_t address;
    if (!locate<uint16_t>(__func__, kModeBlock, connector, channel, address)) return;
    if (tracing()) traceMode(__func__, "set", address, connector, channel, mode);
    zt4Rg[address] = mode;
}

void StandardizeModbusInfoConnector(uint16_t* zt4Rg, const ConnectorConfig* connectors) noexcept {
    if (zt4Rg == nullptr) {
        logNull(__func__, "zt4Rg");
        return;
    }
    if (connectors == nullptr) {
        zt4::logError(__func__, "Connect NULL");
        return;
    }
    const uint32_t modes = baseOf(kModeBlock);
    for (uint32_t c = 0; c < ZT4_CONNECTOR_COUNT; ++c) {
        const ConnectorConfig& connector = connectors[c];
        for (uint32_t ch = 0; ch < ZT4_CHANNEL_COUNT; ++ch) {
            uint16_t mode = connector.channels[ch].mode;
            if (isModeValid(mode) < 0) continue;
            if (connector.enabled != 1) mode = 0;
            if (isThreePhaseUnbalanced(mode)) {
                if (connector.channels[0].enable != 1) mode = 0;
                for (uint32_t each = 0; each < ZT4_CHANNEL_COUNT; ++each) {
                    zt4Rg[modes + 3 * c + each] = mode;
                }
                break;
            }
            if (connector.channels[ch].enable != 1) mode = 0;
            zt4Rg[modes + 3 * c + ch] = mode;
        }
    }
}

float GetModbusData(const uint16_t* zt4Rg, uint8_t index, uint8_t connector,
                    uint8_t channel) noexcept {
    if (zt4Rg == nullptr) {
        logNull(__func__, "zt4Rg");
        return 0.0f;
    }
    uint32_t address;
    if (!locate<float>(__func__, index, connector, channel, address)) return 0.0f;
    const float value = load<float>(zt4Rg, address);
    if (tracing()) traceFloat(__func__, "get", index, address, connector, channel, value);
    return value;
}

void SetModbusData(uint16_t* zt4Rg, uint8_t index, uint8_t connector, uint8_t channel,
                   float value) noexcept {
    if (zt4Rg == nullptr) {
        logNull(__func__, "zt4Rg");
        return;
    }
    uint32_t address;
    if (!locate<float>(__func__, index, connector, channel, address)) return;
    if (tracing()) traceFloat(__func__, "set", index, address, connector, channel, value);
    if (storable(value)) store(zt4Rg, address, value);
}

uint32_t GetModbusDataInteger(const uint16_t* zt4Rg, uint8_t index, uint8_t connector,
                              uint8_t channel) noexcept {
    if (zt4Rg == nullptr) {
        logNull(__func__, "zt4Rg");
        return 0;
    }
    uint32_t address;
    if (!locate<uint32_t>(__func__, index, connector, channel, address)) return 0;
    const uint32_t value = load<uint32_t>(zt4Rg, address);
    if (tracing()) traceInteger(__func__, "Get", index, address, connector, channel, value);
    return value;
}

// Alone among the setters, silent on a null image.
void SetModbusDataInteger(uint16_t* zt4Rg, uint8_t index, uint8_t connector, uint8_t channel,
                          uint32_t value) noexcept {
    if (zt4Rg == nullptr) return;
    uint32_t address;
    if (!locate<uint32_t>(__func__, index, connector, channel, address)) return;
    if (tracing()) traceInteger(__func__, "Set", index, address, connector, channel, value);
    store(zt4Rg, address, value);
}

double GetModbusData64(const uint16_t* zt4Rg64, uint8_t index, uint8_t connector,
                       uint8_t channel) noexcept {
    if (zt4Rg64 == nullptr) {
        logNull(__func__, "zt4Rg64");
        return 0.0;
    }
    uint32_t address;
    if (!locate<double>(__func__, index, connector, channel, address)) return 0.0;
    const double value = load<double>(zt4Rg64, address);
    if (tracing()) traceDouble(__func__, "get", index, address, connector, channel, value);
    return value;
}

void SetModbusData64(uint16_t* zt4Rg64, uint8_t index, uint8_t connector, uint8_t channel,
                     double value) noexcept {
    if (zt4Rg64 == nullptr) {
        logNull(__func__, "zt4Rg64");
        return;
    }
    uint32_t address;
    if (!locate<double>(__func__, index, connector, channel, address)) return;
    if (tracing()) traceDouble(__func__, "set", index, address, connector, channel, value);
    if (storable(value)) store(zt4Rg64, address, value);
}

// The start is the byte offset 2 x index, not the block's base: kept as the meter has always
// done it. The largest block from the largest offset still ends inside the image.
void ClearModbusData(uint16_t* zt4Rg, uint8_t index) noexcept {
    if (zt4Rg == nullptr) {
        logNull(__func__, "zt4Rg");
        return;
    }
    if (index >= ZT4_MODBUS_BLOCK_COUNT) {
        zt4::logError(__func__, "Register block %u INVALID", index);
        return;
    }
    std::memset(reinterpret_cast<unsigned char*>(zt4Rg) + 2u * index, 0, ModbusBase[index].bytes);
}

}  // extern "C"
