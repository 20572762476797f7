// The calibration store: parser, readers, choice of file by connector mode, both writers and their
// staged copy, the JSON form, the dump, the tool's commands, and writers killed at random moments.
#include <signal.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <syslog.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <fstream>
#include <functional>
#include <random>
#include <regex>
#include <set>
#include <sstream>

#include "common/json_ref.hpp"
#include "support/cli.hpp"
#include "support/harness.hpp"
#include "zt4config/calibration.h"

namespace {

using zt4::JsonRef;
using zt4test::logged;

// Expected texts in data/: the sample model holds 0xf0CCNNPP in every hexadecimal field (CC the
// connector, NN the channel, PP the field's place in a file written from the model, 1 to 15),
// CalVnom = 2CN.75 and CalInom = -CN.50.
std::string data(const std::string& name) {
    std::ostringstream text;
    text << std::ifstream(ZT4_EXAMPLE_DEVICE "/../../tests/metering/data/calibration_" + name, std::ios::binary).rdbuf();
    return text.str();
}

// A model whose bytes all start as `filler`, so that a stray write or an untouched byte shows; the
// guard after the six connectors shows a write past them.
struct Model {
    ConnectorConfig connectors[ZT4_CONNECTOR_COUNT], guard;
    explicit Model(unsigned char filler = 0xA5) { std::memset(static_cast<void*>(this), filler, sizeof *this); }
    bool operator==(const Model& other) const { return std::memcmp(this, &other, sizeof *this) == 0; }
};

template <class Row> std::string rowName(const ::testing::TestParamInfo<Row>& row) { return row.param.name; }

const char* const kStandard = "/home/nvram/zt4calibration.cfg";
const char* const kThreephase = "/home/nvram/zt4calibration_threephase.cfg";
const char* const kMonophase = "/home/nvram/zt4calibration_monophase.cfg";

class Calibration : public zt4test::DeviceTest {
protected:
    Model sample() {
        writeFile(kStandard, data("model.cfg"));
        Model model(0);
        EXPECT_EQ(ReadZT4ConfigCalibrationStandard(model.connectors), 0);
        return model;
    }
};

#define SETS(c, n, field, value) [](ConnectorConfig* m) { m[c - 1].channels[n - 1].field = value; }

// The parser: a file's text, what it stores (empty: nothing), its trace at debug level 4 ("" none).
struct LineRow { const char* name; const char* text; std::function<void(ConnectorConfig*)> change; const char* trace; };

class CalibrationLine : public Calibration, public ::testing::WithParamInterface<LineRow> {};

TEST_P(CalibrationLine, StoresTheValueOrSkipsTheLine) {
    const LineRow& row = GetParam();
    writeFile(kStandard, std::string(row.text) + "\n");
    Model model, expected;
    if (row.change) row.change(expected.connectors);
    debug_level = 3;
    ASSERT_EQ(ReadZT4ConfigCalibrationStandard(model.connectors), 0);
    EXPECT_EQ(zt4test::loggedCount("[ReadZT4CalibrationFile]"), 0);
    debug_level = 4;
    ASSERT_EQ(ReadZT4ConfigCalibrationStandard(model.connectors), 0);
    EXPECT_TRUE(model == expected);
    EXPECT_TRUE(*row.trace ? logged(std::string("[ReadZT4CalibrationFile] : ") + row.trace, LOG_INFO)
                           : zt4test::loggedCount("[ReadZT4CalibrationFile]") == 0) << zt4test::logDump();
}

const LineRow kLines[] = {
    {"ActivePower", "Connect_2_Cnl_3_CalActivePower=0xdeadbeef", SETS(2, 3, CalActivePower, 0xdeadbeefu), "Connector[2].Cnl[3].CalPower: -559038737"},
    {"Current", "Connect_6_Cnl_2_CalCurrent=0x1", SETS(6, 2, CalCurrent, 1u), "Connector[6].Cnl[2].CalCurrent: 1"},
    {"Voltage", "Connect_5_Cnl_1_CalVoltage=0x4", SETS(5, 1, CalVoltage, 4u), "Connector[5].Cnl[1].CalVoltage: 4"},
    {"IOffset", "Connect_3_Cnl_1_CalIOffset=0xffffffff", SETS(3, 1, CalIOffset, 0xffffffffu), "Connector[3].Cnl[1].CalIOffset: -1"},
    {"VOffset", "Connect_5_Cnl_1_CalVOffset=0x3", SETS(5, 1, CalVOffset, 3u), "Connector[5].Cnl[1].CalVOffset: 3"},
    {"VAGain", "Connect_4_Cnl_1_CalVAGain=0x9", SETS(4, 1, CalVAGain, 9u), "Connector[4].Cnl[1].CalVAGain: 9"},
    {"WOffset", "Connect_5_Cnl_2_CalWOffset=0xfffffffc", SETS(5, 2, CalWOffset, 0xfffffffcu), "Connector[5].Cnl[2].CalWOffset: -4"},
    {"VARGain", "Connect_1_Cnl_2_CalVARGain=0x7", SETS(1, 2, CalVARGain, 7u), "Connector[1].Cnl[2].CalVARGain: 7"},
    {"VAROffset", "Connect_1_Cnl_2_CalVAROffset=0x8", SETS(1, 2, CalVAROffset, 8u), "Connector[1].Cnl[2].CalVAROffset: 8"},
    {"PhaseA", "Connect_2_Cnl_1_CalPhaseA=0x6a", SETS(2, 1, CalPhaseA, 0x6au), "Connector[2].Cnl[1].CalPhaseA: 106"},
    {"PhaseB", "Connect_2_Cnl_1_CalPhaseB=0x6b", SETS(2, 1, CalPhaseB, 0x6bu), "Connector[2].Cnl[1].CalPhaseB: 107"},
    {"PhaseC", "Connect_6_Cnl_3_CalPhaseC=0xffffffff", SETS(6, 3, CalPhaseC, 0xffffffffu), "Connector[6].Cnl[3].CalPhaseC: -1"},
    {"Vnom", "Connect_1_Cnl_1_CalVnom=230.00", SETS(1, 1, CalVnom, 230.0f), "Connector[1].Cnl[1].CalVnom: 230.00"},
    {"Inom", "Connect_3_Cnl_2_CalInom=5.25", SETS(3, 2, CalInom, 5.25f), "Connector[3].Cnl[2].CalInom: 5.25"},
    {"PrefWithoutPrefix", "Connect_1_Cnl_1_CalPref=12", SETS(1, 1, CalPref, 0x12u), "Connector[1].Cnl[1].CalPref: 18"},
    {"NeutralOffset", "Connect_1_Cnl_4_CalIOffset=0x10", SETS(1, 4, CalIOffset, 0x10u), "Connector[1].Cnl[4].CalIOffset: 16"},
    {"LaterLineWins", "Connect_1_Cnl_1_CalCurrent=0x1\n// c\ngarbage\nConnect_1_Cnl_1_CalCurrent=0x2", SETS(1, 1, CalCurrent, 2u), "Connector[1].Cnl[1].CalCurrent: 2"},
    {"ConnectorSeven", "Connect_7_Cnl_1_CalCurrent=0x00000001", {}, "Connector[7].Cnl[1].CalCurrent: 1"},
    {"ConnectorZero", "Connect_0_Cnl_1_CalCurrent=0x00000001", {}, "Connector[0].Cnl[1].CalCurrent: 1"},
    {"ChannelFive", "Connect_1_Cnl_5_CalCurrent=0x1", {}, "Connector[1].Cnl[5].CalCurrent: 1"},
    {"ChannelZero", "Connect_1_Cnl_0_CalCurrent=0x1", {}, "Connector[1].Cnl[0].CalCurrent: 1"},
    {"SkippedLines", "Connect_10_Cnl_1_CalCurrent=0x1\nConnect_1_Cnl_12_CalCurrent=0x1\n//Connect_1_Cnl_1_CalCurrent=0x1\n"
     " Connect_1_Cnl_1_CalCurrent=0x1\nConnect_1_Cnl_1_CalGain=0x1\nConnect_1_Cnl_1_CalCurrentX=0x1\nConnect_1_Cnl_1_CalCurrent:5\nConnect_1_Cnl_1_CalCurrent=\n"
     "Connect_1_Cnl_1_CalVnom=abc\nConnect_1_Cnx_1_CalCurrent=0x1\nConnect_1_Cnl", {}, ""},
};

INSTANTIATE_TEST_SUITE_P(Lines, CalibrationLine, ::testing::ValuesIn(kLines), rowName<LineRow>);

// A reader, its file and how it names it; the file's kind and the JSON form's failure without it.
struct ReaderRow { const char* name; int (*read)(ConnectorConfig*); const char* file, *wording; int kind; const char* cantRead; };

class CalibrationReader : public Calibration, public ::testing::WithParamInterface<ReaderRow> {};

TEST_P(CalibrationReader, ReadsItsOwnFileAndFailsWithoutIt) {
    const ReaderRow& row = GetParam();
    Model model, expected;
    EXPECT_EQ(row.read(model.connectors), 1);
    EXPECT_TRUE(model == expected);
    EXPECT_TRUE(logged("error.[" + std::string(row.name) + "]: FAILED to open " + row.wording + ". No such file or directory", LOG_ERR));
    JsonRef object(json_object());
    EXPECT_EQ(readConfigCalibration(object.get(), row.kind), 1);
    EXPECT_TRUE(logged(row.cantRead, LOG_ERR)) << zt4test::logDump();
    writeFile(row.file, "Connect_2_Cnl_2_CalCurrent=0x00000021\n");
    expected.connectors[1].channels[1].CalCurrent = 0x21u;
    ASSERT_EQ(row.read(model.connectors), 0);
    EXPECT_TRUE(model == expected);
    EXPECT_TRUE(logged("[" + std::string(row.name) + "]: Read configuration from internal flash " + row.wording, LOG_INFO));
    EXPECT_EQ(row.read(nullptr), 1);
    EXPECT_TRUE(logged("error.[" + std::string(row.name) + "]: Cnt is NULL", LOG_ERR)) << zt4test::logDump();
}

INSTANTIATE_TEST_SUITE_P(Files, CalibrationReader, ::testing::Values(
    ReaderRow{"ReadZT4ConfigCalibrationStandard", ReadZT4ConfigCalibrationStandard, kStandard, "calibration configuration file",
              9, "error.[readConfigCalibration].3 Can't read Calibration Connector parameter"},
    ReaderRow{"ReadZT4ConfigCalibrationThreephase", ReadZT4ConfigCalibrationThreephase, kThreephase, "calibration threephase configuration file",
              1, "error.[readConfigCalibration].2 Can't read Calibration Threephase Connector parameter"},
    ReaderRow{"ReadZT4ConfigCalibrationMonophase", ReadZT4ConfigCalibrationMonophase, kMonophase, "calibration monophase configuration file",
              2, "error.[readConfigCalibration].1 Can't read Calibration Monophase Connector parameter"}),
    rowName<ReaderRow>);

// Files present (S standard, T three-phase, M single-phase), each connector's first channel's mode,
// the result, and the source of each connector: S (four channels), T or M (three), '-' none.
struct SelectionRow { const char* name; const char* files; unsigned char modes[6]; int result; const char* sources; };

class CalibrationSelection : public Calibration, public ::testing::WithParamInterface<SelectionRow> {};

TEST_P(CalibrationSelection, TakesEachConnectorFromItsFile) {
    const SelectionRow& row = GetParam();
    // The sample file with the top byte of its values telling the file: f0, e0 or d0.
    if (std::strchr(row.files, 'S')) writeFile(kStandard, data("model.cfg"));
    if (std::strchr(row.files, 'T')) writeFile(kThreephase, std::regex_replace(data("model.cfg"), std::regex("=0xf0"), "=0xe0"));
    if (std::strchr(row.files, 'M')) writeFile(kMonophase, std::regex_replace(data("model.cfg"), std::regex("=0xf0"), "=0xd0"));
    Model model;
    for (unsigned k = 0; k < 6; ++k) {
        model.connectors[k].channels[0].mode = row.modes[k];
        // The other channels say the opposite: only the first channel's mode counts.
        model.connectors[k].channels[1].mode = model.connectors[k].channels[2].mode = row.sources[k] == 'M' ? 2 : 1;
    }
    const Model before = model;
    EXPECT_EQ(ReadZT4ConfigCalibration(model.connectors), row.result);
    EXPECT_EQ(std::memcmp(&model.guard, &before.guard, sizeof model.guard), 0);
    for (unsigned k = 0; k < 6; ++k) {
        for (unsigned n = 0; n < 4; ++n) {
            const ChannelConfig& got = model.connectors[k].channels[n];
            const ChannelConfig& old = before.connectors[k].channels[n];
            const char source = n == 3 && row.sources[k] != 'S' ? '-' : row.sources[k];
            const std::uint32_t top = source == 'S' ? 0xf0000000u : source == 'T' ? 0xe0000000u : 0xd0000000u;
            const std::uint32_t place = top | (k + 1) << 16 | (n + 1) << 8;
            EXPECT_EQ(got.CalCurrent, source == '-' ? old.CalCurrent : place | 1) << k << n;
            EXPECT_EQ(got.CalIOffset, source == '-' ? old.CalIOffset : place | 2) << k << n;
            EXPECT_EQ(got.CalPref, source == '-' || n == 3 ? old.CalPref : place | 15) << k << n;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Files, CalibrationSelection, ::testing::Values(
    SelectionRow{"StandardOnly", "S", {0, 1, 2, 3, 4, 5}, 0, "SSSSSS"},
    SelectionRow{"BothSplitFiles", "TM", {1, 2, 3, 4, 5, 6}, 0, "MTMTMT"},
    SelectionRow{"SplitFilesWinOverStandard", "STM", {0, 0, 5, 6, 1, 3}, 0, "TTMTMM"},
    SelectionRow{"ThreephaseMissing", "SM", {1, 1, 1, 1, 1, 1}, 1, "------"},
    SelectionRow{"MonophaseMissing", "ST", {2, 2, 2, 2, 2, 2}, 1, "------"},
    SelectionRow{"NoFile", "", {1, 2, 3, 4, 5, 6}, 1, "------"}),
    rowName<SelectionRow>);

// Model to file to JSON to file: the kind, its file, a device root with blanks and shell characters.
struct KindRow { const char* name; int kind; const char* file; const char* root; };

class CalibrationWriter : public Calibration, public ::testing::WithParamInterface<KindRow> {};

TEST_P(CalibrationWriter, ModelToFileToJsonToFile) {
    const KindRow& row = GetParam();
    const std::string file = std::string(row.root) + row.file, target = path(file);
    const Model model = sample();
    writeFile(file, "old\n");
    setenv("ZT4_ROOT", path(row.root).c_str(), 1);
    ASSERT_EQ(writeConfigInitCalibration(model.connectors, row.kind), 0) << zt4test::logDump();
    EXPECT_EQ(readFile(file), data("model.cfg"));
    EXPECT_EQ(readFile(file + ".new"), data("model.cfg"));  // the staged copy stays
    EXPECT_FALSE(exists(row.root + std::string("/home/nvram/zt4calibration.tmp")));
    EXPECT_TRUE(logged("[writeConfigInitCalibration]: tmp calibration configuration file renamed successfully", LOG_INFO));
    EXPECT_TRUE(logged("[writeConfigInitCalibration]: Update configuration file", LOG_INFO));
    EXPECT_TRUE(logged("[writeConfigInitCalibration].4: system cp " + target + ".new " + target + " returns 0", LOG_INFO));

    JsonRef form(json_object()), expected(zt4test::parse(data("form.json").c_str()));
    ASSERT_EQ(readConfigCalibration(form.get(), row.kind), 0);
    EXPECT_TRUE(json_equal(form.get(), expected.get())) << zt4test::compact(form.get());

    writeFile(file, "old\n");
    ASSERT_EQ(writeConfigCalibration(form.get(), row.kind), 0) << zt4test::logDump();
    EXPECT_EQ(readFile(file), data("from_json.cfg"));  // members in the order of the JSON form
    EXPECT_EQ(readFile(file + ".new"), data("from_json.cfg"));
    EXPECT_FALSE(exists(row.root + std::string("/home/nvram/zt4calibration.new")));
    EXPECT_TRUE(logged("[writeConfigCalibration]: New calibration configuration file renamed successfully", LOG_INFO));
    EXPECT_TRUE(logged("[writeConfigCalibration] Update configuration file", LOG_INFO));
    EXPECT_TRUE(logged("[writeConfigCalibration]: system 'cp '" + target + ".new' '" + target + "'' return 0", LOG_INFO));
    EXPECT_EQ(zt4test::loggedCount("FAILED"), 0) << zt4test::logDump();
}

INSTANTIATE_TEST_SUITE_P(Kinds, CalibrationWriter, ::testing::Values(
    KindRow{"Standard", 0, kStandard, ""}, KindRow{"Threephase", 1, kThreephase, ""}, KindRow{"Monophase", 2, kMonophase, ""},
    KindRow{"OtherKindIsStandard", 7, kStandard, ""}, KindRow{"NegativeKindIsStandard", -1, kStandard, ""},
    KindRow{"RootWithBlanksAndQuotes", 2, kMonophase, "/a b;$(touch x)'q\""}),
    rowName<KindRow>);

// From JSON: the debug level, the document, the result, the standard file afterwards ("old\n"
// before), a line that must be logged or, after '!', a text that no line may hold.
struct JsonRow { const char* name; int level; const char* document; int result; const char* file; const char* line; };

class CalibrationJsonWriter : public Calibration, public ::testing::WithParamInterface<JsonRow> {};

TEST_P(CalibrationJsonWriter, WritesMembersAsTheyCome) {
    const JsonRow& row = GetParam();
    writeFile(kStandard, "old\n");
    debug_level = row.level;
    JsonRef document(zt4test::parse(row.document));
    EXPECT_EQ(writeConfigCalibration(document.get(), 0), row.result);
    EXPECT_EQ(readFile(kStandard), row.file);
    EXPECT_TRUE(row.line[0] == '!' ? zt4test::loggedCount(row.line + 1) == 0 : logged(row.line)) << zt4test::logDump();
}

const JsonRow kJsonRows[] = {
    {"MemberOrderAndForms", 1, R"({"Connector":[{"Cnl":[{"CalPref":16,"CalVnom":230.0,"Name":"x","CalIOffset":-1,"On":null}]}]})", 0,
     "Connect_1_Cnl_1_CalPref=0x00000010\nConnect_1_Cnl_1_CalVnom=230.00\nConnect_1_Cnl_1_CalIOffset=0xffffffff\n",
     "[writeConfigCalibration] buf 'Connect_1_Cnl_1_CalVnom' | value 230.000000"},
    {"UnknownKeysAreWritten", 1, R"({"Connector":[{"Cnl":[{"Gain":1}]}]})", 0, "Connect_1_Cnl_1_Gain=0x00000001\n",
     "[writeConfigCalibration] buf 'Connect_1_Cnl_1_Gain' | value 1.000000"},
    {"NoTraceAtLevelZero", 0, R"({"Connector":[{"Cnl":[{"Gain":1}]}]})", 0, "Connect_1_Cnl_1_Gain=0x00000001\n", "!buf '"},
    {"NumberedFromOne", 0, R"({"Connector":[{"Cnl":[]},{"Cnl":[{},{},{"CalInom":5.004}]}]})", 0, "Connect_2_Cnl_3_CalInom=5.00\n", "!buf '"},
    {"EmptyConnectorArray", 0, R"({"Connector":[]})", 0, "", "!error"},
    {"NoConnector", 0, R"({"Other":[]})", 1, "old\n", "[writeConfigCalibration] Connector is NULL"},
    {"ConnectorNotArray", 0, R"({"Connector":{}})", 1, "old\n", "[writeConfigCalibration] Connector is not an array"},
    {"ConnectorElementNotObject", 0, R"({"Connector":[{"Cnl":[]},3]})", 1, "old\n", "[writeConfigCalibration] Connector 1 is not an object"},
    {"NoCnl", 0, R"({"Connector":[{}]})", 1, "old\n", "[writeConfigCalibration] elmt Cnl is NULL"},
    {"CnlNotArray", 0, R"({"Connector":[{"Cnl":{}}]})", 1, "old\n", "[writeConfigCalibration] Cnl is not an array"},
    {"CnlElementNotObject", 0, R"({"Connector":[{"Cnl":[{},[]]}]})", 1, "old\n", "[writeConfigCalibration] Cnl 1 is not an object"},
};

INSTANTIATE_TEST_SUITE_P(Documents, CalibrationJsonWriter, ::testing::ValuesIn(kJsonRows), rowName<JsonRow>);

enum Obstacle { NoDirectory, StagedNameIsADirectory, TargetLinksNowhere, NoCopyCommand };

// Both writers failing: the result, the lines each writer logs at `priority` ('@' the target's
// path), the target and its content afterwards (null: absent).
struct FailureRow { const char* name; Obstacle obstacle; int kind, result, priority; const char* modelLine, *jsonLine, *file, *after; };

class CalibrationWriterFailure : public Calibration, public ::testing::WithParamInterface<FailureRow> {};

TEST_P(CalibrationWriterFailure, TargetUntouchedAndFailureLogged) {
    const FailureRow& row = GetParam();
    const std::string target = path(row.file), savedPath = std::getenv("PATH");
    if (row.obstacle == NoDirectory) zt4test::removeTree(path("/home/nvram"));
    if (row.obstacle == StagedNameIsADirectory) { writeFile(std::string(row.file) + ".new/keep", "x"); writeFile(row.file, "old\n"); }
    if (row.obstacle == TargetLinksNowhere) { ASSERT_EQ(symlink((root() + "/missing").c_str(), target.c_str()), 0); }
    if (row.obstacle == NoCopyCommand) setenv("PATH", path("/var/tmp").c_str(), 1);
    const Model model(0);
    JsonRef document(zt4test::parse(R"({"Connector":[]})"));
    testing::internal::CaptureStderr();
    const int fromModel = writeConfigInitCalibration(model.connectors, row.kind);
    const std::string printed = testing::internal::GetCapturedStderr();  // perror's line
    const int fromJson = writeConfigCalibration(document.get(), row.kind);
    setenv("PATH", savedPath.c_str(), 1);
    EXPECT_EQ(fromModel, row.result);
    EXPECT_EQ(printed.find("open " + path("/home/nvram/zt4calibration.tmp") + ": No such file or directory\n") != std::string::npos, row.obstacle == NoDirectory) << printed;
    EXPECT_TRUE(logged(std::regex_replace(row.modelLine, std::regex("@"), target), row.priority)) << zt4test::logDump();
    EXPECT_EQ(fromJson, row.result);
    EXPECT_TRUE(logged(std::regex_replace(row.jsonLine, std::regex("@"), target), row.priority)) << zt4test::logDump();
    EXPECT_EQ(exists(row.file), row.after != nullptr);
    EXPECT_EQ(zt4test::loggedCount("unlock"), 0);
    EXPECT_EQ(readFile(row.file), row.after ? row.after : "");
}

INSTANTIATE_TEST_SUITE_P(Obstacles, CalibrationWriterFailure, ::testing::Values(
    FailureRow{"NoDirectory", NoDirectory, 0, 1, LOG_ERR, "error.[writeConfigInitCalibration].2: FAILED to open tmp calibration configuration file. No such file or directory",
               "error.[writeConfigCalibration]: FAILED to open new calibration configuration file. No such file or directory", kStandard, nullptr},
    FailureRow{"RenameFails", StagedNameIsADirectory, 1, 1, LOG_INFO, "error.[writeConfigInitCalibration]: FAILED to rename the tmp calibration configuration file",
               "error.[writeConfigCalibration]: FAILED to rename the new calibration configuration file", kThreephase, "old\n"},
    FailureRow{"CopyFails", TargetLinksNowhere, 0, 256, LOG_INFO, "[writeConfigInitCalibration].4: system cp @.new @ returns 256",
               "[writeConfigCalibration]: system 'cp '@.new' '@'' return 256", kStandard, nullptr},
    FailureRow{"NoCopyCommand", NoCopyCommand, 2, 32512, LOG_INFO, "[writeConfigInitCalibration].4: system cp @.new @ returns 32512",
               "[writeConfigCalibration]: system 'cp '@.new' '@'' return 32512", kMonophase, nullptr}),
    rowName<FailureRow>);

TEST_F(Calibration, NullArgumentsFailWithOne) {
    EXPECT_EQ(writeConfigInitCalibration(nullptr, 0), 1);
    EXPECT_TRUE(logged("error. [writeConfigInitCalibration].1: Cnt is NULL", LOG_ERR));
    EXPECT_EQ(writeConfigCalibration(nullptr, 0), 1);
    EXPECT_TRUE(logged("error: [writeConfigCalibration] root JSON object is NULL", LOG_ERR));
    EXPECT_EQ(readConfigCalibration(nullptr, 0), 1);
    EXPECT_TRUE(logged("error. [readConfigCalibration] Obj JSON object is NULL", LOG_ERR));
    EXPECT_EQ(readConfigCalibration(JsonRef(json_array()).get(), 0), 1);
    EXPECT_TRUE(logged("error.[readConfigCalibration]: Obj is not a JSON object", LOG_ERR));
    EXPECT_EQ(ReadZT4ConfigCalibration(nullptr), 1);
    EXPECT_TRUE(logged("error.[ReadZT4ConfigCalibration]: Cnt is NULL", LOG_ERR));
    DisplayZT4Calibration(nullptr);
    EXPECT_TRUE(logged("error.[DisplayZT4Calibration]: Cnt is NULL", LOG_ERR));
}

TEST_F(Calibration, DumpShowsEveryCoefficientAligned) {
    const Model model = sample();
    zt4test::clearLog();
    DisplayZT4Calibration(model.connectors);
    std::string text;
    for (const auto& entry : zt4test::capturedLog()) text += entry.text + (entry.priority == LOG_INFO ? "\n" : " (not info)\n");
    EXPECT_EQ(text, data("dump.txt"));
}

// The tool: arguments ('@' the device root), exit status, a text of the output, a file afterwards.
struct CliRow { const char* name; const char* arguments; int status; const char* output, *file, *content; };

class CalibrationCli : public Calibration, public ::testing::WithParamInterface<CliRow> {};

TEST_P(CalibrationCli, StatusOutputAndFile) {
    const CliRow& row = GetParam();
    writeFile(kStandard, "Connect_2_Cnl_3_CalPref=0x00000e10\n");
    writeFile("/var/tmp/document.json", R"({"Connector":[{"Cnl":[{"CalVnom":231.5,"CalPref":255}]}]})");
    std::string output;
    EXPECT_EQ(zt4test::runCli(root(), std::regex_replace(row.arguments, std::regex("@"), root()), output), row.status) << output;
    EXPECT_NE(output.find(row.output), std::string::npos) << output;
    EXPECT_EQ(readFile(row.file), row.content);
}

const char* const kOld = "Connect_2_Cnl_3_CalPref=0x00000e10\n";
const char* const kNew = "Connect_1_Cnl_1_CalVnom=231.50\nConnect_1_Cnl_1_CalPref=0x000000ff\n";

INSTANTIATE_TEST_SUITE_P(Commands, CalibrationCli, ::testing::Values(
    CliRow{"ShowStandardByDefault", "calibration show", 0, "\"CalPref\": 3600", kStandard, kOld},
    CliRow{"ShowMissingFile", "calibration show monophase", 1, "FAILED to open calibration monophase configuration file", kMonophase, ""},
    CliRow{"WriteFromFile", "calibration write threephase @/var/tmp/document.json", 0, "renamed successfully", kThreephase, kNew},
    CliRow{"WriteWithoutFile", "calibration write standard", 2, "calibration write standard|threephase|monophase FILE|-", kStandard, kOld}),
    rowName<CliRow>);

// A copy of this process, as fork() makes one; the bare system call, because glibc's fork()
// child does not survive qemu-arm's user emulation.
pid_t copyOfThisProcess() { return static_cast<pid_t>(syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0)); }

// A writer killed at any moment leaves the target whole: one of the versions written.
TEST_F(Calibration, KilledWriterNeverLeavesAPartialFile) {
    // Three versions whose values all differ, each written by both writers in turn.
    const Model versions[3] = {Model(0x11), Model(0x22), Model(0x33)};
    std::vector<JsonRef> documents;
    auto writeRound = [&](size_t i) {
        return (i / 3) % 2 == 0 ? writeConfigInitCalibration(versions[i % 3].connectors, 0)
                                : writeConfigCalibration(documents[i % 3].get(), 0);
    };
    std::set<std::string> whole;  // the texts of the six complete files
    const auto start = std::chrono::steady_clock::now();
    for (size_t i = 0; i < 6; ++i) {
        ASSERT_EQ(writeRound(i), 0) << zt4test::logDump();
        whole.insert(readFile(kStandard));
        if (i < 3) documents.emplace_back(json_object());
        ASSERT_EQ(i < 3 ? readConfigCalibration(documents[i].get(), 0) : 0, 0);
    }
    ASSERT_EQ(whole.size(), 6u);
    const long long window = std::clamp<long long>(std::chrono::duration_cast<std::chrono::microseconds>(
                                                       std::chrono::steady_clock::now() - start).count(), 2000, 60000);
    std::mt19937 random(std::random_device{}());
    std::uniform_int_distribution<long long> moment(0, window);
    // A cp outlives its killed writer: both hold the write end of a pipe, whose end of file tells
    // that both are gone (qemu-arm refuses a child subreaper, which here only reaps cp natively).
    prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0);
    int changed = 0;
    std::string previous = readFile(kStandard);
    for (int round = 0; round < 60; ++round) {
        int alive[2];
        ASSERT_EQ(pipe(alive), 0);
        const pid_t child = copyOfThisProcess();
        ASSERT_GE(child, 0);
        if (child == 0) {
            close(alive[0]);
            alarm(10);  // never outlive a parent that failed to kill
            for (size_t i = static_cast<size_t>(round);; ++i) writeRound(i);
        }
        close(alive[1]);
        usleep(static_cast<useconds_t>(moment(random)));
        ASSERT_EQ(kill(child, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << "round " << round;
        for (char byte; read(alive[0], &byte, 1) > 0;) continue;
        close(alive[0]);
        while (waitpid(-1, nullptr, WNOHANG) > 0) continue;
        const std::string stored = readFile(kStandard);
        ASSERT_EQ(whole.count(stored), 1u) << "round " << round << ":\n" << stored.substr(0, 400);
        changed += stored != previous;
        previous = stored;
    }
    prctl(PR_SET_CHILD_SUBREAPER, 0, 0, 0, 0);
    EXPECT_GT(changed, 0) << "window " << window << " us";
}

}  // namespace
