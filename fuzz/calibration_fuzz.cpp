// A calibration file as found on the device (truncated, edited by hand): the first byte picks the
// file, the rest is its content, read through the record readers and the JSON reader.
#include <cstdlib>

#include "support.hpp"
#include "zt4config.h"

namespace {

constexpr const char* kFiles[] = {"/home/nvram/zt4calibration.cfg",
                                  "/home/nvram/zt4calibration_threephase.cfg",
                                  "/home/nvram/zt4calibration_monophase.cfg"};
constexpr int kKinds[] = {ZT4_CALIBRATION_STANDARD, ZT4_CALIBRATION_THREEPHASE, ZT4_CALIBRATION_MONOPHASE};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    zt4fuzz::root();
    const zt4fuzz::Split input = zt4fuzz::split(data, size);
    const unsigned which = input.selector % 3;
    if (!zt4fuzz::writeDeviceFile(kFiles[which], input.data, input.size)) return 0;

    static ConnectorConfig connectors[ZT4_CONNECTOR_COUNT];
    int result = 0;
    switch (which) {
        case 0: result = ReadZT4ConfigCalibrationStandard(connectors); break;
        case 1: result = ReadZT4ConfigCalibrationThreephase(connectors); break;
        default: result = ReadZT4ConfigCalibrationMonophase(connectors); break;
    }
    if (result != 0 && result != 1) std::abort();
    result = ReadZT4ConfigCalibration(connectors);
    if (result != 0 && result != 1) std::abort();

    json_t* object = json_object();
    result = readConfigCalibration(object, kKinds[which]);
    if (result != 0 && result != 1) std::abort();
    if (result == 0 && json_object_get(object, "Connector") == nullptr) std::abort();
    json_decref(object);
    zt4fuzz::restoreDeviceFile(kFiles[which]);
    return 0;
}
