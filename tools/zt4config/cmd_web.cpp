// zt4config web get|set DOCUMENT: the documents of the device's web interface, in the shape the
// web interface reads and writes.
#include <string>

#include "cli.hpp"
#include "zt4config.h"

namespace {

json_t* readDeviceInfo(void) {
    json_t* document = json_object();
    if (document == nullptr || readJSONZT4WebAPIDeviceInfo(document) != 0) {
        json_decref(document);
        return nullptr;
    }
    return document;
}

// The tool holds no register image: the measurements come from an image of zeros, the
// configuration from the record that the stored documents fill.
json_t* readDataConnectors(void) {
    static uint16_t image[ZT4_MODBUS_IMAGE_WORDS];
    zt4Data data;
    if (readZT4AllConfig(&data) != 0) return nullptr;
    return readJSONZT4WebAPIDataConnectors(image, &data);
}

struct WebDocument {
    const char* word;
    json_t* (*read)(void);    // null: cannot be read
    int (*write)(json_t*);    // null: cannot be written
};

const WebDocument kDocuments[] = {
    {"file", readJSONZT4WebAPIConfigFile, writeJSONZT4WebAPIConfigFile},
    {"system", readJSONZT4WebAPISystemFile, writeJSONZT4WebAPISystemFile},
    {"device-info", readDeviceInfo, nullptr},
    {"data-connectors", readDataConnectors, nullptr},
    {"web", readJSONZT4WebAPIConfigWeb, writeJSONZT4WebAPIConfigWeb},
    {"radio", readJSONZT4WebAPIConfigRadio, writeJSONZT4WebAPIConfigRadio},
    {"wifi", readJSONZT4WebAPIConfigWiFi, writeJSONZT4WebAPIConfigWiFi},
    {"wifi-ssid", nullptr, writeJSONZT4WebAPIConfigWiFiSSID},
    {"ethernet", readJSONZT4WebAPIConfigEthernet, writeJSONZT4WebAPIConfigEthernet},
    {"modbus", readJSONZT4WebAPIConfigModbus, writeJSONZT4WebAPIConfigModbus},
    {"bacnet", readJSONZT4WebAPIConfigBACnet, writeJSONZT4WebAPIConfigBACnet},
    {"setup-connectors", readJSONZT4WebAPIConfigSetupConnectors, writeJSONZT4WebAPIConfigSetupConnectors},
    {"connectors", readJSONZT4WebAPIConfigConnectors, writeJSONZT4WebAPIConfigConnectors},
    {"expert", readJSONZT4WebAPIConfigExpert, writeJSONZT4WebAPIConfigExpert},
};

const char* const kWords =
    "file system device-info data-connectors web radio wifi wifi-ssid ethernet modbus bacnet setup-connectors "
    "connectors expert, or connector N";

const WebDocument* find(const std::string& word) {
    for (const WebDocument& document : kDocuments) {
        if (word == document.word) return &document;
    }
    return nullptr;
}

int runGet(const cli::Args& args) {
    if (args.size() == 3 && args[1] == "connector") {
        const unsigned id = cli::connectorNumber(args[2]);
        if (id == 0) return cli::usageError("web get connector: N must be 1 to 6");
        return cli::printJson(readJSONZT4WebAPIConfigConnectorById(static_cast<uint8_t>(id)));
    }
    const WebDocument* document = args.size() == 2 ? find(args[1]) : nullptr;
    if (document == nullptr || document->read == nullptr) {
        return cli::usageError(std::string("web get DOCUMENT: one of ") + kWords + " (wifi-ssid is written only)");
    }
    return cli::printJson(document->read());
}

int runSet(const cli::Args& args) {
    unsigned id = 0;
    const WebDocument* document = nullptr;
    if (args.size() == 4 && args[1] == "connector") {
        id = cli::connectorNumber(args[2]);
        if (id == 0) return cli::usageError("web set connector: N must be 1 to 6");
    } else if (args.size() == 3) {
        document = find(args[1]);
        if (document == nullptr || document->write == nullptr) {
            return cli::usageError(std::string("web set DOCUMENT JSON|-: one of ") + kWords +
                                   " (device-info and data-connectors are read only)");
        }
    } else {
        return cli::usageError("web set DOCUMENT JSON|- (JSON from the argument, or stdin with -)");
    }
    json_t* value = cli::jsonArgument(args.back());
    if (value == nullptr) return cli::kExitUsage;
    const int result = id != 0 ? writeJSONZT4WebAPIConfigConnectorById(value, static_cast<uint8_t>(id))
                               : document->write(value);
    json_decref(value);
    return cli::exitFor(result);
}

int runWeb(const cli::Args& args) {
    if (!args.empty() && args[0] == "get") return runGet(args);
    if (!args.empty() && args[0] == "set") return runSet(args);
    return cli::usageError("web get DOCUMENT | web set DOCUMENT JSON|-");
}

const cli::Registration registration({"web",
                                      "web get DOCUMENT          print a document as the web interface reads it\n"
                                      "web set DOCUMENT JSON|-   store a web-shaped document (JSON from the\n"
                                      "                          argument, or stdin with -); DOCUMENT: file\n"
                                      "                          system device-info data-connectors web radio\n"
                                      "                          wifi wifi-ssid\n"
                                      "                          ethernet modbus bacnet setup-connectors\n"
                                      "                          connectors expert, or connector N",
                                      620, runWeb});

}  // namespace
