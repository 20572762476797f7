// zt4config calibration show / write on a device root.
#include <string>

#include "support/cli.hpp"
#include "support/harness.hpp"

namespace {

struct CliCase {
    const char* name;
    const char* arguments;  // after "--root DIR"; "@" stands for the device root
    int status;
    const char* output;  // a text the output must contain ("" when not checked)
    const char* file;    // device file to check afterwards ("" none)
    const char* content; // its expected content
};

class CalibrationCli : public zt4test::DeviceTest, public ::testing::WithParamInterface<CliCase> {
protected:
    void SetUp() override {
        DeviceTest::SetUp();
        writeFile("/home/nvram/zt4calibration.cfg", "Connect_2_Cnl_3_CalPref=0x00000e10\nConnect_1_Cnl_1_CalInom=5.50\n");
        writeFile("/var/tmp/document.json", R"({"Connector":[{"Cnl":[{"CalVnom":231.5,"CalPref":255}]}]})");
        writeFile("/var/tmp/broken.json", R"({"Connector":[)");
    }
};

TEST_P(CalibrationCli, StatusOutputAndFiles) {
    const CliCase& c = GetParam();
    std::string arguments = c.arguments;
    for (size_t at = arguments.find('@'); at != std::string::npos; at = arguments.find('@')) {
        arguments.replace(at, 1, root());
    }
    std::string output;
    EXPECT_EQ(zt4test::runCli(root(), arguments, output), c.status) << output;
    if (*c.output) {
        EXPECT_NE(output.find(c.output), std::string::npos) << output;
    }
    if (*c.file) {
        EXPECT_EQ(readFile(c.file), c.content);
    }
}

const CliCase kCases[] = {
    {"ShowStandardByDefault", "calibration show", 0, "\"CalPref\": 3600", "", ""},
    {"ShowStandard", "calibration show standard", 0, "\"CalInom\": 5.5", "", ""},
    {"ShowMissingFile", "calibration show monophase", 1,
     "FAILED to open calibration monophase configuration file", "", ""},
    {"ShowUnknownKind", "calibration show single", 2, "", "", ""},
    {"ShowTooManyWords", "calibration show standard standard", 2, "", "", ""},
    {"NoSubcommand", "calibration", 2, "", "", ""},
    {"UnknownSubcommand", "calibration erase", 2, "", "", ""},
    {"WriteFromFile", "calibration write threephase @/var/tmp/document.json", 0, "", "/home/nvram/zt4calibration_threephase.cfg",
     "Connect_1_Cnl_1_CalVnom=231.50\nConnect_1_Cnl_1_CalPref=0x000000ff\n"},
    {"WriteFromStdin", "calibration write monophase - < @/var/tmp/document.json", 0, "", "/home/nvram/zt4calibration_monophase.cfg",
     "Connect_1_Cnl_1_CalVnom=231.50\nConnect_1_Cnl_1_CalPref=0x000000ff\n"},
    {"WriteBrokenJson", "calibration write standard @/var/tmp/broken.json", 1, "", "/home/nvram/zt4calibration.cfg",
     "Connect_2_Cnl_3_CalPref=0x00000e10\nConnect_1_Cnl_1_CalInom=5.50\n"},
    {"WriteWithoutConnector", "calibration write standard - < /dev/null", 1, "", "/home/nvram/zt4calibration.cfg",
     "Connect_2_Cnl_3_CalPref=0x00000e10\nConnect_1_Cnl_1_CalInom=5.50\n"},
    {"WriteWithoutFile", "calibration write standard", 2, "", "", ""},
    {"WriteUnknownKind", "calibration write all @/var/tmp/document.json", 2, "", "", ""},
};

INSTANTIATE_TEST_SUITE_P(Commands, CalibrationCli, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<CliCase>& row) { return std::string(row.param.name); });

}  // namespace
