// zt4config get / set on the user configuration's sections.
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "support/cli.hpp"
#include "support/harness.hpp"

namespace {

constexpr const char* kUserFile = "/home/nvram/zt4config.json";

struct CliCase {
    const char* arguments;
    int exitStatus;
    const char* outputFragment;  // expected in stdout+stderr
    bool fileUnchanged;
};

class UserCommand : public zt4test::DeviceTest, public ::testing::WithParamInterface<CliCase> {
protected:
    int run(const std::string& arguments, std::string& output) const {
        return zt4test::runCli(root(), arguments, output);
    }
};

TEST_P(UserCommand, ExitStatusOutputAndFile) {
    if (std::getenv("ZT4_CLI") == nullptr) GTEST_SKIP() << "ZT4_CLI not set";
    const CliCase& c = GetParam();
    const std::string document =
        R"({"Syntax": {"Version": 1}, "Web": {"Language": "en"}, "Modbus": {"Enable": 1}})";
    writeFile(kUserFile, document);
    std::string output;
    EXPECT_EQ(run(c.arguments, output), c.exitStatus) << output;
    EXPECT_NE(output.find(c.outputFragment), std::string::npos) << output;
    if (c.fileUnchanged) EXPECT_EQ(readFile(kUserFile), document);
    else EXPECT_NE(readFile(kUserFile), document);
}

INSTANTIATE_TEST_SUITE_P(Arguments, UserCommand, ::testing::Values(
    CliCase{"get web", 0, "\"Language\": \"en\"", true},
    CliCase{"get bacnet", 0, "\"Port\": 47808", true},
    CliCase{"get connector 2", 0, "\"CurrentTransformerModel\": 0", true},
    CliCase{"set web '{\"Language\": \"fr\"}'", 0, "", false},
    CliCase{"set modbus '{\"RTUBaudrate\": 4800}'", 1, "INVALID Configuration Modbus", true},
    CliCase{"set web '{not json'", 2, "invalid JSON", true},
    CliCase{"set electrical '{}'", 2, "cannot be written", true},
    CliCase{"get connector 7", 2, "1 to 6", true},
    CliCase{"get nothing", 2, "unknown section", true},
    CliCase{"get", 2, "usage:", true}));

}  // namespace
