// Reading calibration files: which lines the parser takes, the readers' messages, and which file
// each connector's channels take their coefficients from.
#include <syslog.h>

#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "metering/calibration_samples.hpp"
#include "support/harness.hpp"
#include "zt4config/calibration.h"

namespace {

using zt4test::Model;
using zt4test::hexValue;
using zt4test::realValue;
using zt4test::setTagged;

// Rows name their cases.
template <class Case>
std::string caseName(const ::testing::TestParamInfo<Case>& row) {
    return row.param.name;
}

// --- The parser, one line at a time ------------------------------------------------------------

struct LineCase {
    const char* name;
    const char* line;
    std::function<void(ConnectorConfig*)> expectedChange;  // empty: the model stays as it was
};

class CalibrationLine : public zt4test::DeviceTest, public ::testing::WithParamInterface<LineCase> {};

TEST_P(CalibrationLine, StoresTheValueOrSkipsTheLine) {
    const LineCase& c = GetParam();
    writeFile("/home/nvram/zt4calibration.cfg", std::string(c.line) + "\n");
    Model model, expected;
    if (c.expectedChange) c.expectedChange(expected.connectors);
    ASSERT_EQ(ReadZT4ConfigCalibrationStandard(model.connectors), 0);
    EXPECT_TRUE(model == expected) << c.line;
}

const LineCase kLines[] = {
    {"HexValue", "Connect_2_Cnl_3_CalActivePower=0xdeadbeef",
     [](ConnectorConfig* m) { m[1].channels[2].CalActivePower = 0xdeadbeefu; }},
    {"HexWithoutPrefix", "Connect_1_Cnl_1_CalPref=12", [](ConnectorConfig* m) { m[0].channels[0].CalPref = 0x12u; }},
    {"FloatTwoDecimals", "Connect_1_Cnl_1_CalVnom=230.00", [](ConnectorConfig* m) { m[0].channels[0].CalVnom = 230.0f; }},
    {"FloatInom", "Connect_3_Cnl_2_CalInom=5.25", [](ConnectorConfig* m) { m[2].channels[1].CalInom = 5.25f; }},
    {"NeutralOffset", "Connect_1_Cnl_4_CalIOffset=0x10", [](ConnectorConfig* m) { m[0].channels[3].CalIOffset = 0x10u; }},
    {"LastConnectorLastChannel", "Connect_6_Cnl_3_CalPhaseC=0xffffffff",
     [](ConnectorConfig* m) { m[5].channels[2].CalPhaseC = 0xffffffffu; }},
    {"VarGainNotVaGain", "Connect_1_Cnl_2_CalVARGain=0x7", [](ConnectorConfig* m) { m[0].channels[1].CalVARGain = 7u; }},
    {"VarOffsetNotVarGain", "Connect_1_Cnl_2_CalVAROffset=0x8", [](ConnectorConfig* m) { m[0].channels[1].CalVAROffset = 8u; }},
    {"VaGain", "Connect_4_Cnl_1_CalVAGain=0x9", [](ConnectorConfig* m) { m[3].channels[0].CalVAGain = 9u; }},
    {"VOffsetNotVoltage", "Connect_5_Cnl_1_CalVOffset=0x3", [](ConnectorConfig* m) { m[4].channels[0].CalVOffset = 3u; }},
    {"Voltage", "Connect_5_Cnl_1_CalVoltage=0x4", [](ConnectorConfig* m) { m[4].channels[0].CalVoltage = 4u; }},
    {"WOffset", "Connect_5_Cnl_2_CalWOffset=0xfffffffc", [](ConnectorConfig* m) { m[4].channels[1].CalWOffset = 0xfffffffcu; }},
    {"PhaseA", "Connect_2_Cnl_1_CalPhaseA=0x6a", [](ConnectorConfig* m) { m[1].channels[0].CalPhaseA = 0x6au; }},
    {"PhaseB", "Connect_2_Cnl_1_CalPhaseB=0x6b", [](ConnectorConfig* m) { m[1].channels[0].CalPhaseB = 0x6bu; }},
    {"NeutralCurrent", "Connect_6_Cnl_4_CalCurrent=0x1", [](ConnectorConfig* m) { m[5].channels[3].CalCurrent = 1u; }},
    {"ConnectorSeven", "Connect_7_Cnl_1_CalCurrent=0x00000001", {}},
    {"ConnectorZero", "Connect_0_Cnl_1_CalCurrent=0x00000001", {}},
    {"ChannelFive", "Connect_1_Cnl_5_CalCurrent=0x1", {}},
    {"TwoDigitConnector", "Connect_10_Cnl_1_CalCurrent=0x1", {}},
    {"TwoDigitChannel", "Connect_1_Cnl_12_CalCurrent=0x1", {}},
    {"Comment", "//Connect_1_Cnl_1_CalCurrent=0x1", {}},
    {"LeadingBlank", " Connect_1_Cnl_1_CalCurrent=0x1", {}},
    {"UnknownKey", "Connect_1_Cnl_1_CalGain=0x1", {}},
    {"KeyWithSuffix", "Connect_1_Cnl_1_CalCurrentX=0x1", {}},
    {"NoValue", "Connect_1_Cnl_1_CalCurrent=", {}},
    {"NotANumber", "Connect_1_Cnl_1_CalVnom=abc", {}},
    {"ChannelWordMisspelt", "Connect_1_Cnx_1_CalCurrent=0x1", {}},
    {"ShortLine", "Connect_1_Cnl", {}},
};

INSTANTIATE_TEST_SUITE_P(Lines, CalibrationLine, ::testing::ValuesIn(kLines),
                         caseName<LineCase>);

class CalibrationParser : public zt4test::DeviceTest {};

TEST_F(CalibrationParser, LaterLinesWinAndAbsentFieldsKeepTheirContent) {
    writeFile("/home/nvram/zt4calibration.cfg",
              "Connect_1_Cnl_1_CalCurrent=0x1\n"
              "// comment\n"
              "garbage\n"
              "Connect_1_Cnl_1_CalCurrent=0x2\n");
    Model model, expected;
    expected.connectors[0].channels[0].CalCurrent = 2u;
    ASSERT_EQ(ReadZT4ConfigCalibrationStandard(model.connectors), 0);
    EXPECT_TRUE(model == expected);
}

struct TraceCase {
    int debugLevel;
    const char* line;
    const char* trace;  // "" when nothing must be traced
};

class CalibrationTrace : public zt4test::DeviceTest, public ::testing::WithParamInterface<TraceCase> {};

TEST_P(CalibrationTrace, TracesEachValueAboveLevelThree) {
    const TraceCase& c = GetParam();
    writeFile("/home/nvram/zt4calibration.cfg", std::string(c.line) + "\n");
    debug_level = c.debugLevel;
    Model model;
    ASSERT_EQ(ReadZT4ConfigCalibrationStandard(model.connectors), 0);
    if (*c.trace != '\0') {
        EXPECT_TRUE(zt4test::logged(c.trace, LOG_INFO)) << zt4test::logDump();
    } else {
        EXPECT_EQ(zt4test::loggedCount("[ReadZT4CalibrationFile]"), 0) << zt4test::logDump();
    }
}

INSTANTIATE_TEST_SUITE_P(
    Levels, CalibrationTrace,
    ::testing::Values(
        TraceCase{4, "Connect_1_Cnl_2_CalActivePower=0x10", "[ReadZT4CalibrationFile] : Connector[1].Cnl[2].CalPower: 16"},
        TraceCase{4, "Connect_3_Cnl_1_CalIOffset=0xffffffff", "[ReadZT4CalibrationFile] : Connector[3].Cnl[1].CalIOffset: -1"},
        TraceCase{4, "Connect_7_Cnl_1_CalCurrent=0x5", "[ReadZT4CalibrationFile] : Connector[7].Cnl[1].CalCurrent: 5"},
        TraceCase{4, "Connect_1_Cnl_1_CalVnom=230.00", "[ReadZT4CalibrationFile] : Connector[1].Cnl[1].CalVnom: 230.00"},
        TraceCase{3, "Connect_1_Cnl_2_CalActivePower=0x10", ""}));

// --- The three readers -------------------------------------------------------------------------

struct ReaderCase {
    const char* name;
    int (*read)(ConnectorConfig*);
    const char* file;
    const char* readLine;     // logged when the file is read
    const char* missingLine;  // logged when it does not exist
};

class CalibrationReader : public zt4test::DeviceTest, public ::testing::WithParamInterface<ReaderCase> {};

TEST_P(CalibrationReader, ReadsItsOwnFile) {
    const ReaderCase& c = GetParam();
    writeFile(c.file, "Connect_2_Cnl_2_CalCurrent=0x00000021\n");
    Model model, expected;
    expected.connectors[1].channels[1].CalCurrent = 0x21u;
    ASSERT_EQ(c.read(model.connectors), 0);
    EXPECT_TRUE(model == expected);
    EXPECT_TRUE(zt4test::logged(c.readLine, LOG_INFO)) << zt4test::logDump();
}

TEST_P(CalibrationReader, MissingFileFailsWithOne) {
    const ReaderCase& c = GetParam();
    Model model, expected;
    EXPECT_EQ(c.read(model.connectors), 1);
    EXPECT_TRUE(model == expected);
    EXPECT_TRUE(zt4test::logged(c.missingLine, LOG_ERR)) << zt4test::logDump();
}

TEST_P(CalibrationReader, NullModelFailsWithOne) {
    const ReaderCase& c = GetParam();
    writeFile(c.file, "Connect_2_Cnl_2_CalCurrent=0x00000021\n");
    EXPECT_EQ(c.read(nullptr), 1);
}

INSTANTIATE_TEST_SUITE_P(
    Files, CalibrationReader,
    ::testing::Values(
        ReaderCase{"Standard", ReadZT4ConfigCalibrationStandard, "/home/nvram/zt4calibration.cfg",
                   "[ReadZT4ConfigCalibrationStandard]: Read configuration from internal flash calibration configuration file",
                   "error.[ReadZT4ConfigCalibrationStandard]: FAILED to open calibration configuration file. No such file or directory"},
        ReaderCase{"Threephase", ReadZT4ConfigCalibrationThreephase, "/home/nvram/zt4calibration_threephase.cfg",
                   "[ReadZT4ConfigCalibrationThreephase]: Read configuration from internal flash calibration threephase configuration file",
                   "error.[ReadZT4ConfigCalibrationThreephase]: FAILED to open calibration threephase configuration file. No such file or directory"},
        ReaderCase{"Monophase", ReadZT4ConfigCalibrationMonophase, "/home/nvram/zt4calibration_monophase.cfg",
                   "[ReadZT4ConfigCalibrationMonophase]: Read configuration from internal flash calibration monophase configuration file",
                   "error.[ReadZT4ConfigCalibrationMonophase]: FAILED to open calibration monophase configuration file. No such file or directory"}),
    caseName<ReaderCase>);

// --- Selection by connector mode ---------------------------------------------------------------

// Each file holds values that say where they come from: tag (1 standard, 2 three-phase,
// 3 single-phase), connector, channel and field; the neutral channel carries every field too.
std::string taggedFile(unsigned tag) {
    static const char* const hexKeys[] = {"CalCurrent", "CalIOffset", "CalVoltage", "CalVOffset",
                                          "CalActivePower", "CalWOffset", "CalVAGain", "CalVARGain",
                                          "CalVAROffset", "CalPhaseA", "CalPhaseB", "CalPhaseC", "CalPref"};
    std::string text;
    char line[128];
    for (unsigned c = 1; c <= 6; ++c) {
        for (unsigned n = 1; n <= 4; ++n) {
            for (unsigned f = 0; f < 13; ++f) {
                std::snprintf(line, sizeof line, "Connect_%u_Cnl_%u_%s=0x%08x\n", c, n, hexKeys[f], hexValue(tag, c, n, f));
                text += line;
            }
            std::snprintf(line, sizeof line, "Connect_%u_Cnl_%u_CalVnom=%.2f\nConnect_%u_Cnl_%u_CalInom=%.2f\n", c, n,
                          static_cast<double>(realValue(tag, c, n, 13)), c, n, static_cast<double>(realValue(tag, c, n, 14)));
            text += line;
        }
    }
    return text;
}

struct SelectionCase {
    const char* name;
    bool standard, threephase, monophase;  // files present
    unsigned char modes[6];                // mode of each connector's first channel
    int result;
    const char* sources;  // per connector: S standard (all four channels), T / M three channels
                          // from the three-phase / single-phase file, '-' untouched
};

class CalibrationSelection : public zt4test::DeviceTest,
                             public ::testing::WithParamInterface<SelectionCase> {};

TEST_P(CalibrationSelection, TakesEachConnectorFromItsFile) {
    const SelectionCase& c = GetParam();
    if (c.standard) writeFile("/home/nvram/zt4calibration.cfg", taggedFile(1));
    if (c.threephase) writeFile("/home/nvram/zt4calibration_threephase.cfg", taggedFile(2));
    if (c.monophase) writeFile("/home/nvram/zt4calibration_monophase.cfg", taggedFile(3));
    Model model;
    for (unsigned k = 0; k < 6; ++k) {
        model.connectors[k].channels[0].mode = c.modes[k];
        // The other channels say the opposite: only the first channel's mode counts.
        const bool mono = c.modes[k] == 1 || c.modes[k] == 3 || c.modes[k] == 5;
        model.connectors[k].channels[1].mode = mono ? 2 : 1;
        model.connectors[k].channels[2].mode = mono ? 4 : 3;
    }
    Model expected = model;
    for (unsigned k = 0; k < 6; ++k) {
        const char source = c.sources[k];
        if (source == '-') continue;
        const unsigned tag = source == 'S' ? 1 : source == 'T' ? 2 : 3;
        const unsigned channels = source == 'S' ? 4 : 3;
        for (unsigned n = 0; n < channels; ++n) setTagged(expected.connectors[k].channels[n], tag, k + 1, n + 1);
    }
    EXPECT_EQ(ReadZT4ConfigCalibration(model.connectors), c.result);
    for (unsigned k = 0; k < 6; ++k) {
        EXPECT_EQ(std::memcmp(&model.connectors[k], &expected.connectors[k], sizeof(ConnectorConfig)), 0)
            << "connector " << k + 1 << " should come from " << c.sources[k];
    }
}

INSTANTIATE_TEST_SUITE_P(
    Files, CalibrationSelection,
    ::testing::Values(
        SelectionCase{"StandardOnly", true, false, false, {0, 1, 2, 3, 4, 5}, 0, "SSSSSS"},
        SelectionCase{"BothSplitFiles", false, true, true, {1, 2, 3, 4, 5, 6}, 0, "MTMTMT"},
        SelectionCase{"SplitFilesWinOverStandard", true, true, true, {0, 0, 5, 6, 1, 3}, 0, "TTMTMM"},
        SelectionCase{"ThreephaseMissing", true, false, true, {1, 1, 1, 1, 1, 1}, 1, "------"},
        SelectionCase{"MonophaseMissing", true, true, false, {2, 2, 2, 2, 2, 2}, 1, "------"},
        SelectionCase{"NoFile", false, false, false, {1, 2, 3, 4, 5, 6}, 1, "------"}),
    caseName<SelectionCase>);

TEST(CalibrationSelectionArguments, NullModelFailsWithOne) { EXPECT_EQ(ReadZT4ConfigCalibration(nullptr), 1); }

}  // namespace
