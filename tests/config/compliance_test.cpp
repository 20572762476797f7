#include <sys/wait.h>
#include <syslog.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

#include "support/cli.hpp"
#include "support/harness.hpp"
#include "zt4config/compliance.h"
#include "zt4config/json.h"

namespace {

using zt4test::logged;

std::string exampleText(const std::string& devicePath) {
    std::ifstream in(std::string(ZT4_EXAMPLE_DEVICE) + devicePath);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// A JSON value of any kind, scalars included.
json_t* value(const char* text) {
    json_error_t error;
    json_t* parsed = json_loads(text, JSON_DECODE_ANY, &error);
    EXPECT_NE(parsed, nullptr) << text;
    return parsed;
}

// Replaces (or, for a null `value`, removes) the member at `path` ("A/B/0/C": array indexes
// as numbers) of `document` by the JSON text `value`.
void mutate(json_t* document, const std::string& path, const char* text) {
    json_t* parent = document;
    std::string rest = path;
    for (std::size_t slash; (slash = rest.find('/')) != std::string::npos; rest.erase(0, slash + 1)) {
        const std::string step = rest.substr(0, slash);
        parent = json_is_array(parent) ? json_array_get(parent, std::strtoul(step.c_str(), nullptr, 10))
                                       : json_object_get(parent, step.c_str());
    }
    ASSERT_NE(parent, nullptr) << path;
    if (json_is_array(parent)) {
        const std::size_t index = std::strtoul(rest.c_str(), nullptr, 10);
        if (text == nullptr) {
            ASSERT_EQ(json_array_remove(parent, index), 0) << path;
        } else {
            ASSERT_EQ(json_array_set_new(parent, index, value(text)), 0) << path;
        }
    } else if (text == nullptr) {
        ASSERT_EQ(json_object_del(parent, rest.c_str()), 0) << path;
    } else {
        ASSERT_EQ(json_object_set_new(parent, rest.c_str(), value(text)), 0) << path;
    }
}

class ComplianceTest : public zt4test::DeviceTest {
protected:
    static constexpr const char* kUserPath = "/home/nvram/zt4config.json";
    // The example device's user document with one change.
    json_t* candidate(const char* path = nullptr, const char* value = nullptr, bool remove = false) {
        json_t* document = zt4test::parse(exampleText(kUserPath).c_str());
        if (path != nullptr) mutate(document, path, remove ? nullptr : value);
        return document;
    }
};

TEST_F(ComplianceTest, EveryUserDocumentOfTheExampleDeviceComplies) {
    for (const char* file : {"/home/nvram/zt4config.json", "/etc/zt4config_factory.json",
                             "/etc/zt4config_factory_v1.json"}) {
        json_t* document = zt4test::parse(exampleText(file).c_str());
        uint8_t section = 0;
        EXPECT_EQ(checkComplianceUserConfigFileSyntaxVersion1(document, &section), 0)
            << file << "\n" << zt4test::logDump();
        EXPECT_EQ(section, 0) << "the byte is written only on failure";
        json_decref(document);
    }
}

struct FaultCase {
    const char* name;
    const char* path;
    const char* value;   // JSON text; null removes the member
    uint8_t section;     // 0: the document still complies
    const char* line;    // a line that must be logged, or null
    const char* typedLine = nullptr;  // the typed check's line, logged just before `line`
};

class Fault : public ComplianceTest, public ::testing::WithParamInterface<FaultCase> {};

TEST_P(Fault, ReportsTheFirstFailingSection) {
    const FaultCase& c = GetParam();
    json_t* document = candidate(c.path, c.value, c.value == nullptr);
    uint8_t section = 0;
    EXPECT_EQ(checkComplianceUserConfigFileSyntaxVersion1(document, &section), c.section == 0 ? 0 : -1);
    EXPECT_EQ(section, c.section);
    if (c.line != nullptr) {
        EXPECT_TRUE(logged(c.line, LOG_ERR)) << c.line << "\n" << zt4test::logDump();
    }
    if (c.typedLine != nullptr) {
        const auto& log = zt4test::capturedLog();
        std::size_t at = 0;
        while (at < log.size() && log[at].text != c.line) ++at;
        ASSERT_TRUE(at > 0 && at < log.size()) << zt4test::logDump();
        EXPECT_EQ(log[at - 1].text, c.typedLine) << zt4test::logDump();
    }
    json_decref(document);
}

const FaultCase kFaults[] = {
    {"NoSyntax", "Syntax", nullptr, 1, "error.[complianceJSONZT4UserConfigSyntaxVersion1]: Syntax NULL"},
    {"SyntaxTwo", "Syntax/Version", "2", 1,
     "error.[complianceJSONZT4UserConfigSyntaxVersion1]: Syntax Version 2 INVALID"},
    {"SyntaxText", "Syntax/Version", "\"1\"", 1,
     "error.[complianceJSONZT4UserConfigSyntaxVersion1]: Syntax Version NOT JSON_INTEGER"},
    {"LanguageCutToSeven", "Web/Language", "\"fr-FR\"", 2,
     "error.[complianceJSONZT4UserConfigWebSyntaxVersion1]: Language fr-FR INVALID"},
    {"BandComparedOnSix", "RadioLoRa/Band", "\"EU-868-extra\"", 0, nullptr},
    {"BandUnknown", "RadioLoRa/Band", "\"CN-470\"", 3,
     "error.[complianceJSONZT4UserConfigRadioLoRaSyntaxVersion1]: Band 'CN-470' INVALID"},
    {"FrameFormat", "RadioLoRa/FrameFormat", "4", 3,
     "error.[complianceJSONZT4UserConfigRadioLoRaSyntaxVersion1]: FrameFormat 4 INVALID"},
    {"PeriodTooShort", "RadioLoRa/Period", "9", 3,
     "error.[complianceJSONZT4UserConfigRadioLoRaSyntaxVersion1]: Period INVALID",
     "error.[json_check_integer_superior]: Period value INVALID (9)"},
    {"RadioEnableTwo", "RadioLoRa/Enable", "2", 3,
     "error.[complianceJSONZT4UserConfigRadioLoRaSyntaxVersion1]: Enable INVALID",
     "error.[json_check_boolean]: Enable value INVALID (2)"},
    {"AppKeyEmpty", "RadioLoRa/APPKEY", "\"\"", 0, nullptr},
    {"AppKeyAbsent", "RadioLoRa/APPKEY", nullptr, 0, nullptr},
    {"AppKeyInteger", "RadioLoRa/APPKEY", "5", 3,
     "error.[complianceJSONZT4UserConfigRadioLoRaSyntaxVersion1]: APPKEY NOT JSON_STRING"},
    {"AppKeyShort", "RadioLoRa/APPKEY", "\"2B:7E:15\"", 3,
     "error.[complianceJSONZT4UserConfigRadioLoRaSyntaxVersion1]: APPKEY INVALID"},
    {"AppEuiEmpty", "RadioLoRa/APPEUI", "\"\"", 3,
     "error.[complianceJSONZT4UserConfigRadioLoRaSyntaxVersion1]: APPEUI EMPTY"},
    {"NoDhcp", "WiFi/DHCP", nullptr, 4, "error.[complianceJSONZT4UserConfigWiFiSyntaxVersion1]: DHCP NULL"},
    {"DhcpAddress", "WiFi/DHCP/Netmask", "\"255.255.255\"", 4,
     "error.[complianceJSONZT4UserConfigWiFiSyntaxVersion1]: Netmask INVALID",
     "error.[json_check_ipv4]: Netmask value INVALID"},
    {"DnsEmpty", "Ethernet/Dns", "\"\"", 0, nullptr},
    {"DnsText", "Ethernet/Dns", "\"dns\"", 5, "error.[complianceJSONZT4UserConfigEthernetSyntaxVersion1]: Dns INVALID"},
    {"Addressing", "Ethernet/IPv4Addressing", "\"Auto\"", 5,
     "error.[complianceJSONZT4UserConfigEthernetSyntaxVersion1]: IPv4Addressing INVALID",
     "error.[json_check_ipv4_addressing]: IPv4Addressing value Auto INVALID"},
    {"ParityNamedRtu", "Modbus/Parity", "5", 6,
     "error.[complianceJSONZT4UserConfigModbusSyntaxVersion1]: RTU Parity 5 INVALID"},
    {"FirstMissingKeyOnly", "Modbus/Enable", nullptr, 6,
     "error.[complianceJSONZT4UserConfigModbusSyntaxVersion1]: Enable NULL"},
    {"NoBACnet", "BACnet", nullptr, 7, "error.[complianceJSONZT4UserConfigBACnetSyntaxVersion1]: BACnet NULL"},
    {"BACnetPort", "BACnet/Port", "80", 7, "error.[complianceJSONZT4UserConfigBACnetSyntaxVersion1]: Port INVALID",
     "error.[json_check_integer_range]: Port value INVALID (80)"},
    {"FiveConnectors", "ElectricalConfiguration/Connectors/5", nullptr, 8,
     "error.[complianceJSONZT4UserConfigConnectorsSyntaxVersion1]: Array size Connectors 5 INVALID"},
    {"LineFrequencyInteger", "ElectricalConfiguration/LineFrequency", "60", 0, nullptr},
    {"LineFrequencyOff", "ElectricalConfiguration/LineFrequency", "50.5", 8,
     "error.[complianceJSONZT4UserConfigElectricalConfigurationSyntaxVersion1]: LineFrequency 50.500000 INVALID"},
    {"TwoChannels", "ElectricalConfiguration/Connectors/3/Channel/2", nullptr, 8,
     "error.[complianceJSONZT4UserConfigConnectorSyntaxVersion1]: Array size Connector Channel 2 INVALID"},
    {"Direction", "ElectricalConfiguration/Connectors/0/Channel/0/CurrentTransformer/1/Direction", "2", 8,
     "error.[complianceJSONZT4UserConfigConnectorChannelCommonSyntaxVersion1]: CurrentTransformer Direction 2 INVALID"},
    {"TwoTransformers", "ElectricalConfiguration/Connectors/0/Channel/0/CurrentTransformer/2", nullptr, 8,
     "error.[complianceJSONZT4UserConfigConnectorChannelCommonSyntaxVersion1]: CurrentTransformer size 2 is incorrect"},
    {"MonophasePhase", "ElectricalConfiguration/Connectors/3/Channel/1/Phase", "4", 8,
     "error.[complianceJSONZT4UserConfigConnectorsSyntaxVersion1]: Failed to check compliance section Connector 4 in syntax version 1"},
    {"MonophasePhaseOwnRule", "ElectricalConfiguration/Connectors/3/Channel/1/Phase", "4", 8,
     "error.[complianceJSONZT4UserConfigConnectorChannel1PSyntaxVersion1]: Phase INVALID",
     "error.[json_check_integer_range]: Phase value INVALID (4)"},
    {"MonophaseNameCommonRule", "ElectricalConfiguration/Connectors/3/Channel/2/Name", nullptr, 8,
     "error.[complianceJSONZT4UserConfigConnectorChannelCommonSyntaxVersion1]: Name NULL"},
    {"SagEnableSharedRule", "ElectricalConfiguration/Expert/Sag/Enable", nullptr, 8,
     "error.[complianceJSONZT4UserConfigExpertSagSwellSyntaxVersion1]: Enable NULL"},
    {"NoVoltageTransformer", "ElectricalConfiguration/VoltageTransformer", nullptr, 8,
     "error.[complianceJSONZT4UserConfigElectricalConfigurationSyntaxVersion1]: VoltageTransformer NULL"},
    {"NoExpert", "ElectricalConfiguration/Expert", nullptr, 8,
     "error.[complianceJSONZT4UserConfigElectricalConfigurationSyntaxVersion1]: jsonExpert NULL"},
    {"SagFull", "ElectricalConfiguration/Expert/Sag/RateLevel", "100", 0, nullptr},
    {"SagAbove", "ElectricalConfiguration/Expert/Sag/RateLevel", "100.5", 8,
     "error.[complianceJSONZT4UserConfigExpertSagSwellSyntaxVersion1]: RateLevel 100.500000 % INVALID"},
    {"SwellPhase", "ElectricalConfiguration/Expert/Swell/Phase/2/Enable", "3", 8,
     "error.[complianceJSONZT4UserConfigExpertSagSwellSyntaxVersion1]: Phase 3 Enable INVALID"},
    {"SagTwoPhases", "ElectricalConfiguration/Expert/Sag/Phase/2", nullptr, 8,
     "error.[complianceJSONZT4UserConfigExpertSagSwellSyntaxVersion1]: Phase array size 2 is incorrect"},
    {"FiveExpertConnectors", "ElectricalConfiguration/Expert/Connectors/4", nullptr, 8,
     "error.[complianceJSONZT4UserConfigExpertSyntaxVersion1]: Failed to check compliance section Expert Connectors in syntax version 1"},
    {"ThreephaseCount", "ElectricalConfiguration/Expert/NumberConnectorThreephase", "7", 8,
     "error.[complianceJSONZT4UserConfigExpertSyntaxVersion1]: NumberConnectorThreephase INVALID"},
    {"NominalVoltage", "ElectricalConfiguration/NominalVoltage", "99.9", 8,
     "error.[complianceJSONZT4UserConfigElectricalConfigurationSyntaxVersion1]: NominalVoltage INVALID",
     "error.[json_check_float_superior]: NominalVoltage value INVALID (99.900000)"},
    {"AverageEnable", "ElectricalConfiguration/Expert/Connectors/0/CurrentAverageMax/Enable", nullptr, 8,
     "error.[complianceJSONZT4UserConfigExpertCurrentAverageMaxSyntaxVersion1]: Enable NULL"},
    {"ExpertConnector", "ElectricalConfiguration/Expert/Connectors/2/THDEnable", "2", 8,
     "error.[complianceJSONZT4UserConfigExpertConnectorsSyntaxVersion1]: Failed to check compliance section ConnectorExpert Connector 3 in syntax version 1"},
};

std::string faultName(const ::testing::TestParamInfo<FaultCase>& fault) { return fault.param.name; }

INSTANTIATE_TEST_SUITE_P(Documents, Fault, ::testing::ValuesIn(kFaults), faultName);

// With two faults in one section, the key that compliance reads first is the one reported: a
// connector's channels before its mode, the radio's application EUI before its key.
TEST_F(ComplianceTest, ReportsTheFaultOfTheKeyReadFirst) {
    struct Case {
        const char* paths[2];
        const char* values[2];  // null removes the member
        const char* reported;
        const char* unreported;
    } cases[] = {
        {{"ElectricalConfiguration/Connectors/3/Mode", "ElectricalConfiguration/Connectors/3/Channel/2"},
         {"9", nullptr},
         "error.[complianceJSONZT4UserConfigConnectorSyntaxVersion1]: Array size Connector Channel 2 INVALID",
         "Mode value INVALID"},
        {{"RadioLoRa/APPKEY", "RadioLoRa/APPEUI"},
         {"5", "\"\""},
         "error.[complianceJSONZT4UserConfigRadioLoRaSyntaxVersion1]: APPEUI EMPTY",
         "APPKEY"},
    };
    for (const Case& c : cases) {
        zt4test::clearLog();
        json_t* document = candidate();
        for (int i = 0; i < 2; ++i) mutate(document, c.paths[i], c.values[i]);
        uint8_t section = 0;
        EXPECT_EQ(checkComplianceUserConfigFileSyntaxVersion1(document, &section), -1);
        EXPECT_TRUE(logged(c.reported, LOG_ERR)) << c.reported << "\n" << zt4test::logDump();
        EXPECT_EQ(zt4test::loggedCount(c.unreported), 0) << zt4test::logDump();
        json_decref(document);
    }
}

// ---- Taking up a candidate file ------------------------------------------------------------

class TakeUp : public ComplianceTest {
protected:
    void SetUp() override {
        ComplianceTest::SetUp();
        writeFile(kUserPath, kStored);
    }
    // Writes `document` (released) as the candidate file; returns its host path.
    std::string candidateFile(json_t* document, const char* name = "candidate.json") {
        const std::string file = path(std::string("/var/tmp/") + name);
        EXPECT_EQ(json_dump_file(document, file.c_str(), JSON_INDENT(2)), 0);
        json_decref(document);
        return file;
    }
    static constexpr const char* kStored = "{\"Syntax\": {\"Version\": 1}, \"Web\": {\"Language\": \"fr\"}}\n";
};

TEST_F(TakeUp, FailingCandidatesLeaveTheStoredDocumentAsItWas) {
    struct Case {
        const char* name;
        std::string file;
        uint8_t section;
        const char* line;
    };
    json_t* noWeb = candidate("Web", nullptr, true);
    json_t* version0 = candidate("Syntax", nullptr, true);
    writeFile("/var/tmp/broken.json", "{\"Web\": ");
    const Case cases[] = {
        {"invalid section", candidateFile(noWeb, "noweb.json"), 2,
         "error.[checkComplianceUserConfigFile]: FAILED to check compliance User configuration file"},
        {"version 0", candidateFile(version0, "version0.json"), 0,
         "error.[checkComplianceUserConfigFileSyntaxVersion0]: syntax version 0 is not supported"},
        {"not JSON", path("/var/tmp/broken.json"), 0, nullptr},
        {"missing file", path("/var/tmp/none.json"), 0, nullptr},
    };
    for (const Case& c : cases) {
        zt4test::clearLog();
        uint8_t section = 0;
        EXPECT_EQ(checkComplianceUserConfigFile(c.file.c_str(), &section), -1) << c.name;
        EXPECT_EQ(section, c.section) << c.name;
        EXPECT_EQ(readFile(kUserPath), kStored) << c.name;
        const std::string line = c.line ? c.line
                                         : "error.[checkComplianceUserConfigFile]: FAILED to open file " + c.file +
                                               " in JSON format";
        EXPECT_TRUE(logged(line)) << c.name << "\n" << zt4test::logDump();
    }
}

TEST_F(TakeUp, ACompliantCandidateIsStoredFiltered) {
    json_t* document = candidate("Debug", "3");
    mutate(document, "Web/Theme", "\"dark\"");
    const std::string file = candidateFile(document);
    uint8_t section = 0;
    ASSERT_EQ(checkComplianceUserConfigFile(file.c_str(), &section), 0) << zt4test::logDump();
    EXPECT_TRUE(logged("[checkComplianceUserConfigFile]: Check compliance User configuration file for syntax version 1",
                       LOG_INFO));
    json_t* stored = readJSONFile(path(kUserPath).c_str());
    json_t* expected = candidate();
    EXPECT_EQ(zt4test::compact(stored), zt4test::compact(expected));
    json_decref(expected);
    json_decref(stored);
}

// ---- The command-line tool ------------------------------------------------------------------

struct CliCase {
    const char* label;
    const char* command;    // "check" or "apply"
    const char* path;       // mutation of the example document, or null
    const char* value;
    int status;
    const char* output;     // fragment of stdout and stderr together
    bool stored;            // the candidate became the user document
};
void PrintTo(const CliCase& c, std::ostream* out) { *out << c.label; }

class CheckCli : public TakeUp, public ::testing::WithParamInterface<CliCase> {
protected:
    int run(const std::string& args, std::string& output) const {
        return zt4test::runCli(root(), args, output);
    }
};

TEST_P(CheckCli, ReportsTheFailingSectionAndStoresOnlyOnApply) {
    const CliCase& c = GetParam();
    if (std::getenv("ZT4_CLI") == nullptr) GTEST_SKIP() << "ZT4_CLI not set";
    const std::string file = candidateFile(candidate(c.path, c.value));
    std::string output;
    EXPECT_EQ(run(std::string(c.command) + " " + file, output), c.status) << output;
    EXPECT_NE(output.find(c.output), std::string::npos) << output;
    EXPECT_EQ(readFile(kUserPath) != kStored, c.stored);
}

INSTANTIATE_TEST_SUITE_P(Commands, CheckCli, ::testing::Values(
    CliCase{"check ok", "check", nullptr, nullptr, 0, "ok", false},
    CliCase{"check fault", "check", "Modbus/SlaveID", "0", 1, "6 Modbus", false},
    CliCase{"check message", "check", "ElectricalConfiguration/LineFrequency", "55", 1,
            "LineFrequency 55.000000 INVALID", false},
    CliCase{"apply ok", "apply", nullptr, nullptr, 0, "ok", true},
    CliCase{"apply fault", "apply", "BACnet/DeviceID", "0", 1, "7 BACnet", false}));

}  // namespace
