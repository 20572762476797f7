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

// Every preset of data/connector_presets.txt: the words it changes; a refusal changes none and
// ends with its reason (nothing is attempted after it).
TEST_F(ConnectorData, PresetsStoreTheCountersAtTheirRegisters) {
    const std::map<std::string, int (*)(uint16_t*, json_t*, unsigned int)> presets = {
        {"OperatingTime", writeZT4OperatingTimeById}, {"Startup", writeZT4StartupById}, {"Sag", writeZT4SagById},
        {"Swell", writeZT4SwellById}, {"OverCurrent", writeZT4OverCurrentById}};
    const std::vector<std::string> rows = zt4test::sections("connector_presets.txt").begin()->second;
    ASSERT_EQ(rows.size(), 16u);
    for (const std::string& row : rows) {
        SCOPED_TRACE(row);
        const std::vector<std::string> f = zt4test::fields(row, 8);
        const unsigned connector = std::stoul(f[2]);
        std::vector<uint16_t> before(3318, 0xA5A5);
        for (unsigned ch = 0; ch < 3; ++ch) before[8 + 3 * (connector >= 1 && connector <= 6 ? connector - 1 : 0) + ch] = static_cast<uint16_t>(std::stoul(f[3]));
        std::vector<uint16_t> after = before;
        std::map<unsigned, unsigned> changed, expected;
        for (std::size_t at = 0; at + 8 <= f[5].size(); at += 9) expected[std::stoul(f[5].substr(at, 3))] = std::stoul(f[5].substr(at + 4, 4), nullptr, 16);
        json_t* document = f[7].empty() ? nullptr : zt4test::parse(f[7].c_str());
        zt4test::clearLog();
        EXPECT_EQ(presets.at(f[1])(after.data(), document, connector), std::stoi(f[4]));
        json_decref(document);
        for (unsigned a = 0; a < after.size(); ++a) {
            if (after[a] != before[a]) changed[a] = after[a];
        }
        EXPECT_EQ(changed, expected);
        ASSERT_FALSE(zt4test::capturedLog().empty());
        if (f[4] != "0") EXPECT_EQ(zt4test::capturedLog().back().text, f[6]);
        else EXPECT_TRUE(zt4test::logged(f[6], LOG_INFO)) << zt4test::logDump();
    }
}

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
