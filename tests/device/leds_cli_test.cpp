#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "support/harness.hpp"

namespace {

struct CliCase {
    const char* arguments;
    int exitStatus;
    const char* attribute;  // checked when not null
    const char* content;
    const char* stderrFragment;  // "" when anything goes
};

class LedCommand : public zt4test::DeviceTest, public ::testing::WithParamInterface<CliCase> {
protected:
    // Runs the tool on this test's device root; its exit status, with stdout and stderr in
    // `output`.
    int run(const std::string& arguments, std::string& output) const {
        // ZT4_CLI is a command line (it may start with an emulator), not a single path.
        const std::string command = std::string(std::getenv("ZT4_CLI")) + " --root '" +
                                    root() + "' " + arguments + " 2>&1";
        FILE* pipe = popen(command.c_str(), "r");
        if (pipe == nullptr) return -1;
        char buffer[256];
        size_t count;
        while ((count = fread(buffer, 1, sizeof buffer, pipe)) > 0) output.append(buffer, count);
        const int status = pclose(pipe);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
};

TEST_P(LedCommand, ExitStatusAndEffect) {
    if (std::getenv("ZT4_CLI") == nullptr) GTEST_SKIP() << "ZT4_CLI not set";
    const CliCase& c = GetParam();
    writeFile("/sys/class/leds/status/max_brightness", "1\n");
    writeFile("/sys/class/leds/status/brightness", "stale");
    writeFile("/sys/class/leds/status/trigger", "stale");
    std::string output;
    EXPECT_EQ(run(c.arguments, output), c.exitStatus) << output;
    EXPECT_NE(output.find(c.stderrFragment), std::string::npos) << output;
    if (c.attribute) {
        EXPECT_EQ(readFile(std::string("/sys/class/leds/status/") + c.attribute), c.content);
    }
}

INSTANTIATE_TEST_SUITE_P(Arguments, LedCommand, ::testing::Values(
    CliCase{"led on status", 0, "trigger", "default-on", ""},
    CliCase{"led off status", 0, "brightness", "0", ""},
    CliCase{"led blink status", 0, "trigger", "timer", ""},
    CliCase{"led heartbeat status", 0, "trigger", "heartbeat", ""},
    CliCase{"led off absent", 1, nullptr, nullptr, "Failed to open file"},
    CliCase{"led", 2, nullptr, nullptr, "usage:"},
    CliCase{"led on", 2, "brightness", "stale", "usage:"},
    CliCase{"led on status extra", 2, "trigger", "stale", "usage:"},
    CliCase{"led dance status", 2, "trigger", "stale", "unknown action"},
    CliCase{"led off ../leds/status", 2, "brightness", "stale", "not an LED name"}));

}  // namespace
