// zt4config model | upgrade | update: the record the metering daemon starts from, the upgrade
// of the user document after a software update, and the small targeted updates.
#include <cstring>
#include <string>

#include "cli.hpp"
#include "zt4config.h"

namespace {

json_t* real(float value) { return json_real(static_cast<double>(value)); }

template <size_t N>
json_t* bytes(const uint8_t (&values)[N]) {
    json_t* array = json_array();
    for (uint8_t value : values) json_array_append_new(array, json_integer(value));
    return array;
}

json_t* channelJson(const ChannelConfig& c) {
    char name[ZT4_CHANNEL_NAME_SIZE];
    std::memcpy(name, c.name, sizeof name);
    name[sizeof name - 1] = '\0';
    return json_pack(
        "{s:s, s:i, s:i, s:i, s:i, s:i, s:o, s:I, s:o, s:o, s:I, s:I, s:I, s:I, s:I, s:I, s:I, s:I, "
        "s:I, s:I, s:I, s:I, s:I}",
        "name", name, "enable", c.enable, "mode", c.mode, "phase", c.phase, "ctModel", c.ctModel,
        "direction", c.direction, "generalFactor", real(c.generalFactor), "ctPrimary",
        static_cast<json_int_t>(c.ctPrimary), "CalVnom", real(c.CalVnom), "CalInom", real(c.CalInom),
        "CalPref", static_cast<json_int_t>(c.CalPref), "CalCurrent", static_cast<json_int_t>(c.CalCurrent),
        "CalIOffset", static_cast<json_int_t>(c.CalIOffset), "CalVoltage", static_cast<json_int_t>(c.CalVoltage),
        "CalVOffset", static_cast<json_int_t>(c.CalVOffset), "CalActivePower",
        static_cast<json_int_t>(c.CalActivePower), "CalWOffset", static_cast<json_int_t>(c.CalWOffset),
        "CalVAGain", static_cast<json_int_t>(c.CalVAGain), "CalVARGain", static_cast<json_int_t>(c.CalVARGain),
        "CalVAROffset", static_cast<json_int_t>(c.CalVAROffset), "CalPhaseA", static_cast<json_int_t>(c.CalPhaseA),
        "CalPhaseB", static_cast<json_int_t>(c.CalPhaseB), "CalPhaseC", static_cast<json_int_t>(c.CalPhaseC));
}

json_t* connectorJson(const ConnectorConfig& c) {
    json_t* channels = json_array();
    for (const ChannelConfig& channel : c.channels) json_array_append_new(channels, channelJson(channel));
    return json_pack("{s:i, s:o, s:i, s:o, s:o, s:o, s:i}", "enabled", c.enabled, "xPlier", real(c.xPlier),
                     "vtEnable", c.vtEnable, "vtPrimary", real(c.vtPrimary), "vtSecondary", real(c.vtSecondary),
                     "channels", channels, "currentImbalanceOff", c.currentImbalanceOff);
}

json_t* connectorExpertJson(const ConnectorExpert& c) {
    json_t* channels = json_array();
    for (const ChannelExpert& channel : c.channels) {
        json_array_append_new(channels, json_pack("{s:o, s:i, s:i, s:i}", "powerNoLoad", real(channel.powerNoLoad),
                                                  "operatingTime", channel.operatingTime, "startupCycle",
                                                  channel.startupCycle, "overCurrent", channel.overCurrent));
    }
    return json_pack("{s:i, s:i, s:i, s:i, s:I, s:i, s:o, s:o}", "currentImbalance", c.currentImbalance,
                     "powerImbalance", c.powerImbalance, "voltageImbalance", c.voltageImbalance,
                     "currentAverageMax", c.currentAverageMax, "period", static_cast<json_int_t>(c.period), "thd",
                     c.thd, "overCurrentThreshold", real(c.overCurrentThreshold), "channels", channels);
}

json_t* expertJson(const ExpertConfig& e) {
    json_t* connectors = json_array();
    for (const ConnectorExpert& connector : e.connectors) {
        json_array_append_new(connectors, connectorExpertJson(connector));
    }
    json_t* expert = json_pack(
        "{s:o, s:o, s:i, s:i, s:i, s:o, s:o, s:o, s:i, s:i, s:o, s:o, s:o, s:i}", "nominalVoltage",
        real(e.nominalVoltage), "lineFrequency", real(e.lineFrequency), "sysSag", e.sysSag, "sagEnable",
        e.sagEnable, "sagCycle", e.sagCycle, "sagRateLevel", real(e.sagRateLevel), "sagLevel", real(e.sagLevel),
        "sagPhase", bytes(e.sagPhase), "sysSwell", e.sysSwell, "swellEnable", e.swellEnable, "swellRateLevel",
        real(e.swellRateLevel), "swellLevel", real(e.swellLevel), "swellPhase", bytes(e.swellPhase),
        "ctThreshold", e.ctThreshold);
    json_t* flags = json_pack("{s:i, s:i, s:i, s:i, s:i, s:i, s:i, s:i, s:o}", "sysOperatingTime",
                              e.sysOperatingTime, "sysStartupCycle", e.sysStartupCycle, "sysCurrentImbalance",
                              e.sysCurrentImbalance, "sysPowerImbalance", e.sysPowerImbalance,
                              "sysVoltageImbalance", e.sysVoltageImbalance, "sysCurrentAverageMax",
                              e.sysCurrentAverageMax, "sysTHD", e.sysTHD, "sysOverCurrent", e.sysOverCurrent,
                              "connectors", connectors);
    json_object_update(expert, flags);
    json_decref(flags);
    return expert;
}

// The record by the header's field names, in the header's order; the daemon's leading area,
// which the library never fills, is left out.
json_t* recordJson(const zt4Data& data) {
    json_t* connectors = json_array();
    for (const ConnectorConfig& connector : data.connectors) {
        json_array_append_new(connectors, connectorJson(connector));
    }
    return json_pack("{s:o, s:o, s:i, s:o}", "setupModes", bytes(data.setupModes), "connectors", connectors,
                     "meterRunning", data.meterRunning, "expert", expertJson(data.expert));
}

int runModel(const cli::Args& args) {
    const bool display = args.size() == 1 && args[0] == "--display";
    if (!args.empty() && !display) return cli::usageError("model takes no argument but --display");
    zt4Data data;
    std::memset(&data, 0, sizeof data);
    if (readZT4AllConfig(&data) != 0) return cli::kExitFailed;
    if (display) DisplayZT4Param(&data);
    return cli::printJson(recordJson(data));
}

int runUpgrade(const cli::Args& args) {
    if (!args.empty()) return cli::usageError("upgrade takes no argument");
    return cli::exitFor(upgradeJSONZT4ConfigFile());
}

// A byte argument of the update commands: false when it is not a whole number 0 to `highest`.
bool byteArgument(const std::string& text, long long highest, uint8_t& value) {
    long long number = 0;
    if (!cli::parseNumber(text, number) || number < 0 || number > highest) return false;
    value = static_cast<uint8_t>(number);
    return true;
}

int runUpdate(const cli::Args& args) {
    if (args.size() != 2) {
        return cli::usageError("update takes transmit-mode N, setup-connectors N, ethernet JSON|- or wifi JSON|-");
    }
    const std::string& what = args[0];
    uint8_t number = 0;
    if (what == "transmit-mode") {
        if (!byteArgument(args[1], 1, number)) return cli::usageError("update transmit-mode: N is 0 or 1");
        return cli::exitFor(updateJSONZT4ConfigRadioTransmitMode(number));
    }
    if (what == "setup-connectors") {
        if (!byteArgument(args[1], 6, number)) return cli::usageError("update setup-connectors: N is 0 to 6");
        return cli::exitFor(updateJSONZT4ConfigSetupConnectors(number));
    }
    int (*update)(json_t*) = what == "ethernet" ? updateZT4ConfigEthernet
                             : what == "wifi"   ? updateZT4ConfigWiFi
                                                : nullptr;
    if (update == nullptr) return cli::usageError("update: unknown setting " + what);
    json_t* value = cli::jsonArgument(args[1]);
    if (value == nullptr) return cli::usageError("update " + what + ": the value is not JSON");
    const int result = update(value);
    json_decref(value);
    return cli::exitFor(result);
}

const cli::Registration model({"model",
                               "model [--display]          the metering daemon's record filled from the\n"
                               "                           documents and calibration files, as JSON\n"
                               "                           (--display: its dump to the log on stderr too)",
                               450, runModel});
const cli::Registration upgrade({"upgrade",
                                 "upgrade                    add the factory document's missing sections\n"
                                 "                           to the user document",
                                 451, runUpgrade});
const cli::Registration updates({"update",
                                 "update transmit-mode N     radio transmit mode 0 or 1 as frame format\n"
                                 "update setup-connectors N  number of three-phase connectors, 0 to 6\n"
                                 "update ethernet JSON|-     rewrite the Static_ lines of zt4.cfg\n"
                                 "update wifi JSON|-         rewrite the DHCPD_ lines of zt4.cfg",
                                 452, runUpdate});

}  // namespace
