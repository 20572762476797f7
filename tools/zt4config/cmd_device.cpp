// zt4config device: the device's identity as the web interface shows it.
#include <cstring>
#include <string>

#include "cli.hpp"
#include "zt4config.h"

namespace {

int runInfo(const cli::Args& args) {
    if (args.size() != 1) return cli::usageError("device info takes no argument");
    json_t* document = json_object();
    if (readJSONZT4DeviceInfo(document) != 0) {
        json_decref(document);
        return cli::kExitFailed;
    }
    return cli::printJson(document);
}

int runSerial(const cli::Args& args) {
    int spacing = 0;
    if (args.size() == 2 && args[1] == "--spaced") {
        spacing = 1;
    } else if (args.size() != 1) {
        return cli::usageError("device serial [--spaced]");
    }
    char serial[32];
    if (getSerialNumber(serial, sizeof serial, spacing) < 0) return cli::kExitFailed;
    return cli::printJson(json_pack("{s:s}", "SerialNumber", serial));
}

int runSsid(const cli::Args& args) {
    if (args.size() != 1) return cli::usageError("device ssid takes no argument");
    json_t* document = json_object();
    if (readSSID(document) != 0) {
        json_decref(document);
        return cli::kExitFailed;
    }
    return cli::printJson(document);
}

int runBoard(const cli::Args& args) {
    if (args.size() != 1) return cli::usageError("device board takes no argument");
    json_t* document = json_object();
    char hardware[16];
    if (getInfoDevice("hardware", hardware, sizeof hardware) == 0) {
        hardware[std::strcspn(hardware, "\r\n")] = '\0';
        json_object_set_new(document, "HW", json_string(hardware));
    }
    json_object_set_new(document, "BoardVersion3", json_integer(isHardwareBoardVersion3()));
    json_object_set_new(document, "BoardVersion3_2", json_integer(isHardwareBoardVersion3_2()));
    return cli::printJson(document);
}

int runDevice(const cli::Args& args) {
    if (args.empty()) return cli::usageError("device needs a subcommand");
    if (args[0] == "info") return runInfo(args);
    if (args[0] == "serial") return runSerial(args);
    if (args[0] == "ssid") return runSsid(args);
    if (args[0] == "board") return runBoard(args);
    return cli::usageError("unknown device subcommand " + args[0]);
}

constexpr const char* kSynopsis =
    "device info               the device-information document\n"
    "device serial [--spaced]  the serial number\n"
    "device ssid               the Wi-Fi access point's SSID\n"
    "device board              hardware version and board generation";

const cli::Registration registration({"device", kSynopsis, 600, runDevice});

}  // namespace
