// The identifier format of the radio: groups of two characters separated by colons, such as the
// device EUI 70:B3:D5:7E:D0:01:23:45 (8 groups) or the application key (16 groups). Only the
// length and the colon spacing are checked, not the digits.
#include <cctype>
#include <cstring>

#include "common/log.hpp"
#include "zt4config/radio.h"

namespace {

constexpr std::ptrdiff_t kColonSpacing = 3;

// The number of colons, after the first, that lie exactly kColonSpacing after the previous one;
// -1 when there is no colon or two successive colons are not that far apart.
int countSpacedColons(const char* text) {
    const char* colon = std::strchr(text, ':');
    if (colon == nullptr) return -1;
    int count = 0;
    for (const char* next = std::strchr(colon + 1, ':'); next != nullptr;
         next = std::strchr(colon + 1, ':')) {
        if (next - colon != kColonSpacing) return -1;
        ++count;
        colon = next;
    }
    return count;
}

}  // namespace

// Numbers that tell, in the log, which test of the identifier failed.
constexpr int kPlaceLength = 43;
constexpr int kPlaceGroups = 49;

extern "C" int checkEUIformat(char* text, size_t length, int groups) noexcept {
    if (text == nullptr) {
        zt4::logLine(LOG_ERR, "error: [%s] parameter is NULL", __func__);
        return -1;
    }
    if (zt4::debugLevel() > 1) zt4::logInfo(__func__, "Key '%s'", text);
    size_t actual = std::strlen(text);
    if (actual > 0 && std::isspace(static_cast<unsigned char>(text[actual - 1]))) {
        text[--actual] = '\0';
    }
    if (actual != length) {
        zt4::logLine(LOG_ERR, "error.[%s].%d size wrong %zu '%s' (exp. %zu) bytes", __func__,
                     kPlaceLength, actual, text, length);
        return -1;
    }
    int spaced = countSpacedColons(text);
    if (spaced < 0 || spaced != groups - 2) {
        zt4::logLine(LOG_ERR, "error.[%s].%d format wrong '%s' (exp. %d groups)", __func__,
                     kPlaceGroups, text, groups);
        return -1;
    }
    return 0;
}
