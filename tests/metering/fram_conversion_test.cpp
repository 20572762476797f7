// Conversions on the register image: the counters from floats to integers, and the operating
// time's hours into seconds and nanoseconds.
#include <syslog.h>

#include <cstring>
#include <string>
#include <vector>

#include "metering/fram_fixture.hpp"
#include "zt4config.h"

namespace {

using zt4test::floatsBytes;
using zt4test::unsignedBytes;

// An image in which every 32-bit position holds the float 7.75.
std::string imageOfFloats() { return floatsBytes(std::vector<float>(zt4test::kImageWords / 2, 7.75f)); }

struct ConvertedBlock {
    unsigned index;
    std::size_t firstWord;  // the block's base address
    std::size_t registers;  // converted; 0 for blocks left alone
};

class FramCounterConversion : public zt4test::FramTest,
                              public ::testing::WithParamInterface<ConvertedBlock> {};

TEST_P(FramCounterConversion, ConvertsExactlyTheCounterRegisters) {
    const ConvertedBlock& c = GetParam();
    const std::string before = imageOfFloats();
    std::vector<uint16_t> image = zt4test::imageOf(before);
    convert_float_to_integer(image.data(), static_cast<uint8_t>(c.index));
    std::string expected = before;
    expected.replace(c.firstWord * 2, c.registers * 4, unsignedBytes(std::vector<uint32_t>(c.registers, 7)));
    EXPECT_EQ(zt4test::bytesOf(image), expected);
}

INSTANTIATE_TEST_SUITE_P(Blocks, FramCounterConversion, ::testing::Values(
    ConvertedBlock{17, 592, 24}, ConvertedBlock{18, 640, 3}, ConvertedBlock{19, 646, 3},
    ConvertedBlock{22, 724, 18}, ConvertedBlock{16, 544, 0}, ConvertedBlock{20, 652, 0},
    ConvertedBlock{21, 688, 0}, ConvertedBlock{23, 760, 0}, ConvertedBlock{4, 28, 0},
    ConvertedBlock{200, 0, 0}));

struct ConvertedValue {
    float stored;
    uint32_t converted;
};

class FramCounterValue : public zt4test::FramTest, public ::testing::WithParamInterface<ConvertedValue> {};

TEST_P(FramCounterValue, IsTruncatedToItsLow32Bits) {
    std::vector<uint16_t> image = zt4test::filledImage(0);
    std::memcpy(&image[724 + 2 * 5], &GetParam().stored, 4);  // over-current of connector 1, channel 2
    convert_float_to_integer(image.data(), 22);
    uint32_t converted = 0;
    std::memcpy(&converted, &image[724 + 2 * 5], 4);
    EXPECT_EQ(converted, GetParam().converted);
}

INSTANTIATE_TEST_SUITE_P(Values, FramCounterValue, ::testing::Values(
    ConvertedValue{0.0f, 0}, ConvertedValue{0.99f, 0}, ConvertedValue{41.5f, 41},
    ConvertedValue{16777216.0f, 16777216}, ConvertedValue{4294967296.0f, 0},
    ConvertedValue{5000000000.0f, 705032704}, ConvertedValue{-3.0f, 0}));

TEST(FramCounterConversionArguments, NullImageIsLogged) {
    zt4test::clearLog();
    convert_float_to_integer(nullptr, 17);
    EXPECT_TRUE(zt4test::logged("error.[convert_float_to_integer]: zt4Rg NULL", LOG_ERR)) << zt4test::logDump();
}

struct OperatingTimeCase {
    float hours;
    uint32_t seconds;
    uint32_t nanoseconds;
};

class FramOperatingTime : public zt4test::FramTest, public ::testing::WithParamInterface<OperatingTimeCase> {};

TEST_P(FramOperatingTime, FillsHoursSecondsAndNanoseconds) {
    const OperatingTimeCase& c = GetParam();
    std::vector<float> hours(24, 0.0f);
    hours[0] = c.hours;   // connector 1's total
    hours[22] = 1.0f;     // connector 6, channel 2
    std::string memory = zt4test::patterned(zt4test::kFramBytes);
    memory.replace(960, 96, floatsBytes(hours));
    writeFram(memory);

    const std::string before = zt4test::bytesOf(zt4test::filledImage(0xAA));
    std::vector<uint16_t> image = zt4test::imageOf(before);
    ASSERT_EQ(GetZT4FRAMOperatingTime(image.data()), 0) << zt4test::logDump();

    std::vector<uint32_t> seconds(24, 0);
    std::vector<uint32_t> nanoseconds(24, 0);
    seconds[0] = c.seconds;
    nanoseconds[0] = c.nanoseconds;
    seconds[22] = 3600;
    std::string expected = before;
    expected.replace(544 * 2, 96, floatsBytes(hours));
    expected.replace(880 * 2, 96, unsignedBytes(seconds));
    expected.replace(928 * 2, 96, unsignedBytes(nanoseconds));
    EXPECT_EQ(zt4test::bytesOf(image), expected);
}

INSTANTIATE_TEST_SUITE_P(Hours, FramOperatingTime, ::testing::Values(
    OperatingTimeCase{1.5f, 5400, 0}, OperatingTimeCase{0.125f, 450, 0},
    OperatingTimeCase{1.0f / 4096, 0, 878906250}, OperatingTimeCase{8760.5f, 31537800, 0},
    OperatingTimeCase{0.0f, 0, 0}, OperatingTimeCase{-2.0f, 0, 0}));

}  // namespace
