// Layout upgrades of the FRAM. The energy re-layout needs each connector's wiring mode, which it
// takes from the configuration record; the reader is a parameter so that the re-layout can be
// exercised with chosen modes.
#pragma once

#include <cstdint>

#include "zt4config/record.h"

namespace zt4::fram {

// Fills the record from the configuration: true on success.
using ConfigurationReader = bool (*)(zt4Data& data);

// upgrade_register_energy with the configuration taken from `readConfiguration`.
int upgradeEnergyBlock(uint8_t from, uint8_t to, uint8_t index, ConfigurationReader readConfiguration);

}  // namespace zt4::fram
