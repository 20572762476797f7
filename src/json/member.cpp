// Members of an object, fetched by type with a reference of the caller's own.
#include "common/log.hpp"
#include "json/arguments.hpp"
#include "zt4config/json.h"

namespace {

// A member of another type than wanted is not an error worth a message: the caller decides.
json_t* memberOfType(const char* function, json_t* json, const char* key, json_type type,
                     const char* absentMessage) {
    if (!zt4::jsonAndKeyGiven(function, json, key)) return nullptr;
    json_t* member = json_object_get(json, key);
    if (member == nullptr) {
        zt4::logError(function, "%s", absentMessage);
        return nullptr;
    }
    if (json_typeof(member) != type) return nullptr;
    return json_incref(member);
}

}  // namespace

json_t* readJSONObject(json_t* json, const char* key) noexcept {
    return memberOfType(__func__, json, key, JSON_OBJECT, "jsonObject NULL");
}

json_t* readJSONArray(json_t* json, const char* key) noexcept {
    return memberOfType(__func__, json, key, JSON_ARRAY, "jsonArray NULL");
}
