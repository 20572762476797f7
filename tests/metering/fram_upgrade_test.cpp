// Layout versions of the FRAM: the version byte, the expected version, the re-layout of the
// version-0 energies, the conversion of the counters to integers, and the upgrade that combines
// them and records the new version only when everything before it succeeded.
#include <syslog.h>

#include <filesystem>
#include <string>
#include <vector>

#include "metering/fram_fixture.hpp"
#include "metering/fram_upgrade.hpp"
#include "zt4config.h"

namespace {

using zt4test::floatsBytes;
using zt4test::logged;
using zt4test::unsignedBytes;

class FramVersion : public zt4test::FramTest {
protected:
    std::string memoryWithVersion(unsigned char version) const {
        std::string memory = zt4test::patterned(zt4test::kFramBytes);
        memory[4096] = static_cast<char>(version);
        return memory;
    }
};

struct VersionByteCase {
    unsigned char stored;
    int read;
};

class FramVersionByte : public FramVersion, public ::testing::WithParamInterface<VersionByteCase> {};

TEST_P(FramVersionByte, ReadsAsASignedByte) {
    writeFram(memoryWithVersion(GetParam().stored));
    EXPECT_EQ(fram_read_version(), GetParam().read);
}

INSTANTIATE_TEST_SUITE_P(Bytes, FramVersionByte, ::testing::Values(
    VersionByteCase{0, 0}, VersionByteCase{1, 1}, VersionByteCase{2, 2}, VersionByteCase{0x7F, 127},
    VersionByteCase{0xFF, -1}, VersionByteCase{0xFE, -2}, VersionByteCase{0x80, -128}));

TEST_F(FramVersion, UnreadableByteReadsAsMinusOne) {
    EXPECT_EQ(fram_read_version(), -1);
    EXPECT_TRUE(logged("error.[fram_read_version]: FAILED to fopen '" + framPath() +
                       "'. No such file or directory"));
    writeFram(zt4test::patterned(4096));  // ends just before the version byte
    EXPECT_EQ(fram_read_version(), -1);
}

TEST_F(FramVersion, ByteIsTracedAboveDebugLevelOne) {
    writeFram(memoryWithVersion(2));
    debug_level = 1;
    EXPECT_EQ(fram_read_version(), 2);
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
    debug_level = 2;
    EXPECT_EQ(fram_read_version(), 2);
    EXPECT_TRUE(logged("[fram_read_version]: FRAM version: 2", LOG_INFO)) << zt4test::logDump();
}

struct VersionWriteCase {
    unsigned version;
    int result;
};

class FramVersionWrite : public FramVersion, public ::testing::WithParamInterface<VersionWriteCase> {};

TEST_P(FramVersionWrite, ChangesOnlyTheVersionByte) {
    const VersionWriteCase& c = GetParam();
    const std::string memory = memoryWithVersion(0xFF);
    writeFram(memory);
    EXPECT_EQ(fram_write_version(static_cast<uint8_t>(c.version)), c.result);
    std::string expected = memory;
    if (c.result == 0) expected[4096] = static_cast<char>(c.version);
    EXPECT_EQ(fram(), expected);
}

INSTANTIATE_TEST_SUITE_P(Versions, FramVersionWrite, ::testing::Values(
    VersionWriteCase{0, 0}, VersionWriteCase{1, 0}, VersionWriteCase{2, 0}, VersionWriteCase{3, -1},
    VersionWriteCase{255, -1}));

TEST_F(FramVersion, WriteCreatesOrExtendsTheMemoryUpToTheByteOnly) {
    ASSERT_EQ(fram_write_version(1), 0);
    EXPECT_EQ(fram(), std::string(4096, '\0') + "\x01");
    const std::string head = zt4test::patterned(200);
    writeFram(head);
    ASSERT_EQ(fram_write_version(2), 0);
    EXPECT_EQ(fram(), head + std::string(4096 - 200, '\0') + "\x02");
}

struct SystemVersionCase {
    const char* content;  // of /var/tmp/fram; nullptr: no file
    int expected;
};

class FramSystemVersion : public FramVersion, public ::testing::WithParamInterface<SystemVersionCase> {};

TEST_P(FramSystemVersion, IsTheFirstLineAsANumber) {
    if (GetParam().content != nullptr) writeFile("/var/tmp/fram", GetParam().content);
    EXPECT_EQ(system_fram_read_version(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Files, FramSystemVersion, ::testing::Values(
    SystemVersionCase{"2\n", 2}, SystemVersionCase{"1", 1}, SystemVersionCase{"0\n", 0},
    SystemVersionCase{"12\n", 12}, SystemVersionCase{"1234\n", 123}, SystemVersionCase{"", -1},
    SystemVersionCase{nullptr, -1}));

// fram_get_register: the energy blocks of a given layout.
struct LayoutReadCase {
    const char* label;
    unsigned version;
    unsigned index;
    std::size_t size;
    int result;
    std::size_t offset;  // where the bytes come from, when the read succeeds
    const char* message;  // logged at level 3, when not empty ("PATH" stands for the memory)
};

const LayoutReadCase kLayoutReads[] = {
    {"Version0Active", 0, 4, 72, 0, 0, ""},
    {"Version0Reactive", 0, 5, 72, 0, 72, ""},
    {"Version1Active", 1, 4, 96, 0, 192, ""},
    {"Version2Reactive", 2, 5, 96, 0, 288, ""},
    {"OtherBlockReadsFromTheStart", 0, 7, 72, 0, 0, ""},
    {"OtherBlockOfLayout2", 2, 56, 96, 0, 0, ""},
    {"UnknownVersion", 3, 4, 96, -1, 0, ""},
    {"Version0WithNewSize", 0, 4, 96, -1, 0, "error.[fram_get_register]: size (96 bytes) is wrong 36"},
    {"Version2WithOldSize", 2, 4, 72, -1, 0, "error.[fram_get_register]: size (72 bytes) is wrong 48"},
    {"ZeroSize", 1, 4, 0, -1, 0, "error.[fram_get_register]: size (0 bytes) is wrong 48"},
};

class FramLayoutRead : public FramVersion, public ::testing::WithParamInterface<LayoutReadCase> {};

TEST_P(FramLayoutRead, ReadsTheLayoutsArea) {
    const LayoutReadCase& c = GetParam();
    const std::string memory = zt4test::patterned(zt4test::kFramBytes);
    writeFram(memory);
    std::vector<uint16_t> buffer = zt4test::filledImage(0xEE);
    EXPECT_EQ(fram_get_register(buffer.data(), c.size, static_cast<uint8_t>(c.index),
                                static_cast<uint8_t>(c.version)),
              c.result);
    const std::string got = zt4test::bytesOf(buffer);
    if (c.result == 0) {
        EXPECT_EQ(got.substr(0, c.size), memory.substr(c.offset, c.size));
        EXPECT_EQ(got.substr(c.size), std::string(got.size() - c.size, '\xEE'));
    } else {
        EXPECT_EQ(got, std::string(got.size(), '\xEE'));
    }
    if (*c.message != '\0') {
        EXPECT_TRUE(logged(c.message, LOG_ERR)) << zt4test::logDump();
    } else {
        EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
    }
}

INSTANTIATE_TEST_SUITE_P(Reads, FramLayoutRead, ::testing::ValuesIn(kLayoutReads),
                         [](const auto& row) { return std::string(row.param.label); });

TEST_F(FramVersion, LayoutReadOfAShortMemoryNamesTheOldArea) {
    writeFram(zt4test::patterned(100));
    uint16_t buffer[36] = {};
    EXPECT_EQ(fram_get_register(buffer, sizeof buffer, 5, 0), -1);
    EXPECT_TRUE(logged("error.[fram_get_register]: FAILED to read 18 registers (72 bytes) @ offset 72 in \"" +
                           framPath() + "\" ENERGY IMPORT REACTIVE +",
                       LOG_ERR))
        << zt4test::logDump();
}

// The re-layout of one energy block from 3 values per connector to 4, by wiring mode.
struct RelayCase {
    unsigned mode;
    std::vector<float> relaid;  // of connector 0, whose old values are 10, 2, 3
};

uint8_t gMode = 0;
bool modesFromTest(zt4Data& data) {
    for (ConnectorConfig& connector : data.connectors) connector.channels[0].mode = gMode;
    return true;
}
bool failingConfiguration(zt4Data&) { return false; }

class FramOldEnergies : public FramVersion {
protected:
    // Old values of connector c: 10 (c + 1), 2, 3.
    static std::string oldEnergies() {
        std::vector<float> values;
        for (int c = 0; c < 6; ++c) values.insert(values.end(), {10.0f * (c + 1), 2.0f, 3.0f});
        return floatsBytes(values);
    }
};

class FramRelay : public FramOldEnergies, public ::testing::WithParamInterface<RelayCase> {};

TEST_P(FramRelay, SplitsTheConnectorTotalByMode) {
    const RelayCase& c = GetParam();
    std::string memory = zt4test::patterned(zt4test::kFramBytes);
    memory.replace(72, 72, oldEnergies());
    writeFram(memory);
    gMode = static_cast<uint8_t>(c.mode);
    ASSERT_EQ(zt4::fram::upgradeEnergyBlock(0, 1, 5, modesFromTest), 0) << zt4test::logDump();

    std::string expected = memory;
    expected.replace(288, 16, floatsBytes(c.relaid));
    EXPECT_EQ(fram().substr(0, 304), expected.substr(0, 304));
    EXPECT_EQ(fram().substr(304), expected.substr(304).replace(0, 80, fram().substr(304, 80)));
    EXPECT_TRUE(logged("[upgrade_register_energy]: Write 96 bytes @288 (120) in FRAM memory", LOG_INFO))
        << zt4test::logDump();
}

INSTANTIATE_TEST_SUITE_P(Modes, FramRelay, ::testing::Values(
    RelayCase{0, {0, 10, 2, 3}}, RelayCase{1, {0, 10, 2, 3}}, RelayCase{2, {10, 5, 2, 3}},
    RelayCase{3, {0, 10, 2, 3}}, RelayCase{4, {10, 5, 2, 3}}, RelayCase{5, {0, 10, 2, 3}},
    RelayCase{6, {10, 5, 2, 3}}));

TEST_F(FramOldEnergies, ExampleDeviceRelaysEveryConnectorByItsMode) {
    std::filesystem::copy(ZT4_EXAMPLE_DEVICE, root(),
                          std::filesystem::copy_options::recursive | std::filesystem::copy_options::overwrite_existing);
    std::string memory = zt4test::patterned(zt4test::kFramBytes);
    memory.replace(0, 72, oldEnergies());
    writeFram(memory);
    debug_level = 4;
    ASSERT_EQ(upgrade_register_energy(0, 2, 4), 0) << zt4test::logDump();
    // Connectors 1 to 3 are wired "Triphase" (4), 4 and 5 "Monophase" (1), 6 disabled (0).
    const std::vector<float> relaid = {10, 5, 2, 3, 20, 15, 2, 3, 30, 25, 2, 3,
                                       0, 40, 2, 3, 0, 50, 2, 3, 0, 60, 2, 3};
    std::string expected = memory;
    expected.replace(192, 96, floatsBytes(relaid));
    EXPECT_EQ(fram(), expected);
    for (const char* line : {"[upgrade_register_energy]: @addr [0][0].Mode 4",
                             "[upgrade_register_energy]: @addr [0][0] -> @addr [0][0] | size 4 bytes",
                             "[upgrade_register_energy]: -> @addr [0][1] | size 4 bytes",
                             "[upgrade_register_energy]: @addr [3][0].Mode 1",
                             "[upgrade_register_energy]: @addr [3][0] -> @addr [3][1] | size 4 bytes",
                             "[upgrade_register_energy]: @addr [3][1] -> @addr [3][2] | size 4 bytes",
                             "[upgrade_register_energy]: @addr [5][2] -> @addr [5][3] | size 4 bytes",
                             "[upgrade_register_energy]: Write 96 bytes @192 (c0) in FRAM memory"}) {
        EXPECT_TRUE(logged(line, LOG_INFO)) << line << "\n" << zt4test::logDump();
    }
}

struct RelayRefusalCase {
    const char* label;
    unsigned from, to, index;
    bool configured;
    int result;
    const char* message;  // at level 6 when not empty
};

class FramRelayRefusal : public FramOldEnergies, public ::testing::WithParamInterface<RelayRefusalCase> {};

TEST_P(FramRelayRefusal, WritesNothing) {
    const RelayRefusalCase& c = GetParam();
    std::string memory = zt4test::patterned(zt4test::kFramBytes);
    writeFram(memory);
    gMode = 4;
    EXPECT_EQ(zt4::fram::upgradeEnergyBlock(static_cast<uint8_t>(c.from), static_cast<uint8_t>(c.to),
                                            static_cast<uint8_t>(c.index),
                                            c.configured ? modesFromTest : failingConfiguration),
              c.result);
    EXPECT_EQ(fram(), memory);
    if (*c.message != '\0') {
        EXPECT_TRUE(logged(c.message, LOG_INFO)) << zt4test::logDump();
    }
}

INSTANTIATE_TEST_SUITE_P(Arguments, FramRelayRefusal, ::testing::Values(
    RelayRefusalCase{"FromLayout1", 1, 2, 4, true, -1, ""},
    RelayRefusalCase{"BlockNotInTheOldLayout", 0, 1, 7, true, -1, ""},
    RelayRefusalCase{"TargetLayout0", 0, 0, 4, true, 0, ""},
    RelayRefusalCase{"TargetLayout3", 0, 3, 5, true, 0, ""},
    RelayRefusalCase{"NoConfiguration", 0, 1, 4, false, -1,
                     "[upgrade_register_energy]: FAILED to read configuration from zt4config.json"}),
    [](const auto& row) { return std::string(row.param.label); });

// Whole upgrades on a memory with old energies, float counters and a version byte.
struct UpgradeCase {
    const char* label;
    unsigned memoryVersion;   // 0xFF: blank
    const char* systemFile;   // /var/tmp/fram; nullptr: none
    unsigned defaultVersion;
    int result;
    unsigned versionAfter;
    bool energiesRelaid;
    bool countersConverted;
    const char* message;  // at level 3 when not empty
};

const UpgradeCase kUpgrades[] = {
    {"BlankMemory", 0xFF, "2", 2, -1, 0xFF, false, false, "error.[fram_upgrade_version]: FAILED to read FRAM version 'PATH'."},
    {"From0To2", 0, "2\n", 2, 0, 2, true, true, ""},
    {"From0To1", 0, "1\n", 2, 0, 1, true, false, ""},
    {"From1To2", 1, "2\n", 2, 0, 2, false, true, ""},
    {"From1Down0", 1, "0\n", 2, 0, 1, false, false, ""},
    {"From2Down1", 2, "1\n", 2, -1, 2, false, false, ""},
    {"AlreadyAt2", 2, "2\n", 2, 0, 2, false, false, ""},
    {"UnknownMemoryVersion", 5, "2\n", 2, -1, 5, false, false, ""},
    {"NoSystemFileDefault3", 0, nullptr, 3, -1, 0, false, false,
     "error.[fram_upgrade_version]: FAILED to read FRAM version in file system."},
    {"NoSystemFileDefault2", 1, nullptr, 2, 0, 2, false, true,
     "error.[fram_upgrade_version]: FAILED to read FRAM version in file system."},
    {"NoSystemFileDefault1", 0, nullptr, 1, 0, 1, true, false, ""},
    {"SystemExpectsUnknownLayout", 0, "3\n", 2, -1, 0, false, false,
     "error.[fram_upgrade_version]: FRAM version 3 in file system is not supported"},
};

class FramUpgradeBase : public FramOldEnergies {
protected:
    void SetUp() override {
        FramOldEnergies::SetUp();
        std::filesystem::copy(ZT4_EXAMPLE_DEVICE, root(),
                              std::filesystem::copy_options::recursive |
                                  std::filesystem::copy_options::overwrite_existing);
        removeFile("/var/tmp/fram");
    }
    static std::string oldMemory(unsigned version) {
        std::string memory = zt4test::patterned(zt4test::kFramBytes);
        memory.replace(0, 72, oldEnergies());
        memory.replace(72, 72, oldEnergies());
        memory.replace(1056, 96, floatsBytes(std::vector<float>(24, 12.0f)));
        memory.replace(1152, 12, floatsBytes({3.0f, 1.0f, 2.9f}));
        memory.replace(1164, 12, floatsBytes({0.5f, 1.0f, 7.99f}));
        std::vector<float> overCurrents(18, 0.0f);
        overCurrents[0] = 4.0f;
        overCurrents[12] = 5000000000.0f;
        overCurrents[17] = -3.0f;
        memory.replace(1176, 72, floatsBytes(overCurrents));
        memory[4096] = static_cast<char>(version);
        return memory;
    }
};

class FramUpgrade : public FramUpgradeBase, public ::testing::WithParamInterface<UpgradeCase> {};

TEST_P(FramUpgrade, BringsTheMemoryToTheExpectedVersion) {
    const UpgradeCase& c = GetParam();
    const std::string memory = oldMemory(c.memoryVersion);
    writeFram(memory);
    if (c.systemFile != nullptr) writeFile("/var/tmp/fram", c.systemFile);

    EXPECT_EQ(fram_upgrade_version(static_cast<uint8_t>(c.defaultVersion)), c.result) << zt4test::logDump();

    std::string expected = memory;
    expected[4096] = static_cast<char>(c.versionAfter);
    if (c.energiesRelaid) {
        const std::vector<float> active = {10, 5, 2, 3, 20, 15, 2, 3, 30, 25, 2, 3,
                                           0, 40, 2, 3, 0, 50, 2, 3, 0, 60, 2, 3};
        expected.replace(192, 96, floatsBytes(active));
        expected.replace(288, 96, floatsBytes(active));
    }
    if (c.countersConverted) {
        expected.replace(1056, 96, unsignedBytes(std::vector<uint32_t>(24, 12)));
        expected.replace(1152, 12, unsignedBytes({3, 1, 2}));
        expected.replace(1164, 12, unsignedBytes({0, 1, 7}));
        std::vector<uint32_t> overCurrents(18, 0);
        overCurrents[0] = 4;
        overCurrents[12] = 705032704;  // the low 32 bits of 5000000000
        expected.replace(1176, 72, unsignedBytes(overCurrents));
    }
    EXPECT_EQ(fram(), expected);

    std::string message = c.message;
    const std::size_t at = message.find("PATH");
    if (at != std::string::npos) message.replace(at, 4, framPath());
    if (!message.empty()) {
        EXPECT_TRUE(logged(message, LOG_ERR)) << zt4test::logDump();
    }
    if (c.memoryVersion <= 2) {
        EXPECT_TRUE(logged("FRAM memory version " + std::to_string(c.memoryVersion), LOG_INFO)) << zt4test::logDump();
    }
}

INSTANTIATE_TEST_SUITE_P(Versions, FramUpgrade, ::testing::ValuesIn(kUpgrades),
                         [](const auto& row) { return std::string(row.param.label); });

TEST_F(FramUpgradeBase, FailedReLayoutKeepsTheVersionAndTheCounters) {
    removeFile("/home/nvram/zt4config.json");  // the modes cannot be read
    writeFile("/var/tmp/fram", "2\n");
    const std::string memory = oldMemory(0);
    writeFram(memory);
    EXPECT_NE(fram_upgrade_version(2), 0);
    EXPECT_EQ(fram(), memory);
    EXPECT_TRUE(logged("FRAM memory version in system 2", LOG_INFO)) << zt4test::logDump();
}

TEST_F(FramUpgradeBase, CountersConvertWhereReadableOnly) {
    // The memory ends inside the sags: only the start-ups can be read and converted.
    writeFram(oldMemory(1).substr(0, 1160));
    EXPECT_EQ(fram_convert_data_type(), 0);
    const std::string after = fram();
    EXPECT_EQ(after.size(), 1160u);
    EXPECT_EQ(after.substr(1056, 96), unsignedBytes(std::vector<uint32_t>(24, 12)));
    EXPECT_EQ(after.substr(1152), oldMemory(1).substr(1152, 8));
}

}  // namespace
