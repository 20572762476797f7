// The web interface's connector and expert documents and the stored electrical section, one
// table of members that both directions read.
//
// A member says where a value lives in the stored shape and where in the web shape, and of which
// JSON type it is. Reading the table from left to right gives the web document; from right to
// left the stored one. A translation is accepted only when translating its result back gives the
// input again, member for member: a member that the table does not know, a value of the wrong
// type or two connectors that disagree on a value kept once in the stored section cannot be
// mapped, and the whole translation fails with the member named in the log.
#pragma once

#include <jansson.h>

#include <cstddef>
#include <cstdint>

namespace zt4::web {

// One step of a path: a member name, or (without a name) an array element.
struct Step {
    constexpr Step() = default;
    constexpr Step(const char* name) : key(name) {}  // NOLINT: paths read as lists of names
    constexpr Step(int element) : index(element) {}  // NOLINT
    const char* key = nullptr;
    int index = -1;
};

// Where a value lives below its level's object: no step at all is the element itself.
struct Path {
    Step steps[3];
    std::uint8_t count = 0;
};

template <class... Steps>
constexpr Path path(Steps... steps) {
    return Path{{Step(steps)...}, static_cast<std::uint8_t>(sizeof...(Steps))};
}

enum class Kind : std::uint8_t {
    Integer,  // a JSON integer
    Number,   // an integer or a real, kept as it is
    Text,     // a string
    Array,    // an array whose elements translate by `elements`
};

struct Level;

struct Member {
    Path stored;
    Path web;
    Kind kind;
    const Level* elements = nullptr;  // Kind::Array only
    // The stored value sits in the stored section itself, not in this level's element: every
    // element of the web shape repeats it (the voltage transformer on each connector).
    bool sectionWide = false;
};

struct Level {
    const Member* members;
    std::size_t count;
};

// The levels of the two documents (translation_table.cpp).
extern const Level kConnectorLevel;  // one connector of "Connectors"
extern const Level kExpertLevel;     // the "Expert" section

enum class Direction : std::uint8_t { ToWeb, ToStored };

// Translates `source` (one value of `level`) in `direction`, then proves that the way back gives
// `source` again: new reference, or null after "error.[function]: member <path> cannot be mapped:
// ..." naming the first member that has no place or does not survive the way back. For ToWeb,
// `section` is the stored section that section-wide members are read from (may be null when the
// level has none); for ToStored it receives them.
json_t* translateExactly(const char* function, const Level& level, Direction direction,
                         json_t* source, json_t* section) noexcept;

// An array of elements of `level`, each translated exactly: new reference, or null.
json_t* translateArrayExactly(const char* function, const Level& level, Direction direction,
                              json_t* source, json_t* section) noexcept;

}  // namespace zt4::web
