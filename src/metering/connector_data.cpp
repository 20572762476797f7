// The connector data document: the live measurements of the register image, connector by
// connector, with the configuration the web interface shows beside them. The members that come
// from the image are rows of tables (key, block, value kind); one walker reads them.
#include <cmath>
#include <cstring>

#include "common/api.hpp"
#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "metering/register_map.hpp"
#include "zt4config/model.h"

namespace zt4::modbus {
namespace {

enum class Kind : std::uint8_t { Real, Integer };

struct RegisterMember {
    const char* key;
    std::uint8_t block;
    Kind kind;
};

// A channel's measurements, after its five configuration members.
constexpr RegisterMember kChannelMembers[] = {
    {"IndexEnergyActImport", 4, Kind::Real},
    {"IndexEnergyReactImportPositive", 5, Kind::Real},
    {"IndexEnergyReactImportNegative", 7, Kind::Real},
    {"PuissanceActive", 8, Kind::Real},
    {"PuissanceReactive", 9, Kind::Real},
    {"PF", 10, Kind::Real},
    {"Current", 12, Kind::Real},
    {"Voltage", 14, Kind::Real},
    {"Freq", 15, Kind::Real},
    {"OperatingTime", 16, Kind::Real},
    {"Startup", 17, Kind::Integer},
    {"THD", 24, Kind::Real},
    {"OverCurrent", 22, Kind::Integer},
    {"Trip", 23, Kind::Integer},
};

// The connector's totals (slot 0 of 4-slot blocks) and its per-connector registers.
constexpr RegisterMember kConnectorMembers[] = {
    {"GlobalPuissanceActive", 8, Kind::Real},
    {"GlobalIndexEnergyActImport", 4, Kind::Real},
    {"GlobalIndexEnergyReactImportPositive", 5, Kind::Real},
    {"GlobalIndexEnergyReactImportNegative", 7, Kind::Real},
    {"GlobalPuissanceReactive", 9, Kind::Real},
    {"GlobalPowerFactor", 10, Kind::Real},
    {"GlobalOperatingTime", 16, Kind::Real},
    {"GlobalStartup", 17, Kind::Integer},
    {"PowerImbalanceFactor", 44, Kind::Real},
    {"VoltageImbalanceFactor", 47, Kind::Real},
};

constexpr RegisterMember kPhaseMembers[] = {
    {"Sag", 18, Kind::Integer},
    {"Swell", 19, Kind::Integer},
};

// A float that JSON cannot carry (NaN, infinity) becomes null rather than losing the document.
json_t* realValue(double value) { return std::isfinite(value) ? json_real(value) : json_null(); }

// The register of `member` for the connector and, when given, its channel (0 to 2): 4-slot
// blocks at the channel's slot or the total, 3-slot blocks at (connector, channel), per-selector
// blocks at the connector (or, for the phase blocks, at the phase passed as `connector`).
json_t* registerValue(const std::uint16_t* image, const RegisterMember& member,
                      std::uint8_t connector, int channel) {
    std::uint8_t first = connector, second = 0;
    switch (kBlockShapes[member.block].selector) {
        case Selector::FourSlot: second = static_cast<std::uint8_t>(channel + 1); break;
        case Selector::ThreeSlot: second = static_cast<std::uint8_t>(channel); break;
        case Selector::PerSelector: first = 0, second = connector; break;
        case Selector::Single: break;
    }
    if (member.kind == Kind::Integer) {
        return json_integer(GetModbusDataInteger(image, member.block, first, second));
    }
    return realValue(GetModbusData(image, member.block, first, second));
}

json_t* nameValue(const char (&name)[ZT4_CHANNEL_NAME_SIZE]) {
    json_t* text = json_stringn(name, strnlen(name, sizeof name));
    return text != nullptr ? text : json_string("");
}

// The over-current level in amperes on the primary side: the configured threshold times the
// ratio of the smallest transformer primary among the three channels to the rated current of
// the connector's clamp, when both are known.
double overCurrentLevel(const zt4Data& data, unsigned c) {
    const ConnectorConfig& connector = data.connectors[c];
    std::uint32_t smallest = connector.channels[0].ctPrimary;
    for (unsigned ch = 1; ch < ZT4_CHANNEL_COUNT; ++ch) {
        if (connector.channels[ch].ctPrimary < smallest) smallest = connector.channels[ch].ctPrimary;
    }
    const std::uint32_t rated = getAmpsPlier(connector.channels[0].ctModel);
    const double level = data.expert.connectors[c].overCurrentThreshold;
    if (smallest == 0 || rated == 0) return level;
    return level * (static_cast<double>(smallest) / rated);
}

bool setMember(json_t* object, const char* key, json_t* value) {
    return json_object_set_new(object, key, value) == 0;
}

json_t* channelObject(const char* function, const std::uint16_t* image, const zt4Data& data,
                      unsigned c, unsigned ch) {
    JsonRef channel(json_object());
    if (!channel) {
        logError(function, "FAILED to create Object Cnl for Object Connector %u", c + 1);
        return nullptr;
    }
    const ChannelConfig& config = data.connectors[c].channels[ch];
    bool ok = setMember(channel.get(), "Enable", json_integer(config.enable)) &&
              setMember(channel.get(), "Mode", json_integer(config.mode)) &&
              setMember(channel.get(), "Phase", json_integer(config.phase)) &&
              setMember(channel.get(), "Name", nameValue(config.name)) &&
              setMember(channel.get(), "PowerNoLoad",
                        realValue(data.expert.connectors[c].channels[ch].powerNoLoad));
    for (const RegisterMember& member : kChannelMembers) {
        ok = ok && setMember(channel.get(), member.key,
                             registerValue(image, member, static_cast<std::uint8_t>(c),
                                           static_cast<int>(ch)));
    }
    if (!ok) {
        logError(function, "Cnl[%u] for Object Connector %u NULL", ch + 1, c + 1);
        return nullptr;
    }
    return channel.release();
}

json_t* phaseObject(const char* function, const std::uint16_t* image, unsigned c, unsigned p) {
    JsonRef phase(json_object());
    if (!phase) {
        logError(function, "FAILED to create Object Phase for Object Connector %u", c + 1);
        return nullptr;
    }
    for (const RegisterMember& member : kPhaseMembers) {
        if (!setMember(phase.get(), member.key,
                       registerValue(image, member, static_cast<std::uint8_t>(p), 0))) {
            logError(function, "Phase[%u] for Object Connector %u NULL", p + 1, c + 1);
            return nullptr;
        }
    }
    return phase.release();
}

json_t* connectorObject(const char* function, const std::uint16_t* image, const zt4Data& data,
                        unsigned c) {
    JsonRef connector(json_object());
    if (!connector) {
        logError(function, "FAILED to create Object Connector");
        return nullptr;
    }
    JsonRef channels(json_array());
    if (!channels) {
        logError(function, "AllCnl NULL");
        return nullptr;
    }
    for (unsigned ch = 0; ch < ZT4_CHANNEL_COUNT; ++ch) {
        json_t* channel = channelObject(function, image, data, c, ch);
        if (channel == nullptr) return nullptr;
        if (json_array_append_new(channels.get(), channel) != 0) {
            logError(function, "FAILED to append Object Cnl%u for Object Connector %u", ch + 1, c + 1);
            return nullptr;
        }
    }
    bool ok = setMember(connector.get(), "Channel", channels.release());
    for (const RegisterMember& member : kConnectorMembers) {
        ok = ok && setMember(connector.get(), member.key,
                             registerValue(image, member, static_cast<std::uint8_t>(c), -1));
    }
    ok = ok && setMember(connector.get(), "SagLevel", realValue(data.expert.sagLevel)) &&
         setMember(connector.get(), "SwellLevel", realValue(data.expert.swellLevel)) &&
         setMember(connector.get(), "OvercurrentLevel", realValue(overCurrentLevel(data, c)));
    if (!ok) {
        logError(function, "Connect[%u] NULL", c + 1);
        return nullptr;
    }
    JsonRef phases(json_array());
    if (!phases) {
        logError(function, "Phases NULL");
        return nullptr;
    }
    for (unsigned p = 0; p < ZT4_PHASE_COUNT; ++p) {
        json_t* phase = phaseObject(function, image, c, p);
        if (phase == nullptr) return nullptr;
        if (json_array_append_new(phases.get(), phase) != 0) {
            logError(function, "FAILED to append Object Phase%u for Object Connector %u", p + 1, c + 1);
            return nullptr;
        }
    }
    if (!setMember(connector.get(), "Phase", phases.release())) {
        logError(function, "Connect[%u] NULL", c + 1);
        return nullptr;
    }
    return connector.release();
}

}  // namespace
}  // namespace zt4::modbus

extern "C" {

json_t* readJSONZT4DataConnector(const uint16_t* zt4Rg, const zt4Data* data) noexcept {
    const char* const function = __func__;
    return zt4::guarded(function, static_cast<json_t*>(nullptr), [&]() -> json_t* {
        if (zt4Rg == nullptr) {
            zt4::logError(function, "zt4Rg NULL");
            return nullptr;
        }
        if (data == nullptr) {
            zt4::logError(function, "zt4Data NULL");
            return nullptr;
        }
        zt4::JsonRef connectors(json_array());
        if (!connectors) {
            zt4::logError(function, "AllConnect NULL");
            return nullptr;
        }
        for (unsigned c = 0; c < ZT4_CONNECTOR_COUNT; ++c) {
            json_t* connector = zt4::modbus::connectorObject(function, zt4Rg, *data, c);
            if (connector == nullptr) return nullptr;
            if (json_array_append_new(connectors.get(), connector) != 0) {
                zt4::logError(function, "FAILED to append Object Connect%u for Object Connector", c + 1);
                return nullptr;
            }
        }
        return connectors.release();
    });
}

}  // extern "C"
