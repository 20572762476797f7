#include "config/descriptions/engine.hpp"

#include <cstdio>
#include <cstring>

#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "zt4config/json_checks.h"

namespace zt4::sections {
namespace {

constexpr std::size_t kMessageCapacity = 256;

// Fills a message template: "{key}" becomes `key`, "{value}" becomes `value`.
void logTemplate(const char* function, const char* text, const char* key,
                 const char* value = "") {
    char message[kMessageCapacity];
    std::size_t used = 0;
    auto append = [&](const char* piece, std::size_t length) {
        if (used + length >= sizeof message) length = sizeof message - 1 - used;
        std::memcpy(message + used, piece, length);
        used += length;
    };
    for (const char* cursor = text; *cursor != '\0';) {
        if (std::strncmp(cursor, "{key}", 5) == 0) {
            append(key, std::strlen(key));
            cursor += 5;
        } else if (std::strncmp(cursor, "{value}", 7) == 0) {
            append(value, std::strlen(value));
            cursor += 7;
        } else {
            append(cursor, 1);
            ++cursor;
        }
    }
    message[used] = '\0';
    logError(function, "%s", message);
}

const char* pick(const char* chosen, const char* usual) { return chosen ? chosen : usual; }

int refuse(const char* function, const char* text, const char* key, const char* value = "") {
    logTemplate(function, text, key, value);
    return kInvalid;
}

// The usual wording of each rule checked in place.
const char* absentText(const Field& f) { return pick(f.messages.absent, "{key} not defined"); }

const char* wrongTypeText(const Field& f) {
    if (f.messages.wrongType) return f.messages.wrongType;
    switch (f.rule) {
        case Rule::IntegerOneOf: return "{key} NOT JSON_INTEGER";
        case Rule::NumberOneOf:
        case Rule::NumberBetween: return "{key} NOT JSON_REAL";
        case Rule::Nested: return f.nested->isArray() ? "{key} NOT JSON_ARRAY" : "{key} NOT JSON_OBJECT";
        default: return "{key} NOT JSON_STRING";
    }
}

const char* invalidText(const Field& f) {
    if (f.messages.invalid) return f.messages.invalid;
    switch (f.rule) {
        case Rule::TextPrefixOneOf: return "{key} value {value} INVALID";
        case Rule::EuiOrEmpty: return "{key} value INVALID";
        default: return "{key} value INVALID ({value})";
    }
}

int checkIntegerOneOf(const Field& f, const json_t* value, const char* function) {
    if (!json_is_integer(value)) return refuse(function, wrongTypeText(f), f.messageName());
    json_int_t number = json_integer_value(value);
    for (std::uint8_t i = 0; i < f.choiceCount; ++i) {
        if (number == f.integers[i]) return kValid;
    }
    char shown[32];
    std::snprintf(shown, sizeof shown, "%lld", static_cast<long long>(number));
    return refuse(function, invalidText(f), f.messageName(), shown);
}

int checkNumber(const Field& f, const json_t* value, const char* function) {
    if (!json_is_number(value)) return refuse(function, wrongTypeText(f), f.messageName());
    double number = json_number_value(value);
    bool passes = false;
    if (f.rule == Rule::NumberOneOf) {
        for (std::uint8_t i = 0; i < f.choiceCount; ++i) passes = passes || number == f.numbers[i];
    } else {
        passes = number > f.low && (f.highInclusive ? number <= f.high : number < f.high);
    }
    if (passes) return kValid;
    char shown[64];
    std::snprintf(shown, sizeof shown, "%f", number);
    return refuse(function, invalidText(f), f.messageName(), shown);
}

int checkText(const Field& f, const json_t* value, const char* function) {
    if (!json_is_string(value)) return refuse(function, wrongTypeText(f), f.messageName());
    const char* text = json_string_value(value);
    switch (f.rule) {
        case Rule::TextOneOf: {
            char copied[64] = {};
            std::strncpy(copied, text, f.compared < sizeof copied ? f.compared : sizeof copied - 1);
            for (std::uint8_t i = 0; i < f.choiceCount; ++i) {
                if (std::strcmp(copied, f.texts[i]) == 0) return kValid;
            }
            return refuse(function, invalidText(f), f.messageName(), copied);
        }
        case Rule::TextPrefixOneOf:
            for (std::uint8_t i = 0; i < f.choiceCount; ++i) {
                if (std::strncmp(text, f.texts[i], f.compared) == 0) return kValid;
            }
            return refuse(function, invalidText(f), f.messageName(), text);
        case Rule::EuiOrEmpty:
            if (text[0] == '\0' || (f.textValid != nullptr && f.textValid(text, f))) return kValid;
            return refuse(function, invalidText(f), f.messageName());
        default:
            return kValid;
    }
}

int checkNested(const Field& f, json_t* value, const char* function) {
    const Section& nested = *f.nested;
    if (nested.isArray() ? !json_is_array(value) : !json_is_object(value)) {
        return refuse(function, wrongTypeText(f), f.messageName());
    }
    std::int8_t status = kValid;
    JsonRef defaults(check(nested, value, &status, function));
    if (!defaults) {
        return refuse(function, "FAILED to check {key} JSON object", pick(f.checkLabel, f.key));
    }
    return status;
}

// Inserts the default of every field the input lacks, logging "<name> NULL" for each.
void repairMissing(const Section& section, json_t* input, const json_t* defaults,
                   const char* function) {
    for (std::size_t i = 0; i < section.fieldCount; ++i) {
        const Field& f = section.fields[i];
        if (f.complianceOnly || json_object_get(input, f.key) != nullptr) continue;
        logError(function, "%s NULL", f.repairName());
        json_t* value = json_object_get(defaults, f.key);
        if (value != nullptr) json_object_set_new(input, f.insertedKey(), json_deep_copy(value));
    }
}

// Overwrites in `defaults` the described keys that `stored` also has; nested objects key by key.
bool overlay(const Section& section, json_t* defaults, const json_t* stored) {
    if (!json_is_object(stored)) return false;
    for (std::size_t i = 0; i < section.fieldCount; ++i) {
        const Field& f = section.fields[i];
        json_t* value = json_object_get(stored, f.key);
        if (value == nullptr || f.complianceOnly) continue;
        json_t* current = json_object_get(defaults, f.key);
        if (f.rule == Rule::Nested && !f.nested->isArray() && json_is_object(value) &&
            json_is_object(current)) {
            if (!overlay(*f.nested, current, value)) return false;
        } else if (json_object_set(defaults, f.key, value) != 0) {
            return false;
        }
    }
    return true;
}

void overlayStored(const Section& section, json_t* defaults, const char* function) {
    JsonRef stored(section.storedReader());
    if (!overlay(section, defaults, stored.get())) {
        logError(function, "FAILED to merge factory %s %s with existing keys", section.mergeDocument,
                 section.mergeLabel);
    }
}

const Section* elementsFor(const ArrayShape& shape, std::size_t size) {
    for (int i = 0; i < 2; ++i) {
        if (shape.sizes[i] != 0 && shape.sizes[i] == size) return shape.elements[i];
    }
    return nullptr;
}

int checkElement(const Section& element, const ArrayShape& shape, json_t* array, std::size_t index,
                 const char* function) {
    JsonRef read;
    if (shape.elementReader != nullptr && index < 255) {
        read.reset(shape.elementReader(array, static_cast<std::uint8_t>(index + 1)));
    }
    json_t* value = shape.elementReader != nullptr ? read.get() : json_array_get(array, index);
    if (value == nullptr && shape.absentElementText != nullptr) {
        char shown[24];
        std::snprintf(shown, sizeof shown, "%zu", index + 1);
        logTemplate(function, shape.absentElementText, "", shown);
        return kInvalid;
    }
    if (!json_is_object(value)) {
        logError(function, "%s%u IS NOT Object JSON", shape.elementLabel,
                 static_cast<unsigned>(index + 1));
        return kInvalid;
    }
    std::int8_t status = kValid;
    JsonRef defaults(check(element, value, &status, function));
    return defaults ? status : kInvalid;
}

int checkArray(const Section& section, json_t* array, const char* function) {
    const ArrayShape& shape = *section.array;
    std::size_t size = json_array_size(array);
    const Section* element = elementsFor(shape, size);
    int verdict = kValid;
    if (element == nullptr) {
        char shown[24];
        std::snprintf(shown, sizeof shown, "%zu", size);
        switch (shape.onWrongSize) {
            case WrongSize::Rebuild: {
                logTemplate(function, shape.wrongSizeText, "", shown);
                JsonRef defaults(buildDefaults(section, function));
                if (!defaults || json_array_clear(array) != 0 ||
                    json_array_extend(array, defaults.get()) != 0) {
                    logError(function, "%s NULL", section.nullLabel);
                }
                return kInvalid;
            }
            case WrongSize::Refuse:
                logTemplate(function, shape.wrongSizeText, "", shown);
                verdict = kInvalid;
                break;
            case WrongSize::FillMissing:
                for (std::size_t i = size; i < shape.defaultSize; ++i) {
                    std::snprintf(shown, sizeof shown, "%zu", i + 1);
                    logTemplate(function, shape.missingText, "", shown);
                    json_array_append_new(array, buildDefaults(*shape.elements[0], function));
                }
                size = shape.defaultSize;
                break;
        }
        element = shape.elements[0];
    }
    for (std::size_t i = 0; i < size; ++i) {
        verdict |= checkElement(*element, shape, array, i, function);
    }
    return verdict;
}

}  // namespace

json_t* fieldDefault(const Field& f, const char* function) {
    switch (f.defaultKind) {
        case DefaultKind::Integer: return json_integer(f.defaultInteger);
        case DefaultKind::Real: return json_real(f.defaultReal);
        case DefaultKind::Text: return json_string(f.defaultText);
        case DefaultKind::Provided: return f.provider(function);
        case DefaultKind::Nested:
            return buildDefaults(*f.nested, f.nested->checkName ? f.nested->checkName : function);
    }
    return nullptr;
}

json_t* buildDefaults(const Section& section, const char* function) {
    if (section.isArray()) {
        JsonRef array(json_array());
        const Section& element = *section.array->elements[0];
        for (std::size_t i = 0; array && i < section.array->defaultSize; ++i) {
            json_t* value = buildDefaults(element, element.checkName ? element.checkName : function);
            if (value == nullptr || json_array_append_new(array.get(), value) != 0) return nullptr;
        }
        return array.release();
    }
    JsonRef object(json_object());
    for (std::size_t i = 0; object && i < section.fieldCount; ++i) {
        const Field& f = section.fields[i];
        if (f.complianceOnly) continue;
        json_t* value = fieldDefault(f, function);
        if (value == nullptr || json_object_set_new(object.get(), f.key, value) != 0) return nullptr;
    }
    return object.release();
}

int checkTypedRule(const Field& f, json_t* object) noexcept {
    switch (f.rule) {
        case Rule::Boolean: return json_check_boolean(object, f.key);
        case Rule::IntegerSuperior:
            return json_check_integer_superior(object, f.key, static_cast<std::int32_t>(f.minimum));
        case Rule::IntegerRange:
            return json_check_integer_range(object, f.key, static_cast<std::int32_t>(f.minimum),
                                            static_cast<std::int32_t>(f.maximum));
        case Rule::NumberSuperior:
            return json_check_float_superior(object, f.key, static_cast<float>(f.low));
        case Rule::NumberSuperiorStrict:
            return json_check_float_superior_strict(object, f.key, static_cast<float>(f.low));
        case Rule::Ipv4: return json_check_ipv4(object, f.key);
        case Rule::Ipv4Addressing: return json_check_ipv4_addressing(object, f.key);
        case Rule::IntegerExactly:
            return json_check_integer_default(object, f.key, static_cast<std::int32_t>(f.defaultInteger));
        case Rule::TextExactly: return json_check_string_default(object, f.key, f.defaultText);
        default: return kNotTyped;
    }
}

int checkField(const Field& f, json_t* object, const char* function) noexcept {
    const int typed = checkTypedRule(f, object);
    if (typed != kNotTyped) return typed;
    json_t* value = json_object_get(object, f.key);
    if (value == nullptr) return refuse(function, absentText(f), f.messageName());
    switch (f.rule) {
        case Rule::IntegerOneOf: return checkIntegerOneOf(f, value, function);
        case Rule::NumberOneOf:
        case Rule::NumberBetween: return checkNumber(f, value, function);
        case Rule::Nested: return checkNested(f, value, function);
        default: return checkText(f, value, function);
    }
}

json_t* check(const Section& section, json_t* input, std::int8_t* status,
              const char* enclosingCheck) noexcept {
    const char* function = section.checkName ? section.checkName : enclosingCheck;
    std::int8_t ignored = kValid;
    if (status == nullptr) status = &ignored;
    *status = kValid;
    JsonRef defaults(buildDefaults(section, function));
    if (!defaults) {
        logError(function, "%s NULL", section.nullLabel);
        *status = kInvalid;
        return nullptr;
    }
    if (input == nullptr) {
        *status = kInvalid;
        return defaults.release();
    }
    if (section.isArray() ? !json_is_array(input) : !json_is_object(input)) {
        logError(function, "json %s", section.isArray() ? "NOT JSON_ARRAY" : "NOT JSON_OBJECT");
        *status = kInvalid;
        return defaults.release();
    }
    if (section.isArray()) {
        *status = static_cast<std::int8_t>(checkArray(section, input, function));
        return defaults.release();
    }
    repairMissing(section, input, defaults.get(), function);
    if (section.storedReader != nullptr) overlayStored(section, defaults.get(), function);
    int verdict = kValid;
    for (std::size_t i = 0; i < section.fieldCount; ++i) {
        const Field& f = section.fields[i];
        if (f.complianceOnly) continue;
        const int result = checkField(f, input, function);
        verdict = f.assignsStatus ? result : (verdict | result);
    }
    *status = static_cast<std::int8_t>(verdict);
    return defaults.release();
}

}  // namespace zt4::sections
