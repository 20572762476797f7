// Which section check gives the defaults of a user section that the stored document lacks.
// A check called with no section returns a new object holding the section's defaults.
#pragma once

#include <jansson.h>

#include <cstdint>

namespace zt4::v1 {

using SectionCheck = json_t* (*)(json_t* section, int8_t* status);

struct SectionDefaults {
    const char* key;
    SectionCheck check;  // null until the section's check is plugged in
};

// The entry of a top-level user section, or null for a key without defaults.
const SectionDefaults* findUserSectionDefaults(const char* key) noexcept;
// The entry of a member of the user "Expert" section, or null for a key without defaults.
const SectionDefaults* findUserExpertSectionDefaults(const char* key) noexcept;

// The defaults of an entry (new reference), or null when there is no entry or no check yet.
json_t* sectionDefaults(const SectionDefaults* entry) noexcept;

}  // namespace zt4::v1
