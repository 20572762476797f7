// Block transfers between the FRAM and a caller's buffer or register image: the checks, the
// temporary buffer that keeps a failed read from touching the caller's memory, and the copy to
// the block's place in the image. Shared by the energy, counter and upgrade operations.
#pragma once

#include <cstddef>
#include <cstdint>

#include "metering/fram_device.hpp"
#include "zt4config/fram.h"
#include "zt4config/modbus.h"

namespace zt4::fram {

// The largest FRAM area a single transfer moves, in 16-bit words.
inline constexpr std::size_t kLargestBlockWords = 48;

// A block read through a temporary buffer.
struct BlockBuffer {
    uint16_t words[kLargestBlockWords] = {};
};

// The image block `index`, or nullptr beyond the map.
const ModbusRegisterBlock* imageBlock(uint8_t index);

// The size check of a transfer: `bytes` non-zero and equal to registers x words x 2; logs
// "size (%zu bytes) is wrong %zu" under `function`.
bool sizeChecked(const char* function, std::size_t bytes, uint32_t registers, uint32_t words);
// True when the transfer fits a BlockBuffer (the FRAM areas all do); logged like the size check.
bool fitsBuffer(const char* function, const Transfer& transfer);

// The transfer of image block `block` to or from FRAM area `row`.
Transfer transferOf(const FRAMRegisterBlock& row, const ModbusRegisterBlock& block, Quote quote);

// Reads FRAM area `row` into `into` as image block `index` (checks, open, read): true on success.
// A null `row` (a block the FRAM does not keep) fails without a message once the file is open.
bool readImageBlock(const char* function, const FRAMRegisterBlock* row, uint8_t index, Quote quote,
                    BlockBuffer& into);

// Safe truncations of a measured value (NaN and negatives give 0, values beyond the type its
// largest value, as the board's conversion instructions do).
uint32_t truncateToUnsigned32(double value);
uint64_t truncateToUnsigned64(double value);

}  // namespace zt4::fram
