// Every exported function called with null pointers, numbers out of range, JSON values of the wrong
// type, on an empty device root: its failure result, the error it logs (or silence where that is
// its contract), no crash. Rows: bad_input_rows.py from the headers, plus bad_input_overrides.txt.
#include <sys/stat.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "support/harness.hpp"
#include "zt4config.h"

namespace {

const char* const ERR = "error.";  // a line beginning "error." (any priority)
const char* const SILENT = "";     // no line at all

// A result as text, so that rows of every return type share one table. JSON results are released.
std::string show(int value) { return std::to_string(value); }
std::string show(uint32_t value) { return std::to_string(value) + "u"; }
std::string show(double value) { return std::isnan(value) ? "nan" : std::to_string(value); }
std::string show(const char* text) { return text ? "\"" + std::string(text) + "\"" : "NULL"; }
std::string show(json_t* value) {
    if (value) json_decref(value);
    return value ? "a JSON value" : "NULL";
}

// Arguments of the override rows, kept for the whole run: JSON values of the wrong type, an
// object whose members have the wrong types for the checks that name them, and valid
// caller-owned buffers for the calls that need one beside a bad argument.
json_t* text() { static json_t* v = json_string("not a container"); return v; }
json_t* array() { static json_t* v = json_array(); return v; }
json_t* object() { static json_t* v = json_object(); return v; }
json_t* mixed() {
    static json_t* v = json_pack("{s:s, s:b, s:s, s:i}", "Port", "502", "Enable", 1, "Factor", "1.5", "Address", 7);
    return v;
}
uint16_t* image() { static uint16_t words[ZT4_MODBUS_IMAGE_WORDS]; return words; }
ConnectorConfig* connectors() { static ConnectorConfig records[ZT4_CONNECTOR_COUNT]; return records; }
uint8_t* section() { static uint8_t number; return &number; }
char* buffer() { static char bytes[64]; return bytes; }
char* noColons() { static char bytes[32] = "0011223344556677"; return bytes; }

struct BadCall {
    const char* function;
    const char* arguments;
    const char* expected;  // the result as show() writes it
    const char* log;       // ERR, SILENT or the exact line
    const char* blocked;   // a device path where a directory is put first (so opening it fails)
    std::string (*call)();
};

const BadCall kBadCalls[] = {
#include "bad_input_rows.inc"
};

class BadInput : public zt4test::DeviceTest, public ::testing::WithParamInterface<BadCall> {};

TEST_P(BadInput, FailsAndSaysWhy) {
    const BadCall& c = GetParam();
    if (c.blocked) zt4test::makeDirectories(path(c.blocked));
    EXPECT_EQ(c.call(), c.expected) << c.function << "(" << c.arguments << ")";
    const auto& log = zt4test::capturedLog();
    if (c.log == SILENT) {
        EXPECT_TRUE(log.empty()) << c.function << "(" << c.arguments << ") logged:\n" << zt4test::logDump();
    } else if (c.log == ERR) {
        bool found = false;
        for (const auto& entry : log) found = found || entry.text.rfind("error.", 0) == 0;
        EXPECT_TRUE(found) << c.function << "(" << c.arguments << ") logged no error line:\n" << zt4test::logDump();
    } else {
        EXPECT_TRUE(zt4test::logged(c.log)) << c.function << " did not log \"" << c.log << "\":\n"
                                            << zt4test::logDump();
    }
}

INSTANTIATE_TEST_SUITE_P(Exports, BadInput, ::testing::ValuesIn(kBadCalls),
                         [](const ::testing::TestParamInfo<BadCall>& param) {
                             return std::string(param.param.function) + "_" + std::to_string(param.index);
                         });

}  // namespace
