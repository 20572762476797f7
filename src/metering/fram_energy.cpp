// Energy indices in FRAM: the six import blocks (active, reactive + and -, corrected and raw)
// that the customer is billed on. The export blocks are deliberately not kept.
#include <cstring>

#include "common/log.hpp"
#include "metering/fram_layout.hpp"
#include "metering/fram_transfer.hpp"

namespace {

using zt4::fram::BlockBuffer;
using zt4::fram::Device;
using zt4::fram::Quote;

// Reads energy block `index` of the current layout into a temporary buffer: 0 or 1.
int readEnergy(const char* function, const void* destination, uint8_t index, BlockBuffer& block) {
    if (destination == nullptr) {
        zt4::logError(function, "zt4Rg NULL");
        return 1;
    }
    const FRAMRegisterBlock* row = zt4::fram::rowOf(zt4::fram::currentLayout(), index);
    return zt4::fram::readImageBlock(function, row, index, Quote::Double, block) ? 0 : 1;
}

// Writes energy block `index` of the image through the open device: 0 or 1. Messages carry its
// own name, this being a step of the operation that opened the device.
int SetZT4EnergyIndex(Device& device, const uint16_t* image, uint8_t index) {
    const char* function = "SetZT4EnergyIndex";
    const ModbusRegisterBlock* block = zt4::fram::imageBlock(index);
    const FRAMRegisterBlock* row = zt4::fram::rowOf(zt4::fram::currentLayout(), index);
    if (block == nullptr || row == nullptr) return 1;
    if (!zt4::fram::sizeChecked(function, block->bytes, block->count, block->words)) return 1;
    const auto transfer = zt4::fram::transferOf(*row, *block, Quote::Double);
    return device.write(transfer, image + block->base, function) ? 0 : 1;
}

}  // namespace

extern "C" int GetZT4EnergyIndexToRegister(uint16_t* buffer, uint8_t index) noexcept {
    BlockBuffer block;
    if (readEnergy(__func__, buffer, index, block) != 0) return 1;
    std::memcpy(buffer, block.words, ModbusBase[index].bytes);
    return 0;
}

extern "C" int GetZT4EnergyIndex(uint16_t* zt4Rg, uint8_t index) noexcept {
    BlockBuffer block;
    if (readEnergy(__func__, zt4Rg, index, block) != 0) return 1;
    const ModbusRegisterBlock& geometry = ModbusBase[index];
    std::memcpy(zt4Rg + geometry.base, block.words, geometry.bytes);
    return 0;
}

extern "C" int SetZT4AllEnergyIndex(const uint16_t* zt4Rg) noexcept {
    if (zt4Rg == nullptr) {
        zt4::logError(__func__, "zt4Rg NULL");
        return 1;
    }
    Device device(__func__, Device::Access::Update);
    if (!device.isOpen()) return 1;
    int result = 0;
    for (const zt4::fram::Placement& energy : zt4::fram::currentLayout().energies) {
        result |= SetZT4EnergyIndex(device, zt4Rg, energy.block);
    }
    return result;
}
