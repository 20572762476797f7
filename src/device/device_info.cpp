// Facts about the device that the start-up scripts and network daemons publish as one-line
// files: versions, booted partition, addresses; and the board generation derived from them.
#include <arpa/inet.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "common/api.hpp"
#include "common/log.hpp"
#include "common/path.hpp"
#include "device/line_file.hpp"
#include "zt4config/device.h"

namespace {

constexpr std::size_t kPathCapacity = 64;
constexpr std::size_t kHardwareCapacity = 16;

// Reads the first line of a device file. `name` is given for the files of /var/tmp, whose
// absence is only a notice.
int readDeviceLine(const char* function, const char* devicePath, const char* name, char* buffer,
                   size_t size) noexcept {
    return zt4::guarded(function, -1, [&] {
        std::string path = zt4::resolvePath(devicePath);
        switch (zt4::readFirstLine(path, buffer, size)) {
            case zt4::LineRead::Ok:
                if (buffer[0] != '\0') return 0;
                zt4::logLine(LOG_ERR, "error.[%s] value is empty", function);
                return -1;
            case zt4::LineRead::Missing:
                if (name != nullptr) {
                    zt4::logLine(LOG_WARNING, "No file for '%s'", name);
                    return -1;
                }
                break;
            case zt4::LineRead::OpenFailed: break;
        }
        zt4::logLine(LOG_ERR, "error.[%s] FAILED to open file '%s'", function, path.c_str());
        return -1;
    });
}

int readAddress(const char* function, const char* devicePath, char* buffer, size_t size) noexcept {
    if (!zt4::checkOutputBuffer(function, buffer, size)) return -1;
    std::memset(buffer, 0, size);
    return readDeviceLine(function, devicePath, nullptr, buffer, size);
}

bool startsWith(const char* text, const char* prefix) {
    return std::strncmp(text, prefix, std::strlen(prefix)) == 0;
}

}  // namespace

extern "C" int getInfoDevice(const char* name, char* buffer, size_t size) noexcept {
    if (name == nullptr) {
        zt4::logLine(LOG_ERR, "error.[%s] name is NULL", __func__);
        return -1;
    }
    if (!zt4::checkOutputBuffer(__func__, buffer, size)) return -1;
    buffer[0] = '\0';
    char devicePath[kPathCapacity];
    int length = std::snprintf(devicePath, sizeof devicePath, "/var/tmp/%s", name);
    if (length < 0 || static_cast<size_t>(length) >= sizeof devicePath) {
        zt4::logLine(LOG_ERR, "error.[%s] name is too long '%s'", __func__, name);
        return -1;
    }
    return readDeviceLine(__func__, devicePath, name, buffer, size);
}

extern "C" int getSWInfoDevice(const char* name, char* buffer, size_t size) noexcept {
    if (name == nullptr) {
        zt4::logLine(LOG_ERR, "error.[%s] name is NULL", __func__);
        return -1;
    }
    if (!zt4::checkOutputBuffer(__func__, buffer, size)) return -1;
    buffer[0] = '\0';
    // Compared on the length of the known names only, as the callers always have.
    const char* devicePath = nullptr;
    if (std::strncmp(name, "swupdateversion", 15) == 0) {
        devicePath = "/home/nvram/swupdateversion";
    } else if (std::strncmp(name, "swmainversion", 13) == 0) {
        devicePath = "/home/nvram/swmainversion";
    } else {
        zt4::logLine(LOG_ERR, "No file for '%s' in flash memory", name);
        return -1;
    }
    return readDeviceLine(__func__, devicePath, nullptr, buffer, size);
}

extern "C" int getMACAddressEthernet(char* buffer, size_t size) noexcept {
    return readAddress(__func__, "/var/zt4/eth0/address", buffer, size);
}

extern "C" int getIPAddressEthernet(char* buffer, size_t size) noexcept {
    return readAddress(__func__, "/var/zt4/br0/AddressIP", buffer, size);
}

extern "C" int getBroadcastAddressEthernet(char* buffer, size_t size) noexcept {
    return readAddress(__func__, "/var/zt4/br0/Broadcast", buffer, size);
}

extern "C" int getNetmaskAddressEthernet(char* buffer, size_t size) noexcept {
    return readAddress(__func__, "/var/zt4/br0/Netmask", buffer, size);
}

extern "C" int getMACAddressWiFi(char* buffer, size_t size) noexcept {
    return readAddress(__func__, "/var/zt4/wlan0/address", buffer, size);
}

extern "C" int isHardwareBoardVersion3(void) noexcept {
    char hardware[kHardwareCapacity];
    if (getInfoDevice("hardware", hardware, sizeof hardware) != 0) return 1;
    return startsWith(hardware, "1.") || startsWith(hardware, "2.") ? 0 : 1;
}

extern "C" int isHardwareBoardVersion3_2(void) noexcept {
    char hardware[kHardwareCapacity];
    if (getInfoDevice("hardware", hardware, sizeof hardware) != 0) return 0;
    return startsWith(hardware, "3.2") ? 1 : 0;
}

extern "C" int isAddressIPv4(const char* text) noexcept {
    if (text == nullptr) {
        zt4::logLine(LOG_ERR, "error.[%s] value is NULL", __func__);
        return -1;
    }
    struct in_addr address;
    return inet_pton(AF_INET, text, &address) == 1 ? 0 : -1;
}
