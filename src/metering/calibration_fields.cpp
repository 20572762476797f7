#include "metering/calibration_fields.hpp"

#include <cstring>

namespace zt4 {

#define ZT4_CAL_FIELD(key, form, traceName, dump) \
    { #key, offsetof(ChannelConfig, key), CalibrationForm::form, traceName, DumpValue::dump }

const CalibrationField kCalibrationFields[kCalibrationFieldCount] = {
    ZT4_CAL_FIELD(CalActivePower, Hex, "CalPower", Signed),
    ZT4_CAL_FIELD(CalCurrent, Hex, "CalCurrent", Signed),
    ZT4_CAL_FIELD(CalVoltage, Hex, "CalVoltage", Signed),
    ZT4_CAL_FIELD(CalIOffset, Hex, "CalIOffset", Signed),
    ZT4_CAL_FIELD(CalVOffset, Hex, "CalVOffset", Signed),
    ZT4_CAL_FIELD(CalVAGain, Hex, "CalVAGain", Signed),
    ZT4_CAL_FIELD(CalWOffset, Hex, "CalWOffset", Signed),
    ZT4_CAL_FIELD(CalVARGain, Hex, "CalVARGain", Signed),
    ZT4_CAL_FIELD(CalVAROffset, Hex, "CalVAROffset", Signed),
    ZT4_CAL_FIELD(CalPhaseA, Hex, "CalPhaseA", Unsigned),
    ZT4_CAL_FIELD(CalPhaseB, Hex, "CalPhaseB", Unsigned),
    ZT4_CAL_FIELD(CalPhaseC, Hex, "CalPhaseC", Unsigned),
    ZT4_CAL_FIELD(CalVnom, Real, "CalVnom", Real),
    ZT4_CAL_FIELD(CalInom, Real, "CalInom", Real),
    ZT4_CAL_FIELD(CalPref, Hex, "CalPref", Unsigned),
};

#undef ZT4_CAL_FIELD

namespace {
const CalibrationField& field(std::size_t index) { return kCalibrationFields[index]; }
}  // namespace

const CalibrationField* const kCalibrationFileOrder[kCalibrationFieldCount] = {
    &field(1),  // CalCurrent
    &field(3),  // CalIOffset
    &field(2),  // CalVoltage
    &field(4),  // CalVOffset
    &field(0),  // CalActivePower
    &field(6),  // CalWOffset
    &field(5),  // CalVAGain
    &field(7),  // CalVARGain
    &field(8),  // CalVAROffset
    &field(9),  // CalPhaseA
    &field(10), // CalPhaseB
    &field(11), // CalPhaseC
    &field(12), // CalVnom
    &field(13), // CalInom
    &field(14), // CalPref
};

const CalibrationField* const kNeutralFields[2] = {&field(1), &field(3)};

namespace {

unsigned char* at(ChannelConfig& channel, const CalibrationField& field) {
    return reinterpret_cast<unsigned char*>(&channel) + field.offset;
}
const unsigned char* at(const ChannelConfig& channel, const CalibrationField& field) {
    return reinterpret_cast<const unsigned char*>(&channel) + field.offset;
}

}  // namespace

std::uint32_t calibrationBits(const ChannelConfig& channel, const CalibrationField& field) {
    std::uint32_t value;
    std::memcpy(&value, at(channel, field), sizeof value);
    return value;
}

float calibrationReal(const ChannelConfig& channel, const CalibrationField& field) {
    float value;
    std::memcpy(&value, at(channel, field), sizeof value);
    return value;
}

void setCalibrationBits(ChannelConfig& channel, const CalibrationField& field, std::uint32_t value) {
    std::memcpy(at(channel, field), &value, sizeof value);
}

void setCalibrationReal(ChannelConfig& channel, const CalibrationField& field, float value) {
    std::memcpy(at(channel, field), &value, sizeof value);
}

void copyCalibration(ChannelConfig& to, const ChannelConfig& from) {
    for (const CalibrationField& each : kCalibrationFields) {
        std::memcpy(at(to, each), at(from, each), sizeof(std::uint32_t));
    }
}

const CalibrationFile kStandardCalibration = {"/home/nvram/zt4calibration.cfg",
                                              "calibration configuration file"};
const CalibrationFile kThreephaseCalibration = {"/home/nvram/zt4calibration_threephase.cfg",
                                                "calibration threephase configuration file"};
const CalibrationFile kMonophaseCalibration = {"/home/nvram/zt4calibration_monophase.cfg",
                                               "calibration monophase configuration file"};

const CalibrationFile& calibrationFileOfKind(int kind) {
    if (kind == 1) return kThreephaseCalibration;
    if (kind == 2) return kMonophaseCalibration;
    return kStandardCalibration;
}

}  // namespace zt4
