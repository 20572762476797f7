// Syntax version 1 of the record readers of the system document: which connectors the device
// offers and which expert options it allows.
#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "model/record_fields.hpp"
#include "zt4config/json.h"
#include "zt4config/record_readers.h"
#include "zt4config/system.h"

namespace {

using namespace zt4::record;

// One object of the system "Expert" and the record fields its members fill.
struct SystemOption {
    const char* object;
    const char* key;                      // member of the object
    uint8_t ExpertConfig::*field;         // where it goes
    const char* secondKey;                // a second member, or null
    uint8_t ExpertConfig::*secondField;
};

// In the order the objects are taken: the first one missing ends the reader.
constexpr SystemOption kSystemOptions[] = {
    {"CircuitBreakerTrip", "CurrentTransformerThreshold", &ExpertConfig::ctThreshold, nullptr, nullptr},
    {"Sag", "Enable", &ExpertConfig::sysSag, "Cycle", &ExpertConfig::sagCycle},
    {"Swell", "Enable", &ExpertConfig::sysSwell, nullptr, nullptr},
    {"OperatingTime", "Enable", &ExpertConfig::sysOperatingTime, nullptr, nullptr},
    {"StartupCycle", "Enable", &ExpertConfig::sysStartupCycle, nullptr, nullptr},
    {"CurrentImbalance", "Enable", &ExpertConfig::sysCurrentImbalance, nullptr, nullptr},
    {"PowerImbalance", "Enable", &ExpertConfig::sysPowerImbalance, nullptr, nullptr},
    {"VoltageImbalance", "Enable", &ExpertConfig::sysVoltageImbalance, nullptr, nullptr},
    {"CurrentAverageMax", "Enable", &ExpertConfig::sysCurrentAverageMax, nullptr, nullptr},
    {"THD", "Enable", &ExpertConfig::sysTHD, nullptr, nullptr},
    {"OverCurrent", "Enable", &ExpertConfig::sysOverCurrent, nullptr, nullptr},
};


}  // namespace

int readZT4SystemConnectorsSyntaxVersion1(ConnectorConfig* connectors) noexcept {
    const char* function = __func__;
    if (connectors == nullptr) {
        zt4::logError(function, "Connect NULL");
        return -1;
    }
    for (unsigned i = 0; i < ZT4_CONNECTOR_COUNT; ++i) connectors[i].enabled = 1;
    zt4::JsonRef array(readJSONZT4SystemConnectorsSyntaxVersion1());
    if (!array) {
        zt4::logError(function, "json NULL");
        return -1;
    }
    const std::size_t size = json_array_size(array.get());
    for (std::size_t id = 1; id <= size; ++id) {
        zt4::JsonRef connector(readJSONZT4ConnectorById(array.get(), static_cast<uint8_t>(id)));
        if (!connector || id > ZT4_CONNECTOR_COUNT) {
            zt4::logError(function, "FAILED to read Object JSON Connector%u", static_cast<unsigned>(id));
            return -1;
        }
        connectors[id - 1].enabled = byteOf(connector.get(), "Enable");
        zt4::logLine(LOG_INFO, "%s: System Connector %u Enable = %u", function,
                     static_cast<unsigned>(id), static_cast<unsigned>(connectors[id - 1].enabled));
    }
    return 0;
}

int readZT4SystemExpertSyntaxVersion1(zt4Data* data) noexcept {
    const char* function = __func__;
    if (data == nullptr) {
        zt4::logError(function, "zt4Data NULL");
        return -1;
    }
    ExpertConfig& expert = data->expert;
    expert.lineFrequency = 50.0f;
    for (const SystemOption& option : kSystemOptions) {
        if (option.field != &ExpertConfig::ctThreshold) expert.*option.field = 1;
    }
    zt4::JsonRef system(readJSONZT4SystemExpertSyntaxVersion1());
    if (!system) {
        zt4::logError(function, "json NULL");
        return -1;
    }
    for (const SystemOption& option : kSystemOptions) {
        json_t* object = json_object_get(system.get(), option.object);
        if (!json_is_object(object)) {
            zt4::logError(function, "FAILED to read System Object %s", option.object);
            return -1;
        }
        expert.*option.field = byteOf(object, option.key);
        if (option.secondKey != nullptr) expert.*option.secondField = byteOf(object, option.secondKey);
    }
    return 0;
}
