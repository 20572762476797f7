// The block dumps, one block of each layout, against the lines the meter's operators read
// (written out in data/register_dumps.txt).
#include <syslog.h>

#include <functional>

#include "metering/fram_fixture.hpp"
#include "zt4config.h"

namespace {

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
