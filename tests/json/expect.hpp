// Checks shared by the JSON and configuration tests.
#pragma once

#include <syslog.h>

#include "support/harness.hpp"

namespace zt4test {

// Checks a result (released here) against its compact text, nullptr meaning a null result, and
// that `line` was logged at `priority`, or, for a null `line`, that nothing was logged at all.
inline void expectResult(json_t* result, const char* expected, const char* line,
                         int priority = LOG_ERR) {
    EXPECT_EQ(compact(result), expected ? expected : "(null)");
    if (line) {
        EXPECT_TRUE(logged(line, priority)) << "missing: " << line << "\n" << logDump();
    } else {
        EXPECT_TRUE(capturedLog().empty()) << logDump();
    }
    json_decref(result);
}

}  // namespace zt4test
