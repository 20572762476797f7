#include "json/expect.hpp"
#include "zt4config/json.h"

namespace {

struct ElementCase {
    json_t* (*read)(json_t*, uint8_t);
    const char* array;  // nullptr: a null array
    unsigned id;
    const char* expected;  // compact element, nullptr for a failure
    const char* line;      // logged at LOG_ERR, nullptr for nothing
};

class ElementById : public ::testing::TestWithParam<ElementCase> {};

TEST_P(ElementById, ReturnsANewReferenceOrLogsWhy) {
    const ElementCase& c = GetParam();
    zt4test::clearLog();
    json_t* array = c.array ? zt4test::parse(c.array) : nullptr;
    json_t* element = c.read(array, static_cast<uint8_t>(c.id));
    EXPECT_TRUE(element == nullptr || element->refcount == 2u);  // a new reference
    zt4test::expectResult(element, c.expected, c.line);
    EXPECT_TRUE(array == nullptr || array->refcount == 1u);
    json_decref(array);
}

INSTANTIATE_TEST_SUITE_P(Readers, ElementById, ::testing::Values(
    ElementCase{readJSONZT4ConnectorById, "[{\"a\":1},{\"a\":2}]", 2, "{\"a\":2}", nullptr},
    // The connector id is checked before the array; 7 is refused even in a seven-element array.
    ElementCase{readJSONZT4ConnectorById, nullptr, 0, nullptr, "error.[readJSONZT4ConnectorById]: Connector id=0 INVALID"},
    ElementCase{readJSONZT4ConnectorById, "[{},{},{},{},{},{},{}]", 7, nullptr, "error.[readJSONZT4ConnectorById]: Connector id=7 INVALID"},
    ElementCase{readJSONZT4ConnectorById, nullptr, 1, nullptr, "error.[readJSONZT4ConnectorById]: jsonConnectors NULL"},
    ElementCase{readJSONZT4ConnectorById, "[]", 1, nullptr, "error.[readJSONZT4ConnectorById]: size Array JSON Connect NULL"},
    ElementCase{readJSONZT4ConnectorById, "[{},{}]", 3, nullptr, "error.[readJSONZT4ConnectorById]: Connector3 not in Array JSON Connect"},
    ElementCase{readJSONZT4ConnectorById, "[{},[1]]", 2, nullptr, "error.[readJSONZT4ConnectorById]: Connector2 IS NOT Object JSON"},
    ElementCase{readJSONZT4ChannelById, "[{},{},{\"c\":3}]", 3, "{\"c\":3}", nullptr},
    // Channels and phases check the array first.
    ElementCase{readJSONZT4ChannelById, nullptr, 9, nullptr, "error.[readJSONZT4ChannelById]: jsonChannels NULL"},
    ElementCase{readJSONZT4ChannelById, "[{},{},{},{}]", 4, nullptr, "error.[readJSONZT4ChannelById]: Channel id=4 INVALID"},
    ElementCase{readJSONZT4ChannelById, "[]", 1, nullptr, "error.[readJSONZT4ChannelById]: size Array JSON Cnl NULL"},
    ElementCase{readJSONZT4ChannelById, "[{}]", 2, nullptr, "error.[readJSONZT4ChannelById]: Channel2 not in Array JSON Cnl"},
    ElementCase{readJSONZT4ChannelById, "[1]", 1, nullptr, "error.[readJSONZT4ChannelById]: Channel1 IS NOT Object JSON"},
    ElementCase{readJSONZT4PhaseById, "[{},{\"Enable\":0}]", 2, "{\"Enable\":0}", nullptr},
    ElementCase{readJSONZT4PhaseById, nullptr, 1, nullptr, "error.[readJSONZT4PhaseById]: jsonPhases NULL"},
    ElementCase{readJSONZT4PhaseById, "[{}]", 0, nullptr, "error.[readJSONZT4PhaseById]: Phase id=0 INVALID"},
    // Phases keep the channel array's wording.
    ElementCase{readJSONZT4PhaseById, "[]", 1, nullptr, "error.[readJSONZT4PhaseById]: size Array JSON Cnl NULL"},
    ElementCase{readJSONZT4PhaseById, "[{},{}]", 3, nullptr, "error.[readJSONZT4PhaseById]: Phase3 not in Array JSON Cnl"},
    ElementCase{readJSONZT4PhaseById, "[{},\"x\"]", 2, nullptr, "error.[readJSONZT4PhaseById]: Phase2 IS NOT Object JSON"}));

struct MemberCase {
    json_t* (*read)(json_t*, const char*);
    const char* json;  // nullptr: null document
    const char* key;   // nullptr: null key
    const char* expected;
    const char* line;
};

class Member : public ::testing::TestWithParam<MemberCase> {};

TEST_P(Member, ReturnsANewReferenceOfTheRightType) {
    const MemberCase& c = GetParam();
    zt4test::clearLog();
    json_t* json = c.json ? zt4test::parse(c.json) : nullptr;
    json_t* member = c.read(json, c.key);
    EXPECT_TRUE(member == nullptr || member->refcount == 2u);
    zt4test::expectResult(member, c.expected, c.line);
    json_decref(json);
}

INSTANTIATE_TEST_SUITE_P(Readers, Member, ::testing::Values(
    MemberCase{readJSONObject, "{\"Web\":{\"Port\":80}}", "Web", "{\"Port\":80}", nullptr},
    MemberCase{readJSONObject, "{\"Web\":[1]}", "Web", nullptr, nullptr},  // wrong type: quiet
    MemberCase{readJSONObject, "{}", "Web", nullptr, "error.[readJSONObject]: jsonObject NULL"},
    MemberCase{readJSONObject, nullptr, "Web", nullptr, "error.[readJSONObject]: json NULL"},
    MemberCase{readJSONObject, "{}", nullptr, nullptr, "error.[readJSONObject]: key NULL"},
    MemberCase{readJSONArray, "{\"Phase\":[{}]}", "Phase", "[{}]", nullptr},
    MemberCase{readJSONArray, "{\"Phase\":{}}", "Phase", nullptr, nullptr},
    MemberCase{readJSONArray, "{}", "Phase", nullptr, "error.[readJSONArray]: jsonArray NULL"},
    MemberCase{readJSONArray, nullptr, "Phase", nullptr, "error.[readJSONArray]: json NULL"},
    MemberCase{readJSONArray, "{}", nullptr, nullptr, "error.[readJSONArray]: key NULL"}));

}  // namespace
