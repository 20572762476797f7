// Upgrade of the stored user document from the factory one, the radio frame-format and
// three-phase-count updates, and the rewrite of the flat file's static network lines.
#include <filesystem>

#include "common/json_ref.hpp"
#include "config/flat_fixture.hpp"
#include "zt4config.h"

namespace {

constexpr const char* kUserPath = "/home/nvram/zt4config.json";

class UpgradeTest : public zt4test::DeviceTest {
protected:
    void SetUp() override {
        DeviceTest::SetUp();
        std::filesystem::copy(ZT4_EXAMPLE_DEVICE, root(), std::filesystem::copy_options::recursive | std::filesystem::copy_options::overwrite_existing);
    }
    json_t* userDocument() const { return zt4test::parse(readFile(kUserPath).c_str()); }
    std::string userMember(const char* section, const char* key, const char* inner = nullptr) const {
        zt4::JsonRef document(userDocument());
        json_t* member = json_object_get(json_object_get(document.get(), section), key);
        return zt4test::compact(inner != nullptr ? json_object_get(member, inner) : member);
    }
    // Stores the example user document after `edit`, compactly, so that any rewrite shows.
    template <class Edit>
    void storeUser(Edit edit) const {
        zt4::JsonRef document(userDocument());
        edit(document.get());
        char* text = json_dumps(document.get(), JSON_PRESERVE_ORDER | JSON_COMPACT);
        writeFile(kUserPath, text);
        free(text);
        zt4test::clearLog();
    }
};

TEST_F(UpgradeTest, AMissingSectionComesWholeFromTheFactoryAMissingKeyInAKeptSectionStaysMissing) {
    storeUser([](json_t* document) {
        json_object_del(document, "BACnet");
        json_object_del(json_object_get(document, "Modbus"), "SlaveID");
        json_object_set_new(json_object_get(document, "Web"), "Language", json_string("fr"));
    });
    ASSERT_EQ(upgradeJSONZT4ConfigFile(), 0) << zt4test::logDump();
    EXPECT_EQ((userMember("BACnet", "DeviceName")), R"("Kelvane")");
    EXPECT_EQ((userMember("Modbus", "SlaveID")), "(null)");
    EXPECT_EQ((userMember("Web", "Language")), R"("fr")");
    // Written the way the library writes documents, even where nothing was missing.
    EXPECT_NE(readFile(kUserPath).find("\n                 \"Web\""), std::string::npos);
}

TEST_F(UpgradeTest, FailuresNameTheFileAndWriteNothing) {
    const std::string factory = path("/etc/zt4config_factory_v1.json"), user = path(kUserPath);
    writeFile(kUserPath, "[1]");
    EXPECT_EQ(upgradeJSONZT4UserConfigFileSyntaxVersion1(), -1);
    EXPECT_TRUE(zt4test::logged("error.[upgradeJSONZT4UserConfigFileSyntaxVersion1]: FAILED to merge files '" + factory + "' '" + user + "'", LOG_ERR));
    EXPECT_EQ(readFile(kUserPath), "[1]");
    removeFile("/etc/zt4config_factory_v1.json");
    EXPECT_EQ(upgradeJSONZT4UserConfigFileSyntaxVersion1(), -1);
    EXPECT_TRUE(zt4test::logged("error.[upgradeJSONZT4UserConfigFileSyntaxVersion1]: FAILED reading file '" + factory + "'", LOG_ERR));
    removeFile(kUserPath);
    EXPECT_EQ(upgradeJSONZT4UserConfigFileSyntaxVersion1(), -1);
    EXPECT_TRUE(zt4test::logged("error.[upgradeJSONZT4UserConfigFileSyntaxVersion1]: FAILED reading file '" + user + "'", LOG_ERR));
}

TEST_F(UpgradeTest, TransmitModeSetsTheFrameFormatAndWritesOnlyAChange) {
    const int cases[][4] = {  // stored, mode, expected, written
        {2, 1, 3, 1}, {3, 1, 3, 0}, {2, 0, 2, 0}, {3, 0, 1, 1}, {1, 1, 3, 1}, {0, 1, 3, 1}, {3, 2, 3, 0}, {1, 0, 1, 0}};
    for (const auto& c : cases) {
        storeUser([&](json_t* document) { json_object_set_new(json_object_get(document, "RadioLoRa"), "FrameFormat", json_integer(c[0])); });
        const std::string before = readFile(kUserPath);
        EXPECT_EQ(updateJSONZT4ConfigRadioTransmitMode(static_cast<uint8_t>(c[1])), 0) << zt4test::logDump();
        EXPECT_EQ((userMember("RadioLoRa", "FrameFormat")), std::to_string(c[2])) << c[0] << " mode " << c[1];
        EXPECT_EQ(readFile(kUserPath) != before, c[3] == 1) << c[0] << " mode " << c[1];
    }
    // A section that its writer refuses is not updated.
    storeUser([](json_t* document) { json_object_set_new(json_object_get(document, "RadioLoRa"), "Band", json_string("XX")); });
    EXPECT_EQ(updateJSONZT4ConfigRadioTransmitMode(1), -1);
    EXPECT_TRUE(zt4test::logged("error.[updateJSONZT4UserConfigRadioLoRaFrameFormatSyntaxVersion1]: FAILED to update RadioLoRa config", LOG_ERR));
    storeUser([](json_t* document) { json_object_del(json_object_get(document, "RadioLoRa"), "FrameFormat"); });
    EXPECT_EQ(updateJSONZT4ConfigRadioTransmitMode(1), -1);
    EXPECT_TRUE(zt4test::logged("error.[updateJSONZT4UserConfigRadioLoRaFrameFormatSyntaxVersion1]: FrameFormat NULL", LOG_ERR));
}

TEST_F(UpgradeTest, ThreephaseCountIsWrittenOnlyWhenItDiffers) {
    const char* const function = "error.[updateJSONZT4UserConfigExpertNumberConnectorThreephaseSyntaxVersion1]: ";
    const std::tuple<const char*, int, int, const char*, std::string> cases[] = {  // stored, count, result, stored after, line
        {"3", 3, 0, "3", ""},
        {"3", 5, 0, "5", "Read Number Connector Threephase 3.Expect Number Connector Threephase 5"},
        {"6", 0, 0, "0", "Read Number Connector Threephase 6.Expect Number Connector Threephase 0"},
        {"", 2, -1, "(null)", std::string(function) + "read NumberConnectorThreephase NULL"},
        {"\"3\"", 2, -1, R"("3")", std::string(function) + "NumberConnectorThreephase NOT INTEGER"},
    };
    for (const auto& [stored, count, result, after, line] : cases) {
        storeUser([&](json_t* document) {
            json_t* expert = json_object_get(json_object_get(document, "ElectricalConfiguration"), "Expert");
            json_object_del(expert, "NumberConnectorThreephase");
            if (*stored) json_object_set_new(expert, "NumberConnectorThreephase", json_loads(stored, JSON_DECODE_ANY, nullptr));
        });
        const std::string before = readFile(kUserPath);
        EXPECT_EQ(updateJSONZT4ConfigSetupConnectors(static_cast<uint8_t>(count)), result) << stored;
        EXPECT_EQ(userMember("ElectricalConfiguration", "Expert", "NumberConnectorThreephase"), after) << stored;
        EXPECT_EQ(readFile(kUserPath) != before, *after != *stored && result == 0) << stored;
        if (line.empty()) { EXPECT_EQ(zt4test::capturedLog().size(), 0u) << zt4test::logDump(); }
        else { EXPECT_TRUE(zt4test::logged(line, result == 0 ? LOG_INFO : LOG_ERR)) << zt4test::logDump(); }
    }
    storeUser([](json_t* document) {
        json_object_update(json_object_get(json_object_get(document, "ElectricalConfiguration"), "Expert"), zt4::JsonRef(json_pack("{sisi}", "Sag", 7, "NumberConnectorThreephase", 3)).get());
    });
    EXPECT_EQ(updateJSONZT4ConfigSetupConnectors(1), -1);
    EXPECT_TRUE(zt4test::logged(std::string(function) + "FAILED to update number Connector Threephase config", LOG_ERR));
}

// ---- Static network lines of the flat file ---------------------------------------------------

// Rows of data/upgrade_flat_lines.json: the update, its document, the flat file before (null: none)
// and after, the result and error lines; with "copyIsDirectory" the copy cannot be created.
class FlatFileTest : public UpgradeTest, public ::testing::WithParamInterface<const json_t*> {};

TEST_P(FlatFileTest, RewritesOnlyTheSettingsLines) {
    const json_t* row = GetParam();
    const bool wifi = std::string(zt4test::text(row, "update")) == "updateZT4ConfigWiFi";
    const int result = zt4test::number(row, "result");
    if (zt4test::text(row, "before") != nullptr) writeFile("/home/nvram/zt4.cfg", zt4test::text(row, "before"));
    if (json_is_true(json_object_get(row, "copyIsDirectory"))) std::filesystem::create_directories(path("/home/nvram/zt4.cfg.new"));
    zt4test::clearLog();
    json_t* document = json_is_object(json_object_get(row, "document")) ? json_object_get(row, "document") : nullptr;
    EXPECT_EQ(wifi ? updateZT4ConfigWiFi(document) : updateZT4ConfigEthernet(document), result) << zt4test::logDump();
    EXPECT_EQ(readFile("/home/nvram/zt4.cfg"), zt4test::text(row, "after"));
    zt4test::expectLogged(row, "lines", LOG_ERR, root());
    EXPECT_EQ(exists("/home/nvram/zt4.cfg.new"), json_is_true(json_object_get(row, "copyIsDirectory")));
    const std::string function = wifi ? "updateZT4UserConfigWiFiSyntaxVersion1" : "updateZT4UserConfigEthernetSyntaxVersion1";
    EXPECT_EQ(zt4test::logged("[" + function + "]: File '" + path("/home/nvram/zt4.cfg.new") + "' renamed successfully", LOG_INFO), result == 0);
    if (zt4test::text(row, "before") == nullptr) {
        EXPECT_TRUE(zt4test::logged("error.[" + function + "]: FAILED open file '" + path("/home/nvram/zt4.cfg") + "'. (No such file or directory)", LOG_ERR));
    }
}

INSTANTIATE_TEST_SUITE_P(Lines, FlatFileTest, ::testing::ValuesIn(zt4test::dataRows("upgrade_flat_lines.json")), zt4test::rowName);

}  // namespace
