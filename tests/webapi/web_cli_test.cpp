// zt4config web get|set on the example device.
#include <string>

#include "support/cli.hpp"
#include "webapi/web_device.hpp"

namespace {

struct CliCase {
    const char* name;
    const char* arguments;
    int status;
    const char* output;  // a text the output holds
};

class WebCli : public zt4test::WebDevice, public ::testing::WithParamInterface<CliCase> {};

TEST_P(WebCli, AnswersWithItsExitStatus) {
    const CliCase& c = GetParam();
    const std::string before = readFile(zt4test::kUserFile);
    std::string output;
    EXPECT_EQ(zt4test::runCli(root(), c.arguments, output), c.status) << output;
    EXPECT_NE(output.find(c.output), std::string::npos) << output;
    if (c.status != 0) {
        EXPECT_EQ(readFile(zt4test::kUserFile), before);
    }
}

INSTANTIATE_TEST_SUITE_P(WebAPI, WebCli, ::testing::Values(
    CliCase{"GetModbus", "web get modbus", 0, "\"ID\": 17"},
    CliCase{"GetConnector", "web get connector 3", 0, "\"Name\": \"Elevators\""},
    CliCase{"GetSetup", "web get setup-connectors", 0, "\"Setup\": 3"},
    CliCase{"SetWeb", "web set web '{\"Language\": \"fr\"}'", 0, "Write User configuration web via Web API"},
    CliCase{"SetRefused", "web set modbus '{\"ID\": 0}'", 1, "INVALID Configuration Modbus"},
    CliCase{"SetUnmappable", "web set expert '{\"Colour\": 1}'", 1, "member Colour cannot be mapped"},
    CliCase{"ConnectorOutOfRange", "web get connector 7", 2, "N must be 1 to 6"},
    CliCase{"WriteOnlyDocument", "web get wifi-ssid", 2, "wifi-ssid is written only"},
    CliCase{"ReadOnlyDocument", "web set device-info '{}'", 2, "read only"},
    CliCase{"UnknownDocument", "web get zigbee", 2, "web get DOCUMENT"},
    CliCase{"NotJson", "web set web '{'", 2, "invalid JSON"}),
    [](const ::testing::TestParamInfo<CliCase>& row) { return std::string(row.param.name); });

TEST_F(WebCli, SetStoresTheTranslatedDocument) {
    std::string output;
    ASSERT_EQ(zt4test::runCli(root(), "web set connector 6 '{\"Cnl\": [{\"Mode\": 3, \"Name\": \"Spare\"}]}'", output), 0)
        << output;
    json_t* electrical = storedSection("ElectricalConfiguration");
    json_t* connector = json_array_get(json_object_get(electrical, "Connectors"), 5);
    EXPECT_EQ(zt4test::compact(json_object_get(connector, "Mode")), "3");
    EXPECT_EQ(zt4test::compact(json_object_get(json_array_get(json_object_get(connector, "Channel"), 0), "Name")),
              "\"Spare\"");
    json_decref(electrical);
}

}  // namespace
