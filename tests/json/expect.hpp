// Checks shared by the JSON and configuration tests.
#pragma once

#include <syslog.h>

#include "support/harness.hpp"

namespace zt4test {

// A result (released here) against its compact text (nullptr: a null result), and `line` logged
// at `priority` (nullptr: nothing logged at all).
inline void expectResult(json_t* result, const char* expected, const char* line, int priority = LOG_ERR) {
    EXPECT_EQ(compact(result), expected ? expected : "(null)");
    EXPECT_TRUE(line ? logged(line, priority) : capturedLog().empty()) << "missing: " << (line ? line : "") << "\n" << logDump();
    json_decref(result);
}

}  // namespace zt4test
