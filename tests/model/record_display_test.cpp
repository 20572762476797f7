// The dump of the record to the log: every line, in order, with its exact spacing.
#include <syslog.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/harness.hpp"
#include "zt4config.h"

namespace {

class DisplayTest : public zt4test::DeviceTest {};

std::vector<std::string> infoLines() {
    std::vector<std::string> lines;
    for (const auto& entry : zt4test::capturedLog()) {
        if (entry.priority == LOG_INFO) lines.push_back(entry.text);
    }
    return lines;
}

TEST_F(DisplayTest, WritesTheActiveChannelsAndEveryConnectorsOptions) {
    zt4Data data;
    std::memset(&data, 0, sizeof data);
    const uint8_t setup[] = {4, 4, 4, 1, 1, 0};
    std::memcpy(data.setupModes, setup, sizeof setup);
    data.meterRunning = 1;
    ConnectorConfig& connector = data.connectors[1];
    connector.vtPrimary = 400.0f;
    connector.vtSecondary = 230.0f;
    ChannelConfig& channel = connector.channels[2];
    channel = ChannelConfig{"Pump", 1, 1, 3, 2, 1, 1.5f, 100, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    connector.channels[0] = channel;  // on but in mode 0: not shown
    connector.channels[0].mode = 0;
    connector.channels[1] = channel;  // in a mode but off: not shown
    connector.channels[1].enable = 0;
    ConnectorExpert& options = data.expert.connectors[1];
    options = ConnectorExpert{1, 2, 1, 1, 30, 1, 3.5355f, {{}, {}, {20.0f, 1, 0, 1}}};  // 2: not enabled
    data.expert.nominalVoltage = 230.0f;
    data.expert.lineFrequency = 50.0f;
    data.expert.sagEnable = 1;
    data.expert.sagCycle = 1;
    data.expert.sagRateLevel = 10.0f;
    data.expert.sagLevel = 292.7422f;
    data.expert.swellEnable = 0;

    DisplayZT4Param(&data);

    std::vector<std::string> expected = {
        "Electrical configuration:",
        "Setup Connector ID 1: Triphase",
        "Setup Connector ID 2: Triphase",
        "Setup Connector ID 3: Triphase",
        "Setup Connector ID 4: Monophase",
        "Setup Connector ID 5: Monophase",
        "Setup Connector ID 6: Disabled",
        "Energy meter is running ...",
        "Connector 2 | Channel 3 | Mode: Monophase | Name Pump",
        "  Phase 3 | Direction: Inverted | Plier: JC10F30-333 [30A : 333mV] | xGeneral: 1.500000",
        "  CTPrimary: 100 A | PTSecondary: 230.000000 V | PTPrimary: 400.000000 V",
    };
    for (int number = 1; number <= 6; ++number) {
        const std::string n = std::to_string(number);
        if (number != 2) {
            expected.insert(expected.end(), {
                "Expert configuration Connector " + n + ":",
                "  Connector " + n + ": Option Current Imbalance Factor Disabled",
                "  Connector " + n + ": Option Power Imbalance Factor Disabled",
                "  Connector " + n + ": Option Voltage Imbalance Factor Disabled",
                "  Connector " + n + ": Option Current Average Max Disabled",
                "  Connector " + n + ": Option THD Disabled"});
            continue;
        }
        expected.insert(expected.end(), {
            "Expert configuration Connector 2:",
            "  Connector 2: Option Current Imbalance Factor Enabled",
            "  Connector 2: Option Power Imbalance Factor Disabled",
            "  Connector 2: Option Voltage Imbalance Factor Enabled",
            "  Connector 2: Option Current Average Max Enabled",
            "  Period: 30 min",
            "  Connector 2: Option THD Enabled",
            "Connector 2 | Channel 3 | Mode: Monophase | Name Pump",
            "  Power No Load: 20.00 Watts",
            "  Connector 2 Cnl 3: Option Operating Time Enabled",
            "  Connector 2 Cnl 3: Option Number of Startup Disabled",
            "  Connector 2 Cnl 3: Option Over Current Enabled",
            "  Connector 2 Cnl 3: Over Current Level: 3.54 Amps"});
    }
    expected.insert(expected.end(), {
        "  Nominal Voltage:  230.00 Volts",
        "  Line Frequency :  50.00 Hz",
        "  Option Sag Enabled",
        "  Sag Cycle:      1",
        "  Sag Rate Level: 10.00 %",
        "  Sag Level:      292.74 Volts",
        "  Option Swell Disabled"});
    EXPECT_EQ(infoLines(), expected);

    zt4test::clearLog();
    data.meterRunning = 0;
    data.expert.sagEnable = 0;
    data.expert.swellEnable = 1;
    data.expert.swellRateLevel = 10.0f;
    data.expert.swellLevel = 357.796f;
    DisplayZT4Param(&data);
    const std::vector<std::string> lines = infoLines();
    ASSERT_GE(lines.size(), 4u);
    EXPECT_EQ(std::vector<std::string>(lines.end() - 4, lines.end()),
              (std::vector<std::string>{"  Option Sag Disabled", "  Option Swell Enabled",
                                        "  Swell Rate Level: 10.00 %", "  Swell Level:      357.80 Volts"}));
    EXPECT_EQ(zt4test::loggedCount("Energy meter is running"), 0);
}

}  // namespace
