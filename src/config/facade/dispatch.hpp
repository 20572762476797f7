// The one way a facade operation reaches the implementation of its document's syntax version.
//
//   json_t* readJSONZT4SystemWeb(void) ZT4_NOEXCEPT {
//       return zt4::dispatch<readJSONZT4SystemWebSyntaxVersion0,
//                            readJSONZT4SystemWebSyntaxVersion1>(__func__, zt4::ConfigDocument::System);
//   }
//
// The facade passes its own arguments on unchanged and returns the version's result. The failure
// result follows the result type: null for a pointer, -1 for a number.
#pragma once

#include <type_traits>

#include "common/log.hpp"
#include "config/document/document.hpp"

namespace zt4 {

template <class Result>
constexpr Result dispatchFailure() noexcept {
    static_assert(std::is_pointer_v<Result> || std::is_integral_v<Result>,
                  "facade results are pointers or numbers");
    if constexpr (std::is_pointer_v<Result>) {
        return nullptr;
    } else {
        return static_cast<Result>(-1);
    }
}

// Routes on a version already read. Version readers only ever give 0 or 1, so the last branch
// should never run; it stays as a guard against a reader that one day knows more versions.
template <auto Version0, auto Version1, class... Args>
auto dispatchVersion(const char* facade, int version, Args... args) noexcept {
    using Result = decltype(Version1(args...));
    static_assert(std::is_same_v<Result, decltype(Version0(args...))>,
                  "both versions of an operation return the same kind of result");
    switch (version) {
        case 0: return Version0(args...);
        case 1: return Version1(args...);
        default: break;
    }
    logError(facade, "Failed to read version configuration file");
    return dispatchFailure<Result>();
}

// Reads the syntax version of `document` and calls that version's implementation.
template <auto Version0, auto Version1, class... Args>
auto dispatch(const char* facade, ConfigDocument document, Args... args) noexcept {
    return dispatchVersion<Version0, Version1>(facade, syntaxVersionOf(document), args...);
}

}  // namespace zt4
