// The connector data document read from an image and a configuration record, and the counter
// presets written back into the image.
#include <syslog.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "support/harness.hpp"
#include "zt4config.h"

namespace {

void putFloat(std::vector<uint16_t>& image, unsigned address, float value) {
    std::memcpy(&image[address], &value, sizeof value);
}

void putInteger(std::vector<uint16_t>& image, unsigned address, uint32_t value) {
    std::memcpy(&image[address], &value, sizeof value);
}

std::vector<std::string> keys(json_t* object) {
    std::vector<std::string> names;
    for (void* it = json_object_iter(object); it; it = json_object_iter_next(object, it)) {
        names.push_back(json_object_iter_key(it));
    }
    return names;
}

class ConnectorData : public zt4test::DeviceTest {
protected:
    std::vector<uint16_t> image = std::vector<uint16_t>(3318, 0);
    zt4Data data;

    void SetUp() override {
        DeviceTest::SetUp();
        std::memset(&data, 0, sizeof data);
        ConnectorConfig& first = data.connectors[0];
        const uint32_t primaries[3] = {100, 50, 200};
        for (int ch = 0; ch < 3; ++ch) {
            first.channels[ch].enable = 1;
            first.channels[ch].mode = 4;
            first.channels[ch].phase = static_cast<uint8_t>(ch + 1);
            first.channels[ch].ctModel = 4;  // "JC24F200-333", rated 200 A
            first.channels[ch].ctPrimary = primaries[ch];
        }
        std::strcpy(first.channels[0].name, "Heat pump");
        data.connectors[2].channels[0].ctModel = 9;  // no such clamp: no rated current
        data.connectors[2].channels[0].ctPrimary = 100;
        data.expert.sagLevel = 276.5f;
        data.expert.swellLevel = 374.25f;
        data.expert.connectors[0].overCurrentThreshold = 8.0f;
        data.expert.connectors[1].overCurrentThreshold = 3.5f;
        data.expert.connectors[2].overCurrentThreshold = 4.0f;
        for (auto& connector : data.expert.connectors) {
            for (auto& channel : connector.channels) channel.powerNoLoad = 100.0f;
        }
        // Connector 1, channel 1: 4-slot blocks at slot 1, 3-slot blocks at the channel.
        putFloat(image, 30, 10.5f);     // INDEX ACTIVE IMPORT
        putFloat(image, 78, 20.25f);    // INDEX REACTIVE IMPORT
        putFloat(image, 174, 0.5f);     // INDEX REACTIVE IMPORT NEGATIVE
        putFloat(image, 222, 1000.0f);  // POWER ACTIVE
        putFloat(image, 270, -250.0f);  // POWER REACTIVE
        putFloat(image, 318, 0.75f);    // POWER FACTOR
        putFloat(image, 400, 4.5f);     // RMS CURRENT AVERAGE
        putFloat(image, 472, 230.0f);   // RMS VOLTAGE AVERAGE
        putFloat(image, 508, 50.0f);    // FREQUENCY LINE
        putFloat(image, 546, 12.0f);    // OPERATING TIME
        putInteger(image, 594, 3);      // START UP
        putFloat(image, 798, 1.25f);    // THD
        putInteger(image, 724, 2);      // OVER CURRENT
        putInteger(image, 760, 1);      // TRIP
        // Connector 1 totals, slot 0.
        putFloat(image, 220, 3000.0f);
        putFloat(image, 28, 31.5f);
        putFloat(image, 76, 60.75f);
        putFloat(image, 172, 1.5f);
        putFloat(image, 268, -750.0f);
        putFloat(image, 316, 0.875f);
        putFloat(image, 544, 36.0f);
        putInteger(image, 592, 9);
        putFloat(image, 1494, 1.5f);  // POWER IMBALANCE FACTOR INSTANT, connector 1
        putFloat(image, 1530, 0.25f); // VOLTAGE IMBALANCE FACTOR INSTANT, connector 1
        putInteger(image, 640, 4), putInteger(image, 642, 5), putInteger(image, 644, 6);  // SAG ZT4
        putInteger(image, 646, 7), putInteger(image, 648, 8);                             // SWELL ZT4
        // Connector 2.
        putFloat(image, 410, 7.5f);     // RMS CURRENT AVERAGE, channel 3
        putInteger(image, 606, 11);     // START UP, slot 3
        putFloat(image, 1496, 2.5f);    // POWER IMBALANCE FACTOR INSTANT
        putFloat(image, 326, NAN);      // POWER FACTOR, slot 1
    }
};

const char* const kFirstConnector = R"({
  "Channel": [
    {"Enable": 1, "Mode": 4, "Phase": 1, "Name": "Heat pump", "PowerNoLoad": 100.0,
     "IndexEnergyActImport": 10.5, "IndexEnergyReactImportPositive": 20.25,
     "IndexEnergyReactImportNegative": 0.5, "PuissanceActive": 1000.0, "PuissanceReactive": -250.0,
     "PF": 0.75, "Current": 4.5, "Voltage": 230.0, "Freq": 50.0, "OperatingTime": 12.0,
     "Startup": 3, "THD": 1.25, "OverCurrent": 2, "Trip": 1}],

  "GlobalPuissanceActive": 3000.0, "GlobalIndexEnergyActImport": 31.5,
  "GlobalIndexEnergyReactImportPositive": 60.75, "GlobalIndexEnergyReactImportNegative": 1.5,
  "GlobalPuissanceReactive": -750.0, "GlobalPowerFactor": 0.875, "GlobalOperatingTime": 36.0,
  "GlobalStartup": 9, "PowerImbalanceFactor": 1.5, "VoltageImbalanceFactor": 0.25,
  "SagLevel": 276.5, "SwellLevel": 374.25, "OvercurrentLevel": 2.0,
  "Phase": [{"Sag": 4, "Swell": 7}, {"Sag": 5, "Swell": 8}, {"Sag": 6, "Swell": 0}]
})";

TEST_F(ConnectorData, DocumentReadsEachMemberFromItsRegister) {
    json_t* document = readJSONZT4DataConnector(image.data(), &data);
    ASSERT_NE(document, nullptr) << zt4test::logDump();
    ASSERT_EQ(json_array_size(document), 6u);
    json_t* expected = zt4test::parse(kFirstConnector);
    json_t* first = json_array_get(document, 0);
    // Channels 2 and 3 of the first connector hold nothing but their configuration.
    json_t* channels = json_object_get(first, "Channel");
    ASSERT_EQ(json_array_size(channels), 3u);
    json_t* empty = json_pack("{s:i, s:i, s:i, s:s, s:f, s:f, s:f, s:f, s:f, s:f, s:f, s:f,"
                              " s:f, s:f, s:f, s:i, s:f, s:i, s:i}",
                              "Enable", 1, "Mode", 4, "Phase", 3, "Name", "",
                              "PowerNoLoad", 100.0, "IndexEnergyActImport", 0.0,
                              "IndexEnergyReactImportPositive", 0.0,
                              "IndexEnergyReactImportNegative", 0.0, "PuissanceActive", 0.0,
                              "PuissanceReactive", 0.0, "PF", 0.0, "Current", 0.0,
                              "Voltage", 0.0, "Freq", 0.0, "OperatingTime", 0.0,
                              "Startup", 0, "THD", 0.0, "OverCurrent", 0, "Trip", 0);
    EXPECT_EQ(zt4test::compact(json_array_get(channels, 2)), zt4test::compact(empty));
    json_decref(empty);
    json_array_remove(channels, 2);
    json_array_remove(channels, 1);
    EXPECT_EQ(zt4test::compact(first), zt4test::compact(expected));
    // Members in the document's order, not sorted.
    EXPECT_EQ(keys(first), keys(expected));
    EXPECT_EQ(keys(json_array_get(json_object_get(first, "Channel"), 0)),
              keys(json_array_get(json_object_get(expected, "Channel"), 0)));
    json_decref(expected);

    json_t* second = json_array_get(document, 1);
    json_t* third = json_object_get(second, "Channel");
    EXPECT_EQ(json_real_value(json_object_get(json_array_get(third, 2), "Current")), 7.5);
    EXPECT_EQ(json_integer_value(json_object_get(json_array_get(third, 2), "Startup")), 11);
    EXPECT_TRUE(json_is_null(json_object_get(json_array_get(third, 0), "PF")));
    EXPECT_EQ(json_real_value(json_object_get(second, "PowerImbalanceFactor")), 2.5);
    // No transformer primaries: the level stays as configured; no rated current likewise.
    EXPECT_EQ(json_real_value(json_object_get(second, "OvercurrentLevel")), 3.5);
    EXPECT_EQ(json_real_value(json_object_get(json_array_get(document, 2), "OvercurrentLevel")), 4.0);
    json_decref(document);
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
}

TEST_F(ConnectorData, DocumentRefusesMissingArguments) {
    EXPECT_EQ(readJSONZT4DataConnector(nullptr, &data), nullptr);
    EXPECT_TRUE(zt4test::logged("error.[readJSONZT4DataConnector]: zt4Rg NULL", LOG_ERR));
    EXPECT_EQ(readJSONZT4DataConnector(image.data(), nullptr), nullptr);
    EXPECT_TRUE(zt4test::logged("error.[readJSONZT4DataConnector]: zt4Data NULL", LOG_ERR));
}

using Words = std::vector<std::pair<unsigned, unsigned>>;
using Preset = int (*)(uint16_t*, json_t*, unsigned int);

constexpr uint16_t kFill = 0xA5A5;

struct PresetCase {
    const char* name;
    Preset preset;
    unsigned connectorId;
    uint16_t modes[3];     // the connector's mode words
    const char* document;  // "" for a null document
    int result;
    Words words;           // every word that changes
    const char* line;      // a line that must be logged ("" for none in particular)
};

class Presets : public zt4test::DeviceTest, public ::testing::WithParamInterface<PresetCase> {};

TEST_P(Presets, StoreTheCountersAtTheirRegisters) {
    const PresetCase& c = GetParam();
    std::vector<uint16_t> image(3318, kFill);
    const unsigned modes = 8 + 3 * (c.connectorId >= 1 && c.connectorId <= 6 ? c.connectorId - 1 : 0);
    for (unsigned ch = 0; ch < 3; ++ch) image[modes + ch] = c.modes[ch];
    const std::vector<uint16_t> before = image;
    json_t* document = *c.document ? zt4test::parse(c.document) : nullptr;
    EXPECT_EQ(c.preset(image.data(), document, c.connectorId), c.result);
    Words changed;
    for (unsigned a = 0; a < image.size(); ++a) {
        if (image[a] != before[a]) changed.emplace_back(a, image[a]);
    }
    EXPECT_EQ(changed, c.words);
    if (c.result != 0) {
        // A refusal ends with its reason: nothing is attempted after it.
        ASSERT_FALSE(zt4test::capturedLog().empty());
        EXPECT_EQ(zt4test::capturedLog().back().text, c.line);
    } else if (*c.line) {
        EXPECT_TRUE(zt4test::logged(c.line)) << zt4test::logDump();
    }
    json_decref(document);
}

std::string presetName(const ::testing::TestParamInfo<PresetCase>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(Counters, Presets, ::testing::Values(
    // Monophase: channel k at slot k; 1.5 h is 5400 s and 0 ns; a negative value is skipped.
    PresetCase{"OperatingTimeBySlot", writeZT4OperatingTimeById, 2, {1, 1, 1},
               R"({"Channel": [{"OperatingTime": 1.5}, {"OperatingTime": -1},
                               {"OperatingTime": 0.500244140625}]})", 0,
               {{554, 0}, {555, 0x3FC0}, {558, 0x1000}, {559, 0x3F00},
                {890, 0x1518}, {891, 0}, {894, 0x0708}, {895, 0},
                {938, 0}, {939, 0}, {942, 0x0B8A}, {943, 0x3463}},
               "[writeZT4OperatingTimeById]: ConnectorID 2 ChannelID 1 OperatingTime: 1.500000"},
    // Three-phase unbalanced: the first channel's hours are the connector total.
    PresetCase{"OperatingTimeTotal", writeZT4OperatingTimeById, 1, {4, 4, 4},
               R"({"Channel": [{"OperatingTime": 2}, {"OperatingTime": -0.5},
                               {"OperatingTime": -3}]})", 0,
               {{544, 0}, {545, 0x4000}, {880, 0x1C20}, {881, 0}, {928, 0}, {929, 0}},
               "[writeZT4OperatingTimeById]: ConnectorID 1 ChannelID 2 OperatingTime: -0.500000"},
    PresetCase{"StartupTotal", writeZT4StartupById, 6, {2, 2, 2},
               R"({"Channel": [{"Startup": 10}, {"Startup": 20}, {"Startup": 30}]})", 0,
               {{632, 10}, {633, 0}, {636, 20}, {637, 0}, {638, 30}, {639, 0}},
               "[writeZT4StartupById]: ConnectorID 6 ChannelID 3 Startup: 30"},
    PresetCase{"StartupBalanced", writeZT4StartupById, 1, {5, 5, 5},
               R"({"Channel": [{"Startup": 1}, {"Startup": 0}, {"Startup": 65536}]})", 0,
               {{594, 1}, {595, 0}, {596, 0}, {597, 0}, {598, 0}, {599, 1}}, ""},
    PresetCase{"SagPerPhase", writeZT4SagById, 3, {0, 0, 0},
               R"({"Phase": [{"Sag": 1}, {"Sag": 2}, {"Sag": 70000}]})", 0,
               {{640, 1}, {641, 0}, {642, 2}, {643, 0}, {644, 0x1170}, {645, 1}},
               "[writeZT4SagById]: Phase 3 Sag: 70000"},
    PresetCase{"SwellSkipsNegative", writeZT4SwellById, 1, {0, 0, 0},
               R"({"Phase": [{"Swell": -5}, {"Swell": 0}, {"Swell": 9}]})", 0,
               {{648, 0}, {649, 0}, {650, 9}, {651, 0}}, "[writeZT4SwellById]: Phase 1 Swell: -5"},
    // A 3-slot block: (connector, channel) whatever the mode.
    PresetCase{"OverCurrentByChannel", writeZT4OverCurrentById, 4, {4, 4, 4},
               R"({"Channel": [{"OverCurrent": 1}, {"OverCurrent": 2}, {"OverCurrent": 3}]})", 0,
               {{742, 1}, {743, 0}, {744, 2}, {745, 0}, {746, 3}, {747, 0}},
               "[writeZT4OverCurrentById]: ConnectorID 4 ChannelID 1 OverCurrent: 1"}),
    presetName);

INSTANTIATE_TEST_SUITE_P(Refusals, Presets, ::testing::Values(
    PresetCase{"ConnectorZero", writeZT4StartupById, 0, {0, 0, 0},
               R"({"Channel": [{"Startup": 1}, {"Startup": 1}, {"Startup": 1}]})", -1, {},
               "error.[writeZT4StartupById]: Connector id=0 INVALID"},
    PresetCase{"ConnectorSeven", writeZT4OperatingTimeById, 7, {0, 0, 0},
               R"({"Channel": [{"OperatingTime": 1}, {"OperatingTime": 1}, {"OperatingTime": 1}]})",
               -1, {}, "error.[writeZT4OperatingTimeById]: Connector id=7 INVALID"},
    PresetCase{"NullDocument", writeZT4SwellById, 2, {0, 0, 0}, "", -1, {},
               "error.[writeZT4SwellById]: json NULL"},
    // Two good channels are not stored when the third is missing.
    PresetCase{"ThirdChannelMissing", writeZT4OverCurrentById, 2, {1, 1, 1},
               R"({"Channel": [{"OverCurrent": 1}, {"OverCurrent": 2}, {}]})", -1, {},
               "error.[writeZT4OverCurrentById]: FAILED to read Channel3 OverCurrent"},
    PresetCase{"HoursNotANumber", writeZT4OperatingTimeById, 2, {1, 1, 1},
               R"({"Channel": [{"OperatingTime": "1"}, {"OperatingTime": 1}, {"OperatingTime": 1}]})",
               -1, {}, "error.[writeZT4OperatingTimeById]: FAILED to read Channel1 operating time"},
    // 1193047 h is more seconds than the 32-bit counter holds.
    PresetCase{"HoursTooMany", writeZT4OperatingTimeById, 2, {1, 1, 1},
               R"({"Channel": [{"OperatingTime": 1}, {"OperatingTime": 1}, {"OperatingTime": 1193047}]})",
               -1, {}, "error.[writeZT4OperatingTimeById]: FAILED to read Channel3 operating time"},
    PresetCase{"StartupNotInteger", writeZT4StartupById, 2, {1, 1, 1},
               R"({"Channel": [{"Startup": 1}, {"Startup": 1.5}, {"Startup": 1}]})", -1, {},
               "error.[writeZT4StartupById]: FAILED to read Channel2 Start up"},
    PresetCase{"CounterTooLarge", writeZT4StartupById, 2, {1, 1, 1},
               R"({"Channel": [{"Startup": 4294967296}, {"Startup": 1}, {"Startup": 1}]})", -1, {},
               "error.[writeZT4StartupById]: FAILED to read Channel1 Start up"},
    PresetCase{"NoPhaseArray", writeZT4SagById, 2, {0, 0, 0}, R"({"Channel": []})", -1, {},
               "error.[writeZT4SagById]: FAILED to read Phase1 Sag"}),
    presetName);

using PresetStore = zt4test::DeviceTest;

// A preset reaches the persistent counters: the block's row of the FRAM holds the new values.
TEST_F(PresetStore, CountersReachTheirFramRow) {
    const char* const node = "/sys/bus/i2c/devices/0-0050/eeprom";
    std::vector<uint16_t> image(3318, 0);
    image[11] = 1;  // connector 2, channel 1 Monophase
    json_t* sags = zt4test::parse(R"({"Phase": [{"Sag": 1}, {"Sag": 2}, {"Sag": 70000}]})");
    json_t* hours = zt4test::parse(
        R"({"Channel": [{"OperatingTime": 1.5}, {"OperatingTime": 0}, {"OperatingTime": 0}]})");
    ASSERT_EQ(writeZT4SagById(image.data(), sags, 1), 0) << zt4test::logDump();
    ASSERT_EQ(writeZT4OperatingTimeById(image.data(), hours, 2), 0) << zt4test::logDump();
    const std::string fram = readFile(node);
    ASSERT_GE(fram.size(), 1164u);
    // Sag row at byte 1152, 12 bytes.
    EXPECT_EQ(fram.substr(1152, 12), std::string("\x01\0\0\0\x02\0\0\0\x70\x11\x01\0", 12));
    // Operating time row at byte 960: connector 2 slot 1 is register 5, bytes 20 to 23.
    EXPECT_EQ(fram.substr(980, 4), std::string("\0\0\xc0\x3f", 4));
    json_decref(sags);
    json_decref(hours);

    // Without a FRAM to write, the preset fails.
    zt4test::removeTree(path("/sys/bus/i2c/devices/0-0050"));
    json_t* startups = zt4test::parse(R"({"Channel": [{"Startup": 1}, {"Startup": 2}, {"Startup": 3}]})");
    EXPECT_EQ(writeZT4StartupById(image.data(), startups, 1), -1);
    json_decref(startups);
}

TEST(PresetArguments, NullImage) {
    zt4test::clearLog();
    json_t* document = zt4test::parse(R"({"Phase": [{"Sag": 1}, {"Sag": 1}, {"Sag": 1}]})");
    EXPECT_EQ(writeZT4SagById(nullptr, document, 1), -1);
    ASSERT_EQ(zt4test::capturedLog().size(), 1u) << zt4test::logDump();
    EXPECT_TRUE(zt4test::logged("error.[writeZT4SagById]: Rg NULL", LOG_ERR));
    json_decref(document);
}

}  // namespace
