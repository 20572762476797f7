// The serial number of the meter: the radio's device EUI without its colons, optionally with a
// blank in the middle ("70B3D57E D0012345") as printed on the label.
#include <cstdio>
#include <cstring>

#include "common/log.hpp"
#include "device/line_file.hpp"
#include "zt4config/device.h"
#include "zt4config/radio.h"

namespace {

constexpr std::size_t kEuiCapacity = 32;
// Tells, in the log, where writing the serial number failed.
constexpr int kPlaceWriteSerial = 41;
constexpr int kGroupsBeforeBlank = 4;

}  // namespace

extern "C" int getSerialNumber(char* buffer, size_t size, int spacing) noexcept {
    if (!zt4::checkOutputBuffer(__func__, buffer, size)) return -1;
    buffer[0] = '\0';
    char eui[kEuiCapacity];
    if (getRadioDEVEUI(eui, sizeof eui) != 0) return -1;

    size_t written = 0;
    int group = 0;
    char* position = nullptr;
    for (char* token = strtok_r(eui, ":", &position); token != nullptr;
         token = strtok_r(nullptr, ":", &position)) {
        if (zt4::debugLevel() > 3) zt4::logLine(LOG_INFO, "[%s] %s", __func__, token);
        ++group;
        const char* separator = (spacing == 1 && group == kGroupsBeforeBlank) ? " " : "";
        int length = std::snprintf(buffer + written, size - written, "%s%s", token, separator);
        if (length < 0 || static_cast<size_t>(length) >= size - written) {
            zt4::logLine(LOG_ERR, "error.[%s].%d FAILED to write serial number", __func__,
                         kPlaceWriteSerial);
            return -1;
        }
        written += static_cast<size_t>(length);
    }
    return static_cast<int>(written);
}
