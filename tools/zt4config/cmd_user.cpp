// zt4config get|set SECTION: the user configuration's sections as the library reads and writes
// them.
#include <string>

#include "cli.hpp"
#include "zt4config.h"

namespace {

struct UserSection {
    const char* word;
    json_t* (*read)(void);
    int (*write)(json_t* json);
};

// The electrical section has no operation of its own that follows the document's version: a
// version-1 document is read with defaults like the other sections, an older one as stored.
json_t* readElectrical(void) {
    if (readZT4UserConfigFileSyntaxVersion() == 1) {
        return readJSONZT4UserConfigElectricalConfigurationSyntaxVersion1();
    }
    json_t* document = readJSONZT4UserConfigFile();
    if (document == nullptr) return nullptr;
    json_t* section = json_incref(json_object_get(document, "ElectricalConfiguration"));
    json_decref(document);
    return section;
}

const UserSection kSections[] = {
    {"web", readJSONZT4ConfigWeb, writeJSONZT4ConfigWeb},
    {"radio", readJSONZT4ConfigRadio, writeJSONZT4ConfigRadio},
    {"wifi", readJSONZT4ConfigWiFi, writeJSONZT4ConfigWiFi},
    {"ethernet", readJSONZT4ConfigEthernet, writeJSONZT4ConfigEthernet},
    {"modbus", readJSONZT4ConfigModbus, writeJSONZT4ConfigModbus},
    {"bacnet", readJSONZT4ConfigBACnet, writeJSONZT4ConfigBACnet},
    {"electrical", readElectrical, nullptr},
    {"connectors", readJSONZT4ConfigConnector, writeJSONZT4ConfigConnector},
    {"expert", readJSONZT4ConfigExpert, writeJSONZT4ConfigExpert},
    {"setup", readJSONZT4ConfigSetupConnectors, writeJSONZT4ConfigSetupConnectors},
};

const char* const kSectionWords =
    "web, radio, wifi, ethernet, modbus, bacnet, electrical, connectors, connector N, expert, setup";

const UserSection* findSection(const std::string& word) {
    for (const UserSection& section : kSections) {
        if (word == section.word) return &section;
    }
    return nullptr;
}

int runGet(const cli::Args& args) {
    if (args.size() == 2 && args[0] == "connector") {
        unsigned id = cli::connectorNumber(args[1]);
        if (id == 0) return cli::usageError("get connector: N must be 1 to 6");
        return cli::printJson(readJSONZT4ConfigConnectorById(static_cast<uint8_t>(id)));
    }
    if (args.size() != 1) return cli::usageError(std::string("get takes one section: ") + kSectionWords);
    const UserSection* section = findSection(args[0]);
    if (section == nullptr) {
        return cli::usageError("get: unknown section '" + args[0] + "' (" + kSectionWords + ")");
    }
    return cli::printJson(section->read());
}

int runSet(const cli::Args& args) {
    if (args.size() == 3 && args[0] == "connector") {
        unsigned id = cli::connectorNumber(args[1]);
        if (id == 0) return cli::usageError("set connector: N must be 1 to 6");
        json_t* value = cli::jsonArgument(args[2]);
        if (value == nullptr) return cli::kExitUsage;
        int result = writeJSONZT4ConfigConnectorById(value, static_cast<uint8_t>(id));
        json_decref(value);
        return cli::exitFor(result);
    }
    if (args.size() != 2) return cli::usageError("set takes a section and its JSON (or - for stdin)");
    const UserSection* section = findSection(args[0]);
    if (section == nullptr || section->write == nullptr) {
        return cli::usageError("set: '" + args[0] + "' cannot be written (" + kSectionWords +
                               ", except electrical)");
    }
    json_t* value = cli::jsonArgument(args[1]);
    if (value == nullptr) return cli::kExitUsage;
    int result = section->write(value);
    json_decref(value);
    return cli::exitFor(result);
}

const cli::Registration get({"get",
                             "get SECTION               print a user configuration section\n"
                             "                          (web radio wifi ethernet modbus bacnet\n"
                             "                          electrical connectors expert setup,\n"
                             "                          or connector N)",
                             200, runGet});
const cli::Registration set({"set",
                             "set SECTION JSON|-        check and store a section (JSON from the\n"
                             "                          argument, or stdin with -)",
                             201, runSet});

}  // namespace
