// Front-panel LEDs through the kernel's LED class: each LED is a directory under /sys/class/leds
// with the attribute files brightness, trigger and max_brightness.
#include <cstdio>
#include <cstring>
#include <string>

#include "common/api.hpp"
#include "common/log.hpp"
#include "common/path.hpp"
#include "zt4config/leds.h"

namespace zt4 {
namespace {

// Device paths of LED attributes fit in this many bytes, terminator included; a longer one is
// refused rather than cut.
constexpr size_t kLedPathCapacity = 64;

// The maximum brightness read by the first leds_on, shared by every LED of the process. Each
// leds_on drops the last character of this text (meant as the newline of the line read); once
// it is empty the next leds_on reads the file again.
char maxBrightness[8];

// True (and logged under `function`) when the caller gave no name.
bool nullLedName(const char* function, const char* name) noexcept {
    if (name != nullptr) return false;
    logLine(LOG_ERR, "error.[%s] name NULL", function);
    return true;
}

bool validLedName(const char* function, const char* name) noexcept {
    if (nullLedName(function, name)) return false;
    if (*name == '\0' || std::strchr(name, '/') != nullptr || std::strcmp(name, ".") == 0 ||
        std::strcmp(name, "..") == 0) {
        logLine(LOG_ERR, "error.[%s] Invalid LED name '%s'", function, name);
        return false;
    }
    return true;
}

// The host path of the LED attribute `attribute`, or "" when the device path is too long.
std::string attributePath(const char* function, const char* name, const char* attribute) {
    char devicePath[kLedPathCapacity];
    const int length =
        std::snprintf(devicePath, sizeof devicePath, "/sys/class/leds/%s/%s", name, attribute);
    if (length < 0 || static_cast<size_t>(length) >= sizeof devicePath) {
        logLine(LOG_ERR, "error.[%s] LED name too long: '%s'", function, name);
        return std::string();
    }
    return resolvePath(devicePath);
}

// Writes `value` into the LED's attribute file. Its failures are its own: they are logged under
// its name, whichever operation asked for the write.
int leds_file(const char* name, const char* attribute, const char* value) {
    const char* function = __func__;
    if (!validLedName(function, name) || attribute == nullptr) return -1;
    if (value == nullptr || *value == '\0') {
        logLine(LOG_ERR, "error.[%s] Empty value for '%s' of LED '%s'", function, attribute, name);
        return -1;
    }
    const std::string path = attributePath(function, name, attribute);
    if (path.empty()) return -1;
    FILE* file = std::fopen(path.c_str(), "w+");
    if (file == nullptr) {
        logLine(LOG_ERR, "error.[%s] Failed to open file '%s'", function, path.c_str());
        return -1;
    }
    bool written = std::fputs(value, file) >= 0 && std::fflush(file) == 0;
    written = (std::fclose(file) == 0) && written;
    if (!written) {
        logLine(LOG_ERR, "error.[%s] Failed to write '%s' in file '%s'", function, value,
                path.c_str());
        return -1;
    }
    return 0;
}

int brightness(const char* name, const char* value) { return leds_file(name, "brightness", value); }

int trigger(const char* name, const char* value) { return leds_file(name, "trigger", value); }

// Fills the shared cache from the LED's max_brightness (its first line, at most 7 characters).
int readMaxBrightness(const char* function, const char* name) {
    const std::string path = attributePath(function, name, "max_brightness");
    if (path.empty()) return -1;
    FILE* file = std::fopen(path.c_str(), "r");
    if (file == nullptr) {
        logLine(LOG_ERR, "error.[%s] Failed to open file '%s'", function, path.c_str());
        return -1;
    }
    if (std::fgets(maxBrightness, sizeof maxBrightness, file) == nullptr) maxBrightness[0] = '\0';
    std::fclose(file);
    if (maxBrightness[0] == '\0') {
        logLine(LOG_ERR, "error.[%s] Max brightness NULL", function);
        return -1;
    }
    return 0;
}

}  // namespace
}  // namespace zt4

extern "C" {

int leds_on(const char* name) noexcept {
    const char* function = __func__;
    return zt4::guarded(function, -1, [&] {
        if (!zt4::validLedName(function, name)) return -1;
        if (zt4::maxBrightness[0] == '\0' && zt4::readMaxBrightness(function, name) != 0) {
            return -1;
        }
        const size_t length = std::strlen(zt4::maxBrightness);
        if (length > 0) zt4::maxBrightness[length - 1] = '\0';
        return zt4::brightness(name, zt4::maxBrightness) | zt4::trigger(name, "default-on");
    });
}

// A null name is refused at once, under the caller's name; any other fault is leds_file's to report.
int leds_off(const char* name) noexcept {
    if (zt4::nullLedName(__func__, name)) return -1;
    return zt4::guarded(__func__, -1, [&] { return zt4::brightness(name, "0"); });
}

int leds_blink(const char* name) noexcept {
    if (zt4::nullLedName(__func__, name)) return -1;
    return zt4::guarded(__func__, -1, [&] { return zt4::trigger(name, "timer"); });
}

int leds_heartbeat(const char* name) noexcept {
    if (zt4::nullLedName(__func__, name)) return -1;
    return zt4::guarded(__func__, -1, [&] { return zt4::trigger(name, "heartbeat"); });
}

}  // extern "C"
