#include "config/descriptions/device_defaults.hpp"

#include <cstdio>
#include <cstring>
#include <string>

#include "common/api.hpp"
#include "common/log.hpp"
#include "common/path.hpp"
#include "zt4config/device.h"
#include "zt4config/radio.h"

namespace zt4::sections {
namespace {

// First line of a radio value file, at most `capacity` - 1 characters, without its line end.
json_t* radioFileDefault(const char* function, const char* devicePath, int capacity,
                         const char* label) {
    return guarded(function, static_cast<json_t*>(nullptr), [&]() -> json_t* {
        const std::string path = resolvePath(devicePath);
        std::FILE* file = std::fopen(path.c_str(), "r");
        if (file == nullptr) {
            std::perror(("fopen " + path).c_str());
            logLine(LOG_ERR, "error.[%s] FAILED to open file '%s'", function, path.c_str());
            return json_string("");
        }
        char line[64] = {};
        if (std::fgets(line, capacity, file) == nullptr) line[0] = '\0';
        std::fclose(file);
        line[std::strcspn(line, "\r\n")] = '\0';
        logInfo(function, "%s: '%s'", label, line);
        return json_string(line);
    });
}

}  // namespace

json_t* radioAppKeyDefault(const char* function) {
    return radioFileDefault(function, "/var/tmp/radioappkey", 64, "APPKEY");
}

json_t* radioAppEuiDefault(const char* function) {
    return radioFileDefault(function, "/var/tmp/radioappeui", 32, "APPEUI");
}

json_t* wifiSsidDefault(const char* function) {
    char ssid[256] = {};
    if (getConfigWiFiSSID(ssid, sizeof ssid) < 0) {
        logError(function, "Failed to get SSID");
        ssid[0] = '\0';
    }
    return json_string(ssid);
}

bool euiTextValid(const char* text, const Field& field) {
    // The format test may shorten the text it is given: it works on a copy.
    char copy[64] = {};
    std::strncpy(copy, text, sizeof copy - 1);
    return checkEUIformat(copy, field.euiLength, field.euiGroups) >= 0;
}

}  // namespace zt4::sections
