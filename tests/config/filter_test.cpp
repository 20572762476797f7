#include <syslog.h>

#include <fstream>
#include <sstream>
#include <string>

#include "support/harness.hpp"
#include "zt4config/compliance.h"

namespace {

using zt4test::logged;

std::string exampleUserDocument() {
    std::ifstream in(std::string(ZT4_EXAMPLE_DEVICE) + "/home/nvram/zt4config.json");
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// Key order as written, which the filter fixes.
std::string ordered(const json_t* value) {
    char* text = json_dumps(value, JSON_COMPACT | JSON_PRESERVE_ORDER);
    std::string result = text ? text : "(null)";
    free(text);
    return result;
}

struct LevelCase {
    const char* name;
    int (*filter)(json_t*, json_t*);
    bool array;
    const char* source;    // null: no source
    int result;
    const char* expected;  // the destination afterwards, keys in order
    const char* line = nullptr;  // a line that must be logged
};

class FilterLevel : public zt4test::DeviceTest, public ::testing::WithParamInterface<LevelCase> {};

TEST_P(FilterLevel, KeepsKnownKeysInOrder) {
    const LevelCase& c = GetParam();
    json_t* source = c.source ? zt4test::parse(c.source) : nullptr;
    json_t* destination = c.array ? json_array() : json_object();
    EXPECT_EQ(c.filter(source, destination), c.result) << zt4test::logDump();
    EXPECT_EQ(ordered(destination), c.expected);
    if (c.line != nullptr) {
        EXPECT_TRUE(logged(c.line, LOG_ERR)) << c.line << "\n" << zt4test::logDump();
    }
    json_decref(destination);
    json_decref(source);
}

const LevelCase kLevels[] = {
    {"RadioWithoutKey", filterUserConfigRadioLoRaSyntaxVersion1, false,
     "{\"Band\":\"EU-868\",\"Enable\":1,\"Debug\":4,\"APPEUI\":\"x\",\"Period\":15,\"FrameFormat\":2}", 0,
     "{\"Enable\":1,\"Period\":15,\"FrameFormat\":2,\"Band\":\"EU-868\",\"APPEUI\":\"x\"}"},
    {"RadioKeyLast", filterUserConfigRadioLoRaSyntaxVersion1, false,
     "{\"APPKEY\":\"k\",\"APPEUI\":\"e\",\"Enable\":0}", 0, "{\"Enable\":0,\"APPEUI\":\"e\",\"APPKEY\":\"k\"}"},
    {"WiFiWithoutDhcp", filterUserConfigWiFiSyntaxVersion1, false, "{\"SSID\":\"s\",\"Enable\":1,\"Lease\":3}", 0,
     "{\"Enable\":1,\"SSID\":\"s\"}"},
    {"WiFiDhcpFiltered", filterUserConfigWiFiSyntaxVersion1, false,
     "{\"DHCP\":{\"Netmask\":\"m\",\"Extra\":1,\"AddressIP\":\"a\"},\"Enable\":1}", 0,
     "{\"Enable\":1,\"DHCP\":{\"AddressIP\":\"a\",\"Netmask\":\"m\"}}"},
    {"MissingSection", filterUserConfigWebSyntaxVersion1, false, nullptr, -1, "{}"},
    {"TwoChannelsEmptied", filterUserConfigConnectorChannelsSyntaxVersion1, true, "[{\"Enable\":1},{\"Enable\":1}]", 0,
     "[]"},
    {"OneChannelThreePhase", filterUserConfigConnectorChannelsSyntaxVersion1, true,
     "[{\"Phase\":2,\"Enable\":1,\"CurrentTransformer\":[{\"Direction\":1,\"x\":0}],\"CurrentTransformerPrimary\":{\"Enable\":0}}]",
     0, "[{\"Enable\":1,\"CurrentTransformer\":[{\"Direction\":1}],\"CurrentTransformerPrimary\":{\"Enable\":0}}]"},
    {"ChannelWithoutPrimary", filterUserConfigConnectorChannelsSyntaxVersion1, true,
     "[{\"Enable\":1,\"CurrentTransformer\":[]}]", -1, "[]",
     "error.[filterUserConfigConnectorChannel3PSyntaxVersion1]: Failed to filter JSON Channel Common"},
    {"MonophasePhaseLast", filterUserConfigConnectorChannel1PSyntaxVersion1, false,
     "{\"Phase\":2,\"Enable\":1,\"CurrentTransformer\":[{\"Direction\":1}],\"CurrentTransformerPrimary\":{\"Enable\":0}}",
     0, "{\"Enable\":1,\"CurrentTransformer\":[{\"Direction\":1}],\"CurrentTransformerPrimary\":{\"Enable\":0},\"Phase\":2}"},
    {"SagWithoutPhases", filterUserConfigExpertSagSyntaxVersion1, false, "{\"RateLevel\":2,\"Enable\":1}", -1,
     "{\"Enable\":1,\"RateLevel\":2}", "error.[filterUserConfigExpertSagSyntaxVersion1]: Failed to filter JSON Sag"},
    {"SwellWithoutPhases", filterUserConfigExpertSwellSyntaxVersion1, false, "{\"Enable\":0}", -1, "{\"Enable\":0}",
     "error.[filterUserConfigExpertSwellSyntaxVersion1]: Failed to filter JSON Swell"},
    {"MonophaseMissing", filterUserConfigConnectorChannel1PSyntaxVersion1, false, nullptr, -1, "{}",
     "error.[filterUserConfigConnectorChannel1PSyntaxVersion1]: Channel 1P NULL"},
    {"SwellMissing", filterUserConfigExpertSwellSyntaxVersion1, false, nullptr, -1, "{}",
     "error.[filterUserConfigExpertSagSwellSyntaxVersion1]: Sag Swell NULL"},
    {"ExpertPhasesAll", filterUserConfigExpertPhasesSyntaxVersion1, true,
     "[{\"Enable\":1,\"Level\":2},{\"Enable\":0},{},{\"Enable\":1}]", 0,
     "[{\"Enable\":1},{\"Enable\":0},{},{\"Enable\":1}]"},
    {"CurrentAverageMax", filterUserConfigExpertCurrentAverageMaxSyntaxVersion1, false,
     "{\"Period\":15,\"Enable\":1,\"Unit\":\"s\"}", 0, "{\"Enable\":1,\"Period\":15}"},
};

std::string levelName(const ::testing::TestParamInfo<LevelCase>& level) { return level.param.name; }

INSTANTIATE_TEST_SUITE_P(Levels, FilterLevel, ::testing::ValuesIn(kLevels), levelName);

class FilterDocument : public zt4test::DeviceTest {};

TEST_F(FilterDocument, DropsUnknownMembersAndKeepsTheRest) {
    json_t* source = zt4test::parse(exampleUserDocument().c_str());
    json_object_set_new(source, "Debug", json_integer(3));
    json_t* destination = json_object();
    ASSERT_EQ(filterUserConfigFileSyntaxVersion1(source, destination), 0) << zt4test::logDump();
    json_object_del(source, "Debug");
    EXPECT_EQ(zt4test::compact(destination), zt4test::compact(source));
    EXPECT_EQ(json_object_get(destination, "Debug"), nullptr);
    json_decref(destination);
    json_decref(source);
}

// A section that cannot be filtered leaves the destination as it was, even when the sections
// before it were filtered.
TEST_F(FilterDocument, LeavesTheDestinationUntouchedOnFailure) {
    for (const char* removed : {"Syntax", "BACnet", "ElectricalConfiguration"}) {
        json_t* source = zt4test::parse(exampleUserDocument().c_str());
        json_object_del(source, removed);
        json_t* destination = zt4test::parse("{\"Kept\":1}");
        zt4test::clearLog();
        EXPECT_EQ(filterUserConfigFileSyntaxVersion1(source, destination), -1) << removed;
        EXPECT_EQ(zt4test::compact(destination), "{\"Kept\":1}") << removed;
        EXPECT_TRUE(logged("error.[filterUserConfigFileSyntaxVersion1]: Failed to filter JSON section " +
                           std::string(removed)))
            << zt4test::logDump();
        json_decref(destination);
        json_decref(source);
    }
}

}  // namespace
