// zt4config model, upgrade and update on a fresh copy of the example device.
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "common/json_ref.hpp"
#include "support/cli.hpp"
#include "support/harness.hpp"

namespace {

const std::string kDevice = ZT4_EXAMPLE_DEVICE;

class ModelCli : public zt4test::DeviceTest {
protected:
    void SetUp() override {
        DeviceTest::SetUp();
        std::filesystem::copy(kDevice, root(), std::filesystem::copy_options::recursive |
                                                   std::filesystem::copy_options::overwrite_existing);
        if (std::getenv("ZT4_CLI") == nullptr) GTEST_SKIP() << "ZT4_CLI not set";
    }
};

TEST_F(ModelCli, PrintsTheRecordOfTheExampleDocuments) {
    std::string output;
    ASSERT_EQ(zt4test::runCli(root(), "model", output, false), 0) << output;
    zt4::JsonRef record(zt4test::parse(output.c_str()));
    json_t* connectors = json_object_get(record.get(), "connectors");
    json_t* hvac = json_array_get(json_object_get(json_array_get(connectors, 1), "channels"), 1);
    // Connector 2 is three-phase: its coefficients come from the three-phase file.
    EXPECT_EQ(json_integer_value(json_object_get(hvac, "CalCurrent")), 0x00406d9f);
    EXPECT_EQ(json_integer_value(json_object_get(hvac, "CalIOffset")), 0xfffffff2);
    EXPECT_TRUE(json_is_real(json_object_get(hvac, "CalInom")));
    EXPECT_EQ(json_integer_value(json_object_get(hvac, "direction")), 1);
    EXPECT_EQ(json_integer_value(json_object_get(hvac, "phase")), 2);
    EXPECT_STREQ(json_string_value(json_object_get(hvac, "name")), "");
    json_t* expert = json_object_get(record.get(), "expert");
    EXPECT_NEAR(json_number_value(json_object_get(expert, "sagLevel")), 292.7422, 1e-3);
    EXPECT_NEAR(json_real_value(json_object_get(json_array_get(json_object_get(expert, "connectors"), 4),
                                                "overCurrentThreshold")), 22.6274, 1e-3);
    EXPECT_EQ(zt4test::compact(json_object_get(record.get(), "setupModes")), "[4,4,4,1,1,0]");
    EXPECT_EQ(json_array_size(json_object_get(json_array_get(connectors, 0), "channels")), 4u);
}

struct CommandRow {
    const char* args;
    int status;
    const char* fragment;  // in stdout and stderr
    const char* file;      // a device file afterwards, or null
    const char* contains;
};

TEST_F(ModelCli, CommandsAndTheirResults) {
    writeFile("/home/nvram/zt4.cfg", "Static_AddressIP=10.0.0.2\nStatic_GW=10.0.0.1\nDHCPD_Enable=0\n");
    {
        // A user document from an older software, without "BACnet": the upgrade adds it.
        zt4::JsonRef user(zt4test::parse(readFile("/home/nvram/zt4config.json").c_str()));
        json_object_del(user.get(), "BACnet");
        char* text = json_dumps(user.get(), JSON_PRESERVE_ORDER | JSON_INDENT(17));
        writeFile("/home/nvram/zt4config.json", text);
        std::free(text);
    }
    const CommandRow rows[] = {
        {"model --display", 0, "Connector 4 | Channel 2 | Mode: Monophase | Name Lighting L2", nullptr, nullptr},
        {"model --json", 2, "model takes no argument", nullptr, nullptr},
        {"update transmit-mode 1", 0, "", "/home/nvram/zt4config.json", "\"FrameFormat\": 3"},
        {"update transmit-mode 2", 2, "N is 0 or 1", nullptr, nullptr},
        {"update setup-connectors 5", 0, "Expect Number Connector Threephase 5", "/home/nvram/zt4config.json",
         "\"NumberConnectorThreephase\": 5"},
        {"update setup-connectors 7", 2, "N is 0 to 6", nullptr, nullptr},
        {"update ethernet '{\"AddressIP\": \"1.2.3.4\", \"Netmask\": \"255.0.0.0\", \"GW\": \"1.2.3.1\", \"Dns\": \"1.1.1.1\"}'",
         0, "renamed successfully", "/home/nvram/zt4.cfg", "Static_AddressIP=1.2.3.4\nStatic_GW=1.2.3.1\nDHCPD_Enable=0\n"},
        {"update wifi '{\"Enable\": 1}'", 1, "address NULL", "/home/nvram/zt4.cfg", "DHCPD_Enable=0\n"},
        {"update bluetooth 1", 2, "unknown setting bluetooth", nullptr, nullptr},
        {"upgrade", 0, "", "/home/nvram/zt4config.json", "\"BACnet\""},
        // Connector 4 is monophase, connector 1 three-phase: each from its own file.
        {"calibration init standard", 0, "", "/home/nvram/zt4calibration.cfg",
         "Connect_1_Cnl_1_CalCurrent=0x00405ec9\n"},
        {"calibration init standard", 0, "", "/home/nvram/zt4calibration.cfg",
         "Connect_4_Cnl_2_CalCurrent=0x0040d300\n"},
        {"calibration init phase", 2, "calibration init standard|threephase|monophase", nullptr, nullptr},
    };
    ASSERT_EQ(readFile("/home/nvram/zt4config.json").find("\"BACnet\""), std::string::npos);
    for (const CommandRow& row : rows) {
        std::string output;
        EXPECT_EQ(zt4test::runCli(root(), row.args, output), row.status) << row.args << "\n" << output;
        EXPECT_NE(output.find(row.fragment), std::string::npos) << row.args << "\n" << output;
        if (row.file != nullptr) {
            EXPECT_NE(readFile(row.file).find(row.contains), std::string::npos) << row.args;
        }
    }
}

}  // namespace
