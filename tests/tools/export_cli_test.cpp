// zt4config export and import on a copy of the example device.
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "support/cli.hpp"
#include "support/harness.hpp"

namespace {

std::string exampleFile(const std::string& devicePath) {
    std::ifstream in(std::string(ZT4_EXAMPLE_DEVICE) + devicePath);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

class ExportCli : public zt4test::DeviceTest {
protected:
    void SetUp() override {
        DeviceTest::SetUp();
        for (const char* file : {"/home/nvram/zt4config.json", "/home/nvram/zt4system.json",
                                 "/home/nvram/hostapd.conf", "/etc/zt4config_factory.json",
                                 "/etc/zt4system_factory.json"}) {
            writeFile(file, exampleFile(file));
        }
    }
};

TEST_F(ExportCli, SectionsAndUsage) {
    if (std::getenv("ZT4_CLI") == nullptr) GTEST_SKIP() << "ZT4_CLI not set";
    struct Case {
        const char* arguments;
        int status;
        const char* output;  // stdout
    } cases[] = {
        {"export Modbus", 0,
         "Modbus_Enable=1\nModbus_Version=3\nModbus_Interface=\"TCP\"\nModbus_RTUBaudrate=115200\nModbus_Parity=1\n"
         "Modbus_ID=17\n"},
        {"export system RadioLoRa", 0,
         "System_Radio_Enable=1\nSystem_Radio_Debug=2\nSystem_Radio_Baudrate=9600\nSystem_Radio_PayloadLength=50\n"
         "System_Radio_Daemon=\"radiod\"\nSystem_Radio_Script=\"/etc/scripts/radiod\"\n"},
        {"export factory RadioLoRa", 0,
         "Factory_RadioLoRa_Enable=1\nFactory_RadioLoRa_Debug=2\nFactory_RadioLoRa_Baudrate=9600\n"
         "Factory_RadioLoRa_PayloadLength=50\nFactory_RadioLoRa_Daemon=\"radiod\"\n"
         "Factory_RadioLoRa_Script=\"/etc/scripts/radiod\"\n"},
        {"export system Connectors", 0,
         "System_Connector_1_Enable=1\nSystem_Connector_2_Enable=1\nSystem_Connector_3_Enable=1\n"
         "System_Connector_4_Enable=1\nSystem_Connector_5_Enable=1\nSystem_Connector_6_Enable=1\n"},
        {"export Nothing", 0, ""},
        {"export a b c", 2, ""},
        {"export user Web", 2, ""},
        {"import now", 2, ""},
    };
    for (const Case& c : cases) {
        std::string out;
        EXPECT_EQ(zt4test::runCli(root(), c.arguments, out, false), c.status) << c.arguments;
        EXPECT_EQ(out, c.output) << c.arguments;
    }
}

// The printed lines are those of the file; import takes them back into the user document.
TEST_F(ExportCli, WholeFileAndImport) {
    if (std::getenv("ZT4_CLI") == nullptr) GTEST_SKIP() << "ZT4_CLI not set";
    std::string printed, out;
    ASSERT_EQ(zt4test::runCli(root(), "export --stdout", printed, false), 0);
    EXPECT_FALSE(exists("/home/nvram/zt4.cfg"));
    ASSERT_EQ(zt4test::runCli(root(), "export", out, false), 0);
    EXPECT_EQ(out, "");
    EXPECT_EQ(readFile("/home/nvram/zt4.cfg"), printed);
    EXPECT_EQ(printed.substr(0, 37), "System_Device_Manufacturer=\"Kelvane\"\n");

    ASSERT_EQ(zt4test::runCli(root(), "import", out, false), 0);
    ASSERT_EQ(zt4test::runCli(root(), "show user", out, false), 0);
    json_t* document = json_loads(out.c_str(), 0, nullptr);
    EXPECT_EQ(zt4test::compact(json_object_get(document, "Web")), R"({"Language":"\"en\""})");
    json_decref(document);
}

}  // namespace
