// The calibration coefficients of a channel record, as one table that the parser, the writers,
// the JSON form and the dump all walk. The record is packed: values are read and written through
// memcpy at the field's offset, never through a typed pointer into the record.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include "zt4config/record.h"

namespace zt4 {

enum class CalibrationForm {
    Hex,   // unsigned 32 bits, "=0x%08x" in files, a JSON integer
    Real,  // single-precision float, "=%.2f" in files, a JSON real
};

// How the dump shows a value after its hexadecimal column.
enum class DumpValue { Signed, Unsigned, Real };

struct CalibrationField {
    const char* key;  // as in files and in the JSON form
    std::size_t offset;
    CalibrationForm form;
    const char* traceName;  // in the parser's trace ("CalPower" for the active power)
    DumpValue dumpValue;
};

constexpr std::size_t kCalibrationFieldCount = 15;
// In key order: the order the parser tries the keys, of the JSON form and of the dump.
extern const CalibrationField kCalibrationFields[kCalibrationFieldCount];
// The same fields in the order of a file written from the model.
extern const CalibrationField* const kCalibrationFileOrder[kCalibrationFieldCount];
// The two fields the neutral channel (the fourth record) uses, in file order.
extern const CalibrationField* const kNeutralFields[2];

// Index of the neutral channel record.
constexpr unsigned kNeutralChannel = 3;

std::uint32_t calibrationBits(const ChannelConfig& channel, const CalibrationField& field);
float calibrationReal(const ChannelConfig& channel, const CalibrationField& field);
void setCalibrationBits(ChannelConfig& channel, const CalibrationField& field, std::uint32_t value);
void setCalibrationReal(ChannelConfig& channel, const CalibrationField& field, float value);
// Copies every calibration field of one channel record.
void copyCalibration(ChannelConfig& to, const ChannelConfig& from);

// The three files and how their messages name them.
struct CalibrationFile {
    const char* path;     // device path
    const char* wording;  // "calibration threephase configuration file", ...
};
// The file of a kind: 1 three-phase, 2 single-phase, anything else the standard file.
const CalibrationFile& calibrationFileOfKind(int kind);
extern const CalibrationFile kStandardCalibration;
extern const CalibrationFile kThreephaseCalibration;
extern const CalibrationFile kMonophaseCalibration;

// Parses a calibration file into `connectors` (ZT4_CONNECTOR_COUNT records): lines
// "Connect_<c>_Cnl_<n>_<key>=<value>" with single-digit numbers; other lines, unknown keys and
// numbers out of range are skipped. 0.
int ReadZT4CalibrationFile(std::FILE* stream, ConnectorConfig* connectors);

}  // namespace zt4
