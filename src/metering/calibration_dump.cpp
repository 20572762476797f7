// The calibration coefficients of every channel, to the log.
#include <cstdint>
#include <cstdio>

#include "common/log.hpp"
#include "metering/calibration_fields.hpp"
#include "zt4config/calibration.h"

namespace zt4 {
namespace {

// A float's integer part for the hexadecimal column; 0 when it has none in 32 bits.
std::uint32_t truncated(float value) {
    if (!(value > -2147483648.0f && value < 2147483648.0f)) return 0;
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(value));
}

// One line: the name and indices padded to the colon's column, the value in hexadecimal and
// in its own form.
void dumpField(const ChannelConfig& record, const CalibrationField& field, unsigned connector,
               unsigned channel) {
    char label[48];
    std::snprintf(label, sizeof label, "%s[%u][%u]", field.traceName, connector, channel);
    if (field.form == CalibrationForm::Real) {
        const float value = calibrationReal(record, field);
        logLine(LOG_INFO, "%-19s: (0x%08x) %.2f", label, static_cast<unsigned>(truncated(value)),
                static_cast<double>(value));
        return;
    }
    const std::uint32_t bits = calibrationBits(record, field);
    if (field.dumpValue == DumpValue::Signed) {
        logLine(LOG_INFO, "%-19s: (0x%08x) %d", label, static_cast<unsigned>(bits), static_cast<int>(bits));
    } else {
        logLine(LOG_INFO, "%-19s: (0x%08x) %u", label, static_cast<unsigned>(bits), static_cast<unsigned>(bits));
    }
}

}  // namespace
}  // namespace zt4

extern "C" void DisplayZT4Calibration(const ConnectorConfig* connectors) noexcept {
    if (connectors == nullptr) {
        zt4::logError(__func__, "Cnt is NULL");
        return;
    }
    zt4::logLine(LOG_INFO, "Calibration:");
    for (unsigned connector = 0; connector < ZT4_CONNECTOR_COUNT; ++connector) {
        for (unsigned channel = 0; channel < ZT4_CHANNEL_COUNT; ++channel) {
            for (const zt4::CalibrationField& field : zt4::kCalibrationFields) {
                zt4::dumpField(connectors[connector].channels[channel], field, connector, channel);
            }
        }
        for (const zt4::CalibrationField* field : zt4::kNeutralFields) {
            zt4::dumpField(connectors[connector].channels[zt4::kNeutralChannel], *field, connector,
                           zt4::kNeutralChannel);
        }
    }
}
