// How the record readers take members of a validated document, and the mode families they test.
#pragma once

#include <jansson.h>

#include <cstdint>

namespace zt4::record {

// Three-phase without balance: one channel per phase, each measured on its own.
inline bool isThreephaseUnbalanced(unsigned mode) noexcept { return mode == 2 || mode == 4 || mode == 6; }
// One measured channel: monophase, or a balanced three-phase that one phase stands for.
inline bool isSingleMeasured(unsigned mode) noexcept { return mode == 1 || mode == 3 || mode == 5; }

// Members taken without checks: a missing one (or one of another type) reads as 0.
inline std::uint8_t byteOf(json_t* object, const char* key) noexcept {
    return static_cast<std::uint8_t>(json_integer_value(json_object_get(object, key)));
}
inline float numberOf(json_t* object, const char* key) noexcept {
    return static_cast<float>(json_number_value(json_object_get(object, key)));
}

}  // namespace zt4::record
