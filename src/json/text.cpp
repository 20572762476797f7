// Documents as text: parsing a string and logging a document.
#include <cstdlib>
#include <cstring>

#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "json/flags.hpp"
#include "zt4config/json.h"

json_t* JSONify(const char* text) noexcept {
    if (text == nullptr) {
        zt4::logError(__func__, "root NULL");
        return nullptr;
    }
    json_error_t error;
    json_t* value = json_loadb(text, std::strlen(text), zt4::kLoadFlags, &error);
    if (value == nullptr) {
        zt4::logErrorAt(LOG_WARNING, __func__,
                        "json_loads on line %d: text: %s. source: %s. column: %d. position: %d",
                        error.line, error.text, error.source, error.column, error.position);
    }
    return value;
}

void printJSON(json_t* json, const char* label) noexcept {
    if (json == nullptr) {
        zt4::logErrorAt(LOG_INFO, __func__, "json NULL");
        return;
    }
    // Called on hot paths: below the trace level nothing is copied or formatted.
    if (zt4::debugLevel() <= 2) return;
    // The copy keeps the caller's document out of the dumper's way.
    zt4::JsonRef copy(json_deep_copy(json));
    if (!copy) {
        zt4::logError(__func__, "jsonCopy NULL");
        return;
    }
    char* text = json_dumps(copy.get(), 0);
    if (text == nullptr) {
        zt4::logErrorAt(LOG_INFO, __func__, "str NULL");
        return;
    }
    zt4::logLine(LOG_INFO, "%s%s %s", label ? label : "", label ? ":" : "", text);
    std::free(text);
}
