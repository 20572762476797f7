// Whole-document compliance, syntax version 1: every key a section describes must be present
// (first pass, in order), then pass its rule (second pass, in order); the first fault ends the
// check. Nothing is defaulted or repaired. Messages are logged under `function`.
#pragma once

#include <jansson.h>

#include "config/descriptions/section.hpp"

namespace zt4::v1 {

// Compliance of an object section: 0 or -1.
int comply(const sections::Section& section, json_t* value, const char* function) noexcept;

// Compliance of the array member `key` of `parent` (its description), given as `array`: 0 or -1.
int complyArray(const sections::Section& parent, const char* key, json_t* array,
                const char* function) noexcept;

}  // namespace zt4::v1
