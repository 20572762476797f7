// zt4config radio: the radio's value files by one name each.
#include <climits>
#include <cstring>
#include <iostream>
#include <string>

#include "cli.hpp"
#include "zt4config.h"

namespace {

using Getter = int (*)(char*, size_t);
using Setter = int (*)(const char*);

struct RadioValue {
    const char* name;
    Getter get;  // nullptr: write-only
    Setter set;  // nullptr: read-only
    const char* file;
};

int setJoinedFlag(const char* value) {
    return std::strcmp(value, "1") == 0 ? setRadioJoined() : clearRadioJoined();
}

// Persistent state first, then the user settings, then the radio daemon's live parameters.
constexpr RadioValue kValues[] = {
    {"deveui", getRadioDEVEUI, setRadioDEVEUI, "/home/nvram/radiodeveui"},
    {"appkey", getRadioAPPKEY, setRadioAPPKEY, "/home/nvram/radioappkey"},
    {"joined", getRadioJoined, setJoinedFlag, "/home/nvram/radiojoined"},
    {"localtime", readRadioLocalTime, writeRadioLocalTime, "/home/nvram/radiolocaltime"},
    {"version", getRadioVersion, setRadioVersion, "/home/nvram/radioversion"},
    {"regionband", getRadioRegionBand, setRadioRegionBand, "/home/nvram/currentradioregionband"},
    {"user.regionband", readUserConfigRadioRegionBand, writeUserConfigRadioRegionBand,
     "/home/nvram/regionbandlora"},
    {"user.linefrequency", readUserConfigLineFrequency, writeUserConfigLineFrequency,
     "/home/nvram/linefrequency"},
    {"user.ipv4addressing", readUserConfigEthernetIPv4Addressing,
     writeUserConfigEthernetIPv4Addressing, "/home/nvram/ethernetipv4addressing"},
    {"lorawan.appeui", getConfigRadioAppeui, setConfigRadioAppeui, "/var/tmp/radioappeui"},
    {"lorawan.deveui", getConfigRadioDeveui, setConfigRadioDeveui, "/var/tmp/radiodeveui"},
    {"lorawan.appkey", getConfigRadioAppkey, setConfigRadioAppkey, "/var/tmp/radioappkey"},
    {"lorawan.nwkkey", getConfigRadioNetworkKey, nullptr, "/var/tmp/radionwkkey"},
    {"lorawan.address", getConfigRadioAddress, nullptr, "/var/tmp/radioaddress"},
    {"lorawan.networkid", getConfigRadioNetworkID, nullptr, "/var/tmp/radionetworkid"},
    {"lorawan.nwkskey", getConfigRadioNetworkSKey, nullptr, "/var/tmp/radionwkskey"},
    {"lorawan.appskey", getConfigRadioAppSKey, nullptr, "/var/tmp/radioappskey"},
    {"lorawan.adr", getConfigRadioADR, nullptr, "/var/tmp/radioadr"},
    {"lorawan.dr", getConfigRadioDR, setConfigRadioDR, "/var/tmp/radiodr"},
    {"lorawan.joined", getConfigRadioJoined, setConfigRadioJoined, "/var/tmp/radiojoined"},
    {"lorawan.networkstatus", getConfigRadioNetworkStatus, setConfigRadioNetworkStatus,
     "/var/tmp/radionetworkstatus"},
    {"lorawan.drdone", getConfigRadioDRMaxReached, nullptr, "/var/tmp/radiodrdone"},
    {"lorawan.version", getConfigRadioVersion, setConfigRadioVersion, "/var/tmp/radioversion"},
    {"lorawan.regionband", getConfigRadioBand, setConfigRadioRegionBand,
     "/var/tmp/radioregionband"},
    {"lorawan.localtime", nullptr, setConfigRadioLocalTime, "/var/tmp/radiolocaltime"},
    {"lorawan.epochtime", nullptr, setConfigRadioEpochTime, "/var/tmp/radioepochtime"},
};

const RadioValue* findValue(const std::string& name) {
    for (const RadioValue& value : kValues) {
        if (name == value.name) return &value;
    }
    return nullptr;
}

// The value without the newline some files keep.
std::string withoutNewline(const char* text) {
    std::string value = text;
    while (!value.empty() && (value.back() == '\n' || value.back() == '\r')) value.pop_back();
    return value;
}

int runGet(const cli::Args& args) {
    if (args.size() != 2) return cli::usageError("radio get takes one NAME");
    const RadioValue* value = findValue(args[1]);
    if (value == nullptr) return cli::usageError("unknown radio value " + args[1]);
    if (value->get == nullptr) return cli::usageError(args[1] + " cannot be read");
    char buffer[128];
    if (value->get(buffer, sizeof buffer) != 0) return cli::kExitFailed;
    json_t* result = json_pack("{s:s%}", value->name, buffer, withoutNewline(buffer).size());
    if (result == nullptr) std::cerr << "zt4config: " << args[1] << " is not UTF-8 text\n";
    return cli::printJson(result);
}

int runSet(const cli::Args& args) {
    if (args.size() != 3) return cli::usageError("radio set takes NAME and VALUE");
    const RadioValue* value = findValue(args[1]);
    if (value == nullptr) return cli::usageError("unknown radio value " + args[1]);
    if (value->set == nullptr) return cli::usageError(args[1] + " cannot be written");
    if (value->set == setJoinedFlag && args[2] != "0" && args[2] != "1") {
        return cli::usageError("joined takes 0 or 1");
    }
    return cli::exitFor(value->set(args[2].c_str()));
}

int runJoinTime(const cli::Args& args) {
    if (args.size() == 1) {
        int32_t timestamp = 0;
        if (getTimestampLastJoin(&timestamp) != 0) return cli::kExitFailed;
        return cli::printJson(json_pack("{s:I}", "TimestampLastJoin",
                                        static_cast<json_int_t>(timestamp)));
    }
    long long timestamp = 0;
    if (args.size() != 3 || args[1] != "set" || !cli::parseNumber(args[2], timestamp) ||
        timestamp < INT32_MIN || timestamp > INT32_MAX) {
        return cli::usageError("radio join-time [set SECONDS]");
    }
    return cli::exitFor(setTimestampLastJoin(static_cast<int32_t>(timestamp)));
}

int runNames(const cli::Args& args) {
    if (args.size() != 1) return cli::usageError("radio names takes no argument");
    json_t* names = json_array();
    for (const RadioValue& value : kValues) {
        json_array_append_new(names, json_pack("{s:s, s:s, s:i, s:i}", "name", value.name,
                                               "file", value.file, "get", value.get ? 1 : 0,
                                               "set", value.set ? 1 : 0));
    }
    return cli::printJson(names);
}

int runRadio(const cli::Args& args) {
    if (args.empty()) return cli::usageError("radio needs a subcommand");
    if (args[0] == "get") return runGet(args);
    if (args[0] == "set") return runSet(args);
    if (args[0] == "join-time") return runJoinTime(args);
    if (args[0] == "names") return runNames(args);
    return cli::usageError("unknown radio subcommand " + args[0]);
}

constexpr const char* kSynopsis =
    "radio get NAME            a radio value as {\"NAME\": value}\n"
    "radio set NAME VALUE      store a radio value\n"
    "radio join-time [set N]   time of the last join\n"
    "radio names               the value names and their files";

const cli::Registration registration({"radio", kSynopsis, 610, runRadio});

}  // namespace
