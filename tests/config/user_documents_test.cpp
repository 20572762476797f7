// Taking up a candidate user document, what depends on device files or on no stored document at
// all, and the tool's user commands.
#include <syslog.h>

#include <cstdlib>
#include <string>

#include "config/v1/user_checks.hpp"
#include "support/cli.hpp"
#include "support/harness.hpp"
#include "zt4config.h"

namespace {

constexpr const char* kUserFile = "/home/nvram/zt4config.json";
constexpr const char* kStored = "{\"Syntax\": {\"Version\": 1}, \"Web\": {\"Language\": \"fr\"}}\n";

class UserDocument : public zt4test::DeviceTest {
protected:
    void SetUp() override {
        DeviceTest::SetUp();
        writeFile(kUserFile, kStored);
    }
    // The example device's user document as a candidate file, with member `key` of `section` (or
    // of the document) set to `value`.
    std::string candidate(const char* section = nullptr, const char* key = nullptr, const char* value = nullptr) {
        json_t* document = json_load_file(ZT4_EXAMPLE_DEVICE "/home/nvram/zt4config.json", JSON_PRESERVE_ORDER, nullptr);
        json_t* parent = section ? json_object_get(document, section) : document;
        if (key) json_object_set_new(parent, key, json_loads(value, JSON_DECODE_ANY, nullptr));
        const std::string file = path("/var/tmp/candidate.json");
        EXPECT_EQ(json_dump_file(document, file.c_str(), JSON_INDENT(2) | JSON_PRESERVE_ORDER), 0);
        json_decref(document);
        return file;
    }
};

TEST_F(UserDocument, ACompliantCandidateIsStoredFilteredWithoutTheTemporaryFile) {
    const std::string file = candidate(nullptr, "Debug", "3");
    std::uint8_t section = 9;
    ASSERT_EQ(checkComplianceUserConfigFile(file.c_str(), &section), 0) << zt4test::logDump();
    EXPECT_EQ(section, 9);
    EXPECT_TRUE(zt4test::logged("[checkComplianceUserConfigFile]: Check compliance User configuration file for syntax "
                                "version 1", LOG_INFO));
    EXPECT_EQ(zt4test::loggedCount("renamed successfully"), 0);
    json_t* stored = zt4test::parse(readFile(kUserFile).c_str());
    json_t* expected = json_load_file(ZT4_EXAMPLE_DEVICE "/home/nvram/zt4config.json", 0, nullptr);
    EXPECT_EQ(zt4test::compact(stored), zt4test::compact(expected));
    EXPECT_EQ(readFile(kUserFile).substr(0, 31), "{\n" + std::string(17, ' ') + "\"Syntax\": {\n");
    json_decref(expected);
    json_decref(stored);
    // A document that cannot be written, and no candidate at all.
    removeFile(kUserFile);
    writeFile(std::string(kUserFile) + "/keep", "x");
    EXPECT_EQ(checkComplianceUserConfigFile(file.c_str(), &section), -1);
    EXPECT_EQ(checkComplianceUserConfigFile(nullptr, &section), -1);
    EXPECT_TRUE(zt4test::logged("error.[checkComplianceUserConfigFile]: path NULL", LOG_ERR));
    EXPECT_EQ(section, 9);
}

// The radio identifiers and the access point's name come from device files; without them the
// defaults are empty.
TEST_F(UserDocument, DeviceBoundDefaultsWithoutTheirFiles) {
    std::int8_t status = 0;
    json_t* radio = checkJSONZT4UserConfigRadioLoRaSyntaxVersion1(nullptr, &status);
    json_t* wifi = checkJSONZT4UserConfigWiFiSyntaxVersion1(nullptr, &status);
    EXPECT_EQ(zt4test::compact(json_object_get(radio, "APPKEY")) + zt4test::compact(json_object_get(radio, "APPEUI")), "\"\"\"\"");
    EXPECT_EQ(zt4test::compact(json_object_get(wifi, "SSID")), "\"\"");
    std::string lines;
    for (const auto& entry : zt4test::capturedLog()) {
        if (entry.text.rfind("error.[check", 0) == 0) lines += std::to_string(entry.priority) + entry.text + "\n";
    }
    EXPECT_EQ(lines, "3error.[checkJSONZT4UserConfigRadioLoRaSyntaxVersion1] FAILED to open file '" + path("/var/tmp/radioappkey") +
                         "'\n3error.[checkJSONZT4UserConfigRadioLoRaSyntaxVersion1] FAILED to open file '" +
                         path("/var/tmp/radioappeui") + "'\n3error.[checkJSONZT4UserConfigWiFiSyntaxVersion1]: Failed to get SSID\n");
    json_decref(wifi);
    json_decref(radio);
}

// Only a band named exactly is passed on to the radio.
TEST_F(UserDocument, RadioBandFile) {
    for (const char* band : {"US-915", "EU-868 Europe"}) {
        json_t* radio = json_pack("{s:i,s:i,s:i,s:s,s:s,s:s}", "Enable", 1, "Period", 10, "FrameFormat", 1, "Band", band,
                                  "APPKEY", "", "APPEUI", "");
        EXPECT_EQ(writeJSONZT4UserConfigRadioLoRaSyntaxVersion1(radio), 0) << zt4test::logDump();
        EXPECT_EQ(readFile("/home/nvram/regionbandlora"), "US-915\n");
        json_decref(radio);
    }
}

// Without a stored document the version reads as 0, whose readers find nothing, and the version-1
// readers and writers name the section they could not read.
TEST_F(UserDocument, WithoutAStoredDocument) {
    removeFile(kUserFile);
    EXPECT_EQ(readJSONZT4ConfigWeb(), nullptr);
    EXPECT_TRUE(zt4test::logged("error.[readZT4UserConfigFileSyntaxVersion]: Failed to read User configuration file", LOG_ERR));
    EXPECT_TRUE(zt4test::logged("error.[readJSONZT4UserConfigWebSyntaxVersion0]: zt4 NULL", LOG_ERR));
    EXPECT_EQ(readJSONZT4UserConfigRadioLoRaSyntaxVersion1(), nullptr);
    EXPECT_TRUE(zt4test::logged("error.[readJSONZT4UserConfigRadioLoRaSyntaxVersion1]: FAILED to get key RadioLoRa config", LOG_ERR));
    writeFile("/home/nvram/hostapd.conf", "ssid=ZT4-0042\n");
    const struct {
        int (*write)(json_t*);
        const char *name, *line;
    } writers[] = {{writeJSONZT4UserConfigWebSyntaxVersion1, "Web", "web"}, {writeJSONZT4UserConfigRadioLoRaSyntaxVersion1, "RadioLoRa", "RadioLoRa"},
                   {writeJSONZT4UserConfigWiFiSyntaxVersion1, "WiFi", "WiFi"}, {writeJSONZT4UserConfigEthernetSyntaxVersion1, "Ethernet", "Ethernet"},
                   {writeJSONZT4UserConfigModbusSyntaxVersion1, "Modbus", "Modbus"}, {writeJSONZT4UserConfigBACnetSyntaxVersion1, "BACnet", "BACnet"}};
    for (const auto& w : writers) {
        json_t* empty = json_object();
        EXPECT_EQ(w.write(empty), -1) << w.name;
        EXPECT_TRUE(zt4test::logged("error.[writeJSONZT4UserConfig" + std::string(w.name) + "SyntaxVersion1]: FAILED to read " + w.line + " config", LOG_ERR)) << zt4test::logDump();
        json_decref(empty);
    }
    EXPECT_FALSE(exists(kUserFile));
}

struct CliCase {
    const char* arguments;  // "{candidate}" stands for a candidate file's path
    int status;
    const char* output;     // fragment of stdout and stderr together
    bool changed;           // the stored document changed
};
void PrintTo(const CliCase& c, std::ostream* out) { *out << c.arguments; }

class UserCommand : public UserDocument, public ::testing::WithParamInterface<CliCase> {};

TEST_P(UserCommand, ExitStatusOutputAndFile) {
    if (std::getenv("ZT4_CLI") == nullptr) GTEST_SKIP() << "ZT4_CLI not set";
    const CliCase& c = GetParam();
    std::string arguments = c.arguments;
    const std::size_t at = arguments.find("{candidate}");
    if (at != std::string::npos) {
        const std::size_t bad = arguments.find(" bad");
        arguments.replace(at, 11, bad == std::string::npos ? candidate() : candidate("Modbus", "SlaveID", "0"));
        if (bad != std::string::npos) arguments.erase(arguments.find(" bad"));
    }
    std::string output;
    EXPECT_EQ(zt4test::runCli(root(), arguments, output), c.status) << output;
    EXPECT_NE(output.find(c.output), std::string::npos) << output;
    EXPECT_EQ(readFile(kUserFile) != kStored, c.changed);
}

INSTANTIATE_TEST_SUITE_P(Arguments, UserCommand, ::testing::Values(
    CliCase{"get web", 0, "\"Language\": \"fr\"", false},
    CliCase{"get bacnet", 0, "\"Port\": 47808", false},
    CliCase{"get connector 2", 0, "\"CurrentTransformerModel\": 0", false},
    CliCase{"set web '{\"Language\": \"en\"}'", 0, "", true},
    CliCase{"set modbus '{\"RTUBaudrate\": 4800}'", 1, "INVALID Configuration Modbus", false},
    CliCase{"set web '{not json'", 2, "invalid JSON", false},
    CliCase{"set electrical '{}'", 2, "cannot be written", false},
    CliCase{"get connector 7", 2, "1 to 6", false},
    CliCase{"get nothing", 2, "unknown section", false},
    CliCase{"get", 2, "usage:", false},
    CliCase{"check {candidate}", 0, "ok", false},
    CliCase{"check {candidate} bad", 1, "6 Modbus", false},
    CliCase{"apply {candidate}", 0, "ok", true},
    CliCase{"apply {candidate} bad", 1, "6 Modbus", false}));

}  // namespace
