// The write steps shared by the user configuration's top-level sections: reshape a copy, check
// it, refuse it whole when invalid, merge it into the stored section and the stored section into
// the document.
#pragma once

#include <jansson.h>

#include <cstdint>

namespace zt4::v1 {

struct SectionWriter {
    const char* section;       // "Web": the document's member
    const char* rootLabel;     // "jsonWeb NULL" when the root cannot be built
    const char* checkLabel;    // "FAILED to check ConfigWeb JSON object"
    const char* invalidLabel;  // "INVALID Configuration Web"
    const char* readLabel;     // "FAILED to read web config"
    json_t* (*check)(json_t* section, std::int8_t* status) noexcept;
    json_t* (*reader)() noexcept;
    // The copy that is checked and stored, built from the caller's section (legacy keys renamed,
    // flat forms reshaped); null after logging. Null hook: a plain deep copy.
    json_t* (*reshape)(const json_t* input, const char* function);
    // Called with the merged section before the document is written (may be null).
    void (*beforeWrite)(const json_t* merged, const char* function);
};

int writeSection(const SectionWriter& writer, json_t* input, const char* function) noexcept;

// Merges `update` into `stored`: existing keys replaced, then missing keys added; false after
// logging "FAILED to update config <label> with existing|new keys".
bool mergeInto(json_t* stored, json_t* update, const char* label, const char* function);

// Moves member `from` to `to` when present.
void renameKey(json_t* object, const char* from, const char* to);

}  // namespace zt4::v1
