// Layout versions of the FRAM: the version byte, the expected version, the layouts' energy reads,
// the conversions (counters to integers, operating time to seconds), the re-layout of the
// version-0 energies and the upgrade that records a new version only when every step succeeded.
#include <syslog.h>

#include "metering/fram_fixture.hpp"
#include "metering/fram_upgrade.hpp"
#include "zt4config.h"

namespace {

using zt4test::bytesOf;
using zt4test::bytesOfValues;
using zt4test::logged;
using zt4test::patterned;
using Floats = std::vector<float>;
using Unsigned = std::vector<uint32_t>;

class FramVersion : public zt4test::FramTest {};

TEST_F(FramVersion, ByteReadsAsASignedByteAndIsWrittenAlone) {
    const std::pair<unsigned char, int> reads[] = {{0, 0}, {1, 1}, {2, 2}, {0x7F, 127}, {0xFF, -1}, {0xFE, -2}, {0x80, -128}};
    std::string memory = patterned();
    for (const auto& [stored, read] : reads) {
        memory[4096] = static_cast<char>(stored);
        writeFram(memory);
        EXPECT_EQ(fram_read_version(), read) << unsigned{stored};
    }
    for (const auto& [version, result] : {std::make_pair(0, 0), {2, 0}, {1, 0}, {3, -1}, {255, -1}}) {
        EXPECT_EQ(fram_write_version(static_cast<uint8_t>(version)), result) << version;
        if (result == 0) memory[4096] = static_cast<char>(version);
        EXPECT_EQ(fram(), memory) << version;
    }
    debug_level = 2;
    EXPECT_EQ(fram_read_version(), 1);
    EXPECT_TRUE(logged("[fram_read_version]: FRAM version: 1", LOG_INFO)) << zt4test::logDump();

    writeFram(patterned(4096));  // ends just before the byte
    EXPECT_EQ(fram_read_version(), -1);
    ASSERT_EQ(fram_write_version(2), 0);
    EXPECT_EQ(fram(), patterned(4096) + "\x02");
    removeFile(zt4test::kFramNode);
    EXPECT_EQ(fram_read_version(), -1);
    uint16_t buffer[36] = {};
    EXPECT_EQ(fram_get_register(buffer, sizeof buffer, 4, 0), -1);
    EXPECT_TRUE(logged("error.[fram_read_version]: FAILED to fopen '" + framPath() + "'. No such file or directory"));
}

TEST_F(FramVersion, ExpectedVersionIsTheSystemFilesNumber) {
    const std::pair<const char*, int> files[] = {{"2\n", 2}, {"1", 1}, {"0\n", 0}, {"12\n", 12}, {"1234\n", 123}, {"", -1}};
    for (const auto& [content, expected] : files) {
        writeFile("/var/tmp/fram", content);
        EXPECT_EQ(system_fram_read_version(), expected) << content;
    }
    removeFile("/var/tmp/fram");
    EXPECT_EQ(system_fram_read_version(), -1);
}

struct LayoutReadCase {
    unsigned version, index;
    std::size_t size;
    int result;
    std::size_t offset;   // where the bytes come from
    const char* message;  // logged at level 3 when not empty
};

class FramLayoutRead : public FramVersion, public ::testing::WithParamInterface<LayoutReadCase> {};

TEST_P(FramLayoutRead, ReadsTheLayoutsArea) {
    const LayoutReadCase& c = GetParam();
    writeFram(patterned());
    std::vector<uint16_t> buffer = zt4test::filledImage('\xEE');
    EXPECT_EQ(fram_get_register(buffer.data(), c.size, static_cast<uint8_t>(c.index), static_cast<uint8_t>(c.version)), c.result);
    std::string expected = bytesOf(zt4test::filledImage('\xEE'));
    if (c.result == 0) expected.replace(0, c.size, patterned().substr(c.offset, c.size));
    EXPECT_EQ(bytesOf(buffer), expected);
    EXPECT_EQ(zt4test::capturedLog().size(), *c.message == '\0' ? 0u : 1u) << zt4test::logDump();
    EXPECT_TRUE(*c.message == '\0' || logged(c.message, LOG_ERR)) << zt4test::logDump();
}

INSTANTIATE_TEST_SUITE_P(Reads, FramLayoutRead, ::testing::Values(
    LayoutReadCase{0, 4, 72, 0, 0, ""}, LayoutReadCase{0, 5, 72, 0, 72, ""}, LayoutReadCase{1, 4, 96, 0, 192, ""},
    LayoutReadCase{2, 5, 96, 0, 288, ""}, LayoutReadCase{0, 7, 72, 0, 0, ""}, LayoutReadCase{2, 56, 96, 0, 0, ""},
    LayoutReadCase{3, 4, 96, -1, 0, ""},
    LayoutReadCase{0, 4, 96, -1, 0, "error.[fram_get_register]: size (96 bytes) is wrong 36"},
    LayoutReadCase{2, 4, 72, -1, 0, "error.[fram_get_register]: size (72 bytes) is wrong 48"},
    LayoutReadCase{1, 5, 0, -1, 0, "error.[fram_get_register]: size (0 bytes) is wrong 48"}));

TEST(FramConversion, CountersBecomeTheLow32BitsOfTheirWholeValue) {
    // Every 32-bit position of the image holds 7.75; the counters' registers become 7.
    const std::string floats = bytesOfValues(Floats(zt4test::kImageWords / 2, 7.75f));
    const std::tuple<unsigned, std::size_t, std::size_t> blocks[] = {  // block, base address, registers
        {17, 592, 24}, {18, 640, 3}, {19, 646, 3}, {22, 724, 18}, {16, 544, 0}, {20, 652, 0}, {21, 688, 0}, {4, 28, 0}};
    for (const auto& [index, base, registers] : blocks) {
        std::vector<uint16_t> image = zt4test::imageOf(floats);
        convert_float_to_integer(image.data(), static_cast<uint8_t>(index));
        std::string expected = floats;
        EXPECT_EQ(bytesOf(image), expected.replace(base * 2, registers * 4, bytesOfValues(Unsigned(registers, 7)))) << index;
    }
    const Floats values = {0.0f, 0.99f, 41.5f, 16777216.0f, 4294967296.0f, 5000000000.0f, -3.0f};
    const Unsigned converted = {0, 0, 41, 16777216, 0, 705032704, 0};
    std::vector<uint16_t> image = zt4test::imageOf(std::string(724 * 2, '\0') + bytesOfValues(values));
    convert_float_to_integer(image.data(), 22);
    EXPECT_EQ(bytesOf(image).substr(724 * 2, 28), bytesOfValues(converted));
}

TEST_F(FramVersion, OperatingTimeGivesSecondsAndNanoseconds) {
    const Floats hours = {1.5f, 0.125f, 1.0f / 4096, 8760.5f, 0.0f, -2.0f};
    const Unsigned seconds = {5400, 450, 0, 31537800, 0, 0}, nanoseconds = {0, 0, 878906250, 0, 0, 0};
    std::string memory = patterned();
    memory.replace(960, 96, bytesOfValues(hours) + std::string(72, '\0'));
    writeFram(memory);
    std::vector<uint16_t> image = zt4test::filledImage('\xAA');
    ASSERT_EQ(GetZT4FRAMOperatingTime(image.data()), 0) << zt4test::logDump();
    std::string expected = bytesOf(zt4test::filledImage('\xAA'));
    expected.replace(544 * 2, 96, memory.substr(960, 96));
    expected.replace(880 * 2, 96, bytesOfValues(seconds) + std::string(72, '\0'));
    expected.replace(928 * 2, 96, bytesOfValues(nanoseconds) + std::string(72, '\0'));
    EXPECT_EQ(bytesOf(image), expected);
}

// Old energies of connector c: 10 (c + 1), 2, 3; and their re-layout with the example device's
// modes: connectors 1 to 3 "Triphase" (4), 4 and 5 "Monophase" (1), 6 disabled (0).
Floats oldEnergies() {
    Floats values;
    for (int c = 0; c < 6; ++c) values.insert(values.end(), {10.0f * (c + 1), 2.0f, 3.0f});
    return values;
}
const Floats kExampleRelaid = {10, 5, 2, 3, 20, 15, 2, 3, 30, 25, 2, 3, 0, 40, 2, 3, 0, 50, 2, 3, 0, 60, 2, 3};

uint8_t gMode = 0;
bool modesFromTest(zt4Data& data) {
    for (ConnectorConfig& connector : data.connectors) connector.channels[0].mode = gMode;
    return true;
}
bool noConfiguration(zt4Data&) { return false; }

TEST_F(FramVersion, ReLayoutSplitsTheConnectorTotalByMode) {
    std::string memory = patterned();
    memory.replace(72, 72, bytesOfValues(oldEnergies()));
    writeFram(memory);
    const Floats relaid[] = {{0, 10, 2, 3}, {0, 10, 2, 3}, {10, 5, 2, 3}, {0, 10, 2, 3}, {10, 5, 2, 3}, {0, 10, 2, 3}, {10, 5, 2, 3}};
    debug_level = 4;
    for (gMode = 0; gMode <= 6; ++gMode) {
        ASSERT_EQ(zt4::fram::upgradeEnergyBlock(0, 1, 5, modesFromTest), 0) << zt4test::logDump();
        EXPECT_EQ(fram().substr(288, 16), bytesOfValues(relaid[gMode])) << "mode " << unsigned{gMode};
        EXPECT_EQ(fram().substr(384), memory.substr(384));
    }
    for (const char* line : {"@addr [0][0].Mode 4", "@addr [0][0] -> @addr [0][0] | size 4 bytes", "-> @addr [0][1] | size 4 bytes",
                             "@addr [3][0].Mode 1", "@addr [3][0] -> @addr [3][1] | size 4 bytes",
                             "@addr [3][1] -> @addr [3][2] | size 4 bytes", "@addr [5][2] -> @addr [5][3] | size 4 bytes",
                             "Write 96 bytes @288 (120) in FRAM memory"}) {
        EXPECT_TRUE(logged(std::string("[upgrade_register_energy]: ") + line, LOG_INFO)) << line;
    }
    debug_level = 0;
    // Refused arguments and a missing configuration write nothing.
    writeFram(memory);
    const std::tuple<unsigned, unsigned, unsigned, bool, int> refusals[] = {  // from, to, block, configured, result
        {1, 2, 4, true, -1}, {0, 1, 7, true, -1}, {0, 0, 4, true, 0}, {0, 3, 5, true, 0}, {0, 1, 4, false, -1}};
    for (const auto& [from, to, index, configured, result] : refusals) {
        EXPECT_EQ(zt4::fram::upgradeEnergyBlock(static_cast<uint8_t>(from), static_cast<uint8_t>(to), static_cast<uint8_t>(index),
                                                configured ? modesFromTest : noConfiguration), result) << from << to << index;
        EXPECT_EQ(fram(), memory);
    }
    EXPECT_TRUE(logged("[upgrade_register_energy]: FAILED to read configuration from zt4config.json", LOG_INFO));
}

struct UpgradeCase {
    const char* label;
    unsigned memoryVersion;
    const char* systemFile;  // /var/tmp/fram; nullptr: none
    unsigned defaultVersion;
    int result;
    unsigned versionAfter;
    bool relaid, converted;
    const char* message;  // at level 3 when not empty; PATH stands for the memory's path
};

class FramUpgrade : public FramVersion, public ::testing::WithParamInterface<UpgradeCase> {
protected:
    void SetUp() override {
        FramVersion::SetUp();
        copyExampleDevice();
        removeFile("/var/tmp/fram");
    }
    // Old energies at 0 and 72 and float counters: start-ups 12, sags, swells and over-currents.
    static std::string oldMemory(unsigned version) {
        std::string memory = patterned();
        memory.replace(0, 144, bytesOfValues(oldEnergies()) + bytesOfValues(oldEnergies()));
        memory.replace(1056, 192, bytesOfValues(Floats(24, 12.0f)) + bytesOfValues(Floats{3.0f, 1.0f, 2.9f, 0.5f, 1.0f, 7.99f}) +
                                      bytesOfValues(Floats{4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 5000000000.0f, 0, 0, 0, 0, -3}));
        memory[4096] = static_cast<char>(version);
        return memory;
    }
};

TEST_P(FramUpgrade, BringsTheMemoryToTheExpectedVersion) {
    const UpgradeCase& c = GetParam();
    const std::string memory = oldMemory(c.memoryVersion);
    writeFram(memory);
    if (c.systemFile != nullptr) writeFile("/var/tmp/fram", c.systemFile);
    EXPECT_EQ(fram_upgrade_version(static_cast<uint8_t>(c.defaultVersion)), c.result) << zt4test::logDump();

    std::string expected = memory;
    expected[4096] = static_cast<char>(c.versionAfter);
    if (c.relaid) expected.replace(192, 192, bytesOfValues(kExampleRelaid) + bytesOfValues(kExampleRelaid));
    if (c.converted) {
        expected.replace(1056, 192, bytesOfValues(Unsigned(24, 12)) + bytesOfValues(Unsigned{3, 1, 2, 0, 1, 7}) +
                                        bytesOfValues(Unsigned{4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 705032704, 0, 0, 0, 0, 0}));
    }
    EXPECT_EQ(fram(), expected);
    std::string message = c.message;
    if (message.find("PATH") != std::string::npos) message.replace(message.find("PATH"), 4, framPath());
    EXPECT_TRUE(message.empty() || logged(message, LOG_ERR)) << zt4test::logDump();
    EXPECT_TRUE(c.memoryVersion > 2 || logged("FRAM memory version " + std::to_string(c.memoryVersion), LOG_INFO));
}

INSTANTIATE_TEST_SUITE_P(Versions, FramUpgrade, ::testing::Values(
    UpgradeCase{"Blank", 0xFF, "2", 2, -1, 0xFF, false, false, "error.[fram_upgrade_version]: FAILED to read FRAM version 'PATH'."},
    UpgradeCase{"From0To2", 0, "2\n", 2, 0, 2, true, true, ""},
    UpgradeCase{"From0To1", 0, "1\n", 2, 0, 1, true, false, ""},
    UpgradeCase{"From1To2", 1, "2\n", 2, 0, 2, false, true, ""},
    UpgradeCase{"From1Down0", 1, "0\n", 2, 0, 1, false, false, ""},
    UpgradeCase{"From2Down1", 2, "1\n", 2, -1, 2, false, false, ""},
    UpgradeCase{"At2", 2, "2\n", 2, 0, 2, false, false, ""},
    UpgradeCase{"UnknownMemoryVersion", 5, "2\n", 2, -1, 5, false, false, ""},
    UpgradeCase{"NoFileDefault3", 0, nullptr, 3, -1, 0, false, false, "error.[fram_upgrade_version]: FAILED to read FRAM version in file system."},
    UpgradeCase{"NoFileDefault2", 1, nullptr, 2, 0, 2, false, true, "error.[fram_upgrade_version]: FAILED to read FRAM version in file system."},
    UpgradeCase{"NoFileDefault1", 0, nullptr, 1, 0, 1, true, false, ""},
    UpgradeCase{"UnknownExpected", 0, "3\n", 2, -1, 0, false, false, "error.[fram_upgrade_version]: FRAM version 3 in file system is not supported"}),
    [](const auto& row) { return std::string(row.param.label); });

TEST_F(FramUpgrade, FailedStepsKeepTheVersionAndWhatCannotBeRedone) {
    removeFile("/home/nvram/zt4config.json");  // no modes: the energies cannot be re-laid out
    writeFile("/var/tmp/fram", "2\n");
    writeFram(oldMemory(0));
    EXPECT_NE(fram_upgrade_version(2), 0);
    EXPECT_EQ(fram(), oldMemory(0)) << "counters converted although the upgrade will run again";
    // A memory ending inside the sags: only the start-ups are read, converted and written.
    writeFram(oldMemory(1).substr(0, 1160));
    EXPECT_EQ(fram_convert_data_type(), 0);
    EXPECT_EQ(fram(), oldMemory(1).substr(0, 1056) + bytesOfValues(Unsigned(24, 12)) + oldMemory(1).substr(1152, 8));
}

}  // namespace
