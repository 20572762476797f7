// The register map as the meter publishes it, and the address of every block class.
#include <cstdint>
#include <string>

#include "support/harness.hpp"
#include "zt4config.h"

namespace {

struct BlockRow {
    const char* name;
    uint32_t base, count, words, bytes;
    const char* unit;
};

// Block by block as the meter's documentation lists them, texts kept to the byte.
const BlockRow kPublishedMap[] = {
    {"SOFTWARE VERSION", 0, 1, 1, 2, ""},
    {"MODBUS VERSION", 1, 1, 1, 2, ""},
    {"ADDRESS MAC", 2, 3, 1, 6, ""},
    {"MODE", 8, 18, 1, 36, ""},
    {"INDEX ACTIVE IMPORT", 28, 24, 2, 96, "kWh"},
    {"INDEX REACTIVE IMPORT", 76, 24, 2, 96, "kVArh"},
    {"INDEX ACTIVE EXPORT", 124, 24, 2, 96, "KWh"},
    {"INDEX REACTIVE IMPORT NEGATIVE", 172, 24, 2, 96, "kVArh"},
    {"POWER ACTIVE", 220, 24, 2, 96, "W"},
    {"POWER REACTIVE", 268, 24, 2, 96, "VAr"},
    {"POWER FACTOR", 316, 24, 2, 96, ""},
    {"RMS CURRENT", 364, 18, 2, 72, "A"},
    {"RMS CURRENT AVERAGE", 400, 18, 2, 72, "A"},
    {"RMS VOLTAGE", 436, 18, 2, 72, "V"},
    {"RMS VOLTAGE AVERAGE", 472, 18, 2, 72, "V"},
    {"FREQUENCY LINE", 508, 18, 2, 72, "Hz"},
    {"OPERATING TIME", 544, 24, 2, 96, "Hours"},
    {"START UP", 592, 24, 2, 96, ""},
    {"SAG ZT4", 640, 3, 2, 12, ""},
    {"SWELL ZT4", 646, 3, 2, 12, ""},
    {"SAG", 652, 18, 2, 72, ""},
    {"SWELL", 688, 18, 2, 72, ""},
    {"OVER CURRENT", 724, 18, 2, 72, ""},
    {"TRIP", 760, 18, 2, 72, ""},
    {"THD", 796, 24, 2, 96, "%"},
    {"TRIP STATUS", 844, 18, 2, 72, ""},
    {"OPERATING TIME SEC", 880, 24, 2, 96, "Secondes"},
    {"OPERATING TIME NANO", 928, 24, 2, 96, "NanoSecondes"},
    {"THD AVERAGE", 976, 24, 2, 96, "%"},
    {"THD AVERAGE SAMPLE", 1024, 24, 2, 96, ""},
    {"DELTA ENERGIE APPARENT", 1072, 24, 2, 96, "kVAh"},
    {"DELTA ENERGIE ACTIVE", 1120, 24, 2, 96, "kWh"},
    {"DELTA ENERGIE ACTIVE FUND", 1168, 24, 2, 96, "kWh"},
    {"DELTA ENERGIE REACTIVE +", 1216, 24, 2, 96, "kVArh"},
    {"DELTA ENERGIE REACTIVE -", 1264, 24, 2, 96, "kVArh"},
    {"DELTA ENERGIE REACTIVE FUND", 1312, 24, 2, 96, "kVArh"},
    {"RMS NEUTRAL CURRENT", 1360, 6, 2, 24, "A"},
    {"NOMINAL VOLTAGE", 1372, 1, 2, 4, "V"},
    {"SAG CIRCUIT", 1374, 18, 2, 72, ""},
    {"SWELL CIRCUIT", 1410, 18, 2, 72, ""},
    {"CURRENT IMBALANCE", 1446, 6, 2, 24, ""},
    {"CURRENT NB SAMPLE", 1458, 6, 2, 24, ""},
    {"POWER IMBALANCE", 1470, 6, 2, 24, ""},
    {"POWER NB SAMPLE", 1482, 6, 2, 24, ""},
    {"POWER IMBALANCE FACTOR INSTANT", 1494, 6, 2, 24, "%"},
    {"VOLTAGE IMBALANCE", 1506, 6, 2, 24, ""},
    {"VOLTAGE NB SAMPLE", 1518, 6, 2, 24, ""},
    {"VOLTAGE IMBALANCE FACTOR INSTANT", 1530, 6, 2, 24, "%"},
    {"IMAX AV", 1542, 18, 2, 72, "A"},
    {"ANGLE VOLTAGE", 1578, 18, 2, 72, "\xc2\xb0"},
    {"ANGLE CURRENT", 1614, 18, 2, 72, "\xc2\xb0"},
    {"ANGLE VOLTAGE CURRENT", 1650, 18, 2, 72, "\xc2\xb0"},
    {"INDEX ACTIVE IMPORT FUND", 1686, 24, 2, 96, "kWh"},
    {"INDEX REACTIVE IMPORT FUND", 1734, 24, 2, 96, "kVArh"},
    {"INDEX ACTIVE EXPORT FUND", 1782, 24, 2, 96, "kWh"},
    {"INDEX APPARENT", 1830, 24, 2, 96, "kVAh"},
    {"INDEX ACTIVE IMPORT RAW", 1878, 24, 2, 96, "kWh"},
    {"INDEX REACTIVE IMPORT + RAW", 1926, 24, 2, 96, "kVArh"},
    {"INDEX ACTIVE EXPORT RAW", 1974, 24, 2, 96, "kWh"},
    {"INDEX REACTIVE IMPORT - RAW", 2022, 24, 2, 96, "kVArh"},
    {"POWER ACTIVE RAW", 2070, 24, 2, 96, "W"},
    {"POWER REACTIVE RAW", 2118, 24, 2, 96, "VAr"},
    {"INDEX ACTIVE IMPORT ACCU RAW", 2166, 24, 4, 192, "kWh"},
    {"INDEX REACTIVE IMPORT + ACCU RAW", 2262, 24, 4, 192, "kVArh"},
    {"INDEX ACTIVE IMPORT ACCU", 2358, 24, 4, 192, "kWh"},
    {"INDEX REACTIVE IMPORT + ACCU", 2454, 24, 4, 192, "kVArh"},
    {"INDEX ACTIVE EXPORT ACCU RAW", 2550, 24, 4, 192, "kWh"},
    {"INDEX REACTIVE IMPORT - ACCU RAW", 2646, 24, 4, 192, "kVArh"},
    {"INDEX ACTIVE EXPORT ACCU", 2742, 24, 4, 192, "kWh"},
    {"INDEX REACTIVE IMPORT - ACCU", 2838, 24, 4, 192, "kVArh"},
    {"INDEX ACTIVE IMPORT FUND 64", 2934, 24, 4, 192, "kWh"},
    {"INDEX REACTIVE IMPORT FUND 64", 3030, 24, 4, 192, "kVArh"},
    {"INDEX ACTIVE EXPORT FUND 64", 3126, 24, 4, 192, "kWh"},
    {"INDEX APPARENT 64", 3222, 24, 4, 192, "kVAh"},
    {"Address Modbus Register", 0, 844, 1, 1688, ""},
};
static_assert(sizeof kPublishedMap / sizeof kPublishedMap[0] == ZT4_MODBUS_BLOCK_COUNT,
              "one row per block");

// The exported table and every lookup agree with the published map, row by row.
TEST(RegisterMap, RowsAndLookupsAsPublished) {
    for (uint32_t i = 0; i < ZT4_MODBUS_BLOCK_COUNT; ++i) {
        const BlockRow& row = kPublishedMap[i];
        const auto index = static_cast<uint8_t>(i);
        SCOPED_TRACE("block " + std::to_string(i));
        EXPECT_STREQ(ModbusBase[i].name, row.name);
        EXPECT_EQ(ModbusBase[i].base, row.base);
        EXPECT_EQ(ModbusBase[i].count, row.count);
        EXPECT_EQ(ModbusBase[i].words, row.words);
        EXPECT_EQ(ModbusBase[i].bytes, row.bytes);
        EXPECT_STREQ(ModbusBase[i].unit, row.unit);
        EXPECT_STREQ(getModbusNameRg(index), row.name);
        EXPECT_EQ(getModbusAddrBaseRg(index), row.base);
        EXPECT_EQ(getModbusNbRg(index), row.count);
        EXPECT_EQ(getModbusSizeRg(index), row.words);
        EXPECT_EQ(getModbusSize(index), row.bytes);
        EXPECT_STREQ(getModbusUnitRg(index), row.unit);
    }
}

// The last data block ends exactly at the image's last word.
TEST(RegisterMap, ImageEndsWithTheLastBlock) {
    EXPECT_EQ(ModbusBase[73].base + ModbusBase[73].count * ModbusBase[73].words, 3318u);
    EXPECT_EQ(ZT4_MODBUS_IMAGE_WORDS, 3318);
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
    AddressCase{"FourSlot4First", 4, 0, 0, 28},
    AddressCase{"FourSlot10", 10, 2, 3, 338},
    AddressCase{"FourSlot16Last", 16, 5, 3, 590},
    AddressCase{"FourSlot17", 17, 1, 1, 602},
    AddressCase{"FourSlot24", 24, 3, 2, 824},
    AddressCase{"FourSlot26", 26, 0, 1, 882},
    AddressCase{"FourSlot35", 35, 5, 0, 1352},
    AddressCase{"FourSlot52", 52, 1, 0, 1694},
    AddressCase{"FourSlot61", 61, 5, 3, 2164},
    AddressCase{"FourSlot62Double", 62, 1, 2, 2190},
    AddressCase{"FourSlot73LastWords", 73, 5, 3, 3314},
    AddressCase{"PerPhase18", 18, 5, 2, 644},
    AddressCase{"PerPhase19", 19, 0, 1, 648},
    AddressCase{"PerConnector40", 40, 2, 5, 1456},
    AddressCase{"PerConnector41", 41, 3, 1, 1460},
    AddressCase{"PerConnector47", 47, 0, 5, 1540},
    AddressCase{"Single37", 37, 0, 0, 1372},
    AddressCase{"ThreeSlot0", 0, 0, 0, 0},
    AddressCase{"ThreeSlot2", 2, 0, 2, 4},
    AddressCase{"ThreeSlot3Modes", 3, 5, 2, 25},
    AddressCase{"ThreeSlot15", 15, 5, 2, 542},
    AddressCase{"ThreeSlot20", 20, 2, 1, 666},
    AddressCase{"ThreeSlot25", 25, 0, 0, 844},
    AddressCase{"ThreeSlot38", 38, 1, 0, 1380},
    AddressCase{"ThreeSlot39", 39, 5, 2, 1444},
    AddressCase{"ThreeSlot48", 48, 3, 0, 1560},
    AddressCase{"ThreeSlot51", 51, 5, 2, 1684},
    AddressCase{"ThreeSlot74Range", 74, 2, 1, 7},
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
