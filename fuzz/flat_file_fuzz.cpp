// The flat parameter file read back into user sections: every section reader over the fuzzed file,
// then the merge of what was read into the user document, which must still load afterwards.
#include <cstdlib>

#include "support.hpp"
#include "zt4config.h"

namespace {

constexpr json_t* (*kReaders[])() = {
    readZT4JSONUserConfigWebSyntaxVersion1,      readZT4JSONUserConfigRadioLoRaSyntaxVersion1,
    readZT4JSONUserConfigWiFiSyntaxVersion1,     readZT4JSONUserConfigEthernetSyntaxVersion1,
    readZT4JSONUserConfigModbusSyntaxVersion1,   readZT4JSONUserConfigBACnetSyntaxVersion1,
    readZT4JSONUserConfigConnectorsSyntaxVersion1,
    readZT4JSONUserConfigElectricalConfigurationSyntaxVersion1,
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    zt4fuzz::root();
    if (!zt4fuzz::writeDeviceFile("/home/nvram/zt4.cfg", data, size)) return 0;
    for (json_t* (*reader)() : kReaders) json_decref(reader());
    const int result = printZT4JSONConfigFile();
    if (result != 0 && result != -1) std::abort();
    json_t* stored = readJSONZT4UserConfigFile();
    if (stored == nullptr) std::abort();
    json_decref(stored);
    zt4fuzz::restoreDeviceFile("/home/nvram/zt4config.json");
    return 0;
}
