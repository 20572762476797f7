// Sample calibration models for the tests: every value says where it belongs (a tag, the
// connector, the channel and the field), and the file a model must be written as.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "zt4config/record.h"

namespace zt4test {

// A model whose bytes all start as `filler`, so that a stray write or an untouched byte shows.
struct Model {
    ConnectorConfig connectors[ZT4_CONNECTOR_COUNT];
    explicit Model(unsigned char filler = 0xA5) { std::memset(connectors, filler, sizeof connectors); }
    bool operator==(const Model& other) const {
        return std::memcmp(connectors, other.connectors, sizeof connectors) == 0;
    }
};

inline std::uint32_t hexValue(unsigned tag, unsigned connector, unsigned channel, unsigned field) {
    return (tag << 24) | (connector << 16) | (channel << 8) | field;
}
inline float realValue(unsigned tag, unsigned connector, unsigned channel, unsigned field) {
    return static_cast<float>(tag * 1000 + connector * 100 + channel * 10 + field) + 0.25f;
}

// Sets the 15 coefficients of a phase channel (connector and channel numbered from 1).
inline void setTagged(ChannelConfig& ch, unsigned tag, unsigned c, unsigned n) {
    ch.CalCurrent = hexValue(tag, c, n, 0);
    ch.CalIOffset = hexValue(tag, c, n, 1);
    ch.CalVoltage = hexValue(tag, c, n, 2);
    ch.CalVOffset = hexValue(tag, c, n, 3);
    ch.CalActivePower = hexValue(tag, c, n, 4);
    ch.CalWOffset = hexValue(tag, c, n, 5);
    ch.CalVAGain = hexValue(tag, c, n, 6);
    ch.CalVARGain = hexValue(tag, c, n, 7);
    ch.CalVAROffset = hexValue(tag, c, n, 8);
    ch.CalPhaseA = hexValue(tag, c, n, 9);
    ch.CalPhaseB = hexValue(tag, c, n, 10);
    ch.CalPhaseC = hexValue(tag, c, n, 11);
    ch.CalPref = hexValue(tag, c, n, 12);
    ch.CalVnom = realValue(tag, c, n, 13);
    ch.CalInom = realValue(tag, c, n, 14);
}

// The coefficients a file written from the model carries: 15 per phase channel, the current
// gain and offset of the neutral channel. Other bytes keep their content.
inline void setTaggedModel(Model& model, unsigned tag) {
    for (unsigned c = 0; c < 6; ++c) {
        for (unsigned n = 0; n < 3; ++n) setTagged(model.connectors[c].channels[n], tag, c + 1, n + 1);
        model.connectors[c].channels[3].CalCurrent = hexValue(tag, c + 1, 4, 0);
        model.connectors[c].channels[3].CalIOffset = hexValue(tag, c + 1, 4, 1);
    }
}

// The text of a file written from `model`: per connector, each phase channel's 15 lines in the
// file order, then the neutral channel's current gain and offset.
inline std::string fileWrittenFrom(const Model& model) {
    std::string text;
    char line[128];
    auto hex = [&](unsigned c, unsigned n, const char* key, std::uint32_t value) {
        std::snprintf(line, sizeof line, "Connect_%u_Cnl_%u_%s=0x%08x\n", c, n, key, value);
        text += line;
    };
    auto real = [&](unsigned c, unsigned n, const char* key, float value) {
        std::snprintf(line, sizeof line, "Connect_%u_Cnl_%u_%s=%.2f\n", c, n, key, static_cast<double>(value));
        text += line;
    };
    for (unsigned c = 1; c <= 6; ++c) {
        for (unsigned n = 1; n <= 3; ++n) {
            const ChannelConfig& ch = model.connectors[c - 1].channels[n - 1];
            hex(c, n, "CalCurrent", ch.CalCurrent);
            hex(c, n, "CalIOffset", ch.CalIOffset);
            hex(c, n, "CalVoltage", ch.CalVoltage);
            hex(c, n, "CalVOffset", ch.CalVOffset);
            hex(c, n, "CalActivePower", ch.CalActivePower);
            hex(c, n, "CalWOffset", ch.CalWOffset);
            hex(c, n, "CalVAGain", ch.CalVAGain);
            hex(c, n, "CalVARGain", ch.CalVARGain);
            hex(c, n, "CalVAROffset", ch.CalVAROffset);
            hex(c, n, "CalPhaseA", ch.CalPhaseA);
            hex(c, n, "CalPhaseB", ch.CalPhaseB);
            hex(c, n, "CalPhaseC", ch.CalPhaseC);
            real(c, n, "CalVnom", ch.CalVnom);
            real(c, n, "CalInom", ch.CalInom);
            hex(c, n, "CalPref", ch.CalPref);
        }
        hex(c, 4, "CalCurrent", model.connectors[c - 1].channels[3].CalCurrent);
        hex(c, 4, "CalIOffset", model.connectors[c - 1].channels[3].CalIOffset);
    }
    return text;
}

}  // namespace zt4test
