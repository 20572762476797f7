// What syntax version 0 does. Its documents use older section shapes that this library does not
// reshape: a reader with nothing to reshape hands back the stored section as it is, and every other
// version-0 operation refuses with "syntax version 0 is not supported". Each version-0 operation is
// then one line:
//
//   json_t* readJSONZT4SystemWebSyntaxVersion0(void) ZT4_NOEXCEPT {
//       return zt4::v0::storedSection(__func__, zt4::ConfigDocument::System, {"Web"});
//   }
//   int writeJSONZT4SystemWebSyntaxVersion0(json_t*) ZT4_NOEXCEPT {
//       return zt4::v0::unsupported<int>(__func__);
//   }
#pragma once

#include <jansson.h>

#include <initializer_list>

#include "common/log.hpp"
#include "config/facade/dispatch.hpp"
#include "config/document/document.hpp"

namespace zt4::v0 {

// The member reached from `json` through `keys` (outermost first), unchanged: new reference, or
// null after "FAILED to read Object <key>" for the first key that is missing.
json_t* memberUnchanged(const char* function, json_t* json,
                        std::initializer_list<const char*> keys) noexcept;

// The same, from the stored `document` ("zt4 NULL" when it cannot be read).
json_t* storedSection(const char* function, ConfigDocument document,
                      std::initializer_list<const char*> keys) noexcept;

// Refuses an operation that version 0 does not offer: null or -1 after the message.
template <class Result>
Result unsupported(const char* function) noexcept {
    logError(function, "syntax version 0 is not supported");
    return dispatchFailure<Result>();
}

}  // namespace zt4::v0
