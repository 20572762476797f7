// The SSID of the Wi-Fi access point, as configured for the access-point daemon.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "common/api.hpp"
#include "common/log.hpp"
#include "device/line_file.hpp"
#include "common/path.hpp"
#include "zt4config/device.h"

namespace {

constexpr std::size_t kLineCapacity = 256;

// Reads the first "ssid=" line of the open configuration; the SSID ends at its first blank.
// Empty when there is none.
void findSsid(std::FILE* file, char (&ssid)[kLineCapacity]) {
    ssid[0] = '\0';
    char line[kLineCapacity];
    while (std::fgets(line, sizeof line, file) != nullptr) {
        if (std::strncmp(line, "ssid=", 5) != 0) continue;
        if (zt4::debugLevel() > 1) zt4::logLine(LOG_INFO, "line: %s", line);
        if (std::sscanf(line, "ssid=%255s", ssid) != 1) ssid[0] = '\0';
        return;
    }
}

}  // namespace

extern "C" int getConfigWiFiSSID(char* buffer, size_t size) noexcept {
    if (!zt4::checkOutputBuffer(__func__, buffer, size)) return -1;
    buffer[0] = '\0';
    const char* function = __func__;
    return zt4::guarded(function, -1, [&] {
        std::string path = zt4::resolvePath("/home/nvram/hostapd.conf");
        int fd = open(path.c_str(), O_RDWR | O_SYNC, 0666);
        if (fd < 0) {
            int error = errno;
            zt4::logError(function, "FAILED open file '%s'. %s (%d)", path.c_str(),
                          std::strerror(error), error);
            return -1;
        }
        std::FILE* file = fdopen(fd, "r");
        if (file == nullptr) {
            int error = errno;
            std::perror("fopen /home/nvram/hostapd.conf");
            zt4::logError(function, "FAILED fopen file '%s'. %s (%d)", path.c_str(),
                          std::strerror(error), error);
            close(fd);
            return -1;
        }
        char ssid[kLineCapacity];
        findSsid(file, ssid);
        std::fclose(file);
        if (ssid[0] == '\0') {
            if (zt4::debugLevel() > 1) {
                zt4::logLine(LOG_ERR, "error.[%s] value is empty", function);
            }
            return -1;
        }
        zt4::logLine(LOG_INFO, "get SSID: %s", ssid);
        std::snprintf(buffer, size, "%s", ssid);
        return 0;
    });
}

extern "C" int readSSID(json_t* object) noexcept {
    if (object == nullptr) {
        zt4::logError(__func__, "json_ssid NULL");
        return -1;
    }
    char ssid[kLineCapacity];
    if (getConfigWiFiSSID(ssid, sizeof ssid) != 0) {
        zt4::logError(__func__, "Failed to get SSID");
        return -1;
    }
    json_t* text = json_string(ssid);
    if (text == nullptr) {
        zt4::logError(__func__, "Failed to JSON string SSID");
        return -1;
    }
    if (json_object_set_new(object, "SSID", text) != 0) {
        zt4::logError(__func__, "Failed to set JSON Object SSID");
        return -1;
    }
    return 0;
}
