#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "support/cli.hpp"
#include "support/harness.hpp"

namespace {

struct CliCase {
    const char* label;
    const char* args;
    int status;
    const char* output;  // fragment of stdout and stderr together
    const char* stored;  // fragment the system file must hold afterwards, or null
};
void PrintTo(const CliCase& c, std::ostream* out) { *out << c.args; }

class SystemCli : public zt4test::DeviceTest, public ::testing::WithParamInterface<CliCase> {
protected:
    void SetUp() override {
        zt4test::DeviceTest::SetUp();
        std::ifstream in(std::string(ZT4_EXAMPLE_DEVICE) + "/home/nvram/zt4system.json");
        std::stringstream text;
        text << in.rdbuf();
        writeFile("/home/nvram/zt4system.json", text.str());
    }

    int run(const std::string& args, std::string& output) const {
        return zt4test::runCli(root(), args, output);
    }
};

TEST_P(SystemCli, ExitStatusOutputAndFile) {
    const CliCase& c = GetParam();
    if (std::getenv("ZT4_CLI") == nullptr) GTEST_SKIP() << "ZT4_CLI not set";
    std::string output;
    EXPECT_EQ(run(c.args, output), c.status) << output;
    EXPECT_NE(output.find(c.output), std::string::npos) << output;
    if (c.stored) {
        EXPECT_NE(readFile("/home/nvram/zt4system.json").find(c.stored), std::string::npos);
    }
}

INSTANTIATE_TEST_SUITE_P(Commands, SystemCli, ::testing::Values(
    CliCase{"get", "system get modbus", 0, "\"Port\": 502", nullptr},
    CliCase{"get array", "system get connectors", 0, "\"Enable\": 1", nullptr},
    CliCase{"set", "system set web '{\"Debug\":4}'", 0, "", "\"Debug\": 4"},
    CliCase{"set filled", "system set wifi '{\"Debug\":3}'", 0,
            "error.[checkJSONZT4SystemWiFiSyntaxVersion1]: Lease NULL", "\"Lease\": 86400"},
    CliCase{"refused", "system set modbus '{\"Port\":503}'", 1, "INVALID Configuration Modbus",
            "\"Port\": 502"},
    CliCase{"refused connectors", "system set connectors '[{\"Enable\":5}]'", 1,
            "INVALID Configuration Connector", nullptr},
    CliCase{"read only", "system set device '{}'", 2, "device cannot be written", nullptr},
    CliCase{"unknown section", "system get lora", 2, "unknown system section lora", nullptr},
    CliCase{"not json", "system set web '{'", 2, "invalid JSON", nullptr}));

}  // namespace
