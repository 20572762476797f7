// zt4config fram: the example device's FRAM (layout 2) read, dumped and upgraded through the tool.
#include <filesystem>
#include <string>

#include "metering/fram_fixture.hpp"
#include "support/cli.hpp"

namespace {

struct CliCase {
    const char* label;
    const char* arguments;
    const char* systemVersion;  // /var/tmp/fram; nullptr: none
    bool withMemory;
    int status;
    const char* output;  // found in stdout without blanks and newlines; "" to skip
};

const CliCase kCases[] = {
    {"Version", "fram version", nullptr, true, 0, "{\"memory\":2,\"system\":-1}"},
    {"VersionExpected", "fram version", "1\n", true, 0, "{\"memory\":2,\"system\":1}"},
    {"VersionWithoutMemory", "fram version", nullptr, false, 1, "{\"memory\":-1,\"system\":-1}"},
    {"Phases", "fram get sags swells", nullptr, true, 0, "{\"sags\":[3,1,2],\"swells\":[0,1,0]}"},
    {"Energy", "fram get active", nullptr, true, 0,
     "{\"active\":[[1523.25,120.5,610.0,792.75],[830.0,0.0,412.5,417.5],"},
    {"OverCurrents", "fram get over-currents", nullptr, true, 0,
     "{\"over-currents\":[[0,0,0],[0,0,0],[0,0,0],[0,0,0],[1,0,0],[0,0,0]]}"},
    {"Dump", "fram dump", nullptr, true, 0, "\"operating-time\":[[8760.5,0.0,0.0,0.0],"},
    {"DumpVersions", "fram dump", "2", true, 0, "{\"memory\":2,\"system\":2,\"active\":"},
    {"UpgradeNothingToDo", "fram upgrade", "2\n", true, 0, "{\"memory\":2,\"system\":2,\"result\":0}"},
    {"UpgradeDowngradeRefused", "fram upgrade", "1\n", true, 1, "{\"memory\":2,\"system\":1,\"result\":-1}"},
    {"UpgradeDefaultUnknown", "fram upgrade 3", nullptr, true, 1, "\"result\":-1"},
    {"GetWithoutMemory", "fram get startups", nullptr, false, 1, ""},
    {"UnknownCounter", "fram get startups bogus", nullptr, true, 2, ""},
    {"NoCounter", "fram get", nullptr, true, 2, ""},
    {"NoAction", "fram", nullptr, true, 2, ""},
    {"UnknownAction", "fram erase", nullptr, true, 2, ""},
    {"BadDefault", "fram upgrade two", nullptr, true, 2, ""},
    {"VersionWithArgument", "fram version 2", nullptr, true, 2, ""},
};

class FramCli : public zt4test::FramTest, public ::testing::WithParamInterface<CliCase> {};

TEST_P(FramCli, PrintsTheMemory) {
    const CliCase& c = GetParam();
    std::filesystem::copy(ZT4_EXAMPLE_DEVICE, root(),
                          std::filesystem::copy_options::recursive | std::filesystem::copy_options::overwrite_existing);
    if (!c.withMemory) removeFile(zt4test::kFramNode);
    if (c.systemVersion != nullptr) writeFile("/var/tmp/fram", c.systemVersion);
    const std::string before = fram();

    std::string output;
    ASSERT_EQ(zt4test::runCli(root(), c.arguments, output, false), c.status) << output;
    std::string compact;
    for (char ch : output) {
        if (ch != ' ' && ch != '\n') compact += ch;
    }
    EXPECT_NE(compact.find(c.output), std::string::npos) << compact;
    EXPECT_EQ(fram(), before);  // none of these changes the example memory
}

INSTANTIATE_TEST_SUITE_P(Commands, FramCli, ::testing::ValuesIn(kCases),
                         [](const auto& row) { return std::string(row.param.label); });

}  // namespace
