// The main software version the meter left production with, and its numbers.
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "common/api.hpp"
#include "common/log.hpp"
#include "common/path.hpp"
#include "device/line_file.hpp"
#include "zt4config/device.h"

namespace {

constexpr std::size_t kVersionCapacity = 16;

}  // namespace

extern "C" int readMainSoftwareVersionProduction(char* buffer, size_t size) noexcept {
    if (buffer == nullptr) {
        zt4::logLine(LOG_ERR, "error.[%s] str NULL", __func__);
        return -1;
    }
    if (size == 0) {
        zt4::logLine(LOG_ERR, "error.[%s] Size str NULL", __func__);
        return -1;
    }
    buffer[0] = '\0';
    return zt4::guarded(__func__, -1, [&] {
        std::string path = zt4::resolvePath("/home/nvram/swmainversionproduction");
        struct stat attributes;
        if (stat(path.c_str(), &attributes) != 0) {
            zt4::logLine(LOG_WARNING, "No attributes of file Main SW version production");
            return -1;
        }
        if (!S_ISREG(attributes.st_mode)) {
            zt4::logLine(LOG_ERR, "No file available for Main SW version production");
            return -1;
        }
        if (zt4::readFirstLine(path, buffer, size) != zt4::LineRead::Ok) {
            std::perror("fopen Main software version production");
            zt4::logLine(LOG_ERR, "Failed to open file of Main SW version production");
            return -1;
        }
        return 0;
    });
}

extern "C" int readFormatMainSoftwareVersionProduction(uint8_t* major, uint8_t* minor,
                                                       uint8_t* patch) noexcept {
    if (major == nullptr || minor == nullptr || patch == nullptr) {
        zt4::logLine(LOG_ERR, "error.[%s] value is NULL", __func__);
        return -1;
    }
    *major = *minor = *patch = 0;
    char version[kVersionCapacity];
    if (readMainSoftwareVersionProduction(version, sizeof version) != 0 || version[0] == '\0') {
        zt4::logLine(LOG_ERR, "No format main software version production available");
        return -1;
    }
    // "major.minor[.patch...]": every token after the second is taken as the patch number.
    int tokens = 0;
    char* position = nullptr;
    for (char* token = strtok_r(version, ".", &position); token != nullptr;
         token = strtok_r(nullptr, ".", &position)) {
        ++tokens;
        if (zt4::debugLevel() > 2) zt4::logInfo(__func__, "token %d = %s", tokens, token);
        uint8_t number = static_cast<uint8_t>(std::atoi(token));
        if (tokens == 1) {
            *major = number;
        } else if (tokens == 2) {
            *minor = number;
        } else {
            *patch = number;
        }
    }
    if (tokens < 2) {
        zt4::logLine(LOG_ERR, "No format main software version production available");
        return -1;
    }
    if (zt4::debugLevel() > 1) {
        zt4::logLine(LOG_INFO, "Software major number %u", *major);
        zt4::logLine(LOG_INFO, "Software minor number %u", *minor);
        zt4::logLine(LOG_INFO, "Software patch number %u", *patch);
    }
    return 0;
}
