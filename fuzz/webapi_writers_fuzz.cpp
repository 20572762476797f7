// The Web API writers given what a (buggy) web client may post: the first byte picks the writer,
// the rest is the JSON value. The stored documents still load afterwards.
#include <cstdlib>

#include "support.hpp"
#include "zt4config.h"

namespace {

constexpr const char* kRestored[] = {"/home/nvram/zt4config.json", "/home/nvram/zt4system.json",
                                     "/home/nvram/zt4.cfg", "/home/nvram/hostapd.conf"};

using Writer = int (*)(json_t*, uint8_t selector);

constexpr Writer kWriters[] = {
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
constexpr unsigned kWriterCount = sizeof kWriters / sizeof kWriters[0];

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    zt4fuzz::root();
    const zt4fuzz::Split input = zt4fuzz::split(data, size);
    json_t* value = zt4fuzz::parseJson(input.data, input.size);
    if (value == nullptr) return 0;
    const int result = kWriters[input.selector % kWriterCount](value, input.selector);
    json_decref(value);
    if (result != 0 && result != -1) std::abort();
    json_t* user = readJSONZT4UserConfigFile();
    json_t* system = readJSONZT4SystemFile();
    if (user == nullptr || system == nullptr) std::abort();
    json_decref(user);
    json_decref(system);
    for (const char* path : kRestored) zt4fuzz::restoreDeviceFile(path);
    return 0;
}
