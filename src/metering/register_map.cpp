// The register map: one row per block, written once. The row list expands into the exported
// ModbusBase (name, base, count, words, bytes, unit) and into the internal shapes (selector and
// dump layout) so that the two can never drift apart. Bases are as the meter has always
// published them, gaps included (addresses 5 to 7 and 26 to 27 belong to no block).
#include "metering/register_map.hpp"

#define ZT4_REGISTER_BLOCKS(ROW)                                                                  \
    ROW("SOFTWARE VERSION", 0, 1, 1, 2, "", ThreeSlot, Words)                                     \
    ROW("MODBUS VERSION", 1, 1, 1, 2, "", ThreeSlot, Words)                                       \
    ROW("ADDRESS MAC", 2, 3, 1, 6, "", ThreeSlot, Words)                                          \
    ROW("MODE", 8, 18, 1, 36, "", ThreeSlot, Modes)                                               \
    ROW("INDEX ACTIVE IMPORT", 28, 24, 2, 96, "kWh", FourSlot, FloatFourSlot)                     \
    ROW("INDEX REACTIVE IMPORT", 76, 24, 2, 96, "kVArh", FourSlot, FloatFourSlot)                 \
    ROW("INDEX ACTIVE EXPORT", 124, 24, 2, 96, "KWh", FourSlot, FloatThreeSlot)                   \
    ROW("INDEX REACTIVE IMPORT NEGATIVE", 172, 24, 2, 96, "kVArh", FourSlot, FloatFourSlot)       \
    ROW("POWER ACTIVE", 220, 24, 2, 96, "W", FourSlot, FloatFourSlot)                             \
    ROW("POWER REACTIVE", 268, 24, 2, 96, "VAr", FourSlot, FloatFourSlot)                         \
    ROW("POWER FACTOR", 316, 24, 2, 96, "", FourSlot, FloatFourSlot)                              \
    ROW("RMS CURRENT", 364, 18, 2, 72, "A", ThreeSlot, FloatThreeSlot)                            \
    ROW("RMS CURRENT AVERAGE", 400, 18, 2, 72, "A", ThreeSlot, FloatThreeSlot)                    \
    ROW("RMS VOLTAGE", 436, 18, 2, 72, "V", ThreeSlot, FloatThreeSlot)                            \
    ROW("RMS VOLTAGE AVERAGE", 472, 18, 2, 72, "V", ThreeSlot, FloatThreeSlot)                    \
    ROW("FREQUENCY LINE", 508, 18, 2, 72, "Hz", ThreeSlot, FloatThreeSlot)                        \
    ROW("OPERATING TIME", 544, 24, 2, 96, "Hours", FourSlot, FloatFourSlot)                       \
    ROW("START UP", 592, 24, 2, 96, "", FourSlot, IntegerFourSlot)                                \
    ROW("SAG ZT4", 640, 3, 2, 12, "", PerSelector, Phases)                                        \
    ROW("SWELL ZT4", 646, 3, 2, 12, "", PerSelector, Phases)                                      \
    ROW("SAG", 652, 18, 2, 72, "", ThreeSlot, IntegerThreeSlot)                                   \
    ROW("SWELL", 688, 18, 2, 72, "", ThreeSlot, IntegerThreeSlot)                                 \
    ROW("OVER CURRENT", 724, 18, 2, 72, "", ThreeSlot, IntegerThreeSlot)                          \
    ROW("TRIP", 760, 18, 2, 72, "", ThreeSlot, IntegerThreeSlot)                                  \
    ROW("THD", 796, 24, 2, 96, "%", FourSlot, FloatFourSlot)                                      \
    ROW("TRIP STATUS", 844, 18, 2, 72, "", ThreeSlot, IntegerThreeSlot)                           \
    ROW("OPERATING TIME SEC", 880, 24, 2, 96, "Secondes", FourSlot, IntegerFourSlot)              \
    ROW("OPERATING TIME NANO", 928, 24, 2, 96, "NanoSecondes", FourSlot, IntegerFourSlot)         \
    ROW("THD AVERAGE", 976, 24, 2, 96, "%", FourSlot, FloatFourSlot)                              \
    ROW("THD AVERAGE SAMPLE", 1024, 24, 2, 96, "", FourSlot, FloatFourSlot)                       \
    ROW("DELTA ENERGIE APPARENT", 1072, 24, 2, 96, "kVAh", FourSlot, FloatFourSlot)               \
    ROW("DELTA ENERGIE ACTIVE", 1120, 24, 2, 96, "kWh", FourSlot, FloatFourSlot)                  \
    ROW("DELTA ENERGIE ACTIVE FUND", 1168, 24, 2, 96, "kWh", FourSlot, FloatFourSlot)             \
    ROW("DELTA ENERGIE REACTIVE +", 1216, 24, 2, 96, "kVArh", FourSlot, FloatFourSlot)            \
    ROW("DELTA ENERGIE REACTIVE -", 1264, 24, 2, 96, "kVArh", FourSlot, FloatFourSlot)            \
    ROW("DELTA ENERGIE REACTIVE FUND", 1312, 24, 2, 96, "kVArh", FourSlot, FloatFourSlot)         \
    ROW("RMS NEUTRAL CURRENT", 1360, 6, 2, 24, "A", PerSelector, FloatPerConnector)               \
    ROW("NOMINAL VOLTAGE", 1372, 1, 2, 4, "V", Single, NominalVoltage)                            \
    ROW("SAG CIRCUIT", 1374, 18, 2, 72, "", ThreeSlot, IntegerThreeSlot)                          \
    ROW("SWELL CIRCUIT", 1410, 18, 2, 72, "", ThreeSlot, IntegerThreeSlot)                        \
    ROW("CURRENT IMBALANCE", 1446, 6, 2, 24, "", PerSelector, FloatPerConnector)                  \
    ROW("CURRENT NB SAMPLE", 1458, 6, 2, 24, "", PerSelector, IntegerPerConnector)                \
    ROW("POWER IMBALANCE", 1470, 6, 2, 24, "", PerSelector, FloatPerConnector)                    \
    ROW("POWER NB SAMPLE", 1482, 6, 2, 24, "", PerSelector, IntegerPerConnector)                  \
    ROW("POWER IMBALANCE FACTOR INSTANT", 1494, 6, 2, 24, "%", PerSelector, FloatPerConnector)    \
    ROW("VOLTAGE IMBALANCE", 1506, 6, 2, 24, "", PerSelector, FloatPerConnector)                  \
    ROW("VOLTAGE NB SAMPLE", 1518, 6, 2, 24, "", PerSelector, IntegerPerConnector)                \
    ROW("VOLTAGE IMBALANCE FACTOR INSTANT", 1530, 6, 2, 24, "%", PerSelector, FloatPerConnector)  \
    ROW("IMAX AV", 1542, 18, 2, 72, "A", ThreeSlot, FloatThreeSlot)                               \
    ROW("ANGLE VOLTAGE", 1578, 18, 2, 72, "\xc2\xb0", ThreeSlot, FloatThreeSlot)                    \
    ROW("ANGLE CURRENT", 1614, 18, 2, 72, "\xc2\xb0", ThreeSlot, FloatThreeSlot)                    \
    ROW("ANGLE VOLTAGE CURRENT", 1650, 18, 2, 72, "\xc2\xb0", ThreeSlot, FloatThreeSlot)            \
    ROW("INDEX ACTIVE IMPORT FUND", 1686, 24, 2, 96, "kWh", FourSlot, FloatFourSlot)              \
    ROW("INDEX REACTIVE IMPORT FUND", 1734, 24, 2, 96, "kVArh", FourSlot, FloatFourSlot)          \
    ROW("INDEX ACTIVE EXPORT FUND", 1782, 24, 2, 96, "kWh", FourSlot, FloatFourSlot)              \
    ROW("INDEX APPARENT", 1830, 24, 2, 96, "kVAh", FourSlot, FloatFourSlot)                       \
    ROW("INDEX ACTIVE IMPORT RAW", 1878, 24, 2, 96, "kWh", FourSlot, FloatFourSlot)               \
    ROW("INDEX REACTIVE IMPORT + RAW", 1926, 24, 2, 96, "kVArh", FourSlot, FloatFourSlot)         \
    ROW("INDEX ACTIVE EXPORT RAW", 1974, 24, 2, 96, "kWh", FourSlot, FloatThreeSlot)              \
    ROW("INDEX REACTIVE IMPORT - RAW", 2022, 24, 2, 96, "kVArh", FourSlot, FloatFourSlot)         \
    ROW("POWER ACTIVE RAW", 2070, 24, 2, 96, "W", FourSlot, FloatFourSlot)                        \
    ROW("POWER REACTIVE RAW", 2118, 24, 2, 96, "VAr", FourSlot, FloatFourSlot)                    \
    ROW("INDEX ACTIVE IMPORT ACCU RAW", 2166, 24, 4, 192, "kWh", FourSlot, Double)                \
    ROW("INDEX REACTIVE IMPORT + ACCU RAW", 2262, 24, 4, 192, "kVArh", FourSlot, Double)          \
    ROW("INDEX ACTIVE IMPORT ACCU", 2358, 24, 4, 192, "kWh", FourSlot, Double)                    \
    ROW("INDEX REACTIVE IMPORT + ACCU", 2454, 24, 4, 192, "kVArh", FourSlot, Double)              \
    ROW("INDEX ACTIVE EXPORT ACCU RAW", 2550, 24, 4, 192, "kWh", FourSlot, NameOnly)              \
    ROW("INDEX REACTIVE IMPORT - ACCU RAW", 2646, 24, 4, 192, "kVArh", FourSlot, Double)          \
    ROW("INDEX ACTIVE EXPORT ACCU", 2742, 24, 4, 192, "kWh", FourSlot, NameOnly)                  \
    ROW("INDEX REACTIVE IMPORT - ACCU", 2838, 24, 4, 192, "kVArh", FourSlot, Double)              \
    ROW("INDEX ACTIVE IMPORT FUND 64", 2934, 24, 4, 192, "kWh", FourSlot, Double)                 \
    ROW("INDEX REACTIVE IMPORT FUND 64", 3030, 24, 4, 192, "kVArh", FourSlot, Double)             \
    ROW("INDEX ACTIVE EXPORT FUND 64", 3126, 24, 4, 192, "kWh", FourSlot, Double)                 \
    ROW("INDEX APPARENT 64", 3222, 24, 4, 192, "kVAh", FourSlot, Double)                          \
    ROW("Address Modbus Register", 0, 844, 1, 1688, "", ThreeSlot, FloatThreeSlot)

#define ZT4_PUBLIC_ROW(name, base, count, words, bytes, unit, selector, dump) \
    {name, base, count, words, bytes, unit},
#define ZT4_SHAPE_ROW(name, base, count, words, bytes, unit, selector, dump) \
    {Selector::selector, DumpLayout::dump},
#define ZT4_ADDRESSING_ROW(name, base, count, words, bytes, unit, selector, dump) \
    {base, connectorStride(Selector::selector, words), channelStride(Selector::selector, words)},

extern "C" {
const ModbusRegisterBlock ModbusBase[ZT4_MODBUS_BLOCK_COUNT] = {ZT4_REGISTER_BLOCKS(ZT4_PUBLIC_ROW)};
}

namespace zt4::modbus {

const BlockShape kBlockShapes[ZT4_MODBUS_BLOCK_COUNT] = {ZT4_REGISTER_BLOCKS(ZT4_SHAPE_ROW)};
const Addressing kAddressing[ZT4_MODBUS_BLOCK_COUNT] = {ZT4_REGISTER_BLOCKS(ZT4_ADDRESSING_ROW)};

std::uint16_t slotMode(const std::uint16_t* image, std::uint32_t connector,
                       std::uint32_t slot) noexcept {
    const std::uint32_t modes = ModbusBase[3].base + 3 * connector;
    if (slot == 0) return isThreePhaseUnbalanced(image[modes]) ? image[modes] : 0;
    return image[modes + slot - 1];
}

}  // namespace zt4::modbus

#undef ZT4_ADDRESSING_ROW
#undef ZT4_SHAPE_ROW
#undef ZT4_PUBLIC_ROW
#undef ZT4_REGISTER_BLOCKS

namespace {

using zt4::modbus::registerAddress;

constexpr bool inTable(std::uint32_t index) noexcept { return index < ZT4_MODBUS_BLOCK_COUNT; }

}  // namespace

extern "C" {

int isModbusAddrValid(uint32_t addr) noexcept { return addr < ZT4_MODBUS_PUBLIC_WORDS ? 0 : -1; }

const char* getModbusNameRg(uint8_t index) noexcept {
    return inTable(index) ? ModbusBase[index].name : "";
}

uint32_t getModbusAddrBaseRg(uint8_t index) noexcept {
    return inTable(index) ? ModbusBase[index].base : 0;
}

uint32_t getModbusAddr(uint32_t index, uint8_t connector, uint8_t channel) noexcept {
    return registerAddress(index, connector, channel);
}

uint32_t getModbusAddrById(uint32_t index, uint8_t id) noexcept {
    if (!inTable(index)) return ZT4_MODBUS_IMAGE_WORDS;
    return ModbusBase[index].base + ModbusBase[index].words * id;
}

uint32_t getModbusNbRg(uint8_t index) noexcept {
    return inTable(index) ? ModbusBase[index].count : 0;
}

uint32_t getModbusSizeRg(uint8_t index) noexcept {
    return inTable(index) ? ModbusBase[index].words : 0;
}

uint32_t getModbusSize(uint8_t index) noexcept {
    return inTable(index) ? ModbusBase[index].bytes : 0;
}

const char* getModbusUnitRg(uint8_t index) noexcept {
    return inTable(index) ? ModbusBase[index].unit : "";
}

}  // extern "C"
