// The radio daemon's live parameters: one-line files "/var/tmp/radio<name>" that the daemon and
// this library exchange. Values are written as they are, without a newline.
//
// getConfigRadio and setConfigRadio work on any name; their checked forms add the identifier
// format (Key16: 8 groups, Key32: 16 groups); each named parameter is one of the three. Every
// function logs under its own name.
#include <cstdio>
#include <string>

#include "common/api.hpp"
#include "common/log.hpp"
#include "common/path.hpp"
#include "device/line_file.hpp"
#include "device/radio_identifier.hpp"
#include "zt4config/radio.h"

namespace {

using zt4::RadioIdentifier;

constexpr std::size_t kPathCapacity = 64;
constexpr std::size_t kValueCapacity = 64;

bool nameGiven(const char* function, const char* name) noexcept {
    if (name != nullptr) return true;
    zt4::logLine(LOG_ERR, "error.[%s] name is NULL", function);
    return false;
}

// "/var/tmp/radio<name>" under the device root, or "" (logged) when the device path does not fit.
std::string parameterPath(const char* function, const char* name) {
    char devicePath[kPathCapacity];
    const int length = std::snprintf(devicePath, sizeof devicePath, "/var/tmp/radio%s", name);
    if (length < 0 || static_cast<std::size_t>(length) >= sizeof devicePath) {
        zt4::logLine(LOG_ERR, "error.[%s] name is too long '%s'", function, name);
        return std::string();
    }
    return zt4::resolvePath(devicePath);
}

// The checked get: the value, then its identifier format.
int getChecked(const char* function, const char* name, RadioIdentifier kind, char* buffer,
               size_t size) noexcept {
    if (!nameGiven(function, name) || !zt4::checkOutputBuffer(function, buffer, size)) return -1;
    if (getConfigRadio(name, buffer, size) != 0) return -1;
    if (zt4::checkRadioIdentifier(buffer, kind) != 0) {
        zt4::logLine(LOG_ERR, "error.[%s] value format is wrong", function);
        return -1;
    }
    return 0;
}

// The checked set: the identifier format, then the value without its trailing newline.
int setChecked(const char* function, const char* name, RadioIdentifier kind,
               const char* value) noexcept {
    if (!nameGiven(function, name) || zt4::refuseEmptyValue(function, value)) return -1;
    char checked[kValueCapacity];
    std::snprintf(checked, sizeof checked, "%s", value);
    if (zt4::checkRadioIdentifier(checked, kind) != 0) {
        zt4::logLine(LOG_ERR, "error.[%s] value format is wrong", function);
        return -1;
    }
    return setConfigRadio(name, checked);
}

}  // namespace

extern "C" int getConfigRadio(const char* name, char* buffer, size_t size) noexcept {
    const char* function = __func__;
    if (!nameGiven(function, name) || !zt4::checkOutputBuffer(function, buffer, size)) return -1;
    buffer[0] = '\0';
    return zt4::guarded(function, -1, [&] {
        const std::string path = parameterPath(function, name);
        if (path.empty()) return -1;
        if (zt4::readFirstLine(path, buffer, size) != zt4::LineRead::Ok) {
            std::perror("fopen /var/tmp/radio***");
            zt4::logLine(LOG_ERR, "error.[%s] Failed to open file '%s'", function, path.c_str());
            return -1;
        }
        if (buffer[0] == '\0') {
            if (zt4::debugLevel() > 1) {
                zt4::logLine(LOG_ERR, "error.[%s] value %s is empty", function, name);
            }
            return -1;
        }
        return 0;
    });
}

extern "C" int getConfigRadioKey16(const char* name, char* buffer, size_t size) noexcept {
    return getChecked(__func__, name, RadioIdentifier::Eui, buffer, size);
}

extern "C" int getConfigRadioKey32(const char* name, char* buffer, size_t size) noexcept {
    return getChecked(__func__, name, RadioIdentifier::Key, buffer, size);
}

extern "C" int setConfigRadio(const char* name, const char* value) noexcept {
    const char* function = __func__;
    if (!nameGiven(function, name) || zt4::refuseEmptyValue(function, value)) return -1;
    return zt4::guarded(function, -1, [&] {
        const std::string path = parameterPath(function, name);
        if (path.empty()) return -1;
        switch (zt4::writeWholeFile(path, value)) {
            case zt4::LineWrite::Ok: return 0;
            case zt4::LineWrite::OpenFailed:
                zt4::logLine(LOG_ERR, "error.[%s] FAILED to open file '%s'", function,
                             path.c_str());
                return -1;
            case zt4::LineWrite::WriteFailed: break;
        }
        zt4::logLine(LOG_ERR, "error.[%s] FAILED to fputs '%s' in file '%s'", function, value,
                     path.c_str());
        return -1;
    });
}

extern "C" int setConfigRadioKey16(const char* name, const char* value) noexcept {
    return setChecked(__func__, name, RadioIdentifier::Eui, value);
}

extern "C" int setConfigRadioKey32(const char* name, const char* value) noexcept {
    return setChecked(__func__, name, RadioIdentifier::Key, value);
}

// Each named parameter: its file name and which of the three forms reads or writes it.
#define ZT4_RADIO_GETTER(function, name, form)                    \
    extern "C" int function(char* buffer, size_t size) noexcept { \
        return form(name, buffer, size);                          \
    }
#define ZT4_RADIO_SETTER(function, name, form)              \
    extern "C" int function(const char* value) noexcept {   \
        return form(name, value);                           \
    }

ZT4_RADIO_GETTER(getConfigRadioAppeui, "appeui", getConfigRadioKey16)
ZT4_RADIO_GETTER(getConfigRadioDeveui, "deveui", getConfigRadioKey16)
ZT4_RADIO_GETTER(getConfigRadioAppkey, "appkey", getConfigRadioKey32)
ZT4_RADIO_GETTER(getConfigRadioNetworkKey, "nwkkey", getConfigRadioKey32)
ZT4_RADIO_GETTER(getConfigRadioAddress, "address", getConfigRadioKey16)
ZT4_RADIO_GETTER(getConfigRadioNetworkID, "networkid", getConfigRadioKey16)
// The daemon publishes the session keys in the 8-group form.
ZT4_RADIO_GETTER(getConfigRadioNetworkSKey, "nwkskey", getConfigRadioKey16)
ZT4_RADIO_GETTER(getConfigRadioAppSKey, "appskey", getConfigRadioKey16)
ZT4_RADIO_GETTER(getConfigRadioADR, "adr", getConfigRadio)
ZT4_RADIO_GETTER(getConfigRadioDR, "dr", getConfigRadio)
ZT4_RADIO_GETTER(getConfigRadioJoined, "joined", getConfigRadio)
ZT4_RADIO_GETTER(getConfigRadioNetworkStatus, "networkstatus", getConfigRadio)
ZT4_RADIO_GETTER(getConfigRadioDRMaxReached, "drdone", getConfigRadio)
ZT4_RADIO_GETTER(getConfigRadioVersion, "version", getConfigRadio)
ZT4_RADIO_GETTER(getConfigRadioBand, "regionband", getConfigRadio)

ZT4_RADIO_SETTER(setConfigRadioAppeui, "appeui", setConfigRadioKey16)
ZT4_RADIO_SETTER(setConfigRadioDeveui, "deveui", setConfigRadioKey16)
ZT4_RADIO_SETTER(setConfigRadioAppkey, "appkey", setConfigRadioKey32)
ZT4_RADIO_SETTER(setConfigRadioDR, "dr", setConfigRadio)
ZT4_RADIO_SETTER(setConfigRadioJoined, "joined", setConfigRadio)
ZT4_RADIO_SETTER(setConfigRadioNetworkStatus, "networkstatus", setConfigRadio)
ZT4_RADIO_SETTER(setConfigRadioVersion, "version", setConfigRadio)
ZT4_RADIO_SETTER(setConfigRadioRegionBand, "regionband", setConfigRadio)
ZT4_RADIO_SETTER(setConfigRadioLocalTime, "localtime", setConfigRadio)
ZT4_RADIO_SETTER(setConfigRadioEpochTime, "epochtime", setConfigRadio)
