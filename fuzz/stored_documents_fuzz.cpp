// The stored documents as a hand edit or a torn write may leave them: the first byte picks the
// document, the rest is its content. Every section reader, the export to the flat file, the
// metering daemon's record and the upgrade run over it.
#include <cstdio>
#include <cstdlib>

#include "support.hpp"
#include "zt4config.h"

namespace {

constexpr const char* kDocuments[] = {"/home/nvram/zt4config.json", "/home/nvram/zt4system.json",
                                      "/etc/zt4config_factory.json", "/etc/zt4system_factory.json"};
constexpr unsigned kDocumentCount = sizeof kDocuments / sizeof kDocuments[0];

constexpr json_t* (*kReaders[])() = {
    readJSONZT4ConfigWeb,         readJSONZT4ConfigRadio,      readJSONZT4ConfigRadioWithDevEUI,
    readJSONZT4ConfigWiFi,        readJSONZT4ConfigEthernet,   readJSONZT4ConfigModbus,
    readJSONZT4ConfigBACnet,      readJSONZT4ConfigSetupConnectors, readJSONZT4ConfigConnector,
    readJSONZT4ConfigExpert,      readJSONZT4SystemDevice,     readJSONZT4SystemWeb,
    readJSONZT4SystemRadio,       readJSONZT4SystemWiFi,       readJSONZT4SystemEthernet,
    readJSONZT4SystemModbus,      readJSONZT4SystemBACnet,     readJSONZT4SystemConnector,
    readJSONZT4SystemExpert,      readJSONZT4FactorySystemDevice, readJSONZT4WebAPIConfigFile,
    readJSONZT4WebAPISystemFile,
};

constexpr int (*kExporters[])(FILE*) = {
    setParameterConfigWeb,      setParameterConfigRadio,      setParameterConfigWiFi,
    setParameterConfigEthernet, setParameterConfigModbus,     setParameterConfigBACnet,
    setParameterConfigConnector, setParameterSystemDevice,    setParameterSystemWeb,
    setParameterSystemRadio,    setParameterSystemWiFi,       setParameterSystemEthernet,
    setParameterSystemModbus,   setParameterSystemBACnet,     setParameterSystemConnector,
    setParameterSystemExpert,   setParameterFactorySystemDevice,
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    zt4fuzz::root();
    const zt4fuzz::Split input = zt4fuzz::split(data, size);
    const char* document = kDocuments[input.selector % kDocumentCount];
    if (!zt4fuzz::writeDeviceFile(document, input.data, input.size)) return 0;

    for (json_t* (*reader)() : kReaders) json_decref(reader());
    json_decref(readJSONZT4ConfigConnectorById(static_cast<uint8_t>(input.selector >> 5)));

    FILE* sink = std::fopen("/dev/null", "w");
    if (sink != nullptr) {
        for (int (*exporter)(FILE*) : kExporters) exporter(sink);
        std::fclose(sink);
    }
    static zt4Data record;
    const int filled = readZT4AllConfig(&record);
    if (filled != 0 && filled != -1) std::abort();
    const int upgraded = upgradeJSONZT4ConfigFile();
    if (upgraded != 0 && upgraded != -1) std::abort();

    for (const char* path : kDocuments) zt4fuzz::restoreDeviceFile(path);
    zt4fuzz::restoreDeviceFile("/home/nvram/zt4config.json");
    return 0;
}
