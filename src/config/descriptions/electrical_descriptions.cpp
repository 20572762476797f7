// Descriptions of the electrical sections of the user configuration.
#include "config/descriptions/user_descriptions.hpp"
#include "config/v1/user_sections.hpp"
#include "zt4config/json.h"

namespace zt4::sections {
namespace {

constexpr double kLineFrequencies[] = {50.0, 60.0};

// ---- ElectricalConfiguration --------------------------------------------------------------

constexpr Field kElectricalFields[] = {
    numberOneOf("LineFrequency", 50.0, kLineFrequencies).wrongTypeText("{key} NOT JSON NUMBER"),
    numberAtLeast("NominalVoltage", 230.0, 100.0),
    // A voltage transformer that cannot be checked is reported under the Expert's wording.
    nestedField("VoltageTransformer", kVoltageTransformer).checkedAs("ExpertVoltageTransformer"),
    nestedField("Connectors", kConnectors).repairedAs("jsonConnectors", "Connectors")
        .complianceAbsentText("jsonConnectors NULL"),
    // The repair inserts the Expert defaults under "jsonExpert": the section stays without
    // "Expert", which the rule then reports as not defined. Devices in the field rely on it.
    nestedField("Expert", kExpert).repairedAs("jsonExpert", "jsonExpert")
        .complianceAbsentText("jsonExpert NULL"),
};

constexpr Field kVoltageTransformerFields[] = {
    booleanField("Enable", 0),
    numberAtLeast("VoltagePrimary", 400.0, 0.0),
    numberAtLeast("VoltageSecondary", 230.0, 0.0),
};

// ---- Connectors and their channels ---------------------------------------------------------

constexpr ArrayShape kConnectorsShape = {
    6, {6, 0}, {&kConnector, nullptr}, WrongSize::Rebuild,
    "Array size {value} Connectors INVALID", nullptr, "Connector"};

// The channel array has no check of its own: its messages carry the connector check's name. One
// element is a three-phase channel, three are monophase channels.
constexpr ArrayShape kChannelsShape = {
    1, {1, 3}, {&kConnectorChannel3P, &kConnectorChannel1P}, WrongSize::Rebuild,
    "Array size Channel INVALID", nullptr, "Channel"};
const Section kChannels = arraySection(nullptr, "channel", kChannelsShape);

constexpr Field kConnectorFields[] = {
    integerBetween("Mode", 0, 0, 6),
    integerBetween("CurrentTransformerModel", 0, 0, 8),
    nestedField("Channel", kChannels),
};

// Compliance looks at a connector's channels before its mode and transformer model.
constexpr std::uint8_t kConnectorComplianceOrder[] = {2, 0, 1};

constexpr Field kCurrentTransformerPrimaryFields[] = {
    booleanField("Enable", 0),
    integerAtLeast("CurrentPrimary", 5, 0),
};

// The current transformers of a channel: their directions are known to compliance and the filter
// only; the section check leaves them alone.
constexpr Field kCurrentTransformerFields[] = {booleanField("Direction", 0)};
constexpr ArrayShape kCurrentTransformersShape = {
    1, {1, 3}, {&kCurrentTransformer, &kCurrentTransformer}, WrongSize::Refuse,
    "CurrentTransformer size {value} is incorrect", nullptr, "CurrentTransformer", true};

constexpr Field kChannelEnable = booleanField("Enable", 0);
constexpr Field kChannelName = textField("Name", "");
constexpr Field kChannelGeneralFactor = numberAbove("GeneralFactor", 1.0, 0.0);
constexpr Field kChannelTransformers =
    nestedField("CurrentTransformer", kCurrentTransformers).onlyForCompliance();
constexpr Field kChannelPrimary = nestedField("CurrentTransformerPrimary", kCurrentTransformerPrimary);

constexpr Field kChannelCommonFields[] = {
    kChannelEnable, kChannelName, kChannelGeneralFactor, kChannelTransformers, kChannelPrimary};
constexpr Field kChannel1PFields[] = {
    kChannelEnable, kChannelName, kChannelGeneralFactor, kChannelTransformers, kChannelPrimary,
    integerBetween("Phase", 1, 0, 3)};

// ---- Expert ----------------------------------------------------------------------------------

constexpr Field kPhaseFields[] = {booleanField("Enable", 1)};
const Section kPhase = objectSection(nullptr, "phase", kPhaseFields);

// The repair step names a missing phase in lower case; the check that follows reads each phase
// by its number and names one it cannot read in capitals.
constexpr ArrayShape kSagPhasesShape = {
    3, {3, 0}, {&kPhase, nullptr}, WrongSize::FillMissing, nullptr, "sag phase {value} NULL", "Phase",
    false, "Sag phase {value} NULL", readJSONZT4PhaseById};
constexpr ArrayShape kSwellPhasesShape = {
    3, {3, 0}, {&kPhase, nullptr}, WrongSize::FillMissing, nullptr, "swell phase {value} NULL", "Phase",
    false, "Swell phase {value} NULL", readJSONZT4PhaseById};
const Section kSagPhases = arraySection(nullptr, "sag phase", kSagPhasesShape);
const Section kSwellPhases = arraySection(nullptr, "swell phase", kSwellPhasesShape);

// A sag of exactly 100 % is refused, a swell of exactly 100 % accepted; compliance accepts
// 100 % for both.
constexpr Field kRateLevelCompliance = numberWithin("RateLevel", 1.0, 0.0, 100.0, true);
constexpr Field kSagFields[] = {
    booleanField("Enable", 1),
    numberWithin("RateLevel", 1.0, 0.0, 100.0, false).compliesAs(kRateLevelCompliance),
    nestedField("Phase", kSagPhases).repairedAs("sag phase", "Phase"),
};
constexpr Field kSwellFields[] = {
    booleanField("Enable", 1),
    numberWithin("RateLevel", 1.0, 0.0, 100.0, true),
    nestedField("Phase", kSwellPhases).repairedAs("swell phase", "Phase").absentText("jsonPhase not defined"),
};

constexpr Field kCurrentAverageMaxFields[] = {
    booleanField("Enable", 0).onlyForCompliance(),
    integerAtLeast("Period", 15, 1),
};
// The threshold is checked as a number but its default is the integer 0.
constexpr Field kOverCurrentFields[] = {withDefault(numberAtLeast("Threshold", 0.0, 0.0), 0)};

constexpr Field kExpertChannelFields[] = {
    numberAtLeast("PowerNoLoad", 100.0, 0.0),
    booleanField("OperatingTimeEnable", 1),
    booleanField("StartupCycleEnable", 1),
    booleanField("OverCurrentEnable", 0),
};

constexpr ArrayShape kExpertChannelsShape = {
    1, {1, 3}, {&kExpertConnectorChannel, &kExpertConnectorChannel}, WrongSize::Refuse,
    "INVALID size array ({value}) ExpertConnector Channel", nullptr, "Channel"};
const Section kExpertChannels = arraySection(nullptr, "channel", kExpertChannelsShape);

constexpr Field kExpertConnectorFields[] = {
    booleanField("CurrentImbalanceEnable", 1),
    booleanField("PowerImbalanceEnable", 1),
    booleanField("VoltageImbalanceEnable", 1),
    nestedField("CurrentAverageMax", kExpertCurrentAverageMax),
    booleanField("THDEnable", 1),
    nestedField("OverCurrent", kExpertOverCurrent),
    nestedField("Channel", kExpertChannels),
};

constexpr ArrayShape kExpertConnectorsShape = {
    6, {6, 0}, {&kExpertConnector, nullptr}, WrongSize::Refuse,
    "INVALID size array ({value}) ExpertConnector", nullptr, "ExpertConnector"};

// Compliance also bounds the number of three-phase connectors by the six connectors.
constexpr Field kThreephaseCompliance = integerBetween("NumberConnectorThreephase", 3, 0, 6);
constexpr Field kExpertFields[] = {
    integerAtLeast("NumberConnectorThreephase", 3, 0).compliesAs(kThreephaseCompliance),
    nestedField("Sag", kExpertSag),
    nestedField("Swell", kExpertSwell),
    nestedField("Connectors", kExpertConnectors),
};

constexpr Field kCircuitBreakerTripFields[] = {integerAtLeast("CurrentTransformerThreshold", 2, 1)};

}  // namespace

const Section kElectricalConfiguration = storedSection(
    objectSection("checkJSONZT4UserConfigElectricalConfigurationSyntaxVersion1",
                  "electricalconfiguration", kElectricalFields),
    readJSONZT4UserConfigElectricalConfigurationSyntaxVersion1, "ElectricalConfiguration");
const Section kVoltageTransformer = objectSection(
    "checkJSONZT4UserConfigVoltageTransformerSyntaxVersion1", "voltagetransformer",
    kVoltageTransformerFields);
const Section kConnectors =
    arraySection("checkJSONZT4UserConfigConnectorsSyntaxVersion1", "connectors", kConnectorsShape);
const Section kConnector =
    compliedInOrder(objectSection("checkJSONZT4UserConfigConnectorSyntaxVersion1", "connector",
                                  kConnectorFields),
                    kConnectorComplianceOrder);
const Section kConnectorChannelCommon = objectSection(
    "checkJSONZT4UserConfigConnectorChannelCommonSyntaxVersion1", "channel", kChannelCommonFields);
const Section kConnectorChannel3P = objectSection(
    "checkJSONZT4UserConfigConnectorChannel3PSyntaxVersion1", "channel", kChannelCommonFields);
const Section kConnectorChannel1P = objectSection(
    "checkJSONZT4UserConfigConnectorChannel1PSyntaxVersion1", "channel", kChannel1PFields);
const Section kCurrentTransformers =
    arraySection(nullptr, "currenttransformer", kCurrentTransformersShape);
const Section kCurrentTransformer = objectSection(nullptr, "currenttransformer", kCurrentTransformerFields);
const Section kCurrentTransformerPrimary =
    objectSection(nullptr, "currenttransformerprimary", kCurrentTransformerPrimaryFields);
const Section kExpert =
    objectSection("checkJSONZT4UserConfigExpertSyntaxVersion1", "expert", kExpertFields);
const Section kExpertSag =
    objectSection("checkJSONZT4UserConfigExpertSagSyntaxVersion1", "sag", kSagFields);
const Section kExpertSwell =
    objectSection("checkJSONZT4UserConfigExpertSwellSyntaxVersion1", "swell", kSwellFields);
const Section kExpertCurrentAverageMax = objectSection(
    "checkJSONZT4UserConfigExpertCurrentAverageMaxSyntaxVersion1", "currentaveragemax",
    kCurrentAverageMaxFields);
const Section kExpertOverCurrent = objectSection(
    "checkJSONZT4UserConfigExpertOverCurrentSyntaxVersion1", "overcurrent", kOverCurrentFields);
const Section kExpertConnectors = arraySection(
    "checkJSONZT4UserConfigExpertConnectorsSyntaxVersion1", "expertconnectors",
    kExpertConnectorsShape);
const Section kExpertConnector = objectSection(
    "checkJSONZT4UserConfigExpertConnector3PSyntaxVersion1", "expertconnector",
    kExpertConnectorFields);
const Section kExpertConnectorChannel = objectSection(
    "checkJSONZT4UserConfigExpertConnectorChannelSyntaxVersion1", "expertchannel",
    kExpertChannelFields);
const Section kExpertCircuitBreakerTrip = objectSection(
    "checkJSONZT4SystemExpertCircuitBreakerTripSyntaxVersion1", "circuitbreakertrip",
    kCircuitBreakerTripFields);

}  // namespace zt4::sections
