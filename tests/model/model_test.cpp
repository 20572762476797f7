// The metering record: catalogues, validators, queries, the readers on the example device, the dump.
#include <syslog.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "common/json_ref.hpp"
#include "json/table_file.hpp"
#include "support/harness.hpp"
#include "zt4config.h"

namespace {

TEST(Enumerations, TablesAccessorsAndValidators) {
    for (const zt4test::Row& row : zt4test::tableFile("model", "enumerations.tsv")) {
        const unsigned i = static_cast<unsigned>(std::stoul(row.at(1)));
        if (row[0] == "mode") {
            EXPECT_STREQ(getNameMode(i), row.at(2).c_str()) << i;
            EXPECT_TRUE(i > 6 || row[2] == Mode[i]) << i;
            continue;
        }
        EXPECT_STREQ(getNamePlier(i), row.at(2).c_str()) << i;
        EXPECT_STREQ(getRatePlier(i), row.at(3).c_str()) << i;
        EXPECT_EQ(getxPlier(i), std::stof(row.at(4))) << i;
        EXPECT_EQ(getAmpsPlier(i), std::stoul(row.at(5))) << i;
        EXPECT_TRUE(i > 8 || (row[2] == Plier[i].name && row[3] == Plier[i].rate && Plier[i].x == std::stof(row[4]) && Plier[i].amps == std::stoul(row[5])));
    }
#define V(expression, expected) {#expression, [] { return expression; }, expected}
    // The validators accept exactly their range and log nothing.
    const struct { const char* call; int (*run)(); int expected; } rows[] = {
        V(isConnectorValid(0), -1), V(isConnectorValid(1), 0), V(isConnectorValid(6), 0), V(isConnectorValid(7), -1), V(isChannelValid(0), -1),
        V(isChannelValid(1), 0), V(isChannelValid(4), 0), V(isChannelValid(5), -1), V(isEnableValid(-1), -1), V(isEnableValid(0), 0), V(isEnableValid(1), 0),
        V(isEnableValid(2), -1), V(isModeValid(0), 0), V(isModeValid(6), 0), V(isModeValid(7), -1), V(isModeEnabled(0), -1), V(isModeEnabled(-1), 0),
        V(isPhaseValid(0), -1), V(isPhaseValid(1), 0), V(isPhaseValid(3), 0), V(isPhaseValid(4), -1), V(isPlierValid(0), 0), V(isPlierValid(8), 0),
        V(isPlierValid(9), -1), V(isDirectionValid(-1), -1), V(isDirectionValid(0), 0), V(isDirectionValid(1), 0), V(isDirectionValid(2), -1),
        V(isXValid(0), -1), V(isXValid(1), 0), V(isXPlierValid(-0.0f), -1), V(isXPlierValid(1e-30f), 0), V(isXPlierValid(NAN), -1),
        V(isXFactorValid(-0.0f), 0), V(isXFactorValid(-1e-30f), -1), V(isXFactorValid(NAN), -1), V(isXGeneralValid(0.0f), -1), V(isXGeneralValid(1e-30f), 0),
        V(isXGeneralValid(INFINITY), 0)};
    zt4test::clearLog();
    for (const auto& row : rows) EXPECT_EQ(row.run(), row.expected) << row.call;
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
#undef V
}

struct Setting { unsigned connector, channel; uint8_t enable, mode; };  // channel 3: the neutral record

class Record : public zt4test::DeviceTest {
protected:
    void SetUp() override {
        DeviceTest::SetUp();
        restore();
    }
    void restore() {  // a fresh copy of the example device and a zeroed record
        std::filesystem::copy(ZT4_EXAMPLE_DEVICE, root(), std::filesystem::copy_options::recursive |
                                                              std::filesystem::copy_options::overwrite_existing);
        set({});
        zt4test::clearLog();
    }
    void set(std::initializer_list<Setting> settings) {
        std::memset(&data, 0, sizeof data);
        for (const Setting& s : settings) {
            data.connectors[s.connector].channels[s.channel].enable = s.enable;
            data.connectors[s.connector].channels[s.channel].mode = s.mode;
        }
    }
    zt4Data data;
};

TEST_F(Record, QueriesAnswerFromEnableAndModeAndRefuseBadArguments) {
    // Per row: any channel enabled; isChannelEnabled of the 18 channels; isConnectorEnabled of the 6 connectors, 1 for 0.
    const struct { std::initializer_list<Setting> settings; int any; const char* channels; const char* connectors; } rows[] = {
        {{}, 0, "000000000000000000", "000000"}, {{{5, 2, 1, 1}}, 1, "000000000000000001", "000001"},
        {{{0, 0, 1, 4}}, 1, "100000000000000000", "100000"},
        {{{2, 1, 1, 0}}, 0, "000000000000000000", "001000"},  // switched on but wired Disabled: the connector counts
        {{{3, 0, 0, 2}}, 0, "000000000000000000", "000000"}, {{{1, 1, 2, 1}}, 0, "000000000000000000", "000000"},
        {{{4, 3, 1, 1}}, 0, "000000000000000000", "000000"},  // the neutral record does not count
        {{{1, 2, 1, 3}, {4, 0, 1, 6}, {4, 1, 1, 0}}, 1, "000001000000100000", "010010"}};
    for (const auto& row : rows) {
        set(row.settings);
        EXPECT_EQ(isChannelsEnabled(data.connectors), row.any);
        for (unsigned g = 0; g < 18; ++g) EXPECT_EQ(isChannelEnabled(data.connectors, g), row.channels[g] - '0') << g;
        for (uint8_t c = 0; c < 6; ++c) EXPECT_EQ(isConnectorEnabled(data.connectors, c), row.connectors[c] == '1' ? 0 : -1) << +c;
    }
    const int threephase[] = {0, 0, 1, 0, 1, 0, 1, 0, 0};  // by mode: 2, 4 and 6
    for (unsigned g : {0u, 10u, 17u}) {
        for (uint8_t mode = 0; mode < 9; ++mode) {
            set({{g / 3, g % 3, 0, mode}});
            EXPECT_EQ(isModeThreephaseNonBalanced(data.connectors, g), threephase[mode]) << g << " " << +mode;
        }
    }
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
    EXPECT_EQ(isModeThreephaseNonBalanced(data.connectors, 18) + isModeThreephaseNonBalanced(data.connectors, UINT32_MAX) + isModeThreephaseNonBalanced(nullptr, 0), 0);
    set({{0, 0, 1, 1}, {2, 1, 1, 5}});
    EXPECT_EQ(isConnectorEnabled(data.connectors, 6), -1);
    EXPECT_TRUE(zt4test::logged("error.[isConnectorEnabled]: Connector ID 6 INVALID", LOG_ERR));
    EXPECT_EQ(isConnectorEnabled(data.connectors, 255) + isConnectorEnabled(nullptr, 0), -2);
    EXPECT_EQ(isChannelEnabled(data.connectors, 18) + isChannelEnabled(nullptr, 0) + isChannelsEnabled(nullptr), 0);
    EXPECT_EQ(zt4test::loggedCount("error.["), 6) << zt4test::logDump();
    zt4test::clearLog();
    debug_level = 3;
    EXPECT_EQ(isChannelEnabled(data.connectors, 7), 1);
    EXPECT_TRUE(zt4test::capturedLog().empty());
    debug_level = 4;
    EXPECT_EQ(isChannelEnabled(data.connectors, 7) - isChannelEnabled(data.connectors, 8), 1);
    EXPECT_TRUE(zt4test::logged(" [isChannelEnabled]: Channel [7] is enabled", LOG_INFO));
    EXPECT_TRUE(zt4test::logged(" [isChannelEnabled]: Channel [8] is disabled", LOG_INFO));
}

std::vector<std::string> infoLines() {
    std::vector<std::string> lines;
    for (const auto& entry : zt4test::capturedLog()) lines.insert(lines.end(), entry.priority == LOG_INFO ? 1 : 0, entry.text);
    return lines;
}

TEST_F(Record, DisplayWritesTheActiveChannelsAndEveryConnectorsOptions) {
    std::memcpy(data.setupModes, "\4\4\4\1\1\0", sizeof data.setupModes);  // modes 4, 4, 4, 1, 1, 0
    data.meterRunning = 1;
    ConnectorConfig& connector = data.connectors[1];
    connector.vtPrimary = 400.0f;
    connector.vtSecondary = 230.0f;
    connector.channels[2] = ChannelConfig{"Pump", 1, 1, 3, 2, 1, 1.5f, 100, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    connector.channels[0] = connector.channels[1] = connector.channels[2];
    connector.channels[0].mode = 0;    // on but in mode 0: not shown
    connector.channels[1].enable = 0;  // in a mode but off: not shown
    data.expert.connectors[0].channels[0] = ChannelExpert{0.0f, 1, 1, 0};  // read past the last connector: an active channel
    data.expert.connectors[1] = ConnectorExpert{1, 2, 1, 1, 30, 1, 3.5355f, {{}, {}, {20.0f, 1, 0, 1}}};  // 2: not enabled
    data.expert.nominalVoltage = 230.0f;
    data.expert.lineFrequency = 50.0f;
    data.expert.sagEnable = data.expert.sagCycle = 1;
    data.expert.sagRateLevel = data.expert.swellRateLevel = 10.0f;
    data.expert.sagLevel = 292.7422f;
    data.expert.swellLevel = 357.796f;
    DisplayZT4Param(&data);
    // The data file holds this dump, "--", then the other one's last lines (sag off, swell on, not running).
    std::vector<std::string> all;
    for (const zt4test::Row& row : zt4test::tableFile("model", "display.txt")) all.push_back(row.at(0));
    const auto cut = std::find(all.begin(), all.end(), "--");
    ASSERT_NE(cut, all.end());
    const std::vector<std::string> expected[2] = {{all.begin(), cut}, {cut + 1, all.end()}};
    EXPECT_EQ(infoLines(), expected[0]);
    zt4test::clearLog();
    data.meterRunning = data.expert.sagEnable = 0;
    data.expert.swellEnable = 1;
    DisplayZT4Param(&data);
    const std::vector<std::string> lines = infoLines();
    ASSERT_EQ(lines.size(), expected[0].size() - 2);  // no running line; sag 4 lines to 1, swell 1 to 3
    EXPECT_EQ(std::vector<std::string>(lines.end() - 4, lines.end()), expected[1]);
}

const char* const kUser = "/home/nvram/zt4config.json";
const char* const kSystem = "/home/nvram/zt4system.json";

struct Edit { const char* file; const char* at; const char* value; };  // a null value removes

struct Field { const char* name; double (*get)(const zt4Data&); double expected; };

#define F(expr, value) Field{#expr, [](const zt4Data& d) { return static_cast<double>(d.expr); }, value}
#define CH(i, c) connectors[i].channels[c]
#define EX(i) expert.connectors[i]

class Readers : public Record {
protected:
    // Sets the members at '/'-separated paths under ElectricalConfiguration (numbers index arrays).
    void apply(std::initializer_list<Edit> edits) const {
        for (const Edit& edit : edits) {
            zt4::JsonRef document(zt4test::parse(readFile(edit.file).c_str()));
            json_t* node = json_object_get(document.get(), "ElectricalConfiguration");
            std::string key = edit.at;
            for (size_t cut; (cut = key.find('/')) != std::string::npos; key.erase(0, cut + 1)) node = child(node, key.substr(0, cut));
            json_t* value = edit.value ? json_loads(edit.value, JSON_DECODE_ANY, nullptr) : nullptr;
            EXPECT_EQ(json_is_array(node) ? (value ? json_array_set_new(node, std::stoul(key), value) : json_array_remove(node, std::stoul(key)))
                                          : (value ? json_object_set_new(node, key.c_str(), value) : json_object_del(node, key.c_str())), 0) << edit.at;
            writeFile(edit.file, zt4test::compact(document.get()));
        }
    }
    static json_t* child(json_t* node, const std::string& key) {
        return json_is_array(node) ? json_array_get(node, std::stoul(key)) : json_object_get(node, key.c_str());
    }
    void expect(std::initializer_list<Field> fields, const char* why = "") const {
        for (const Field& field : fields) EXPECT_NEAR(field.get(data), field.expected, 1e-3) << field.name << " " << why;
    }
};

// Connectors 1 to 3 three-phase (mode 4, clamps 4, 3, 1; connector 2's second transformer inverted; connector 3 at 400 A),
// 4 monophase on three phases, 5 monophase with two channels on (the second factor 2.0, inverted), 6 disabled; setup row 3.
// Three-phase connectors spread their first channel; calibration from the three-phase file for 1 and 6, single-phase for 4.
TEST_F(Readers, TheExampleDeviceFillsEveryFieldFromItsDocuments) {
    std::memset(data.leadingArea, 0xA5, sizeof data.leadingArea);
    ASSERT_EQ(readZT4AllConfig(&data), 0) << zt4test::logDump();
    expect({
        F(setupModes[0], 4), F(setupModes[2], 4), F(setupModes[3], 1), F(setupModes[4], 1), F(setupModes[5], 0), F(meterRunning, 1), F(connectors[0].enabled, 1),
        F(connectors[5].enabled, 1), F(connectors[0].xPlier, 333.0), F(connectors[5].xPlier, 1.0), F(connectors[4].vtEnable, 0), F(connectors[4].vtPrimary, 400.0),
        F(connectors[4].vtSecondary, 230.0),
        F(CH(0, 0).enable, 1), F(CH(0, 1).enable, 1), F(CH(0, 2).enable, 1), F(CH(0, 0).mode, 4), F(CH(0, 1).mode, 4), F(CH(0, 2).mode, 4), F(CH(0, 0).phase, 1),
        F(CH(0, 1).phase, 2), F(CH(0, 2).phase, 3), F(CH(0, 1).ctModel, 4), F(CH(0, 2).generalFactor, 1.0), F(CH(1, 0).direction, 0), F(CH(1, 1).direction, 1),
        F(CH(1, 2).direction, 0), F(CH(1, 2).ctModel, 3), F(CH(2, 0).ctPrimary, 400), F(CH(2, 1).ctPrimary, 400), F(CH(2, 2).ctPrimary, 400), F(CH(1, 0).ctPrimary, 0),
        F(CH(0, 3).phase, 3), F(CH(3, 3).phase, 0), F(CH(5, 1).phase, 0),
        F(CH(3, 0).phase, 1), F(CH(3, 1).phase, 2), F(CH(3, 2).phase, 3), F(CH(3, 2).mode, 1), F(CH(4, 1).generalFactor, 2.0), F(CH(4, 1).direction, 1),
        F(CH(4, 1).enable, 1), F(CH(4, 2).enable, 0), F(CH(4, 0).ctModel, 8), F(CH(4, 2).phase, 3), F(CH(5, 0).enable, 0), F(CH(5, 2).mode, 0),
        F(connectors[0].currentImbalanceOff, 0), F(connectors[2].currentImbalanceOff, 0), F(connectors[3].currentImbalanceOff, 1), F(connectors[5].currentImbalanceOff, 1),
        F(CH(0, 0).CalCurrent, 0x00405ec9), F(CH(3, 1).CalCurrent, 0x0040d300), F(CH(5, 2).CalPhaseA, 0x6b), F(CH(0, 0).CalVnom, 230.0), F(CH(0, 3).CalCurrent, 0),
        F(expert.nominalVoltage, 230.0), F(expert.lineFrequency, 50.0), F(expert.sysSag, 1), F(expert.sagEnable, 1), F(expert.sagCycle, 1), F(expert.sagRateLevel, 10.0),
        F(expert.sagLevel, 292.7422), F(expert.sagPhase[2], 1), F(expert.sysSwell, 1), F(expert.swellEnable, 1), F(expert.swellRateLevel, 10.0),
        F(expert.swellLevel, 357.7960), F(expert.swellPhase[0], 1), F(expert.ctThreshold, 2), F(expert.sysOverCurrent, 1), F(expert.sysTHD, 1), F(EX(0).currentImbalance, 1),
        F(EX(0).period, 15), F(EX(1).period, 10), F(EX(4).period, 30), F(EX(5).thd, 0), F(EX(0).thd, 1), F(EX(5).currentAverageMax, 1),
        F(EX(0).overCurrentThreshold, 255.2655), F(EX(4).overCurrentThreshold, 22.6274), F(EX(1).overCurrentThreshold, 0.0),
        F(EX(0).channels[0].powerNoLoad, 250.0), F(EX(0).channels[2].powerNoLoad, 250.0), F(EX(4).channels[0].powerNoLoad, 50.0), F(EX(4).channels[1].powerNoLoad, 100.0),
        F(EX(5).channels[1].powerNoLoad, 100.0),
        F(EX(0).channels[1].overCurrent, 1), F(EX(1).channels[2].overCurrent, 0), F(EX(4).channels[1].overCurrent, 1), F(EX(4).channels[2].overCurrent, 0),
        F(EX(4).channels[2].operatingTime, 0), F(EX(4).channels[2].startupCycle, 0), F(EX(5).channels[2].overCurrent, 1),
    });
    const char* names[6][3] = {{"Main incomer", "", ""}, {"HVAC", "", ""}, {"Elevators", "", ""},
                               {"Lighting L1", "Lighting L2", "Lighting L3"}, {"Sockets office", "Server room", ""}, {"", "", ""}};
    for (unsigned i = 0; i < 18; ++i) EXPECT_STREQ(data.connectors[i / 3].channels[i % 3].name, names[i / 3][i % 3]) << i;
    std::vector<std::string> steps;  // the readers' order
    for (const auto& entry : zt4test::capturedLog()) steps.insert(steps.end(), entry.text.rfind("Read ", 0) == 0 ? 1 : 0, entry.text);
    EXPECT_EQ(steps, (std::vector<std::string>{"Read Connector system configuration", "Read Expert system configuration",
                                               "Read Setup Connector configuration", "Read Setup Connectors 3",
                                               "Read Setup Connectors: Triphase Triphase Triphase Monophase Monophase Disabled",
                                               "Read Connector configuration", "Read Expert Connector configuration", "Read Connector calibration"}));
    for (uint8_t byte : data.leadingArea) ASSERT_EQ(byte, 0xA5);  // the daemon's area is never touched
}

// A disabled connector (mode 0) takes the directions of its channel's three transformers.
TEST_F(Readers, ADisabledConnectorTakesItsThreeDirections) {
    apply({{kUser, "Connectors/5/Channel/0/CurrentTransformer/1/Direction", "1"}});
    ASSERT_EQ(readZT4ConfigConnector(&data), 0) << zt4test::logDump();
    expect({F(CH(5, 0).direction, 0), F(CH(5, 1).direction, 1), F(CH(5, 2).direction, 0)});
}

TEST_F(Readers, SetupModesComeFromTheRowTheDocumentNames) {
    const struct { const char* setup; uint8_t modes[6]; const char* line; } rows[] = {
        {"0", {1, 1, 1, 1, 0, 0}, "Read Setup Connectors: Monophase Monophase Monophase Monophase Disabled Disabled"},
        {"1", {4, 1, 1, 1, 0, 0}, "Read Setup Connectors 1"}, {"2", {4, 4, 1, 1, 0, 0}, "Read Setup Connectors 2"}, {"7", {4, 4, 4, 1, 1, 0}, "Read Setup Connectors 7"},
        {"4", {4, 4, 4, 4, 1, 0}, "Read Setup Connectors 4"}, {"5", {4, 4, 4, 4, 4, 0}, "Read Setup Connectors 5"},
        {"6", {4, 4, 4, 4, 4, 4}, "Read Setup Connectors: Triphase Triphase Triphase Triphase Triphase Triphase"},
        {"-1", {4, 4, 4, 1, 1, 0}, "Read Setup Connectors: Triphase Triphase Triphase Monophase Monophase Disabled"}};
    for (const auto& row : rows) {
        apply({{kUser, "Expert/NumberConnectorThreephase", row.setup}});
        std::memset(data.setupModes, 9, sizeof data.setupModes);
        zt4test::clearLog();
        EXPECT_EQ(readZT4ConfigSetupConnectors(&data), 0) << row.setup;
        EXPECT_EQ(std::memcmp(data.setupModes, row.modes, sizeof row.modes), 0) << row.setup;
        EXPECT_TRUE(zt4test::logged(row.line, LOG_INFO)) << row.setup << zt4test::logDump();
    }
    // A failing read keeps the preset and readZT4AllConfig goes on.
    apply({{kUser, "Expert/NumberConnectorThreephase", nullptr}});
    std::memset(data.setupModes, 9, sizeof data.setupModes);
    EXPECT_EQ(readZT4AllConfig(&data), 0);
    expect({F(setupModes[0], 4), F(setupModes[2], 4), F(setupModes[3], 1), F(setupModes[4], 1), F(setupModes[5], 0)});
    EXPECT_TRUE(zt4test::logged(" error.[readZT4AllConfig]: FAILED to read Setup Connector configuration. Use default configuration", LOG_ERR));
}

// The expert reader overwrites the system's sag cycle and threshold and ANDs the options with the system's;
// mode 6 loses THD and power imbalance; a connector the system omits stays on.
TEST_F(Readers, ExpertOptionsModeSixAndOmittedSystemConnectors) {
    apply({{kSystem, "Expert/Sag/Cycle", "4"}, {kSystem, "Expert/Sag/Enable", "0"}, {kSystem, "Expert/StartupCycle/Enable", "0"},
           {kSystem, "Expert/CircuitBreakerTrip/CurrentTransformerThreshold", "5"}, {kUser, "Expert/Sag/Phase/2/Enable", "0"},
           {kUser, "Expert/Swell/Phase/0/Enable", "0"}, {kUser, "Connectors/1/Mode", "6"}, {kSystem, "Connectors/0/Enable", "0"},
           {kSystem, "Connectors/5", nullptr}, {kSystem, "Connectors/4", nullptr}, {kUser, "NominalVoltage", "240"}, {kUser, "LineFrequency", "60"}});
    ASSERT_EQ(readZT4SystemExpert(&data) + readZT4ConfigConnector(&data), 0);
    expect({F(expert.sagCycle, 4), F(expert.ctThreshold, 5), F(expert.sysSag, 0), F(expert.sysStartupCycle, 0), F(expert.sysTHD, 1),
            F(expert.nominalVoltage, 240.0), F(expert.lineFrequency, 60.0)});
    ASSERT_EQ(readZT4AllConfig(&data), 0) << zt4test::logDump();
    expect({F(expert.sagCycle, 1), F(expert.ctThreshold, 2), F(expert.sagEnable, 0), F(expert.swellEnable, 1), F(expert.sagPhase[2], 0),
            F(expert.sagPhase[1], 1), F(expert.swellPhase[0], 0), F(expert.swellPhase[1], 1), F(EX(3).channels[1].startupCycle, 0),
            F(EX(3).channels[1].operatingTime, 1), F(EX(1).thd, 0), F(EX(1).powerImbalance, 0), F(EX(1).voltageImbalance, 1), F(EX(2).thd, 1),
            F(connectors[0].enabled, 0), F(CH(0, 0).enable, 0), F(connectors[0].currentImbalanceOff, 1), F(connectors[4].enabled, 1),
            F(connectors[5].enabled, 1), F(expert.nominalVoltage, 240.0), F(expert.lineFrequency, 60.0)});
    EXPECT_TRUE(zt4test::logged("readZT4SystemConnectorsSyntaxVersion1: System Connector 4 Enable = 1", LOG_INFO));
}

TEST_F(Readers, OverCurrentThresholdIsAPeakOnTheSecondaryScale) {
    const struct { const char* threshold; const char* primary; const char* model; double expected; } rows[] = {
        // 100 x 1.4142135 / (200 / 5); no primary: the peak alone; a 400 A primary on a 400 A clamp; a 1 A clamp.
        {"100", "200", "1", 3.5355}, {"100", "0", "1", 141.42135}, {"100", "400", "5", 141.42135}, {"10", "100", "8", 0.141421}};
    for (const auto& row : rows) {
        apply({{kUser, "Connectors/0/CurrentTransformerModel", row.model},
               {kUser, "Connectors/0/Channel/0/CurrentTransformerPrimary/Enable", *row.primary == '0' ? "0" : "1"},
               {kUser, "Connectors/0/Channel/0/CurrentTransformerPrimary/CurrentPrimary", row.primary},
               {kUser, "Expert/Connectors/0/OverCurrent/Threshold", row.threshold}});
        ASSERT_EQ(readZT4SystemConnector(data.connectors) + readZT4SystemExpert(&data), 0) << zt4test::logDump();
        ASSERT_EQ(readZT4ConfigConnector(&data) + readZT4ConfigExpert(&data), 0) << zt4test::logDump();
        EXPECT_NEAR(data.expert.connectors[0].overCurrentThreshold, row.expected, 1e-4) << row.primary;
    }
}

TEST_F(Readers, AFailingReaderStopsTheWholeReadAndKeepsWhatItHadRead) {
    const struct { std::initializer_list<Edit> edits; const char* line; Field kept; } rows[] = {
        {{{kSystem, "Connectors", nullptr}}, "error.[readZT4SystemConnectorsSyntaxVersion1]: json NULL", F(connectors[3].enabled, 1)},
        {{{kSystem, "Connectors/1/Enable", "0"}, {kSystem, "Connectors/2", "1"}},
         "error.[readZT4SystemConnectorsSyntaxVersion1]: FAILED to read Object JSON Connector3", F(connectors[1].enabled, 0)},
        {{{kSystem, "Expert", nullptr}}, "error.[readZT4AllConfig]: FAILED to read Expert system configuration", F(expert.lineFrequency, 50.0)},
        {{{kSystem, "Expert/Swell", nullptr}, {kSystem, "Expert/Sag/Enable", "0"}},
         "error.[readZT4SystemExpertSyntaxVersion1]: FAILED to read System Object Swell", F(expert.sysSag, 0)},
        {{{kUser, "Connectors/1/Channel", nullptr}},
         "error.[readZT4ConfigConnectorsSyntaxVersion1]: FAILED to read Object JSON Cnl of Connector2", F(CH(0, 0).mode, 4)},
        {{{kUser, "Connectors/1/Channel", nullptr}}, "error.[readZT4AllConfig]: FAILED to read Connector configuration", F(CH(0, 0).mode, 4)},
        {{{kUser, "Expert/Sag/Phase/1", "1"}}, "error.[readZT4ConfigExpertSyntaxVersion1]: Sag phase 2 NULL", F(expert.sagLevel, 292.7422)},
        {{{kUser, "Expert/Swell/Phase", nullptr}}, "error.[readZT4ConfigExpertSyntaxVersion1]: FAILED to read Object Swell Phase", F(expert.sagLevel, 292.7422)},
        {{{kUser, "Expert/Sag/Phase", nullptr}}, "error.[readZT4ConfigExpertSyntaxVersion1]: FAILED to read Object Sag Phase", F(CH(0, 0).mode, 4)},
        {{{kUser, "Expert/Sag", nullptr}}, "error.[readZT4ConfigExpertSyntaxVersion1]: FAILED to read Object Sag", F(CH(0, 0).mode, 4)},
        {{{kUser, "Expert/Connectors/1", "1"}}, "error.[readZT4ConfigExpertSyntaxVersion1]: FAILED to read Object JSON Expert Connector2", F(EX(0).period, 15)},
        {{{kUser, "Expert/Connectors/1", "1"}}, "error.[readZT4AllConfig]: FAILED to read Expert Connector configuration", F(EX(0).period, 15)},
    };
    for (const auto& row : rows) {
        restore();
        apply(row.edits);
        EXPECT_EQ(readZT4AllConfig(&data), -1) << row.line;
        EXPECT_TRUE(zt4test::logged(row.line, LOG_ERR)) << zt4test::logDump();
        expect({row.kept}, row.line);
    }
}

TEST_F(Readers, NullRecordsAndVersionZeroAreRefused) {
    for (auto reader : {readZT4AllConfig, readZT4ConfigSetupConnectors, readZT4SystemExpert, readZT4ConfigConnector, readZT4ConfigExpert}) {
        EXPECT_EQ(reader(nullptr), -1);
    }
    EXPECT_EQ(readZT4SystemConnector(nullptr), -1);
    EXPECT_TRUE(zt4test::logged("error.[readZT4SystemConnectorsSyntaxVersion1]: Connect NULL"));
    EXPECT_EQ(zt4test::loggedCount("]: zt4Data NULL"), 5);
    writeFile(kUser, R"({"Syntax": {"Version": 0}})");
    EXPECT_EQ(readZT4ConfigConnector(&data), -1);
    EXPECT_TRUE(zt4test::logged("error.[readZT4ConfigConnectorsSyntaxVersion0]: syntax version 0 is not supported"));
}

}  // namespace
