// The wiring modes of a channel. Modes 2, 4 and 6 are three-phase without balance; 3 and 5 are
// balanced (one measured phase stands for three); 0 switches the channel off.
#include "zt4config/model.h"

extern "C" {

const char* const Mode[ZT4_MODE_COUNT] = {
    "Disabled",
    "Monophase",
    "Triphase with neutral",
    "Triphase balanced with neutral",
    "Triphase",
    "Triphase balanced",
    "Triphase with Voltage Transformer",
};

const char* getNameMode(unsigned int mode) noexcept {
    return mode < ZT4_MODE_COUNT ? Mode[mode] : "";
}

}  // extern "C"
