// The radio daemon's live parameters: one-line files "/var/tmp/radio<name>" that the daemon and
// this library exchange. Values are written as they are, without a newline.
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

// "/var/tmp/radio<name>" under the device root.
std::string parameterPath(const char* name) {
    char devicePath[kPathCapacity];
    std::snprintf(devicePath, sizeof devicePath, "/var/tmp/radio%s", name);
    return zt4::resolvePath(devicePath);
}

int getParameter(const char* function, const char* name, RadioIdentifier kind, char* buffer,
                 size_t size) noexcept {
    if (!zt4::checkOutputBuffer(function, buffer, size)) return -1;
    return zt4::guarded(function, -1, [&] {
        std::string path = parameterPath(name);
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
        if (zt4::checkRadioIdentifier(buffer, kind) != 0) {
            zt4::logLine(LOG_ERR, "error.[%s] value format is wrong", function);
            return -1;
        }
        return 0;
    });
}

int setParameter(const char* function, const char* name, RadioIdentifier kind,
                 const char* value) noexcept {
    if (zt4::refuseEmptyValue(function, value)) return -1;
    char checked[kValueCapacity];
    if (kind != RadioIdentifier::None) {
        std::snprintf(checked, sizeof checked, "%s", value);
        if (zt4::checkRadioIdentifier(checked, kind) != 0) {
            zt4::logLine(LOG_ERR, "error.[%s] value format is wrong", function);
            return -1;
        }
        value = checked;
    }
    return zt4::guarded(function, -1, [&] {
        std::string path = parameterPath(name);
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

}  // namespace

#define ZT4_RADIO_GETTER(function, name, kind)                                  \
    extern "C" int function(char* buffer, size_t size) noexcept {               \
        return getParameter(__func__, name, RadioIdentifier::kind, buffer, size); \
    }
#define ZT4_RADIO_SETTER(function, name, kind)                           \
    extern "C" int function(const char* value) noexcept {                \
        return setParameter(__func__, name, RadioIdentifier::kind, value); \
    }

ZT4_RADIO_GETTER(getConfigRadioAppeui, "appeui", Eui)
ZT4_RADIO_GETTER(getConfigRadioDeveui, "deveui", Eui)
ZT4_RADIO_GETTER(getConfigRadioAppkey, "appkey", Key)
ZT4_RADIO_GETTER(getConfigRadioNetworkKey, "nwkkey", Key)
ZT4_RADIO_GETTER(getConfigRadioAddress, "address", Eui)
ZT4_RADIO_GETTER(getConfigRadioNetworkID, "networkid", Eui)
// The daemon publishes the session keys in the 8-group form.
ZT4_RADIO_GETTER(getConfigRadioNetworkSKey, "nwkskey", Eui)
ZT4_RADIO_GETTER(getConfigRadioAppSKey, "appskey", Eui)
ZT4_RADIO_GETTER(getConfigRadioADR, "adr", None)
ZT4_RADIO_GETTER(getConfigRadioDR, "dr", None)
ZT4_RADIO_GETTER(getConfigRadioJoined, "joined", None)
ZT4_RADIO_GETTER(getConfigRadioNetworkStatus, "networkstatus", None)
ZT4_RADIO_GETTER(getConfigRadioDRMaxReached, "drdone", None)
ZT4_RADIO_GETTER(getConfigRadioVersion, "version", None)
ZT4_RADIO_GETTER(getConfigRadioBand, "regionband", None)

ZT4_RADIO_SETTER(setConfigRadioAppeui, "appeui", Eui)
ZT4_RADIO_SETTER(setConfigRadioDeveui, "deveui", Eui)
ZT4_RADIO_SETTER(setConfigRadioAppkey, "appkey", Key)
ZT4_RADIO_SETTER(setConfigRadioDR, "dr", None)
ZT4_RADIO_SETTER(setConfigRadioJoined, "joined", None)
ZT4_RADIO_SETTER(setConfigRadioNetworkStatus, "networkstatus", None)
ZT4_RADIO_SETTER(setConfigRadioVersion, "version", None)
ZT4_RADIO_SETTER(setConfigRadioRegionBand, "regionband", None)
ZT4_RADIO_SETTER(setConfigRadioLocalTime, "localtime", None)
ZT4_RADIO_SETTER(setConfigRadioEpochTime, "epochtime", None)
