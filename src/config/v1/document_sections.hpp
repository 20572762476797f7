// How a complete user document (syntax version 1) is laid out: its top-level sections in order,
// with the number each is reported under.
#pragma once

#include <cstddef>
#include <cstdint>

#include "config/descriptions/section.hpp"

namespace zt4::v1 {

struct DocumentSection {
    const char* key;                    // "Web"
    std::uint8_t number;                // reported when the section fails (1 to 8)
    const sections::Section* section;
};

extern const DocumentSection kDocumentSections[8];

// The "Syntax" object, which only a whole document has.
extern const sections::Section kSyntaxSection;

}  // namespace zt4::v1
