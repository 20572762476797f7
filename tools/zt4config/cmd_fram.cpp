// zt4config fram version|upgrade|get|dump: the energy indices and counters kept in the FRAM, and
// its layout version.
#include <cstring>
#include <string>

#include "cli.hpp"
#include "zt4config.h"

namespace {

enum class Shape {
    FourSlot,   // 6 connectors x (total, channels 1 to 3)
    ThreeSlot,  // 6 connectors x channels 1 to 3
    PerPhase,   // phases 1 to 3
};

enum class Value { Float, Counter };  // Counter: unsigned from layout 2, float before

struct FramEntry {
    const char* name;
    uint8_t block;  // in the register image
    Shape shape;
    Value value;
    int (*read)(uint16_t* buffer, uint8_t block);
};

int readEnergy(uint16_t* buffer, uint8_t block) { return GetZT4EnergyIndexToRegister(buffer, block); }
int readOperatingTime(uint16_t* buffer, uint8_t) { return GetZT4FRAMOperatingTimeToRegister(buffer); }
int readStartups(uint16_t* buffer, uint8_t) { return GetZT4FRAMStartupToRegister(buffer); }
int readSags(uint16_t* buffer, uint8_t) { return GetZT4FRAMSagToRegister(buffer); }
int readSwells(uint16_t* buffer, uint8_t) { return GetZT4FRAMSwellToRegister(buffer); }
int readOverCurrents(uint16_t* buffer, uint8_t) { return GetZT4FRAMOverCurrentToRegister(buffer); }

const FramEntry kEntries[] = {
    {"active", 4, Shape::FourSlot, Value::Float, readEnergy},
    {"reactive", 5, Shape::FourSlot, Value::Float, readEnergy},
    {"reactive-negative", 7, Shape::FourSlot, Value::Float, readEnergy},
    {"active-raw", 56, Shape::FourSlot, Value::Float, readEnergy},
    {"reactive-raw", 57, Shape::FourSlot, Value::Float, readEnergy},
    {"reactive-negative-raw", 59, Shape::FourSlot, Value::Float, readEnergy},
    {"operating-time", 16, Shape::FourSlot, Value::Float, readOperatingTime},
    {"startups", 17, Shape::FourSlot, Value::Counter, readStartups},
    {"sags", 18, Shape::PerPhase, Value::Counter, readSags},
    {"swells", 19, Shape::PerPhase, Value::Counter, readSwells},
    {"over-currents", 22, Shape::ThreeSlot, Value::Counter, readOverCurrents},
};

const FramEntry* entryNamed(const std::string& name) {
    for (const FramEntry& entry : kEntries) {
        if (name == entry.name) return &entry;
    }
    return nullptr;
}

std::string entryNames() {
    std::string names;
    for (const FramEntry& entry : kEntries) names += std::string(names.empty() ? "" : ", ") + entry.name;
    return names;
}

json_t* registerValue(const uint16_t* buffer, std::size_t r, bool asInteger) {
    uint32_t bits = 0;
    std::memcpy(&bits, &buffer[2 * r], sizeof bits);
    if (asInteger) return json_integer(static_cast<json_int_t>(bits));
    float value = 0.0f;
    std::memcpy(&value, &bits, sizeof value);
    return json_real(static_cast<double>(value));
}

// The entry's values as JSON (nested by connector where the block has connectors), or null when
// the read fails.
json_t* readEntry(const FramEntry& entry, int8_t version) {
    uint16_t buffer[48] = {};
    if (entry.read(buffer, entry.block) != 0) return nullptr;
    const bool asInteger = entry.value == Value::Counter && version >= 2;
    if (entry.shape == Shape::PerPhase) {
        json_t* phases = json_array();
        for (std::size_t p = 0; p < 3; ++p) json_array_append_new(phases, registerValue(buffer, p, asInteger));
        return phases;
    }
    const std::size_t perConnector = entry.shape == Shape::FourSlot ? 4 : 3;
    json_t* connectors = json_array();
    for (std::size_t c = 0; c < ZT4_CONNECTOR_COUNT; ++c) {
        json_t* values = json_array();
        for (std::size_t s = 0; s < perConnector; ++s) {
            json_array_append_new(values, registerValue(buffer, c * perConnector + s, asInteger));
        }
        json_array_append_new(connectors, values);
    }
    return connectors;
}

json_t* versions() {
    return json_pack("{s:i,s:i}", "memory", static_cast<int>(fram_read_version()), "system",
                     system_fram_read_version());
}

int runVersion(const cli::Args& args) {
    if (!args.empty()) return cli::usageError("fram version takes no argument");
    json_t* result = versions();
    const bool readable = json_integer_value(json_object_get(result, "memory")) >= 0;
    const int status = cli::printJson(result);
    return readable ? status : cli::kExitFailed;
}

int runUpgrade(const cli::Args& args) {
    long long fallback = ZT4_FRAM_LAYOUT_VERSION;
    if (args.size() > 1 || (args.size() == 1 && (!cli::parseNumber(args[0], fallback) || fallback < 0 ||
                                                 fallback > 255))) {
        return cli::usageError("fram upgrade takes an optional default version (0 to 255)");
    }
    const int result = fram_upgrade_version(static_cast<uint8_t>(fallback));
    json_t* report = versions();
    json_object_set_new(report, "result", json_integer(result));
    cli::printJson(report);
    return cli::exitFor(result);
}

int printEntries(const cli::Args& names, json_t* into) {
    const int8_t version = fram_read_version();
    for (const std::string& name : names) {
        const FramEntry* entry = entryNamed(name);
        json_t* values = readEntry(*entry, version);
        if (values == nullptr) {
            json_decref(into);
            return cli::kExitFailed;
        }
        json_object_set_new(into, entry->name, values);
    }
    return cli::printJson(into);
}

int runGet(const cli::Args& args) {
    if (args.empty()) return cli::usageError("fram get takes one or more of: " + entryNames());
    for (const std::string& name : args) {
        if (entryNamed(name) == nullptr) {
            return cli::usageError("fram get: unknown counter '" + name + "' (" + entryNames() + ")");
        }
    }
    return printEntries(args, json_object());
}

int runDump(const cli::Args& args) {
    if (!args.empty()) return cli::usageError("fram dump takes no argument");
    cli::Args all;
    for (const FramEntry& entry : kEntries) all.emplace_back(entry.name);
    return printEntries(all, versions());
}

struct Subcommand {
    const char* word;
    int (*run)(const cli::Args& args);
};

const Subcommand kSubcommands[] = {
    {"version", runVersion}, {"upgrade", runUpgrade}, {"get", runGet}, {"dump", runDump}};

int runFram(const cli::Args& args) {
    if (args.empty()) return cli::usageError("fram takes version, upgrade, get or dump");
    const cli::Args rest(args.begin() + 1, args.end());
    for (const Subcommand& subcommand : kSubcommands) {
        if (args[0] == subcommand.word) return subcommand.run(rest);
    }
    return cli::usageError("fram: unknown action '" + args[0] + "' (version, upgrade, get, dump)");
}

const cli::Registration r({"fram",
                           "fram version              FRAM layout version: in the memory, expected\n"
                           "fram upgrade [DEFAULT]    bring the FRAM to the expected layout\n"
                           "fram get COUNTER...       read energies or counters from the FRAM\n"
                           "fram dump                 every energy and counter, with the versions",
                           700, runFram});

}  // namespace
