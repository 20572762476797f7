// One connector of a document's connectors array, by number (1 to 6).
#pragma once

#include <jansson.h>

#include <cstdint>

namespace zt4 {

// Reads the connectors array with `readConnectors` (a facade reader) and returns connector `id`:
// new reference, or null after the message under `function`'s name.
json_t* connectorById(const char* function, uint8_t id, json_t* (*readConnectors)()) noexcept;

}  // namespace zt4
