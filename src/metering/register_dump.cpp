// Dumps of one register block to the system log (level 6): the block's name, the lines of the
// layout that the shape table gives the block, a closing rule. Values of the float and integer
// layouts are read twice, directly and through the typed accessor, and compared.
#include <cstring>

#include "common/log.hpp"
#include "metering/register_map.hpp"

namespace zt4::modbus {
namespace {

constexpr unsigned kSlots = 4;

struct Dump {
    const char* function;
    const std::uint16_t* image;
    std::uint32_t index;
    const ModbusRegisterBlock& block;

    unsigned word(std::uint32_t address) const { return image[address]; }
    unsigned modeWord(std::uint32_t connector, std::uint32_t channel) const {
        return image[ModbusBase[3].base + 3 * connector + channel];
    }
    std::uint32_t address(std::uint32_t connector, std::uint32_t channel) const {
        return registerAddress(index, connector, channel);
    }
    template <class Value>
    Value direct(std::uint32_t address) const {
        Value value;
        std::memcpy(&value, image + address, sizeof value);
        return value;
    }
};

// A register that the configuration leaves unused is shown only to a debugging reader.
bool shown(bool inUse) { return inUse || debugLevel() > 3; }

template <class Value>
bool differ(Value a, Value b) {
    return std::memcmp(&a, &b, sizeof a) != 0;
}

// Both reads of a float register; a difference is logged.
float floatValue(const Dump& d, std::uint32_t connector, std::uint32_t channel, float& direct) {
    direct = d.direct<float>(d.address(connector, channel));
    const float through = GetModbusData(d.image, static_cast<std::uint8_t>(d.index),
                                        static_cast<std::uint8_t>(connector),
                                        static_cast<std::uint8_t>(channel));
    if (differ(direct, through)) {
        logError(d.function, "Value incoherence %f %f", static_cast<double>(direct),
                 static_cast<double>(through));
    }
    return through;
}

std::uint32_t integerValue(const Dump& d, std::uint32_t connector, std::uint32_t channel) {
    const std::uint32_t direct = d.direct<std::uint32_t>(d.address(connector, channel));
    const std::uint32_t through = GetModbusDataInteger(
        d.image, static_cast<std::uint8_t>(d.index), static_cast<std::uint8_t>(connector),
        static_cast<std::uint8_t>(channel));
    if (direct != through) logError(d.function, "Value incoherence %u %u", direct, through);
    return direct;
}

void heading(const char* text) {
    logLine(LOG_INFO, "%s", text);
    logLine(LOG_INFO, "%s", kRule);
}

void dumpWords(const Dump& d) {
    logLine(LOG_INFO, "%s", "    Register Value");
    for (std::uint32_t i = 0; i < d.block.count; ++i) {
        const std::uint32_t a = d.block.base + i;
        logLine(LOG_INFO, "    %04u  %04x", a, d.word(a));
    }
}

void dumpModes(const Dump& d) {
    logLine(LOG_INFO, "%s", "Connector Channel Numero Register Value");
    for (std::uint32_t c = 0; c < ZT4_CONNECTOR_COUNT; ++c) {
        logLine(LOG_INFO, "%s", kRule);
        for (std::uint32_t ch = 0; ch < ZT4_CHANNEL_COUNT; ++ch) {
            const std::uint32_t a = d.address(c, ch);
            logLine(LOG_INFO, "%u  %u %02u %04u  %04x", c + 1, ch + 1, 3 * c + ch + 1, a, d.word(a));
        }
    }
}

void dumpFloatFourSlot(const Dump& d) {
    heading("Connector Channel Numero Register Mode Values");
    for (std::uint32_t c = 0; c < ZT4_CONNECTOR_COUNT; ++c) {
        for (std::uint32_t slot = 0; slot < kSlots; ++slot) {
            const std::uint32_t a = d.address(c, slot);
            const unsigned mode = slotMode(d.image, c, slot);
            float direct;
            const float through = floatValue(d, c, slot, direct);
            if (!shown(mode != 0)) continue;
            logLine(LOG_INFO, "%u  %u %02u %04u  %04x  %04x%04x (%e %f %s)", c + 1, slot,
                    kSlots * c + slot + 1, a, mode, d.word(a), d.word(a + 1),
                    static_cast<double>(direct), static_cast<double>(through), d.block.unit);
        }
    }
}

void dumpIntegerFourSlot(const Dump& d) {
    heading("Connector Channel Numero Register Value Mode");
    for (std::uint32_t c = 0; c < ZT4_CONNECTOR_COUNT; ++c) {
        for (std::uint32_t slot = 0; slot < kSlots; ++slot) {
            const std::uint32_t a = d.address(c, slot);
            const unsigned mode = slotMode(d.image, c, slot);
            const std::uint32_t value = integerValue(d, c, slot);
            if (!shown(d.modeWord(c, 0) != 0 || mode != 0)) continue;
            logLine(LOG_INFO, "%u  %u %02u %04u  %04x%04x (%u) %04x", c + 1, slot,
                    kSlots * c + slot + 1, a, d.word(a), d.word(a + 1), value, mode);
        }
    }
}

void dumpPhases(const Dump& d) {
    heading("Phase Register Value");
    for (std::uint32_t phase = 0; phase < d.block.count; ++phase) {
        const std::uint32_t a = d.address(0, phase);
        const std::uint32_t value = integerValue(d, 0, phase);
        logLine(LOG_INFO, "%02u %04u %04x%04x (%u)", phase + 1, a, d.word(a), d.word(a + 1), value);
    }
}

void dumpIntegerThreeSlot(const Dump& d) {
    heading("Connector Channel Numero Register Value Mode");
    for (std::uint32_t c = 0; c < ZT4_CONNECTOR_COUNT; ++c) {
        for (std::uint32_t ch = 0; ch < ZT4_CHANNEL_COUNT; ++ch) {
            const std::uint32_t a = d.address(c, ch);
            const std::uint32_t value = integerValue(d, c, ch);
            logLine(LOG_INFO, "%u  %u %02u %04u  %04x%04x (%u) %04x", c + 1, ch + 1,
                    3 * c + ch + 1, a, d.word(a), d.word(a + 1), value, d.modeWord(c, ch));
        }
    }
}

void dumpFloatPerConnector(const Dump& d) {
    heading("Connector Register Value");
    for (std::uint32_t i = 0; i < d.block.count; ++i) {
        const std::uint32_t a = d.address(0, i);
        float direct;
        const float through = floatValue(d, 0, i, direct);
        logLine(LOG_INFO, "%02u %04u %04x%04x (%f %s)", i + 1, a, d.word(a), d.word(a + 1),
                static_cast<double>(through), d.block.unit);
    }
}

// The one layout that prints the high-order word first.
void dumpNominalVoltage(const Dump& d) {
    heading("Register Value");
    const std::uint32_t a = d.address(0, 0);
    float direct;
    const float through = floatValue(d, 0, 0, direct);
    logLine(LOG_INFO, "%04u %04x%04x (%f %s)", a, d.word(a + 1), d.word(a),
            static_cast<double>(through), d.block.unit);
}

void dumpIntegerPerConnector(const Dump& d) {
    heading("Connector Register Value");
    for (std::uint32_t i = 0; i < d.block.count; ++i) {
        const std::uint32_t a = d.address(0, i);
        const std::uint32_t value = integerValue(d, 0, i);
        logLine(LOG_INFO, "%02u %04u %04x%04x (%u 0x%08x)", i + 1, a, d.word(a), d.word(a + 1),
                value, value);
    }
}

void dumpFloatThreeSlot(const Dump& d) {
    heading("Connector Channel Numero Register Value Mode");
    for (std::uint32_t c = 0; c < ZT4_CONNECTOR_COUNT; ++c) {
        for (std::uint32_t ch = 0; ch < ZT4_CHANNEL_COUNT; ++ch) {
            const std::uint32_t a = d.address(c, ch);
            const unsigned mode = d.modeWord(c, ch);
            float direct;
            const float through = floatValue(d, c, ch, direct);
            if (!shown(mode != 0)) continue;
            logLine(LOG_INFO, "%u  %u %02u %04u  %04x%04x (%e %f %s) %04x", c + 1, ch + 1,
                    3 * c + ch + 1, a, d.word(a), d.word(a + 1), static_cast<double>(direct),
                    static_cast<double>(through), d.block.unit, mode);
        }
    }
}

void dumpDouble(const Dump& d) {
    heading("Connector Channel Numero Register Mode Values");
    for (std::uint32_t c = 0; c < ZT4_CONNECTOR_COUNT; ++c) {
        for (std::uint32_t slot = 0; slot < kSlots; ++slot) {
            const std::uint32_t a = d.address(c, slot);
            const unsigned mode = slotMode(d.image, c, slot);
            const double direct = d.direct<double>(a);
            const double through = GetModbusData64(d.image, static_cast<std::uint8_t>(d.index),
                                                   static_cast<std::uint8_t>(c),
                                                   static_cast<std::uint8_t>(slot));
            if (differ(direct, through)) logError(d.function, "Value incoherence %f %f", direct, through);
            if (!shown(d.modeWord(c, 0) != 0 || mode != 0)) continue;
            logLine(LOG_INFO, "%u  %u %02u %04u  %04x  %04x%04x%04x%04x (%e %e %s)", c + 1, slot,
                    kSlots * c + slot + 1, a, mode, d.word(a), d.word(a + 1), d.word(a + 2),
                    d.word(a + 3), direct, through, d.block.unit);
        }
    }
}

}  // namespace
}  // namespace zt4::modbus

using namespace zt4::modbus;

extern "C" {

void DisplayZT4Data(const uint16_t* zt4Rg, uint8_t index) noexcept {
    if (zt4Rg == nullptr) {
        zt4::logError(__func__, "zt4Rg NULL");
        return;
    }
    if (index >= ZT4_MODBUS_BLOCK_COUNT) {
        zt4::logError(__func__, "Register block %u INVALID", index);
        return;
    }
    const Dump dump{__func__, zt4Rg, index, ModbusBase[index]};
    zt4::logLine(LOG_INFO, "%s", dump.block.name);
    switch (kBlockShapes[index].dump) {
        case DumpLayout::Words: dumpWords(dump); break;
        case DumpLayout::Modes: dumpModes(dump); break;
        case DumpLayout::FloatFourSlot: dumpFloatFourSlot(dump); break;
        case DumpLayout::IntegerFourSlot: dumpIntegerFourSlot(dump); break;
        case DumpLayout::Phases: dumpPhases(dump); break;
        case DumpLayout::IntegerThreeSlot: dumpIntegerThreeSlot(dump); break;
        case DumpLayout::FloatPerConnector: dumpFloatPerConnector(dump); break;
        case DumpLayout::NominalVoltage: dumpNominalVoltage(dump); break;
        case DumpLayout::IntegerPerConnector: dumpIntegerPerConnector(dump); break;
        // The 64-bit blocks have no layout of their own here: like every other block, they are
        // shown as 3-slot floats.
        case DumpLayout::FloatThreeSlot:
        case DumpLayout::Double:
        case DumpLayout::NameOnly: dumpFloatThreeSlot(dump); break;
    }
    zt4::logLine(LOG_INFO, "%s", kRule);
}

void DisplayZT4Data64(const uint16_t* zt4Rg64, uint8_t index) noexcept {
    if (zt4Rg64 == nullptr) {
        zt4::logError(__func__, "zt4Rg64 NULL");
        return;
    }
    if (index >= ZT4_MODBUS_BLOCK_COUNT) {
        zt4::logError(__func__, "Register block %u INVALID", index);
        return;
    }
    const Dump dump{__func__, zt4Rg64, index, ModbusBase[index]};
    zt4::logLine(LOG_INFO, "%s", dump.block.name);
    if (kBlockShapes[index].dump != DumpLayout::Double) return;
    dumpDouble(dump);
    zt4::logLine(LOG_INFO, "%s", kRule);
}

}  // extern "C"
