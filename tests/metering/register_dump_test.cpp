// The block dumps, one block of each layout, against the lines the meter's operators read.
#include <syslog.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "support/harness.hpp"
#include "zt4config.h"

namespace {

const char* const kRule = "--------------------------------------------------------";

struct DumpCase {
    const char* name;
    std::function<void(uint16_t*)> fill;  // values stored before the dump
    std::function<void(const uint16_t*)> dump;
    std::vector<std::string> lines;  // every line logged, in order
};

using DumpTest = zt4test::DeviceTest;

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
    std::vector<std::string> lines;
    for (const auto& entry : zt4test::capturedLog()) {
        EXPECT_EQ(entry.priority, LOG_INFO) << entry.text;
        lines.push_back(entry.text);
    }
    EXPECT_EQ(lines, GetParam().lines);
}

std::string dumpName(const ::testing::TestParamInfo<DumpCase>& info) { return info.param.name; }

void nothing(uint16_t*) {}

INSTANTIATE_TEST_SUITE_P(Layouts, Dumps, ::testing::Values(
    DumpCase{"MacWords", [](uint16_t* r) { SetModbusMAC(r, "0a1b2c3d4e5f"); },
             [](const uint16_t* r) { DisplayZT4Data(r, 2); },
             {"ADDRESS MAC", "    Register Value", "    0002  0a1b", "    0003  2c3d",
              "    0004  4e5f", kRule}},
    DumpCase{"ModeWords", nothing, [](const uint16_t* r) { DisplayZT4Data(r, 3); },
             {"MODE", "Connector Channel Numero Register Value",
              kRule, "1  1 01 0008  0004", "1  2 02 0009  0004", "1  3 03 0010  0004",
              kRule, "2  1 04 0011  0001", "2  2 05 0012  0000", "2  3 06 0013  0000",
              kRule, "3  1 07 0014  0000", "3  2 08 0015  0000", "3  3 09 0016  0000",
              kRule, "4  1 10 0017  0000", "4  2 11 0018  0000", "4  3 12 0019  0000",
              kRule, "5  1 13 0020  0000", "5  2 14 0021  0000", "5  3 15 0022  0000",
              kRule, "6  1 16 0023  0000", "6  2 17 0024  0000", "6  3 18 0025  0000", kRule}},
    // Slot 0 shows the total of the three-phase connector only; connector 2 shows its channel.
    DumpCase{"FloatFourSlot", [](uint16_t* r) { SetModbusData(r, 4, 0, 0, 1.5f); },
             [](const uint16_t* r) { DisplayZT4Data(r, 4); },
             {"INDEX ACTIVE IMPORT", "Connector Channel Numero Register Mode Values", kRule,
              "1  0 01 0028  0004  00003fc0 (1.500000e+00 1.500000 kWh)",
              "1  1 02 0030  0004  00000000 (0.000000e+00 0.000000 kWh)",
              "1  2 03 0032  0004  00000000 (0.000000e+00 0.000000 kWh)",
              "1  3 04 0034  0004  00000000 (0.000000e+00 0.000000 kWh)",
              "2  1 06 0038  0001  00000000 (0.000000e+00 0.000000 kWh)", kRule}},
    // A connector with its first channel's mode word set shows all four slots.
    DumpCase{"IntegerFourSlot", [](uint16_t* r) { SetModbusDataInteger(r, 17, 1, 3, 70000); },
             [](const uint16_t* r) { DisplayZT4Data(r, 17); },
             {"START UP", "Connector Channel Numero Register Value Mode", kRule,
              "1  0 01 0592  00000000 (0) 0004", "1  1 02 0594  00000000 (0) 0004",
              "1  2 03 0596  00000000 (0) 0004", "1  3 04 0598  00000000 (0) 0004",
              "2  0 05 0600  00000000 (0) 0000", "2  1 06 0602  00000000 (0) 0001",
              "2  2 07 0604  00000000 (0) 0000", "2  3 08 0606  11700001 (70000) 0000", kRule}},
    DumpCase{"Phases", [](uint16_t* r) { SetModbusDataInteger(r, 18, 0, 1, 5); },
             [](const uint16_t* r) { DisplayZT4Data(r, 18); },
             {"SAG ZT4", "Phase Register Value", kRule, "01 0640 00000000 (0)",
              "02 0642 00050000 (5)", "03 0644 00000000 (0)", kRule}},
    DumpCase{"IntegerThreeSlot", [](uint16_t* r) { SetModbusDataInteger(r, 22, 0, 2, 3); },
             [](const uint16_t* r) { DisplayZT4Data(r, 22); },
             {"OVER CURRENT", "Connector Channel Numero Register Value Mode", kRule,
              "1  1 01 0724  00000000 (0) 0004", "1  2 02 0726  00000000 (0) 0004",
              "1  3 03 0728  00030000 (3) 0004", "2  1 04 0730  00000000 (0) 0001",
              "2  2 05 0732  00000000 (0) 0000", "2  3 06 0734  00000000 (0) 0000",
              "3  1 07 0736  00000000 (0) 0000", "3  2 08 0738  00000000 (0) 0000",
              "3  3 09 0740  00000000 (0) 0000", "4  1 10 0742  00000000 (0) 0000",
              "4  2 11 0744  00000000 (0) 0000", "4  3 12 0746  00000000 (0) 0000",
              "5  1 13 0748  00000000 (0) 0000", "5  2 14 0750  00000000 (0) 0000",
              "5  3 15 0752  00000000 (0) 0000", "6  1 16 0754  00000000 (0) 0000",
              "6  2 17 0756  00000000 (0) 0000", "6  3 18 0758  00000000 (0) 0000", kRule}},
    DumpCase{"FloatPerConnector", [](uint16_t* r) { SetModbusData(r, 44, 0, 2, 2.5f); },
             [](const uint16_t* r) { DisplayZT4Data(r, 44); },
             {"POWER IMBALANCE FACTOR INSTANT", "Connector Register Value", kRule,
              "01 1494 00000000 (0.000000 %)", "02 1496 00000000 (0.000000 %)",
              "03 1498 00004020 (2.500000 %)", "04 1500 00000000 (0.000000 %)",
              "05 1502 00000000 (0.000000 %)", "06 1504 00000000 (0.000000 %)", kRule}},
    // High-order word first, unlike every other layout.
    DumpCase{"NominalVoltage", [](uint16_t* r) { SetModbusData(r, 37, 0, 0, 230.0f); },
             [](const uint16_t* r) { DisplayZT4Data(r, 37); },
             {"NOMINAL VOLTAGE", "Register Value", kRule, "1372 43660000 (230.000000 V)", kRule}},
    DumpCase{"IntegerPerConnector", [](uint16_t* r) { SetModbusDataInteger(r, 41, 0, 5, 0x10002); },
             [](const uint16_t* r) { DisplayZT4Data(r, 41); },
             {"CURRENT NB SAMPLE", "Connector Register Value", kRule,
              "01 1458 00000000 (0 0x00000000)", "02 1460 00000000 (0 0x00000000)",
              "03 1462 00000000 (0 0x00000000)", "04 1464 00000000 (0 0x00000000)",
              "05 1466 00000000 (0 0x00000000)", "06 1468 00020001 (65538 0x00010002)", kRule}},
    DumpCase{"FloatThreeSlot", [](uint16_t* r) { SetModbusData(r, 13, 1, 0, 231.5f); },
             [](const uint16_t* r) { DisplayZT4Data(r, 13); },
             {"RMS VOLTAGE", "Connector Channel Numero Register Value Mode", kRule,
              "1  1 01 0436  00000000 (0.000000e+00 0.000000 V) 0004",
              "1  2 02 0438  00000000 (0.000000e+00 0.000000 V) 0004",
              "1  3 03 0440  00000000 (0.000000e+00 0.000000 V) 0004",
              "2  1 04 0442  80004367 (2.315000e+02 231.500000 V) 0001", kRule}},
    // The 4-slot export index is shown as a 3-slot block: slots 0 to 2 labelled channels 1 to 3.
    DumpCase{"ExportIndexAsThreeSlot", [](uint16_t* r) { SetModbusData(r, 6, 1, 0, -1.0f); },
             [](const uint16_t* r) { DisplayZT4Data(r, 6); },
             {"INDEX ACTIVE EXPORT", "Connector Channel Numero Register Value Mode", kRule,
              "1  1 01 0124  00000000 (0.000000e+00 0.000000 KWh) 0004",
              "1  2 02 0126  00000000 (0.000000e+00 0.000000 KWh) 0004",
              "1  3 03 0128  00000000 (0.000000e+00 0.000000 KWh) 0004",
              "2  1 04 0132  0000bf80 (-1.000000e+00 -1.000000 KWh) 0001", kRule}},
    DumpCase{"RawExportIndexAsThreeSlot", [](uint16_t* r) { SetModbusData(r, 58, 0, 2, 4.0f); },
             [](const uint16_t* r) { DisplayZT4Data(r, 58); },
             {"INDEX ACTIVE EXPORT RAW", "Connector Channel Numero Register Value Mode", kRule,
              "1  1 01 1974  00000000 (0.000000e+00 0.000000 kWh) 0004",
              "1  2 02 1976  00000000 (0.000000e+00 0.000000 kWh) 0004",
              "1  3 03 1978  00004080 (4.000000e+00 4.000000 kWh) 0004",
              "2  1 04 1982  00000000 (0.000000e+00 0.000000 kWh) 0001", kRule}},
    DumpCase{"Double", [](uint16_t* r) { SetModbusData64(r, 62, 1, 1, 2.0); },
             [](const uint16_t* r) { DisplayZT4Data64(r, 62); },
             {"INDEX ACTIVE IMPORT ACCU RAW", "Connector Channel Numero Register Mode Values", kRule,
              "1  0 01 2166  0004  0000000000000000 (0.000000e+00 0.000000e+00 kWh)",
              "1  1 02 2170  0004  0000000000000000 (0.000000e+00 0.000000e+00 kWh)",
              "1  2 03 2174  0004  0000000000000000 (0.000000e+00 0.000000e+00 kWh)",
              "1  3 04 2178  0004  0000000000000000 (0.000000e+00 0.000000e+00 kWh)",
              "2  0 05 2182  0000  0000000000000000 (0.000000e+00 0.000000e+00 kWh)",
              "2  1 06 2186  0001  0000000000004000 (2.000000e+00 2.000000e+00 kWh)",
              "2  2 07 2190  0000  0000000000000000 (0.000000e+00 0.000000e+00 kWh)",
              "2  3 08 2194  0000  0000000000000000 (0.000000e+00 0.000000e+00 kWh)", kRule}},
    DumpCase{"ExportAccuRawNameOnly", [](uint16_t* r) { SetModbusData64(r, 66, 0, 0, 1.0); },
             [](const uint16_t* r) { DisplayZT4Data64(r, 66); }, {"INDEX ACTIVE EXPORT ACCU RAW"}},
    DumpCase{"ExportAccuNameOnly", nothing, [](const uint16_t* r) { DisplayZT4Data64(r, 68); },
             {"INDEX ACTIVE EXPORT ACCU"}},
    DumpCase{"NotDoubleNameOnly", nothing, [](const uint16_t* r) { DisplayZT4Data64(r, 4); },
             {"INDEX ACTIVE IMPORT"}}), dumpName);

// Above level 3 the unused registers are shown too (with the accessors' own trace lines).
TEST_F(DumpTest, DumpShowsUnusedRegistersWhenDebugging) {
    std::vector<uint16_t> image(3318, 0);
    DisplayZT4Data(image.data(), 4);
    EXPECT_FALSE(zt4test::logged("6  3 24 0074  0000  00000000 (0.000000e+00 0.000000 kWh)"));
    debug_level = 4;
    DisplayZT4Data(image.data(), 4);
    EXPECT_TRUE(zt4test::logged("6  3 24 0074  0000  00000000 (0.000000e+00 0.000000 kWh)",
                                LOG_INFO)) << zt4test::logDump();
    EXPECT_TRUE(zt4test::logged("1  0 01 0028  0000  00000000 (0.000000e+00 0.000000 kWh)"));
    DisplayZT4Data64(image.data(), 73);
    EXPECT_TRUE(zt4test::logged(
        "6  3 24 3314  0000  0000000000000000 (0.000000e+00 0.000000e+00 kVAh)"));
}

TEST_F(DumpTest, DumpRefusesNullImageAndUnknownBlock) {
    std::vector<uint16_t> image(3318, 0);
    DisplayZT4Data(nullptr, 4);
    DisplayZT4Data64(nullptr, 62);
    DisplayZT4Data(image.data(), 75);
    DisplayZT4Data64(image.data(), 255);
    std::vector<std::string> lines;
    for (const auto& entry : zt4test::capturedLog()) lines.push_back(entry.text);
    EXPECT_EQ(lines, (std::vector<std::string>{"error.[DisplayZT4Data]: zt4Rg NULL",
                                                "error.[DisplayZT4Data64]: zt4Rg64 NULL",
                                                "error.[DisplayZT4Data]: Register block 75 INVALID",
                                                "error.[DisplayZT4Data64]: Register block 255 INVALID"}));
}

}  // namespace
