// Questions the metering daemon asks of the connectors in its configuration record. A channel is
// addressed by connector and channel index or by a global index g (connector g / 3, channel
// g % 3); only the three measuring channels of a connector count, never the neutral record.
#include "common/log.hpp"
#include "zt4config/model.h"

namespace zt4 {
namespace {

constexpr unsigned kGlobalChannels = ZT4_CONNECTOR_COUNT * ZT4_CHANNEL_COUNT;

const ChannelConfig& channelAt(const ConnectorConfig* connectors, unsigned global) noexcept {
    return connectors[global / ZT4_CHANNEL_COUNT].channels[global % ZT4_CHANNEL_COUNT];
}

// Enabled for measuring: switched on and wired in a mode other than Disabled.
bool measures(const ChannelConfig& channel) noexcept {
    return channel.enable == 1 && channel.mode != 0;
}

}  // namespace
}  // namespace zt4

extern "C" {

int isChannelsEnabled(const ConnectorConfig* connectors) noexcept {
    if (connectors == nullptr) {
        zt4::logError(__func__, "connectors NULL");
        return 0;
    }
    for (unsigned global = 0; global < zt4::kGlobalChannels; ++global) {
        if (zt4::measures(zt4::channelAt(connectors, global))) return 1;
    }
    return 0;
}

int isChannelEnabled(const ConnectorConfig* connectors, unsigned int channel) noexcept {
    if (connectors == nullptr) {
        zt4::logError(__func__, "connectors NULL");
        return 0;
    }
    if (channel >= zt4::kGlobalChannels) {
        zt4::logError(__func__, "Channel [%u] INVALID", channel);
        return 0;
    }
    const bool enabled = zt4::measures(zt4::channelAt(connectors, channel));
    if (zt4::debugLevel() >= 4) {
        // This trace line starts with a space.
        zt4::logLine(LOG_INFO, " [%s]: Channel [%d] is %s", __func__, static_cast<int>(channel),
                     enabled ? "enabled" : "disabled");
    }
    return enabled ? 1 : 0;
}

int isModeThreephaseNonBalanced(const ConnectorConfig* connectors, unsigned int channel) noexcept {
    if (connectors == nullptr || channel / ZT4_CHANNEL_COUNT >= ZT4_CONNECTOR_COUNT) return 0;
    const uint8_t mode = zt4::channelAt(connectors, channel).mode;
    return (mode == 2 || mode == 4 || mode == 6) ? 1 : 0;
}

// Only the enable bytes count here, not the modes: a connector whose channel is switched on in
// mode Disabled is still "enabled" for this question.
int isConnectorEnabled(const ConnectorConfig* connectors, uint8_t connector) noexcept {
    if (isConnectorValid(connector + 1u) != 0) {
        zt4::logError(__func__, "Connector ID %u INVALID", static_cast<unsigned>(connector));
        return -1;
    }
    if (connectors == nullptr) {
        zt4::logError(__func__, "connectors NULL");
        return -1;
    }
    for (unsigned index = 0; index < ZT4_CHANNEL_COUNT; ++index) {
        if (connectors[connector].channels[index].enable == 1) return 0;
    }
    return -1;
}

}  // extern "C"
