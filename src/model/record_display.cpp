// The record as the metering daemon sees it, written to the system log line by line.
#include "common/log.hpp"
#include "zt4config/model.h"
#include "zt4config/record_readers.h"

namespace {

// A flag counts as enabled only when it is exactly 1.
const char* state(uint8_t flag) noexcept { return flag == 1 ? "Enabled" : "Disabled"; }

bool isActive(const ChannelConfig& channel) noexcept { return channel.mode != 0 && channel.enable == 1; }

void showChannelTitle(unsigned connector, unsigned channel, const ChannelConfig& config) noexcept {
    // At most the name's 47 characters, even from a record whose name lacks its terminator.
    zt4::logLine(LOG_INFO, "Connector %u | Channel %u | Mode: %s | Name %.*s", connector + 1, channel + 1,
                 getNameMode(config.mode), ZT4_CHANNEL_NAME_SIZE - 1, config.name);
}

// The connector-level options: label in the line, field of the record.
struct ConnectorOption {
    const char* label;
    uint8_t ConnectorExpert::*flag;
};

constexpr ConnectorOption kImbalanceOptions[] = {
    {"Current Imbalance Factor", &ConnectorExpert::currentImbalance},
    {"Power Imbalance Factor", &ConnectorExpert::powerImbalance},
    {"Voltage Imbalance Factor", &ConnectorExpert::voltageImbalance},
};

struct ChannelOption {
    const char* label;
    uint8_t ChannelExpert::*flag;
};

constexpr ChannelOption kChannelOptions[] = {
    {"Operating Time", &ChannelExpert::operatingTime},
    {"Number of Startup", &ChannelExpert::startupCycle},
    {"Over Current", &ChannelExpert::overCurrent},
};

void showWiring(const zt4Data& data) noexcept {
    zt4::logLine(LOG_INFO, "Electrical configuration:");
    for (unsigned i = 0; i < ZT4_CONNECTOR_COUNT; ++i) {
        zt4::logLine(LOG_INFO, "Setup Connector ID %u: %s", i + 1, getNameMode(data.setupModes[i]));
    }
    if (data.meterRunning == 1) zt4::logLine(LOG_INFO, "Energy meter is running ...");
    for (unsigned i = 0; i < ZT4_CONNECTOR_COUNT; ++i) {
        const ConnectorConfig& connector = data.connectors[i];
        for (unsigned c = 0; c < ZT4_CHANNEL_COUNT; ++c) {
            const ChannelConfig& channel = connector.channels[c];
            if (!isActive(channel)) continue;
            showChannelTitle(i, c, channel);
            zt4::logLine(LOG_INFO, "  Phase %u | Direction: %s | Plier: %s [%s] | xGeneral: %f",
                         static_cast<unsigned>(channel.phase), channel.direction == 1 ? "Inverted" : "Normal",
                         getNamePlier(channel.ctModel), getRatePlier(channel.ctModel),
                         static_cast<double>(channel.generalFactor));
            zt4::logLine(LOG_INFO, "  CTPrimary: %u A | PTSecondary: %f V | PTPrimary: %f V",
                         static_cast<unsigned>(channel.ctPrimary), static_cast<double>(connector.vtSecondary),
                         static_cast<double>(connector.vtPrimary));
        }
    }
}

void showExpertConnectors(const zt4Data& data) noexcept {
    for (unsigned i = 0; i < ZT4_CONNECTOR_COUNT; ++i) {
        const ConnectorExpert& options = data.expert.connectors[i];
        const unsigned number = i + 1;
        zt4::logLine(LOG_INFO, "Expert configuration Connector %u:", number);
        for (const ConnectorOption& option : kImbalanceOptions) {
            zt4::logLine(LOG_INFO, "  Connector %u: Option %s %s", number, option.label, state(options.*option.flag));
        }
        if (options.currentAverageMax == 1) {
            zt4::logLine(LOG_INFO, "  Connector %u: Option Current Average Max Enabled", number);
            zt4::logLine(LOG_INFO, "  Period: %u min", static_cast<unsigned>(options.period));
        } else {
            zt4::logLine(LOG_INFO, "  Connector %u: Option Current Average Max Disabled", number);
        }
        zt4::logLine(LOG_INFO, "  Connector %u: Option THD %s", number, state(options.thd));
        for (unsigned c = 0; c < ZT4_CHANNEL_COUNT; ++c) {
            const ChannelConfig& channel = data.connectors[i].channels[c];
            if (!isActive(channel)) continue;
            const ChannelExpert& channelOptions = options.channels[c];
            showChannelTitle(i, c, channel);
            zt4::logLine(LOG_INFO, "  Power No Load: %0.2f Watts", static_cast<double>(channelOptions.powerNoLoad));
            for (const ChannelOption& option : kChannelOptions) {
                zt4::logLine(LOG_INFO, "  Connector %u Cnl %u: Option %s %s", number, c + 1, option.label,
                             state(channelOptions.*option.flag));
            }
            zt4::logLine(LOG_INFO, "  Connector %u Cnl %u: Over Current Level: %0.2f Amps", number, c + 1,
                         static_cast<double>(options.overCurrentThreshold));
        }
    }
}

void showVoltageOptions(const ExpertConfig& expert) noexcept {
    zt4::logLine(LOG_INFO, "  Nominal Voltage:  %0.2f Volts", static_cast<double>(expert.nominalVoltage));
    zt4::logLine(LOG_INFO, "  Line Frequency :  %0.2f Hz", static_cast<double>(expert.lineFrequency));
    if (expert.sagEnable == 1) {
        zt4::logLine(LOG_INFO, "  Option Sag Enabled");
        zt4::logLine(LOG_INFO, "  Sag Cycle:      %u", static_cast<unsigned>(expert.sagCycle));
        zt4::logLine(LOG_INFO, "  Sag Rate Level: %0.2f %%", static_cast<double>(expert.sagRateLevel));
        zt4::logLine(LOG_INFO, "  Sag Level:      %0.2f Volts", static_cast<double>(expert.sagLevel));
    } else {
        zt4::logLine(LOG_INFO, "  Option Sag Disabled");
    }
    if (expert.swellEnable == 1) {
        zt4::logLine(LOG_INFO, "  Option Swell Enabled");
        zt4::logLine(LOG_INFO, "  Swell Rate Level: %0.2f %%", static_cast<double>(expert.swellRateLevel));
        zt4::logLine(LOG_INFO, "  Swell Level:      %0.2f Volts", static_cast<double>(expert.swellLevel));
    } else {
        zt4::logLine(LOG_INFO, "  Option Swell Disabled");
    }
}

}  // namespace

void DisplayZT4Param(zt4Data* data) noexcept {
    if (data == nullptr) {
        zt4::logError(__func__, "zt4Data NULL");
        return;
    }
    showWiring(*data);
    showExpertConnectors(*data);
    showVoltageOptions(data->expert);
}
