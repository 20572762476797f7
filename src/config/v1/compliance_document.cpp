// A new user document as a whole, syntax version 1: compliance section by section, and the
// filtered copy that holds only the known keys.
#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "config/v1/compliance_rules.hpp"
#include "config/v1/document_sections.hpp"
#include "config/v1/filter_rules.hpp"
#include "zt4config/compliance.h"

using zt4::JsonRef;
using zt4::v1::kDocumentSections;

int checkComplianceUserConfigFileSyntaxVersion1(json_t* json, uint8_t* section) noexcept {
    if (json == nullptr) {
        zt4::logError(__func__, "json NULL");
        return -1;
    }
    for (const zt4::v1::DocumentSection& entry : kDocumentSections) {
        // A missing section reaches its rule as null, which refuses it.
        if (zt4::v1::comply(*entry.section, json_object_get(json, entry.key), nullptr) == 0) continue;
        zt4::logError(__func__, "Failed to check JSON section %s", entry.key);
        if (section != nullptr) *section = entry.number;
        return -1;
    }
    return 0;
}

int filterUserConfigFileSyntaxVersion1(json_t* source, json_t* destination) noexcept {
    if (source == nullptr || destination == nullptr) {
        zt4::logError(__func__, source == nullptr ? "json NULL" : "json Copy NULL");
        return -1;
    }
    // Every section is filtered into a copy of its own first: the destination receives all eight
    // or nothing.
    JsonRef copies[8];
    std::size_t index = 0;
    for (const zt4::v1::DocumentSection& entry : kDocumentSections) {
        JsonRef copy(json_object());
        if (!copy) {
            zt4::logError(__func__, "FAILED to create object json json%sCopy", entry.key);
            return -1;
        }
        if (zt4::v1::filterObject(*entry.section, json_object_get(source, entry.key), copy.get(), nullptr) != 0) {
            zt4::logError(__func__, "Failed to filter JSON section %s", entry.key);
            return -1;
        }
        copies[index++] = std::move(copy);
    }
    index = 0;
    for (const zt4::v1::DocumentSection& entry : kDocumentSections) {
        json_object_set(destination, entry.key, copies[index++].get());
    }
    return 0;
}
