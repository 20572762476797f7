// Presets of one connector's counters from a document shaped like a connector of the connector
// data document: the "Channel" (or "Phase") array's objects carry the values. Every value is
// read before any is stored, so that a document with one bad value changes nothing. The block
// then goes to its persistent copy in FRAM, so that the preset survives a restart.
#include <cmath>
#include <cstdint>

#include "common/api.hpp"
#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "metering/register_map.hpp"
#include "zt4config/fram.h"
#include "zt4config/json.h"

namespace zt4::modbus {
namespace {

constexpr unsigned kItems = 3;  // channels or phases

enum class Target : std::uint8_t { Channel, Phase };

struct CounterPreset {
    const char* member;
    std::uint8_t block;
    Target target;
    void (*failure)(const char* function, unsigned item);
    void (*trace)(const char* function, unsigned connectorId, unsigned item, long long value);
    int (*persist)(const std::uint16_t* image);
};

const CounterPreset kStartup{
    "Startup", 17, Target::Channel,
    [](const char* f, unsigned item) { logError(f, "FAILED to read Channel%u Start up", item); },
    [](const char* f, unsigned id, unsigned item, long long v) {
        logInfo(f, "ConnectorID %u ChannelID %u Startup: %u", id, item, static_cast<unsigned>(v));
    },
    SetZT4FRAMStartup};
const CounterPreset kSag{
    "Sag", 18, Target::Phase,
    [](const char* f, unsigned item) { logError(f, "FAILED to read Phase%u Sag", item); },
    [](const char* f, unsigned, unsigned item, long long v) {
        logInfo(f, "Phase %u Sag: %d", item, static_cast<int>(v));
    },
    SetZT4FRAMSag};
const CounterPreset kSwell{
    "Swell", 19, Target::Phase,
    [](const char* f, unsigned item) { logError(f, "FAILED to read Phase%u Swell", item); },
    [](const char* f, unsigned, unsigned item, long long v) {
        logInfo(f, "Phase %u Swell: %d", item, static_cast<int>(v));
    },
    SetZT4FRAMSwell};
const CounterPreset kOverCurrent{
    "OverCurrent", 22, Target::Channel,
    [](const char* f, unsigned item) { logError(f, "FAILED to read Channel%u OverCurrent", item); },
    [](const char* f, unsigned id, unsigned item, long long v) {
        logInfo(f, "ConnectorID %u ChannelID %u OverCurrent: %d", id, item, static_cast<int>(v));
    },
    SetZT4FRAMOverCurrent};

// The checks every preset starts with; on success `copy` holds a deep copy of the document.
bool presetArguments(const char* function, const std::uint16_t* image, json_t* json,
                     unsigned connectorId, JsonRef& copy) {
    if (connectorId < 1 || connectorId > ZT4_CONNECTOR_COUNT) {
        logError(function, "Connector id=%u INVALID", connectorId);
        return false;
    }
    if (image == nullptr) {
        logError(function, "Rg NULL");
        return false;
    }
    if (json == nullptr) {
        logError(function, "json NULL");
        return false;
    }
    copy.reset(json_deep_copy(json));
    if (!copy) {
        logError(function, "jsonCopy NULL");
        return false;
    }
    return true;
}

// Member `member` of element `item` (1 to 3) of the document's "Channel" or "Phase" array.
json_t* itemMember(json_t* document, Target target, unsigned item, const char* member,
                   JsonRef& holder) {
    JsonRef array(readJSONArray(document, target == Target::Channel ? "Channel" : "Phase"));
    const auto id = static_cast<std::uint8_t>(item);
    holder.reset(target == Target::Channel ? readJSONZT4ChannelById(array.get(), id)
                                           : readJSONZT4PhaseById(array.get(), id));
    return holder ? json_object_get(holder.get(), member) : nullptr;
}

// A 4-slot counter of channel 0 belongs to the connector total when the connector is wired
// three-phase unbalanced.
std::uint8_t counterSlot(const std::uint16_t* image, std::uint8_t connector, unsigned channel) {
    if (channel == 0 && isThreePhaseUnbalanced(GetModbusInfoConnector(image, connector, 0))) {
        return 0;
    }
    return static_cast<std::uint8_t>(channel + 1);
}

// The register (connector or phase first, channel or slot second) of a channel's counter.
void counterPosition(const std::uint16_t* image, std::uint8_t block, std::uint8_t connector,
                     unsigned channel, std::uint8_t& first, std::uint8_t& second) {
    first = connector;
    second = kBlockShapes[block].selector == Selector::FourSlot
                 ? counterSlot(image, connector, channel)
                 : static_cast<std::uint8_t>(channel);
}

int presetCounters(const char* function, const CounterPreset& preset, std::uint16_t* image,
                   json_t* json, unsigned connectorId) {
    JsonRef copy;
    if (!presetArguments(function, image, json, connectorId, copy)) return -1;
    long long values[kItems];
    for (unsigned i = 0; i < kItems; ++i) {
        JsonRef holder;
        json_t* value = itemMember(copy.get(), preset.target, i + 1, preset.member, holder);
        if (!json_is_integer(value) || json_integer_value(value) > UINT32_MAX) {
            preset.failure(function, i + 1);
            return -1;
        }
        values[i] = json_integer_value(value);
    }
    const auto connector = static_cast<std::uint8_t>(connectorId - 1);
    for (unsigned i = 0; i < kItems; ++i) {
        preset.trace(function, connectorId, i + 1, values[i]);
        if (values[i] < 0) continue;
        std::uint8_t first = 0, second = static_cast<std::uint8_t>(i);
        if (preset.target == Target::Channel) counterPosition(image, preset.block, connector, i, first, second);
        SetModbusDataInteger(image, preset.block, first, second, static_cast<std::uint32_t>(values[i]));
    }
    return preset.persist(image) == 0 ? 0 : -1;
}

constexpr double kSecondsPerHour = 3600.0;

int presetOperatingTime(const char* function, std::uint16_t* image, json_t* json,
                        unsigned connectorId) {
    JsonRef copy;
    if (!presetArguments(function, image, json, connectorId, copy)) return -1;
    double hours[kItems];
    for (unsigned i = 0; i < kItems; ++i) {
        JsonRef holder;
        json_t* value = itemMember(copy.get(), Target::Channel, i + 1, "OperatingTime", holder);
        // Hours whose seconds do not fit the 32-bit counter are refused like a missing value.
        if (!json_is_number(value) || !(json_number_value(value) * kSecondsPerHour < 4294967296.0)) {
            logError(function, "FAILED to read Channel%u operating time", i + 1);
            return -1;
        }
        hours[i] = json_number_value(value);
    }
    const auto connector = static_cast<std::uint8_t>(connectorId - 1);
    for (unsigned i = 0; i < kItems; ++i) {
        logInfo(function, "ConnectorID %u ChannelID %u OperatingTime: %f", connectorId, i + 1, hours[i]);
        if (hours[i] < 0) continue;
        const std::uint8_t slot = counterSlot(image, connector, i);
        // The stored float is the reference: seconds and nanoseconds derive from it, as they do
        // when the counters come back from their persistent copy.
        const float stored = static_cast<float>(hours[i]);
        const double total = static_cast<double>(stored) * kSecondsPerHour;
        const auto seconds = static_cast<std::uint32_t>(total);
        const auto nanoseconds = static_cast<std::uint32_t>((total - seconds) * 1e9);
        SetModbusData(image, 16, connector, slot, stored);
        SetModbusDataInteger(image, 26, connector, slot, seconds);
        SetModbusDataInteger(image, 27, connector, slot, nanoseconds);
    }
    // The persistent copy holds the hours; seconds and nanoseconds are derived when read back.
    return SetZT4FRAMOperatingTime(image) == 0 ? 0 : -1;
}

}  // namespace
}  // namespace zt4::modbus

extern "C" {

int writeZT4OperatingTimeById(uint16_t* zt4Rg, json_t* json, unsigned int connectorId) noexcept {
    const char* const function = __func__;
    return zt4::guarded(function, -1, [&] {
        return zt4::modbus::presetOperatingTime(function, zt4Rg, json, connectorId);
    });
}

int writeZT4StartupById(uint16_t* zt4Rg, json_t* json, unsigned int connectorId) noexcept {
    const char* const function = __func__;
    return zt4::guarded(function, -1, [&] {
        return zt4::modbus::presetCounters(function, zt4::modbus::kStartup, zt4Rg, json, connectorId);
    });
}

int writeZT4SagById(uint16_t* zt4Rg, json_t* json, unsigned int connectorId) noexcept {
    const char* const function = __func__;
    return zt4::guarded(function, -1, [&] {
        return zt4::modbus::presetCounters(function, zt4::modbus::kSag, zt4Rg, json, connectorId);
    });
}

int writeZT4SwellById(uint16_t* zt4Rg, json_t* json, unsigned int connectorId) noexcept {
    const char* const function = __func__;
    return zt4::guarded(function, -1, [&] {
        return zt4::modbus::presetCounters(function, zt4::modbus::kSwell, zt4Rg, json, connectorId);
    });
}

int writeZT4OverCurrentById(uint16_t* zt4Rg, json_t* json, unsigned int connectorId) noexcept {
    const char* const function = __func__;
    return zt4::guarded(function, -1, [&] {
        return zt4::modbus::presetCounters(function, zt4::modbus::kOverCurrent, zt4Rg, json,
                                           connectorId);
    });
}

}  // extern "C"
