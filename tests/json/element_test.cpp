#include <syslog.h>

#include "support/harness.hpp"
#include "zt4config/json.h"

namespace {

using zt4test::logged;

using ElementReader = json_t* (*)(json_t*, uint8_t);

struct ElementCase {
    const char* name;
    ElementReader read;
    const char* array;  // nullptr: a null array
    unsigned id;
    const char* expected;  // compact element, or nullptr for a failure
    const char* message;   // the one line logged at LOG_ERR, or nullptr for none
};

class ElementById : public ::testing::TestWithParam<ElementCase> {
protected:
    void SetUp() override { zt4test::clearLog(); }
};

TEST_P(ElementById, ReturnsTheElementOrLogsWhy) {
    const ElementCase& c = GetParam();
    json_t* array = c.array ? zt4test::parse(c.array) : nullptr;
    const size_t before = array ? array->refcount : 0;
    json_t* element = c.read(array, static_cast<uint8_t>(c.id));
    if (c.expected) {
        ASSERT_NE(element, nullptr);
        EXPECT_EQ(zt4test::compact(element), c.expected);
        EXPECT_EQ(element, json_array_get(array, c.id - 1));
        EXPECT_EQ(element->refcount, 2u);  // a new reference
        json_decref(element);
    } else {
        EXPECT_EQ(element, nullptr);
    }
    if (c.message) {
        EXPECT_TRUE(logged(c.message, LOG_ERR)) << zt4test::logDump();
        EXPECT_EQ(zt4test::capturedLog().size(), 1u) << zt4test::logDump();
    } else {
        EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
    }
    if (array) {
        EXPECT_EQ(array->refcount, before);
        json_decref(array);
    }
}

const char* const kSeven = "[{\"a\":1},{},{},{},{},{},{}]";

INSTANTIATE_TEST_SUITE_P(Readers, ElementById, ::testing::Values(
    ElementCase{"ConnectorFirst", readJSONZT4ConnectorById, "[{\"a\":1},{\"a\":2}]", 1, "{\"a\":1}", nullptr},
    ElementCase{"ConnectorSecond", readJSONZT4ConnectorById, "[{\"a\":1},{\"a\":2}]", 2, "{\"a\":2}", nullptr},
    // The id is checked before the array, and 7 is refused even when the array has seven elements.
    ElementCase{"ConnectorIdZeroBeforeNullArray", readJSONZT4ConnectorById, nullptr, 0, nullptr,
                "error.[readJSONZT4ConnectorById]: Connector id=0 INVALID"},
    ElementCase{"ConnectorIdSeven", readJSONZT4ConnectorById, kSeven, 7, nullptr,
                "error.[readJSONZT4ConnectorById]: Connector id=7 INVALID"},
    ElementCase{"ConnectorId255", readJSONZT4ConnectorById, kSeven, 255, nullptr,
                "error.[readJSONZT4ConnectorById]: Connector id=255 INVALID"},
    ElementCase{"ConnectorNullArray", readJSONZT4ConnectorById, nullptr, 1, nullptr,
                "error.[readJSONZT4ConnectorById]: jsonConnectors NULL"},
    ElementCase{"ConnectorEmpty", readJSONZT4ConnectorById, "[]", 1, nullptr,
                "error.[readJSONZT4ConnectorById]: size Array JSON Connect NULL"},
    ElementCase{"ConnectorNotArray", readJSONZT4ConnectorById, "{\"a\":1}", 1, nullptr,
                "error.[readJSONZT4ConnectorById]: size Array JSON Connect NULL"},
    ElementCase{"ConnectorPastEnd", readJSONZT4ConnectorById, "[{},{}]", 3, nullptr,
                "error.[readJSONZT4ConnectorById]: Connector3 not in Array JSON Connect"},
    ElementCase{"ConnectorNotObject", readJSONZT4ConnectorById, "[{},[1]]", 2, nullptr,
                "error.[readJSONZT4ConnectorById]: Connector2 IS NOT Object JSON"},
    ElementCase{"ChannelThird", readJSONZT4ChannelById, "[{},{},{\"c\":3}]", 3, "{\"c\":3}", nullptr},
    // The channel and phase readers check the array before the id.
    ElementCase{"ChannelNullArrayBeforeId", readJSONZT4ChannelById, nullptr, 9, nullptr,
                "error.[readJSONZT4ChannelById]: jsonChannels NULL"},
    ElementCase{"ChannelIdFour", readJSONZT4ChannelById, "[{},{},{},{}]", 4, nullptr,
                "error.[readJSONZT4ChannelById]: Channel id=4 INVALID"},
    ElementCase{"ChannelIdZero", readJSONZT4ChannelById, "[{}]", 0, nullptr,
                "error.[readJSONZT4ChannelById]: Channel id=0 INVALID"},
    ElementCase{"ChannelEmpty", readJSONZT4ChannelById, "[]", 1, nullptr,
                "error.[readJSONZT4ChannelById]: size Array JSON Cnl NULL"},
    ElementCase{"ChannelPastEnd", readJSONZT4ChannelById, "[{}]", 2, nullptr,
                "error.[readJSONZT4ChannelById]: Channel2 not in Array JSON Cnl"},
    ElementCase{"ChannelNotObject", readJSONZT4ChannelById, "[1]", 1, nullptr,
                "error.[readJSONZT4ChannelById]: Channel1 IS NOT Object JSON"},
    ElementCase{"PhaseSecond", readJSONZT4PhaseById, "[{},{\"Enable\":0}]", 2, "{\"Enable\":0}", nullptr},
    ElementCase{"PhaseNullArray", readJSONZT4PhaseById, nullptr, 1, nullptr,
                "error.[readJSONZT4PhaseById]: jsonPhases NULL"},
    ElementCase{"PhaseIdFour", readJSONZT4PhaseById, "[{}]", 4, nullptr,
                "error.[readJSONZT4PhaseById]: Phase id=4 INVALID"},
    // The phase reader keeps the channel array's wording.
    ElementCase{"PhaseEmpty", readJSONZT4PhaseById, "[]", 1, nullptr,
                "error.[readJSONZT4PhaseById]: size Array JSON Cnl NULL"},
    ElementCase{"PhasePastEnd", readJSONZT4PhaseById, "[{},{}]", 3, nullptr,
                "error.[readJSONZT4PhaseById]: Phase3 not in Array JSON Cnl"},
    ElementCase{"PhaseNotObject", readJSONZT4PhaseById, "[{},\"x\"]", 2, nullptr,
                "error.[readJSONZT4PhaseById]: Phase2 IS NOT Object JSON"}),
    [](const ::testing::TestParamInfo<ElementCase>& p) { return std::string(p.param.name); });

struct MemberCase {
    const char* name;
    bool array;          // readJSONArray, else readJSONObject
    const char* json;    // nullptr: null document
    const char* key;     // nullptr: null key
    const char* expected;
    const char* message;
};

class Member : public ::testing::TestWithParam<MemberCase> {
protected:
    void SetUp() override { zt4test::clearLog(); }
};

TEST_P(Member, ReturnsANewReferenceOfTheRightType) {
    const MemberCase& c = GetParam();
    json_t* json = c.json ? zt4test::parse(c.json) : nullptr;
    json_t* member = c.array ? readJSONArray(json, c.key) : readJSONObject(json, c.key);
    if (c.expected) {
        ASSERT_NE(member, nullptr);
        EXPECT_EQ(zt4test::compact(member), c.expected);
        EXPECT_EQ(member->refcount, 2u);
        json_decref(member);
    } else {
        EXPECT_EQ(member, nullptr);
    }
    if (c.message) {
        EXPECT_TRUE(logged(c.message, LOG_ERR)) << zt4test::logDump();
    } else {
        EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
    }
    json_decref(json);
}

INSTANTIATE_TEST_SUITE_P(Readers, Member, ::testing::Values(
    MemberCase{"Object", false, "{\"Web\":{\"Port\":80}}", "Web", "{\"Port\":80}", nullptr},
    MemberCase{"ObjectGivenArrayIsQuiet", false, "{\"Web\":[1]}", "Web", nullptr, nullptr},
    MemberCase{"ObjectAbsent", false, "{}", "Web", nullptr, "error.[readJSONObject]: jsonObject NULL"},
    MemberCase{"ObjectNullJson", false, nullptr, "Web", nullptr, "error.[readJSONObject]: json NULL"},
    MemberCase{"ObjectNullKey", false, "{}", nullptr, nullptr, "error.[readJSONObject]: key NULL"},
    MemberCase{"Array", true, "{\"Phase\":[{}]}", "Phase", "[{}]", nullptr},
    MemberCase{"ArrayGivenObjectIsQuiet", true, "{\"Phase\":{}}", "Phase", nullptr, nullptr},
    MemberCase{"ArrayAbsent", true, "{}", "Phase", nullptr, "error.[readJSONArray]: jsonArray NULL"},
    MemberCase{"ArrayNullJson", true, nullptr, "Phase", nullptr, "error.[readJSONArray]: json NULL"},
    MemberCase{"ArrayNullKey", true, "{}", nullptr, nullptr, "error.[readJSONArray]: key NULL"}),
    [](const ::testing::TestParamInfo<MemberCase>& p) { return std::string(p.param.name); });

}  // namespace
