// Filtering of a user document, syntax version 1: a copy that holds only the keys the section
// descriptions know, plain keys first in description order, then the nested objects and arrays.
// Values are shared with the source, never checked or changed; a key the source lacks is not
// copied, but a missing nested object or array fails the filter.
#pragma once

#include <jansson.h>

#include "config/descriptions/section.hpp"

namespace zt4::v1 {

// Fills `destination` (an object the caller made) from the object `source`: 0 or -1.
int filterObject(const sections::Section& section, json_t* source, json_t* destination,
                 const char* function) noexcept;

// The part of `section` that a filter shared with another level copies (the keys common to both
// channel kinds, those of "Sag" and "Swell"), logged under `function`: 0 or -1.
int filterSharedPart(const sections::Section& section, json_t* source, json_t* destination,
                     const char* function) noexcept;

// Fills `destination` (an array the caller made) from the array member `key` of a `parent`
// object, given as `source`: 0 or -1.
int filterArray(const sections::Section& parent, const char* key, json_t* source,
                json_t* destination, const char* function) noexcept;

}  // namespace zt4::v1
