// zt4config system: read and write the sections of the system configuration by one name each.
#include <string>

#include "cli.hpp"
#include "zt4config.h"

namespace {

struct SystemSection {
    const char* name;
    json_t* (*read)(void);
    int (*write)(json_t*);  // nullptr: read only
};

constexpr SystemSection kSections[] = {
    {"device", readJSONZT4SystemDevice, nullptr},
    {"web", readJSONZT4SystemWeb, writeJSONZT4SystemWeb},
    {"radio", readJSONZT4SystemRadio, writeJSONZT4SystemRadio},
    {"wifi", readJSONZT4SystemWiFi, writeJSONZT4SystemWiFi},
    {"ethernet", readJSONZT4SystemEthernet, writeJSONZT4SystemEthernet},
    {"modbus", readJSONZT4SystemModbus, writeJSONZT4SystemModbus},
    {"bacnet", readJSONZT4SystemBACnet, writeJSONZT4SystemBACnet},
    {"connectors", readJSONZT4SystemConnector, writeJSONZT4SystemConnector},
    {"expert", readJSONZT4SystemExpert, writeJSONZT4SystemExpert},
};

const SystemSection* findSection(const std::string& name) {
    for (const SystemSection& section : kSections) {
        if (name == section.name) return &section;
    }
    return nullptr;
}

// A section the library refuses is logged (on stderr) and left as stored, yet the library
// reports success; the tool reads the section back and fails when it did not take the new values.
int writeAndConfirm(const SystemSection& section, json_t* owned) {
    const int result = section.write(owned);
    if (result != 0) {
        json_decref(owned);
        return cli::kExitFailed;
    }
    json_t* stored = section.read();
    bool taken = stored != nullptr;
    // Keys the check filled in are not compared; every key given must now hold its value.
    if (taken && json_is_object(owned)) {
        const char* key = nullptr;
        json_t* value = nullptr;
        json_object_foreach(owned, key, value) {
            taken = taken && json_equal(json_object_get(stored, key), value);
        }
    } else if (taken && json_is_array(owned)) {
        const size_t size = json_array_size(owned);
        for (size_t i = 0; i < size; ++i) {
            json_t* given = json_object_get(json_array_get(owned, i), "Enable");
            taken = taken && (given == nullptr ||
                              json_equal(json_object_get(json_array_get(stored, i), "Enable"), given));
        }
    }
    json_decref(stored);
    json_decref(owned);
    return taken ? cli::kExitOk : cli::kExitFailed;
}

int runSystem(const cli::Args& args) {
    if (args.size() < 2) return cli::usageError("system needs get SECTION or set SECTION JSON|-");
    const SystemSection* section = findSection(args[1]);
    if (section == nullptr) return cli::usageError("unknown system section " + args[1]);
    if (args[0] == "get") {
        if (args.size() != 2) return cli::usageError("system get takes one SECTION");
        return cli::printJson(section->read());
    }
    if (args[0] == "set") {
        if (args.size() != 3) return cli::usageError("system set takes SECTION and JSON or -");
        if (section->write == nullptr) return cli::usageError(args[1] + " cannot be written");
        json_t* value = cli::jsonArgument(args[2]);
        if (value == nullptr) return cli::usageError("system set: the value is not JSON");
        return writeAndConfirm(*section, value);
    }
    return cli::usageError("unknown system subcommand " + args[0]);
}

const cli::Registration registration({"system",
                                      "system get SECTION         a system section (device web radio wifi\n"
                                      "                           ethernet modbus bacnet connectors expert)\n"
                                      "system set SECTION JSON|-  check and store a system section",
                                      420, runSystem});

}  // namespace
