#include "config/v0/policy.hpp"

#include "common/json_ref.hpp"

namespace zt4::v0 {

json_t* memberUnchanged(const char* function, json_t* json,
                        std::initializer_list<const char*> keys) noexcept {
    if (json == nullptr) {
        logError(function, "json NULL");
        return nullptr;
    }
    json_t* member = json;
    for (const char* key : keys) {
        member = json_object_get(member, key);
        if (member == nullptr) {
            logError(function, "FAILED to read Object %s", key);
            return nullptr;
        }
    }
    return json_incref(member);
}

json_t* storedSection(const char* function, ConfigDocument document,
                      std::initializer_list<const char*> keys) noexcept {
    JsonRef stored(readDocument(function, document));
    if (!stored) {
        logError(function, "zt4 NULL");
        return nullptr;
    }
    return memberUnchanged(function, stored.get(), keys);
}

}  // namespace zt4::v0
