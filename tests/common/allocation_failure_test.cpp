// Every allocation of the JSON library failing in turn, one at a time, during an operation on the
// example device: no crash, a result the operation may give, and, over all the runs, each line
// that says which allocation failed. Jansson's allocator is replaced for the run.
#include <jansson.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "support/harness.hpp"
#include "zt4config.h"

extern int debug_level;

namespace {

long countdown = -1;  // allocations left before the failing one; -1: none fails
long allocations = 0;

void* failingMalloc(size_t size) {
    ++allocations;
    if (countdown == 0) {
        countdown = -1;
        return nullptr;
    }
    if (countdown > 0) --countdown;
    return std::malloc(size);
}

struct Row {
    const char* name;
    std::function<int()> call;
    std::set<int> results;             // what the call may return
    std::vector<std::string> lines;    // each logged in one of the runs at least; '!' first: that run
                                       // must give the lowest of the results
    long first = 0;                    // only the first allocations fail in turn (0: all of them)
};

json_t* parsed(const char* text) { return json_loads(text, 0, nullptr); }

int withArgument(const char* text, int (*write)(json_t*)) {
    json_t* argument = parsed(text);
    const int result = write(argument);
    json_decref(argument);
    return result;
}

const std::string kExpertMembers[] = {"CircuitBreakerTrip", "Sag", "Swell", "OperatingTime", "StartupCycle",
                                      "CurrentImbalance", "PowerImbalance", "VoltageImbalance", "CurrentAverageMax",
                                      "THD", "OverCurrent"};

std::vector<std::string> expertLines() {
    std::vector<std::string> lines = {"!error.[checkJSONZT4SystemExpertSyntaxVersion1]: expert NULL","!error.[writeJSONZT4SystemExpertSyntaxVersion1]: FAILED to check Expert System JSON object"};
    for (const std::string& member : kExpertMembers)
        lines.push_back("error.[checkJSONZT4SystemExpertSyntaxVersion1]: FAILED to check System Expert " + member + " JSON object");
    return lines;
}

const std::string kFullExpert = R"({"CircuitBreakerTrip": {"CurrentTransformerThreshold": 2}, "Sag": {"Enable": 0, "Cycle": 1},
    "Swell": {"Enable": 0}, "OperatingTime": {"Enable": 0}, "StartupCycle": {"Enable": 0}, "CurrentImbalance": {"Enable": 0},
    "PowerImbalance": {"Enable": 0}, "VoltageImbalance": {"Enable": 0}, "CurrentAverageMax": {"Enable": 0}, "THD": {"Enable": 0},
    "OverCurrent": {"Enable": 0}})";

const Row kRows[] = {
    {"printJSON", [] { debug_level = 3; json_t* v = parsed(R"({"a": [1, 2]})"); printJSON(v, "x"); json_decref(v); return 0; },
     {0}, {"error.[printJSON]: jsonCopy NULL", "error.[printJSON]: str NULL"}},
    {"systemExpert", [] { return withArgument(kFullExpert.c_str(), writeJSONZT4SystemExpert); }, {0, -1}, expertLines()},
    {"systemConnectors", [] { return withArgument(R"([{"Enable": 1}, {"Enable": 0}])", writeJSONZT4SystemConnector); }, {0, -1},
     {"!error.[writeJSONZT4SystemConnectorsSyntaxVersion1]: jsonConnectors NULL",
      "!error.[writeJSONZT4SystemConnectorsSyntaxVersion1]: FAILED to check SystemConnector JSON object"}},
    {"systemRadio", [] { return withArgument(R"({"Enable": 1, "Debug": 2, "Baudrate": 9600, "PayloadLength": 50,
        "Daemon": "radiod", "Script": "/etc/scripts/radiod"})", writeJSONZT4SystemRadio); }, {0, -1},
     {"!error.[writeJSONZT4SystemRadioLoRaSyntaxVersion1]: FAILED to check SystemRadioLoRa JSON object",
      "!error.[checkJSONZT4SystemRadioLoRaSyntaxVersion1]: radio NULL",
      "error.[checkJSONZT4SystemRadioLoRaSyntaxVersion1]: FAILED to merge factory system RadioLoRa with existing keys"}},
    {"connectorData", [] {
         static uint16_t image[ZT4_MODBUS_IMAGE_WORDS];
         static zt4Data data;
         data.connectors[0].channels[0].mode = 2;
         json_t* document = readJSONZT4DataConnector(image, &data);
         json_decref(document);
         return document ? 0 : -1; }, {0, -1},
     {"!error.[readJSONZT4DataConnector]: AllConnect NULL", "!error.[readJSONZT4DataConnector]: FAILED to create Object Connector",
      "!error.[readJSONZT4DataConnector]: AllCnl NULL", "!error.[readJSONZT4DataConnector]: FAILED to create Object Cnl for Object Connector 1",
      "!error.[readJSONZT4DataConnector]: Phases NULL", "!error.[readJSONZT4DataConnector]: FAILED to create Object Phase for Object Connector 1"}},
    {"expertSwellFilter", [] {
         json_t* source = parsed(R"({"Enable": 1, "RateLevel": 2, "Phase": [{"Enable": 1, "Level": 3}, {"Enable": 0}]})");
         json_t* copy = json_object();
         const int result = filterUserConfigExpertSwellSyntaxVersion1(source, copy);
         json_decref(source);
         json_decref(copy);
         return result; }, {0, -1},
     {"!error.[filterUserConfigExpertPhasesSyntaxVersion1]: Failed to filter JSON section Expert Phase 1",
      "!error.[filterUserConfigExpertSwellSyntaxVersion1]: Failed to filter JSON Swell"}},
    {"userWiFi", [] { return withArgument(R"({"Enable": 1, "SSID": "ZT4", "AddressIP": "10.42.0.1", "Netmask": "255.255.255.0",
        "DHCPRangeStartIP": "10.42.0.100", "DHCPRangeEndIP": "10.42.0.120"})", writeJSONZT4UserConfigWiFiSyntaxVersion1); }, {0, -1},
     {"!error.[writeJSONZT4UserConfigWiFiSyntaxVersion1]: json_dhcp NULL"}, 40},
};

// The system writers that update a stored section: the example device's section written back.
Row systemSection(const char* name, const std::string& label, int (*write)(json_t*)) {
    const std::string check = "error.[checkJSONZT4System" + std::string(name) + "SyntaxVersion1]: ";
    const std::string writer = "error.[writeJSONZT4System" + std::string(name) + "SyntaxVersion1]: ";
    return {name, [name, write] {
                json_t* document = json_load_file(ZT4_EXAMPLE_DEVICE "/home/nvram/zt4system.json", 0, nullptr);
                const int result = write(json_object_get(document, name));
                json_decref(document);
                return result; }, {0, -1},
            {"!" + check + label + " NULL", check + "FAILED to merge factory system " + name + " with existing keys",
             "!" + writer + "json" + name + " NULL", "!" + writer + "FAILED to check System" + name + " JSON object"}};
}

std::vector<Row> rows() {
    std::vector<Row> all(std::begin(kRows), std::end(kRows));
    all.push_back(systemSection("Web", "web", writeJSONZT4SystemWeb));
    all.push_back(systemSection("WiFi", "wifi", writeJSONZT4SystemWiFi));
    all.push_back(systemSection("Ethernet", "ethernet", writeJSONZT4SystemEthernet));
    all.push_back(systemSection("Modbus", "modbus", writeJSONZT4SystemModbus));
    all.push_back(systemSection("BACnet", "bacnet", writeJSONZT4SystemBACnet));
    return all;
}

class AllocationFailure : public zt4test::DeviceTest, public ::testing::WithParamInterface<Row> {};

TEST_P(AllocationFailure, EachFailingAllocationIsSurvivedAndNamed) {
    const Row& row = GetParam();
    useExampleDevice();
    json_set_alloc_funcs(failingMalloc, std::free);
    allocations = 0;
    EXPECT_TRUE(row.results.count(row.call())) << "clean run";
    const long total = row.first ? std::min(row.first, allocations) : allocations;
    std::set<std::string> seen;
    for (long k = 0; k < total; ++k) {
        zt4test::clearLog();
        countdown = k;
        const int result = row.call();
        countdown = -1;
        EXPECT_TRUE(row.results.count(result)) << "allocation " << k << " of " << total << ": " << result;
        for (const auto& entry : zt4test::capturedLog()) {
            seen.insert(entry.text);
            const bool failing = std::find(row.lines.begin(), row.lines.end(), "!" + entry.text) != row.lines.end();
            EXPECT_TRUE(!failing || result == *row.results.begin()) << entry.text << " logged, yet " << result;
        }
    }
    json_set_alloc_funcs(std::malloc, std::free);
    debug_level = 0;
    EXPECT_GT(total, 0);
    RecordProperty("failed_allocations", std::to_string(total));
    for (const std::string& line : row.lines) EXPECT_TRUE(seen.count(line.substr(line[0] == '!'))) << line;
}

INSTANTIATE_TEST_SUITE_P(Json, AllocationFailure, ::testing::ValuesIn(rows()),
                         [](const ::testing::TestParamInfo<Row>& row) { return std::string(row.param.name); });

}  // namespace
