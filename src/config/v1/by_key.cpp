#include "config/v1/by_key.hpp"

#include <cstring>

#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "config/v1/section_defaults.hpp"
#include "zt4config/config.h"
#include "zt4config/json.h"

namespace zt4::v1 {

bool isArrayKey(const char* key) noexcept {
    for (const char* arrayKey : {"Connectors", "Channel", "CurrentTransformer", "Phase"}) {
        if (std::strcmp(key, arrayKey) == 0) return true;
    }
    return false;
}

namespace {

// Member `key` of `json` when it has the type its key calls for: new reference or null, quietly
// (each reader says in its own words what is missing).
json_t* sectionOf(json_t* json, const char* key) noexcept {
    json_t* member = json_object_get(json, key);
    const bool wanted = isArrayKey(key) ? json_is_array(member) : json_is_object(member);
    return wanted ? json_incref(member) : nullptr;
}

// A section of a stored document. A missing section is logged, then replaced by the entry's
// defaults when `defaults` knows the key, else null.
json_t* storedSection(const char* function, json_t* (*readDocument)(), const char* documentNull,
                      const char* key, const SectionDefaults* (*defaults)(const char*)) noexcept {
    if (key == nullptr) {
        logError(function, "key NULL");
        return nullptr;
    }
    JsonRef document(readDocument());
    if (!document) {
        logError(function, "%s", documentNull);
        return nullptr;
    }
    json_t* section = sectionOf(document.get(), key);
    if (section != nullptr) return section;
    logError(function, "FAILED to read Object %s", key);
    return defaults ? sectionDefaults(defaults(key)) : nullptr;
}

// The "Expert" section of the user document, as a document of its own.
json_t* readUserExpert() noexcept {
    JsonRef user(readJSONZT4ConfigFile());
    json_t* expert = json_object_get(json_object_get(user.get(), "ElectricalConfiguration"), "Expert");
    return json_is_object(expert) ? json_incref(expert) : nullptr;
}

}  // namespace
}  // namespace zt4::v1

json_t* readJSONZT4ByKeyObject(json_t* json, const char* key) noexcept {
    if (key == nullptr) {
        zt4::logError(__func__, "key NULL");
        return nullptr;
    }
    const bool array = zt4::v1::isArrayKey(key);
    json_t* member = array ? readJSONArray(json, key) : readJSONObject(json, key);
    if (member == nullptr) {
        zt4::logError(__func__, array ? "FAILED to read Array JSON %s" : "FAILED to read Object JSON %s",
                      key);
    }
    return member;
}

json_t* readJSONZT4UserConfigByKeyObject(const char* key) noexcept {
    return zt4::v1::storedSection(__func__, readJSONZT4ConfigFile, "zt4 NULL", key,
                                  zt4::v1::findUserSectionDefaults);
}

json_t* readJSONZT4UserConfigExpertByKeyObject(const char* key) noexcept {
    return zt4::v1::storedSection(__func__, zt4::v1::readUserExpert, "expert NULL", key,
                                  zt4::v1::findUserExpertSectionDefaults);
}

json_t* readJSONZT4SystemByKeyObject(const char* key) noexcept {
    return zt4::v1::storedSection(__func__, readJSONZT4SystemFile, "zt4 NULL", key, nullptr);
}

json_t* readJSONZT4FactorySystemByKeyObject(const char* key) noexcept {
    return zt4::v1::storedSection(__func__, readJSONZT4FactorySystemFile, "zt4systemfactory NULL",
                                  key, nullptr);
}

json_t* readJSONZT4ChannelsSyntaxVersion1(json_t* jsonConnector) noexcept {
    if (jsonConnector == nullptr) {
        zt4::logError(__func__, "jsonConnector NULL");
        return nullptr;
    }
    json_t* channels = zt4::v1::sectionOf(jsonConnector, "Channel");
    if (channels == nullptr) zt4::logError(__func__, "FAILED to read Array JSON Cnl");
    return channels;
}
