// The radio's persistent state and three user settings: one-line files under /home/nvram,
// written as the value and a newline. The identity and join state are not rewritten when the file
// already holds the new value, which spares the flash.
#include <cstdio>
#include <cstring>
#include <string>

#include "common/api.hpp"
#include "common/log.hpp"
#include "common/path.hpp"
#include "device/line_file.hpp"
#include "device/radio_identifier.hpp"
#include "zt4config/radio.h"

namespace {

using zt4::RadioIdentifier;

// How a reader reports a file it cannot open.
enum class OpenFailure {
    FailedToOpen,    // "Failed to open file"
    DeviceEui,       // perror, then "FAILED to open file"
    NoFile,          // "No file"
};

struct PersistentValue {
    const char* devicePath;
    const char* getter;       // the reader's name, for the read made before a write
    RadioIdentifier kind;     // format checked on read and on write
    std::size_t compareSize;  // buffer for the current value; 0: always written
    const char* traceLabel;   // name of the current value in the trace before a write
    OpenFailure openFailure;
};

constexpr std::size_t kLineCapacity = 64;  // a value and its newline, as written

constexpr PersistentValue kDeviceEui{"/home/nvram/radiodeveui", "getRadioDEVEUI",
                                     RadioIdentifier::Eui, 64, "DEVEUI", OpenFailure::DeviceEui};
constexpr PersistentValue kAppKey{"/home/nvram/radioappkey", "getRadioAPPKEY",
                                  RadioIdentifier::Key, 64, "APPKEY", OpenFailure::FailedToOpen};
constexpr PersistentValue kJoined{"/home/nvram/radiojoined", "getRadioJoined",
                                  RadioIdentifier::None, 64, "Joined", OpenFailure::FailedToOpen};
constexpr PersistentValue kLocalTime{"/home/nvram/radiolocaltime", "readRadioLocalTime",
                                     RadioIdentifier::None, 128, "LocalTime",
                                     OpenFailure::FailedToOpen};
constexpr PersistentValue kVersion{"/home/nvram/radioversion", "getRadioVersion",
                                   RadioIdentifier::None, 0, "", OpenFailure::FailedToOpen};
constexpr PersistentValue kRegionBand{"/home/nvram/currentradioregionband", "getRadioRegionBand",
                                      RadioIdentifier::None, 0, "", OpenFailure::FailedToOpen};
constexpr PersistentValue kUserRegionBand{"/home/nvram/regionbandlora",
                                          "readUserConfigRadioRegionBand", RadioIdentifier::None,
                                          0, "", OpenFailure::FailedToOpen};
constexpr PersistentValue kLineFrequency{"/home/nvram/linefrequency",
                                         "readUserConfigLineFrequency", RadioIdentifier::None, 0,
                                         "", OpenFailure::NoFile};
constexpr PersistentValue kIPv4Addressing{"/home/nvram/ethernetipv4addressing",
                                          "readUserConfigEthernetIPv4Addressing",
                                          RadioIdentifier::None, 0, "", OpenFailure::NoFile};

int readValue(const char* function, const PersistentValue& value, char* buffer,
              size_t size) noexcept {
    if (!zt4::checkOutputBuffer(function, buffer, size)) return -1;
    return zt4::guarded(function, -1, [&] {
        std::string path = zt4::resolvePath(value.devicePath);
        if (zt4::readFirstLine(path, buffer, size) != zt4::LineRead::Ok) {
            switch (value.openFailure) {
                case OpenFailure::DeviceEui:
                    std::perror("fopen /home/nvram/radiodeveui");
                    zt4::logLine(LOG_ERR, "error.[%s] FAILED to open file '%s'", function,
                                 path.c_str());
                    break;
                case OpenFailure::NoFile:
                    zt4::logLine(LOG_ERR, "error.[%s] No file '%s'", function, path.c_str());
                    break;
                case OpenFailure::FailedToOpen:
                    zt4::logLine(LOG_ERR, "error.[%s] Failed to open file '%s'", function,
                                 path.c_str());
                    break;
            }
            return -1;
        }
        if (buffer[0] == '\0') {
            zt4::logLine(LOG_ERR, "error.[%s] value is empty", function);
            return -1;
        }
        if (zt4::checkRadioIdentifier(buffer, value.kind) != 0) {
            zt4::logLine(LOG_ERR, "error.[%s] value format is wrong", function);
            return -1;
        }
        return 0;
    });
}

// True when the file already holds exactly `text`. The current value is compared as read: the
// identifiers lose their newline in the format check, free text keeps it.
bool holdsAlready(const char* function, const PersistentValue& value, const char* text) noexcept {
    if (value.compareSize == 0) return false;
    char current[128];
    if (readValue(value.getter, value, current, value.compareSize) != 0) return false;
    if (zt4::debugLevel() > 3) {
        zt4::logLine(LOG_INFO, "[%s] %s=%s", function, value.traceLabel, current);
    }
    return std::strcmp(current, text) == 0;
}

int writeValue(const char* function, const PersistentValue& value, const char* text) noexcept {
    if (zt4::refuseEmptyValue(function, text)) return -1;
    char checked[kLineCapacity];
    if (value.kind != RadioIdentifier::None) {
        std::snprintf(checked, sizeof checked, "%s", text);
        if (zt4::checkRadioIdentifier(checked, value.kind) != 0) {
            zt4::logLine(LOG_ERR, "error.[%s] value format is wrong", function);
            return -1;
        }
        text = checked;
    }
    if (holdsAlready(function, value, text)) return 0;
    // The value and its newline, cut to the line's capacity.
    char line[kLineCapacity];
    std::size_t length = strnlen(text, kLineCapacity - 2);
    std::memcpy(line, text, length);
    line[length] = '\n';
    line[length + 1] = '\0';
    return zt4::guarded(function, -1, [&] {
        std::string path = zt4::resolvePath(value.devicePath);
        switch (zt4::writeWholeFile(path, line)) {
            case zt4::LineWrite::Ok: return 0;
            case zt4::LineWrite::OpenFailed:
                if (value.openFailure == OpenFailure::DeviceEui) {
                    std::perror("fopen /home/nvram/radiodeveui");
                }
                zt4::logLine(LOG_ERR, "error.[%s] FAILED to open file '%s'", function,
                             path.c_str());
                return -1;
            case zt4::LineWrite::WriteFailed: break;
        }
        zt4::logLine(LOG_ERR, "error.[%s] FAILED to fputs '%s' in file '%s'", function, text,
                     path.c_str());
        return -1;
    });
}

}  // namespace

#define ZT4_STATE_READER(function, value)                         \
    extern "C" int function(char* buffer, size_t size) noexcept { \
        return readValue(__func__, value, buffer, size);          \
    }
#define ZT4_STATE_WRITER(function, value)                  \
    extern "C" int function(const char* text) noexcept {   \
        return writeValue(__func__, value, text);          \
    }

ZT4_STATE_READER(getRadioDEVEUI, kDeviceEui)
ZT4_STATE_WRITER(setRadioDEVEUI, kDeviceEui)
ZT4_STATE_READER(getRadioAPPKEY, kAppKey)
ZT4_STATE_WRITER(setRadioAPPKEY, kAppKey)
ZT4_STATE_READER(getRadioJoined, kJoined)
ZT4_STATE_WRITER(writeRadioJoined, kJoined)
ZT4_STATE_READER(readRadioLocalTime, kLocalTime)
ZT4_STATE_WRITER(writeRadioLocalTime, kLocalTime)
ZT4_STATE_READER(getRadioVersion, kVersion)
ZT4_STATE_WRITER(setRadioVersion, kVersion)
ZT4_STATE_READER(getRadioRegionBand, kRegionBand)
ZT4_STATE_WRITER(setRadioRegionBand, kRegionBand)
ZT4_STATE_READER(readUserConfigRadioRegionBand, kUserRegionBand)
ZT4_STATE_WRITER(writeUserConfigRadioRegionBand, kUserRegionBand)
ZT4_STATE_READER(readUserConfigLineFrequency, kLineFrequency)
ZT4_STATE_WRITER(writeUserConfigLineFrequency, kLineFrequency)
ZT4_STATE_READER(readUserConfigEthernetIPv4Addressing, kIPv4Addressing)
ZT4_STATE_WRITER(writeUserConfigEthernetIPv4Addressing, kIPv4Addressing)

extern "C" int setRadioJoined(void) noexcept { return writeRadioJoined("1"); }
extern "C" int clearRadioJoined(void) noexcept { return writeRadioJoined("0"); }
