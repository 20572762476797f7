// Syntax version 1 of the rewrite of the static network lines of the daemons' flat file: the
// file is copied line by line to "<file>.new", the lines of the given settings replaced, comment
// lines dropped, and the copy renamed over the file. Lines the file lacks are not added.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "common/api.hpp"
#include "common/log.hpp"
#include "common/path.hpp"
#include "zt4config/upgrade.h"

namespace {

constexpr const char* kFlatFile = "/home/nvram/zt4.cfg";
constexpr std::size_t kLineSize = 256;         // lines of up to 255 characters
constexpr std::size_t kReplacementSize = 128;  // replacement lines of up to 127 characters

// One setting of the document and the line of the flat file it rewrites.
struct NetworkLine {
    const char* member;   // member of the given document
    const char* missing;  // message when the member is absent
    const char* key;      // a line containing this text is replaced by "<key>=<value>"
    bool integer;         // the value is written as an unsigned number, else as a text
};

constexpr NetworkLine kEthernetLines[] = {
    {"AddressIP", "address NULL", "Static_AddressIP", false},
    {"Netmask", "netmask NULL", "Static_Netmask", false},
    {"GW", "gw NULL", "Static_GW", false},
    {"Dns", "dns NULL", "Static_Dns", false},
};

constexpr NetworkLine kWiFiLines[] = {
    {"Enable", "enable NULL", "DHCPD_Enable", true},
    {"AddressIP", "address NULL", "DHCPD_AddressIP", false},
    {"Netmask", "netmask NULL", "DHCPD_Netmask", false},
    {"StartIP", "startip NULL", "DHCPD_StartIP", false},
    {"EndIP", "endip NULL", "DHCPD_EndIP", false},
};

template <std::size_t N>
using Replacements = char[N][kReplacementSize];

// Formats the replacement line of each setting; false after the message of the first setting
// that is missing or of the wrong type.
template <std::size_t N>
bool formatReplacements(const char* function, json_t* json, const NetworkLine (&lines)[N],
                        Replacements<N>& replacements) noexcept {
    for (std::size_t i = 0; i < N; ++i) {
        json_t* value = json_object_get(json, lines[i].member);
        if (value == nullptr) {
            zt4::logError(function, "%s", lines[i].missing);
            return false;
        }
        if (lines[i].integer) {
            if (!json_is_integer(value)) {
                zt4::logError(function, "%s NOT JSON_INTEGER", lines[i].member);
                return false;
            }
            std::snprintf(replacements[i], kReplacementSize, "%s=%u\n", lines[i].key,
                          static_cast<unsigned>(json_integer_value(value)));
        } else {
            if (!json_is_string(value)) {
                zt4::logError(function, "%s NOT JSON_STRING", lines[i].member);
                return false;
            }
            std::snprintf(replacements[i], kReplacementSize, "%s=%s\n", lines[i].key,
                          json_string_value(value));
        }
    }
    return true;
}

// Copies `in` to `out`, dropping comment lines and replacing the settings' lines: false when a
// write failed.
template <std::size_t N>
bool copyLines(FILE* in, FILE* out, const NetworkLine (&lines)[N],
               const Replacements<N>& replacements) noexcept {
    char line[kLineSize];
    bool written = true;
    while (std::fgets(line, sizeof line, in) != nullptr) {
        if (std::strstr(line, "//") != nullptr) continue;
        const char* text = line;
        for (std::size_t i = 0; i < N; ++i) {
            if (std::strstr(line, lines[i].key) != nullptr) {
                text = replacements[i];
                break;
            }
        }
        written = std::fputs(text, out) >= 0 && written;
    }
    return written && !std::ferror(in);
}

template <std::size_t N>
int rewriteFlatFile(const char* function, json_t* json, const NetworkLine (&lines)[N]) noexcept {
    if (json == nullptr) {
        zt4::logError(function, "json NULL");
        return -1;
    }
    Replacements<N> replacements;
    if (!formatReplacements(function, json, lines, replacements)) return -1;
    return zt4::guarded(function, -1, [&] {
        const std::string path = zt4::resolvePath(kFlatFile);
        const std::string newPath = path + ".new";
        const int fd = open(path.c_str(), O_RDWR | O_SYNC, 0666);
        if (fd < 0) {
            zt4::logError(function, "FAILED open file '%s'. (%s)", path.c_str(), std::strerror(errno));
            return -1;
        }
        FILE* in = fdopen(fd, "r");
        if (in == nullptr) {
            zt4::logError(function, "FAILED fopen file '%s'. (%s)", path.c_str(), std::strerror(errno));
            close(fd);
            return -1;
        }
        FILE* out = std::fopen(newPath.c_str(), "w");
        if (out == nullptr) {
            zt4::logError(function, "FAILED to fopen '%s'. (%s)", newPath.c_str(), std::strerror(errno));
            std::fclose(in);
            return -1;
        }
        const bool copied = copyLines(in, out, lines, replacements);
        const bool flushed = std::fflush(out) == 0;
        std::fclose(in);
        const bool closed = std::fclose(out) == 0;
        if (!(copied && flushed && closed)) {
            // The flat file stays as it was; the incomplete copy goes.
            zt4::logError(function, "FAILED to write '%s'", newPath.c_str());
            std::remove(newPath.c_str());
            return -1;
        }
        sync();
        if (std::rename(newPath.c_str(), path.c_str()) != 0) {
            // Informational on purpose, although the text says it failed.
            zt4::logErrorAt(LOG_INFO, function, "FAILED to rename the file '%s'", newPath.c_str());
            return -1;
        }
        zt4::logInfo(function, "File '%s' renamed successfully", newPath.c_str());
        sync();
        return 0;
    });
}

}  // namespace

int updateZT4UserConfigEthernetSyntaxVersion1(json_t* json) noexcept {
    return rewriteFlatFile(__func__, json, kEthernetLines);
}

int updateZT4UserConfigWiFiSyntaxVersion1(json_t* json) noexcept {
    return rewriteFlatFile(__func__, json, kWiFiLines);
}
