#include <cstdlib>
#include <string>

#include "support/cli.hpp"
#include "support/harness.hpp"

namespace {

struct CliCase {
    const char* arguments;
    int exitStatus;
    const char* attribute;  // checked when not null
    const char* content;
    const char* stderrFragment;  // "" when anything goes
};

class LedCommand : public zt4test::DeviceTest, public ::testing::WithParamInterface<CliCase> {};

TEST_P(LedCommand, ExitStatusAndEffect) {
    if (std::getenv("ZT4_CLI") == nullptr) GTEST_SKIP() << "ZT4_CLI not set";
    const CliCase& c = GetParam();
    for (const char* attribute : {"max_brightness", "brightness", "trigger"}) {
        writeFile(std::string("/sys/class/leds/status/") + attribute, "1\n");
    }
    std::string output;
    EXPECT_EQ(zt4test::runCli(root(), c.arguments, output), c.exitStatus) << output;
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
    CliCase{"led on status extra", 2, "trigger", "1\n", "usage:"},
    CliCase{"led dance status", 2, "trigger", "1\n", "unknown action"},
    CliCase{"led off ../leds/status", 2, "brightness", "1\n", "not an LED name"}));

}  // namespace
