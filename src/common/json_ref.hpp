// One owner for one Jansson reference: released exactly once, whatever path the code takes.
#pragma once

#include <jansson.h>

#include <utility>

namespace zt4 {

class JsonRef {
public:
    JsonRef() noexcept = default;
    // Takes over a reference the caller owns (a new reference from Jansson or from the library).
    explicit JsonRef(json_t* owned) noexcept : value_(owned) {}
    // Takes a reference of its own to a borrowed value.
    static JsonRef borrow(json_t* borrowed) noexcept { return JsonRef(json_incref(borrowed)); }

    JsonRef(const JsonRef&) = delete;
    JsonRef& operator=(const JsonRef&) = delete;
    JsonRef(JsonRef&& other) noexcept : value_(other.release()) {}
    JsonRef& operator=(JsonRef&& other) noexcept {
        if (this != &other) reset(other.release());
        return *this;
    }
    ~JsonRef() { json_decref(value_); }

    json_t* get() const noexcept { return value_; }
    explicit operator bool() const noexcept { return value_ != nullptr; }
    // Hands the reference over to the caller (for a function that returns a new reference).
    json_t* release() noexcept { return std::exchange(value_, nullptr); }
    void reset(json_t* owned = nullptr) noexcept { json_decref(std::exchange(value_, owned)); }

private:
    json_t* value_ = nullptr;
};

}  // namespace zt4
