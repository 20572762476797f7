// A writer of energy indices killed at any moment: every index reads back whole, as the value
// before or after the write. Each block goes to the memory in one positioned write of 96 bytes
// inside one page, which a kill either prevents or lets finish, so a block is never split
// either; only different blocks may come from different writes (a kill between two of the six).
#include <signal.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "metering/fram_fixture.hpp"
#include "zt4config.h"

namespace {

// A copy of this process, as fork() makes one. The bare system call, because glibc's fork() child
// does not survive qemu-arm's user emulation; the parent has a single thread and the child only
// writes the memory until it is killed.
pid_t copyOfThisProcess() { return static_cast<pid_t>(syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0)); }

// The energy blocks and where they are in the image (word addresses).
constexpr unsigned kEnergyBlocks[] = {4, 5, 7, 56, 57, 59};
constexpr std::size_t kEnergyBases[] = {28, 76, 172, 1878, 1926, 2022};
constexpr std::size_t kRegisters = 24;

// Image A holds a distinct pattern in every energy register; image B its complement, so that
// every 16-bit word differs between the two.
std::vector<uint16_t> energyImage(bool complement) {
    std::vector<uint16_t> image = zt4test::filledImage(0);
    for (std::size_t b = 0; b < 6; ++b) {
        for (std::size_t r = 0; r < kRegisters; ++r) {
            uint32_t value = 0x10000u * static_cast<uint32_t>(b * 100 + r + 1) + static_cast<uint32_t>(r * 3 + 7);
            if (complement) value = ~value;
            std::memcpy(&image[kEnergyBases[b] + 2 * r], &value, 4);
        }
    }
    return image;
}

uint32_t registerOf(const std::vector<uint16_t>& image, std::size_t block, std::size_t r) {
    uint32_t value = 0;
    std::memcpy(&value, &image[kEnergyBases[block] + 2 * r], 4);
    return value;
}

class FramPowerCut : public zt4test::FramTest {};

TEST_F(FramPowerCut, KilledWriterLeavesEveryIndexOldOrNew) {
    const std::vector<uint16_t> images[2] = {energyImage(false), energyImage(true)};
    std::string memory = zt4test::patterned(zt4test::kFramBytes);
    memory[4096] = 2;
    writeFram(memory);
    ASSERT_EQ(SetZT4AllEnergyIndex(images[0].data()), 0);

    // The longest whole write, measured here, bounds the random moment of each kill.
    long long longest = 0;
    for (int i = 0; i < 6; ++i) {
        const auto start = std::chrono::steady_clock::now();
        ASSERT_EQ(SetZT4AllEnergyIndex(images[i % 2].data()), 0);
        longest = std::max<long long>(longest, std::chrono::duration_cast<std::chrono::microseconds>(
                                                   std::chrono::steady_clock::now() - start).count());
    }
    const long long window = std::clamp(longest * 4, 500LL, 20000LL);
    const unsigned seed = std::random_device{}();
    std::mt19937 random(seed);
    std::uniform_int_distribution<long long> moment(0, window);

    constexpr int kRounds = 200;
    int mixedBlocks = 0;  // rounds that ended between two blocks of one write
    for (int round = 0; round < kRounds; ++round) {
        const pid_t child = copyOfThisProcess();
        ASSERT_GE(child, 0);
        if (child == 0) {
            alarm(10);  // never outlive a parent that failed to kill
            for (unsigned i = static_cast<unsigned>(round);; ++i) SetZT4AllEnergyIndex(images[i % 2].data());
        }
        usleep(static_cast<useconds_t>(moment(random)));
        ASSERT_EQ(kill(child, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << "round " << round;

        std::vector<uint16_t> read = zt4test::filledImage(0);
        bool fromA = false, fromB = false;
        for (std::size_t b = 0; b < 6; ++b) {
            ASSERT_EQ(GetZT4EnergyIndex(read.data(), static_cast<uint8_t>(kEnergyBlocks[b])), 0);
            const bool blockIsA = registerOf(read, b, 0) == registerOf(images[0], b, 0);
            for (std::size_t r = 0; r < kRegisters; ++r) {
                const uint32_t value = registerOf(read, b, r);
                ASSERT_TRUE(value == registerOf(images[0], b, r) || value == registerOf(images[1], b, r))
                    << "round " << round << ", seed " << seed << ": block " << kEnergyBlocks[b]
                    << " register " << r << " holds " << std::hex << value;
                ASSERT_EQ(value, registerOf(images[blockIsA ? 0 : 1], b, r))
                    << "block " << kEnergyBlocks[b] << " split between two writes, round " << round;
            }
            (blockIsA ? fromA : fromB) = true;
        }
        mixedBlocks += fromA && fromB;
        const std::string after = fram();
        ASSERT_EQ(after.size(), memory.size());
        ASSERT_EQ(after[4096], 2) << "the version byte changed";
        ASSERT_EQ(after.substr(384, 96), memory.substr(384, 96)) << "an export area was written";
    }
    std::printf("FRAM power cut: %d kills, window %lld us, %d between two blocks of one write\n", kRounds,
                window, mixedBlocks);
}

}  // namespace
