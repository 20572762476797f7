#include "metering/fram_transfer.hpp"

#include <cmath>

#include "common/log.hpp"

namespace zt4::fram {

const ModbusRegisterBlock* imageBlock(uint8_t index) {
    return index < ZT4_MODBUS_BLOCK_COUNT ? &ModbusBase[index] : nullptr;
}

bool sizeChecked(const char* function, std::size_t bytes, uint32_t registers, uint32_t words) {
    const std::size_t expectedWords = static_cast<std::size_t>(registers) * words;
    if (bytes != 0 && bytes == expectedWords * 2) return true;
    logError(function, "size (%zu bytes) is wrong %zu", bytes, expectedWords);
    return false;
}

bool fitsBuffer(const char* function, const Transfer& transfer) {
    if (transfer.bytes() <= sizeof(BlockBuffer::words)) return true;
    logError(function, "size (%zu bytes) is wrong %zu", transfer.bytes(), sizeof(BlockBuffer::words));
    return false;
}

Transfer transferOf(const FRAMRegisterBlock& row, const ModbusRegisterBlock& block, Quote quote) {
    return {row.name, row.offset, block.count, block.words, quote};
}

bool readImageBlock(const char* function, const FRAMRegisterBlock* row, uint8_t index, Quote quote,
                    BlockBuffer& into) {
    const ModbusRegisterBlock* block = imageBlock(index);
    if (block == nullptr || !sizeChecked(function, block->bytes, block->count, block->words)) {
        return false;
    }
    Device device(function, Device::Access::Read);
    if (!device.isOpen() || row == nullptr) return false;
    const Transfer transfer = transferOf(*row, *block, quote);
    return fitsBuffer(function, transfer) && device.read(transfer, into.words);
}

uint32_t truncateToUnsigned32(double value) {
    if (!(value > 0.0)) return 0;
    if (value >= 4294967296.0) return UINT32_MAX;
    return static_cast<uint32_t>(value);
}

uint64_t truncateToUnsigned64(double value) {
    if (!(value > 0.0)) return 0;
    if (value >= 18446744073709551616.0) return UINT64_MAX;
    return static_cast<uint64_t>(value);
}

}  // namespace zt4::fram
