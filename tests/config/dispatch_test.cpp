#include <syslog.h>

#include "config/facade/dispatch.hpp"
#include "config/v0/policy.hpp"
#include "support/harness.hpp"
#include "zt4config/config.h"

namespace {

using zt4::ConfigDocument;
using zt4test::logged;

// Stand-ins for the two versions of an operation: each says which one ran and what it was given.
json_t* pointerVersion0(int value, const char* text) { return json_pack("[i,i,s]", 0, value, text); }
json_t* pointerVersion1(int value, const char* text) { return json_pack("[i,i,s]", 1, value, text); }
int numberVersion0(int value) { return value; }
int numberVersion1(int value) { return 100 + value; }

const char* const kPaths[] = {"/home/nvram/zt4config.json", "/etc/zt4config_factory.json",
                              "/home/nvram/zt4system.json", "/etc/zt4system_factory.json"};

struct RouteCase {
    const char* name;
    const char* content;  // of the routed document; nullptr: missing
    int expectedVersion;
};

class Dispatch : public zt4test::DeviceTest,
                 public ::testing::WithParamInterface<std::tuple<int, RouteCase>> {};

TEST_P(Dispatch, FollowsTheVersionOfItsOwnDocument) {
    const int documentIndex = std::get<0>(GetParam());
    const RouteCase& c = std::get<1>(GetParam());
    // Every other document says the opposite, so a route on the wrong file shows.
    const char* opposite = c.expectedVersion == 1 ? "{\"Syntax\":{\"Version\":0}}" : "{\"Syntax\":{\"Version\":1}}";
    for (int i = 0; i < 4; ++i) {
        if (i != documentIndex) writeFile(kPaths[i], opposite);
    }
    if (c.content) writeFile(kPaths[documentIndex], c.content);
    const auto document = static_cast<ConfigDocument>(documentIndex);

    json_t* result = zt4::dispatch<pointerVersion0, pointerVersion1>("facade", document, 7, "x");
    EXPECT_EQ(zt4test::compact(result), "[" + std::to_string(c.expectedVersion) + ",7,\"x\"]");
    json_decref(result);
    EXPECT_EQ((zt4::dispatch<numberVersion0, numberVersion1>("facade", document, 5)),
              c.expectedVersion == 1 ? 105 : 5);
    EXPECT_EQ(zt4test::loggedCount("Failed to read version configuration file"), 0);
}

INSTANTIATE_TEST_SUITE_P(Documents, Dispatch, ::testing::Combine(
    ::testing::Range(0, 4),
    ::testing::Values(RouteCase{"Version1", "{\"Syntax\":{\"Version\":1}}", 1},
                      RouteCase{"Version0", "{\"Syntax\":{\"Version\":0}}", 0},
                      RouteCase{"Version2", "{\"Syntax\":{\"Version\":2}}", 0},
                      RouteCase{"Missing", nullptr, 0},
                      RouteCase{"Malformed", "{\"Syntax\":", 0})),
    [](const ::testing::TestParamInfo<std::tuple<int, RouteCase>>& p) {
        return std::to_string(std::get<0>(p.param)) + std::get<1>(p.param).name;
    });

TEST(DispatchGuard, UnknownVersionFailsByResultType) {
    for (int version : {-1, 2, 255}) {
        zt4test::clearLog();
        EXPECT_EQ((zt4::dispatchVersion<pointerVersion0, pointerVersion1>("readJSONZT4ConfigWeb", version, 1, "x")),
                  nullptr);
        EXPECT_EQ((zt4::dispatchVersion<numberVersion0, numberVersion1>("setParameterConfig", version, 1)), -1);
        EXPECT_TRUE(logged("error.[readJSONZT4ConfigWeb]: Failed to read version configuration file", LOG_ERR));
        EXPECT_TRUE(logged("error.[setParameterConfig]: Failed to read version configuration file", LOG_ERR));
    }
}

TEST(VersionZeroPolicy, RefusesWithTheResultTypesFailure) {
    zt4test::clearLog();
    EXPECT_EQ(zt4::v0::unsupported<json_t*>("writeJSONZT4SystemWebSyntaxVersion0"), nullptr);
    EXPECT_EQ(zt4::v0::unsupported<int>("printZT4UserConfigFileSyntaxVersion0"), -1);
    EXPECT_TRUE(logged("error.[writeJSONZT4SystemWebSyntaxVersion0]: syntax version 0 is not supported", LOG_ERR));
    EXPECT_TRUE(logged("error.[printZT4UserConfigFileSyntaxVersion0]: syntax version 0 is not supported", LOG_ERR));
}

class Channels : public zt4test::DeviceTest {};

TEST_F(Channels, ReadJSONZT4CnlRoutesOnTheUserFile) {
    json_t* connector = zt4test::parse("{\"Mode\":0,\"Channel\":[{\"Enable\":1}]}");
    json_t* bare = zt4test::parse("{\"Mode\":0}");
    struct Case {
        const char* user;  // nullptr: no user file
        const char* missingLine;
    } cases[] = {
        {"{\"Syntax\":{\"Version\":1}}", "error.[readJSONZT4ChannelsSyntaxVersion1]: FAILED to read Array JSON Cnl"},
        {"{\"Syntax\":{\"Version\":0}}", "error.[readJSONZT4ChannelsSyntaxVersion0]: FAILED to read Object Channel"},
        {nullptr, "error.[readJSONZT4ChannelsSyntaxVersion0]: FAILED to read Object Channel"},
    };
    for (const Case& c : cases) {
        if (c.user) writeFile("/home/nvram/zt4config.json", c.user); else removeFile("/home/nvram/zt4config.json");
        json_t* channels = readJSONZT4Cnl(connector);
        EXPECT_EQ(zt4test::compact(channels), "[{\"Enable\":1}]");
        json_decref(channels);
        zt4test::clearLog();
        EXPECT_EQ(readJSONZT4Cnl(bare), nullptr);
        EXPECT_TRUE(logged(c.missingLine, LOG_ERR)) << zt4test::logDump();
    }
    writeFile("/home/nvram/zt4config.json", "{\"Syntax\":{\"Version\":1}}");
    EXPECT_EQ(readJSONZT4Cnl(nullptr), nullptr);
    EXPECT_TRUE(logged("error.[readJSONZT4ChannelsSyntaxVersion1]: jsonConnector NULL", LOG_ERR));
    EXPECT_EQ(connector->refcount, 1u);
    json_decref(bare);
    json_decref(connector);
}

}  // namespace
