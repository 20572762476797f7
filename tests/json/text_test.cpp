#include "json/expect.hpp"
#include "zt4config/common.h"
#include "zt4config/json.h"

namespace {

class Text : public zt4test::DeviceTest {};

TEST_F(Text, JSONifyParsesWithTheDocumentFlags) {
    zt4test::expectResult(JSONify("{\"b\":[1,2.5],\"a\":\"x\\u0000y\"}"),
                          "{\"a\":\"x\\u0000y\",\"b\":[1,2.5]}", nullptr);
    zt4test::expectResult(JSONify(nullptr), nullptr, "error.[JSONify]: root NULL");
    zt4test::clearLog();
    // A parse failure is a warning carrying Jansson's details.
    zt4test::expectResult(JSONify("{\"a\":\n tru}"), nullptr,
                          "error.[JSONify]: json_loads on line 2: text: invalid token near 'tru'. "
                          "source: <buffer>. column: 4. position: 10", LOG_WARNING);
    zt4test::expectResult(JSONify("{\"a\":1,\"a\":2}"), nullptr,
                          "error.[JSONify]: json_loads on line 1: text: duplicate object key near "
                          "'\"a\"'. source: <buffer>. column: 10. position: 10", LOG_WARNING);
}

TEST_F(Text, PrintJSONLogsOnlyAboveLevelTwo) {
    json_t* value = zt4test::parse("{\"b\":1,\"a\":[true,\"s\"]}");
    struct Case {
        int level;
        const char* label;
        const char* line;  // nullptr: nothing logged
    } cases[] = {
        {2, "Web", nullptr},
        {3, "Web", "Web: {\"b\": 1, \"a\": [true, \"s\"]}"},
        {7, nullptr, " {\"b\": 1, \"a\": [true, \"s\"]}"},
    };
    for (const Case& c : cases) {
        zt4test::clearLog();
        debug_level = c.level;
        printJSON(value, c.label);
        EXPECT_EQ(zt4test::capturedLog().size(), c.line ? 1u : 0u) << c.level;
        EXPECT_TRUE(!c.line || zt4test::logged(c.line, LOG_INFO)) << zt4test::logDump();
        printJSON(nullptr, c.label);
        EXPECT_TRUE(zt4test::logged("error.[printJSON]: json NULL", LOG_INFO)) << c.level;
    }
    EXPECT_EQ(value->refcount, 1u);
    json_decref(value);
}

}  // namespace
