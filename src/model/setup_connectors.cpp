// The modes the hardware setup gives the six connectors, by the number of three-phase
// connectors. The rows follow the boards as built, not a rule: connector 5 is monophase only
// with 3 or 4 three-phase connectors, and connector 6 is three-phase only in the last row.
#include <cstring>

#include "common/json_ref.hpp"
#include "common/log.hpp"
#include "zt4config/model.h"
#include "zt4config/upgrade.h"
#include "zt4config/user.h"

extern "C" {

const uint8_t setupConnectors[ZT4_SETUP_ROWS][ZT4_CONNECTOR_COUNT] = {
    {1, 1, 1, 1, 0, 0},
    {4, 1, 1, 1, 0, 0},
    {4, 4, 1, 1, 0, 0},
    {4, 4, 4, 1, 1, 0},
    {4, 4, 4, 4, 1, 0},
    {4, 4, 4, 4, 4, 0},
    {4, 4, 4, 4, 4, 4},
};

}  // extern "C"

namespace {

// The setup modes when the stored setup names no row.
constexpr uint8_t kPresetModes[ZT4_CONNECTOR_COUNT] = {4, 4, 4, 1, 1, 0};

}  // namespace

int readZT4ConfigSetupConnectors(zt4Data* data) noexcept {
    const char* function = __func__;
    if (data == nullptr) {
        zt4::logError(function, "zt4Data NULL");
        return -1;
    }
    std::memcpy(data->setupModes, kPresetModes, sizeof data->setupModes);
    zt4::JsonRef setup(readJSONZT4ConfigSetupConnectors());
    if (!setup) {
        zt4::logError(function, "json NULL");
        return -1;
    }
    json_t* row = json_object_get(setup.get(), "Setup");
    if (row == nullptr) {
        zt4::logError(function, "FAILED to read Setup Connectors");
        return -1;
    }
    if (json_is_integer(row)) {
        const json_int_t number = json_integer_value(row);
        zt4::logLine(LOG_INFO, "Read Setup Connectors %u", static_cast<unsigned>(number));
        if (number >= 0 && number < ZT4_SETUP_ROWS) {
            std::memcpy(data->setupModes, setupConnectors[number], sizeof data->setupModes);
        }
    }
    const uint8_t* modes = data->setupModes;
    zt4::logLine(LOG_INFO, "Read Setup Connectors: %s %s %s %s %s %s", getNameMode(modes[0]),
                 getNameMode(modes[1]), getNameMode(modes[2]), getNameMode(modes[3]),
                 getNameMode(modes[4]), getNameMode(modes[5]));
    return 0;
}
