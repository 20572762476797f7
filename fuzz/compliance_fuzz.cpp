// A candidate user document, as a web client or a hand edit delivers it, taken up whole. Whatever
// the candidate holds, the stored document must still load afterwards.
#include <cstdlib>
#include <string>

#include "support.hpp"
#include "zt4config.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string candidate = zt4fuzz::root() + "/var/tmp/candidate.json";
    if (!zt4fuzz::writeDeviceFile("/var/tmp/candidate.json", data, size)) return 0;
    uint8_t section = 0;
    const int result = checkComplianceUserConfigFile(candidate.c_str(), &section);
    if (result != 0 && result != -1) std::abort();
    if (result == -1 && section > 8) std::abort();
    json_t* stored = readJSONZT4UserConfigFile();
    if (stored == nullptr) std::abort();
    json_decref(stored);
    zt4fuzz::restoreDeviceFile("/home/nvram/zt4config.json");
    return 0;
}
