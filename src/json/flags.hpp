// The flag words every document goes through. The load flags are the dump flags less
// JSON_PRESERVE_ORDER: JSON_ENSURE_ASCII means nothing to the decoder and is passed all the same.
#pragma once

#include <jansson.h>

namespace zt4 {

// JSON_REJECT_DUPLICATES | JSON_ALLOW_NUL | JSON_ENSURE_ASCII
constexpr size_t kLoadFlags = 0x51;
// JSON_PRESERVE_ORDER | JSON_ENSURE_ASCII | JSON_INDENT(17): the 17-space indent is deliberate.
constexpr size_t kDumpFlags = 0x151;

static_assert(kLoadFlags == (JSON_REJECT_DUPLICATES | JSON_ALLOW_NUL | JSON_ENSURE_ASCII), "load flags");
static_assert(kDumpFlags == (JSON_PRESERVE_ORDER | JSON_ENSURE_ASCII | JSON_INDENT(17)), "dump flags");

}  // namespace zt4
