// Durable replacement of a document: write a temporary file in full, then rename it over the
// document, so that a reader or a power cut sees the old document or the new one, never a part.
#include <unistd.h>

#include <cstdio>
#include <string>

#include "common/api.hpp"
#include "common/path.hpp"
#include "config/document/document.hpp"
#include "zt4config/json.h"

namespace zt4 {

int replaceDocument(const char* function, ConfigDocument document, json_t* json) noexcept {
    const DocumentFile& file = documentFile(document);
    if (file.temporaryPath == nullptr) {
        logError(function, "document is read only");
        return -1;
    }
    return guarded(function, -1, [&] {
        const std::string temporary = resolvePath(file.temporaryPath);
        const std::string target = resolvePath(file.path);
        // A temporary file left by an interrupted write goes first; it may well not exist.
        unlink(temporary.c_str());
        if (json == nullptr) {
            logError(function, "json NULL");
            return -1;
        }
        if (writeJSONFile(temporary.c_str(), json) != 0) {
            logError(function, "FAILED to write in file '%s'", temporary.c_str());
            return -1;
        }
        if (std::rename(temporary.c_str(), target.c_str()) != 0) {
            // Informational on purpose, although the text says it failed.
            logErrorAt(LOG_INFO, function, "FAILED to rename the file '%s'", temporary.c_str());
            return -1;
        }
        logInfo(function, "File '%s' renamed successfully", temporary.c_str());
        sync();
        return 0;
    });
}

}  // namespace zt4
