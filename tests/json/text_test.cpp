#include <syslog.h>

#include "support/harness.hpp"
#include "zt4config/common.h"
#include "zt4config/json.h"

namespace {

using zt4test::logged;

class Text : public zt4test::DeviceTest {};

TEST_F(Text, JSONifyParsesWithTheDocumentFlags) {
    json_t* value = JSONify("{\"b\":[1,2.5],\"a\":\"x\\u0000y\"}");
    EXPECT_EQ(zt4test::compact(value), "{\"a\":\"x\\u0000y\",\"b\":[1,2.5]}");
    json_decref(value);
    EXPECT_TRUE(zt4test::capturedLog().empty());

    EXPECT_EQ(JSONify(nullptr), nullptr);
    EXPECT_TRUE(logged("error.[JSONify]: root NULL", LOG_ERR));
}

TEST_F(Text, JSONifyFailureIsAWarningWithJanssonsDetails) {
    struct Case {
        const char* text;
        const char* line;
    } cases[] = {
        {"{\"a\":1,\"a\":2}",
         "error.[JSONify]: json_loads on line 1: text: duplicate object key near '\"a\"'. source: "
         "<buffer>. column: 10. position: 10"},
        {"{\"a\":\n tru}",
         "error.[JSONify]: json_loads on line 2: text: invalid token near 'tru'. source: "
         "<buffer>. column: 4. position: 10"},
        {"", "error.[JSONify]: json_loads on line 1: text: '[' or '{' expected near end of file. "
             "source: <buffer>. column: 0. position: 0"},
    };
    for (const Case& c : cases) {
        zt4test::clearLog();
        EXPECT_EQ(JSONify(c.text), nullptr) << c.text;
        EXPECT_TRUE(logged(c.line, LOG_WARNING)) << zt4test::logDump();
    }
}

TEST_F(Text, PrintJSONLogsOnlyAboveLevelTwo) {
    json_t* value = zt4test::parse("{\"b\":1,\"a\":[true,\"s\"]}");
    struct Case {
        int level;
        const char* label;
        const char* line;  // nullptr: nothing logged
    } cases[] = {
        {0, "Web", nullptr},
        {2, "Web", nullptr},
        {3, "Web", "Web: {\"b\": 1, \"a\": [true, \"s\"]}"},
        {7, nullptr, " {\"b\": 1, \"a\": [true, \"s\"]}"},
    };
    for (const Case& c : cases) {
        zt4test::clearLog();
        debug_level = c.level;
        printJSON(value, c.label);
        if (c.line) {
            ASSERT_EQ(zt4test::capturedLog().size(), 1u) << c.level;
            EXPECT_TRUE(logged(c.line, LOG_INFO)) << zt4test::logDump();
        } else {
            EXPECT_TRUE(zt4test::capturedLog().empty()) << c.level;
        }
    }
    EXPECT_EQ(value->refcount, 1u);
    json_decref(value);

    for (int level : {0, 3}) {
        zt4test::clearLog();
        debug_level = level;
        printJSON(nullptr, "Web");
        EXPECT_TRUE(logged("error.[printJSON]: json NULL", LOG_INFO)) << level;
    }
}

}  // namespace
