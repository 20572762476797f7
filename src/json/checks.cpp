// The typed key checks. Each one looks at a single member, logs under its own name what is wrong
// and never touches the object.
#include "zt4config/json_checks.h"

#include <arpa/inet.h>

#include <cstring>

#include "common/log.hpp"
#include "json/arguments.hpp"

namespace {

constexpr int kPassed = 0;
constexpr int kFailed = -1;
// Stored strings are compared on this many leading characters.
constexpr size_t kComparedLength = 31;

// The member to check, or null after logging why there is none.
const json_t* member(const char* function, const json_t* json, const char* key) {
    if (!zt4::jsonAndKeyGiven(function, json, key)) return nullptr;
    const json_t* value = json_object_get(json, key);
    if (value == nullptr) zt4::logError(function, "%s NULL", key);
    return value;
}

// The integer member, or false after logging.
bool integerMember(const char* function, const json_t* json, const char* key, json_int_t& out) {
    const json_t* value = member(function, json, key);
    if (value == nullptr) return false;
    if (!json_is_integer(value)) {
        zt4::logError(function, "%s NOT JSON_INTEGER", key);
        return false;
    }
    out = json_integer_value(value);
    return true;
}

int integerVerdict(const char* function, const char* key, json_int_t value, bool passes) {
    if (passes) return kPassed;
    zt4::logError(function, "%s value INVALID (%lld)", key, static_cast<long long>(value));
    return kFailed;
}

// The numeric member (real or integer) as a double, or false after logging.
bool numberMember(const char* function, const json_t* json, const char* key, double& out) {
    const json_t* value = member(function, json, key);
    if (value == nullptr) return false;
    if (!json_is_number(value)) {
        zt4::logError(function, "%s NOT JSON_REAL", key);
        return false;
    }
    out = json_number_value(value);
    return true;
}

int numberVerdict(const char* function, const char* key, double value, bool passes) {
    if (passes) return kPassed;
    zt4::logError(function, "%s value INVALID (%f)", key, value);
    return kFailed;
}

// The string member's text, or null after logging.
const char* stringMember(const char* function, const json_t* json, const char* key) {
    const json_t* value = member(function, json, key);
    if (value == nullptr) return nullptr;
    if (!json_is_string(value)) {
        zt4::logError(function, "%s NOT JSON_STRING", key);
        return nullptr;
    }
    return json_string_value(value);
}

}  // namespace

extern "C" {

int json_check_integer_default(const json_t* json, const char* key, int32_t expected) noexcept {
    json_int_t value = 0;
    if (!integerMember(__func__, json, key, value)) return kFailed;
    return integerVerdict(__func__, key, value, value == expected);
}

int json_check_integer_superior(const json_t* json, const char* key, int32_t minimum) noexcept {
    json_int_t value = 0;
    if (!integerMember(__func__, json, key, value)) return kFailed;
    return integerVerdict(__func__, key, value, value >= minimum);
}

int json_check_integer_range(const json_t* json, const char* key, int32_t minimum,
                             int32_t maximum) noexcept {
    json_int_t value = 0;
    if (!integerMember(__func__, json, key, value)) return kFailed;
    return integerVerdict(__func__, key, value, value >= minimum && value <= maximum);
}

int json_check_float_superior(const json_t* json, const char* key, float minimum) noexcept {
    double value = 0.0;
    if (!numberMember(__func__, json, key, value)) return kFailed;
    return numberVerdict(__func__, key, value, value >= static_cast<double>(minimum));
}

int json_check_float_superior_strict(const json_t* json, const char* key, float minimum) noexcept {
    double value = 0.0;
    if (!numberMember(__func__, json, key, value)) return kFailed;
    return numberVerdict(__func__, key, value, value > static_cast<double>(minimum));
}

int json_check_boolean(const json_t* json, const char* key) noexcept {
    json_int_t value = 0;
    if (!integerMember(__func__, json, key, value)) return kFailed;
    return integerVerdict(__func__, key, value, value == 0 || value == 1);
}

int json_check_string_default(const json_t* json, const char* key, const char* expected) noexcept {
    const char* text = stringMember(__func__, json, key);
    if (text == nullptr) return kFailed;
    char copied[kComparedLength + 1] = {};
    std::strncpy(copied, text, kComparedLength);
    if (expected != nullptr && std::strcmp(copied, expected) == 0) return kPassed;
    zt4::logError(__func__, "%s value INVALID (%s)", key, copied);
    return kFailed;
}

int json_check_ipv4(const json_t* json, const char* key) noexcept {
    const char* text = stringMember(__func__, json, key);
    if (text == nullptr) return kFailed;
    in_addr address{};
    if (inet_pton(AF_INET, text, &address) == 1) return kPassed;
    zt4::logError(__func__, "%s value INVALID", key);
    return kFailed;
}

int json_check_ipv4_addressing(const json_t* json, const char* key) noexcept {
    const char* text = stringMember(__func__, json, key);
    if (text == nullptr) return kFailed;
    if (std::strncmp(text, "Static", 6) == 0 || std::strncmp(text, "DHCP", 4) == 0) return kPassed;
    zt4::logError(__func__, "%s value %s INVALID", key, text);
    return kFailed;
}

}  // extern "C"
