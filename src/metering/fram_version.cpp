// The FRAM's layout version: the byte at offset 4096 of the memory, and the version the installed
// software expects, published by the start-up scripts in /var/tmp/fram.
#include <cstdlib>

#include "common/log.hpp"
#include "metering/fram_device.hpp"
#include "zt4config/device.h"
#include "zt4config/fram.h"

namespace {

constexpr unsigned char kBlankByte = 0xFF;
// getInfoDevice's buffer for the expected version: up to three characters.
constexpr std::size_t kSystemVersionCapacity = 4;

}  // namespace

extern "C" int8_t fram_read_version(void) noexcept {
    zt4::fram::Device device(__func__, zt4::fram::Device::Access::Read);
    if (!device.isOpen()) return -1;
    unsigned char version = kBlankByte;
    if (device.readAt(ZT4_FRAM_VERSION_OFFSET, &version, 1) != 1) return -1;
    if (zt4::debugLevel() > 1) zt4::logInfo(__func__, "FRAM version: %u", unsigned{version});
    if (version == kBlankByte) return -1;
    return static_cast<int8_t>(version);
}

extern "C" int fram_write_version(uint8_t version) noexcept {
    if (version > ZT4_FRAM_LAYOUT_VERSION) {
        zt4::logError(__func__, "FRAM version %u is not supported (0 to %u)", unsigned{version},
                      unsigned{ZT4_FRAM_LAYOUT_VERSION});
        return -1;
    }
    zt4::fram::Device device(__func__, zt4::fram::Device::Access::Update);
    if (!device.isOpen()) return -1;
    if (device.writeAt(ZT4_FRAM_VERSION_OFFSET, &version, 1) != 1) {
        zt4::logError(__func__, "FAILED to write FRAM version %u @ offset %u in '%s'",
                      unsigned{version}, unsigned{ZT4_FRAM_VERSION_OFFSET}, device.path().c_str());
        return -1;
    }
    return 0;
}

extern "C" int system_fram_read_version(void) noexcept {
    char text[kSystemVersionCapacity] = {};
    if (getInfoDevice("fram", text, sizeof text) != 0) return -1;
    return std::atoi(text);
}
