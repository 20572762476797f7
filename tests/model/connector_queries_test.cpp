#include <syslog.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "support/harness.hpp"
#include "zt4config.h"

namespace {

struct ChannelSetting {
    unsigned connector;
    unsigned channel;  // 3 is the neutral record
    uint8_t enable;
    uint8_t mode;
};

struct ModelCase {
    const char* name;
    std::vector<ChannelSetting> settings;
    int anyEnabled;
    std::vector<unsigned> enabledChannels;    // global indexes where isChannelEnabled is 1
    std::vector<unsigned> enabledConnectors;  // where isConnectorEnabled is 0
};

class ConnectorQueries : public zt4test::DeviceTest,
                         public ::testing::WithParamInterface<ModelCase> {
protected:
    void build(const std::vector<ChannelSetting>& settings) {
        std::memset(&data_, 0, sizeof data_);
        for (const ChannelSetting& s : settings) {
            data_.connectors[s.connector].channels[s.channel].enable = s.enable;
            data_.connectors[s.connector].channels[s.channel].mode = s.mode;
        }
    }
    static bool contains(const std::vector<unsigned>& list, unsigned value) {
        return std::find(list.begin(), list.end(), value) != list.end();
    }
    zt4Data data_;
};

TEST_P(ConnectorQueries, AnswerFromEnableAndMode) {
    const ModelCase& c = GetParam();
    build(c.settings);
    EXPECT_EQ(isChannelsEnabled(data_.connectors), c.anyEnabled);
    for (unsigned g = 0; g < 18; ++g) {
        EXPECT_EQ(isChannelEnabled(data_.connectors, g), contains(c.enabledChannels, g) ? 1 : 0)
            << "channel " << g;
    }
    for (unsigned connector = 0; connector < 6; ++connector) {
        EXPECT_EQ(isConnectorEnabled(data_.connectors, static_cast<uint8_t>(connector)),
                  contains(c.enabledConnectors, connector) ? 0 : -1)
            << "connector " << connector;
    }
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
}

INSTANTIATE_TEST_SUITE_P(Models, ConnectorQueries, ::testing::Values(
    ModelCase{"AllOff", {}, 0, {}, {}},
    ModelCase{"LastChannelMonophase", {{5, 2, 1, 1}}, 1, {17}, {5}},
    ModelCase{"FirstChannelTriphase", {{0, 0, 1, 4}}, 1, {0}, {0}},
    // Switched on but wired Disabled: the connector counts as enabled, the channel does not.
    ModelCase{"EnabledButModeDisabled", {{2, 1, 1, 0}}, 0, {}, {2}},
    ModelCase{"ModeWithoutEnable", {{3, 0, 0, 2}}, 0, {}, {}},
    ModelCase{"EnableMustBeExactlyOne", {{1, 1, 2, 1}}, 0, {}, {}},
    ModelCase{"NeutralRecordIgnored", {{4, 3, 1, 1}}, 0, {}, {}},
    ModelCase{"Several", {{1, 2, 1, 3}, {4, 0, 1, 6}, {4, 1, 1, 0}}, 1, {5, 12}, {1, 4}}),
    [](const auto& param) { return std::string(param.param.name); });

TEST_F(ConnectorQueries, ThreephaseNonBalancedModes) {
    const int expected[] = {0, 0, 1, 0, 1, 0, 1, 0, 0};
    for (unsigned g : {0u, 10u, 17u}) {
        for (unsigned mode = 0; mode < 9; ++mode) {
            build({{g / 3, g % 3, 0, static_cast<uint8_t>(mode)}});
            EXPECT_EQ(isModeThreephaseNonBalanced(data_.connectors, g), expected[mode])
                << "channel " << g << " mode " << mode;
        }
    }
    build({{5, 2, 1, 2}});
    EXPECT_EQ(isModeThreephaseNonBalanced(data_.connectors, 18), 0);
    EXPECT_EQ(isModeThreephaseNonBalanced(data_.connectors, UINT32_MAX), 0);
    EXPECT_EQ(isModeThreephaseNonBalanced(nullptr, 0), 0);
}

TEST_F(ConnectorQueries, BadArgumentsAreRefusedAndLoggedTracesFromLevelFour) {
    build({{0, 0, 1, 1}, {2, 1, 1, 5}});
    EXPECT_EQ(isConnectorEnabled(data_.connectors, 6), -1);
    EXPECT_TRUE(zt4test::logged("error.[isConnectorEnabled]: Connector ID 6 INVALID", LOG_ERR));
    EXPECT_EQ(isConnectorEnabled(data_.connectors, 255), -1);
    EXPECT_EQ(isConnectorEnabled(nullptr, 0), -1);
    EXPECT_EQ(isChannelEnabled(data_.connectors, 18), 0);
    EXPECT_EQ(isChannelEnabled(nullptr, 0), 0);
    EXPECT_EQ(isChannelsEnabled(nullptr), 0);
    EXPECT_EQ(zt4test::loggedCount("error.["), 6) << zt4test::logDump();
    zt4test::clearLog();
    debug_level = 3;
    EXPECT_EQ(isChannelEnabled(data_.connectors, 7), 1);
    EXPECT_TRUE(zt4test::capturedLog().empty());
    debug_level = 4;
    EXPECT_EQ(isChannelEnabled(data_.connectors, 7), 1);
    EXPECT_EQ(isChannelEnabled(data_.connectors, 8), 0);
    EXPECT_TRUE(zt4test::logged(" [isChannelEnabled]: Channel [7] is enabled", LOG_INFO));
    EXPECT_TRUE(zt4test::logged(" [isChannelEnabled]: Channel [8] is disabled", LOG_INFO));
}

}  // namespace
