#include <syslog.h>

#include <cstring>

#include "config/v1/by_key.hpp"
#include "config/v1/section_defaults.hpp"
#include "support/harness.hpp"

namespace {

using zt4test::logged;

struct ByKeyCase {
    const char* key;
    const char* expected;  // compact member, or nullptr
    const char* line;      // line logged by readJSONZT4ByKeyObject, or nullptr
};

class ByKeyObject : public ::testing::TestWithParam<ByKeyCase> {
protected:
    void SetUp() override { zt4test::clearLog(); }
};

// Array keys are read as arrays, every other key as an object.
TEST_P(ByKeyObject, PicksObjectOrArrayByKey) {
    const ByKeyCase& c = GetParam();
    json_t* document = zt4test::parse(
        "{\"Web\":{\"Port\":80},\"Connectors\":[{}],\"Channel\":[1],\"CurrentTransformer\":[2],"
        "\"Phase\":{\"x\":1},\"Expert\":[3]}");
    json_t* member = readJSONZT4ByKeyObject(document, c.key);
    EXPECT_EQ(zt4test::compact(member), c.expected ? c.expected : "(null)");
    if (c.line) {
        EXPECT_TRUE(logged(c.line, LOG_ERR)) << zt4test::logDump();
    } else {
        EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
    }
    json_decref(member);
    json_decref(document);
}

INSTANTIATE_TEST_SUITE_P(Keys, ByKeyObject, ::testing::Values(
    ByKeyCase{"Web", "{\"Port\":80}", nullptr},
    ByKeyCase{"Connectors", "[{}]", nullptr},
    ByKeyCase{"Channel", "[1]", nullptr},
    ByKeyCase{"CurrentTransformer", "[2]", nullptr},
    ByKeyCase{"Phase", nullptr, "error.[readJSONZT4ByKeyObject]: FAILED to read Array JSON Phase"},
    ByKeyCase{"Expert", nullptr, "error.[readJSONZT4ByKeyObject]: FAILED to read Object JSON Expert"},
    ByKeyCase{"Modbus", nullptr, "error.[readJSONZT4ByKeyObject]: FAILED to read Object JSON Modbus"},
    ByKeyCase{"Modbus", nullptr, "error.[readJSONObject]: jsonObject NULL"}));

TEST(ByKeyObjectNull, LogsAndFails) {
    zt4test::clearLog();
    json_t* document = zt4test::parse("{}");
    EXPECT_EQ(readJSONZT4ByKeyObject(document, nullptr), nullptr);
    EXPECT_TRUE(logged("error.[readJSONZT4ByKeyObject]: key NULL", LOG_ERR));
    EXPECT_EQ(readJSONZT4ByKeyObject(nullptr, "Web"), nullptr);
    EXPECT_TRUE(logged("error.[readJSONZT4ByKeyObject]: FAILED to read Object JSON Web", LOG_ERR));
    json_decref(document);
}

// A stand-in section check: builds its defaults from nothing and says so in the status.
int checkCalls = 0;
json_t* fakeCheck(json_t* section, int8_t* status) {
    ++checkCalls;
    *status = -1;
    return section ? nullptr : json_pack("{s:i}", "Default", 1);
}

TEST(SectionDefaults, TablesKnowTheirKeysAndCallTheCheckWithoutASection) {
    for (const char* key : {"Web", "RadioLoRa", "WiFi", "Ethernet", "Modbus", "BACnet",
                            "ElectricalConfiguration", "VoltageTransformer", "Connectors"}) {
        const zt4::v1::SectionDefaults* entry = zt4::v1::findUserSectionDefaults(key);
        ASSERT_NE(entry, nullptr) << key;
        EXPECT_STREQ(entry->key, key);
    }
    for (const char* key : {"Sag", "Swell", "CurrentAverageMax", "Connectors"}) {
        const zt4::v1::SectionDefaults* entry = zt4::v1::findUserExpertSectionDefaults(key);
        ASSERT_NE(entry, nullptr) << key;
        EXPECT_STREQ(entry->key, key);
    }
    for (const char* key : {"Syntax", "Expert", "web", ""}) {
        EXPECT_EQ(zt4::v1::findUserSectionDefaults(key), nullptr) << key;
    }
    EXPECT_EQ(zt4::v1::findUserExpertSectionDefaults("Web"), nullptr);
    EXPECT_EQ(zt4::v1::findUserSectionDefaults(nullptr), nullptr);

    const zt4::v1::SectionDefaults plugged = {"Web", fakeCheck};
    const zt4::v1::SectionDefaults unplugged = {"Web", nullptr};
    checkCalls = 0;
    json_t* defaults = zt4::v1::sectionDefaults(&plugged);
    EXPECT_EQ(zt4test::compact(defaults), "{\"Default\":1}");
    EXPECT_EQ(checkCalls, 1);
    json_decref(defaults);
    EXPECT_EQ(zt4::v1::sectionDefaults(&unplugged), nullptr);
    EXPECT_EQ(zt4::v1::sectionDefaults(nullptr), nullptr);
}

class StoredByKey : public zt4test::DeviceTest {};

TEST_F(StoredByKey, UserSectionsFallBackToTheTableDefaults) {
    EXPECT_EQ(readJSONZT4UserConfigByKeyObject("Web"), nullptr);
    EXPECT_TRUE(logged("error.[readJSONZT4UserConfigByKeyObject]: zt4 NULL", LOG_ERR));

    writeFile("/home/nvram/zt4config.json",
              "{\"Web\":{\"Port\":80},\"WiFi\":[],\"ElectricalConfiguration\":{\"Connectors\":[{}]}}");
    json_t* web = readJSONZT4UserConfigByKeyObject("Web");
    EXPECT_EQ(zt4test::compact(web), "{\"Port\":80}");
    json_decref(web);

    // A section that is missing, or is not an object, reads as whatever the table gives.
    for (const char* key : {"Modbus", "WiFi", "Connectors", "Unknown"}) {
        zt4test::clearLog();
        json_t* expected = zt4::v1::sectionDefaults(zt4::v1::findUserSectionDefaults(key));
        json_t* section = readJSONZT4UserConfigByKeyObject(key);
        EXPECT_EQ(zt4test::compact(section), zt4test::compact(expected)) << key;
        EXPECT_TRUE(logged(std::string("error.[readJSONZT4UserConfigByKeyObject]: FAILED to read Object ") + key,
                           LOG_ERR)) << zt4test::logDump();
        json_decref(section);
        json_decref(expected);
    }
    EXPECT_EQ(readJSONZT4UserConfigByKeyObject(nullptr), nullptr);
    EXPECT_TRUE(logged("error.[readJSONZT4UserConfigByKeyObject]: key NULL", LOG_ERR));
}

TEST_F(StoredByKey, ExpertMembersComeFromTheElectricalConfiguration) {
    struct Case {
        const char* document;  // nullptr: no user file
        bool expertReadable;
    } cases[] = {
        {nullptr, false},
        {"{\"Expert\":{\"Sag\":{}}}", false},
        {"{\"ElectricalConfiguration\":{\"Expert\":[]}}", false},
        {"{\"ElectricalConfiguration\":{\"Expert\":{\"Sag\":{\"Enable\":0},\"Connectors\":[]}}}", true},
    };
    for (const Case& c : cases) {
        if (c.document) writeFile("/home/nvram/zt4config.json", c.document);
        zt4test::clearLog();
        json_t* sag = readJSONZT4UserConfigExpertByKeyObject("Sag");
        if (c.expertReadable) {
            EXPECT_EQ(zt4test::compact(sag), "{\"Enable\":0}");
            json_t* connectors = readJSONZT4UserConfigExpertByKeyObject("Connectors");
            EXPECT_EQ(zt4test::compact(connectors), "[]");
            json_decref(connectors);
        } else {
            EXPECT_EQ(sag, nullptr);
            EXPECT_TRUE(logged("error.[readJSONZT4UserConfigExpertByKeyObject]: expert NULL", LOG_ERR))
                << zt4test::logDump();
        }
        json_decref(sag);
    }
    json_t* expected = zt4::v1::sectionDefaults(zt4::v1::findUserExpertSectionDefaults("Swell"));
    json_t* swell = readJSONZT4UserConfigExpertByKeyObject("Swell");
    EXPECT_EQ(zt4test::compact(swell), zt4test::compact(expected));
    EXPECT_TRUE(logged("error.[readJSONZT4UserConfigExpertByKeyObject]: FAILED to read Object Swell", LOG_ERR));
    json_decref(swell);
    json_decref(expected);
}

struct SystemCase {
    json_t* (*read)(const char*);
    const char* name;
    const char* path;
    const char* documentNull;
};

class SystemByKey : public zt4test::DeviceTest, public ::testing::WithParamInterface<SystemCase> {};

TEST_P(SystemByKey, ReadsItsDocumentWithoutDefaults) {
    const SystemCase& c = GetParam();
    const std::string prefix = std::string("error.[") + c.name + "]: ";
    EXPECT_EQ(c.read("Device"), nullptr);
    EXPECT_TRUE(logged(prefix + c.documentNull, LOG_ERR)) << zt4test::logDump();

    writeFile(c.path, "{\"Device\":{\"Serial\":\"A1\"},\"Web\":{\"Debug\":1}}");
    json_t* device = c.read("Device");
    EXPECT_EQ(zt4test::compact(device), "{\"Serial\":\"A1\"}");
    json_decref(device);
    EXPECT_EQ(c.read("Modbus"), nullptr);
    EXPECT_TRUE(logged(prefix + "FAILED to read Object Modbus", LOG_ERR));
    EXPECT_EQ(c.read(nullptr), nullptr);
    EXPECT_TRUE(logged(prefix + "key NULL", LOG_ERR));
}

INSTANTIATE_TEST_SUITE_P(Documents, SystemByKey, ::testing::Values(
    SystemCase{readJSONZT4SystemByKeyObject, "readJSONZT4SystemByKeyObject", "/home/nvram/zt4system.json", "zt4 NULL"},
    SystemCase{readJSONZT4FactorySystemByKeyObject, "readJSONZT4FactorySystemByKeyObject",
               "/etc/zt4system_factory.json", "zt4systemfactory NULL"}));

TEST(ChannelsVersion1, ReadsTheChannelArray) {
    zt4test::clearLog();
    json_t* connector = zt4test::parse("{\"Channel\":[{},{},{}]}");
    json_t* channels = readJSONZT4ChannelsSyntaxVersion1(connector);
    EXPECT_EQ(channels, json_object_get(connector, "Channel"));
    EXPECT_EQ(channels->refcount, 2u);
    json_decref(channels);
    json_t* wrong = zt4test::parse("{\"Channel\":{}}");
    EXPECT_EQ(readJSONZT4ChannelsSyntaxVersion1(wrong), nullptr);
    EXPECT_TRUE(logged("error.[readJSONZT4ChannelsSyntaxVersion1]: FAILED to read Array JSON Cnl", LOG_ERR));
    json_decref(wrong);
    json_decref(connector);
}

}  // namespace
