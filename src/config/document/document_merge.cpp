// Merging a partial document into a stored one, by top-level member.
#include <string>

#include "common/api.hpp"
#include "common/json_ref.hpp"
#include "common/path.hpp"
#include "config/document/document.hpp"
#include "zt4config/config.h"

namespace zt4 {
namespace {

// The stored document is written back through its exported writer, as any caller would.
int writeBack(ConfigDocument document, json_t* json) {
    return document == ConfigDocument::User ? writeJSONZT4ConfigFile(json)
                                            : writeJSONZT4SystemFile(json);
}

}  // namespace

int mergeIntoDocument(const char* function, ConfigDocument document, json_t* json) noexcept {
    if (json == nullptr) {
        logError(function, "json NULL");
        return -1;
    }
    return guarded(function, -1, [&] {
        const DocumentFile& file = documentFile(document);
        const std::string path = resolvePath(file.path);
        JsonRef stored(readDocument(function, document));
        if (!stored) {
            logError(function, "FAILED to read in file '%s'", path.c_str());
            return -1;
        }
        int result = -1;
        // Existing members first, then the ones only `json` has; the file is rewritten after each
        // step so that a step that fails does not undo the other.
        if (file.logsMergeSteps) logLine(LOG_ERR, "Updating file '%s' with existing keys", path.c_str());
        if (json_object_update_existing(stored.get(), json) == 0) {
            result = writeBack(document, stored.get());
        } else {
            logError(function, "FAILED to update file '%s' with existing keys", path.c_str());
        }
        if (file.logsMergeSteps) logLine(LOG_ERR, "Updating file '%s' with new keys", path.c_str());
        if (json_object_update_missing(stored.get(), json) == 0) {
            result = writeBack(document, stored.get());
        } else {
            logError(function, "FAILED to update file '%s' with new keys", path.c_str());
        }
        return result;
    });
}

}  // namespace zt4
