// The JSON form of a calibration file, for the web interface: {"Connector": [6 x {"Cnl": [3 x
// {15 keys}]}]}, the neutral channel left out.
#include <cstdint>

#include "common/api.hpp"
#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "metering/calibration_fields.hpp"
#include "zt4config/calibration.h"

namespace zt4 {
namespace {

// Numbers that tell in the reader's messages which file could not be read.
enum JsonReaderPlace {
    kPlaceMonophase = 1,
    kPlaceThreephase = 2,
    kPlaceStandard = 3,
};

bool readKind(const char* function, int kind, ConnectorConfig* connectors) {
    if (kind == ZT4_CALIBRATION_MONOPHASE) {
        if (ReadZT4ConfigCalibrationMonophase(connectors) == 0) return true;
        logLine(LOG_ERR, "error.[%s].%d Can't read Calibration Monophase Connector parameter",
                function, kPlaceMonophase);
    } else if (kind == ZT4_CALIBRATION_THREEPHASE) {
        if (ReadZT4ConfigCalibrationThreephase(connectors) == 0) return true;
        logLine(LOG_ERR, "error.[%s].%d Can't read Calibration Threephase Connector parameter",
                function, kPlaceThreephase);
    } else {
        if (ReadZT4ConfigCalibrationStandard(connectors) == 0) return true;
        logLine(LOG_ERR, "error.[%s].%d Can't read Calibration Connector parameter", function,
                kPlaceStandard);
    }
    return false;
}

json_t* channelObject(const ChannelConfig& channel) {
    JsonRef object(json_object());
    if (!object) return nullptr;
    for (const CalibrationField& field : kCalibrationFields) {
        json_t* value = field.form == CalibrationForm::Real
                            ? json_real(static_cast<double>(calibrationReal(channel, field)))
                            : json_integer(static_cast<json_int_t>(calibrationBits(channel, field)));
        if (json_object_set_new(object.get(), field.key, value) != 0) return nullptr;
    }
    return object.release();
}

// The JSON form of the connectors; null (logged) when an allocation fails.
json_t* calibrationForm(const char* function, const ConnectorConfig* connectors) {
    JsonRef array(json_array());
    if (!array) {
        logLine(LOG_ERR, "error.[%s] New Connector JSON array is NULL", function);
        return nullptr;
    }
    for (unsigned connector = 0; connector < ZT4_CONNECTOR_COUNT; ++connector) {
        JsonRef jsonConnector(json_object());
        if (!jsonConnector) {
            logLine(LOG_ERR, "error.[%s] jsonConnector NULL", function);
            return nullptr;
        }
        JsonRef jsonChannels(json_array());
        if (!jsonChannels) {
            logLine(LOG_ERR, "error.[%s] jsonChannels NULL", function);
            return nullptr;
        }
        for (unsigned channel = 0; channel < ZT4_CHANNEL_COUNT; ++channel) {
            json_t* jsonChannel = channelObject(connectors[connector].channels[channel]);
            if (jsonChannel == nullptr || json_array_append_new(jsonChannels.get(), jsonChannel) != 0) {
                logLine(LOG_ERR, "error.[%s] jsonChannel NULL", function);
                return nullptr;
            }
        }
        if (json_object_set_new(jsonConnector.get(), "Cnl", jsonChannels.release()) != 0 ||
            json_array_append_new(array.get(), jsonConnector.release()) != 0) {
            logLine(LOG_ERR, "error.[%s] jsonConnector NULL", function);
            return nullptr;
        }
    }
    return array.release();
}

}  // namespace
}  // namespace zt4

extern "C" int readConfigCalibration(json_t* object, int kind) noexcept {
    const char* function = __func__;
    if (object == nullptr) {
        zt4::logLine(LOG_ERR, "error. [%s] Obj JSON object is NULL", function);
        return 1;
    }
    if (!json_is_object(object)) {
        zt4::logError(function, "Obj is not a JSON object");
        return 1;
    }
    return zt4::guarded(function, 1, [&] {
        ConnectorConfig connectors[ZT4_CONNECTOR_COUNT] = {};
        if (!zt4::readKind(function, kind, connectors)) return 1;
        json_t* form = zt4::calibrationForm(function, connectors);
        if (form == nullptr) return 1;
        if (json_object_set_new(object, "Connector", form) != 0) {
            zt4::logLine(LOG_ERR, "error.[%s] New Connector JSON array is NULL", function);
            return 1;
        }
        return 0;
    });
}
