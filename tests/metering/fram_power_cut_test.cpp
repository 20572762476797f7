// A writer of energy indices killed at any moment: every index reads back whole, as the value
// before or after the write. Each block goes to the memory in one positioned write of 96 bytes
// inside one page, which a kill either prevents or lets finish, so no block is split either; only
// different blocks may come from different writes (a kill between two of the six).
#include <signal.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <random>

#include "metering/fram_fixture.hpp"
#include "zt4config.h"

namespace {

constexpr uint8_t kBlocks[] = {4, 5, 7, 56, 57, 59};
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
            ASSERT_EQ(GetZT4EnergyIndex(read.data(), kBlocks[b]), 0);
            const int from = read[kBases[b]] == images[0][kBases[b]] ? 0 : 1;  // the write its first word came from
            seen[from] = true;
            ASSERT_TRUE(std::equal(&read[kBases[b]], &read[kBases[b] + 48], &images[from][kBases[b]]))
                << "block " << unsigned{kBlocks[b]} << " mixes two writes; round " << round << ", seed " << seed;
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
