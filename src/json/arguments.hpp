// The argument check every member access starts with.
#pragma once

#include <jansson.h>

#include "common/log.hpp"

namespace zt4 {

// False, after "json NULL" or "key NULL" under `function`, when either argument is missing.
inline bool jsonAndKeyGiven(const char* function, const json_t* json, const char* key) noexcept {
    if (json == nullptr) {
        logError(function, "json NULL");
        return false;
    }
    if (key == nullptr) {
        logError(function, "key NULL");
        return false;
    }
    return true;
}

}  // namespace zt4
