// The register map as the meter publishes it, and the address of every block class.
#include <cstdint>
#include <string>

#include "support/harness.hpp"
#include "zt4config.h"

namespace {

struct BlockRow {
    uint8_t index;
    const char* name;
    uint32_t base, count, words, bytes;
    const char* unit;
};

// The rows with a quirk of their own, and each end of the map.
const BlockRow kRows[] = {
    {0, "SOFTWARE VERSION", 0, 1, 1, 2, ""},
    {2, "ADDRESS MAC", 2, 3, 1, 6, ""},
    {3, "MODE", 8, 18, 1, 36, ""},
    {4, "INDEX ACTIVE IMPORT", 28, 24, 2, 96, "kWh"},
    {6, "INDEX ACTIVE EXPORT", 124, 24, 2, 96, "KWh"},
    {18, "SAG ZT4", 640, 3, 2, 12, ""},
    {25, "TRIP STATUS", 844, 18, 2, 72, ""},
    {27, "OPERATING TIME NANO", 928, 24, 2, 96, "NanoSecondes"},
    {33, "DELTA ENERGIE REACTIVE +", 1216, 24, 2, 96, "kVArh"},
    {37, "NOMINAL VOLTAGE", 1372, 1, 2, 4, "V"},
    {50, "ANGLE CURRENT", 1614, 18, 2, 72, "\xc2\xb0"},
    {59, "INDEX REACTIVE IMPORT - RAW", 2022, 24, 2, 96, "kVArh"},
    {62, "INDEX ACTIVE IMPORT ACCU RAW", 2166, 24, 4, 192, "kWh"},
    {73, "INDEX APPARENT 64", 3222, 24, 4, 192, "kVAh"},
    {74, "Address Modbus Register", 0, 844, 1, 1688, ""},
};

TEST(RegisterMap, RowsAndLookups) {
    for (const BlockRow& row : kRows) {
        SCOPED_TRACE("block " + std::to_string(row.index));
        const ModbusRegisterBlock& block = ModbusBase[row.index];
        EXPECT_STREQ(block.name, row.name);
        EXPECT_EQ(block.base, row.base);
        EXPECT_EQ(block.count, row.count);
        EXPECT_EQ(block.words, row.words);
        EXPECT_EQ(block.bytes, row.bytes);
        EXPECT_STREQ(block.unit, row.unit);
        EXPECT_STREQ(getModbusNameRg(row.index), row.name);
        EXPECT_EQ(getModbusAddrBaseRg(row.index), row.base);
        EXPECT_EQ(getModbusNbRg(row.index), row.count);
        EXPECT_EQ(getModbusSizeRg(row.index), row.words);
        EXPECT_EQ(getModbusSize(row.index), row.bytes);
        EXPECT_STREQ(getModbusUnitRg(row.index), row.unit);
    }
}

// Every block's name and unit, as Modbus clients and the dumps show them.
const char* const kNamesAndUnits[ZT4_MODBUS_BLOCK_COUNT][2] = {
    {"SOFTWARE VERSION", ""}, {"MODBUS VERSION", ""}, {"ADDRESS MAC", ""}, {"MODE", ""},
    {"INDEX ACTIVE IMPORT", "kWh"}, {"INDEX REACTIVE IMPORT", "kVArh"},
    {"INDEX ACTIVE EXPORT", "KWh"}, {"INDEX REACTIVE IMPORT NEGATIVE", "kVArh"},
    {"POWER ACTIVE", "W"}, {"POWER REACTIVE", "VAr"}, {"POWER FACTOR", ""}, {"RMS CURRENT", "A"},
    {"RMS CURRENT AVERAGE", "A"}, {"RMS VOLTAGE", "V"}, {"RMS VOLTAGE AVERAGE", "V"},
    {"FREQUENCY LINE", "Hz"}, {"OPERATING TIME", "Hours"}, {"START UP", ""}, {"SAG ZT4", ""},
    {"SWELL ZT4", ""}, {"SAG", ""}, {"SWELL", ""}, {"OVER CURRENT", ""}, {"TRIP", ""},
    {"THD", "%"}, {"TRIP STATUS", ""}, {"OPERATING TIME SEC", "Secondes"},
    {"OPERATING TIME NANO", "NanoSecondes"}, {"THD AVERAGE", "%"}, {"THD AVERAGE SAMPLE", ""},
    {"DELTA ENERGIE APPARENT", "kVAh"}, {"DELTA ENERGIE ACTIVE", "kWh"},
    {"DELTA ENERGIE ACTIVE FUND", "kWh"}, {"DELTA ENERGIE REACTIVE +", "kVArh"},
    {"DELTA ENERGIE REACTIVE -", "kVArh"}, {"DELTA ENERGIE REACTIVE FUND", "kVArh"},
    {"RMS NEUTRAL CURRENT", "A"}, {"NOMINAL VOLTAGE", "V"}, {"SAG CIRCUIT", ""},
    {"SWELL CIRCUIT", ""}, {"CURRENT IMBALANCE", ""}, {"CURRENT NB SAMPLE", ""},
    {"POWER IMBALANCE", ""}, {"POWER NB SAMPLE", ""}, {"POWER IMBALANCE FACTOR INSTANT", "%"},
    {"VOLTAGE IMBALANCE", ""}, {"VOLTAGE NB SAMPLE", ""}, {"VOLTAGE IMBALANCE FACTOR INSTANT", "%"},
    {"IMAX AV", "A"}, {"ANGLE VOLTAGE", "\xc2\xb0"}, {"ANGLE CURRENT", "\xc2\xb0"},
    {"ANGLE VOLTAGE CURRENT", "\xc2\xb0"}, {"INDEX ACTIVE IMPORT FUND", "kWh"},
    {"INDEX REACTIVE IMPORT FUND", "kVArh"}, {"INDEX ACTIVE EXPORT FUND", "kWh"},
    {"INDEX APPARENT", "kVAh"}, {"INDEX ACTIVE IMPORT RAW", "kWh"},
    {"INDEX REACTIVE IMPORT + RAW", "kVArh"}, {"INDEX ACTIVE EXPORT RAW", "kWh"},
    {"INDEX REACTIVE IMPORT - RAW", "kVArh"}, {"POWER ACTIVE RAW", "W"},
    {"POWER REACTIVE RAW", "VAr"}, {"INDEX ACTIVE IMPORT ACCU RAW", "kWh"},
    {"INDEX REACTIVE IMPORT + ACCU RAW", "kVArh"}, {"INDEX ACTIVE IMPORT ACCU", "kWh"},
    {"INDEX REACTIVE IMPORT + ACCU", "kVArh"}, {"INDEX ACTIVE EXPORT ACCU RAW", "kWh"},
    {"INDEX REACTIVE IMPORT - ACCU RAW", "kVArh"}, {"INDEX ACTIVE EXPORT ACCU", "kWh"},
    {"INDEX REACTIVE IMPORT - ACCU", "kVArh"}, {"INDEX ACTIVE IMPORT FUND 64", "kWh"},
    {"INDEX REACTIVE IMPORT FUND 64", "kVArh"}, {"INDEX ACTIVE EXPORT FUND 64", "kWh"},
    {"INDEX APPARENT 64", "kVAh"}, {"Address Modbus Register", ""},
};

TEST(RegisterMap, EveryNameAndUnit) {
    for (unsigned i = 0; i < ZT4_MODBUS_BLOCK_COUNT; ++i) {
        EXPECT_STREQ(getModbusNameRg(static_cast<uint8_t>(i)), kNamesAndUnits[i][0]) << i;
        EXPECT_STREQ(getModbusUnitRg(static_cast<uint8_t>(i)), kNamesAndUnits[i][1]) << i;
    }
}

// Every block starts where the previous one ends, but for the two gaps (addresses 5 to 7 and
// 26 to 27), holds count x words x 2 bytes, and the last ends at the image's last word.
TEST(RegisterMap, BlocksBackToBackButTheGaps) {
    for (unsigned i = 1; i < 74; ++i) {
        const ModbusRegisterBlock& previous = ModbusBase[i - 1];
        const uint32_t gap = i == 3 ? 3 : i == 4 ? 2 : 0;
        EXPECT_EQ(ModbusBase[i].base, previous.base + previous.count * previous.words + gap) << i;
        EXPECT_EQ(ModbusBase[i].bytes, ModbusBase[i].count * ModbusBase[i].words * 2) << i;
    }
    EXPECT_EQ(ModbusBase[73].base + 24 * 4, 3318u);
}

struct AddressCase {
    const char* name;
    uint32_t index;
    uint8_t connector, channel;
    uint32_t expected;
};

class RegisterAddress : public ::testing::TestWithParam<AddressCase> {};

TEST_P(RegisterAddress, Computed) {
    const AddressCase& c = GetParam();
    EXPECT_EQ(getModbusAddr(c.index, c.connector, c.channel), c.expected);
}

std::string addressName(const ::testing::TestParamInfo<AddressCase>& info) {
    return info.param.name;
}

// The worked examples of the register map.
INSTANTIATE_TEST_SUITE_P(Examples, RegisterAddress, ::testing::Values(
    AddressCase{"ConnectorTotalOfSecondConnector", 4, 1, 0, 36},
    AddressCase{"RmsCurrentConnector1Channel2", 11, 1, 2, 374},
    AddressCase{"NominalVoltageIgnoresSelectors", 37, 5, 2, 1372},
    AddressCase{"NeutralCurrentTakesChannel", 36, 4, 3, 1366}), addressName);

// Every class of block: 4-slot, per-selector, single, 3-slot, beyond the table.
INSTANTIATE_TEST_SUITE_P(Classes, RegisterAddress, ::testing::Values(
    AddressCase{"FourSlot4First", 4, 0, 0, 28}, AddressCase{"FourSlot10", 10, 2, 3, 338},
    AddressCase{"FourSlot16Last", 16, 5, 3, 590}, AddressCase{"FourSlot17", 17, 1, 1, 602},
    AddressCase{"FourSlot24", 24, 3, 2, 824}, AddressCase{"FourSlot26", 26, 0, 1, 882},
    AddressCase{"FourSlot35", 35, 5, 0, 1352}, AddressCase{"FourSlot52", 52, 1, 0, 1694},
    AddressCase{"FourSlot61", 61, 5, 3, 2164}, AddressCase{"FourSlot62Double", 62, 1, 2, 2190},
    AddressCase{"FourSlot73LastWords", 73, 5, 3, 3314}, AddressCase{"PerPhase18", 18, 5, 2, 644},
    AddressCase{"PerPhase19", 19, 0, 1, 648}, AddressCase{"PerConnector40", 40, 2, 5, 1456},
    AddressCase{"PerConnector41", 41, 3, 1, 1460}, AddressCase{"PerConnector47", 47, 0, 5, 1540},
    AddressCase{"Single37", 37, 0, 0, 1372}, AddressCase{"ThreeSlot0", 0, 0, 0, 0},
    AddressCase{"ThreeSlot2", 2, 0, 2, 4}, AddressCase{"ThreeSlot3Modes", 3, 5, 2, 25},
    AddressCase{"ThreeSlot15", 15, 5, 2, 542}, AddressCase{"ThreeSlot20", 20, 2, 1, 666},
    AddressCase{"ThreeSlot25", 25, 0, 0, 844}, AddressCase{"ThreeSlot38", 38, 1, 0, 1380},
    AddressCase{"ThreeSlot39", 39, 5, 2, 1444}, AddressCase{"ThreeSlot48", 48, 3, 0, 1560},
    AddressCase{"ThreeSlot51", 51, 5, 2, 1684}, AddressCase{"ThreeSlot74Range", 74, 2, 1, 7},
    AddressCase{"BeyondTable75", 75, 0, 0, 3318},
    AddressCase{"BeyondTableWholeIndex", 260, 1, 0, 3318}), addressName);

TEST(RegisterMap, LookupsByIdAndRange) {
    EXPECT_EQ(getModbusAddrById(4, 5), 38u);
    EXPECT_EQ(getModbusAddrById(62, 23), 2258u);
    EXPECT_EQ(getModbusAddrById(3, 17), 25u);
    EXPECT_EQ(getModbusAddrById(37, 0), 1372u);
    EXPECT_EQ(getModbusAddrById(75, 0), 3318u);
    EXPECT_EQ(isModbusAddrValid(0), 0);
    EXPECT_EQ(isModbusAddrValid(843), 0);
    EXPECT_EQ(isModbusAddrValid(844), -1);
    EXPECT_EQ(isModbusAddrValid(UINT32_MAX), -1);
    // "TRIP STATUS" is the first block past the public range.
    EXPECT_EQ(isModbusAddrValid(getModbusAddrBaseRg(25)), -1);
    EXPECT_EQ(isModbusAddrValid(getModbusAddr(24, 5, 3) + 1), 0);
    // Beyond the table the lookups answer nothing rather than read past it.
    EXPECT_STREQ(getModbusNameRg(75), "");
    EXPECT_STREQ(getModbusUnitRg(255), "");
    EXPECT_EQ(getModbusAddrBaseRg(200), 0u);
    EXPECT_EQ(getModbusNbRg(75), 0u);
    EXPECT_EQ(getModbusSizeRg(75), 0u);
    EXPECT_EQ(getModbusSize(75), 0u);
}

}  // namespace
