// Energy and counter blocks between the FRAM and the register image: each operation moves exactly
// its block's bytes between its FRAM area and its place in the image, and a failure leaves the
// caller's memory and the FRAM as they were.
#include <fcntl.h>
#include <syslog.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "metering/fram_fixture.hpp"
#include "zt4config.h"

namespace {

using zt4test::logged;

// Bytes that this process has read and written through system calls so far.
struct IoCounters {
    long long readBytes = 0;
    long long writtenBytes = 0;
    long long selfBytes = 0;  // what reading /proc/self/io itself added to readBytes
};

IoCounters ioCounters() {
    IoCounters counters;
    const int descriptor = open("/proc/self/io", O_RDONLY);
    if (descriptor < 0) return counters;
    char text[512];
    const ssize_t got = read(descriptor, text, sizeof text - 1);
    close(descriptor);
    if (got <= 0) return counters;
    text[got] = '\0';
    counters.selfBytes = got;
    std::sscanf(text, "rchar: %lld wchar: %lld", &counters.readBytes, &counters.writtenBytes);
    return counters;
}

struct BlockCase {
    const char* label;
    std::function<int(uint16_t*)> toBuffer;
    std::function<int(uint16_t*)> toImage;
    std::function<int(const uint16_t*)> write;  // empty for the energies (written all at once)
    const char* bufferReader;
    const char* imageReader;
    std::size_t offset;       // in the FRAM
    std::size_t bytes;
    std::size_t imageOffset;  // bytes from the start of the image
    unsigned registers;
    const char* area;
    bool energy;  // messages quote the path in double quotes
};

std::function<int(uint16_t*)> energyToBuffer(uint8_t index) {
    return [index](uint16_t* buffer) { return GetZT4EnergyIndexToRegister(buffer, index); };
}
std::function<int(uint16_t*)> energyToImage(uint8_t index) {
    return [index](uint16_t* image) { return GetZT4EnergyIndex(image, index); };
}

const BlockCase kEnergies[] = {
    {"ActiveImport", energyToBuffer(4), energyToImage(4), {}, "GetZT4EnergyIndexToRegister",
     "GetZT4EnergyIndex", 192, 96, 56, 24, "ENERGY IMPORT ACTIVE", true},
    {"ReactiveImport", energyToBuffer(5), energyToImage(5), {}, "GetZT4EnergyIndexToRegister",
     "GetZT4EnergyIndex", 288, 96, 152, 24, "ENERGY IMPORT REACTIVE +", true},
    {"ReactiveNegative", energyToBuffer(7), energyToImage(7), {}, "GetZT4EnergyIndexToRegister",
     "GetZT4EnergyIndex", 480, 96, 344, 24, "ENERGY IMPORT REACTIVE -", true},
    {"ActiveImportRaw", energyToBuffer(56), energyToImage(56), {}, "GetZT4EnergyIndexToRegister",
     "GetZT4EnergyIndex", 576, 96, 3756, 24, "ENERGY IMPORT ACTIVE RAW", true},
    {"ReactiveImportRaw", energyToBuffer(57), energyToImage(57), {}, "GetZT4EnergyIndexToRegister",
     "GetZT4EnergyIndex", 672, 96, 3852, 24, "ENERGY IMPORT REACTIVE RAW +", true},
    {"ReactiveNegativeRaw", energyToBuffer(59), energyToImage(59), {}, "GetZT4EnergyIndexToRegister",
     "GetZT4EnergyIndex", 864, 96, 4044, 24, "ENERGY IMPORT REACTIVE RAW -", true},
};

const BlockCase kCounters[] = {
    {"OperatingTime", GetZT4FRAMOperatingTimeToRegister, GetZT4FRAMOperatingTime, SetZT4FRAMOperatingTime,
     "GetZT4FRAMOperatingTimeToRegister", "GetZT4FRAMOperatingTime", 960, 96, 1088, 24,
     "OPERATING TIME", false},
    {"Startup", GetZT4FRAMStartupToRegister, GetZT4FRAMStartup, SetZT4FRAMStartup,
     "GetZT4FRAMStartupToRegister", "GetZT4FRAMStartup", 1056, 96, 1184, 24, "STARTUP", false},
    {"Sag", GetZT4FRAMSagToRegister, GetZT4FRAMSag, SetZT4FRAMSag, "GetZT4FRAMSagToRegister",
     "GetZT4FRAMSag", 1152, 12, 1280, 3, "SAG", false},
    {"Swell", GetZT4FRAMSwellToRegister, GetZT4FRAMSwell, SetZT4FRAMSwell,
     "GetZT4FRAMSwellToRegister", "GetZT4FRAMSwell", 1164, 12, 1292, 3, "SWELL", false},
    {"OverCurrent", GetZT4FRAMOverCurrentToRegister, GetZT4FRAMOverCurrent, SetZT4FRAMOverCurrent,
     "GetZT4FRAMOverCurrentToRegister", "GetZT4FRAMOverCurrent", 1176, 72, 1448, 18, "OVERCURRENT",
     false},
};

class FramBlock : public zt4test::FramTest, public ::testing::WithParamInterface<BlockCase> {
protected:
    std::string quoted(const BlockCase& c) const {
        return c.energy ? "\"" + framPath() + "\"" : "'" + framPath() + "'";
    }
    // "FAILED to read ..." as the block's reader `function` logs it.
    std::string readFailure(const BlockCase& c, const char* function) const {
        return std::string("error.[") + function + "]: FAILED to read " + std::to_string(c.registers) +
               " registers (" + std::to_string(c.bytes) + " bytes) @ offset " +
               std::to_string(c.offset) + " in " + quoted(c) + " " + c.area;
    }
};

TEST_P(FramBlock, ReaderToBufferReadsExactlyItsArea) {
    const BlockCase& c = GetParam();
    const std::string memory = zt4test::patterned(zt4test::kFramBytes);
    writeFram(memory);
    std::vector<uint16_t> buffer = zt4test::filledImage(0xEE);

    const IoCounters before = ioCounters();
    ASSERT_EQ(c.toBuffer(buffer.data()), 0) << zt4test::logDump();
    const IoCounters after = ioCounters();

    const std::string got = zt4test::bytesOf(buffer);
    EXPECT_EQ(got.substr(0, c.bytes), memory.substr(c.offset, c.bytes));
    EXPECT_EQ(got.substr(c.bytes), std::string(got.size() - c.bytes, '\xEE')) << "written past the block";
    if (before.selfBytes > 0) {
        EXPECT_EQ(after.readBytes - before.readBytes - before.selfBytes, static_cast<long long>(c.bytes));
        EXPECT_EQ(after.writtenBytes, before.writtenBytes);
    }
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
}

class FramBlockToImage : public FramBlock {};

TEST_P(FramBlockToImage, ReaderFillsOnlyTheBlock) {
    const BlockCase& c = GetParam();
    const std::string memory = zt4test::patterned(zt4test::kFramBytes);
    writeFram(memory);
    std::vector<uint16_t> image = zt4test::filledImage(0xAA);
    ASSERT_EQ(c.toImage(image.data()), 0) << zt4test::logDump();
    std::string expected = zt4test::bytesOf(zt4test::filledImage(0xAA));
    expected.replace(c.imageOffset, c.bytes, memory.substr(c.offset, c.bytes));
    EXPECT_EQ(zt4test::bytesOf(image), expected);
}

TEST_P(FramBlock, ShortMemoryFailsAndTouchesNothing) {
    const BlockCase& c = GetParam();
    const std::string memory = zt4test::patterned(c.offset + c.bytes - 1);
    writeFram(memory);
    std::vector<uint16_t> buffer = zt4test::filledImage(0xEE);
    EXPECT_EQ(c.toBuffer(buffer.data()), 1);
    EXPECT_TRUE(logged(readFailure(c, c.bufferReader), LOG_ERR)) << zt4test::logDump();
    EXPECT_EQ(zt4test::bytesOf(buffer), zt4test::bytesOf(zt4test::filledImage(0xEE)));

    std::vector<uint16_t> image = zt4test::filledImage(0xAA);
    EXPECT_EQ(c.toImage(image.data()), 1);
    EXPECT_TRUE(logged(readFailure(c, c.imageReader), LOG_ERR)) << zt4test::logDump();
    EXPECT_EQ(zt4test::bytesOf(image), zt4test::bytesOf(zt4test::filledImage(0xAA)));
    EXPECT_EQ(fram(), memory);
}

TEST_P(FramBlock, MissingMemoryFailsToOpenAndIsNotCreatedByReaders) {
    const BlockCase& c = GetParam();
    std::vector<uint16_t> buffer = zt4test::filledImage(0xEE);
    EXPECT_EQ(c.toBuffer(buffer.data()), 1);
    EXPECT_TRUE(logged(std::string("error.[") + c.bufferReader + "]: FAILED to fopen '" + framPath() +
                           "'. No such file or directory",
                       LOG_ERR))
        << zt4test::logDump();
    EXPECT_FALSE(exists(zt4test::kFramNode));
}

class FramCounterWriter : public FramBlock {};

TEST_P(FramCounterWriter, ReplacesOnlyItsArea) {
    const BlockCase& c = GetParam();
    const std::string memory = zt4test::patterned(zt4test::kFramBytes, 2);
    writeFram(memory);
    const std::string imageBytes = zt4test::patterned(zt4test::kImageWords * 2, 5);
    const std::vector<uint16_t> image = zt4test::imageOf(imageBytes);

    const IoCounters before = ioCounters();
    ASSERT_EQ(c.write(image.data()), 0) << zt4test::logDump();
    const IoCounters after = ioCounters();

    std::string expected = memory;
    expected.replace(c.offset, c.bytes, imageBytes.substr(c.imageOffset, c.bytes));
    EXPECT_EQ(fram(), expected);
    if (before.selfBytes > 0) {
        EXPECT_EQ(after.writtenBytes - before.writtenBytes, static_cast<long long>(c.bytes));
        EXPECT_EQ(after.readBytes - before.readBytes, before.selfBytes) << "a writer read the FRAM";
    }
}

TEST_P(FramCounterWriter, CreatesAMissingMemoryAndExtendsAShortOne) {
    const BlockCase& c = GetParam();
    const std::string imageBytes = zt4test::patterned(zt4test::kImageWords * 2, 5);
    const std::vector<uint16_t> image = zt4test::imageOf(imageBytes);
    const std::string block = imageBytes.substr(c.imageOffset, c.bytes);

    ASSERT_EQ(c.write(image.data()), 0) << zt4test::logDump();
    EXPECT_EQ(fram(), std::string(c.offset, '\0') + block);

    const std::string head = zt4test::patterned(100, 3);
    writeFram(head);
    ASSERT_EQ(c.write(image.data()), 0) << zt4test::logDump();
    EXPECT_EQ(fram(), head + std::string(c.offset - head.size(), '\0') + block);
}

std::string rowName(const ::testing::TestParamInfo<BlockCase>& row) { return row.param.label; }

INSTANTIATE_TEST_SUITE_P(Energies, FramBlock, ::testing::ValuesIn(kEnergies), rowName);
INSTANTIATE_TEST_SUITE_P(Counters, FramBlock, ::testing::ValuesIn(kCounters), rowName);
INSTANTIATE_TEST_SUITE_P(Energies, FramBlockToImage, ::testing::ValuesIn(kEnergies), rowName);
// The operating time's image reader also fills the seconds and nanoseconds: its own test.
INSTANTIATE_TEST_SUITE_P(Counters, FramBlockToImage, ::testing::ValuesIn(kCounters + 1, std::end(kCounters)),
                         rowName);
INSTANTIATE_TEST_SUITE_P(Counters, FramCounterWriter, ::testing::ValuesIn(kCounters), rowName);

class FramEnergies : public zt4test::FramTest {};

TEST_F(FramEnergies, AllIndicesAreWrittenThroughOneOpenAndTheExportsAreKept) {
    const std::string memory = zt4test::patterned(zt4test::kFramBytes, 2);
    writeFram(memory);
    const std::string imageBytes = zt4test::patterned(zt4test::kImageWords * 2, 9);
    const std::vector<uint16_t> image = zt4test::imageOf(imageBytes);

    const IoCounters before = ioCounters();
    ASSERT_EQ(SetZT4AllEnergyIndex(image.data()), 0) << zt4test::logDump();
    const IoCounters after = ioCounters();

    struct Area {
        std::size_t offset, imageOffset;
    };
    const Area written[] = {{192, 56}, {288, 152}, {480, 344}, {576, 3756}, {672, 3852}, {864, 4044}};
    std::string expected = memory;
    for (const Area& area : written) expected.replace(area.offset, 96, imageBytes.substr(area.imageOffset, 96));
    EXPECT_EQ(fram(), expected);
    if (before.selfBytes > 0) {
        EXPECT_EQ(after.writtenBytes - before.writtenBytes, 6 * 96);
    }
}

TEST_F(FramEnergies, BlocksThatTheMemoryDoesNotKeepFailSilently) {
    writeFram(zt4test::patterned(zt4test::kFramBytes));
    for (int index : {0, 3, 6, 8, 16, 58, 74, 75, 255}) {
        std::vector<uint16_t> image = zt4test::filledImage(0xAA);
        EXPECT_EQ(GetZT4EnergyIndex(image.data(), static_cast<uint8_t>(index)), 1) << index;
        EXPECT_EQ(GetZT4EnergyIndexToRegister(image.data(), static_cast<uint8_t>(index)), 1) << index;
        EXPECT_EQ(zt4test::bytesOf(image), zt4test::bytesOf(zt4test::filledImage(0xAA))) << index;
    }
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
}

TEST_F(FramEnergies, WritingToAnUnwritableMemoryFails) {
    // A directory where the memory should be: the open fails, nothing is written.
    std::filesystem::create_directories(framPath());
    const std::vector<uint16_t> image = zt4test::filledImage(0x11);
    EXPECT_EQ(SetZT4AllEnergyIndex(image.data()), 1);
    EXPECT_EQ(SetZT4FRAMSag(image.data()), -1);
    EXPECT_TRUE(logged("error.[SetZT4AllEnergyIndex]: FAILED to fopen '" + framPath() + "'. Is a directory"))
        << zt4test::logDump();
    EXPECT_TRUE(logged("error.[SetZT4FRAMSag]: FAILED to fopen '" + framPath() + "'. Is a directory"));
}

struct NullCase {
    const char* label;
    std::function<int()> call;
    int result;
    const char* message;
};

const NullCase kNullArguments[] = {
    {"EnergyToBuffer", [] { return GetZT4EnergyIndexToRegister(nullptr, 4); }, 1,
     "error.[GetZT4EnergyIndexToRegister]: zt4Rg NULL"},
    {"EnergyToImage", [] { return GetZT4EnergyIndex(nullptr, 4); }, 1, "error.[GetZT4EnergyIndex]: zt4Rg NULL"},
    {"AllEnergies", [] { return SetZT4AllEnergyIndex(nullptr); }, 1, "error.[SetZT4AllEnergyIndex]: zt4Rg NULL"},
    {"OperatingTimeToImage", [] { return GetZT4FRAMOperatingTime(nullptr); }, 1,
     "error.[GetZT4FRAMOperatingTime]: ZT4 register is NULL"},
    {"OperatingTimeToBuffer", [] { return GetZT4FRAMOperatingTimeToRegister(nullptr); }, 1,
     "error.[GetZT4FRAMOperatingTimeToRegister]: zt4Rg NULL"},
    {"OperatingTimeWriter", [] { return SetZT4FRAMOperatingTime(nullptr); }, -1,
     "error.[SetZT4FRAMOperatingTime]: zt4Rg NULL"},
    {"StartupToImage", [] { return GetZT4FRAMStartup(nullptr); }, 1, "error.[GetZT4FRAMStartup]: zt4Rg NULL"},
    {"SagWriter", [] { return SetZT4FRAMSag(nullptr); }, -1, "error.[SetZT4FRAMSag]: zt4Rg NULL"},
    {"SwellToBuffer", [] { return GetZT4FRAMSwellToRegister(nullptr); }, 1,
     "error.[GetZT4FRAMSwellToRegister]: zt4Rg NULL"},
    {"OverCurrentWriter", [] { return SetZT4FRAMOverCurrent(nullptr); }, -1,
     "error.[SetZT4FRAMOverCurrent]: zt4Rg NULL"},
    {"RegisterOfLayout", [] { return fram_get_register(nullptr, 96, 4, 2); }, -1,
     "error.[fram_get_register]: zt4Rg NULL"},
};

class FramNullArgument : public zt4test::FramTest, public ::testing::WithParamInterface<NullCase> {};

TEST_P(FramNullArgument, IsRefusedWithoutTouchingTheMemory) {
    const NullCase& c = GetParam();
    const std::string memory = zt4test::patterned(zt4test::kFramBytes);
    writeFram(memory);
    EXPECT_EQ(c.call(), c.result);
    EXPECT_TRUE(logged(c.message, LOG_ERR)) << zt4test::logDump();
    EXPECT_EQ(fram(), memory);
}

INSTANTIATE_TEST_SUITE_P(Operations, FramNullArgument, ::testing::ValuesIn(kNullArguments),
                         [](const auto& row) { return std::string(row.param.label); });

class FramTrace : public zt4test::FramTest {};

TEST_F(FramTrace, TransfersAreTracedAboveDebugLevelOne) {
    writeFram(zt4test::patterned(zt4test::kFramBytes));
    std::vector<uint16_t> image = zt4test::filledImage(0);
    const std::string sagRead = "[GetZT4FRAMSag]: read 6 nmemb of 2 bytes (12 bytes) @ offset 1152 in '" +
                                framPath() + "' SAG";
    const std::string energyWrite = "[SetZT4EnergyIndex]: write 48 elmt of 2 bytes (96 bytes) @ offset 864 in \"" +
                                    framPath() + "\" ENERGY IMPORT REACTIVE RAW -";
    const std::string energyRead = "[GetZT4EnergyIndex]: read 48 nmemb of 2 bytes (96 bytes) @ offset 288 in \"" +
                                   framPath() + "\" ENERGY IMPORT REACTIVE +";
    const std::string swellWrite = "[SetZT4FRAMSwell]: write 6 elmt of 2 bytes (12 bytes) @ offset 1164 in '" +
                                   framPath() + "' SWELL";

    debug_level = 1;
    ASSERT_EQ(GetZT4FRAMSag(image.data()), 0);
    ASSERT_EQ(SetZT4AllEnergyIndex(image.data()), 0);
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();

    debug_level = 2;
    ASSERT_EQ(GetZT4FRAMSag(image.data()), 0);
    ASSERT_EQ(SetZT4AllEnergyIndex(image.data()), 0);
    ASSERT_EQ(GetZT4EnergyIndex(image.data(), 5), 0);
    ASSERT_EQ(SetZT4FRAMSwell(image.data()), 0);
    EXPECT_TRUE(logged(sagRead, LOG_INFO)) << zt4test::logDump();
    EXPECT_TRUE(logged(energyWrite, LOG_INFO));
    EXPECT_TRUE(logged(energyRead, LOG_INFO));
    EXPECT_TRUE(logged(swellWrite, LOG_INFO));
    EXPECT_EQ(zt4test::loggedCount("[SetZT4EnergyIndex]: write 48 elmt"), 6);
}

}  // namespace
