// The Web API writers given what a (buggy) web client may post: the first byte picks the writer,
// the rest is the JSON value. The stored documents still load afterwards.
#include <iterator>

#include "support.hpp"
#include "zt4config.h"

namespace {

constexpr const char* kRestored[] = {"/home/nvram/zt4config.json", "/home/nvram/zt4system.json",
                                     "/home/nvram/zt4.cfg", "/home/nvram/hostapd.conf"};

constexpr zt4fuzz::Writer kWriters[] = {
    [](json_t* json, uint8_t) { return writeJSONZT4WebAPIConfigFile(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4WebAPISystemFile(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4WebAPIConfigWeb(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4WebAPIConfigRadio(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4WebAPIConfigWiFi(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4WebAPIConfigWiFiSSID(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4WebAPIConfigEthernet(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4WebAPIConfigModbus(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4WebAPIConfigBACnet(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4WebAPIConfigSetupConnectors(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4WebAPIConfigConnectors(json); },
    [](json_t* json, uint8_t selector) {
        return writeJSONZT4WebAPIConfigConnectorById(json, static_cast<uint8_t>(selector >> 4));
    },
    [](json_t* json, uint8_t) { return writeJSONZT4WebAPIConfigExpert(json); },
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    zt4fuzz::runWriter(kWriters, std::size(kWriters), data, size, kRestored, std::size(kRestored));
    return 0;
}
