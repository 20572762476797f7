// The tool's led command: its exit status and its effect on the LED's attribute.
#include <cstdlib>
#include <string>

#include "support/cli.hpp"
#include "support/harness.hpp"

namespace {

struct CliCase {
    const char* arguments;
    int exitStatus;
    const char* trigger;         // the trigger file after the command
    const char* outputFragment;  // "" when anything goes
};

class LedCommand : public zt4test::DeviceTest, public ::testing::WithParamInterface<CliCase> {};

TEST_P(LedCommand, ExitStatusAndEffect) {
    if (std::getenv("ZT4_CLI") == nullptr) GTEST_SKIP() << "ZT4_CLI not set";
    for (const char* attribute : {"max_brightness", "brightness", "trigger"}) writeFile(std::string("/sys/class/leds/status/") + attribute, "1\n");
    std::string output;
    EXPECT_EQ(zt4test::runCli(root(), GetParam().arguments, output), GetParam().exitStatus) << output;
    EXPECT_NE(output.find(GetParam().outputFragment), std::string::npos) << output;
    EXPECT_EQ(readFile("/sys/class/leds/status/trigger"), GetParam().trigger);
}

INSTANTIATE_TEST_SUITE_P(Arguments, LedCommand, ::testing::Values(
    CliCase{"led heartbeat status", 0, "heartbeat", ""},
    CliCase{"led off absent", 1, "1\n", "Failed to open file"},
    CliCase{"led on status extra", 2, "1\n", "usage:"},
    CliCase{"led dance status", 2, "1\n", "unknown action"},
    CliCase{"led off ../leds/status", 2, "1\n", "not an LED name"}));

}  // namespace
