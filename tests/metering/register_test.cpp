// The register map as the meter publishes it (every row and its lookups against the map written out
// in data/register_map.txt, the address of every class of block), the typed accessors on a
// register image (encodings, dropped non-finite values, null images, trace lines, MAC and mode
// words, clearing) and the block dumps against the lines the operators read.
#include <syslog.h>

#include <cfloat>
#include <cmath>
#include <functional>

#include "metering/fram_fixture.hpp"
#include "zt4config.h"

namespace {

TEST(RegisterMap, EveryRowAndItsLookups) {
    std::ifstream file(zt4test::dataFile("register_map.txt"));
    unsigned rows = 0;
    for (std::string line; std::getline(file, line); ++rows) {
        const std::vector<std::string> f = zt4test::fields(line, 7);
        const auto index = static_cast<uint8_t>(std::stoul(f[0]));
        const uint32_t base = std::stoul(f[2]), count = std::stoul(f[3]), words = std::stoul(f[4]), bytes = std::stoul(f[5]);
        ASSERT_EQ(index, rows) << line;
        const ModbusRegisterBlock& block = ModbusBase[index];
        EXPECT_EQ(std::make_tuple(std::string(block.name), block.base, block.count, block.words, block.bytes, std::string(block.unit)),
                  std::make_tuple(f[1], base, count, words, bytes, f[6])) << line;
        EXPECT_EQ(std::make_tuple(std::string(getModbusNameRg(index)), getModbusAddrBaseRg(index), getModbusNbRg(index),
                                  getModbusSizeRg(index), getModbusSize(index), std::string(getModbusUnitRg(index))),
                  std::make_tuple(f[1], base, count, words, bytes, f[6])) << line;
    }
    EXPECT_EQ(rows, 75u);
    // Beyond the table the lookups answer nothing rather than read past it.
    EXPECT_STREQ(getModbusNameRg(75), "");
    EXPECT_STREQ(getModbusUnitRg(255), "");
    for (uint8_t index : {75, 200}) {
        EXPECT_EQ(getModbusAddrBaseRg(index) + getModbusNbRg(index) + getModbusSizeRg(index) + getModbusSize(index), 0u);
    }
}

TEST(RegisterMap, AddressesOfEveryClassOfBlock) {
    std::ifstream file(zt4test::dataFile("register_addresses.txt"));
    unsigned rows = 0, index, connector, channel, address;
    for (; file >> index >> connector >> channel >> address; ++rows) {
        EXPECT_EQ(getModbusAddr(index, static_cast<uint8_t>(connector), static_cast<uint8_t>(channel)), address)
            << index << " " << connector << " " << channel;
    }
    EXPECT_EQ(rows, 34u);
    const std::pair<unsigned, unsigned> byId[] = {{4, 5}, {62, 23}, {3, 17}, {37, 0}, {75, 0}};
    const uint32_t expected[] = {38, 2258, 25, 1372, 3318};
    for (unsigned i = 0; i < 5; ++i) EXPECT_EQ(getModbusAddrById(byId[i].first, byId[i].second), expected[i]) << i;
    for (const auto& [addr, valid] : {std::make_pair(0u, 0), {843u, 0}, {844u, -1}, {UINT32_MAX, -1}}) {
        EXPECT_EQ(isModbusAddrValid(addr), valid) << addr;
    }
}

constexpr uint16_t kFill = 0xA5A5;
using Words = std::vector<std::pair<unsigned, unsigned>>;
auto rowName = [](const auto& row) { return std::string(row.param.name); };

class RegisterImage : public zt4test::DeviceTest {
protected:
    // Exactly the image's size, so that the sanitizers see any access past its end.
    std::vector<uint16_t> image = std::vector<uint16_t>(3318, kFill);
    uint16_t* rg() { return image.data(); }
    Words changed() const {  // words that differ from the fill
        Words words;
        for (unsigned a = 0; a < image.size(); ++a) {
            if (image[a] != kFill) words.emplace_back(a, image[a]);
        }
        return words;
    }
};

struct StoreCase {
    const char* name;
    std::function<void(uint16_t*)> store;
    Words words;  // every word that changes, low-order word first
};
class Stores : public RegisterImage, public ::testing::WithParamInterface<StoreCase> {};

TEST_P(Stores, WriteExactlyTheirWords) {
    GetParam().store(rg());
    EXPECT_EQ(changed(), GetParam().words);
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
}

// 1.5f is 0x3FC00000, 1.0 is 0x3FF0000000000000, DBL_MAX 0x7FEFFFFFFFFFFFFF.
INSTANTIATE_TEST_SUITE_P(Encodings, Stores, ::testing::Values(
    StoreCase{"FloatLowWordFirst", [](uint16_t* r) { SetModbusData(r, 4, 1, 0, 1.5f); }, {{36, 0x0000}, {37, 0x3FC0}}},
    StoreCase{"Integer", [](uint16_t* r) { SetModbusDataInteger(r, 17, 0, 2, 0x12345678u); }, {{596, 0x5678}, {597, 0x1234}}},
    StoreCase{"Double", [](uint16_t* r) { SetModbusData64(r, 62, 0, 1, 1.0); }, {{2170, 0}, {2171, 0}, {2172, 0}, {2173, 0x3FF0}}},
    StoreCase{"DoubleLastRegister", [](uint16_t* r) { SetModbusData64(r, 73, 5, 3, -2.0); }, {{3314, 0}, {3315, 0}, {3316, 0}, {3317, 0xC000}}},
    StoreCase{"ModeWord", [](uint16_t* r) { SetModbusInfoConnector(r, 1, 2, 4); }, {{13, 4}}},
    StoreCase{"Versions", [](uint16_t* r) { SetModbusSWVersion(r, 0x0102); SetModbusVersion(r, 3); }, {{0, 0x0102}, {1, 3}}},
    StoreCase{"Mac", [](uint16_t* r) { SetModbusMAC(r, "0a1b2c3d4e5f"); }, {{2, 0x0a1b}, {3, 0x2c3d}, {4, 0x4e5f}}},
    StoreCase{"MacEmptyIsSilent", [](uint16_t* r) { SetModbusMAC(r, ""); }, {}},
    StoreCase{"NaNDropped", [](uint16_t* r) { SetModbusData(r, 8, 0, 1, NAN); }, {}},
    StoreCase{"InfinityDropped", [](uint16_t* r) { SetModbusData(r, 8, 0, 1, -INFINITY); }, {}},
    StoreCase{"DoubleNaNDropped", [](uint16_t* r) { SetModbusData64(r, 64, 0, 1, NAN); }, {}},
    StoreCase{"DoubleInfinityDropped", [](uint16_t* r) { SetModbusData64(r, 64, 0, 1, HUGE_VAL); }, {}},
    StoreCase{"DoubleLargestFinite", [](uint16_t* r) { SetModbusData64(r, 64, 0, 0, DBL_MAX); }, {{2358, 0xFFFF}, {2359, 0xFFFF}, {2360, 0xFFFF}, {2361, 0x7FEF}}},
    // 96 bytes from byte 8 (2 x 4): words 4 to 51 become 1 below, not the block at 28.
    StoreCase{"ClearStartsAtTwiceTheIndex", [](uint16_t* r) {
                  ClearModbusData(r, 4);
                  for (unsigned a = 4; a <= 51; ++a) r[a] = static_cast<uint16_t>(r[a] == 0 ? 1 : 2);
              }, [] { Words w; for (unsigned a = 4; a <= 51; ++a) w.emplace_back(a, 1); return w; }()},
    StoreCase{"ClearNominalVoltage", [](uint16_t* r) { ClearModbusData(r, 37); }, {{37, 0}, {38, 0}}}), rowName);

TEST_F(RegisterImage, ReadsDecodeTheWords) {
    image[36] = 0x0000, image[37] = 0x4049;  // 3.140625f
    image[596] = 0x0001, image[597] = 0x8000;
    image[2170] = 0, image[2171] = 0, image[2172] = 0, image[2173] = 0xC008;  // -3.0
    image[13] = 6, image[0] = 0x0203, image[1] = 0x0004;
    EXPECT_EQ(GetModbusData(rg(), 4, 1, 0), 3.140625f);
    EXPECT_EQ(GetModbusDataInteger(rg(), 17, 0, 2), 0x80000001u);
    EXPECT_EQ(GetModbusData64(rg(), 62, 0, 1), -3.0);
    EXPECT_EQ(GetModbusInfoConnector(rg(), 1, 2), 6);
    EXPECT_EQ(GetModbusSWVersion(rg()), 0x0203);
    EXPECT_EQ(GetModbusVersion(rg()), 4);
    EXPECT_TRUE(zt4test::capturedLog().empty());
}

// A call and, in data/register_access_logs.txt under its name, every line it logs.
struct LogCase {
    const char* name;
    std::function<double(uint16_t*)> call;  // what a getter returned (0 for setters)
};
class Failures : public RegisterImage, public ::testing::WithParamInterface<LogCase> {
protected:
    std::vector<std::string> expected() const { return zt4test::sections("register_access_logs.txt").at(GetParam().name); }
};

TEST_P(Failures, LoggedAndHarmless) {
    EXPECT_EQ(GetParam().call(rg()), 0.0);
    EXPECT_EQ(zt4test::loggedLines(), expected());
    for (const auto& entry : zt4test::capturedLog()) EXPECT_EQ(entry.priority, LOG_ERR) << entry.text;
    EXPECT_TRUE(changed().empty());
}

INSTANTIATE_TEST_SUITE_P(NullImage, Failures, ::testing::Values(
    LogCase{"GetData", [](uint16_t*) { return double(GetModbusData(nullptr, 4, 0, 0)); }},
    LogCase{"SetData", [](uint16_t*) { SetModbusData(nullptr, 4, 0, 0, 1.0f); return 0.0; }},
    LogCase{"GetInteger", [](uint16_t*) { return double(GetModbusDataInteger(nullptr, 17, 0, 0)); }},
    LogCase{"SetIntegerSilent", [](uint16_t*) { SetModbusDataInteger(nullptr, 17, 0, 0, 1); return 0.0; }},
    LogCase{"Get64", [](uint16_t*) { return GetModbusData64(nullptr, 62, 0, 0); }},
    LogCase{"Set64", [](uint16_t*) { SetModbusData64(nullptr, 62, 0, 0, 1.0); return 0.0; }},
    LogCase{"GetMode", [](uint16_t*) { return double(GetModbusInfoConnector(nullptr, 0, 0)); }},
    LogCase{"SetMode", [](uint16_t*) { SetModbusInfoConnector(nullptr, 0, 0, 1); return 0.0; }},
    LogCase{"Versions", [](uint16_t*) { SetModbusSWVersion(nullptr, 1), SetModbusVersion(nullptr, 1); return double(GetModbusSWVersion(nullptr) + GetModbusVersion(nullptr)); }},
    LogCase{"Mac", [](uint16_t*) { SetModbusMAC(nullptr, "001122334455"); return 0.0; }},
    LogCase{"Clear", [](uint16_t*) { ClearModbusData(nullptr, 4); return 0.0; }},
    LogCase{"Standardize", [](uint16_t*) { StandardizeModbusInfoConnector(nullptr, nullptr); return 0.0; }},
    LogCase{"MacNullText", [](uint16_t* r) { SetModbusMAC(r, nullptr); return 0.0; }},
    LogCase{"MacTooShort", [](uint16_t* r) { SetModbusMAC(r, "0a1b2c3d4e"); return 0.0; }},
    LogCase{"StandardizeNullConfiguration", [](uint16_t* r) { StandardizeModbusInfoConnector(r, nullptr); return 0.0; }},
    LogCase{"ClearBeyondTable", [](uint16_t* r) { ClearModbusData(r, 75); return 0.0; }},
    // Connector 6 of the last block would start at word 3318, past the image.
    LogCase{"ReadPastTheImage", [](uint16_t* r) { return GetModbusData64(r, 73, 6, 0); }},
    LogCase{"WritePastTheImage", [](uint16_t* r) { SetModbusData(r, 73, 6, 0, 1.0f); return 0.0; }},
    LogCase{"BlockBeyondTable", [](uint16_t* r) { return double(GetModbusDataInteger(r, 200, 0, 0)); }}), rowName);

class Traces : public Failures {};

TEST_P(Traces, OnlyAboveLevelThree) {
    image[36] = 0x0000, image[37] = 0x3FC0;                                   // 1.5f
    image[596] = 7, image[597] = 0;                                           // 7
    image[2170] = 0, image[2171] = 0, image[2172] = 0, image[2173] = 0x3FF0;  // 1.0
    image[13] = 4;
    debug_level = 3;
    GetParam().call(rg());
    EXPECT_TRUE(zt4test::capturedLog().empty()) << zt4test::logDump();
    debug_level = 4;
    GetParam().call(rg());
    EXPECT_EQ(zt4test::loggedLines(), expected());
    EXPECT_TRUE(zt4test::logged(expected().at(0), LOG_INFO));
}

INSTANTIATE_TEST_SUITE_P(Accessors, Traces, ::testing::Values(
    LogCase{"TraceGetData", [](uint16_t* r) { return double(GetModbusData(r, 4, 1, 0)); }},
    LogCase{"TraceSetData", [](uint16_t* r) { SetModbusData(r, 4, 1, 0, -2.25f); return 0.0; }},
    LogCase{"TraceGetInteger", [](uint16_t* r) { return double(GetModbusDataInteger(r, 17, 0, 2)); }},
    LogCase{"TraceSetInteger", [](uint16_t* r) { SetModbusDataInteger(r, 17, 0, 2, 9); return 0.0; }},
    LogCase{"TraceGet64", [](uint16_t* r) { return GetModbusData64(r, 62, 0, 1); }},
    LogCase{"TraceSet64NaNStillTraced", [](uint16_t* r) { SetModbusData64(r, 62, 0, 1, NAN); return 0.0; }},
    LogCase{"TraceGetMode", [](uint16_t* r) { return double(GetModbusInfoConnector(r, 1, 2)); }},
    LogCase{"TraceSetMode", [](uint16_t* r) { SetModbusInfoConnector(r, 5, 0, 2); return 0.0; }}), rowName);

struct ModeWordsCase {
    const char* name;
    uint8_t connectorEnabled, modes[3], enables[3];
    uint16_t words[3];  // connector 3's mode words after the call (0x77 before it)
};
class ModeWords : public RegisterImage, public ::testing::WithParamInterface<ModeWordsCase> {};

TEST_P(ModeWords, FollowTheConfiguration) {
    const ModeWordsCase& c = GetParam();
    zt4Data data;
    std::memset(&data, 0, sizeof data);
    for (auto& connector : data.connectors) connector.enabled = 1;
    data.connectors[2].enabled = c.connectorEnabled;
    for (int ch = 0; ch < 3; ++ch) {
        data.connectors[2].channels[ch].mode = c.modes[ch];
        data.connectors[2].channels[ch].enable = c.enables[ch];
    }
    for (unsigned a = 8; a < 26; ++a) image[a] = 0x77;
    StandardizeModbusInfoConnector(rg(), data.connectors);
    // The other connectors are configured Disabled: their words become 0; nothing else moves.
    Words expected = {{7, kFill}};
    for (unsigned a = 8; a < 26; ++a) expected.emplace_back(a, a >= 14 && a <= 16 ? c.words[a - 14] : 0);
    expected.emplace_back(26, kFill);
    Words got;
    for (unsigned a = 7; a <= 26; ++a) got.emplace_back(a, image[a]);
    EXPECT_EQ(got, expected);
}

INSTANTIATE_TEST_SUITE_P(Configurations, ModeWords, ::testing::Values(
    ModeWordsCase{"ChannelByChannel", 1, {1, 1, 3}, {1, 0, 1}, {1, 0, 3}},
    ModeWordsCase{"ConnectorDisabled", 0, {1, 1, 5}, {1, 1, 1}, {0, 0, 0}},
    ModeWordsCase{"UnbalancedOnFirstChannelFillsAll", 1, {4, 1, 0}, {1, 0, 0}, {4, 4, 4}},
    ModeWordsCase{"UnbalancedWithFirstChannelOff", 1, {2, 2, 2}, {0, 1, 1}, {0, 0, 0}},
    ModeWordsCase{"UnbalancedOnSecondChannelOverwritesFirst", 1, {1, 6, 1}, {1, 0, 1}, {6, 6, 6}},
    ModeWordsCase{"UnbalancedDisabledConnectorIsZero", 0, {4, 4, 4}, {1, 1, 1}, {0, 0, 0}},
    ModeWordsCase{"InvalidModeLeavesItsWord", 1, {9, 1, 7}, {1, 1, 1}, {0x77, 1, 0x77}},
    ModeWordsCase{"BalancedStaysPerChannel", 1, {5, 3, 5}, {1, 0, 1}, {5, 0, 5}}), rowName);

struct DumpCase {
    const char* name;
    std::function<void(uint16_t*)> fill;  // values stored before the dump
    std::function<void(const uint16_t*)> dump;
};

class Dumps : public zt4test::DeviceTest, public ::testing::WithParamInterface<DumpCase> {};

// Connector 1 wired Triphase (mode 4) on its three channels, connector 2 Monophase on its first
// channel only, the others Disabled.
TEST_P(Dumps, LogTheLayoutsLines) {
    std::vector<uint16_t> image(3318, 0);
    image[8] = image[9] = image[10] = 4;
    image[11] = 1;
    GetParam().fill(image.data());
    zt4test::clearLog();
    GetParam().dump(image.data());
    const int priority = std::string(GetParam().name) == "Refusals" ? LOG_ERR : LOG_INFO;
    for (const auto& entry : zt4test::capturedLog()) EXPECT_EQ(entry.priority, priority) << entry.text;
    const auto expected = zt4test::sections("register_dumps.txt")[GetParam().name];
    ASSERT_FALSE(expected.empty());
    EXPECT_EQ(zt4test::loggedLines(), expected);
}

void nothing(uint16_t*) {}
auto dump(uint8_t index) { return [index](const uint16_t* r) { DisplayZT4Data(r, index); }; }
auto dump64(uint8_t index) { return [index](const uint16_t* r) { DisplayZT4Data64(r, index); }; }

INSTANTIATE_TEST_SUITE_P(Layouts, Dumps, ::testing::Values(
    DumpCase{"MacWords", [](uint16_t* r) { SetModbusMAC(r, "0a1b2c3d4e5f"); }, dump(2)},
    DumpCase{"ModeWords", nothing, dump(3)},
    DumpCase{"FloatFourSlot", [](uint16_t* r) { SetModbusData(r, 4, 0, 0, 1.5f); }, dump(4)},
    DumpCase{"IntegerFourSlot", [](uint16_t* r) { SetModbusDataInteger(r, 17, 1, 3, 70000); }, dump(17)},
    DumpCase{"Phases", [](uint16_t* r) { SetModbusDataInteger(r, 18, 0, 1, 5); }, dump(18)},
    DumpCase{"IntegerThreeSlot", [](uint16_t* r) { SetModbusDataInteger(r, 22, 0, 2, 3); }, dump(22)},
    DumpCase{"FloatPerConnector", [](uint16_t* r) { SetModbusData(r, 44, 0, 2, 2.5f); }, dump(44)},
    DumpCase{"NominalVoltage", [](uint16_t* r) { SetModbusData(r, 37, 0, 0, 230.0f); }, dump(37)},
    DumpCase{"IntegerPerConnector", [](uint16_t* r) { SetModbusDataInteger(r, 41, 0, 5, 0x10002); }, dump(41)},
    DumpCase{"FloatThreeSlot", [](uint16_t* r) { SetModbusData(r, 13, 1, 0, 231.5f); }, dump(13)},
    DumpCase{"ExportIndexAsThreeSlot", [](uint16_t* r) { SetModbusData(r, 6, 1, 0, -1.0f); }, dump(6)},
    DumpCase{"RawExportIndexAsThreeSlot", [](uint16_t* r) { SetModbusData(r, 58, 0, 2, 4.0f); }, dump(58)},
    DumpCase{"Double", [](uint16_t* r) { SetModbusData64(r, 62, 1, 1, 2.0); }, dump64(62)},
    DumpCase{"ExportAccuRawNameOnly", [](uint16_t* r) { SetModbusData64(r, 66, 0, 0, 1.0); }, dump64(66)},
    DumpCase{"ExportAccuNameOnly", nothing, dump64(68)},
    DumpCase{"NotDoubleNameOnly", nothing, dump64(4)},
    DumpCase{"Refusals", nothing, [](const uint16_t* r) {
                 DisplayZT4Data(nullptr, 4), DisplayZT4Data64(nullptr, 62), DisplayZT4Data(r, 75), DisplayZT4Data64(r, 255);
             }}),
    [](const auto& row) { return std::string(row.param.name); });

// Above level 3 the unused registers are shown too (with the accessors' own trace lines).
TEST_F(Dumps, ShowUnusedRegistersWhenDebugging) {
    std::vector<uint16_t> image(3318, 0);
    DisplayZT4Data(image.data(), 4);
    EXPECT_FALSE(zt4test::logged("6  3 24 0074  0000  00000000 (0.000000e+00 0.000000 kWh)"));
    debug_level = 4;
    DisplayZT4Data(image.data(), 4);
    DisplayZT4Data64(image.data(), 73);
    for (const char* line : {"6  3 24 0074  0000  00000000 (0.000000e+00 0.000000 kWh)",
                             "1  0 01 0028  0000  00000000 (0.000000e+00 0.000000 kWh)",
                             "6  3 24 3314  0000  0000000000000000 (0.000000e+00 0.000000e+00 kVAh)"}) {
        EXPECT_TRUE(zt4test::logged(line, LOG_INFO)) << line;
    }
}

}  // namespace
