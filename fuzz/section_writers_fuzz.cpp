// Every section writer of the user and the system documents given a fuzzed JSON value: the first
// byte picks the writer, the rest is the value. A refused value leaves a document that still loads.
#include <iterator>

#include "support.hpp"
#include "zt4config.h"

namespace {

constexpr const char* kRestored[] = {"/home/nvram/zt4config.json", "/home/nvram/zt4system.json",
                                     "/home/nvram/zt4.cfg"};

int connectorById(json_t* json, uint8_t selector) {
    return writeJSONZT4ConfigConnectorById(json, static_cast<uint8_t>(selector >> 5));
}

constexpr zt4fuzz::Writer kWriters[] = {
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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    zt4fuzz::runWriter(kWriters, std::size(kWriters), data, size, kRestored, std::size(kRestored));
    return 0;
}
