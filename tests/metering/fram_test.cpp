// The FRAM: energy and counter blocks between the memory and the register image (each moves
// exactly its block's bytes, a failure leaves the caller's memory and the FRAM as they were), the
// layout version byte, the conversions and the upgrade that records a new version only when every
// step succeeded.
#include <signal.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <syslog.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <random>

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
auto rowName = [](const auto& row) { return std::string(row.param.label); };

struct BlockCase {
    const char* label;
    uint8_t index;                                            // energy block; 0 for the counters
    int (*toBuffer)(uint16_t*), (*toImage)(uint16_t*), (*write)(const uint16_t*);  // counters
    std::size_t offset, bytes, imageOffset;
    const char* area;
};

const BlockCase kBlocks[] = {
    {"ActiveImport", 4, nullptr, nullptr, nullptr, 192, 96, 56, "ENERGY IMPORT ACTIVE"},
    {"ReactiveImport", 5, nullptr, nullptr, nullptr, 288, 96, 152, "ENERGY IMPORT REACTIVE +"},
    {"ReactiveNegative", 7, nullptr, nullptr, nullptr, 480, 96, 344, "ENERGY IMPORT REACTIVE -"},
    {"ActiveRaw", 56, nullptr, nullptr, nullptr, 576, 96, 3756, "ENERGY IMPORT ACTIVE RAW"},
    {"ReactiveRaw", 57, nullptr, nullptr, nullptr, 672, 96, 3852, "ENERGY IMPORT REACTIVE RAW +"},
    {"ReactiveNegativeRaw", 59, nullptr, nullptr, nullptr, 864, 96, 4044, "ENERGY IMPORT REACTIVE RAW -"},
    {"OperatingTime", 0, GetZT4FRAMOperatingTimeToRegister, nullptr, SetZT4FRAMOperatingTime, 960, 96, 1088, "OPERATING TIME"},
    {"Startup", 0, GetZT4FRAMStartupToRegister, GetZT4FRAMStartup, SetZT4FRAMStartup, 1056, 96, 1184, "STARTUP"},
    {"Sag", 0, GetZT4FRAMSagToRegister, GetZT4FRAMSag, SetZT4FRAMSag, 1152, 12, 1280, "SAG"},
    {"Swell", 0, GetZT4FRAMSwellToRegister, GetZT4FRAMSwell, SetZT4FRAMSwell, 1164, 12, 1292, "SWELL"},
    {"OverCurrent", 0, GetZT4FRAMOverCurrentToRegister, GetZT4FRAMOverCurrent, SetZT4FRAMOverCurrent, 1176, 72, 1448, "OVERCURRENT"},
};

class FramBlock : public zt4test::FramTest, public ::testing::WithParamInterface<BlockCase> {
protected:
    const BlockCase& c = GetParam();
    int readToBuffer(uint16_t* buffer) const { return c.index != 0 ? GetZT4EnergyIndexToRegister(buffer, c.index) : c.toBuffer(buffer); }
    std::string reader() const { return c.index != 0 ? "GetZT4EnergyIndexToRegister" : std::string("GetZT4FRAM") + c.label + "ToRegister"; }
};

TEST_P(FramBlock, MovesExactlyItsBlock) {
    const std::string memory = patterned();
    writeFram(memory);
    std::vector<uint16_t> buffer = zt4test::filledImage('\xEE');
    ASSERT_EQ(readToBuffer(buffer.data()), 0) << zt4test::logDump();
    EXPECT_EQ(bytesOf(buffer), bytesOf(zt4test::filledImage('\xEE')).replace(0, c.bytes, memory.substr(c.offset, c.bytes)));
    if (c.index != 0 || c.toImage != nullptr) {
        std::vector<uint16_t> image = zt4test::filledImage('\xAA');
        ASSERT_EQ(c.index != 0 ? GetZT4EnergyIndex(image.data(), c.index) : c.toImage(image.data()), 0);
        EXPECT_EQ(bytesOf(image), bytesOf(zt4test::filledImage('\xAA')).replace(c.imageOffset, c.bytes, memory.substr(c.offset, c.bytes)));
    }
    if (c.write != nullptr) {
        const std::string imageBytes = patterned(zt4test::kImageWords * 2, 5);
        ASSERT_EQ(c.write(zt4test::imageOf(imageBytes).data()), 0);
        EXPECT_EQ(fram(), std::string(memory).replace(c.offset, c.bytes, imageBytes.substr(c.imageOffset, c.bytes)));
    }
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
}

TEST_P(FramBlock, ShortOrMissingMemoryFailsAndTouchesNothing) {
    const std::string shortMemory = patterned(c.offset + c.bytes - 1);
    writeFram(shortMemory);
    std::vector<uint16_t> buffer = zt4test::filledImage('\xEE');
    EXPECT_EQ(readToBuffer(buffer.data()), 1);
    const std::string path = c.index != 0 ? "\"" + framPath() + "\"" : "'" + framPath() + "'";
    EXPECT_TRUE(logged("error.[" + reader() + "]: FAILED to read " + std::to_string(c.bytes / 4) + " registers (" +
                       std::to_string(c.bytes) + " bytes) @ offset " + std::to_string(c.offset) + " in " + path + " " + c.area, LOG_ERR))
        << zt4test::logDump();
    EXPECT_EQ(bytesOf(buffer), bytesOf(zt4test::filledImage('\xEE')));
    EXPECT_EQ(fram(), shortMemory);
    if (c.write != nullptr) {  // the writer extends the memory by its block, no further
        const std::string imageBytes = patterned(zt4test::kImageWords * 2, 5);
        ASSERT_EQ(c.write(zt4test::imageOf(imageBytes).data()), 0);
        EXPECT_EQ(fram(), shortMemory.substr(0, c.offset) + imageBytes.substr(c.imageOffset, c.bytes));
    }
    removeFile(zt4test::kFramNode);
    EXPECT_EQ(readToBuffer(buffer.data()), 1);
    EXPECT_TRUE(logged("error.[" + reader() + "]: FAILED to fopen '" + framPath() + "'. No such file or directory"));
    EXPECT_FALSE(exists(zt4test::kFramNode));
}

INSTANTIATE_TEST_SUITE_P(Blocks, FramBlock, ::testing::ValuesIn(kBlocks), rowName);

class Fram : public zt4test::FramTest {};

TEST_F(Fram, AllIndicesAreWrittenAndTraced) {
    const std::string memory = patterned(8192, 2), imageBytes = patterned(zt4test::kImageWords * 2, 9);
    writeFram(memory);
    debug_level = 2;
    ASSERT_EQ(SetZT4AllEnergyIndex(zt4test::imageOf(imageBytes).data()), 0) << zt4test::logDump();
    std::string expected = memory;
    for (auto area : {std::make_pair(192, 56), {288, 152}, {480, 344}, {576, 3756}, {672, 3852}, {864, 4044}}) {
        expected.replace(area.first, 96, imageBytes.substr(area.second, 96));
    }
    EXPECT_EQ(fram(), expected);
    EXPECT_EQ(zt4test::loggedCount("[SetZT4EnergyIndex]: write 48 elmt of 2 bytes (96 bytes) @ offset "), 6);
    EXPECT_TRUE(logged("[SetZT4EnergyIndex]: write 48 elmt of 2 bytes (96 bytes) @ offset 864 in \"" + framPath() +
                       "\" ENERGY IMPORT REACTIVE RAW -", LOG_INFO)) << zt4test::logDump();
    std::vector<uint16_t> image(zt4test::kImageWords);
    ASSERT_EQ(GetZT4FRAMSag(image.data()), 0);
    EXPECT_TRUE(logged("[GetZT4FRAMSag]: read 6 nmemb of 2 bytes (12 bytes) @ offset 1152 in '" + framPath() + "' SAG", LOG_INFO));
    debug_level = 1;
    zt4test::clearLog();
    ASSERT_EQ(GetZT4FRAMSag(image.data()), 0);
    for (int index : {0, 3, 6, 8, 16, 58, 74, 75, 255}) {  // blocks the memory does not keep fail silently
        EXPECT_EQ(GetZT4EnergyIndex(image.data(), static_cast<uint8_t>(index)) + GetZT4EnergyIndexToRegister(image.data(), static_cast<uint8_t>(index)), 2);
    }
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
}

TEST_F(Fram, BadArgumentsAndUnwritableMemoryAreRefused) {
    writeFram(patterned());
    const std::tuple<int, int, const char*> nulls[] = {
        {GetZT4EnergyIndexToRegister(nullptr, 4), 1, "error.[GetZT4EnergyIndexToRegister]: zt4Rg NULL"},
        {GetZT4EnergyIndex(nullptr, 59), 1, "error.[GetZT4EnergyIndex]: zt4Rg NULL"},
        {SetZT4AllEnergyIndex(nullptr), 1, "error.[SetZT4AllEnergyIndex]: zt4Rg NULL"},
        {GetZT4FRAMOperatingTime(nullptr), 1, "error.[GetZT4FRAMOperatingTime]: ZT4 register is NULL"},
        {GetZT4FRAMSwellToRegister(nullptr), 1, "error.[GetZT4FRAMSwellToRegister]: zt4Rg NULL"},
        {GetZT4FRAMStartup(nullptr), 1, "error.[GetZT4FRAMStartup]: zt4Rg NULL"},
        {SetZT4FRAMOverCurrent(nullptr), -1, "error.[SetZT4FRAMOverCurrent]: zt4Rg NULL"},
        {fram_get_register(nullptr, 96, 4, 2), -1, "error.[fram_get_register]: zt4Rg NULL"}};
    for (const auto& [result, expected, message] : nulls) EXPECT_TRUE(result == expected && logged(message, LOG_ERR)) << message;
    EXPECT_EQ(fram(), patterned());
    removeFile(zt4test::kFramNode);
    std::filesystem::create_directories(framPath());  // a directory where the memory should be
    const std::vector<uint16_t> image = zt4test::filledImage('\x11');
    EXPECT_EQ(SetZT4AllEnergyIndex(image.data()), 1);
    EXPECT_EQ(SetZT4FRAMSag(image.data()), -1);
    EXPECT_TRUE(logged("error.[SetZT4AllEnergyIndex]: FAILED to fopen '" + framPath() + "'. Is a directory"));
    EXPECT_TRUE(logged("error.[SetZT4FRAMSag]: FAILED to fopen '" + framPath() + "'. Is a directory"));
}

// Writes that stop short: a file-size limit in a copy of this process (the bare clone system call,
// as in the power-cut test) cuts every write at `limit` bytes; nothing at or past it changes.
const uint16_t kZeroImage[zt4test::kImageWords] = {};

TEST_F(Fram, ShortWritesAreReportedAndStopAtTheLimit) {
    copyExampleDevice();
    const std::tuple<int (*)(), long, int, const char*> writes[] = {  // writer, limit, result, message ("PATH": the memory's path)
        {[] { return SetZT4FRAMSag(kZeroImage); }, 1157, -1, "error.[SetZT4FRAMSag]: FAILED to write 3 registers (12 bytes) @ offset 1152 in 'PATH' SAG"},
        {[] { return SetZT4AllEnergyIndex(kZeroImage); }, 300, 1, "error.[SetZT4EnergyIndex]: FAILED to write 24 registers (96 bytes) @ offset 288 in \"PATH\" ENERGY IMPORT REACTIVE +"},
        {[] { return fram_write_version(2); }, 4096, -1, "error.[fram_write_version]: FAILED to write FRAM version 2 @ offset 4096 in 'PATH'"},
        {[] { return upgrade_register_energy(0, 1, 4); }, 232, -1, "error.[upgrade_register_energy]: FAILED to write 96 bytes @192 (c0) in FRAM memory"}};
    for (const auto& [write, limit, result, text] : writes) {
        writeFram(patterned());
        const std::string message = withPath(text);
        const pid_t child = static_cast<pid_t>(syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0));
        ASSERT_GE(child, 0);
        if (child == 0) {
            signal(SIGXFSZ, SIG_IGN);
            const struct rlimit size = {static_cast<rlim_t>(limit), static_cast<rlim_t>(limit)};
            setrlimit(RLIMIT_FSIZE, &size);
            zt4test::clearLog();
            _exit(write() == result && logged(message, LOG_ERR) ? 0 : 1);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "result or message differs: " << message;
        EXPECT_EQ(fram().substr(static_cast<std::size_t>(limit)), patterned().substr(static_cast<std::size_t>(limit)));
    }
}

TEST_F(Fram, VersionByteReadsAsASignedByteAndIsWrittenAlone) {
    std::string memory = patterned();
    for (const auto& [stored, read] : {std::make_pair(0, 0), {1, 1}, {2, 2}, {0x7F, 127}, {0xFF, -1}, {0xFE, -2}, {0x80, -128}}) {
        memory[4096] = static_cast<char>(stored);
        writeFram(memory);
        EXPECT_EQ(fram_read_version(), read) << stored;
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
    for (const auto& [content, expected] : {std::make_pair("2\n", 2), {"1", 1}, {"0\n", 0}, {"12\n", 12}, {"1234\n", 123}, {"", -1}}) {
        writeFile("/var/tmp/fram", content);
        EXPECT_EQ(system_fram_read_version(), expected) << content;
    }
    removeFile("/var/tmp/fram");
    EXPECT_EQ(system_fram_read_version(), -1);
}

TEST_F(Fram, LayoutsReadTheirArea) {
    writeFram(patterned());
    const std::tuple<unsigned, unsigned, std::size_t, int, std::size_t, const char*> reads[] = {  // version, block, size, result, from, message
        {0, 4, 72, 0, 0, ""}, {0, 5, 72, 0, 72, ""}, {1, 4, 96, 0, 192, ""}, {2, 5, 96, 0, 288, ""}, {0, 7, 72, 0, 0, ""},
        {2, 56, 96, 0, 0, ""}, {3, 4, 96, -1, 0, ""}, {0, 4, 96, -1, 0, "error.[fram_get_register]: size (96 bytes) is wrong 36"},
        {2, 4, 72, -1, 0, "error.[fram_get_register]: size (72 bytes) is wrong 48"},
        {1, 5, 0, -1, 0, "error.[fram_get_register]: size (0 bytes) is wrong 48"}};
    for (const auto& [version, index, size, result, from, message] : reads) {
        zt4test::clearLog();
        std::vector<uint16_t> buffer = zt4test::filledImage('\xEE');
        EXPECT_EQ(fram_get_register(buffer.data(), size, static_cast<uint8_t>(index), static_cast<uint8_t>(version)), result);
        std::string expected = bytesOf(zt4test::filledImage('\xEE'));
        if (result == 0) expected.replace(0, size, patterned().substr(from, size));
        EXPECT_EQ(bytesOf(buffer), expected) << version << " " << index;
        EXPECT_EQ(zt4test::loggedLines(), *message ? std::vector<std::string>{message} : std::vector<std::string>{});
    }
}

TEST_F(Fram, CountersBecomeTheLow32BitsOfTheirWholeValueAndHoursSecondsAndNanoseconds) {
    // Every 32-bit position of the image holds 7.75; the counters' registers become 7.
    const std::string floats = bytesOfValues(Floats(zt4test::kImageWords / 2, 7.75f));
    const std::tuple<unsigned, std::size_t, std::size_t> blocks[] = {  // block, base address, registers
        {17, 592, 24}, {18, 640, 3}, {19, 646, 3}, {22, 724, 18}, {16, 544, 0}, {20, 652, 0}, {21, 688, 0}, {4, 28, 0}};
    for (const auto& [index, base, registers] : blocks) {
        std::vector<uint16_t> image = zt4test::imageOf(floats);
        convert_float_to_integer(image.data(), static_cast<uint8_t>(index));
        EXPECT_EQ(bytesOf(image), std::string(floats).replace(base * 2, registers * 4, bytesOfValues(Unsigned(registers, 7)))) << index;
    }
    // From 2^64 up, the whole value saturates at 2^64 - 1.
    std::vector<uint16_t> image = zt4test::imageOf(std::string(724 * 2, '\0') + bytesOfValues(Floats{0.0f, 0.99f, 41.5f, 16777216.0f, 4294967296.0f, 5000000000.0f, -3.0f, 18446744073709551616.0f, 1e30f}));
    convert_float_to_integer(image.data(), 22);
    EXPECT_EQ(bytesOf(image).substr(724 * 2, 36), bytesOfValues(Unsigned{0, 0, 41, 16777216, 0, 705032704, 0, 4294967295u, 4294967295u}));

    std::string memory = patterned();
    memory.replace(960, 96, bytesOfValues(Floats{1.5f, 0.125f, 1.0f / 4096, 8760.5f, 0.0f, -2.0f}) + std::string(72, '\0'));
    writeFram(memory);
    image = zt4test::filledImage('\xAA');
    ASSERT_EQ(GetZT4FRAMOperatingTime(image.data()), 0) << zt4test::logDump();
    std::string expected = bytesOf(zt4test::filledImage('\xAA'));
    expected.replace(544 * 2, 96, memory.substr(960, 96));
    expected.replace(880 * 2, 96, bytesOfValues(Unsigned{5400, 450, 0, 31537800, 0, 0}) + std::string(72, '\0'));
    expected.replace(928 * 2, 96, bytesOfValues(Unsigned{0, 0, 878906250, 0, 0, 0}) + std::string(72, '\0'));
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

TEST_F(Fram, ReLayoutSplitsTheConnectorTotalByMode) {
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
                             "@addr [3][0].Mode 1", "@addr [3][0] -> @addr [3][1] | size 4 bytes", "@addr [3][1] -> @addr [3][2] | size 4 bytes",
                             "@addr [5][2] -> @addr [5][3] | size 4 bytes", "Write 96 bytes @288 (120) in FRAM memory"}) {
        EXPECT_TRUE(logged(std::string("[upgrade_register_energy]: ") + line, LOG_INFO)) << line;
    }
    debug_level = 0;
    writeFram(memory);  // refused arguments and a missing configuration write nothing
    const std::tuple<unsigned, unsigned, unsigned, bool, int> refusals[] = {  // from, to, block, configured, result
        {1, 2, 4, true, -1}, {0, 1, 7, true, -1}, {0, 0, 4, true, 0}, {0, 3, 5, true, 0}, {0, 1, 4, false, -1}};
    for (const auto& [from, to, index, configured, result] : refusals) {
        EXPECT_EQ(zt4::fram::upgradeEnergyBlock(static_cast<uint8_t>(from), static_cast<uint8_t>(to), static_cast<uint8_t>(index),
                                                configured ? modesFromTest : noConfiguration), result) << from << to << index;
        EXPECT_EQ(fram(), memory);
    }
    EXPECT_TRUE(logged("[upgrade_register_energy]: FAILED to read configuration from zt4config.json", LOG_INFO));
}

// A row of data/fram_upgrades.txt: label, memory's version, /var/tmp/fram ("-": none), default
// version, result, version after, re-laid out, converted, message at level 3 ("PATH": the memory's path).
using UpgradeCase = std::vector<std::string>;
std::vector<UpgradeCase> upgrades() {
    std::vector<UpgradeCase> rows;
    auto file = zt4test::sections("fram_upgrades.txt");
    for (const std::string& row : file[""]) rows.push_back(zt4test::fields(row, 9));
    return rows;
}

class FramUpgrade : public zt4test::FramTest, public ::testing::WithParamInterface<UpgradeCase> {
protected:
    void SetUp() override {
        FramTest::SetUp();
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
    const unsigned memoryVersion = std::stoul(c[1]);
    const std::string memory = oldMemory(memoryVersion);
    writeFram(memory);
    if (c[2] != "-") writeFile("/var/tmp/fram", c[2] + "\n");
    EXPECT_EQ(fram_upgrade_version(static_cast<uint8_t>(std::stoul(c[3]))), std::stoi(c[4])) << zt4test::logDump();
    std::string expected = memory;
    expected[4096] = static_cast<char>(std::stoul(c[5]));
    if (c[6] == "relaid") expected.replace(192, 192, bytesOfValues(kExampleRelaid) + bytesOfValues(kExampleRelaid));
    if (c[7] == "converted") {
        expected.replace(1056, 192, bytesOfValues(Unsigned(24, 12)) + bytesOfValues(Unsigned{3, 1, 2, 0, 1, 7}) +
                                        bytesOfValues(Unsigned{4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 705032704, 0, 0, 0, 0, 0}));
    }
    EXPECT_EQ(fram(), expected);
    EXPECT_TRUE(c[8].empty() || logged(withPath(c[8]), LOG_ERR)) << zt4test::logDump();
    EXPECT_TRUE(memoryVersion > 2 || logged("FRAM memory version " + c[1], LOG_INFO));
}

INSTANTIATE_TEST_SUITE_P(Versions, FramUpgrade, ::testing::ValuesIn(upgrades()), [](const auto& row) { return row.param[0]; });

TEST_F(FramUpgrade, UnreadableVersionIsAlsoReportedOnStderr) {
    writeFile("/var/tmp/fram", "2\n");
    writeFram(oldMemory(255));
    testing::internal::CaptureStderr();
    EXPECT_EQ(fram_upgrade_version(2), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr().rfind("Failed to read FRAM version in FRAM memory: ", 0), 0u);
}

TEST_F(FramUpgrade, FailedStepsKeepTheVersionAndWhatCannotBeRedone) {
    removeFile("/home/nvram/zt4config.json");  // no modes: the energies cannot be re-laid out
    writeFile("/var/tmp/fram", "2\n");
    writeFram(oldMemory(0));
    EXPECT_NE(fram_upgrade_version(2), 0);
    EXPECT_EQ(fram(), oldMemory(0)) << "counters converted although the upgrade will run again";
    writeFram(oldMemory(1).substr(0, 1160));  // ends inside the sags: only the start-ups are converted
    EXPECT_EQ(fram_convert_data_type(), 0);
    EXPECT_EQ(fram(), oldMemory(1).substr(0, 1056) + bytesOfValues(Unsigned(24, 12)) + oldMemory(1).substr(1152, 8));
}

// A writer of energy indices killed at any moment: every index reads back whole, as the value
// before or after the write. Each block goes to the memory in one positioned write of 96 bytes
// inside one page, which a kill either prevents or lets finish, so no block is split either; only
// different blocks may come from different writes (a kill between two of the six).
constexpr uint8_t kEnergyBlocks[] = {4, 5, 7, 56, 57, 59};
constexpr std::size_t kBases[] = {28, 76, 172, 1878, 1926, 2022};  // their word addresses

// Image 0 holds a distinct value in every energy register; image 1 its complement.
std::vector<uint16_t> energyImage(uint16_t mask) {
    std::vector<uint16_t> image(zt4test::kImageWords);
    for (std::size_t b = 0; b < 6; ++b) {
        for (std::size_t w = 0; w < 48; ++w) image[kBases[b] + w] = static_cast<uint16_t>((b * 100 + w + 1) ^ mask);
    }
    return image;
}

using FramPowerCut = zt4test::FramTest;

TEST_F(FramPowerCut, KilledWriterLeavesEveryIndexOldOrNew) {
    const std::vector<uint16_t> images[2] = {energyImage(0), energyImage(0xFFFF)};
    std::string memory = zt4test::patterned();
    memory[4096] = 2;
    writeFram(memory);
    long long longest = 0;  // the longest whole write bounds the random moment of each kill
    for (int i = 0; i < 6; ++i) {
        const auto start = std::chrono::steady_clock::now();
        ASSERT_EQ(SetZT4AllEnergyIndex(images[i % 2].data()), 0);
        longest = std::max<long long>(longest, std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start).count());
    }
    const long long window = std::clamp(longest * 4, 500LL, 20000LL);
    const unsigned seed = std::random_device{}();
    std::mt19937 random(seed);
    int betweenBlocks = 0;
    for (int round = 0; round < 200; ++round) {
        // The bare clone system call, because glibc's fork() child does not survive qemu-arm.
        const pid_t child = static_cast<pid_t>(syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0));
        ASSERT_GE(child, 0);
        if (child == 0) {
            alarm(10);  // never outlive a parent that failed to kill
            for (unsigned i = static_cast<unsigned>(round);; ++i) SetZT4AllEnergyIndex(images[i % 2].data());
        }
        usleep(static_cast<useconds_t>(std::uniform_int_distribution<long long>(0, window)(random)));
        ASSERT_EQ(kill(child, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << "round " << round;
        std::vector<uint16_t> read(zt4test::kImageWords);
        bool seen[2] = {false, false};
        for (std::size_t b = 0; b < 6; ++b) {
            ASSERT_EQ(GetZT4EnergyIndex(read.data(), kEnergyBlocks[b]), 0);
            const int from = read[kBases[b]] == images[0][kBases[b]] ? 0 : 1;  // the write its first word came from
            seen[from] = true;
            ASSERT_TRUE(std::equal(&read[kBases[b]], &read[kBases[b] + 48], &images[from][kBases[b]]))
                << "block " << unsigned{kEnergyBlocks[b]} << " mixes two writes; round " << round << ", seed " << seed;
        }
        betweenBlocks += seen[0] && seen[1];
        const std::string after = fram();
        ASSERT_EQ(after.size(), memory.size());
        ASSERT_EQ(after[4096], 2) << "the version byte changed";
        ASSERT_EQ(after.substr(384, 96), memory.substr(384, 96)) << "an export area was written";
    }
    EXPECT_GT(betweenBlocks, 0) << "no kill landed inside a write; window " << window << " us";
    std::printf("FRAM power cut: 200 kills, window %lld us, %d between two blocks of one write\n", window, betweenBlocks);
}

}  // namespace
