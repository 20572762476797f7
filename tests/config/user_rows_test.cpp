// The user document's section checks, compliance rules, filters, readers and writers, one row of
// data/user_rows.txt per case: KIND | FUNCTION | INPUT | RESULT | LOG | AFTER | STORED.
//  INPUT  "-" (none), a JSON text, or "@a/b/0=json & @c" (set / delete members of the base: the
//         check's own defaults, or the example device's user document for comply, filter and read).
//  LOG    every line logged at the error level, in order, separated by " ; ", then "<6>" lines
//         that must be among the info lines. "~Name: " stands for "error.[<family>NameSyntaxVersion1]: ",
//         "~: " for the function of the row, "{root}" for the device root.
//  KIND   check, comply, filter, write, read; version (a document's syntax version); bykey (FUNCTION is
//         the key); takeup (a candidate file, "!text" its raw text; RESULT the failing section or -1).
//  STORED (optional) changes to the stored user document, "@..." as for INPUT, made before the call.
//  AFTER  "path=json" (or "=json", the whole value) that must hold afterwards; "unchanged" for a
//         write that must leave the stored file as it was; "-" gives a filter no destination.
#include <syslog.h>

#include <cstdint>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "config/v1/by_key.hpp"
#include "config/v1/user_checks.hpp"
#include "support/harness.hpp"
#include "zt4config.h"

namespace {

constexpr const char* kUserFile = "/home/nvram/zt4config.json";
const std::string kDir = ZT4_EXAMPLE_DEVICE "/../../tests/config/";

std::string slurp(const std::string& file) {
    std::ifstream in(file);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

std::vector<std::string> split(const std::string& text, const std::string& by) {
    std::vector<std::string> parts;
    for (std::size_t at = 0;;) {
        const std::size_t next = text.find(by, at);
        parts.push_back(text.substr(at, next == std::string::npos ? std::string::npos : next - at));
        if (next == std::string::npos) return parts;
        at = next + by.size();
    }
}

json_t* decode(const std::string& text) {
    json_t* value = json_loads(text.c_str(), JSON_DECODE_ANY, nullptr);
    EXPECT_NE(value, nullptr) << text;
    return value;
}

std::string ordered(const json_t* value) {
    char* text = value ? json_dumps(value, JSON_COMPACT | JSON_PRESERVE_ORDER | JSON_ENCODE_ANY) : nullptr;
    const std::string result = text ? text : "(null)";
    free(text);
    return result;
}

json_t* memberAt(json_t* node, const std::string& path) {
    if (path.empty()) return node;
    for (const std::string& step : split(path, "/")) {
        node = json_is_array(node) ? json_array_get(node, std::stoul(step)) : json_object_get(node, step.c_str());
    }
    return node;
}

// "@a/b=json & @c": sets a/b, deletes c.
void mutate(json_t* base, const std::string& changes) {
    for (std::string change : split(changes, " & ")) {
        change.erase(0, 1);
        const std::size_t equals = change.find('=');
        const std::string path = change.substr(0, equals);
        const std::size_t slash = path.rfind('/');
        json_t* parent = slash == std::string::npos ? base : memberAt(base, path.substr(0, slash));
        const std::string last = path.substr(slash == std::string::npos ? 0 : slash + 1);
        ASSERT_NE(parent, nullptr) << path;
        json_t* value = equals == std::string::npos ? nullptr : decode(change.substr(equals + 1));
        if (json_is_array(parent)) {
            const std::size_t index = std::stoul(last);
            if (value == nullptr) json_array_remove(parent, index);
            else if (index == json_array_size(parent)) json_array_append_new(parent, value);
            else json_array_set_new(parent, index, value);
        } else if (value == nullptr) {
            ASSERT_EQ(json_object_del(parent, last.c_str()), 0) << path;
        } else {
            json_object_set_new(parent, last.c_str(), value);
        }
    }
}

using Check = json_t* (*)(json_t*, std::int8_t*);
using Rule = int (*)(json_t*);
using Filter = int (*)(json_t*, json_t*);
using Reader = json_t* (*)();
#define NAMED(f) {#f, reinterpret_cast<void*>(f)}
#define C(s) NAMED(checkJSONZT4UserConfig##s##SyntaxVersion1)
#define R(s) NAMED(complianceJSONZT4UserConfig##s##SyntaxVersion1)
#define F(s) NAMED(filterUserConfig##s##SyntaxVersion1)
const std::map<std::string, void*> kFunctions = {
    C(Web), C(RadioLoRa), C(WiFi), C(Ethernet), C(Modbus), C(BACnet), C(ElectricalConfiguration),
    C(VoltageTransformer), C(Connectors), C(Connector), C(ConnectorChannelCommon), C(ConnectorChannel1P),
    C(ConnectorChannel3P), C(Expert), C(ExpertSag), C(ExpertSwell), C(ExpertCurrentAverageMax),
    C(ExpertOverCurrent), C(ExpertConnectors), C(ExpertConnector3P), C(ExpertConnectorChannel), R(Web),
    R(RadioLoRa), R(WiFi), R(Ethernet), R(Modbus), R(BACnet), R(ElectricalConfiguration), R(VoltageTransformer),
    R(Connectors), R(Connector), R(ConnectorChannelCommon), R(ConnectorChannel3P), R(ConnectorChannel1P), R(Expert),
    R(ExpertSagSwell), R(ExpertSag), R(ExpertSwell), R(ExpertCurrentAverageMax), R(ExpertOverCurrent),
    R(ExpertConnectors), R(ExpertConnector), R(ExpertConnectorChannelCommon), R(ExpertConnectorChannel3P),
    R(ExpertConnectorChannel1P), F(Web), F(RadioLoRa), F(WiFi), F(Ethernet), F(Modbus), F(BACnet),
    F(ElectricalConfiguration), F(VoltageTransformer), F(Connectors), F(Connector), F(ConnectorChannels),
    F(ConnectorChannelCommon), F(ConnectorChannel3P), F(ConnectorChannel1P), F(CurrentTransformer),
    F(CurrentTransformerDirection), F(CurrentTransformerPrimary), F(Expert), F(ExpertSagSwell), F(ExpertSag),
    F(ExpertSwell), F(ExpertPhases), F(ExpertPhase), F(ExpertCurrentAverageMax), F(ExpertOverCurrent),
    F(ExpertConnectors), F(ExpertConnector), F(ExpertConnectorChannels), F(ExpertConnectorChannel), F(File),
    NAMED(checkJSONZT4SystemExpertCircuitBreakerTripSyntaxVersion1),
    NAMED(complianceJSONZT4UserConfigSyntaxVersion1), NAMED(filterUserConfigSyntaxVersion1),
    NAMED(writeJSONZT4ConfigWeb), NAMED(writeJSONZT4ConfigRadio), NAMED(writeJSONZT4ConfigWiFi),
    NAMED(writeJSONZT4ConfigEthernet), NAMED(writeJSONZT4ConfigModbus), NAMED(writeJSONZT4ConfigBACnet),
    NAMED(writeJSONZT4ConfigConnector), NAMED(writeJSONZT4ConfigExpert), NAMED(writeJSONZT4ConfigSetupConnectors),
    NAMED(writeJSONZT4UserConfigVoltageTransformerSyntaxVersion1), NAMED(readJSONZT4ConfigWeb),
    NAMED(writeJSONZT4ConfigConnectorById), NAMED(readJSONZT4ConfigConnectorById),
    NAMED(readJSONZT4ConfigRadio), NAMED(readJSONZT4ConfigRadioWithDevEUI), NAMED(readJSONZT4ConfigWiFi),
    NAMED(readJSONZT4ConfigEthernet), NAMED(readJSONZT4ConfigModbus), NAMED(readJSONZT4ConfigBACnet),
    NAMED(readJSONZT4ConfigConnector), NAMED(readJSONZT4ConfigExpert), NAMED(readJSONZT4ConfigSetupConnectors),
    NAMED(readJSONZT4UserConfigElectricalConfigurationSyntaxVersion1),
    NAMED(readJSONZT4UserConfigConnectorChannelsSyntaxVersion1),
    NAMED(readJSONZT4UserConfigExpertConnectorsSyntaxVersion1),
    NAMED(readJSONZT4UserConfigExpertConnectorChannelsSyntaxVersion1)};

struct Row {
    int number;
    std::vector<std::string> field;  // kind, function, input, result, log, after, stored
};
void PrintTo(const Row& row, std::ostream* out) { *out << "row at line " << row.number; }

std::vector<Row> rows() {
    std::vector<Row> all;
    std::istringstream in(slurp(kDir + "data/user_rows.txt"));
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        if (line.empty() || line[0] == '#') continue;
        while (line.back() == ' ') line.pop_back();
        if (line.back() == '|') line += ' ';
        all.push_back({number, split(line, " | ")});
        all.back().field.resize(7);
    }
    return all;
}

const std::map<std::string, std::string> kFamily = {
    {"check", "checkJSONZT4UserConfig"}, {"comply", "complianceJSONZT4UserConfig"},
    {"filter", "filterUserConfig"}, {"write", "writeJSONZT4UserConfig"}, {"read", "readJSONZT4UserConfig"}};

class UserRow : public zt4test::DeviceTest, public ::testing::WithParamInterface<Row> {
protected:
    void SetUp() override {
        DeviceTest::SetUp();
        writeFile(kUserFile, slurp(std::string(ZT4_EXAMPLE_DEVICE) + kUserFile));
        writeFile("/var/tmp/radioappkey", "00:11:22:33:44:55:66:77:88:99:AA:BB:CC:DD:EE:FF\n");
        writeFile("/var/tmp/radioappeui", "70:B3:D5:7E:D0:01:23:45\n");
        writeFile("/var/tmp/radiodeveui", "70:B3:D5:7E:D0:0F:FF:FF\n");
        writeFile("/home/nvram/hostapd.conf", "interface=wlan0\nssid=ZT4-0042\n");
    }
    // The expected lines of a row, abbreviations expanded.
    std::vector<std::string> expand(const std::string& kind, const std::string& function, const std::string& log) {
        std::vector<std::string> lines;
        if (log.empty() || log == "-") return lines;
        for (std::string line : split(log, " ; ")) {
            const std::size_t priority = line.rfind("<6>", 0) == 0 ? 3 : 0;
            if (line.compare(priority, 3, "~: ") == 0) {
                line.replace(priority, 3, "error.[" + function + "]: ");
            } else if (line.compare(priority, 1, "~") == 0) {
                const std::size_t colon = line.find(": ", priority);
                line.replace(priority, colon + 2 - priority, "error.[" + kFamily.at(kind) +
                             line.substr(priority + 1, colon - priority - 1) + "SyntaxVersion1]: ");
            }
            for (std::size_t at; (at = line.find("{root}")) != std::string::npos;) line.replace(at, 6, root());
            lines.push_back(line);
        }
        return lines;
    }
};

TEST_P(UserRow, ResultLogAndEffect) {
    const std::vector<std::string>& f = GetParam().field;
    const std::string& kind = f[0];
    const std::size_t slash = f[1].find('/');  // "Function/3": a connector number as the last argument
    const int id = slash == std::string::npos ? -1 : std::stoi(f[1].substr(slash + 1));
    std::string name = f[1].substr(0, slash);
    if (kFamily.count(kind) && name.find("JSONZT4") == std::string::npos && name.find("filterUserConfig") == std::string::npos) {
        name = kFamily.at(kind) + name + "SyntaxVersion1";
    }
    const bool whole = f[1] == "File";
    if (whole && kind == "comply") name = "checkComplianceUserConfigFileSyntaxVersion1";
    if (kind == "bykey") name = "readJSONZT4ByKeyObject";
    if (kind == "takeup") name = "checkComplianceUserConfigFile";
    const bool direct = !kFamily.count(kind) || (whole && kind == "comply");
    void* function = direct ? nullptr : kFunctions.at(name);
    const bool example = kind == "comply" || kind == "filter" || kind == "read" || kind == "takeup";
    const std::string candidate = "/var/tmp/candidate.json";
    if (kind == "takeup" && f[2].rfind("!", 0) == 0) writeFile(candidate, f[2].substr(1));
    json_t* input = nullptr;
    if (f[2].rfind("@", 0) == 0 || (example && f[2] == "")) {
        std::int8_t ignored;
        input = kind == "check" ? reinterpret_cast<Check>(function)(nullptr, &ignored) : decode(readFile(kUserFile));
        if (!f[2].empty()) mutate(input, f[2]);
        if (kind == "read" || kind == "takeup") {
            ASSERT_EQ(json_dump_file(input, path(kind == "read" ? kUserFile : candidate).c_str(), 0), 0);
            json_decref(input);
            input = nullptr;
        }
    } else if (f[2] != "-" && kind != "takeup") {
        input = decode(f[2]);
    }
    if (!f[6].empty()) {  // changes to the stored document
        json_t* stored = decode(readFile(kUserFile));
        mutate(stored, f[6]);
        ASSERT_EQ(json_dump_file(stored, path(kUserFile).c_str(), 0), 0);
        json_decref(stored);
    }
    const std::string before = readFile(kUserFile);
    zt4test::clearLog();
    json_t* after = nullptr;
    long result = 0;
    if (kind == "check") {
        std::int8_t status = 7;
        after = reinterpret_cast<Check>(function)(input, &status);
        result = status;
        if (input != nullptr) std::swap(after, input);
    } else if (kind == "comply" && whole) {
        std::uint8_t section = 0;
        result = checkComplianceUserConfigFileSyntaxVersion1(input, &section);
        result = result == (section == 0 ? 0 : -1) ? section : 99;
    } else if (id >= 0 && kind == "write") {
        result = writeJSONZT4ConfigConnectorById(input, static_cast<std::uint8_t>(id));
    } else if (kind == "comply" || kind == "write") {
        result = reinterpret_cast<Rule>(function)(input);
    } else if (kind == "filter") {
        after = f[5] == "-" ? nullptr : f[5].rfind("[", 0) == 0 ? json_array() : json_object();
        result = reinterpret_cast<Filter>(function)(input, after);
    } else if (kind == "version") {
        result = readJSONSyntaxVersion(input);
    } else if (kind == "bykey") {
        after = readJSONZT4ByKeyObject(input, f[1] == "-" ? nullptr : f[1].c_str());
        result = after == nullptr ? -1 : 0;
    } else if (kind == "takeup") {
        std::uint8_t section = 0;
        result = checkComplianceUserConfigFile(path(candidate).c_str(), &section);
        if (section != 0) result = result == -1 ? section : 99;
    } else if (kind == "read") {
        after = id >= 0 ? readJSONZT4ConfigConnectorById(static_cast<std::uint8_t>(id)) : reinterpret_cast<Reader>(function)();
        result = after == nullptr ? -1 : 0;
    }
    EXPECT_EQ(result, std::stol(f[3]));
    std::vector<std::string> errors, expected, infos;
    for (const std::string& line : expand(kind, name, f[4])) {
        (line.rfind("<6>", 0) == 0 ? infos : expected).push_back(line.rfind("<6>", 0) == 0 ? line.substr(3) : line);
    }
    for (const auto& entry : zt4test::capturedLog()) {
        if (entry.priority == LOG_ERR) errors.push_back(entry.text);
    }
    EXPECT_EQ(errors, expected) << zt4test::logDump();
    for (const std::string& info : infos) EXPECT_TRUE(zt4test::logged(info, LOG_INFO)) << info << "\n" << zt4test::logDump();
    if (f[5] == "unchanged") {
        EXPECT_EQ(readFile(kUserFile), before);
    } else if (!f[5].empty() && f[5] != "-") {
        const std::size_t equals = f[5][0] == '[' || f[5][0] == '{' ? std::string::npos : f[5].find('=');
        const std::string where = f[5].substr(0, equals == std::string::npos ? 0 : equals);
        const std::string want = equals == std::string::npos ? f[5] : f[5].substr(equals + 1);
        json_t* stored = kind == "write" || kind == "takeup" ? decode(readFile(kUserFile)) : nullptr;
        json_t* compared = memberAt(stored ? stored : after, where);
        json_t* expectedValue = decode(want);
        EXPECT_EQ(ordered(compared), ordered(expectedValue));
        json_decref(expectedValue);
        json_decref(stored);
    }
    json_decref(after);
    json_decref(input);
}

INSTANTIATE_TEST_SUITE_P(Rows, UserRow, ::testing::ValuesIn(rows()),
                         [](const ::testing::TestParamInfo<Row>& row) { return "line" + std::to_string(row.param.number); });

}  // namespace
