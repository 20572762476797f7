// The generic steps that every section description drives: defaults, repair of missing keys,
// the rules in table order, and the combined status.
#pragma once

#include <jansson.h>

#include <cstdint>

#include "config/descriptions/section.hpp"

namespace zt4::sections {

constexpr std::int8_t kValid = 0;
constexpr std::int8_t kInvalid = -1;

// A new value holding every default of the section (nested levels included), or null after
// logging "<nullLabel> NULL" under `function`.
json_t* buildDefaults(const Section& section, const char* function);

// The section check. Builds the defaults; with no input sets `*status` to -1 and returns them.
// Otherwise repairs the keys the input lacks (logging each, inserting the default into the input
// itself), overlays the returned defaults with the stored section for top-level sections, and
// runs every rule in table order, OR-ing the results into `*status`. Returns the (overlaid)
// defaults as a new reference, or null when they cannot be built. `enclosingCheck` names the
// messages of descriptions that have no check name of their own.
json_t* check(const Section& section, json_t* input, std::int8_t* status,
              const char* enclosingCheck = nullptr) noexcept;

// The rules that one of the exported json_check_* functions decides (they log under their own
// names): that function's result, 0 or -1; kNotTyped for the rules a caller checks in place
// with its own messages.
constexpr int kNotTyped = 1;
int checkTypedRule(const Field& field, json_t* object) noexcept;

// One field's rule against `object` (already repaired): 0 or -1, logged under `function`.
int checkField(const Field& field, json_t* object, const char* function) noexcept;

// The default of one field as a new reference (null only when out of memory).
json_t* fieldDefault(const Field& field, const char* function);

}  // namespace zt4::sections
