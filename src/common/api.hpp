// The boundary between the C ABI and the C++ inside: no exception ever crosses it.
#pragma once

#include <exception>
#include <new>

#include "common/log.hpp"

namespace zt4 {

// Runs `body` and returns its result; an exception (in practice only std::bad_alloc) is logged
// under the exported function's name and turned into `onFailure`.
template <class Result, class Body>
Result guarded(const char* function, Result onFailure, Body&& body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        logError(function, "out of memory");
    } catch (const std::exception& error) {
        logError(function, "%s", error.what());
    } catch (...) {
        logError(function, "unexpected failure");
    }
    return onFailure;
}

// The same for an operation that returns nothing.
template <class Body>
void guardedVoid(const char* function, Body&& body) noexcept {
    try {
        body();
    } catch (...) {
        logError(function, "unexpected failure");
    }
}

}  // namespace zt4
