// The register map's second table: for each block of ModbusBase, how a register is selected in
// it and how the dump shows it. Both tables are indexed by block number and read by one engine
// (register_map.cpp for addresses, register_dump.cpp for the dumps).
#pragma once

#include <cstdint>

#include "zt4config/modbus.h"

namespace zt4::modbus {

// How (connector, channel) selects a register inside a block.
enum class Selector : std::uint8_t {
    ThreeSlot,    // base + words x (3 connector + channel)
    FourSlot,     // base + words x (4 connector + slot), slot 0 the connector total
    PerSelector,  // base + words x channel: one register per connector or per phase
    Single,       // base: one register
};

// The layout of a block's dump.
enum class DumpLayout : std::uint8_t {
    Words,            // 0 to 2: address and word
    Modes,            // 3: the mode words, a rule before every connector
    FloatFourSlot,    // float 4-slot blocks, shown by mode
    IntegerFourSlot,  // integer 4-slot blocks, shown by mode
    Phases,           // 18, 19: one integer per phase
    IntegerThreeSlot, // integer 3-slot blocks
    FloatPerConnector,
    NominalVoltage,   // 37: its two words printed high word first
    IntegerPerConnector,
    FloatThreeSlot,   // every other block, 6 and 58 among them
    Double,           // 64-bit blocks that DisplayZT4Data64 shows
    NameOnly,         // 64-bit blocks that DisplayZT4Data64 names only (66, 68)
};

struct BlockShape {
    Selector selector;
    DumpLayout dump;
};

extern const BlockShape kBlockShapes[ZT4_MODBUS_BLOCK_COUNT];

// The selector folded into two strides, so that an address is one multiply-add per selector
// without a branch: address = base + perConnector x connector + perChannel x channel.
struct Addressing {
    std::uint32_t base;
    std::uint32_t perConnector;
    std::uint32_t perChannel;
};

constexpr std::uint32_t connectorStride(Selector selector, std::uint32_t words) {
    return selector == Selector::FourSlot    ? 4 * words
           : selector == Selector::ThreeSlot ? 3 * words
                                             : 0;
}

constexpr std::uint32_t channelStride(Selector selector, std::uint32_t words) {
    return selector == Selector::Single ? 0 : words;
}

extern const Addressing kAddressing[ZT4_MODBUS_BLOCK_COUNT];

// The rule line that closes a dump and separates its parts.
inline constexpr const char* kRule = "--------------------------------------------------------";

// Register address by the map; blocks beyond the table give ZT4_MODBUS_IMAGE_WORDS.
inline std::uint32_t registerAddress(std::uint32_t index, std::uint32_t connector,
                                     std::uint32_t channel) noexcept {
    if (index >= ZT4_MODBUS_BLOCK_COUNT) return ZT4_MODBUS_IMAGE_WORDS;
    const Addressing& a = kAddressing[index];
    return a.base + a.perConnector * connector + a.perChannel * channel;
}

// True when `words` words from `address` lie inside the image.
inline bool insideImage(std::uint32_t address, std::uint32_t words) noexcept {
    return address <= ZT4_MODBUS_IMAGE_WORDS - words;
}

// The mode that governs a 4-slot register: slot 0 carries a value only in a three-phase
// unbalanced mode (2, 4, 6) of the connector's first channel; slot s is channel s - 1.
std::uint16_t slotMode(const std::uint16_t* image, std::uint32_t connector, std::uint32_t slot) noexcept;

inline bool isThreePhaseUnbalanced(std::uint32_t mode) noexcept {
    return mode == 2 || mode == 4 || mode == 6;
}

}  // namespace zt4::modbus
