// A FRAM image as the meter may find it (blank, torn by a power cut, from an older layout): the
// first byte is the layout version the software expects (/var/tmp/fram), the rest the image.
// Every counter reader runs over it, then the layout upgrade, which either succeeds or leaves the
// version byte as it was.
#include <cstdlib>
#include <string>
#include <vector>

#include "support.hpp"
#include "zt4config.h"

namespace {

constexpr const char* kEeprom = "/sys/bus/i2c/devices/0-0050/eeprom";
constexpr uint8_t kEnergyBlocks[] = {4, 5, 7, 56, 57, 59};

using BufferReader = int (*)(uint16_t*);
constexpr BufferReader kImageReaders[] = {GetZT4FRAMOperatingTime, GetZT4FRAMStartup, GetZT4FRAMSag,
                                          GetZT4FRAMSwell, GetZT4FRAMOverCurrent};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    zt4fuzz::root();
    const zt4fuzz::Split input = zt4fuzz::split(data, size);
    const std::string expected = std::to_string(input.selector % 4) + "\n";
    if (!zt4fuzz::writeDeviceFile("/var/tmp/fram", expected)) return 0;
    if (!zt4fuzz::writeDeviceFile(kEeprom, input.data, input.size)) return 0;

    static uint16_t image[ZT4_MODBUS_IMAGE_WORDS];
    for (uint8_t block : kEnergyBlocks) {
        if (GetZT4EnergyIndex(image, block) > 1) std::abort();
        std::vector<uint16_t> buffer((getModbusSize(block) + 1) / 2);
        if (GetZT4EnergyIndexToRegister(buffer.data(), block) > 1) std::abort();
    }
    for (BufferReader reader : kImageReaders) {
        if (reader(image) > 1) std::abort();
    }
    for (uint8_t version = 0; version < 4; ++version) {
        std::vector<uint16_t> buffer(48);
        fram_get_register(buffer.data(), buffer.size() * 2, 4, version);
        fram_get_register(buffer.data(), buffer.size() * 2, 5, version);
    }

    const int8_t before = fram_read_version();
    const int result = fram_upgrade_version(static_cast<uint8_t>(input.selector % 4));
    if (result != 0 && fram_read_version() != before) std::abort();
    return 0;
}
