// Which identifier format a radio value has, and its check.
#pragma once

#include "zt4config/radio.h"

namespace zt4 {

enum class RadioIdentifier {
    None,  // free text
    Eui,   // 8 groups, 23 characters
    Key,   // 16 groups, 47 characters
};

// checkEUIformat with the length and groups of `kind`; 0 for free text.
inline int checkRadioIdentifier(char* text, RadioIdentifier kind) noexcept {
    switch (kind) {
        case RadioIdentifier::Eui: return checkEUIformat(text, ZT4_EUI_LENGTH, ZT4_EUI_GROUPS);
        case RadioIdentifier::Key: return checkEUIformat(text, ZT4_KEY_LENGTH, ZT4_KEY_GROUPS);
        case RadioIdentifier::None: break;
    }
    return 0;
}

}  // namespace zt4
