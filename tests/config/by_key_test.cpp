#include "config/v1/by_key.hpp"
#include "config/v1/section_defaults.hpp"
#include "json/expect.hpp"

namespace {

using zt4test::expectResult;

// A stand-in section check: builds its defaults when given no section.
int checkCalls = 0;
json_t* fakeCheck(json_t* section, int8_t* status) {
    ++checkCalls;
    *status = -1;
    return section ? nullptr : json_pack("{s:i}", "Default", 1);
}

TEST(SectionDefaults, CallsThePluggedCheckWithoutASection) {
    EXPECT_NE(zt4::v1::findUserSectionDefaults("VoltageTransformer"), nullptr);
    EXPECT_NE(zt4::v1::findUserExpertSectionDefaults("CurrentAverageMax"), nullptr);
    EXPECT_EQ(zt4::v1::findUserSectionDefaults("Syntax"), nullptr);
    EXPECT_EQ(zt4::v1::findUserExpertSectionDefaults("Web"), nullptr);
    EXPECT_EQ(zt4::v1::findUserSectionDefaults(nullptr), nullptr);
    const zt4::v1::SectionDefaults plugged = {"Web", fakeCheck}, unplugged = {"Web", nullptr};
    zt4test::clearLog();
    expectResult(zt4::v1::sectionDefaults(&plugged), "{\"Default\":1}", nullptr);
    EXPECT_EQ(checkCalls, 1);
    EXPECT_EQ(zt4::v1::sectionDefaults(&unplugged), nullptr);
    EXPECT_EQ(zt4::v1::sectionDefaults(nullptr), nullptr);
}

class StoredByKey : public zt4test::DeviceTest {};

TEST_F(StoredByKey, UserSectionsFallBackToTheirDefaults) {
    expectResult(readJSONZT4UserConfigByKeyObject("Web"), nullptr, "error.[readJSONZT4UserConfigByKeyObject]: zt4 NULL");
    expectResult(readJSONZT4UserConfigByKeyObject(nullptr), nullptr, "error.[readJSONZT4UserConfigByKeyObject]: key NULL");
    writeFile("/home/nvram/zt4config.json", "{\"Web\":{\"Port\":80},\"Modbus\":[],\"ElectricalConfiguration\":{}}");
    zt4test::clearLog();
    expectResult(readJSONZT4UserConfigByKeyObject("Web"), "{\"Port\":80}", nullptr);
    // Missing, or not an object: the section's defaults, or nothing for a key without any.
    const char* const cases[][2] = {
        {"Modbus", "{\"Enable\":0,\"Interface\":\"TCP\",\"MappingVersion\":3,\"Parity\":1,\"RTUBaudrate\":115200,\"SlaveID\":1}"},
        {"VoltageTransformer", "{\"Enable\":0,\"VoltagePrimary\":400.0,\"VoltageSecondary\":230.0}"},
        {"Unknown", nullptr}};
    for (const auto& c : cases) {
        zt4test::clearLog();
        expectResult(readJSONZT4UserConfigByKeyObject(c[0]), c[1],
                     ("error.[readJSONZT4UserConfigByKeyObject]: FAILED to read Object " + std::string(c[0])).c_str());
    }
}

TEST_F(StoredByKey, ExpertMembersComeFromTheElectricalConfiguration) {
    const char* const unreadable[] = {nullptr, "{\"Expert\":{\"Sag\":{}}}", "{\"ElectricalConfiguration\":{\"Expert\":[]}}"};
    for (const char* document : unreadable) {
        if (document) writeFile("/home/nvram/zt4config.json", document);
        zt4test::clearLog();
        expectResult(readJSONZT4UserConfigExpertByKeyObject("Sag"), nullptr,
                     "error.[readJSONZT4UserConfigExpertByKeyObject]: expert NULL");
    }
    writeFile("/home/nvram/zt4config.json",
              "{\"ElectricalConfiguration\":{\"Expert\":{\"Sag\":{\"Enable\":0},\"Connectors\":[]}}}");
    zt4test::clearLog();
    expectResult(readJSONZT4UserConfigExpertByKeyObject("Sag"), "{\"Enable\":0}", nullptr);
    expectResult(readJSONZT4UserConfigExpertByKeyObject("Connectors"), "[]", nullptr);
    expectResult(readJSONZT4UserConfigExpertByKeyObject("Swell"),
                 "{\"Enable\":1,\"Phase\":[{\"Enable\":1},{\"Enable\":1},{\"Enable\":1}],\"RateLevel\":1.0}",
                 "error.[readJSONZT4UserConfigExpertByKeyObject]: FAILED to read Object Swell");
}

struct SystemCase {
    json_t* (*read)(const char*);
    std::string name, path, documentNull;
};

class SystemByKey : public zt4test::DeviceTest, public ::testing::WithParamInterface<SystemCase> {};

TEST_P(SystemByKey, ReadsItsDocumentWithoutDefaults) {
    const SystemCase& c = GetParam();
    const std::string prefix = "error.[" + c.name + "]: ";
    expectResult(c.read("Device"), nullptr, (prefix + c.documentNull).c_str());
    writeFile(c.path, "{\"Device\":{\"Serial\":\"A1\"},\"Web\":{\"Debug\":1}}");
    zt4test::clearLog();
    expectResult(c.read("Device"), "{\"Serial\":\"A1\"}", nullptr);
    expectResult(c.read("Modbus"), nullptr, (prefix + "FAILED to read Object Modbus").c_str());
    expectResult(c.read(nullptr), nullptr, (prefix + "key NULL").c_str());
}

INSTANTIATE_TEST_SUITE_P(Documents, SystemByKey, ::testing::Values(
    SystemCase{readJSONZT4SystemByKeyObject, "readJSONZT4SystemByKeyObject", "/home/nvram/zt4system.json", "zt4 NULL"},
    SystemCase{readJSONZT4FactorySystemByKeyObject, "readJSONZT4FactorySystemByKeyObject",
               "/etc/zt4system_factory.json", "zt4systemfactory NULL"}));

}  // namespace
