// The connector data document read from an image and a configuration record, and the counter
// presets written back into the image and the FRAM.
#include <syslog.h>

#include <cmath>

#include "metering/fram_fixture.hpp"
#include "zt4config.h"

namespace {

template <class T>
void put(std::vector<uint16_t>& image, unsigned address, T value) { std::memcpy(&image[address], &value, sizeof value); }

// Members in the document's order (not sorted), reals as Jansson writes them.
std::string ordered(const json_t* value) {
    char* text = json_dumps(value, JSON_COMPACT | JSON_ENCODE_ANY);
    std::string result = text != nullptr ? text : "(null)";
    std::free(text);
    return result;
}

class ConnectorData : public zt4test::DeviceTest {
protected:
    std::vector<uint16_t> image = std::vector<uint16_t>(3318, 0);
    zt4Data data;

    void SetUp() override {
        DeviceTest::SetUp();
        std::memset(&data, 0, sizeof data);
        const uint32_t primaries[3] = {100, 50, 200};
        for (uint8_t ch = 0; ch < 3; ++ch) {  // clamp 4 is "JC24F200-333", rated 200 A
            auto& channel = data.connectors[0].channels[ch];
            channel.enable = 1, channel.mode = 4, channel.phase = static_cast<uint8_t>(ch + 1), channel.ctModel = 4, channel.ctPrimary = primaries[ch];
        }
        std::strcpy(data.connectors[0].channels[0].name, "Heat pump");
        data.connectors[2].channels[0].ctModel = 9;  // no such clamp: no rated current
        data.connectors[2].channels[0].ctPrimary = 100;
        data.expert.sagLevel = 276.5f, data.expert.swellLevel = 374.25f;
        const float thresholds[3] = {8.0f, 3.5f, 4.0f};
        for (int c = 0; c < 3; ++c) data.expert.connectors[c].overCurrentThreshold = thresholds[c];
        for (auto& connector : data.expert.connectors) {
            for (auto& channel : connector.channels) channel.powerNoLoad = 100.0f;
        }
        // Connector 1, channel 1 (4-slot blocks at slot 1, 3-slot blocks at the channel), its totals
        // at slot 0, its per-connector and per-phase registers; connector 2's third channel.
        const std::pair<unsigned, float> floats[] = {{30, 10.5f}, {78, 20.25f}, {174, 0.5f}, {222, 1000.0f}, {270, -250.0f},
            {318, 0.75f}, {400, 4.5f}, {472, 230.0f}, {508, 50.0f}, {546, 12.0f}, {798, 1.25f}, {220, 3000.0f}, {28, 31.5f},
            {76, 60.75f}, {172, 1.5f}, {268, -750.0f}, {316, 0.875f}, {544, 36.0f}, {1494, 1.5f}, {1530, 0.25f}, {410, 7.5f},
            {1496, 2.5f}, {326, NAN}};
        for (const auto& [address, value] : floats) put(image, address, value);
        const std::pair<unsigned, uint32_t> integers[] = {{594, 3}, {724, 2}, {760, 1}, {592, 9}, {640, 4}, {642, 5}, {644, 6},
                                                          {646, 7}, {648, 8}, {606, 11}};
        for (const auto& [address, value] : integers) put(image, address, value);
    }
};

TEST_F(ConnectorData, DocumentReadsEachMemberFromItsRegister) {
    json_t* document = readJSONZT4DataConnector(image.data(), &data);
    ASSERT_NE(document, nullptr) << zt4test::logDump();
    ASSERT_EQ(json_array_size(document), 6u);
    json_error_t error;
    json_t* expected = json_load_file(zt4test::dataFile("connector_document.json").c_str(), 0, &error);
    ASSERT_NE(expected, nullptr) << error.text;
    EXPECT_EQ(ordered(json_array_get(document, 0)), ordered(json_object_get(expected, "first")));
    json_t* second = json_array_get(document, 1);
    json_t* channels = json_object_get(second, "Channel");
    EXPECT_EQ(ordered(json_array_get(channels, 2)), ordered(json_object_get(expected, "secondThirdChannel")));
    EXPECT_TRUE(json_is_null(json_object_get(json_array_get(channels, 0), "PF")));
    EXPECT_EQ(json_real_value(json_object_get(second, "PowerImbalanceFactor")), 2.5);
    // No transformer primaries: the level stays as configured; no rated current likewise.
    EXPECT_EQ(json_real_value(json_object_get(second, "OvercurrentLevel")), 3.5);
    EXPECT_EQ(json_real_value(json_object_get(json_array_get(document, 2), "OvercurrentLevel")), 4.0);
    json_decref(expected);
    json_decref(document);
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
    EXPECT_EQ(readJSONZT4DataConnector(nullptr, &data), nullptr);
    EXPECT_EQ(readJSONZT4DataConnector(image.data(), nullptr), nullptr);
    EXPECT_EQ(zt4test::loggedLines(), (std::vector<std::string>{"error.[readJSONZT4DataConnector]: zt4Rg NULL",
                                                                "error.[readJSONZT4DataConnector]: zt4Data NULL"}));
}

using Words = std::vector<std::pair<unsigned, unsigned>>;
using Preset = int (*)(uint16_t*, json_t*, unsigned int);

struct PresetCase {
    const char* name;
    Preset preset;
    unsigned connectorId;
    uint16_t mode;         // the connector's mode words
    const char* document;  // "" for a null document
    int result;
    Words words;           // every word that changes
    const char* line;      // a line that must be logged; for a refusal the last one
};
class Presets : public zt4test::DeviceTest, public ::testing::WithParamInterface<PresetCase> {};

TEST_P(Presets, StoreTheCountersAtTheirRegisters) {
    const PresetCase& c = GetParam();
    std::vector<uint16_t> image(3318, 0xA5A5);
    const unsigned modes = 8 + 3 * (c.connectorId >= 1 && c.connectorId <= 6 ? c.connectorId - 1 : 0);
    for (unsigned ch = 0; ch < 3; ++ch) image[modes + ch] = c.mode;
    const std::vector<uint16_t> before = image;
    json_t* document = *c.document ? zt4test::parse(c.document) : nullptr;
    EXPECT_EQ(c.preset(image.data(), document, c.connectorId), c.result);
    Words changed;
    for (unsigned a = 0; a < image.size(); ++a) {
        if (image[a] != before[a]) changed.emplace_back(a, image[a]);
    }
    EXPECT_EQ(changed, c.words);
    if (c.result != 0) {  // a refusal ends with its reason: nothing is attempted after it
        ASSERT_FALSE(zt4test::capturedLog().empty());
        EXPECT_EQ(zt4test::capturedLog().back().text, c.line);
    } else if (*c.line) {
        EXPECT_TRUE(zt4test::logged(c.line, LOG_INFO)) << zt4test::logDump();
    }
    json_decref(document);
}

INSTANTIATE_TEST_SUITE_P(Counters, Presets, ::testing::Values(
    // Monophase: channel k at slot k; 1.5 h is 5400 s and 0 ns; a negative value is skipped.
    PresetCase{"OperatingTimeBySlot", writeZT4OperatingTimeById, 2, 1, R"({"Channel": [{"OperatingTime": 1.5}, {"OperatingTime": -1}, {"OperatingTime": 0.500244140625}]})", 0,
               {{554, 0}, {555, 0x3FC0}, {558, 0x1000}, {559, 0x3F00}, {890, 0x1518}, {891, 0}, {894, 0x0708}, {895, 0}, {938, 0}, {939, 0}, {942, 0x0B8A}, {943, 0x3463}},
               "[writeZT4OperatingTimeById]: ConnectorID 2 ChannelID 1 OperatingTime: 1.500000"},
    // Three-phase unbalanced: the first channel's hours are the connector total.
    PresetCase{"OperatingTimeTotal", writeZT4OperatingTimeById, 1, 4, R"({"Channel": [{"OperatingTime": 2}, {"OperatingTime": -0.5}, {"OperatingTime": -3}]})", 0,
               {{544, 0}, {545, 0x4000}, {880, 0x1C20}, {881, 0}, {928, 0}, {929, 0}}, "[writeZT4OperatingTimeById]: ConnectorID 1 ChannelID 2 OperatingTime: -0.500000"},
    PresetCase{"StartupTotal", writeZT4StartupById, 6, 2, R"({"Channel": [{"Startup": 10}, {"Startup": 20}, {"Startup": 30}]})", 0,
               {{632, 10}, {633, 0}, {636, 20}, {637, 0}, {638, 30}, {639, 0}}, "[writeZT4StartupById]: ConnectorID 6 ChannelID 3 Startup: 30"},
    PresetCase{"StartupBalanced", writeZT4StartupById, 1, 5, R"({"Channel": [{"Startup": 1}, {"Startup": 0}, {"Startup": 65536}]})", 0,
               {{594, 1}, {595, 0}, {596, 0}, {597, 0}, {598, 0}, {599, 1}}, ""},
    PresetCase{"SagPerPhase", writeZT4SagById, 3, 0, R"({"Phase": [{"Sag": 1}, {"Sag": 2}, {"Sag": 70000}]})", 0,
               {{640, 1}, {641, 0}, {642, 2}, {643, 0}, {644, 0x1170}, {645, 1}}, "[writeZT4SagById]: Phase 3 Sag: 70000"},
    PresetCase{"SwellSkipsNegative", writeZT4SwellById, 1, 0, R"({"Phase": [{"Swell": -5}, {"Swell": 0}, {"Swell": 9}]})", 0,
               {{648, 0}, {649, 0}, {650, 9}, {651, 0}}, "[writeZT4SwellById]: Phase 1 Swell: -5"},
    // A 3-slot block: (connector, channel) whatever the mode.
    PresetCase{"OverCurrentByChannel", writeZT4OverCurrentById, 4, 4, R"({"Channel": [{"OverCurrent": 1}, {"OverCurrent": 2}, {"OverCurrent": 3}]})", 0,
               {{742, 1}, {743, 0}, {744, 2}, {745, 0}, {746, 3}, {747, 0}}, "[writeZT4OverCurrentById]: ConnectorID 4 ChannelID 1 OverCurrent: 1"}),
    [](const auto& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(Refusals, Presets, ::testing::Values(
    PresetCase{"ConnectorZero", writeZT4StartupById, 0, 0, R"({"Channel": [{"Startup": 1}, {"Startup": 1}, {"Startup": 1}]})", -1, {}, "error.[writeZT4StartupById]: Connector id=0 INVALID"},
    PresetCase{"ConnectorSeven", writeZT4OperatingTimeById, 7, 0, R"({"Channel": [{"OperatingTime": 1}, {"OperatingTime": 1}, {"OperatingTime": 1}]})", -1, {},
               "error.[writeZT4OperatingTimeById]: Connector id=7 INVALID"},
    PresetCase{"NullDocument", writeZT4SwellById, 2, 0, "", -1, {}, "error.[writeZT4SwellById]: json NULL"},
    // Two good channels are not stored when the third is missing.
    PresetCase{"ThirdChannelMissing", writeZT4OverCurrentById, 2, 1, R"({"Channel": [{"OverCurrent": 1}, {"OverCurrent": 2}, {}]})", -1, {},
               "error.[writeZT4OverCurrentById]: FAILED to read Channel3 OverCurrent"},
    PresetCase{"HoursNotANumber", writeZT4OperatingTimeById, 2, 1, R"({"Channel": [{"OperatingTime": "1"}, {"OperatingTime": 1}, {"OperatingTime": 1}]})", -1, {},
               "error.[writeZT4OperatingTimeById]: FAILED to read Channel1 operating time"},
    // 1193047 h is more seconds than the 32-bit counter holds.
    PresetCase{"HoursTooMany", writeZT4OperatingTimeById, 2, 1, R"({"Channel": [{"OperatingTime": 1}, {"OperatingTime": 1}, {"OperatingTime": 1193047}]})", -1, {},
               "error.[writeZT4OperatingTimeById]: FAILED to read Channel3 operating time"},
    PresetCase{"StartupNotInteger", writeZT4StartupById, 2, 1, R"({"Channel": [{"Startup": 1}, {"Startup": 1.5}, {"Startup": 1}]})", -1, {},
               "error.[writeZT4StartupById]: FAILED to read Channel2 Start up"},
    PresetCase{"CounterTooLarge", writeZT4StartupById, 2, 1, R"({"Channel": [{"Startup": 4294967296}, {"Startup": 1}, {"Startup": 1}]})", -1, {},
               "error.[writeZT4StartupById]: FAILED to read Channel1 Start up"},
    PresetCase{"NoPhaseArray", writeZT4SagById, 2, 0, R"({"Channel": []})", -1, {}, "error.[writeZT4SagById]: FAILED to read Phase1 Sag"}),
    [](const auto& row) { return std::string(row.param.name); });

// A preset reaches the persistent counters: the block's row of the FRAM holds the new values.
TEST_F(ConnectorData, PresetsReachTheirFramRow) {
    image[11] = 1;  // connector 2, channel 1 Monophase
    json_t* sags = zt4test::parse(R"({"Phase": [{"Sag": 1}, {"Sag": 2}, {"Sag": 70000}]})");
    json_t* hours = zt4test::parse(R"({"Channel": [{"OperatingTime": 1.5}, {"OperatingTime": 0}, {"OperatingTime": 0}]})");
    ASSERT_EQ(writeZT4SagById(image.data(), sags, 1), 0) << zt4test::logDump();
    ASSERT_EQ(writeZT4OperatingTimeById(image.data(), hours, 2), 0) << zt4test::logDump();
    const std::string fram = readFile(zt4test::kFramNode);
    ASSERT_GE(fram.size(), 1164u);
    EXPECT_EQ(fram.substr(1152, 12), std::string("\x01\0\0\0\x02\0\0\0\x70\x11\x01\0", 12));  // sags at byte 1152
    EXPECT_EQ(fram.substr(980, 4), std::string("\0\0\xc0\x3f", 4));  // hours at 960, connector 2 slot 1 is register 5
    EXPECT_EQ(writeZT4SagById(nullptr, sags, 1), -1);
    EXPECT_TRUE(zt4test::logged("error.[writeZT4SagById]: Rg NULL", LOG_ERR));
    // Without a FRAM to write, the preset fails.
    zt4test::removeTree(path("/sys/bus/i2c/devices/0-0050"));
    EXPECT_EQ(writeZT4SagById(image.data(), sags, 1), -1);
    json_decref(sags);
    json_decref(hours);
}

}  // namespace
