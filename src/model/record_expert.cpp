// Syntax version 1 of the record reader of the user expert options, and its normaliser. Every
// option of the user is ANDed with the option the system allows, so the system reader runs
// first; the connector records give the current-transformer ratings.
#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "model/record_fields.hpp"
#include "config/v1/by_key.hpp"
#include "zt4config/json.h"
#include "zt4config/model.h"
#include "zt4config/record_readers.h"
#include "zt4config/user.h"

namespace {

using namespace zt4::record;

constexpr double kPeak = 1.4142135;  // rms to peak
constexpr float kDefaultRateLevel = 15.0f;
constexpr float kDefaultPowerNoLoad = 100.0f;
constexpr uint32_t kDefaultPeriod = 15;
// The record always carries these, whatever the system document says.
constexpr uint8_t kSagCycle = 1;
constexpr uint8_t kCircuitBreakerThreshold = 2;



float sagLevel(float rateLevel, float volts) noexcept {
    return static_cast<float>((1 - rateLevel / 100) * volts * kPeak);
}
float swellLevel(float rateLevel, float volts) noexcept {
    return static_cast<float>((rateLevel / 100 + 1) * volts * kPeak);
}

void setDefaults(ExpertConfig& expert) noexcept {
    const float volts = expert.nominalVoltage;
    expert.sagEnable = expert.sysSag;
    expert.sagCycle = kSagCycle;
    expert.sagRateLevel = kDefaultRateLevel;
    expert.sagLevel = sagLevel(kDefaultRateLevel, volts);
    expert.swellEnable = expert.sysSwell;
    expert.swellRateLevel = kDefaultRateLevel;
    expert.swellLevel = swellLevel(kDefaultRateLevel, volts);
    for (unsigned p = 0; p < ZT4_PHASE_COUNT; ++p) {
        expert.sagPhase[p] = 1;
        expert.swellPhase[p] = 1;
    }
    expert.ctThreshold = kCircuitBreakerThreshold;
    for (ConnectorExpert& connector : expert.connectors) {
        connector.currentImbalance = expert.sysCurrentImbalance;
        connector.powerImbalance = expert.sysPowerImbalance;
        connector.voltageImbalance = expert.sysVoltageImbalance;
        connector.currentAverageMax = expert.sysCurrentAverageMax;
        connector.period = kDefaultPeriod;
        connector.thd = expert.sysTHD;
        connector.overCurrentThreshold = 0.0f;
        for (ChannelExpert& channel : connector.channels) {
            channel.powerNoLoad = kDefaultPowerNoLoad;
            channel.operatingTime = expert.sysOperatingTime;
            channel.startupCycle = expert.sysStartupCycle;
            channel.overCurrent = expert.sysOverCurrent;
        }
    }
}

// What differs between the sag and the swell: their record fields and their messages.
struct Threshold {
    const char* object;
    const char* missingObject;
    const char* missingPhases;
    uint8_t ExpertConfig::*system;
    uint8_t ExpertConfig::*enable;
    uint8_t (ExpertConfig::*phases)[ZT4_PHASE_COUNT];
    float (*levelOf)(float rateLevel, float volts) noexcept;
    // The float fields are stored by name: the record is packed, and a member pointer would
    // store through an address the compiler takes for aligned.
    void (*store)(ExpertConfig& expert, float rateLevel, float level) noexcept;
};

void storeSag(ExpertConfig& expert, float rateLevel, float level) noexcept {
    expert.sagRateLevel = rateLevel;
    expert.sagLevel = level;
}
void storeSwell(ExpertConfig& expert, float rateLevel, float level) noexcept {
    expert.swellRateLevel = rateLevel;
    expert.swellLevel = level;
}

constexpr Threshold kSag = {"Sag", "FAILED to read Object Sag", "FAILED to read Object Sag Phase",
                            &ExpertConfig::sysSag, &ExpertConfig::sagEnable,
                            &ExpertConfig::sagPhase, sagLevel, storeSag};
constexpr Threshold kSwell = {"Swell", "FAILED to read Object Swell",
                              "FAILED to read Object Swell Phase",
                              &ExpertConfig::sysSwell, &ExpertConfig::swellEnable,
                              &ExpertConfig::swellPhase, swellLevel, storeSwell};

bool readThreshold(const char* function, const Threshold& threshold, json_t* section,
                   ExpertConfig& expert, float volts) noexcept {
    json_t* object = json_object_get(section, threshold.object);
    if (object == nullptr) {
        zt4::logError(function, "%s", threshold.missingObject);
        return false;
    }
    expert.*threshold.enable = expert.*threshold.system & byteOf(object, "Enable");
    const float rateLevel = numberOf(object, "RateLevel");
    threshold.store(expert, rateLevel, threshold.levelOf(rateLevel, volts));
    json_t* phases = json_object_get(object, "Phase");
    if (!json_is_array(phases)) {
        zt4::logError(function, "%s", threshold.missingPhases);
        return false;
    }
    const std::size_t count = json_array_size(phases);
    for (std::size_t id = 1; id <= count; ++id) {
        zt4::JsonRef phase(readJSONZT4PhaseById(phases, static_cast<uint8_t>(id)));
        if (!phase || id > ZT4_PHASE_COUNT) {
            zt4::logError(function, "%s phase %u NULL", threshold.object, static_cast<unsigned>(id));
            return false;
        }
        (expert.*threshold.phases)[id - 1] = byteOf(phase.get(), "Enable");
    }
    return true;
}

bool readExpertConnector(const char* function, unsigned id, json_t* json, zt4Data& data) noexcept {
    ExpertConfig& expert = data.expert;
    ConnectorExpert& connector = expert.connectors[id - 1];
    zt4::JsonRef channels(readJSONZT4ChannelsSyntaxVersion1(json));
    if (!channels) {
        zt4::logError(function, "FAILED to read Object Cnl of Connector%u", id);
        return false;
    }
    connector.currentImbalance = expert.sysCurrentImbalance & byteOf(json, "CurrentImbalanceEnable");
    connector.powerImbalance = expert.sysPowerImbalance & byteOf(json, "PowerImbalanceEnable");
    connector.voltageImbalance = expert.sysVoltageImbalance & byteOf(json, "VoltageImbalanceEnable");
    connector.thd = expert.sysTHD & byteOf(json, "THDEnable");
    json_t* averageMax = json_object_get(json, "CurrentAverageMax");
    if (averageMax != nullptr) {
        connector.currentAverageMax = expert.sysCurrentAverageMax & byteOf(averageMax, "Enable");
        connector.period = static_cast<uint32_t>(json_integer_value(json_object_get(averageMax, "Period")));
    }
    json_t* overCurrent = json_object_get(json, "OverCurrent");
    if (overCurrent != nullptr) {
        connector.overCurrentThreshold = static_cast<float>(numberOf(overCurrent, "Threshold") * kPeak);
    }
    const ConnectorConfig& wiring = data.connectors[id - 1];
    uint32_t largestPrimary = 0;
    const std::size_t count = json_array_size(channels.get());
    for (std::size_t channelId = 1; channelId <= count; ++channelId) {
        zt4::JsonRef channel(readJSONZT4ChannelById(channels.get(), static_cast<uint8_t>(channelId)));
        if (!channel || channelId > ZT4_CHANNEL_COUNT) {
            zt4::logError(function, "FAILED to read Object JSON Expert Connector%u Channel%u", id,
                          static_cast<unsigned>(channelId));
            return false;
        }
        ChannelExpert& options = connector.channels[channelId - 1];
        options.powerNoLoad = numberOf(channel.get(), "PowerNoLoad");
        options.operatingTime = expert.sysOperatingTime & byteOf(channel.get(), "OperatingTimeEnable");
        options.startupCycle = expert.sysStartupCycle & byteOf(channel.get(), "StartupCycleEnable");
        options.overCurrent = expert.sysOverCurrent & byteOf(channel.get(), "OverCurrentEnable");
        const uint32_t primary = wiring.channels[channelId - 1].ctPrimary;
        if (primary > largestPrimary) largestPrimary = primary;
    }
    // The threshold ends as a peak current on the transformer's secondary scale.
    const uint32_t rated = getAmpsPlier(wiring.channels[0].ctModel);
    if (largestPrimary != 0 && rated != 0) {
        connector.overCurrentThreshold /= static_cast<float>(largestPrimary) / static_cast<float>(rated);
    }
    return true;
}

}  // namespace

int readZT4ConfigExpertSyntaxVersion1(zt4Data* data) noexcept {
    const char* function = __func__;
    if (data == nullptr) {
        zt4::logError(function, "zt4Data NULL");
        return -1;
    }
    ExpertConfig& expert = data->expert;
    if (expert.lineFrequency == 0.0f) expert.lineFrequency = 50.0f;
    if (expert.nominalVoltage == 0.0f) expert.nominalVoltage = 230.0f;
    // Overwrites the sag cycle and the threshold the system reader has just set, on purpose.
    setDefaults(expert);

    zt4::JsonRef electrical(readJSONZT4UserConfigElectricalConfigurationSyntaxVersion1());
    if (!electrical) {
        zt4::logError(function, "json NULL");
        return -1;
    }
    const float nominal = numberOf(electrical.get(), "NominalVoltage");
    expert.nominalVoltage = nominal == 0.0f ? 230.0f : nominal;
    const float volts = expert.nominalVoltage;

    zt4::JsonRef section(readJSONZT4UserConfigExpertSyntaxVersion1());
    if (!section) {
        zt4::logError(function, "json NULL");
        return -1;
    }
    if (!readThreshold(function, kSag, section.get(), expert, volts)) return -1;
    if (!readThreshold(function, kSwell, section.get(), expert, volts)) return -1;

    json_t* connectors = json_object_get(section.get(), "Connectors");
    if (!json_is_array(connectors)) {
        zt4::logError(function, "FAILED to read Object Expert Connectors");
        return -1;
    }
    const std::size_t count = json_array_size(connectors);
    for (std::size_t id = 1; id <= count; ++id) {
        zt4::JsonRef connector(readJSONZT4ConnectorById(connectors, static_cast<uint8_t>(id)));
        if (!connector || id > ZT4_CONNECTOR_COUNT) {
            zt4::logError(function, "FAILED to read Object JSON Expert Connector%u", static_cast<unsigned>(id));
            return -1;
        }
        if (!readExpertConnector(function, static_cast<unsigned>(id), connector.get(), *data)) return -1;
    }
    StandardizeZT4ConfigExpert(data);
    return 0;
}

void StandardizeZT4ConfigExpert(zt4Data* data) noexcept {
    if (data == nullptr) {
        zt4::logError(__func__, "zt4Data NULL");
        return;
    }
    for (unsigned i = 0; i < ZT4_CONNECTOR_COUNT; ++i) {
        const ConnectorConfig& wiring = data->connectors[i];
        if (wiring.enabled == 0) continue;
        ConnectorExpert& options = data->expert.connectors[i];
        for (unsigned c = 0; c < ZT4_CHANNEL_COUNT; ++c) {
            const unsigned mode = wiring.channels[c].mode;
            if (isModeValid(mode) != 0 || !isThreephaseUnbalanced(mode)) continue;
            const float powerNoLoad = options.channels[c].powerNoLoad;
            for (ChannelExpert& channel : options.channels) channel.powerNoLoad = powerNoLoad;
            break;
        }
    }
}
