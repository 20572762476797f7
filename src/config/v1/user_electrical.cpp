// The electrical sections of the user configuration, syntax version 1: checks, readers, writers.
#include <cstdio>

#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "config/descriptions/engine.hpp"
#include "config/descriptions/user_descriptions.hpp"
#include "config/v1/by_key.hpp"
#include "config/v1/user_checks.hpp"
#include "config/v1/user_section_writer.hpp"
#include "config/v1/user_sections.hpp"
#include "zt4config/config.h"

namespace sections = zt4::sections;

json_t* checkJSONZT4UserConfigElectricalConfigurationSyntaxVersion1(json_t* section, std::int8_t* status) noexcept {
    return sections::check(sections::kElectricalConfiguration, section, status);
}

json_t* checkJSONZT4UserConfigVoltageTransformerSyntaxVersion1(json_t* section, std::int8_t* status) noexcept {
    return sections::check(sections::kVoltageTransformer, section, status);
}

json_t* checkJSONZT4UserConfigConnectorsSyntaxVersion1(json_t* connectors, std::int8_t* status) noexcept {
    return sections::check(sections::kConnectors, connectors, status);
}

json_t* checkJSONZT4UserConfigConnectorSyntaxVersion1(json_t* connector, std::int8_t* status) noexcept {
    return sections::check(sections::kConnector, connector, status);
}

json_t* checkJSONZT4UserConfigConnectorChannelCommonSyntaxVersion1(json_t* channel, std::int8_t* status) noexcept {
    return sections::check(sections::kConnectorChannelCommon, channel, status);
}

json_t* checkJSONZT4UserConfigConnectorChannel1PSyntaxVersion1(json_t* channel, std::int8_t* status) noexcept {
    return sections::check(sections::kConnectorChannel1P, channel, status);
}

json_t* checkJSONZT4UserConfigConnectorChannel3PSyntaxVersion1(json_t* channel, std::int8_t* status) noexcept {
    return sections::check(sections::kConnectorChannel3P, channel, status);
}

json_t* checkJSONZT4UserConfigExpertSyntaxVersion1(json_t* section, std::int8_t* status) noexcept {
    return sections::check(sections::kExpert, section, status);
}

json_t* checkJSONZT4UserConfigExpertSagSyntaxVersion1(json_t* sag, std::int8_t* status) noexcept {
    return sections::check(sections::kExpertSag, sag, status);
}

json_t* checkJSONZT4UserConfigExpertSwellSyntaxVersion1(json_t* swell, std::int8_t* status) noexcept {
    return sections::check(sections::kExpertSwell, swell, status);
}

json_t* checkJSONZT4UserConfigExpertCurrentAverageMaxSyntaxVersion1(json_t* object, std::int8_t* status) noexcept {
    return sections::check(sections::kExpertCurrentAverageMax, object, status);
}

json_t* checkJSONZT4UserConfigExpertOverCurrentSyntaxVersion1(json_t* object, std::int8_t* status) noexcept {
    return sections::check(sections::kExpertOverCurrent, object, status);
}

json_t* checkJSONZT4UserConfigExpertConnectorsSyntaxVersion1(json_t* connectors, std::int8_t* status) noexcept {
    return sections::check(sections::kExpertConnectors, connectors, status);
}

json_t* checkJSONZT4UserConfigExpertConnector3PSyntaxVersion1(json_t* connector, std::int8_t* status) noexcept {
    return sections::check(sections::kExpertConnector, connector, status);
}

json_t* checkJSONZT4UserConfigExpertConnectorChannelSyntaxVersion1(json_t* channel, std::int8_t* status) noexcept {
    return sections::check(sections::kExpertConnectorChannel, channel, status);
}

json_t* checkJSONZT4SystemExpertCircuitBreakerTripSyntaxVersion1(json_t* object, std::int8_t* status) noexcept {
    return sections::check(sections::kExpertCircuitBreakerTrip, object, status);
}

// ---- Readers ----------------------------------------------------------------------------------

namespace {

// Member `key` of the stored section returned by `read`, or the defaults of `fallback`.
json_t* memberOrDefaults(json_t* (*read)() noexcept, const char* key,
                         json_t* (*fallback)(json_t*, std::int8_t*) noexcept, const char* function) {
    zt4::JsonRef section(read());
    json_t* member = section ? json_object_get(section.get(), key) : nullptr;
    if (member != nullptr) return json_incref(member);
    zt4::logError(function, "FAILED to read Object %s", key);
    std::int8_t status = 0;
    return fallback(nullptr, &status);
}

}  // namespace

json_t* readJSONZT4UserConfigElectricalConfigurationSyntaxVersion1() noexcept {
    return readJSONZT4UserConfigByKeyObject("ElectricalConfiguration");
}

json_t* readJSONZT4UserConfigConnectorsSyntaxVersion1() noexcept {
    return memberOrDefaults(readJSONZT4UserConfigElectricalConfigurationSyntaxVersion1, "Connectors",
                            checkJSONZT4UserConfigConnectorsSyntaxVersion1, __func__);
}

json_t* readJSONZT4UserConfigExpertSyntaxVersion1() noexcept {
    return memberOrDefaults(readJSONZT4UserConfigElectricalConfigurationSyntaxVersion1, "Expert",
                            checkJSONZT4UserConfigExpertSyntaxVersion1, __func__);
}

json_t* readJSONZT4UserConfigExpertConnectorsSyntaxVersion1() noexcept {
    return memberOrDefaults(readJSONZT4UserConfigExpertSyntaxVersion1, "Connectors",
                            checkJSONZT4UserConfigExpertConnectorsSyntaxVersion1, __func__);
}

json_t* readJSONZT4UserConfigExpertNumberConnectorThreephaseSyntaxVersion1() noexcept {
    const char* function = __func__;
    zt4::JsonRef expert(readJSONZT4UserConfigExpertSyntaxVersion1());
    if (!expert) {
        zt4::logError(function, "read Expert NULL");
        return nullptr;
    }
    json_t* count = json_object_get(expert.get(), "NumberConnectorThreephase");
    if (count == nullptr) {
        zt4::logError(function, "read NumberConnectorThreephase NULL");
        return nullptr;
    }
    if (!json_is_integer(count)) {
        zt4::logError(function, "NumberConnectorThreephase NOT INTEGER");
        return nullptr;
    }
    json_t* setup = json_pack("{sI}", "Setup", json_integer_value(count));
    if (setup == nullptr) zt4::logError(function, "numberConnectorThreephase NULL");
    return setup;
}

// ---- Writers ----------------------------------------------------------------------------------

namespace {

// Merges the updated "ElectricalConfiguration" section into the stored document.
int mergeElectrical(json_t* electrical, const char* function) {
    zt4::JsonRef root(json_object());
    if (!root || json_object_set(root.get(), "ElectricalConfiguration", electrical) != 0) {
        zt4::logError(function, "jsonEC NULL");
        return -1;
    }
    return updateJSONZT4UserConfigFile(root.get());
}


// Stores `part` as member `key` of the stored "ElectricalConfiguration" and merges that section
// into the document. With `mergeWithStored`, the part is merged into the stored member instead of
// replacing it.
int storeInElectrical(const char* key, json_t* part, bool mergeWithStored, const char* function) {
    zt4::JsonRef electrical(readJSONZT4UserConfigElectricalConfigurationSyntaxVersion1());
    if (!electrical) {
        zt4::logError(function, "jsonEC NULL");
        return -1;
    }
    json_t* stored = json_object_get(electrical.get(), key);
    if (mergeWithStored && json_is_object(stored)) {
        if (!zt4::v1::mergeInto(stored, part, key, function)) return -1;
    } else if (json_object_set(electrical.get(), key, part) != 0) {
        zt4::logError(function, "FAILED to update section ElectricalConfiguration with %s one", key);
        return -1;
    }
    return mergeElectrical(electrical.get(), function);
}

// A checked copy of `input`, or null after logging why it was refused.
json_t* checkedCopy(json_t* input, json_t* (*checkPart)(json_t*, std::int8_t*) noexcept,
                    const char* checkLabel, const char* invalidLabel, const char* function) {
    if (input == nullptr) {
        zt4::logError(function, "json NULL");
        return nullptr;
    }
    zt4::JsonRef copy(json_deep_copy(input));
    if (!copy) {
        zt4::logError(function, "jsonCopy NULL");
        return nullptr;
    }
    std::int8_t status = 0;
    zt4::JsonRef defaults(checkPart(copy.get(), &status));
    if (!defaults) {
        zt4::logError(function, "FAILED to check %s JSON object", checkLabel);
        return nullptr;
    }
    if (status != 0) {
        zt4::logError(function, "INVALID Configuration %s", invalidLabel);
        return nullptr;
    }
    return copy.release();
}

}  // namespace

int writeJSONZT4UserConfigConnectorsSyntaxVersion1(json_t* connectors) noexcept {
    zt4::JsonRef copy(checkedCopy(connectors, checkJSONZT4UserConfigConnectorsSyntaxVersion1,
                                  "ConfigConnector", "Connector", __func__));
    if (!copy) return -1;
    return storeInElectrical("Connectors", copy.get(), false, __func__);
}

int writeJSONZT4UserConfigConnectorByIdSyntaxVersion1(json_t* connector, std::uint8_t id) noexcept {
    const char* function = __func__;
    if (id < 1 || id > 6) {
        zt4::logError(function, "Connector id=%u INVALID", static_cast<unsigned>(id));
        return -1;
    }
    char checkLabel[32];
    std::snprintf(checkLabel, sizeof checkLabel, "ConfigConnector%u", static_cast<unsigned>(id));
    zt4::JsonRef copy(checkedCopy(connector, checkJSONZT4UserConfigConnectorSyntaxVersion1,
                                  checkLabel, "Connector", function));
    if (!copy) return -1;
    zt4::JsonRef electrical(readJSONZT4UserConfigElectricalConfigurationSyntaxVersion1());
    if (!electrical) {
        zt4::logError(function, "Failed to read section ElectricalConfiguration");
        return -1;
    }
    json_t* connectors = json_object_get(electrical.get(), "Connectors");
    if (!json_is_array(connectors)) {
        zt4::logError(function, "Connectors NULL");
        return -1;
    }
    if (json_array_size(connectors) == 0) {
        zt4::logError(function, "Size array Connect is ZERO");
        return -1;
    }
    if (json_array_set(connectors, id - 1u, copy.get()) != 0) {
        zt4::logError(function, "FAILED to replace Connector%u in array Connect at position %u",
                      static_cast<unsigned>(id), static_cast<unsigned>(id - 1u));
        return -1;
    }
    return mergeElectrical(electrical.get(), function);
}

int writeJSONZT4UserConfigVoltageTransformerSyntaxVersion1(json_t* section) noexcept {
    zt4::JsonRef copy(checkedCopy(section, checkJSONZT4UserConfigVoltageTransformerSyntaxVersion1,
                                  "ConfigVoltageTransformer", "VoltageTransformer", __func__));
    if (!copy) return -1;
    return storeInElectrical("VoltageTransformer", copy.get(), true, __func__);
}

int writeJSONZT4UserConfigExpertSyntaxVersion1(json_t* section) noexcept {
    zt4::JsonRef copy(checkedCopy(section, checkJSONZT4UserConfigExpertSyntaxVersion1,
                                  "ConfigExpert", "Expert", __func__));
    if (!copy) return -1;
    return storeInElectrical("Expert", copy.get(), true, __func__);
}

int writeJSONZT4UserConfigExpertNumberConnectorThreephaseSyntaxVersion1(json_t* setup) noexcept {
    const char* function = __func__;
    if (setup == nullptr) {
        zt4::logError(function, "json NULL");
        return -1;
    }
    json_t* count = json_object_get(setup, "Setup");
    if (count == nullptr) {
        zt4::logError(function, "read NumberConnectorThreephase NULL");
        return -1;
    }
    zt4::JsonRef expert(readJSONZT4UserConfigExpertSyntaxVersion1());
    if (!expert) {
        zt4::logError(function, "FAILED to read Expert config");
        return -1;
    }
    if (json_object_set(expert.get(), "NumberConnectorThreephase", count) != 0) {
        zt4::logError(function, "FAILED to set config NumberConnectorThreephase");
        return -1;
    }
    int result = writeJSONZT4UserConfigExpertSyntaxVersion1(expert.get());
    if (result != 0) zt4::logError(function, "FAILED to update number Connector Threephase config");
    return result;
}
