// The register map as the meter publishes it: every row of the table and its lookups, against the
// map written out in data/register_map.txt, and the address of every class of block.
#include <fstream>

#include "metering/fram_fixture.hpp"
#include "zt4config.h"

namespace {

TEST(RegisterMap, EveryRowAndItsLookups) {
    std::ifstream file(zt4test::dataFile("register_map.txt"));
    unsigned rows = 0;
    for (std::string line; std::getline(file, line); ++rows) {
        const std::vector<std::string> f = zt4test::fields(line, 7);
        const auto index = static_cast<uint8_t>(std::stoul(f[0]));
        const uint32_t base = std::stoul(f[2]), count = std::stoul(f[3]), words = std::stoul(f[4]), bytes = std::stoul(f[5]);
        ASSERT_EQ(index, rows) << line;
        const ModbusRegisterBlock& block = ModbusBase[index];
        EXPECT_EQ(std::make_tuple(std::string(block.name), block.base, block.count, block.words, block.bytes, std::string(block.unit)),
                  std::make_tuple(f[1], base, count, words, bytes, f[6])) << line;
        EXPECT_EQ(std::make_tuple(std::string(getModbusNameRg(index)), getModbusAddrBaseRg(index), getModbusNbRg(index),
                                  getModbusSizeRg(index), getModbusSize(index), std::string(getModbusUnitRg(index))),
                  std::make_tuple(f[1], base, count, words, bytes, f[6])) << line;
    }
    EXPECT_EQ(rows, 75u);
    // Beyond the table the lookups answer nothing rather than read past it.
    EXPECT_STREQ(getModbusNameRg(75), "");
    EXPECT_STREQ(getModbusUnitRg(255), "");
    for (uint8_t index : {75, 200}) {
        EXPECT_EQ(getModbusAddrBaseRg(index) + getModbusNbRg(index) + getModbusSizeRg(index) + getModbusSize(index), 0u);
    }
}

TEST(RegisterMap, AddressesOfEveryClassOfBlock) {
    std::ifstream file(zt4test::dataFile("register_addresses.txt"));
    unsigned rows = 0, index, connector, channel, address;
    for (; file >> index >> connector >> channel >> address; ++rows) {
        EXPECT_EQ(getModbusAddr(index, static_cast<uint8_t>(connector), static_cast<uint8_t>(channel)), address)
            << index << " " << connector << " " << channel;
    }
    EXPECT_EQ(rows, 34u);
    const std::pair<unsigned, unsigned> byId[] = {{4, 5}, {62, 23}, {3, 17}, {37, 0}, {75, 0}};
    const uint32_t expected[] = {38, 2258, 25, 1372, 3318};
    for (unsigned i = 0; i < 5; ++i) EXPECT_EQ(getModbusAddrById(byId[i].first, byId[i].second), expected[i]) << i;
    for (const auto& [addr, valid] : {std::make_pair(0u, 0), {843u, 0}, {844u, -1}, {UINT32_MAX, -1}}) {
        EXPECT_EQ(isModbusAddrValid(addr), valid) << addr;
    }
}

}  // namespace
