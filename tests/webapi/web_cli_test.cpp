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
    CliCase{"SetConnector", "web set connector 6 '{\"Cnl\": [{\"Mode\": 3}]}'", 0, "Write User configuration Connector 6 via Web API"},
    CliCase{"SetRefused", "web set modbus '{\"ID\": 0}'", 1, "INVALID Configuration Modbus"},
    CliCase{"SetNotArray", "web set connectors '{}'", 1, "member (document) cannot be mapped: it is not an array"},
    CliCase{"SetUnmappable", "web set expert '{\"Colour\": 1}'", 1, "member Colour cannot be mapped"},
    CliCase{"ConnectorOutOfRange", "web get connector 7", 2, "N must be 1 to 6"},
    CliCase{"WriteOnlyDocument", "web get wifi-ssid", 2, "wifi-ssid is written only"},
    CliCase{"ReadOnlyDocument", "web set device-info '{}'", 2, "read only"}),
    zt4test::RowName());

}  // namespace
