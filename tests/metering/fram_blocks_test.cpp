// Energy and counter blocks between the FRAM and the register image: each operation moves exactly
// its block's bytes between its FRAM area and its place in the image, and a failure leaves the
// caller's memory and the FRAM as they were.
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <syslog.h>
#include <unistd.h>

#include <cstdio>

#include "metering/fram_fixture.hpp"
#include "zt4config.h"

namespace {

using zt4test::bytesOf;
using zt4test::logged;
using zt4test::patterned;

// Bytes this process has read and written through system calls, and what reading them cost.
struct Io {
    long long read = 0, written = 0, self = 0;
};
Io io() {
    Io now;
    char text[512] = {};
    FILE* file = std::fopen("/proc/self/io", "r");
    if (file == nullptr) return now;
    const std::size_t got = std::fread(text, 1, sizeof text - 1, file);
    std::fclose(file);
    if (std::sscanf(text, "rchar: %lld wchar: %lld", &now.read, &now.written) == 2) now.self = static_cast<long long>(got);
    return now;
}
// Bytes read and written since `start` (both 0 where /proc has no io).
Io since(const Io& start) {
    const Io now = io();
    if (start.self == 0) return {};
    return {now.read - start.read - start.self, now.written - start.written, 0};
}

struct BlockCase {
    const char* label;
    uint8_t index;                        // energy block; 0 for the counters
    int (*toBuffer)(uint16_t*);           // counters
    int (*toImage)(uint16_t*);            // counters but the operating time
    int (*write)(const uint16_t*);        // counters
    const char* bufferReader;
    std::size_t offset, bytes, imageOffset;
    const char* area;
};

const BlockCase kBlocks[] = {
    {"ActiveImport", 4, nullptr, nullptr, nullptr, "GetZT4EnergyIndexToRegister", 192, 96, 56, "ENERGY IMPORT ACTIVE"},
    {"ReactiveImport", 5, nullptr, nullptr, nullptr, "GetZT4EnergyIndexToRegister", 288, 96, 152, "ENERGY IMPORT REACTIVE +"},
    {"ReactiveNegative", 7, nullptr, nullptr, nullptr, "GetZT4EnergyIndexToRegister", 480, 96, 344, "ENERGY IMPORT REACTIVE -"},
    {"ActiveRaw", 56, nullptr, nullptr, nullptr, "GetZT4EnergyIndexToRegister", 576, 96, 3756, "ENERGY IMPORT ACTIVE RAW"},
    {"ReactiveRaw", 57, nullptr, nullptr, nullptr, "GetZT4EnergyIndexToRegister", 672, 96, 3852, "ENERGY IMPORT REACTIVE RAW +"},
    {"ReactiveNegativeRaw", 59, nullptr, nullptr, nullptr, "GetZT4EnergyIndexToRegister", 864, 96, 4044, "ENERGY IMPORT REACTIVE RAW -"},
    {"OperatingTime", 0, GetZT4FRAMOperatingTimeToRegister, nullptr, SetZT4FRAMOperatingTime,
     "GetZT4FRAMOperatingTimeToRegister", 960, 96, 1088, "OPERATING TIME"},
    {"Startup", 0, GetZT4FRAMStartupToRegister, GetZT4FRAMStartup, SetZT4FRAMStartup, "GetZT4FRAMStartupToRegister",
     1056, 96, 1184, "STARTUP"},
    {"Sag", 0, GetZT4FRAMSagToRegister, GetZT4FRAMSag, SetZT4FRAMSag, "GetZT4FRAMSagToRegister", 1152, 12, 1280, "SAG"},
    {"Swell", 0, GetZT4FRAMSwellToRegister, GetZT4FRAMSwell, SetZT4FRAMSwell, "GetZT4FRAMSwellToRegister", 1164, 12,
     1292, "SWELL"},
    {"OverCurrent", 0, GetZT4FRAMOverCurrentToRegister, GetZT4FRAMOverCurrent, SetZT4FRAMOverCurrent,
     "GetZT4FRAMOverCurrentToRegister", 1176, 72, 1448, "OVERCURRENT"},
};

class FramBlock : public zt4test::FramTest, public ::testing::WithParamInterface<BlockCase> {
protected:
    int readToBuffer(uint16_t* buffer) const {
        const BlockCase& c = GetParam();
        return c.index != 0 ? GetZT4EnergyIndexToRegister(buffer, c.index) : c.toBuffer(buffer);
    }
    int readToImage(uint16_t* image) const {
        const BlockCase& c = GetParam();
        return c.index != 0 ? GetZT4EnergyIndex(image, c.index) : c.toImage(image);
    }
};

TEST_P(FramBlock, MovesExactlyItsBlock) {
    const BlockCase& c = GetParam();
    const std::string memory = patterned();
    writeFram(memory);
    std::vector<uint16_t> buffer = zt4test::filledImage('\xEE');
    Io start = io();
    ASSERT_EQ(readToBuffer(buffer.data()), 0) << zt4test::logDump();
    const Io used = since(start);
    const long long moved = start.self == 0 ? 0 : static_cast<long long>(c.bytes);
    std::string expected = bytesOf(zt4test::filledImage('\xEE'));
    EXPECT_EQ(bytesOf(buffer), expected.replace(0, c.bytes, memory.substr(c.offset, c.bytes)));
    EXPECT_EQ(used.read, moved);

    if (c.index != 0 || c.toImage != nullptr) {
        std::vector<uint16_t> image = zt4test::filledImage('\xAA');
        ASSERT_EQ(readToImage(image.data()), 0);
        expected = bytesOf(zt4test::filledImage('\xAA'));
        EXPECT_EQ(bytesOf(image), expected.replace(c.imageOffset, c.bytes, memory.substr(c.offset, c.bytes)));
    }
    if (c.write != nullptr) {
        const std::string imageBytes = patterned(zt4test::kImageWords * 2, 5);
        const std::vector<uint16_t> image = zt4test::imageOf(imageBytes);
        start = io();
        ASSERT_EQ(c.write(image.data()), 0);
        const Io written = since(start);
        expected = memory;
        EXPECT_EQ(fram(), expected.replace(c.offset, c.bytes, imageBytes.substr(c.imageOffset, c.bytes)));
        EXPECT_EQ(written.written, moved);
        EXPECT_EQ(written.read, 0) << "a writer read the memory";
    }
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
}

TEST_P(FramBlock, ShortOrMissingMemoryFailsAndTouchesNothing) {
    const BlockCase& c = GetParam();
    const std::string shortMemory = patterned(c.offset + c.bytes - 1);
    writeFram(shortMemory);
    std::vector<uint16_t> buffer = zt4test::filledImage('\xEE');
    EXPECT_EQ(readToBuffer(buffer.data()), 1);
    const std::string path = c.index != 0 ? "\"" + framPath() + "\"" : "'" + framPath() + "'";
    EXPECT_TRUE(logged(std::string("error.[") + c.bufferReader + "]: FAILED to read " + std::to_string(c.bytes / 4) +
                           " registers (" + std::to_string(c.bytes) + " bytes) @ offset " + std::to_string(c.offset) +
                           " in " + path + " " + c.area, LOG_ERR)) << zt4test::logDump();
    EXPECT_EQ(bytesOf(buffer), bytesOf(zt4test::filledImage('\xEE')));
    EXPECT_EQ(fram(), shortMemory);
    if (c.write != nullptr) {  // the writer extends the memory by its block, no further
        const std::string imageBytes = patterned(zt4test::kImageWords * 2, 5);
        ASSERT_EQ(c.write(zt4test::imageOf(imageBytes).data()), 0);
        EXPECT_EQ(fram(), shortMemory.substr(0, c.offset) + imageBytes.substr(c.imageOffset, c.bytes));
    }
    removeFile(zt4test::kFramNode);
    EXPECT_EQ(readToBuffer(buffer.data()), 1);
    EXPECT_TRUE(logged(std::string("error.[") + c.bufferReader + "]: FAILED to fopen '" + framPath() +
                       "'. No such file or directory")) << zt4test::logDump();
    EXPECT_FALSE(exists(zt4test::kFramNode));
}

INSTANTIATE_TEST_SUITE_P(Blocks, FramBlock, ::testing::ValuesIn(kBlocks),
                         [](const auto& row) { return std::string(row.param.label); });

class FramEnergies : public zt4test::FramTest {};

TEST_F(FramEnergies, AllIndicesAreWrittenAndTracedAndTheExportsAreKept) {
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
    EXPECT_TRUE(logged("[GetZT4FRAMSag]: read 6 nmemb of 2 bytes (12 bytes) @ offset 1152 in '" + framPath() + "' SAG",
                       LOG_INFO)) << zt4test::logDump();
    debug_level = 1;
    zt4test::clearLog();
    ASSERT_EQ(GetZT4FRAMSag(image.data()), 0);
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
}

TEST_F(FramEnergies, BlocksThatTheMemoryDoesNotKeepFailSilently) {
    writeFram(patterned());
    for (int index : {0, 3, 6, 8, 16, 58, 74, 75, 255}) {
        std::vector<uint16_t> image = zt4test::filledImage('\xAA');
        EXPECT_EQ(GetZT4EnergyIndex(image.data(), static_cast<uint8_t>(index)), 1) << index;
        EXPECT_EQ(GetZT4EnergyIndexToRegister(image.data(), static_cast<uint8_t>(index)), 1) << index;
        EXPECT_EQ(bytesOf(image), bytesOf(zt4test::filledImage('\xAA'))) << index;
    }
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
}

struct Refusal {
    int result, expected;
    const char* message;
};

TEST_F(FramEnergies, BadArgumentsAndUnwritableMemoryAreRefused) {
    writeFram(patterned());
    const Refusal nulls[] = {
        {GetZT4EnergyIndexToRegister(nullptr, 4), 1, "error.[GetZT4EnergyIndexToRegister]: zt4Rg NULL"},
        {GetZT4EnergyIndex(nullptr, 59), 1, "error.[GetZT4EnergyIndex]: zt4Rg NULL"},
        {SetZT4AllEnergyIndex(nullptr), 1, "error.[SetZT4AllEnergyIndex]: zt4Rg NULL"},
        {GetZT4FRAMOperatingTime(nullptr), 1, "error.[GetZT4FRAMOperatingTime]: ZT4 register is NULL"},
        {GetZT4FRAMSwellToRegister(nullptr), 1, "error.[GetZT4FRAMSwellToRegister]: zt4Rg NULL"},
        {GetZT4FRAMStartup(nullptr), 1, "error.[GetZT4FRAMStartup]: zt4Rg NULL"},
        {SetZT4FRAMOverCurrent(nullptr), -1, "error.[SetZT4FRAMOverCurrent]: zt4Rg NULL"},
        {fram_get_register(nullptr, 96, 4, 2), -1, "error.[fram_get_register]: zt4Rg NULL"},
    };
    for (const Refusal& refusal : nulls) {
        EXPECT_EQ(refusal.result, refusal.expected) << refusal.message;
        EXPECT_TRUE(logged(refusal.message, LOG_ERR)) << refusal.message;
    }
    EXPECT_EQ(fram(), patterned());

    removeFile(zt4test::kFramNode);
    std::filesystem::create_directories(framPath());  // a directory where the memory should be
    const std::vector<uint16_t> image = zt4test::filledImage('\x11');
    EXPECT_EQ(SetZT4AllEnergyIndex(image.data()), 1);
    EXPECT_EQ(SetZT4FRAMSag(image.data()), -1);
    EXPECT_TRUE(logged("error.[SetZT4AllEnergyIndex]: FAILED to fopen '" + framPath() + "'. Is a directory"));
    EXPECT_TRUE(logged("error.[SetZT4FRAMSag]: FAILED to fopen '" + framPath() + "'. Is a directory"));
}

}  // namespace

namespace {

// Writes that stop short: a file-size limit in a copy of this process (the bare clone system call,
// as in the power-cut test) cuts every write at `limit` bytes; nothing at or past it changes.
struct ShortWriteCase {
    const char* label;
    int (*write)();
    long limit;
    int result;
    const char* message;  // "PATH" stands for the memory's path
};

const uint16_t kZeroImage[zt4test::kImageWords] = {};

class FramShortWrite : public zt4test::FramTest, public ::testing::WithParamInterface<ShortWriteCase> {};

TEST_P(FramShortWrite, IsReportedAndStopsAtTheLimit) {
    const ShortWriteCase& c = GetParam();
    copyExampleDevice();
    const std::string memory = patterned();
    writeFram(memory);
    std::string message = c.message;
    if (message.find("PATH") != std::string::npos) message.replace(message.find("PATH"), 4, framPath());
    const pid_t child = static_cast<pid_t>(syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0));
    ASSERT_GE(child, 0);
    if (child == 0) {
        signal(SIGXFSZ, SIG_IGN);
        const struct rlimit limit = {static_cast<rlim_t>(c.limit), static_cast<rlim_t>(c.limit)};
        setrlimit(RLIMIT_FSIZE, &limit);
        zt4test::clearLog();
        const int result = c.write();
        _exit(result == c.result && logged(message, LOG_ERR) ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "result or message differs: " << message;
    EXPECT_EQ(fram().substr(static_cast<std::size_t>(c.limit)), memory.substr(static_cast<std::size_t>(c.limit)));
}

INSTANTIATE_TEST_SUITE_P(Writers, FramShortWrite, ::testing::Values(
    ShortWriteCase{"Counter", [] { return SetZT4FRAMSag(kZeroImage); }, 1157, -1,
                   "error.[SetZT4FRAMSag]: FAILED to write 3 registers (12 bytes) @ offset 1152 in 'PATH' SAG"},
    ShortWriteCase{"Energies", [] { return SetZT4AllEnergyIndex(kZeroImage); }, 300, 1,
                   "error.[SetZT4EnergyIndex]: FAILED to write 24 registers (96 bytes) @ offset 288 in \"PATH\" ENERGY IMPORT REACTIVE +"},
    ShortWriteCase{"Version", [] { return fram_write_version(2); }, 4096, -1,
                   "error.[fram_write_version]: FAILED to write FRAM version 2 @ offset 4096 in 'PATH'"},
    ShortWriteCase{"ReLayout", [] { return upgrade_register_energy(0, 1, 4); }, 232, -1,
                   "error.[upgrade_register_energy]: FAILED to write 96 bytes @192 (c0) in FRAM memory"}),
    [](const auto& row) { return std::string(row.param.label); });

}  // namespace
