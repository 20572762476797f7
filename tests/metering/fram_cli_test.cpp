// zt4config fram: the example device's FRAM (layout 2) read, dumped and upgraded through the tool.
#include "metering/fram_fixture.hpp"
#include "support/cli.hpp"

namespace {

struct CliCase {
    const char* label;
    const char* arguments;
    const char* systemVersion;  // /var/tmp/fram; nullptr: none
    int status;
    const char* output;  // found in stdout without blanks and newlines
};

class FramCli : public zt4test::FramTest, public ::testing::WithParamInterface<CliCase> {};

TEST_P(FramCli, ReadsTheExampleMemoryAndChangesNothing) {
    const CliCase& c = GetParam();
    copyExampleDevice();
    if (c.systemVersion != nullptr) writeFile("/var/tmp/fram", c.systemVersion);
    const std::string before = fram();
    std::string output, compact;
    ASSERT_EQ(zt4test::runCli(root(), c.arguments, output, false), c.status) << output;
    for (char ch : output) {
        if (ch != ' ' && ch != '\n') compact += ch;
    }
    EXPECT_NE(compact.find(c.output), std::string::npos) << compact;
    EXPECT_EQ(fram(), before);
}

INSTANTIATE_TEST_SUITE_P(Commands, FramCli, ::testing::Values(
    CliCase{"Version", "fram version", nullptr, 0, "{\"memory\":2,\"system\":-1}"},
    CliCase{"Phases", "fram get sags swells", "1\n", 0, "{\"sags\":[3,1,2],\"swells\":[0,1,0]}"},
    CliCase{"Energy", "fram get active", nullptr, 0, "{\"active\":[[1523.25,120.5,610.0,792.75],[830.0,0.0,412.5,417.5],"},
    CliCase{"OverCurrents", "fram get over-currents", nullptr, 0, "[[0,0,0],[0,0,0],[0,0,0],[0,0,0],[1,0,0],[0,0,0]]}"},
    CliCase{"Dump", "fram dump", "2", 0, "{\"memory\":2,\"system\":2,\"active\":"},
    CliCase{"DumpOperatingTime", "fram dump", nullptr, 0, "\"operating-time\":[[8760.5,0.0,0.0,0.0],"},
    CliCase{"UpgradeNothingToDo", "fram upgrade", "2\n", 0, "{\"memory\":2,\"system\":2,\"result\":0}"},
    CliCase{"UpgradeDowngrade", "fram upgrade", "1\n", 1, "{\"memory\":2,\"system\":1,\"result\":-1}"},
    CliCase{"UpgradeDefault3", "fram upgrade 3", nullptr, 1, "\"result\":-1"},
    CliCase{"UnknownCounter", "fram get startups bogus", nullptr, 2, ""},
    CliCase{"NoCounter", "fram get", nullptr, 2, ""}, CliCase{"NoAction", "fram", nullptr, 2, ""},
    CliCase{"BadDefault", "fram upgrade two", nullptr, 2, ""}),
    [](const auto& row) { return std::string(row.param.label); });

using FramCliWithoutMemory = zt4test::FramTest;

TEST_F(FramCliWithoutMemory, Fails) {
    std::string output;
    EXPECT_EQ(zt4test::runCli(root(), "fram version", output, false), 1);
    EXPECT_NE(output.find("\"memory\": -1"), std::string::npos) << output;
    EXPECT_EQ(zt4test::runCli(root(), "fram get startups", output, false), 1);
}

}  // namespace
