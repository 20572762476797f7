// Every section writer of the user and the system documents given a fuzzed JSON value: the first
// byte picks the writer, the rest is the value. A refused value leaves a document that still loads.
#include <cstdlib>

#include "support.hpp"
#include "zt4config.h"

namespace {

constexpr const char* kUser = "/home/nvram/zt4config.json";
constexpr const char* kSystem = "/home/nvram/zt4system.json";
constexpr const char* kFlat = "/home/nvram/zt4.cfg";

using Writer = int (*)(json_t*, uint8_t selector);

int connectorById(json_t* json, uint8_t selector) {
    return writeJSONZT4ConfigConnectorById(json, static_cast<uint8_t>(selector >> 5));
}

constexpr Writer kWriters[] = {
    [](json_t* json, uint8_t) { return writeJSONZT4ConfigWeb(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4ConfigRadio(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4ConfigWiFi(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4ConfigEthernet(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4ConfigModbus(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4ConfigBACnet(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4ConfigSetupConnectors(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4ConfigConnector(json); },
    connectorById,
    [](json_t* json, uint8_t) { return writeJSONZT4ConfigExpert(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4UserConfigVoltageTransformerSyntaxVersion1(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4UserConfigExpertNumberConnectorThreephaseSyntaxVersion1(json); },
    [](json_t* json, uint8_t) { return updateZT4ConfigEthernet(json); },
    [](json_t* json, uint8_t) { return updateZT4ConfigWiFi(json); },
    [](json_t* json, uint8_t) { return updateJSONZT4UserConfigFile(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4SystemWeb(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4SystemRadio(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4SystemWiFi(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4SystemEthernet(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4SystemModbus(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4SystemBACnet(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4SystemConnector(json); },
    [](json_t* json, uint8_t) { return writeJSONZT4SystemExpert(json); },
    [](json_t* json, uint8_t) { return updateJSONZT4SystemFile(json); },
};
constexpr unsigned kWriterCount = sizeof kWriters / sizeof kWriters[0];

void requireLoads(json_t* (*reader)()) {
    json_t* document = reader();
    if (document == nullptr) std::abort();
    json_decref(document);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    zt4fuzz::root();
    const zt4fuzz::Split input = zt4fuzz::split(data, size);
    json_t* value = zt4fuzz::parseJson(input.data, input.size);
    if (value == nullptr) return 0;
    const int result = kWriters[input.selector % kWriterCount](value, input.selector);
    json_decref(value);
    if (result != 0 && result != -1) std::abort();
    requireLoads(readJSONZT4UserConfigFile);
    requireLoads(readJSONZT4SystemFile);
    zt4fuzz::restoreDeviceFile(kUser);
    zt4fuzz::restoreDeviceFile(kSystem);
    zt4fuzz::restoreDeviceFile(kFlat);
    return 0;
}
