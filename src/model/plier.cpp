// The catalogue of current clamps. Clamp 0 stands for "no clamp": its x of 1.0 and amps of 1
// keep divisions by it harmless. "Adaptator" is the catalogue's own spelling.
#include "zt4config/model.h"

extern "C" {

const PlierModel Plier[ZT4_PLIER_COUNT] = {
    {"", "", 1.0f, 1},
    {"Adaptator TI 5A", "5A : 333mV", 333.0f, 5},
    {"JC10F30-333", "30A : 333mV", 333.0f, 30},
    {"JC16F70-333", "70A : 333mV", 333.0f, 70},
    {"JC24F200-333", "200A : 333mV", 333.0f, 200},
    {"JC36S400-333", "400A : 333mV", 333.0f, 400},
    {"RCT-1000", "1000A : 100mV", 100.0f, 1000},
    {"CT 100A", "100A : 333mV", 333.0f, 100},
    {"CT 1A", "1A : 333mV", 333.0f, 1},
};

const char* getNamePlier(unsigned int plier) noexcept {
    return plier < ZT4_PLIER_COUNT ? Plier[plier].name : "";
}

const char* getRatePlier(unsigned int plier) noexcept {
    return plier < ZT4_PLIER_COUNT ? Plier[plier].rate : "";
}

float getxPlier(unsigned int plier) noexcept {
    return plier < ZT4_PLIER_COUNT ? Plier[plier].x : 1.0f;
}

uint32_t getAmpsPlier(unsigned int plier) noexcept {
    return plier < ZT4_PLIER_COUNT ? Plier[plier].amps : 0;
}

}  // extern "C"
