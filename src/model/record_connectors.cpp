// Syntax version 1 of the record reader of the user connectors, and the normaliser that makes a
// three-phase connector consistent.
#include <cstring>

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

constexpr float kDefaultLineFrequency = 50.0f;
constexpr float kDefaultNominalVoltage = 230.0f;
constexpr float kDefaultVoltagePrimary = 400.0f;
constexpr float kDefaultVoltageSecondary = 230.0f;
constexpr std::size_t kNameLength = ZT4_CHANNEL_NAME_SIZE - 1;


// A number, or `fallback` when it is absent or 0.
float numberOr(json_t* object, const char* key, float fallback) noexcept {
    const float value = numberOf(object, key);
    return value == 0.0f ? fallback : value;
}

struct VoltageTransformer {
    uint8_t enable = 0;
    float primary = kDefaultVoltagePrimary;
    float secondary = kDefaultVoltageSecondary;
};

VoltageTransformer voltageTransformerOf(json_t* electrical) noexcept {
    VoltageTransformer transformer;
    json_t* object = json_object_get(electrical, "VoltageTransformer");
    if (object != nullptr) {
        transformer.enable = byteOf(object, "Enable");
        transformer.primary = numberOf(object, "VoltagePrimary");
        transformer.secondary = numberOf(object, "VoltageSecondary");
    }
    return transformer;
}

void resetConnector(ConnectorConfig& connector, const VoltageTransformer& transformer) noexcept {
    connector.xPlier = 0.0f;
    connector.vtEnable = transformer.enable;
    connector.vtPrimary = transformer.primary;
    connector.vtSecondary = transformer.secondary;
    for (unsigned c = 0; c < ZT4_CHANNEL_COUNT; ++c) {
        ChannelConfig& channel = connector.channels[c];  // the name stays
        channel.enable = 0;
        channel.mode = 0;
        channel.phase = 1;
        channel.ctModel = 0;
        channel.direction = 0;
        channel.ctPrimary = 0;
        channel.generalFactor = 1.0f;
    }
}

// The directions of the channel's current transformers: one for a single measured channel, or
// three (one per channel record) for a three-phase connector.
void readDirections(ConnectorConfig& connector, unsigned channelIndex, unsigned mode,
                    json_t* channel) noexcept {
    json_t* transformers = json_object_get(channel, "CurrentTransformer");
    const std::size_t count = json_array_size(transformers);
    if (count == 1 && isSingleMeasured(mode)) {
        json_t* direction = json_object_get(json_array_get(transformers, 0), "Direction");
        if (direction != nullptr) {
            connector.channels[channelIndex].direction = static_cast<uint8_t>(json_integer_value(direction));
        }
    } else if (count == 3 && (mode == 0 || isThreephaseUnbalanced(mode))) {
        for (unsigned k = 0; k < ZT4_CHANNEL_COUNT; ++k) {
            json_t* direction = json_object_get(json_array_get(transformers, k), "Direction");
            if (direction != nullptr) {
                connector.channels[k].direction = static_cast<uint8_t>(json_integer_value(direction));
            }
        }
    }
}

void readChannel(ConnectorConfig& connector, unsigned index, unsigned mode, uint8_t model,
                 json_t* json) noexcept {
    ChannelConfig& channel = connector.channels[index];
    json_t* enable = json_object_get(json, "Enable");
    if (enable != nullptr) {
        channel.enable = connector.enabled & static_cast<uint8_t>(json_integer_value(enable));
    }
    channel.mode = static_cast<uint8_t>(mode);
    channel.ctModel = model;
    connector.xPlier = getxPlier(model);
    readDirections(connector, index, mode, json);
    json_t* name = json_object_get(json, "Name");
    if (json_is_string(name)) {
        const char* text = json_string_value(name);
        const std::size_t length = strnlen(text, kNameLength);
        std::memcpy(channel.name, text, length);
        channel.name[length] = '\0';
    }
    json_t* factor = json_object_get(json, "GeneralFactor");
    if (factor != nullptr) channel.generalFactor = static_cast<float>(json_number_value(factor));
    json_t* phase = json_object_get(json, "Phase");
    if (phase != nullptr) channel.phase = static_cast<uint8_t>(json_integer_value(phase));
    channel.ctPrimary = 0;
    json_t* primary = json_object_get(json, "CurrentTransformerPrimary");
    json_t* primaryEnable = json_object_get(primary, "Enable");
    json_t* amperes = json_object_get(primary, "CurrentPrimary");
    if (primaryEnable != nullptr && amperes != nullptr && json_integer_value(primaryEnable) == 1) {
        channel.ctPrimary = static_cast<uint32_t>(json_integer_value(amperes));
    }
}

}  // namespace

int readZT4ConfigConnectorsSyntaxVersion1(zt4Data* data) noexcept {
    const char* function = __func__;
    if (data == nullptr) {
        zt4::logError(function, "zt4Data NULL");
        return -1;
    }
    zt4::JsonRef electrical(readJSONZT4UserConfigElectricalConfigurationSyntaxVersion1());
    if (!electrical) {
        zt4::logError(function, "jsonElectricalConfiguration NULL");
        return -1;
    }
    data->expert.lineFrequency = numberOr(electrical.get(), "LineFrequency", kDefaultLineFrequency);
    data->expert.nominalVoltage = numberOr(electrical.get(), "NominalVoltage", kDefaultNominalVoltage);
    const VoltageTransformer transformer = voltageTransformerOf(electrical.get());
    for (ConnectorConfig& connector : data->connectors) resetConnector(connector, transformer);

    json_t* connectors = json_object_get(electrical.get(), "Connectors");
    if (!json_is_array(connectors)) {
        zt4::logError(function, "jsonConnectors NULL");
        return -1;
    }
    const std::size_t count = json_array_size(connectors);
    for (std::size_t id = 1; id <= count; ++id) {
        zt4::JsonRef json(readJSONZT4ConnectorById(connectors, static_cast<uint8_t>(id)));
        if (!json || id > ZT4_CONNECTOR_COUNT) {
            zt4::logError(function, "FAILED to read Object JSON Connector%u", static_cast<unsigned>(id));
            return -1;
        }
        zt4::JsonRef channels(readJSONZT4ChannelsSyntaxVersion1(json.get()));
        if (!channels) {
            zt4::logError(function, "FAILED to read Object JSON Cnl of Connector%u", static_cast<unsigned>(id));
            return -1;
        }
        ConnectorConfig& connector = data->connectors[id - 1];
        const unsigned mode = byteOf(json.get(), "Mode");
        const uint8_t model = byteOf(json.get(), "CurrentTransformerModel");
        // Channel records 1 to 3 take phases 1 to 3: shifted by one on purpose (the record of
        // the first channel keeps its phase, the neutral record gets 3). The channels' own
        // "Phase" and the normaliser give the final phases.
        const bool threephase = isThreephaseUnbalanced(mode);
        for (unsigned record = 1; record < ZT4_CHANNEL_RECORDS; ++record) {
            connector.channels[record].phase = threephase ? static_cast<uint8_t>(record) : 0;
        }
        const std::size_t channelCount = json_array_size(channels.get());
        for (std::size_t channelId = 1; channelId <= channelCount; ++channelId) {
            zt4::JsonRef channel(readJSONZT4ChannelById(channels.get(), static_cast<uint8_t>(channelId)));
            if (!channel || channelId > ZT4_CHANNEL_COUNT) {
                zt4::logError(function, "FAILED to read Object JSON Connector%u Channel%u",
                              static_cast<unsigned>(id), static_cast<unsigned>(channelId));
                return -1;
            }
            readChannel(connector, static_cast<unsigned>(channelId - 1), mode, model, channel.get());
        }
    }
    StandardizeZT4ConfigConnector(data->connectors);
    return 0;
}

void StandardizeZT4ConfigConnector(ConnectorConfig* connectors) noexcept {
    if (connectors == nullptr) {
        zt4::logError(__func__, "Connect NULL");
        return;
    }
    for (unsigned i = 1; i < ZT4_CONNECTOR_COUNT; ++i) {
        connectors[i].vtEnable = connectors[0].vtEnable;
        connectors[i].vtPrimary = connectors[0].vtPrimary;
        connectors[i].vtSecondary = connectors[0].vtSecondary;
    }
    for (unsigned i = 0; i < ZT4_CONNECTOR_COUNT; ++i) {
        ConnectorConfig& connector = connectors[i];
        if (connector.enabled == 0) continue;
        for (unsigned c = 0; c < ZT4_CHANNEL_COUNT; ++c) {
            const ChannelConfig& source = connector.channels[c];
            if (isModeValid(source.mode) != 0) continue;
            if (isThreephaseUnbalanced(source.mode)) {
                for (unsigned other = 0; other < ZT4_CHANNEL_COUNT; ++other) {
                    ChannelConfig& target = connector.channels[other];
                    target.phase = static_cast<uint8_t>(other + 1);
                    if (other == c) continue;
                    target.mode = source.mode;
                    target.enable = source.enable;
                    target.ctModel = source.ctModel;
                    target.generalFactor = source.generalFactor;
                    target.ctPrimary = source.ctPrimary;
                }
                break;
            }
            for (unsigned other = 0; other < ZT4_CHANNEL_COUNT; ++other) {
                if (other != c) connector.channels[other].mode = source.mode;
            }
        }
    }
}
