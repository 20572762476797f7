// The engine that walks the translation table, in either direction.
#include "webapi/translation.hpp"

#include <string>

#include "common/json_ref.hpp"
#include "common/log.hpp"

namespace zt4::web {
namespace {

// Where the walk is, for the message that names a member: "Cnl[0].Mode".
struct Trail {
    std::string text;
    void enter(const Path& where) {
        for (std::uint8_t i = 0; i < where.count; ++i) enter(where.steps[i]);
    }
    void enter(const Step& step) {
        if (step.key != nullptr) {
            if (!text.empty()) text += '.';
            text += step.key;
        } else {
            text += '[' + std::to_string(step.index) + ']';
        }
    }
};

json_t* childAt(json_t* parent, const Step& step) {
    if (step.key != nullptr) return json_is_object(parent) ? json_object_get(parent, step.key) : nullptr;
    return json_is_array(parent) ? json_array_get(parent, static_cast<std::size_t>(step.index)) : nullptr;
}

// The value at `where` below `root` (borrowed), or null when a step is missing.
json_t* valueAt(json_t* root, const Path& where) {
    json_t* value = root;
    for (std::uint8_t i = 0; i < where.count && value != nullptr; ++i) value = childAt(value, where.steps[i]);
    return value;
}

// Sets `value` (new reference, always consumed) at `where` below `root`, making the objects on the
// way; an array element on the way must already exist. False when the place cannot be made.
bool place(json_t* root, const Path& where, json_t* value) {
    JsonRef owned(value);
    if (where.count == 0) return false;
    json_t* parent = root;
    for (std::uint8_t i = 0; i + 1 < where.count; ++i) {
        json_t* next = childAt(parent, where.steps[i]);
        if (next == nullptr && where.steps[i].key != nullptr && json_is_object(parent)) {
            next = json_object();
            if (next == nullptr || json_object_set_new(parent, where.steps[i].key, next) != 0) return false;
        }
        if (next == nullptr) return false;
        parent = next;
    }
    const Step& last = where.steps[where.count - 1];
    if (last.key == nullptr || !json_is_object(parent)) return false;
    return json_object_set(parent, last.key, owned.get()) == 0;
}

bool reachesIntoElement(const Path& where) {
    for (std::uint8_t i = 0; i < where.count; ++i) {
        if (where.steps[i].key == nullptr) return true;
    }
    return false;
}

bool hasKind(const json_t* value, Kind kind) {
    switch (kind) {
        case Kind::Integer: return json_is_integer(value);
        case Kind::Number: return json_is_number(value);
        case Kind::Text: return json_is_string(value);
        case Kind::Array: return json_is_array(value);
    }
    return false;
}

class Walk {
public:
    Walk(const char* function, Direction direction) : function_(function), direction_(direction) {}

    // One value of `level`: an object, or the bare value of a level whose only member has no
    // place of its own on this side.
    json_t* value(const Level& level, json_t* source, json_t* section, Trail trail) {
        if (level.count == 1 && to(level.members[0]).count == 0) {
            json_t* found = valueAt(source, from(level.members[0]));
            if (found == nullptr) return fail(trail, "lacks its value");
            return member(level.members[0], found, trail);
        }
        const bool bare = level.count == 1 && from(level.members[0]).count == 0;
        if (!bare && !json_is_object(source)) return fail(trail, "is not an object");
        JsonRef result(json_object());
        if (!result) return fail(trail, "has no room");
        // Members placed inside an array element (the connector's mode on channel 1) go after
        // the members that make the array.
        for (std::size_t i = 0; i < 2 * level.count; ++i) {
            const Member& entry = level.members[i % level.count];
            if (reachesIntoElement(to(entry)) != (i >= level.count)) continue;
            const bool wide = entry.sectionWide;
            json_t* origin = (wide && direction_ == Direction::ToWeb) ? section : source;
            json_t* target = (wide && direction_ == Direction::ToStored) ? section : result.get();
            if (origin == nullptr || target == nullptr) continue;
            json_t* found = valueAt(origin, from(entry));
            if (found == nullptr) continue;  // absent on one side, absent on the other
            Trail inner = trail;
            inner.enter(from(entry));
            JsonRef translated(member(entry, found, inner));
            if (!translated) return nullptr;
            if (!place(target, to(entry), translated.release())) return fail(inner, "has no place");
        }
        return result.release();
    }

    json_t* array(const Level& level, json_t* source, json_t* section, const Trail& trail) {
        JsonRef result(json_array());
        if (!result) return fail(trail, "has no room");
        for (std::size_t i = 0; i < json_array_size(source); ++i) {
            Trail inner = trail;
            inner.enter(Step(static_cast<int>(i)));
            JsonRef element(value(level, json_array_get(source, i), section, inner));
            if (!element || json_array_append(result.get(), element.get()) != 0) return nullptr;
        }
        return result.release();
    }

    json_t* fail(const Trail& trail, const char* why) {
        logError(function_, "member %s cannot be mapped: it %s", trail.text.empty() ? "(document)" : trail.text.c_str(), why);
        return nullptr;
    }

private:
    const Path& from(const Member& entry) const {
        return direction_ == Direction::ToWeb ? entry.stored : entry.web;
    }
    const Path& to(const Member& entry) const {
        return direction_ == Direction::ToWeb ? entry.web : entry.stored;
    }

    json_t* member(const Member& entry, json_t* found, const Trail& trail) {
        if (!hasKind(found, entry.kind)) return fail(trail, "has the wrong type");
        if (entry.kind == Kind::Array) return array(*entry.elements, found, nullptr, trail);
        return json_incref(found);
    }

    const char* function_;
    Direction direction_;
};

Direction opposite(Direction direction) {
    return direction == Direction::ToWeb ? Direction::ToStored : Direction::ToWeb;
}

// The path of the first place where `expected` and `actual` differ ("" when they are equal).
bool firstDifference(const json_t* expected, const json_t* actual, Trail& trail) {
    if (json_equal(const_cast<json_t*>(expected), const_cast<json_t*>(actual))) return false;
    if (json_is_object(expected) && json_is_object(actual)) {
        const char* key;
        json_t* member;
        json_object_foreach(const_cast<json_t*>(expected), key, member) {
            Trail inner = trail;
            inner.enter(Step(key));
            json_t* other = json_object_get(actual, key);
            if (other == nullptr || firstDifference(member, other, inner)) {
                trail = inner;
                return true;
            }
        }
        json_object_foreach(const_cast<json_t*>(actual), key, member) {
            if (json_object_get(expected, key) == nullptr) {
                trail.enter(Step(key));
                return true;
            }
        }
    }
    if (json_is_array(expected) && json_is_array(actual) && json_array_size(expected) == json_array_size(actual)) {
        for (std::size_t i = 0; i < json_array_size(expected); ++i) {
            Trail inner = trail;
            inner.enter(Step(static_cast<int>(i)));
            if (firstDifference(json_array_get(expected, i), json_array_get(actual, i), inner)) {
                trail = inner;
                return true;
            }
        }
    }
    return true;
}

bool sameOrFail(const char* function, const json_t* expected, const json_t* actual, Trail trail) {
    if (!firstDifference(expected, actual, trail)) return true;
    Walk(function, Direction::ToWeb).fail(trail, "does not survive the way back");
    return false;
}

// The section-wide members gathered on the way back must be those of the stored section.
bool sameSectionWide(const char* function, const Level& level, const json_t* stored, const json_t* gathered) {
    for (std::size_t i = 0; i < level.count; ++i) {
        const Member& entry = level.members[i];
        if (!entry.sectionWide || entry.stored.count == 0) continue;
        const char* key = entry.stored.steps[0].key;
        json_t* expected = json_object_get(stored, key);
        json_t* actual = json_object_get(gathered, key);
        if (expected == nullptr && actual == nullptr) continue;
        Trail trail;
        trail.enter(Step(key));
        if (expected == nullptr || actual == nullptr) {
            Walk(function, Direction::ToWeb).fail(trail, "does not survive the way back");
            return false;
        }
        if (!sameOrFail(function, expected, actual, trail)) return false;
    }
    return true;
}

// The translation of every element and their way back; `section` as translateExactly says.
json_t* exactly(const char* function, const Level& level, Direction direction, json_t* source,
                json_t* section, bool isArray) {
    Walk forward(function, direction);
    JsonRef result(isArray ? forward.array(level, source, section, Trail())
                           : forward.value(level, source, section, Trail()));
    if (!result) return nullptr;
    JsonRef gathered(json_object());
    if (!gathered) return nullptr;
    // The way back of a web document reads the section-wide members that it has just gathered.
    json_t* backSection = direction == Direction::ToStored ? section : gathered.get();
    Walk back(function, opposite(direction));
    JsonRef again(isArray ? back.array(level, result.get(), backSection, Trail())
                          : back.value(level, result.get(), backSection, Trail()));
    if (!again || !sameOrFail(function, source, again.get(), Trail())) return nullptr;
    if (direction == Direction::ToWeb && section != nullptr &&
        !sameSectionWide(function, level, section, gathered.get())) {
        return nullptr;
    }
    return result.release();
}

}  // namespace

json_t* translateExactly(const char* function, const Level& level, Direction direction,
                         json_t* source, json_t* section) noexcept {
    try {
        return exactly(function, level, direction, source, section, false);
    } catch (...) {
        logError(function, "out of memory");
        return nullptr;
    }
}

json_t* translateArrayExactly(const char* function, const Level& level, Direction direction,
                              json_t* source, json_t* section) noexcept {
    if (!json_is_array(source)) {
        logError(function, "member (document) cannot be mapped: it is not an array");
        return nullptr;
    }
    try {
        return exactly(function, level, direction, source, section, true);
    } catch (...) {
        logError(function, "out of memory");
        return nullptr;
    }
}

}  // namespace zt4::web
