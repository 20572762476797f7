#include "config/v1/filter_rules.hpp"

#include <cstring>

#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "config/descriptions/user_descriptions.hpp"
#include "config/v1/document_sections.hpp"

namespace zt4::v1 {
namespace {

using sections::Field;
using sections::Rule;
using sections::Section;

// The filter function of a level and the label of its "<label> NULL" / "<label> Copy NULL" lines.
struct LevelWording {
    const Section* section;
    const char* function;
    const char* label;  // null: the level leaves its source to the shared filter
    // A filter shared with another level copies the first `sharedFields` fields under its own
    // name and label; the level logs `sharedFailed` when it fails, then copies the rest.
    const char* sharedFunction = nullptr;
    const char* sharedLabel = nullptr;
    std::uint8_t sharedFields = 0;
    const char* sharedFailed = nullptr;
};

constexpr const char* kChannelCommon = "filterUserConfigConnectorChannelCommonSyntaxVersion1";
constexpr const char* kSagSwell = "filterUserConfigExpertSagSwellSyntaxVersion1";
// The keys of both channel kinds; a monophase channel adds "Phase" after them.
constexpr std::uint8_t kChannelCommonFields = 5;

const LevelWording kLevelWordings[] = {
    {&kSyntaxSection, "filterUserConfigSyntaxVersion1", "Syntax"},
    {&sections::kWeb, "filterUserConfigWebSyntaxVersion1", "Web"},
    {&sections::kRadioLoRa, "filterUserConfigRadioLoRaSyntaxVersion1", "RadioLoRa"},
    {&sections::kWiFi, "filterUserConfigWiFiSyntaxVersion1", "WiFi"},
    {&sections::kEthernet, "filterUserConfigEthernetSyntaxVersion1", "Ethernet"},
    {&sections::kModbus, "filterUserConfigModbusSyntaxVersion1", "Modbus"},
    {&sections::kBACnet, "filterUserConfigBACnetSyntaxVersion1", "BACnet"},
    {&sections::kElectricalConfiguration, "filterUserConfigElectricalConfigurationSyntaxVersion1",
     "ElectricalConfiguration"},
    {&sections::kVoltageTransformer, "filterUserConfigVoltageTransformerSyntaxVersion1", "VoltageTransformer"},
    {&sections::kConnector, "filterUserConfigConnectorSyntaxVersion1", "Connector"},
    {&sections::kConnectorChannelCommon, "filterUserConfigConnectorChannelCommonSyntaxVersion1", "Channel Common"},
    {&sections::kConnectorChannel3P, "filterUserConfigConnectorChannel3PSyntaxVersion1", "Channel 3P",
     kChannelCommon, "Channel Common", kChannelCommonFields, "Failed to filter JSON Channel Common"},
    {&sections::kConnectorChannel1P, "filterUserConfigConnectorChannel1PSyntaxVersion1", "Channel 1P",
     kChannelCommon, "Channel Common", kChannelCommonFields, "Failed to filter JSON Channel Common"},
    {&sections::kCurrentTransformer, "filterUserConfigCurrentTransformerDirectionSyntaxVersion1", "CurrentTransformer"},
    {&sections::kCurrentTransformerPrimary, "filterUserConfigCurrentTransformerPrimarySyntaxVersion1",
     "CurrentTransformerPrimary"},
    {&sections::kExpert, "filterUserConfigExpertSyntaxVersion1", "Expert"},
    {&sections::kExpertSag, "filterUserConfigExpertSagSyntaxVersion1", nullptr, kSagSwell, "Sag Swell", 3,
     "Failed to filter JSON Sag"},
    {&sections::kExpertSwell, "filterUserConfigExpertSwellSyntaxVersion1", nullptr, kSagSwell, "Sag Swell", 3,
     "Failed to filter JSON Swell"},
    {&sections::kExpertCurrentAverageMax, "filterUserConfigExpertCurrentAverageMaxSyntaxVersion1",
     "CurrentAverageMax"},
    {&sections::kExpertOverCurrent, "filterUserConfigExpertOverCurrentSyntaxVersion1", "OverCurrent"},
    {&sections::kExpertConnector, "filterUserConfigExpertConnectorSyntaxVersion1", "Expert Connector"},
    {&sections::kExpertConnectorChannel, "filterUserConfigExpertConnectorChannelSyntaxVersion1", "Expert Channel"},
};

// What the filter of an array member says, by its parent and key. Each text takes one number.
struct ArrayWording {
    const Section* parent;
    const char* key;
    const char* function;       // the array's own filter
    const char* sizeInfo;       // info line with the source size, or null
    const char* entryFailed;    // with the entry's number from 1
    const char* elementLabel;   // label of entries that have no level of their own, or null
};

const ArrayWording kArrayWordings[] = {
    {&sections::kElectricalConfiguration, "Connectors", "filterUserConfigConnectorsSyntaxVersion1", nullptr,
     "Failed to filter JSON section Connector %d", nullptr},
    {&sections::kConnector, "Channel", "filterUserConfigConnectorChannelsSyntaxVersion1",
     "Filter %d Connector Channel(s)", "Failed to filter JSON Channel %d", nullptr},
    {&sections::kConnectorChannelCommon, "CurrentTransformer", "filterUserConfigCurrentTransformerSyntaxVersion1",
     "Filter %d CT", "Failed to filter JSON section CT %d", nullptr},
    {&sections::kConnectorChannel3P, "CurrentTransformer", "filterUserConfigCurrentTransformerSyntaxVersion1",
     "Filter %d CT", "Failed to filter JSON section CT %d", nullptr},
    {&sections::kConnectorChannel1P, "CurrentTransformer", "filterUserConfigCurrentTransformerSyntaxVersion1",
     "Filter %d CT", "Failed to filter JSON section CT %d", nullptr},
    {&sections::kExpertSag, "Phase", "filterUserConfigExpertPhasesSyntaxVersion1", "Filter %d Expert Phases",
     "Failed to filter JSON section Expert Phase %d", "Expert Phase"},
    {&sections::kExpertSwell, "Phase", "filterUserConfigExpertPhasesSyntaxVersion1", "Filter %d Expert Phases",
     "Failed to filter JSON section Expert Phase %d", "Expert Phase"},
    {&sections::kExpert, "Connectors", "filterUserConfigExpertConnectorsSyntaxVersion1", nullptr,
     "Failed to filter JSON section Expert Connector %d", nullptr},
    {&sections::kExpertConnector, "Channel", "filterUserConfigExpertConnectorChannelsSyntaxVersion1",
     "Filter %d Expert Connector Channel(s)", "Failed to filter JSON Expert Channel %d", nullptr},
};

const LevelWording* levelWording(const Section* section) {
    for (const LevelWording& wording : kLevelWordings) {
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

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
void logNumbered(bool error, const char* function, const char* format, int number) {
    if (error) {
        logError(function, format, number);
    } else {
        logInfo(function, format, number);
    }
}
#pragma GCC diagnostic pop

int filterEntry(const Section& element, const char* label, json_t* source, json_t* destination,
                const char* function) {
    const LevelWording* wording = levelWording(&element);
    if (wording == nullptr) {
        // Entries without a level of their own: the array's filter copies their keys.
        if (source == nullptr) {
            logError(function, "%s NULL", label);
            return -1;
        }
        for (std::size_t i = 0; i < element.fieldCount; ++i) {
            json_t* value = json_object_get(source, element.fields[i].key);
            if (value != nullptr) json_object_set(destination, element.fields[i].key, value);
        }
        return 0;
    }
    return filterObject(element, source, destination, wording->function);
}

}  // namespace

int filterArray(const Section& parent, const char* key, json_t* source, json_t* destination,
                const char* function) noexcept {
    const ArrayWording* wording = arrayWording(parent, key);
    const Field* field = nullptr;
    for (std::size_t i = 0; i < parent.fieldCount; ++i) {
        if (std::strcmp(parent.fields[i].key, key) == 0) field = &parent.fields[i];
    }
    if (wording == nullptr || field == nullptr || field->nested == nullptr || !field->nested->isArray()) {
        logError(function, "%s has no filter", key);
        return -1;
    }
    function = wording->function;
    if (!json_is_array(source)) {
        logError(function, "%s NULL", key);
        return -1;
    }
    if (destination == nullptr) {
        logError(function, "%s Copy NULL", key);
        return -1;
    }
    const sections::ArrayShape& shape = *field->nested->array;
    const std::size_t size = json_array_size(source);
    if (wording->sizeInfo != nullptr) logNumbered(false, function, wording->sizeInfo, static_cast<int>(size));
    const Section* element = shape.elements[0];
    if (shape.sizes[1] != 0 && !shape.filterEveryEntry) {
        // Entries whose kind depends on their count: any other count gives an empty array.
        element = size == shape.sizes[0] ? shape.elements[0] : size == shape.sizes[1] ? shape.elements[1] : nullptr;
        if (element == nullptr) return 0;
    }
    for (std::size_t i = 0; i < size; ++i) {
        JsonRef copy(json_object());
        if (!copy || filterEntry(*element, wording->elementLabel ? wording->elementLabel : key,
                                 json_array_get(source, i), copy.get(), function) != 0 ||
            json_array_append(destination, copy.get()) != 0) {
            logNumbered(true, function, wording->entryFailed, static_cast<int>(i + 1));
            return -1;
        }
    }
    return 0;
}

namespace {

// How a parent's failure line names a nested member: an expert connector's over-current
// thresholds and channels go by the expert's name.
const char* memberName(const Section& parent, const char* key) {
    if (&parent != &sections::kExpertConnector) return key;
    if (std::strcmp(key, "OverCurrent") == 0) return "Expert OverCurrent";
    return std::strcmp(key, "Channel") == 0 ? "Expert Channel" : key;
}

// Copies the fields [begin, end) of `section`, logging under `function` with `label` for a missing
// source or destination: plain keys first, those a complete document may leave out after the
// others, then the nested objects and arrays.
int filterFields(const Section& section, std::size_t begin, std::size_t end, json_t* source,
                 json_t* destination, const char* function, const char* label) {
    if (source == nullptr) {
        logError(function, "%s NULL", label);
        return -1;
    }
    if (destination == nullptr) {
        logError(function, "%s Copy NULL", label);
        return -1;
    }
    // Setting a missing value fails quietly: filtering never adds a key.
    for (const bool optional : {false, true}) {
        for (std::size_t i = begin; i < end; ++i) {
            const Field& f = section.fields[i];
            const bool fieldOptional = f.complianceView ? f.complianceView->optional : f.optional;
            json_t* value = json_object_get(source, f.key);
            if (f.rule != Rule::Nested && fieldOptional == optional && value != nullptr) {
                json_object_set(destination, f.key, value);
            }
        }
    }
    for (std::size_t i = begin; i < end; ++i) {
        const Field& f = section.fields[i];
        if (f.rule != Rule::Nested) continue;
        json_t* value = json_object_get(source, f.key);
        const LevelWording* nested = f.nested->isArray() ? nullptr : levelWording(f.nested);
        // An object without a filter level of its own (the WiFi "DHCP") belongs to its parent's
        // filter, which copies it when the source has it.
        if (!f.nested->isArray() && nested == nullptr && value == nullptr) continue;
        JsonRef copy(f.nested->isArray() ? json_array() : json_object());
        if (!copy) {
            logError(function, "FAILED to create object json json%sCopy", f.key);
            return -1;
        }
        int result = -1;
        if (f.nested->isArray()) {
            result = filterArray(section, f.key, value, copy.get(), function);
        } else {
            result = filterObject(*f.nested, value, copy.get(), nested ? nested->function : function);
        }
        if (result != 0 || json_object_set(destination, f.key, copy.get()) != 0) {
            logError(function, "Failed to filter JSON section %s", memberName(section, f.key));
            return -1;
        }
    }
    return 0;
}

std::size_t sharedFieldCount(const Section& section, const LevelWording& wording) {
    return wording.sharedFields < section.fieldCount ? wording.sharedFields : section.fieldCount;
}

}  // namespace

int filterObject(const Section& section, json_t* source, json_t* destination,
                 const char* function) noexcept {
    const LevelWording* wording = levelWording(&section);
    if (function == nullptr) function = wording ? wording->function : "filterObject";
    if (wording == nullptr || wording->sharedFunction == nullptr) {
        const char* label = wording ? wording->label : section.nullLabel;
        return filterFields(section, 0, section.fieldCount, source, destination, function, label);
    }
    // A level with a label checks its source before the shared filter does.
    if (wording->label != nullptr && filterFields(section, 0, 0, source, destination, function,
                                                  wording->label) != 0) {
        return -1;
    }
    const std::size_t shared = sharedFieldCount(section, *wording);
    if (filterFields(section, 0, shared, source, destination, wording->sharedFunction,
                     wording->sharedLabel) != 0) {
        logError(function, "%s", wording->sharedFailed);
        return -1;
    }
    if (shared == section.fieldCount) return 0;
    return filterFields(section, shared, section.fieldCount, source, destination, function,
                        wording->label ? wording->label : wording->sharedLabel);
}

int filterSharedPart(const Section& section, json_t* source, json_t* destination,
                     const char* function) noexcept {
    const LevelWording* wording = levelWording(&section);
    if (wording == nullptr || wording->sharedFunction == nullptr) {
        return filterObject(section, source, destination, function);
    }
    return filterFields(section, 0, sharedFieldCount(section, *wording), source, destination,
                        function, wording->sharedLabel);
}

}  // namespace zt4::v1
