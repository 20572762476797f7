// The four configuration documents: where each lives, how it is read, and how it is replaced.
#pragma once

#include <jansson.h>

namespace zt4 {

enum class ConfigDocument { User, FactoryUser, System, FactorySystem };

struct DocumentFile {
    const char* path;           // device path (resolved under ZT4_ROOT at each use)
    const char* temporaryPath;  // where a new version is written before the rename; null: read only
    const char* description;    // "User configuration file", ... (in the version reader's message)
    bool logsMergeSteps;        // the merge announces its two steps ("Updating file ...")
};

const DocumentFile& documentFile(ConfigDocument document) noexcept;

// The stored document: new reference, or null (readJSONFile has logged why).
json_t* readDocument(const char* function, ConfigDocument document) noexcept;

// Replaces a writable document by `json` through its temporary file and a rename: 0 or -1.
int replaceDocument(const char* function, ConfigDocument document, json_t* json) noexcept;

// Merges the top-level members of `json` into the stored document, existing ones first, then
// new ones, replacing the file after each step: the result of the last write, or -1.
int mergeIntoDocument(const char* function, ConfigDocument document, json_t* json) noexcept;

// The syntax version of the stored document through its exported version reader: 0 or 1.
int syntaxVersionOf(ConfigDocument document) noexcept;

}  // namespace zt4
