#include <cstdlib>
#include <string>

#include "support/cli.hpp"
#include "support/harness.hpp"

namespace {

struct CliCase {
    const char* label;
    const char* args;
    int status;
    const char* output;     // fragment of stdout and stderr together
    const char* file;       // device file to check afterwards; nullptr: none
    const char* content;
};

class RadioCli : public zt4test::DeviceTest, public ::testing::WithParamInterface<CliCase> {
protected:
    void SetUp() override {
        zt4test::DeviceTest::SetUp();
        writeFile("/home/nvram/radiodeveui", "70:B3:D5:7E:D0:01:23:45\n");
        writeFile("/home/nvram/radiojoined", "1\n");
        writeFile("/var/tmp/hardware", "3.2.1\n");
        writeFile("/var/tmp/radionwkkey", "70:B3:D5:7E:D0:01:23:45");
        writeFile("/var/run/timestamp_join", "1795431600");
    }
};

TEST_P(RadioCli, ExitStatusOutputAndFiles) {
    const CliCase& c = GetParam();
    if (std::getenv("ZT4_CLI") == nullptr) GTEST_SKIP() << "ZT4_CLI not set";
    std::string output;
    EXPECT_EQ(zt4test::runCli(root(), c.args, output), c.status) << output;
    EXPECT_NE(output.find(c.output), std::string::npos) << output;
    if (c.file) {
        EXPECT_EQ(readFile(c.file), c.content);
    }
}

INSTANTIATE_TEST_SUITE_P(Commands, RadioCli, ::testing::Values(
    CliCase{"getEui", "radio get deveui", 0, R"("deveui": "70:B3:D5:7E:D0:01:23:45")", nullptr,
            nullptr},
    CliCase{"getBadFormat", "radio get lorawan.nwkkey", 1,
            "error.[getConfigRadioKey32] value format is wrong", nullptr, nullptr},
    CliCase{"getWriteOnly", "radio get lorawan.epochtime", 2, "cannot be read", nullptr, nullptr},
    CliCase{"setEui", "radio set deveui 70:B3:D5:7E:D0:01:23:46", 0, "",
            "/home/nvram/radiodeveui", "70:B3:D5:7E:D0:01:23:46\n"},
    CliCase{"setBadEui", "radio set deveui 70:B3", 1,
            "error.[setRadioDEVEUI] value format is wrong", "/home/nvram/radiodeveui",
            "70:B3:D5:7E:D0:01:23:45\n"},
    CliCase{"clearJoined", "radio set joined 0", 0, "", "/home/nvram/radiojoined", "0\n"},
    CliCase{"badJoined", "radio set joined yes", 2, "joined takes 0 or 1",
            "/home/nvram/radiojoined", "1\n"},
    CliCase{"setDaemonDr", "radio set lorawan.dr 3", 0, "", "/var/tmp/radiodr", "3"},
    CliCase{"joinTime", "radio join-time", 0, R"("TimestampLastJoin": 1795431600)", nullptr,
            nullptr},
    CliCase{"setJoinTime", "radio join-time set 1795431601", 0, "", "/var/run/timestamp_join",
            "1795431601"},
    CliCase{"badJoinTime", "radio join-time set soon", 2, "join-time", nullptr, nullptr},
    CliCase{"serialSpaced", "device serial --spaced", 0,
            R"("SerialNumber": "70B3D57E D0012345")", nullptr, nullptr},
    CliCase{"board", "device board", 0, R"("BoardVersion3_2": 1)", nullptr, nullptr},
    CliCase{"info", "device info", 0, R"("HW": "3.2.1\n")", nullptr, nullptr}),
    [](const ::testing::TestParamInfo<CliCase>& row) { return std::string(row.param.label); });

}  // namespace
