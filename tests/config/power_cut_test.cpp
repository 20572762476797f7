// A writer killed at any moment leaves the user document whole: the old version or the new one.
#include <signal.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <string>
#include <vector>

#include "support/harness.hpp"
#include "zt4config/config.h"

namespace {

// A copy of this process, as fork() makes one. The bare system call, because glibc's fork() child
// does not survive qemu-arm's user emulation, where these tests also run; the parent has a single
// thread and the child only writes files until it is killed.
pid_t copyOfThisProcess() { return static_cast<pid_t>(syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0)); }

class PowerCut : public zt4test::DeviceTest {
protected:
    // Versions of different sizes, so that a cut-off or mixed file cannot pass for one of them.
    static std::vector<json_t*> makeVersions() {
        std::vector<json_t*> versions;
        for (int size : {1, 40, 900}) {
            json_t* document = json_pack("{s:{s:i},s:{s:i}}", "Syntax", "Version", 1, "Web", "Port", size);
            json_t* list = json_array();
            for (int i = 0; i < size; ++i) json_array_append_new(list, json_pack("{s:i,s:s}", "n", i, "t", "abcdef\xc3\xa9"));
            json_object_set_new(document, "List", list);
            versions.push_back(document);
        }
        return versions;
    }

    static long long elapsedMicroseconds(std::chrono::steady_clock::time_point start) {
        return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start).count();
    }
};

TEST_F(PowerCut, KilledWriterNeverLeavesAPartialDocument) {
    std::vector<json_t*> versions = makeVersions();
    // The longest write, measured here, bounds the random moment of each kill.
    long long longest = 0;
    for (json_t* version : versions) {
        auto start = std::chrono::steady_clock::now();
        ASSERT_EQ(writeJSONZT4ConfigFile(version), 0);
        longest = std::max(longest, elapsedMicroseconds(start));
    }
    const long long window = std::clamp(longest * 3, 2000LL, 60000LL);
    const unsigned seed = std::random_device{}();
    std::mt19937 random(seed);
    std::uniform_int_distribution<long long> moment(0, window);

    constexpr int kRounds = 200;
    int changed = 0, midWrite = 0;
    std::string previous = zt4test::compact(versions.back());
    for (int round = 0; round < kRounds; ++round) {
        pid_t child = copyOfThisProcess();
        ASSERT_GE(child, 0);
        if (child == 0) {
            alarm(10);  // never outlive a parent that failed to kill
            for (size_t i = static_cast<size_t>(round);; ++i) writeJSONZT4ConfigFile(versions[i % versions.size()]);
        }
        usleep(static_cast<useconds_t>(moment(random)));
        ASSERT_EQ(kill(child, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << "round " << round;

        midWrite += exists("/home/nvram/zt4configuration-tmp.json");
        json_t* stored = readJSONZT4ConfigFile();
        ASSERT_NE(stored, nullptr) << "round " << round << ", seed " << seed << ": "
                                   << readFile("/home/nvram/zt4config.json").substr(0, 200);
        const bool known = std::any_of(versions.begin(), versions.end(),
                                       [&](json_t* version) { return json_equal(version, stored); });
        ASSERT_TRUE(known) << "round " << round << ", seed " << seed;
        const std::string current = zt4test::compact(stored);
        changed += current != previous;
        previous = current;
        json_decref(stored);
    }
    // The writer did get through whole writes between kills, and some kills hit it mid-write.
    EXPECT_GT(changed, 0) << "window " << window << " us";
    std::printf("power cut: %d kills, window %lld us, %d changes, %d with a temporary file left\n",
                kRounds, window, changed, midWrite);
    for (json_t* version : versions) json_decref(version);
}

}  // namespace
