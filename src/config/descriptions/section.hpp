// Declarative descriptions of configuration sections.
//
// A section is described once, as a table of fields in check order: the key, the JSON type, the
// default, the rule the value must pass and the exact message texts fixed for that key. One
// generic engine (engine.hpp) walks the tables to build defaults, repair missing keys, run the
// rules and combine their results; compliance, filtering and export can walk the same tables.
//
// Message templates are plain text where "{key}" stands for the field's label (its key unless the
// field says otherwise) and "{value}" for the offending value, rendered the way the rule prints it.
#pragma once

#include <jansson.h>

#include <cstddef>
#include <cstdint>

namespace zt4::sections {

struct Section;

// What a field's value must satisfy. The first group delegates to the exported json_check_*
// functions (which log under their own names); the others are checked in place and log under the
// section check's name with the field's message templates.
enum class Rule : std::uint8_t {
    Boolean,               // json_check_boolean
    IntegerSuperior,       // json_check_integer_superior(minimum)
    IntegerRange,          // json_check_integer_range(minimum, maximum)
    NumberSuperior,        // json_check_float_superior(low)
    NumberSuperiorStrict,  // json_check_float_superior_strict(low)
    Ipv4,                  // json_check_ipv4
    Ipv4Addressing,        // json_check_ipv4_addressing
    IntegerOneOf,          // an integer among `integers`
    NumberOneOf,           // a real or integer among `numbers`
    NumberBetween,         // a real or integer in (low, high) or (low, high]
    Text,                  // any string
    TextOneOf,             // the first `compared` characters equal one of `texts` exactly
    TextPrefixOneOf,       // begins with one of `texts` (their first `compared` characters)
    EuiOrEmpty,            // empty, or an identifier of `euiLength` characters and `euiGroups` bytes
    Nested,                // an object or array checked by the description `nested`
    Ipv4OrEmpty,           // empty, or json_check_ipv4
    IntegerExactly,        // json_check_integer_default(the default): a fixed property
    TextExactly,           // json_check_string_default(the default): a fixed property
};

enum class DefaultKind : std::uint8_t { Integer, Real, Text, Provided, Nested };

// Builds a default at the time the defaults are built (for values read from the device). Returns
// a new reference, never null unless out of memory; may log under `function`.
using DefaultProvider = json_t* (*)(const char* function);

struct Messages {
    const char* absent = nullptr;     // key still missing after the repair
    const char* wrongType = nullptr;  // the value has the wrong JSON type
    const char* invalid = nullptr;    // the value breaks the rule
};

struct Field {
    const char* key = nullptr;
    Rule rule = Rule::Text;

    DefaultKind defaultKind = DefaultKind::Integer;
    long long defaultInteger = 0;
    double defaultReal = 0.0;
    const char* defaultText = "";
    DefaultProvider provider = nullptr;

    long long minimum = 0, maximum = 0;  // integer bounds
    double low = 0.0, high = 0.0;        // number bounds
    bool highInclusive = false;
    const long long* integers = nullptr;
    const double* numbers = nullptr;
    const char* const* texts = nullptr;
    std::uint8_t choiceCount = 0;
    std::uint8_t compared = 0;
    std::uint8_t euiLength = 0, euiGroups = 0;
    const Section* nested = nullptr;
    // EuiOrEmpty: the identifier test (the radio's format check); null refuses every non-empty text.
    bool (*textValid)(const char* text, const Field& field) = nullptr;

    const char* label = nullptr;        // name in the messages (default: the key)
    const char* repairKey = nullptr;    // key a repair inserts under (default: the key)
    const char* repairLabel = nullptr;  // name in the "... NULL" repair line (default: the label)
    const char* checkLabel = nullptr;   // name in "FAILED to check ... JSON object" (default: key)
    Messages messages;                  // overrides of the rule's usual texts
    // The rule's result replaces the status gathered so far instead of joining it (a field
    // checked after another whose fault it deliberately hides).
    bool assignsStatus = false;

    // What a whole-document compliance check and the filter see, where they differ from the
    // section check. Compliance applies no default and repairs nothing; it demands every key
    // that is not optional, then runs the rules.
    bool complianceOnly = false;      // unknown to the section check (never defaulted or checked)
    bool optional = false;            // compliance accepts its absence; the filter keeps it if present
    bool nonEmpty = false;            // EuiOrEmpty: compliance refuses the empty text ("{key} EMPTY")
    const char* complianceAbsent = nullptr;  // compliance's "... NULL" line when absent (template)
    const Field* complianceView = nullptr;   // the field as compliance checks it, when its rule differs

    constexpr const char* messageName() const { return label ? label : key; }
    constexpr const char* insertedKey() const { return repairKey ? repairKey : key; }
    constexpr const char* repairName() const { return repairLabel ? repairLabel : messageName(); }

    // Modifiers for the fields whose wording departs from the usual.
    constexpr Field labelled(const char* name) const { Field f = *this; f.label = name; return f; }
    constexpr Field repairedAs(const char* name, const char* insertKey) const {
        Field f = *this; f.repairLabel = name; f.repairKey = insertKey; return f;
    }
    constexpr Field checkedAs(const char* name) const { Field f = *this; f.checkLabel = name; return f; }
    constexpr Field absentText(const char* text) const { Field f = *this; f.messages.absent = text; return f; }
    constexpr Field wrongTypeText(const char* text) const { Field f = *this; f.messages.wrongType = text; return f; }
    constexpr Field assigningStatus() const { Field f = *this; f.assignsStatus = true; return f; }
    constexpr Field onlyForCompliance() const { Field f = *this; f.complianceOnly = true; return f; }
    constexpr Field optionalField() const { Field f = *this; f.optional = true; return f; }
    constexpr Field nonEmptyText() const { Field f = *this; f.nonEmpty = true; return f; }
    constexpr Field complianceAbsentText(const char* text) const {
        Field f = *this; f.complianceAbsent = text; return f;
    }
    constexpr Field compliesAs(const Field& view) const { Field f = *this; f.complianceView = &view; return f; }
};

// What an array section does when its size is not one it accepts.
enum class WrongSize : std::uint8_t {
    Rebuild,      // logged, the array is refilled with its defaults, the section is invalid
    Refuse,       // logged, the section is invalid
    FillMissing,  // each missing element is logged and appended from the defaults; still valid
};

struct ArrayShape {
    std::uint8_t defaultSize;
    // Accepted sizes and the description of their elements (size 0: unused slot).
    std::uint8_t sizes[2];
    const Section* elements[2];
    WrongSize onWrongSize;
    const char* wrongSizeText;     // template, "{value}" the size (Rebuild, Refuse)
    const char* missingText;       // template, "{value}" the element's number (FillMissing's repair)
    const char* elementLabel;      // "Connector": "Connector%u IS NOT Object JSON"
    // The filter keeps every entry, whatever the size (otherwise, with two accepted sizes, an
    // array of another size is filtered to an empty one).
    bool filterEveryEntry = false;
    // The check's line for an element still missing after the repair (template, "{value}" the
    // element's number); null: the element is reported as not an object.
    const char* absentElementText = nullptr;
    // Reads element n (from 1) of the array, logging under its own name why it cannot; null:
    // elements are taken in place.
    json_t* (*elementReader)(json_t* array, std::uint8_t number) = nullptr;
};

struct Section {
    const char* checkName;   // the check's name in its messages; null: the enclosing check's
    const char* nullLabel;   // "web": "web NULL" when the defaults cannot be built
    const Field* fields;     // object sections: fields in check order
    std::size_t fieldCount;
    const ArrayShape* array;  // array sections
    // Top-level sections: the stored section that the returned defaults are overlaid with.
    json_t* (*storedReader)();
    const char* mergeLabel;  // "Web": "FAILED to merge factory config Web with existing keys"
    // Which document the stored section comes from, as the merge message names it.
    const char* mergeDocument = "config";
    // The order in which whole-document compliance reads the fields, as indices into `fields`,
    // where it differs from the check order (null: the check order).
    const std::uint8_t* complianceOrder = nullptr;

    constexpr bool isArray() const { return array != nullptr; }
    // The field that compliance reads `position`th.
    constexpr const Field& complianceField(std::size_t position) const {
        return fields[complianceOrder ? complianceOrder[position] : position];
    }
};

// ---- Field builders ------------------------------------------------------------------------

constexpr Field withDefault(Field f, long long value) {
    f.defaultKind = DefaultKind::Integer; f.defaultInteger = value; return f;
}

constexpr Field booleanField(const char* key, long long byDefault) {
    Field f; f.key = key; f.rule = Rule::Boolean; return withDefault(f, byDefault);
}

constexpr Field integerAtLeast(const char* key, long long byDefault, long long minimum) {
    Field f; f.key = key; f.rule = Rule::IntegerSuperior; f.minimum = minimum;
    return withDefault(f, byDefault);
}

constexpr Field integerBetween(const char* key, long long byDefault, long long minimum,
                               long long maximum) {
    Field f; f.key = key; f.rule = Rule::IntegerRange; f.minimum = minimum; f.maximum = maximum;
    return withDefault(f, byDefault);
}

template <std::size_t N>
constexpr Field integerOneOf(const char* key, long long byDefault, const long long (&set)[N]) {
    Field f; f.key = key; f.rule = Rule::IntegerOneOf; f.integers = set;
    f.choiceCount = static_cast<std::uint8_t>(N);
    return withDefault(f, byDefault);
}

constexpr Field realDefault(Field f, double value) {
    f.defaultKind = DefaultKind::Real; f.defaultReal = value; return f;
}

constexpr Field numberAtLeast(const char* key, double byDefault, double low) {
    Field f; f.key = key; f.rule = Rule::NumberSuperior; f.low = low; return realDefault(f, byDefault);
}

constexpr Field numberAbove(const char* key, double byDefault, double low) {
    Field f; f.key = key; f.rule = Rule::NumberSuperiorStrict; f.low = low;
    return realDefault(f, byDefault);
}

template <std::size_t N>
constexpr Field numberOneOf(const char* key, double byDefault, const double (&set)[N]) {
    Field f; f.key = key; f.rule = Rule::NumberOneOf; f.numbers = set;
    f.choiceCount = static_cast<std::uint8_t>(N);
    return realDefault(f, byDefault);
}

constexpr Field numberWithin(const char* key, double byDefault, double low, double high,
                             bool highInclusive) {
    Field f; f.key = key; f.rule = Rule::NumberBetween; f.low = low; f.high = high;
    f.highInclusive = highInclusive;
    return realDefault(f, byDefault);
}

constexpr Field textDefault(Field f, const char* value) {
    f.defaultKind = DefaultKind::Text; f.defaultText = value; return f;
}

constexpr Field textField(const char* key, const char* byDefault) {
    Field f; f.key = key; f.rule = Rule::Text; return textDefault(f, byDefault);
}

template <std::size_t N>
constexpr Field textOneOf(const char* key, const char* byDefault, const char* const (&set)[N],
                          std::uint8_t compared) {
    Field f; f.key = key; f.rule = Rule::TextOneOf; f.texts = set;
    f.choiceCount = static_cast<std::uint8_t>(N); f.compared = compared;
    return textDefault(f, byDefault);
}

template <std::size_t N>
constexpr Field textPrefixOneOf(const char* key, const char* byDefault, const char* const (&set)[N],
                                std::uint8_t compared) {
    Field f = textOneOf(key, byDefault, set, compared); f.rule = Rule::TextPrefixOneOf; return f;
}

constexpr Field ipv4Field(const char* key, const char* byDefault) {
    Field f; f.key = key; f.rule = Rule::Ipv4; return textDefault(f, byDefault);
}

constexpr Field addressingField(const char* key, const char* byDefault) {
    Field f; f.key = key; f.rule = Rule::Ipv4Addressing; return textDefault(f, byDefault);
}

constexpr Field provided(Field f, DefaultProvider provider) {
    f.defaultKind = DefaultKind::Provided; f.provider = provider; return f;
}

constexpr Field euiField(const char* key, DefaultProvider provider, std::uint8_t length,
                         std::uint8_t groups, bool (*valid)(const char*, const Field&)) {
    Field f; f.key = key; f.rule = Rule::EuiOrEmpty; f.euiLength = length; f.euiGroups = groups;
    f.textValid = valid;
    return provided(f, provider);
}

constexpr Field nestedField(const char* key, const Section& section) {
    Field f; f.key = key; f.rule = Rule::Nested; f.nested = &section;
    f.defaultKind = DefaultKind::Nested;
    return f;
}

template <std::size_t N>
constexpr Section objectSection(const char* checkName, const char* nullLabel,
                                const Field (&fields)[N]) {
    return Section{checkName, nullLabel, fields, N, nullptr, nullptr, nullptr};
}

constexpr Section storedSection(Section s, json_t* (*reader)(), const char* mergeLabel) {
    s.storedReader = reader; s.mergeLabel = mergeLabel; return s;
}

// A top-level section of the system document.
constexpr Section storedSystemSection(Section s, json_t* (*reader)(), const char* mergeLabel) {
    s.storedReader = reader; s.mergeLabel = mergeLabel; s.mergeDocument = "system"; return s;
}

constexpr Field integerExactly(const char* key, long long value) {
    Field f; f.key = key; f.rule = Rule::IntegerExactly; return withDefault(f, value);
}

constexpr Field ipv4OrEmpty(const char* key, const char* byDefault) {
    Field f; f.key = key; f.rule = Rule::Ipv4OrEmpty; return textDefault(f, byDefault);
}

constexpr Field textExactly(const char* key, const char* value) {
    Field f; f.key = key; f.rule = Rule::TextExactly; return textDefault(f, value);
}

// A section whose compliance reads the fields in `order` (indices into its fields, each once).
template <std::size_t N>
constexpr Section compliedInOrder(Section s, const std::uint8_t (&order)[N]) {
    if (N != s.fieldCount) throw "the compliance order names every field once";
    s.complianceOrder = order;
    return s;
}

constexpr Section arraySection(const char* checkName, const char* nullLabel,
                               const ArrayShape& shape) {
    return Section{checkName, nullLabel, nullptr, 0, &shape, nullptr, nullptr};
}

}  // namespace zt4::sections
