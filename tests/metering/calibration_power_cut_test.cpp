// A calibration writer killed at any moment leaves the calibration file whole: after the kill,
// the file reads as one of the versions written, never as a mix or a cut-off copy.
#include <signal.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <random>
#include <vector>

#include "common/json_ref.hpp"
#include "metering/calibration_samples.hpp"
#include "support/harness.hpp"
#include "zt4config/calibration.h"

namespace {

using zt4test::Model;

// A copy of this process, as fork() makes one; the bare system call, because glibc's fork()
// child does not survive qemu-arm's user emulation.
pid_t copyOfThisProcess() { return static_cast<pid_t>(syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0)); }

// The JSON form of a model's phase channels, built key by key.
json_t* jsonOf(const Model& model) {
    json_t* connectors = json_array();
    for (const ConnectorConfig& connector : model.connectors) {
        json_t* channels = json_array();
        for (unsigned n = 0; n < 3; ++n) {
            const ChannelConfig& c = connector.channels[n];
            json_array_append_new(
                channels, json_pack("{s:I,s:I,s:I,s:I,s:I,s:I,s:I,s:I,s:I,s:I,s:I,s:I,s:f,s:f,s:I}",
                                    "CalActivePower", (json_int_t)c.CalActivePower, "CalCurrent", (json_int_t)c.CalCurrent,
                                    "CalVoltage", (json_int_t)c.CalVoltage, "CalIOffset", (json_int_t)c.CalIOffset,
                                    "CalVOffset", (json_int_t)c.CalVOffset, "CalVAGain", (json_int_t)c.CalVAGain,
                                    "CalWOffset", (json_int_t)c.CalWOffset, "CalVARGain", (json_int_t)c.CalVARGain,
                                    "CalVAROffset", (json_int_t)c.CalVAROffset, "CalPhaseA", (json_int_t)c.CalPhaseA,
                                    "CalPhaseB", (json_int_t)c.CalPhaseB, "CalPhaseC", (json_int_t)c.CalPhaseC,
                                    "CalVnom", (double)c.CalVnom, "CalInom", (double)c.CalInom,
                                    "CalPref", (json_int_t)c.CalPref));
        }
        json_array_append_new(connectors, json_pack("{s:o}", "Cnl", channels));
    }
    return json_pack("{s:o}", "Connector", connectors);
}

class CalibrationPowerCut : public zt4test::DeviceTest {
protected:
    // Versions whose every value differs; the neutral channel is left at zero, which is what a
    // file written from JSON gives it.
    static std::vector<Model> makeVersions() {
        std::vector<Model> versions;
        for (unsigned tag = 1; tag <= 3; ++tag) {
            Model model(0);
            zt4test::setTaggedModel(model, tag);
            for (auto& connector : model.connectors) connector.channels[3] = ChannelConfig{};
            versions.push_back(model);
        }
        return versions;
    }

    // Writes version `round` with the model writer or the JSON writer, in turns.
    static int writeRound(size_t round, const std::vector<Model>& versions, const std::vector<json_t*>& documents) {
        const size_t version = round % versions.size();
        if ((round / versions.size()) % 2 == 0) return writeConfigInitCalibration(versions[version].connectors, 0);
        return writeConfigCalibration(documents[version], 0);
    }

    void TearDown() override {
        prctl(PR_SET_CHILD_SUBREAPER, 0, 0, 0, 0);
        DeviceTest::TearDown();
    }
};

TEST_F(CalibrationPowerCut, KilledWriterNeverLeavesAPartialFile) {
    const std::vector<Model> versions = makeVersions();
    std::vector<json_t*> documents;
    for (const Model& version : versions) documents.push_back(jsonOf(version));
    // cp outlives a killed writer; as the subreaper this test waits for it before reading.
    ASSERT_EQ(prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0), 0);

    long long longest = 0;
    for (size_t round = 0; round < 2 * versions.size(); ++round) {
        const auto start = std::chrono::steady_clock::now();
        ASSERT_EQ(writeRound(round, versions, documents), 0) << zt4test::logDump();
        longest = std::max<long long>(longest, std::chrono::duration_cast<std::chrono::microseconds>(
                                                   std::chrono::steady_clock::now() - start).count());
    }
    const long long window = std::clamp(longest * 3, 2000LL, 60000LL);
    const unsigned seed = std::random_device{}();
    std::mt19937 random(seed);
    std::uniform_int_distribution<long long> moment(0, window);

    constexpr int kRounds = 120;
    int changed = 0, midWrite = 0;
    Model previous = versions.back();
    for (int round = 0; round < kRounds; ++round) {
        const pid_t child = copyOfThisProcess();
        ASSERT_GE(child, 0);
        if (child == 0) {
            alarm(10);  // never outlive a parent that failed to kill
            for (size_t i = static_cast<size_t>(round);; ++i) writeRound(i, versions, documents);
        }
        usleep(static_cast<useconds_t>(moment(random)));
        ASSERT_EQ(kill(child, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << "round " << round;
        while (waitpid(-1, nullptr, 0) > 0) {
        }

        midWrite += exists("/home/nvram/zt4calibration.tmp") || exists("/home/nvram/zt4calibration.new");
        Model stored(0);
        ASSERT_EQ(ReadZT4ConfigCalibrationStandard(stored.connectors), 0) << "round " << round;
        const bool known = std::any_of(versions.begin(), versions.end(),
                                       [&](const Model& version) { return version == stored; });
        ASSERT_TRUE(known) << "round " << round << ", seed " << seed << ":\n"
                           << readFile("/home/nvram/zt4calibration.cfg").substr(0, 400);
        changed += !(stored == previous);
        previous = stored;
    }
    EXPECT_GT(changed, 0) << "window " << window << " us";
    std::printf("calibration power cut: %d kills, window %lld us, %d changes, %d with a scratch file left\n",
                kRounds, window, changed, midWrite);
    for (json_t* document : documents) json_decref(document);
}

}  // namespace
