#include "config/v1/compliance_rules.hpp"

#include <cstdio>
#include <cstring>

#include "common/log.hpp"
#include "config/descriptions/engine.hpp"
#include "config/descriptions/user_descriptions.hpp"
#include "config/v1/document_sections.hpp"
#include "zt4config/json_checks.h"

namespace zt4::v1 {
namespace {

using sections::Field;
using sections::Rule;
using sections::Section;

// The rule function that checks a section, and the lines its parent logs about it.
struct SectionWording {
    const Section* section;
    const char* function;
    const char* nullLabel;   // "<nullLabel> NULL" for a missing section
    const char* failedLine;  // logged by the parent when this section fails, or null
    // A rule shared with another section checks the first `sharedFields` fields (in compliance
    // order) under its own name, before the section's rule checks the rest.
    const char* sharedRule = nullptr;
    std::uint8_t sharedFields = 0;
};

constexpr const char* kChannelCommonRule = "complianceJSONZT4UserConfigConnectorChannelCommonSyntaxVersion1";
constexpr const char* kSagSwellRule = "complianceJSONZT4UserConfigExpertSagSwellSyntaxVersion1";
// The keys of both channel kinds; a monophase channel adds "Phase".
constexpr std::uint8_t kChannelCommonFields = 5;

const SectionWording kSectionWordings[] = {
    {&kSyntaxSection, "complianceJSONZT4UserConfigSyntaxVersion1", "Syntax", nullptr},
    {&sections::kWeb, "complianceJSONZT4UserConfigWebSyntaxVersion1", "Web", nullptr},
    {&sections::kRadioLoRa, "complianceJSONZT4UserConfigRadioLoRaSyntaxVersion1", "RadioLoRa", nullptr},
    {&sections::kWiFi, "complianceJSONZT4UserConfigWiFiSyntaxVersion1", "WiFi", nullptr},
    {&sections::kEthernet, "complianceJSONZT4UserConfigEthernetSyntaxVersion1", "Ethernet", nullptr},
    {&sections::kModbus, "complianceJSONZT4UserConfigModbusSyntaxVersion1", "Modbus", nullptr},
    {&sections::kBACnet, "complianceJSONZT4UserConfigBACnetSyntaxVersion1", "BACnet", nullptr},
    {&sections::kElectricalConfiguration,
     "complianceJSONZT4UserConfigElectricalConfigurationSyntaxVersion1", "ElectricalConfiguration",
     nullptr},
    {&sections::kVoltageTransformer, "complianceJSONZT4UserConfigVoltageTransformerSyntaxVersion1",
     "VoltageTransformer",
     "Failed to check compliance section Electrical Configuration VoltageTransformer in syntax version 1"},
    {&sections::kConnector, "complianceJSONZT4UserConfigConnectorSyntaxVersion1", "Connector", nullptr},
    {&sections::kConnectorChannelCommon,
     "complianceJSONZT4UserConfigConnectorChannelCommonSyntaxVersion1", "Channel", nullptr},
    {&sections::kConnectorChannel3P, "complianceJSONZT4UserConfigConnectorChannel3PSyntaxVersion1",
     "Channel", nullptr, kChannelCommonRule, kChannelCommonFields},
    {&sections::kConnectorChannel1P, "complianceJSONZT4UserConfigConnectorChannel1PSyntaxVersion1",
     "Channel", nullptr, kChannelCommonRule, kChannelCommonFields},
    {&sections::kExpert, "complianceJSONZT4UserConfigExpertSyntaxVersion1", "Expert",
     "Failed to check compliance section Electrical Configuration Expert in syntax version 1"},
    {&sections::kExpertSag, "complianceJSONZT4UserConfigExpertSagSyntaxVersion1", "Expert Sag",
     "Failed to check compliance section Expert Sag in syntax version 1", kSagSwellRule, 3},
    {&sections::kExpertSwell, "complianceJSONZT4UserConfigExpertSwellSyntaxVersion1", "Expert Swell",
     "Failed to check compliance section Expert Swell in syntax version 1", kSagSwellRule, 3},
    {&sections::kExpertCurrentAverageMax,
     "complianceJSONZT4UserConfigExpertCurrentAverageMaxSyntaxVersion1", "CurrentAverageMax", nullptr},
    {&sections::kExpertOverCurrent, "complianceJSONZT4UserConfigExpertOverCurrentSyntaxVersion1",
     "OverCurrent", nullptr},
    {&sections::kExpertConnector, "complianceJSONZT4UserConfigExpertConnectorSyntaxVersion1",
     "Expert Connector", nullptr},
    {&sections::kExpertConnectorChannel,
     "complianceJSONZT4UserConfigExpertConnectorChannelCommonSyntaxVersion1", "Expert Channel", nullptr},
};

// What an array member's compliance says, by its parent and key. The texts take one number:
// the size, or the entry's number from 1.
struct ArrayWording {
    const Section* parent;
    const char* key;
    const char* wrongSize;
    const char* entryMissing;
    const char* entryFailed;      // or null
    const char* sizeInfo[2];      // info line for each accepted size, or null
    const char* keyAbsent;        // entries of one boolean key, checked in place: the key is missing
    const char* keyInvalid;       // ... or not 0 or 1
    const char* failedLine;       // logged by the parent when the array fails, or null
    const char* function;         // the array's own rule function, or null (its parent's)
};

const ArrayWording kArrayWordings[] = {
    {&sections::kElectricalConfiguration, "Connectors", "Array size Connectors %d INVALID",
     "Failed to read Connector %u", "Failed to check compliance section Connector %d in syntax version 1",
     {nullptr, nullptr}, nullptr, nullptr,
     "Failed to check compliance section Electrical Configuration Connectors in syntax version 1",
     "complianceJSONZT4UserConfigConnectorsSyntaxVersion1"},
    {&sections::kConnector, "Channel", "Array size Connector Channel %d INVALID", "Failed to read Channel %u",
     nullptr, {"Compliance of %d Connector Channel", "Compliance of %d Connector Channels"}, nullptr,
     nullptr, nullptr, nullptr},
    {&sections::kConnectorChannelCommon, "CurrentTransformer", "CurrentTransformer size %d is incorrect",
     "CurrentTransformer %d NULL", nullptr, {nullptr, nullptr}, "Direction %d NULL",
     "CurrentTransformer Direction %d INVALID", nullptr, nullptr},
    {&sections::kConnectorChannel3P, "CurrentTransformer", "CurrentTransformer size %d is incorrect",
     "CurrentTransformer %d NULL", nullptr, {nullptr, nullptr}, "Direction %d NULL",
     "CurrentTransformer Direction %d INVALID", nullptr, nullptr},
    {&sections::kConnectorChannel1P, "CurrentTransformer", "CurrentTransformer size %d is incorrect",
     "CurrentTransformer %d NULL", nullptr, {nullptr, nullptr}, "Direction %d NULL",
     "CurrentTransformer Direction %d INVALID", nullptr, nullptr},
    {&sections::kExpertSag, "Phase", "Phase array size %d is incorrect", "Phase %u NULL", nullptr,
     {nullptr, nullptr}, "Phase %d Enable INVALID", "Phase %d Enable INVALID", nullptr, nullptr},
    {&sections::kExpertSwell, "Phase", "Phase array size %d is incorrect", "Phase %u NULL", nullptr,
     {nullptr, nullptr}, "Phase %d Enable INVALID", "Phase %d Enable INVALID", nullptr, nullptr},
    {&sections::kExpert, "Connectors", "Array size Expert Connectors %d INVALID",
     "Failed to read Expert Connector %u",
     "Failed to check compliance section ConnectorExpert Connector %d in syntax version 1",
     {nullptr, nullptr}, nullptr, nullptr,
     "Failed to check compliance section Expert Connectors in syntax version 1",
     "complianceJSONZT4UserConfigExpertConnectorsSyntaxVersion1"},
    {&sections::kExpertConnector, "Channel", "Array size Connector Channel %d INVALID",
     "Failed to read Expert Channel %u", nullptr,
     {"Compliance of %d Expert Connector Channel", "Compliance of %d Expert Connector Channels"},
     nullptr, nullptr, nullptr, nullptr},
};

// A rule function whose key fails a typed check (boolean, at least, range, IPv4...) logs, after
// the typed check's own line, the key's name and this text under its own name.
constexpr const char* kTypedCheckFailed = "INVALID";

const SectionWording* sectionWording(const Section* section) {
    for (const SectionWording& wording : kSectionWordings) {
        if (wording.section == section) return &wording;
    }
    return nullptr;
}

const ArrayWording* arrayWording(const Section& parent, const char* key) {
    for (const ArrayWording& wording : kArrayWordings) {
        if (wording.parent == &parent && std::strcmp(wording.key, key) == 0) return &wording;
    }
    return nullptr;
}

const Field* fieldOf(const Section& section, const char* key) {
    for (std::size_t i = 0; i < section.fieldCount; ++i) {
        if (std::strcmp(section.fields[i].key, key) == 0) return &section.fields[i];
    }
    return nullptr;
}

const Field& viewOf(const Field& f) { return f.complianceView ? *f.complianceView : f; }

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
int refuseNumbered(const char* function, const char* format, int number) {
    logError(function, format, number);
    return -1;
}
void infoNumbered(const char* function, const char* format, int number) {
    logInfo(function, format, number);
}
#pragma GCC diagnostic pop

int refuse(const char* function, const char* name, const char* what) {
    logError(function, "%s %s", name, what);
    return -1;
}

bool isBoolean(const json_t* value) {
    return json_is_integer(value) && (json_integer_value(value) == 0 || json_integer_value(value) == 1);
}

int complyText(const Field& f, const json_t* value, const char* function) {
    const char* name = f.messageName();
    if (!json_is_string(value)) return refuse(function, name, "NOT JSON_STRING");
    const char* text = json_string_value(value);
    switch (f.rule) {
        case Rule::TextOneOf: {
            char cut[16] = {};
            std::strncpy(cut, text, f.compared < sizeof cut ? f.compared : sizeof cut - 1);
            for (std::uint8_t i = 0; i < f.choiceCount; ++i) {
                if (std::strcmp(cut, f.texts[i]) == 0) return 0;
            }
            logError(function, "%s %s INVALID", name, cut);
            return -1;
        }
        case Rule::TextPrefixOneOf:
            for (std::uint8_t i = 0; i < f.choiceCount; ++i) {
                if (std::strncmp(text, f.texts[i], f.compared) == 0) return 0;
            }
            logError(function, "%s '%s' INVALID", name, text);
            return -1;
        case Rule::EuiOrEmpty:
            if (text[0] == '\0') return f.nonEmpty ? refuse(function, name, "EMPTY") : 0;
            if (f.textValid != nullptr && f.textValid(text, f)) return 0;
            return refuse(function, name, "INVALID");
        default:
            return 0;
    }
}

int complyNumber(const Field& f, const json_t* value, const char* function) {
    const char* name = f.messageName();
    if (!json_is_number(value)) {
        // The field's own wording for a wrong type ("{key} NOT JSON NUMBER"), else the usual one.
        const char* wrongType = f.messages.wrongType;
        if (wrongType != nullptr && std::strncmp(wrongType, "{key} ", 6) == 0) {
            return refuse(function, name, wrongType + 6);
        }
        return refuse(function, name, "NOT JSON_REAL");
    }
    const double number = json_number_value(value);
    if (f.rule == Rule::NumberOneOf) {
        // Compared as the single-precision values the meter works with.
        for (std::uint8_t i = 0; i < f.choiceCount; ++i) {
            if (static_cast<float>(number) == static_cast<float>(f.numbers[i])) return 0;
        }
        logError(function, "%s %f INVALID", name, number);
        return -1;
    }
    if (number > f.low && (f.highInclusive ? number <= f.high : number < f.high)) return 0;
    logError(function, "%s %f %% INVALID", name, number);
    return -1;
}

int complyField(const Section& parent, const Field& field, json_t* object, const char* function) {
    const Field& f = viewOf(field);
    json_t* value = json_object_get(object, f.key);
    if (value == nullptr) return refuse(function, f.messageName(), "not defined");
    const int typed = sections::checkTypedRule(f, object);
    if (typed == 0) return 0;
    if (typed != sections::kNotTyped) return refuse(function, f.messageName(), kTypedCheckFailed);
    switch (f.rule) {
        case Rule::Ipv4OrEmpty:
            if (json_is_string(value) && json_string_value(value)[0] == '\0') return 0;
            if (json_check_ipv4(object, f.key) == 0) return 0;
            return refuse(function, f.messageName(), kTypedCheckFailed);
        case Rule::IntegerOneOf: {
            if (!json_is_integer(value)) return refuse(function, f.messageName(), "NOT JSON_INTEGER");
            const json_int_t number = json_integer_value(value);
            for (std::uint8_t i = 0; i < f.choiceCount; ++i) {
                if (number == f.integers[i]) return 0;
            }
            logError(function, "%s %d INVALID", f.messageName(), static_cast<int>(number));
            return -1;
        }
        case Rule::NumberOneOf:
        case Rule::NumberBetween: return complyNumber(f, value, function);
        case Rule::Nested: {
            if (f.nested->isArray()) return complyArray(parent, f.key, value, function);
            const SectionWording* wording = sectionWording(f.nested);
            if (!json_is_object(value)) return refuse(function, f.key, "NOT JSON_OBJECT");
            if (comply(*f.nested, value, wording ? wording->function : function) == 0) return 0;
            if (wording != nullptr && wording->failedLine != nullptr) logError(function, "%s", wording->failedLine);
            return -1;
        }
        default: return complyText(f, value, function);
    }
}

// An entry holding one boolean key, checked in place with the array's numbered messages.
int complyBooleanEntry(const ArrayWording& wording, const Field& f, const json_t* entry, int number,
                       const char* function) {
    const json_t* value = json_object_get(entry, f.key);
    if (value == nullptr) return refuseNumbered(function, wording.keyAbsent, number);
    return isBoolean(value) ? 0 : refuseNumbered(function, wording.keyInvalid, number);
}

int complyEntries(const ArrayWording& wording, const Section& element, json_t* array,
                  const char* function) {
    const SectionWording* elementWording = sectionWording(&element);
    const std::size_t size = json_array_size(array);
    for (std::size_t i = 0; i < size; ++i) {
        const int number = static_cast<int>(i + 1);
        json_t* entry = json_array_get(array, i);
        if (!json_is_object(entry)) return refuseNumbered(function, wording.entryMissing, number);
        if (wording.keyAbsent != nullptr) {
            if (complyBooleanEntry(wording, element.fields[0], entry, number, function) != 0) return -1;
            continue;
        }
        if (comply(element, entry, elementWording ? elementWording->function : function) != 0) {
            if (wording.entryFailed != nullptr) refuseNumbered(function, wording.entryFailed, number);
            return -1;
        }
    }
    return 0;
}

// The fields at compliance positions [begin, end) of `value`, logged under `function`: presence
// first (a document missing two keys reports the first one only), then the rules, in order.
int complyFields(const Section& section, json_t* value, std::size_t begin, std::size_t end,
                 const char* function) {
    for (std::size_t i = begin; i < end; ++i) {
        const Field& f = viewOf(section.complianceField(i));
        if (f.optional || json_object_get(value, f.key) != nullptr) continue;
        if (section.complianceField(i).complianceAbsent != nullptr) {
            logError(function, "%s", section.complianceField(i).complianceAbsent);
            return -1;
        }
        return refuse(function, f.messageName(), "NULL");
    }
    for (std::size_t i = begin; i < end; ++i) {
        const Field& f = section.complianceField(i);
        if (viewOf(f).optional && json_object_get(value, f.key) == nullptr) continue;
        if (complyField(section, f, value, function) != 0) return -1;
    }
    return 0;
}

}  // namespace

int complyArray(const Section& parent, const char* key, json_t* array, const char* function) noexcept {
    const ArrayWording* wording = arrayWording(parent, key);
    const Field* field = fieldOf(parent, key);
    if (wording == nullptr || field == nullptr || field->nested == nullptr || !field->nested->isArray()) {
        logError(function, "%s has no compliance rule", key);
        return -1;
    }
    const char* parentFunction = function;
    if (wording->function != nullptr) function = wording->function;
    if (array == nullptr) return refuse(function, key, "NULL");
    if (!json_is_array(array)) return refuse(function, key, "NOT JSON_ARRAY");
    const sections::ArrayShape& shape = *field->nested->array;
    const std::size_t size = json_array_size(array);
    int accepted = -1;
    for (int i = 0; i < 2; ++i) {
        if (shape.sizes[i] != 0 && shape.sizes[i] == size) accepted = i;
    }
    int result = 0;
    if (accepted < 0) {
        result = refuseNumbered(function, wording->wrongSize, static_cast<int>(size));
    } else {
        if (wording->sizeInfo[accepted] != nullptr) {
            infoNumbered(function, wording->sizeInfo[accepted], static_cast<int>(size));
        }
        result = complyEntries(*wording, *shape.elements[accepted], array, function);
    }
    if (result != 0 && wording->failedLine != nullptr) logError(parentFunction, "%s", wording->failedLine);
    return result;
}

int comply(const Section& section, json_t* value, const char* function) noexcept {
    const SectionWording* wording = sectionWording(&section);
    const char* label = wording ? wording->nullLabel : section.nullLabel;
    if (function == nullptr) function = wording ? wording->function : "comply";
    if (value == nullptr) return refuse(function, label, "NULL");
    if (!json_is_object(value)) return refuse(function, label, "NOT JSON_OBJECT");
    std::size_t shared = 0;
    if (wording != nullptr && wording->sharedRule != nullptr) {
        shared = wording->sharedFields < section.fieldCount ? wording->sharedFields : section.fieldCount;
        if (complyFields(section, value, 0, shared, wording->sharedRule) != 0) return -1;
    }
    return complyFields(section, value, shared, section.fieldCount, function);
}

}  // namespace zt4::v1
