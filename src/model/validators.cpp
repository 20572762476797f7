// Range validators for the numbers of the electrical configuration: 0 valid, -1 invalid, silent.
#include "zt4config/model.h"

namespace {

constexpr int verdict(bool valid) noexcept { return valid ? 0 : -1; }

}  // namespace

extern "C" {

int isConnectorValid(unsigned int connector) noexcept {
    return verdict(connector >= 1 && connector <= ZT4_CONNECTOR_COUNT);
}

// Up to the neutral input's channel 4: the calibration store addresses it.
int isChannelValid(unsigned int channel) noexcept {
    return verdict(channel >= 1 && channel <= ZT4_CHANNEL_RECORDS);
}

int isEnableValid(int enable) noexcept { return verdict(enable == 0 || enable == 1); }

int isModeValid(unsigned int mode) noexcept { return verdict(mode < ZT4_MODE_COUNT); }

int isModeEnabled(int mode) noexcept { return verdict(mode != 0); }

int isPhaseValid(unsigned int phase) noexcept {
    return verdict(phase >= 1 && phase <= ZT4_PHASE_COUNT);
}

int isPlierValid(unsigned int plier) noexcept { return verdict(plier < ZT4_PLIER_COUNT); }

int isDirectionValid(int direction) noexcept { return verdict(direction == 0 || direction == 1); }

int isXValid(int x) noexcept { return verdict(x >= 1); }

int isXPlierValid(float x) noexcept { return verdict(x > 0.0f); }

int isXFactorValid(float x) noexcept { return verdict(x >= 0.0f); }

int isXGeneralValid(float x) noexcept { return verdict(x > 0.0f); }

}  // extern "C"
