// The electrical section checks, driven from their own defaults with one change per row.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "config/v1/user_checks.hpp"
#include "support/harness.hpp"

std::vector<std::string> checkLines();

namespace {

using SectionCheck = json_t* (*)(json_t*, std::int8_t*);

// Any JSON value, scalars included.
json_t* decode(const std::string& text) {
    json_t* value = json_loads(text.c_str(), JSON_DECODE_ANY, nullptr);
    EXPECT_NE(value, nullptr) << text;
    return value;
}

// The member at a slash-separated path of keys and indexes ("Connectors/0/Mode"), or null.
json_t* memberAt(json_t* root, const std::string& path) {
    json_t* node = root;
    size_t start = 0;
    while (node != nullptr && start <= path.size()) {
        size_t slash = path.find('/', start);
        if (slash == std::string::npos) slash = path.size();
        const std::string step = path.substr(start, slash - start);
        node = json_is_array(node) ? json_array_get(node, std::strtoul(step.c_str(), nullptr, 10))
                                   : json_object_get(node, step.c_str());
        start = slash + 1;
    }
    return node;
}

// Sets, or with a null value deletes, the member at `path`.
void setPath(json_t* root, const std::string& path, json_t* value) {
    const size_t slash = path.rfind('/');
    json_t* parent = slash == std::string::npos ? root : memberAt(root, path.substr(0, slash));
    ASSERT_NE(parent, nullptr) << path;
    const std::string last = path.substr(slash == std::string::npos ? 0 : slash + 1);
    if (json_is_array(parent)) {
        size_t index = std::strtoul(last.c_str(), nullptr, 10);
        if (value) json_array_set(parent, index, value); else json_array_remove(parent, index);
    } else {
        if (value) json_object_set(parent, last.c_str(), value); else json_object_del(parent, last.c_str());
    }
}

struct ChangeCase {
    const char* name;
    SectionCheck check;
    const char* path;
    const char* value;  // JSON text; nullptr deletes the member
    int status;
    std::vector<std::string> lines;
    const char* after;  // "path=json" that must hold after the check, or ""
};

class ElectricalCheck : public zt4test::DeviceTest,
                         public ::testing::WithParamInterface<ChangeCase> {
protected:
    // The checks compare with the stored section: give them a document to read.
    void SetUp() override {
        DeviceTest::SetUp();
        writeFile("/home/nvram/zt4config.json", R"({"Syntax": {"Version": 1}})");
    }
};

TEST_P(ElectricalCheck, OneChangeToTheDefaults) {
    const ChangeCase& c = GetParam();
    std::int8_t status = 0;
    json_t* input = c.check(nullptr, &status);
    ASSERT_NE(input, nullptr);
    json_t* value = c.value ? decode(c.value) : nullptr;
    setPath(input, c.path, value);
    json_decref(value);
    zt4test::clearLog();

    json_t* defaults = c.check(input, &status);
    ASSERT_NE(defaults, nullptr);
    EXPECT_EQ(status, c.status);
    EXPECT_EQ(checkLines(), c.lines) << zt4test::logDump();
    if (*c.after) {
        const std::string after = c.after;
        const size_t equals = after.find('=');
        json_t* expected = decode(after.substr(equals + 1));
        json_t* actual = memberAt(input, after.substr(0, equals));
        ASSERT_NE(actual, nullptr) << c.after;
        EXPECT_EQ(zt4test::compact(actual), zt4test::compact(expected)) << c.after;
        json_decref(expected);
    }
    json_decref(defaults);
    json_decref(input);
}

std::string caseName(const ::testing::TestParamInfo<ChangeCase>& info) { return info.param.name; }

#define EC checkJSONZT4UserConfigElectricalConfigurationSyntaxVersion1
#define ECN "error.[checkJSONZT4UserConfigElectricalConfigurationSyntaxVersion1]: "
#define EXPERT checkJSONZT4UserConfigExpertSyntaxVersion1
#define CH3P "error.[checkJSONZT4UserConfigConnectorChannel3PSyntaxVersion1]: "
#define SAG "error.[checkJSONZT4UserConfigExpertSagSyntaxVersion1]: "
#define SWELL "error.[checkJSONZT4UserConfigExpertSwellSyntaxVersion1]: "

constexpr const char* kMonophase =
    R"([{"Enable": 1, "Name": "L1", "GeneralFactor": 1.0, "CurrentTransformerPrimary": {"Enable": 0, "CurrentPrimary": 5}, "Phase": 0},
        {"Enable": 1, "Name": "L2", "GeneralFactor": 2.5, "CurrentTransformerPrimary": {"Enable": 1, "CurrentPrimary": 0}, "Phase": 2},
        {"Enable": 0, "Name": "L3", "GeneralFactor": 1, "CurrentTransformerPrimary": {"Enable": 0, "CurrentPrimary": 100}, "Phase": 3}])";
// The same, with the third channel's phase out of range and its primary missing.
constexpr const char* kMonophaseBroken =
    R"([{"Enable": 1, "Name": "L1", "GeneralFactor": 1.0, "CurrentTransformerPrimary": {"Enable": 0, "CurrentPrimary": 5}, "Phase": 0},
        {"Enable": 1, "Name": "L2", "GeneralFactor": 2.5, "CurrentTransformerPrimary": {"Enable": 1, "CurrentPrimary": 0}, "Phase": 2},
        {"Enable": 0, "Name": "L3", "GeneralFactor": 1, "Phase": 4}])";

INSTANTIATE_TEST_SUITE_P(ElectricalConfiguration, ElectricalCheck, ::testing::Values(
    ChangeCase{"Unchanged", EC, "LineFrequency", "50.0", 0, {}, ""},
    ChangeCase{"Frequency60", EC, "LineFrequency", "60.0", 0, {}, ""},
    ChangeCase{"Frequency60Integer", EC, "LineFrequency", "60", 0, {}, ""},
    ChangeCase{"Frequency55", EC, "LineFrequency", "55.0", -1, {ECN "LineFrequency value INVALID (55.000000)"}, ""},
    ChangeCase{"FrequencyText", EC, "LineFrequency", "\"50\"", -1, {ECN "LineFrequency NOT JSON NUMBER"}, ""},
    ChangeCase{"FrequencyMissing", EC, "LineFrequency", nullptr, 0, {ECN "LineFrequency NULL"}, "LineFrequency=50.0"},
    ChangeCase{"Voltage99_9", EC, "NominalVoltage", "99.9", -1,
               {"error.[json_check_float_superior]: NominalVoltage value INVALID (99.900000)"}, ""},
    ChangeCase{"ExpertMissingStaysInvalid", EC, "Expert", nullptr, -1,
               {ECN "jsonExpert NULL", ECN "Expert not defined"}, "jsonExpert/NumberConnectorThreephase=3"},
    ChangeCase{"ConnectorsMissing", EC, "Connectors", nullptr, 0, {ECN "jsonConnectors NULL"}, "Connectors/5/Mode=0"},
    ChangeCase{"TransformerMissing", EC, "VoltageTransformer", nullptr, 0, {ECN "VoltageTransformer NULL"},
               "VoltageTransformer/VoltagePrimary=400.0"},
    ChangeCase{"TransformerNotObject", EC, "VoltageTransformer", "5", -1, {ECN "VoltageTransformer NOT JSON_OBJECT"}, ""},
    ChangeCase{"PrimaryZero", EC, "VoltageTransformer/VoltagePrimary", "0.0", 0, {}, ""},
    ChangeCase{"SecondaryNegative", EC, "VoltageTransformer/VoltageSecondary", "-1", -1,
               {"error.[json_check_float_superior]: VoltageSecondary value INVALID (-1.000000)"}, ""},
    ChangeCase{"FiveConnectorsRebuilt", EC, "Connectors/5", nullptr, -1,
               {"error.[checkJSONZT4UserConfigConnectorsSyntaxVersion1]: Array size 5 Connectors INVALID"},
               "Connectors/5/Channel/0/GeneralFactor=1.0"},
    ChangeCase{"ModeSeven", EC, "Connectors/3/Mode", "7", -1, {"error.[json_check_integer_range]: Mode value INVALID (7)"}, ""},
    ChangeCase{"ClampNine", EC, "Connectors/0/CurrentTransformerModel", "9", -1,
               {"error.[json_check_integer_range]: CurrentTransformerModel value INVALID (9)"}, ""},
    ChangeCase{"TwoChannelsReplaced", EC, "Connectors/2/Channel", "[{}, {}]", -1,
               {"error.[checkJSONZT4UserConfigConnectorSyntaxVersion1]: Array size Channel INVALID"},
               "Connectors/2/Channel=[{\"Enable\": 0, \"Name\": \"\", \"GeneralFactor\": 1.0, "
               "\"CurrentTransformerPrimary\": {\"Enable\": 0, \"CurrentPrimary\": 5}}]"},
    ChangeCase{"ThreeMonophaseChannels", EC, "Connectors/1/Channel", kMonophase, 0, {}, ""},
    ChangeCase{"MonophasePhaseFour", EC, "Connectors/1/Channel", kMonophaseBroken, -1,
               {"error.[checkJSONZT4UserConfigConnectorChannel1PSyntaxVersion1]: CurrentTransformerPrimary NULL",
                "error.[json_check_integer_range]: Phase value INVALID (4)"},
               "Connectors/1/Channel/2/CurrentTransformerPrimary/CurrentPrimary=5"},
    ChangeCase{"ChannelNotObject", EC, "Connectors/0/Channel/0", "3", -1,
               {"error.[checkJSONZT4UserConfigConnectorSyntaxVersion1]: Channel1 IS NOT Object JSON"}, ""},
    ChangeCase{"GeneralFactorZero", EC, "Connectors/0/Channel/0/GeneralFactor", "0.0", -1,
               {"error.[json_check_float_superior_strict]: GeneralFactor value INVALID (0.000000)"}, ""},
    ChangeCase{"NameNumber", EC, "Connectors/4/Channel/0/Name", "3", -1, {CH3P "Name NOT JSON_STRING"}, ""},
    ChangeCase{"PrimaryMissing", EC, "Connectors/0/Channel/0/CurrentTransformerPrimary", nullptr, 0,
               {CH3P "CurrentTransformerPrimary NULL"}, "Connectors/0/Channel/0/CurrentTransformerPrimary/CurrentPrimary=5"},
    ChangeCase{"PrimaryNegative", EC, "Connectors/0/Channel/0/CurrentTransformerPrimary/CurrentPrimary", "-1", -1,
               {"error.[json_check_integer_superior]: CurrentPrimary value INVALID (-1)"}, ""},
    ChangeCase{"ExpertSagInside", EC, "Expert/Sag/RateLevel", "100.0", -1, {SAG "RateLevel value INVALID (100.000000)"}, ""}),
    caseName);

INSTANTIATE_TEST_SUITE_P(Expert, ElectricalCheck, ::testing::Values(
    ChangeCase{"SagHundred", EXPERT, "Sag/RateLevel", "100.0", -1, {SAG "RateLevel value INVALID (100.000000)"}, ""},
    ChangeCase{"SwellHundred", EXPERT, "Swell/RateLevel", "100.0", 0, {}, ""},
    ChangeCase{"SwellAboveHundred", EXPERT, "Swell/RateLevel", "100.5", -1, {SWELL "RateLevel value INVALID (100.500000)"}, ""},
    ChangeCase{"SagZero", EXPERT, "Sag/RateLevel", "0.0", -1, {SAG "RateLevel value INVALID (0.000000)"}, ""},
    ChangeCase{"SwellZeroInteger", EXPERT, "Swell/RateLevel", "0", -1, {SWELL "RateLevel value INVALID (0.000000)"}, ""},
    ChangeCase{"SagIntegerLevel", EXPERT, "Sag/RateLevel", "99", 0, {}, ""},
    ChangeCase{"SagLevelText", EXPERT, "Sag/RateLevel", "\"5\"", -1, {SAG "RateLevel NOT JSON_REAL"}, ""},
    ChangeCase{"SagTwoPhases", EXPERT, "Sag/Phase/2", nullptr, 0, {SAG "sag phase 3 NULL"}, "Sag/Phase/2={\"Enable\": 1}"},
    ChangeCase{"SwellNoPhases", EXPERT, "Swell/Phase", "[]", 0,
               {SWELL "swell phase 1 NULL", SWELL "swell phase 2 NULL", SWELL "swell phase 3 NULL"}, "Swell/Phase/1/Enable=1"},
    ChangeCase{"SwellPhaseMissing", EXPERT, "Swell/Phase", nullptr, 0, {SWELL "swell phase NULL"}, "Swell/Phase/0/Enable=1"},
    ChangeCase{"SagPhaseEnableTwo", EXPERT, "Sag/Phase/1/Enable", "2", -1, {"error.[json_check_boolean]: Enable value INVALID (2)"}, ""},
    ChangeCase{"SagPhaseNotObject", EXPERT, "Sag/Phase/0", "1", -1,
               {"error.[readJSONZT4PhaseById]: Phase1 IS NOT Object JSON", SAG "Sag phase 1 NULL"}, ""},
    ChangeCase{"SwellPhaseNotObject", EXPERT, "Swell/Phase/2", "[]", -1,
               {"error.[readJSONZT4PhaseById]: Phase3 IS NOT Object JSON", SWELL "Swell phase 3 NULL"}, ""},
    ChangeCase{"FiveExpertConnectors", EXPERT, "Connectors/4", nullptr, -1,
               {"error.[checkJSONZT4UserConfigExpertConnectorsSyntaxVersion1]: INVALID size array (5) ExpertConnector"}, ""},
    ChangeCase{"ExpertChannelsEmpty", EXPERT, "Connectors/0/Channel", "[]", -1,
               {"error.[checkJSONZT4UserConfigExpertConnector3PSyntaxVersion1]: INVALID size array (0) ExpertConnector Channel"}, ""},
    ChangeCase{"ThresholdReal", EXPERT, "Connectors/0/OverCurrent/Threshold", "2.5", 0, {}, ""},
    ChangeCase{"ThresholdNegative", EXPERT, "Connectors/0/OverCurrent/Threshold", "-0.5", -1,
               {"error.[json_check_float_superior]: Threshold value INVALID (-0.500000)"}, ""},
    ChangeCase{"PeriodZero", EXPERT, "Connectors/5/CurrentAverageMax/Period", "0", -1,
               {"error.[json_check_integer_superior]: Period value INVALID (0)"}, ""},
    ChangeCase{"NoLoadNegative", EXPERT, "Connectors/1/Channel/0/PowerNoLoad", "-1.0", -1,
               {"error.[json_check_float_superior]: PowerNoLoad value INVALID (-1.000000)"}, ""},
    ChangeCase{"ThreephaseCountNegative", EXPERT, "NumberConnectorThreephase", "-1", -1,
               {"error.[json_check_integer_superior]: NumberConnectorThreephase value INVALID (-1)"}, ""},
    ChangeCase{"TripThresholdZero", checkJSONZT4SystemExpertCircuitBreakerTripSyntaxVersion1,
               "CurrentTransformerThreshold", "0", -1,
               {"error.[json_check_integer_superior]: CurrentTransformerThreshold value INVALID (0)"}, ""},
    ChangeCase{"TripThresholdOne", checkJSONZT4SystemExpertCircuitBreakerTripSyntaxVersion1,
               "CurrentTransformerThreshold", "1", 0, {}, ""}),
    caseName);

struct DefaultsCase {
    const char* name;
    SectionCheck check;
    const char* defaults;
};

class SectionDefaults : public zt4test::DeviceTest,
                           public ::testing::WithParamInterface<DefaultsCase> {};

TEST_P(SectionDefaults, NoInputGivesDefaults) {
    std::int8_t status = 0;
    json_t* defaults = GetParam().check(nullptr, &status);
    ASSERT_NE(defaults, nullptr);
    EXPECT_EQ(status, -1);
    json_t* expected = zt4test::parse(GetParam().defaults);
    EXPECT_EQ(zt4test::compact(defaults), zt4test::compact(expected));
    json_decref(expected);
    json_decref(defaults);
}

INSTANTIATE_TEST_SUITE_P(Sections, SectionDefaults, ::testing::Values(
    DefaultsCase{"Web", checkJSONZT4UserConfigWebSyntaxVersion1, R"({"Language": "fr"})"},
    DefaultsCase{"VoltageTransformer", checkJSONZT4UserConfigVoltageTransformerSyntaxVersion1,
                 R"({"Enable": 0, "VoltagePrimary": 400.0, "VoltageSecondary": 230.0})"},
    DefaultsCase{"Connector", checkJSONZT4UserConfigConnectorSyntaxVersion1,
                 R"({"Mode": 0, "CurrentTransformerModel": 0, "Channel": [{"Enable": 0, "Name": "",
                     "GeneralFactor": 1.0, "CurrentTransformerPrimary": {"Enable": 0, "CurrentPrimary": 5}}]})"},
    DefaultsCase{"MonophaseChannel", checkJSONZT4UserConfigConnectorChannel1PSyntaxVersion1,
                 R"({"Enable": 0, "Name": "", "GeneralFactor": 1.0,
                     "CurrentTransformerPrimary": {"Enable": 0, "CurrentPrimary": 5}, "Phase": 1})"},
    DefaultsCase{"Sag", checkJSONZT4UserConfigExpertSagSyntaxVersion1,
                 R"({"Enable": 1, "RateLevel": 1.0, "Phase": [{"Enable": 1}, {"Enable": 1}, {"Enable": 1}]})"},
    DefaultsCase{"ExpertConnector", checkJSONZT4UserConfigExpertConnector3PSyntaxVersion1,
                 R"({"CurrentImbalanceEnable": 1, "PowerImbalanceEnable": 1, "VoltageImbalanceEnable": 1,
                     "CurrentAverageMax": {"Period": 15}, "THDEnable": 1, "OverCurrent": {"Threshold": 0},
                     "Channel": [{"PowerNoLoad": 100.0, "OperatingTimeEnable": 1, "StartupCycleEnable": 1,
                                  "OverCurrentEnable": 0}]})"},
    DefaultsCase{"CircuitBreakerTrip", checkJSONZT4SystemExpertCircuitBreakerTripSyntaxVersion1,
                 R"({"CurrentTransformerThreshold": 2})"}),
    [](const ::testing::TestParamInfo<DefaultsCase>& row) { return std::string(row.param.name); });

TEST(ElectricalDefaultsShape, SixConnectorsEverywhere) {
    std::int8_t status = 0;
    json_t* electrical = checkJSONZT4UserConfigElectricalConfigurationSyntaxVersion1(nullptr, &status);
    ASSERT_NE(electrical, nullptr);
    EXPECT_EQ(json_array_size(json_object_get(electrical, "Connectors")), 6u);
    json_t* expert = json_object_get(electrical, "Expert");
    EXPECT_EQ(json_array_size(json_object_get(expert, "Connectors")), 6u);
    EXPECT_EQ(json_integer_value(json_object_get(expert, "NumberConnectorThreephase")), 3);
    json_decref(electrical);
}

}  // namespace
