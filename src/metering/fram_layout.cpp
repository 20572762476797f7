#include "metering/fram_layout.hpp"

extern "C" const FRAMRegisterBlock FRAM_Base_v0[ZT4_FRAM_V0_ROW_COUNT] = {
    {"ENERGY IMPORT ACTIVE", 0, 72},
    {"ENERGY IMPORT REACTIVE +", 72, 72},
};

// The two export rows are reserved: no operation reads or writes them.
extern "C" const FRAMRegisterBlock FRAM_Base[ZT4_FRAM_ROW_COUNT] = {
    {"ENERGY IMPORT ACTIVE", 192, 96},
    {"ENERGY IMPORT REACTIVE +", 288, 96},
    {"ENERGY EXPORT ACTIVE", 384, 96},
    {"ENERGY IMPORT REACTIVE -", 480, 96},
    {"ENERGY IMPORT ACTIVE RAW", 576, 96},
    {"ENERGY IMPORT REACTIVE RAW +", 672, 96},
    {"ENERGY EXPORT ACTIVE RAW", 768, 96},
    {"ENERGY IMPORT REACTIVE RAW -", 864, 96},
    {"OPERATING TIME", 960, 96},
    {"STARTUP", 1056, 96},
    {"SAG", 1152, 12},
    {"SWELL", 1164, 12},
    {"OVERCURRENT", 1176, 72},
};

namespace zt4::fram {
namespace {

constexpr Placement kVersion0Energies[] = {{4, 0}, {5, 1}};
constexpr Placement kEnergies[] = {{4, 0}, {5, 1}, {7, 3}, {56, 4}, {57, 5}, {59, 7}};

constexpr Layout kLayouts[] = {
    {0, FRAM_Base_v0, {kVersion0Energies, 2}, 18, CounterEncoding::Float},
    {1, FRAM_Base, {kEnergies, 6}, 24, CounterEncoding::Float},
    {2, FRAM_Base, {kEnergies, 6}, 24, CounterEncoding::Unsigned},
};

constexpr uint8_t kUpgradedEnergies[] = {5, 4};

constexpr Counter kCounters[] = {
    {"OperatingTime", 16, 8, false, GetZT4FRAMOperatingTime, SetZT4FRAMOperatingTime},
    {"Startup", 17, 9, true, GetZT4FRAMStartup, SetZT4FRAMStartup},
    {"Sag", 18, 10, true, GetZT4FRAMSag, SetZT4FRAMSag},
    {"Swell", 19, 11, true, GetZT4FRAMSwell, SetZT4FRAMSwell},
    {"OverCurrent", 22, 12, true, GetZT4FRAMOverCurrent, SetZT4FRAMOverCurrent},
};

}  // namespace

const Layout* layoutOf(uint8_t version) {
    for (const Layout& layout : kLayouts) {
        if (layout.version == version) return &layout;
    }
    return nullptr;
}

const Layout& currentLayout() { return kLayouts[ZT4_FRAM_LAYOUT_VERSION]; }

const FRAMRegisterBlock* rowOf(const Layout& layout, uint8_t block) {
    for (const Placement& placement : layout.energies) {
        if (placement.block == block) return &layout.rows[placement.row];
    }
    return nullptr;
}

Rows<uint8_t> upgradedEnergies() { return {kUpgradedEnergies, sizeof kUpgradedEnergies}; }

Rows<Counter> counters() { return {kCounters, sizeof kCounters / sizeof kCounters[0]}; }

const Counter& counterOf(uint8_t block) {
    for (const Counter& counter : kCounters) {
        if (counter.block == block) return counter;
    }
    return kCounters[0];
}

}  // namespace zt4::fram
