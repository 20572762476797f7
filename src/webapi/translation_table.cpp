// The translation table: stored member on the left, web member on the right. The web names are
// those the devices' older documents and the flat parameter file use: a connector is its "Cnl"
// array of channels, and what belongs to the connector as a whole (its mode, its clamp, and the
// meter's voltage transformer) rides on channel 1.
#include "webapi/translation.hpp"

namespace zt4::web {
namespace {

template <std::size_t N>
constexpr Level levelOf(const Member (&members)[N]) {
    return Level{members, N};
}

// ---- Connectors ------------------------------------------------------------------------------

// One current transformer's direction is a bare 0 or 1 in the web "Dir" array.
constexpr Member kDirectionMembers[] = {
    {path("Direction"), path(), Kind::Integer},
};
constexpr Level kDirectionLevel = levelOf(kDirectionMembers);

constexpr Member kChannelMembers[] = {
    {path("Enable"), path("Enable"), Kind::Integer},
    {path("Name"), path("Name"), Kind::Text},
    {path("GeneralFactor"), path("xGeneral"), Kind::Number},
    {path("CurrentTransformer"), path("Dir"), Kind::Array, &kDirectionLevel},
    {path("CurrentTransformerPrimary", "Enable"), path("CTPrimaryEnable"), Kind::Integer},
    {path("CurrentTransformerPrimary", "CurrentPrimary"), path("CTPrimary"), Kind::Integer},
    {path("Phase"), path("Phase"), Kind::Integer},
};
constexpr Level kChannelLevel = levelOf(kChannelMembers);

constexpr Member kConnectorMembers[] = {
    {path("Mode"), path("Cnl", 0, "Mode"), Kind::Integer},
    {path("CurrentTransformerModel"), path("Cnl", 0, "Plier"), Kind::Integer},
    {path("Channel"), path("Cnl"), Kind::Array, &kChannelLevel},
    {path("VoltageTransformer", "Enable"), path("Cnl", 0, "VTEnable"), Kind::Integer, nullptr, true},
    {path("VoltageTransformer", "VoltagePrimary"), path("Cnl", 0, "VTPrimary"), Kind::Number, nullptr, true},
    {path("VoltageTransformer", "VoltageSecondary"), path("Cnl", 0, "VTSecondary"), Kind::Number, nullptr, true},
};

// ---- Expert ----------------------------------------------------------------------------------

// One phase of a sag or swell is its bare enable in the web "Phase" array.
constexpr Member kPhaseMembers[] = {
    {path("Enable"), path(), Kind::Integer},
};
constexpr Level kPhaseLevel = levelOf(kPhaseMembers);

constexpr Member kExpertChannelMembers[] = {
    {path("PowerNoLoad"), path("PowerNoLoad"), Kind::Number},
    {path("OperatingTimeEnable"), path("OperatingTime"), Kind::Integer},
    {path("StartupCycleEnable"), path("StartupCycle"), Kind::Integer},
    {path("OverCurrentEnable"), path("OverCurrent"), Kind::Integer},
};
constexpr Level kExpertChannelLevel = levelOf(kExpertChannelMembers);

constexpr Member kExpertConnectorMembers[] = {
    {path("CurrentImbalanceEnable"), path("CurrentImbalance"), Kind::Integer},
    {path("PowerImbalanceEnable"), path("PowerImbalance"), Kind::Integer},
    {path("VoltageImbalanceEnable"), path("VoltageImbalance"), Kind::Integer},
    {path("CurrentAverageMax", "Enable"), path("CurrentAverageMaxEnable"), Kind::Integer},
    {path("CurrentAverageMax", "Period"), path("CurrentAverageMaxPeriod"), Kind::Integer},
    {path("THDEnable"), path("THD"), Kind::Integer},
    {path("OverCurrent", "Threshold"), path("OverCurrentThreshold"), Kind::Number},
    {path("Channel"), path("Cnl"), Kind::Array, &kExpertChannelLevel},
};
constexpr Level kExpertConnectorLevel = levelOf(kExpertConnectorMembers);

constexpr Member kExpertMembers[] = {
    {path("NumberConnectorThreephase"), path("Setup"), Kind::Integer},
    {path("Sag", "Enable"), path("Sag", "Enable"), Kind::Integer},
    {path("Sag", "RateLevel"), path("Sag", "RateLevel"), Kind::Number},
    {path("Sag", "Phase"), path("Sag", "Phase"), Kind::Array, &kPhaseLevel},
    {path("Swell", "Enable"), path("Swell", "Enable"), Kind::Integer},
    {path("Swell", "RateLevel"), path("Swell", "RateLevel"), Kind::Number},
    {path("Swell", "Phase"), path("Swell", "Phase"), Kind::Array, &kPhaseLevel},
    {path("Connectors"), path("Connect"), Kind::Array, &kExpertConnectorLevel},
};

}  // namespace

const Level kConnectorLevel = levelOf(kConnectorMembers);
const Level kExpertLevel = levelOf(kExpertMembers);

}  // namespace zt4::web
