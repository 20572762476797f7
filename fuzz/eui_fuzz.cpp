// Identifiers typed by people or read from files: checkEUIformat over a fuzzed text, for the two
// shapes the library checks (EUI and key) and for shapes picked by the first byte.
#include <cstdlib>
#include <cstring>
#include <vector>

#include "support.hpp"
#include "zt4config.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const zt4fuzz::Split input = zt4fuzz::split(data, size);
    struct Shape {
        size_t length;
        int groups;
    };
    const Shape shapes[] = {{ZT4_EUI_LENGTH, ZT4_EUI_GROUPS},
                            {ZT4_KEY_LENGTH, ZT4_KEY_GROUPS},
                            {static_cast<size_t>(input.selector >> 2), static_cast<int>(input.selector & 0x3F) - 8}};
    for (const Shape& shape : shapes) {
        // An exact-size copy, so that a read or write past the text's end is caught.
        std::vector<char> text(input.data, input.data + input.size);
        text.push_back('\0');
        const int result = checkEUIformat(text.data(), shape.length, shape.groups);
        if (result != 0 && result != -1) std::abort();
        if (result == 0 && std::strlen(text.data()) != shape.length) std::abort();
    }
    return 0;
}
