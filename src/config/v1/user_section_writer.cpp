#include "config/v1/user_section_writer.hpp"

#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "zt4config/config.h"

namespace zt4::v1 {

bool mergeInto(json_t* stored, json_t* update, const char* label, const char* function) {
    if (json_object_update_existing(stored, update) != 0) {
        logError(function, "FAILED to update config %s with existing keys", label);
        return false;
    }
    if (json_object_update_missing(stored, update) != 0) {
        logError(function, "FAILED to update config %s with new keys", label);
        return false;
    }
    return true;
}

void renameKey(json_t* object, const char* from, const char* to) {
    json_t* value = json_object_get(object, from);
    if (value == nullptr) return;
    json_object_set(object, to, value);
    json_object_del(object, from);
}

int writeSection(const SectionWriter& writer, json_t* input, const char* function) noexcept {
    if (input == nullptr) {
        logError(function, "json NULL");
        return -1;
    }
    JsonRef root(json_object());
    if (!root) {
        logError(function, "%s NULL", writer.rootLabel);
        return -1;
    }
    JsonRef copy(writer.reshape ? writer.reshape(input, function) : json_deep_copy(input));
    if (!copy) {
        logError(function, "jsonCopy NULL");
        return -1;
    }
    std::int8_t status = 0;
    JsonRef defaults(writer.check(copy.get(), &status));
    if (!defaults) {
        logError(function, "FAILED to check %s JSON object", writer.checkLabel);
        return -1;
    }
    if (status != 0) {
        logError(function, "INVALID Configuration %s", writer.invalidLabel);
        return -1;
    }
    JsonRef stored(writer.reader());
    if (!stored) {
        logError(function, "FAILED to read %s", writer.readLabel);
        stored = std::move(copy);
    } else if (!mergeInto(stored.get(), copy.get(), writer.section, function)) {
        return -1;
    }
    if (writer.beforeWrite) writer.beforeWrite(stored.get(), function);
    if (json_object_set(root.get(), writer.section, stored.get()) != 0) {
        logError(function, "%s NULL", writer.rootLabel);
        return -1;
    }
    return updateJSONZT4UserConfigFile(root.get());
}

}  // namespace zt4::v1
