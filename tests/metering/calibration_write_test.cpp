// Writing calibration files: from the model (282 lines in file order, read back unchanged), from
// JSON (members as they come), the JSON form, the staged copy and the failures.
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "common/json_ref.hpp"
#include "metering/calibration_samples.hpp"
#include "support/harness.hpp"
#include "zt4config/calibration.h"

namespace {

using zt4test::Model;

std::string slurp(const std::string& hostPath) {
    std::ifstream in(hostPath, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

struct KindCase {
    const char* name;
    int kind;
    const char* file;
    int (*read)(ConnectorConfig*);
};

template <class Case>
std::string caseName(const ::testing::TestParamInfo<Case>& row) {
    return row.param.name;
}

const KindCase kKinds[] = {
    {"Standard", 0, "/home/nvram/zt4calibration.cfg", ReadZT4ConfigCalibrationStandard},
    {"Threephase", 1, "/home/nvram/zt4calibration_threephase.cfg", ReadZT4ConfigCalibrationThreephase},
    {"Monophase", 2, "/home/nvram/zt4calibration_monophase.cfg", ReadZT4ConfigCalibrationMonophase},
    {"OtherKindIsStandard", 7, "/home/nvram/zt4calibration.cfg", ReadZT4ConfigCalibrationStandard},
    {"NegativeKindIsStandard", -1, "/home/nvram/zt4calibration.cfg", ReadZT4ConfigCalibrationStandard},
};

class CalibrationWriter : public zt4test::DeviceTest, public ::testing::WithParamInterface<KindCase> {};

TEST_P(CalibrationWriter, ModelFileModelIsTheIdentity) {
    const KindCase& c = GetParam();
    Model written(0x3C);
    zt4test::setTaggedModel(written, 5);
    ASSERT_EQ(writeConfigInitCalibration(written.connectors, c.kind), 0) << zt4test::logDump();
    Model read(0xC3), expected(0xC3);
    zt4test::setTaggedModel(expected, 5);
    ASSERT_EQ(c.read(read.connectors), 0);
    EXPECT_TRUE(read == expected);
}

TEST_P(CalibrationWriter, ModelFileHasTheLinesInFileOrder) {
    const KindCase& c = GetParam();
    Model model(0);
    zt4test::setTaggedModel(model, 2);
    model.connectors[0].channels[0].CalVnom = 230.0f;
    model.connectors[5].channels[2].CalPhaseC = 0xffffffffu;
    ASSERT_EQ(writeConfigInitCalibration(model.connectors, c.kind), 0);
    const std::string text = readFile(c.file);
    EXPECT_EQ(text, zt4test::fileWrittenFrom(model));
    EXPECT_NE(text.find("Connect_1_Cnl_1_CalVnom=230.00\n"), std::string::npos);
    EXPECT_NE(text.find("Connect_6_Cnl_3_CalPhaseC=0xffffffff\n"), std::string::npos);
    size_t lines = 0;
    for (char ch : text) lines += ch == '\n';
    EXPECT_EQ(lines, 282u);
    // The staged copy stays beside the target; the scratch file is gone.
    EXPECT_EQ(readFile(std::string(c.file) + ".new"), text);
    EXPECT_FALSE(exists("/home/nvram/zt4calibration.tmp"));
    const std::string command = "cp " + path(c.file) + ".new " + path(c.file);
    EXPECT_TRUE(zt4test::logged("[writeConfigInitCalibration]: tmp calibration configuration file renamed successfully", LOG_INFO));
    EXPECT_TRUE(zt4test::logged("[writeConfigInitCalibration]: Update configuration file", LOG_INFO));
    EXPECT_TRUE(zt4test::logged("[writeConfigInitCalibration].4: system " + command + " returns 0", LOG_INFO))
        << zt4test::logDump();
}

TEST_P(CalibrationWriter, JsonFormWrittenBackGivesTheSamePhaseChannels) {
    const KindCase& c = GetParam();
    Model model(0);
    zt4test::setTaggedModel(model, 4);
    ASSERT_EQ(writeConfigInitCalibration(model.connectors, c.kind), 0);
    zt4::JsonRef object(json_object());
    ASSERT_EQ(readConfigCalibration(object.get(), c.kind), 0);
    removeFile(c.file);
    ASSERT_EQ(writeConfigCalibration(object.get(), c.kind), 0) << zt4test::logDump();
    Model read(0), expected(0);
    zt4test::setTaggedModel(expected, 4);
    for (auto& connector : expected.connectors) connector.channels[3] = ChannelConfig{};  // not in JSON
    ASSERT_EQ(c.read(read.connectors), 0);
    EXPECT_TRUE(read == expected);
    EXPECT_FALSE(exists("/home/nvram/zt4calibration.new"));
    const std::string command = "cp '" + path(c.file) + ".new' '" + path(c.file) + "'";
    EXPECT_TRUE(zt4test::logged("[writeConfigCalibration]: New calibration configuration file renamed successfully", LOG_INFO));
    EXPECT_TRUE(zt4test::logged("[writeConfigCalibration] Update configuration file", LOG_INFO));
    EXPECT_TRUE(zt4test::logged("[writeConfigCalibration]: system '" + command + "' return 0", LOG_INFO))
        << zt4test::logDump();
}

INSTANTIATE_TEST_SUITE_P(Kinds, CalibrationWriter, ::testing::ValuesIn(kKinds), caseName<KindCase>);

// --- From JSON: the lines written ----------------------------------------------------------------

struct JsonCase {
    const char* name;
    const char* document;
    int result;
    const char* file;  // the target afterwards (it holds "old\n" before)
    const char* line;  // a line that must be logged ("" none)
};

class CalibrationJsonWriter : public zt4test::DeviceTest, public ::testing::WithParamInterface<JsonCase> {};

TEST_P(CalibrationJsonWriter, WritesMembersAsTheyCome) {
    const JsonCase& c = GetParam();
    writeFile("/home/nvram/zt4calibration.cfg", "old\n");
    zt4::JsonRef document(zt4test::parse(c.document));
    EXPECT_EQ(writeConfigCalibration(document.get(), 0), c.result);
    EXPECT_EQ(readFile("/home/nvram/zt4calibration.cfg"), c.file);
    if (*c.line) {
        EXPECT_TRUE(zt4test::logged(c.line)) << zt4test::logDump();
    }
}

const JsonCase kJsonCases[] = {
    {"MemberOrderAndForms",
     R"({"Connector":[{"Cnl":[{"CalPref":16,"CalVnom":230.0,"Name":"x","CalIOffset":-1,"On":null}]}]})", 0,
     "Connect_1_Cnl_1_CalPref=0x00000010\nConnect_1_Cnl_1_CalVnom=230.00\nConnect_1_Cnl_1_CalIOffset=0xffffffff\n", ""},
    {"UnknownKeysAreWritten", R"({"Connector":[{"Cnl":[{"Gain":1}]}]})", 0, "Connect_1_Cnl_1_Gain=0x00000001\n", ""},
    {"NumberedFromOne", R"({"Connector":[{"Cnl":[]},{"Cnl":[{},{},{"CalInom":5.004}]}]})", 0,
     "Connect_2_Cnl_3_CalInom=5.00\n", ""},
    {"EmptyConnectorArray", R"({"Connector":[]})", 0, "", ""},
    {"NoConnector", R"({"Other":[]})", 1, "old\n", "[writeConfigCalibration] Connector is NULL"},
    {"ConnectorNotArray", R"({"Connector":{}})", 1, "old\n", "[writeConfigCalibration] Connector is not an array"},
    {"ConnectorElementNotObject", R"({"Connector":[{"Cnl":[]},3]})", 1, "old\n", "[writeConfigCalibration] Connector 1 is not an object"},
    {"NoCnl", R"({"Connector":[{}]})", 1, "old\n", "[writeConfigCalibration] elmt Cnl is NULL"},
    {"CnlNotArray", R"({"Connector":[{"Cnl":{}}]})", 1, "old\n", "[writeConfigCalibration] Cnl is not an array"},
    {"CnlElementNotObject", R"({"Connector":[{"Cnl":[{},[]]}]})", 1, "old\n", "[writeConfigCalibration] Cnl 1 is not an object"},
};

INSTANTIATE_TEST_SUITE_P(Documents, CalibrationJsonWriter, ::testing::ValuesIn(kJsonCases), caseName<JsonCase>);

TEST_F(CalibrationJsonWriter, TracesEachMemberAboveLevelZero) {
    zt4::JsonRef document(zt4test::parse(R"({"Connector":[{"Cnl":[{"CalPref":16,"CalVnom":230.5}]}]})"));
    debug_level = 1;
    ASSERT_EQ(writeConfigCalibration(document.get(), 0), 0);
    EXPECT_TRUE(zt4test::logged("[writeConfigCalibration] buf 'Connect_1_Cnl_1_CalPref' | value 16.000000", LOG_INFO));
    EXPECT_TRUE(zt4test::logged("[writeConfigCalibration] buf 'Connect_1_Cnl_1_CalVnom' | value 230.500000", LOG_INFO));
    debug_level = 0;
    zt4test::clearLog();
    ASSERT_EQ(writeConfigCalibration(document.get(), 0), 0);
    EXPECT_EQ(zt4test::loggedCount("buf 'Connect_"), 0);
}

class CalibrationWriterFailure : public zt4test::DeviceTest {};

TEST_F(CalibrationWriterFailure, NullArguments) {
    Model model;
    EXPECT_EQ(writeConfigInitCalibration(nullptr, 0), 1);
    EXPECT_TRUE(zt4test::logged("error. [writeConfigInitCalibration].1: Cnt is NULL", LOG_ERR));
    EXPECT_EQ(writeConfigCalibration(nullptr, 0), 1);
    EXPECT_TRUE(zt4test::logged("error: [writeConfigCalibration] root JSON object is NULL", LOG_ERR));
    EXPECT_EQ(readConfigCalibration(nullptr, 0), 1);
    EXPECT_TRUE(zt4test::logged("error. [readConfigCalibration] Obj JSON object is NULL", LOG_ERR));
}

TEST_F(CalibrationWriterFailure, NoDirectoryToWriteIn) {
    zt4test::removeTree(path("/home/nvram"));
    Model model;
    EXPECT_EQ(writeConfigInitCalibration(model.connectors, 0), 1);
    EXPECT_TRUE(zt4test::logged("error.[writeConfigInitCalibration].2: FAILED to open tmp calibration configuration file. No such file or directory", LOG_ERR))
        << zt4test::logDump();
    zt4::JsonRef document(zt4test::parse(R"({"Connector":[]})"));
    EXPECT_EQ(writeConfigCalibration(document.get(), 0), 1);
    EXPECT_TRUE(zt4test::logged("error.[writeConfigCalibration]: FAILED to open new calibration configuration file. No such file or directory", LOG_ERR));
}

TEST_F(CalibrationWriterFailure, RenameFailureLeavesTheTargetAlone) {
    writeFile("/home/nvram/zt4calibration_threephase.cfg", "old\n");
    ASSERT_EQ(mkdir(path("/home/nvram/zt4calibration_threephase.cfg.new").c_str(), 0755), 0);
    writeFile("/home/nvram/zt4calibration_threephase.cfg.new/keep", "x");
    Model model;
    EXPECT_EQ(writeConfigInitCalibration(model.connectors, 1), 1);
    EXPECT_TRUE(zt4test::logged("error.[writeConfigInitCalibration]: FAILED to rename the tmp calibration configuration file", LOG_INFO));
    zt4::JsonRef document(zt4test::parse(R"({"Connector":[]})"));
    EXPECT_EQ(writeConfigCalibration(document.get(), 1), 1);
    EXPECT_TRUE(zt4test::logged("error.[writeConfigCalibration]: FAILED to rename the new calibration configuration file", LOG_INFO));
    EXPECT_EQ(readFile("/home/nvram/zt4calibration_threephase.cfg"), "old\n");
}

TEST_F(CalibrationWriterFailure, FailedCopyReportsItsStatus) {
    // The target is a link into a directory that does not exist: cp fails with exit status 1.
    ASSERT_EQ(symlink((root() + "/missing/dir/file").c_str(), path("/home/nvram/zt4calibration.cfg").c_str()), 0);
    Model model;
    const std::string target = path("/home/nvram/zt4calibration.cfg");
    EXPECT_EQ(writeConfigInitCalibration(model.connectors, 0), 256);
    EXPECT_TRUE(zt4test::logged("[writeConfigInitCalibration].4: system cp " + target + ".new " + target + " returns 256", LOG_INFO))
        << zt4test::logDump();
    zt4::JsonRef document(zt4test::parse(R"({"Connector":[]})"));
    EXPECT_EQ(writeConfigCalibration(document.get(), 0), 256);
    EXPECT_TRUE(zt4test::logged("[writeConfigCalibration]: system 'cp '" + target + ".new' '" + target + "'' return 256", LOG_INFO));
}

TEST_F(CalibrationWriterFailure, MissingCopyCommandGivesTheShellsStatus) {
    // No cp on the search path: the status a shell gives for a command it cannot find (127).
    const std::string savedPath = std::getenv("PATH") ? std::getenv("PATH") : "";
    setenv("PATH", path("/var/tmp").c_str(), 1);
    Model model;
    const int fromModel = writeConfigInitCalibration(model.connectors, 0);
    zt4::JsonRef document(zt4test::parse(R"({"Connector":[]})"));
    const int fromJson = writeConfigCalibration(document.get(), 0);
    setenv("PATH", savedPath.c_str(), 1);
    const std::string target = path("/home/nvram/zt4calibration.cfg");
    EXPECT_EQ(fromModel, 32512);
    EXPECT_TRUE(zt4test::logged("[writeConfigInitCalibration].4: system cp " + target + ".new " + target +
                                " returns 32512", LOG_INFO)) << zt4test::logDump();
    EXPECT_EQ(fromJson, 32512);
    EXPECT_TRUE(zt4test::logged("[writeConfigCalibration]: system 'cp '" + target + ".new' '" + target +
                                "'' return 32512", LOG_INFO));
    EXPECT_FALSE(exists("/home/nvram/zt4calibration.cfg"));
}

TEST_F(CalibrationWriterFailure, RootWithBlanksAndShellCharacters) {
    const std::string odd = root() + "/a b;$(touch pwned)'q\"";
    ASSERT_EQ(mkdir(odd.c_str(), 0755), 0);
    ASSERT_EQ(mkdir((odd + "/home").c_str(), 0755), 0);
    ASSERT_EQ(mkdir((odd + "/home/nvram").c_str(), 0755), 0);
    setenv("ZT4_ROOT", odd.c_str(), 1);
    Model model(0);
    zt4test::setTaggedModel(model, 6);
    EXPECT_EQ(writeConfigInitCalibration(model.connectors, 2), 0);
    zt4::JsonRef document(zt4test::parse(R"({"Connector":[{"Cnl":[{"CalPref":1}]}]})"));
    EXPECT_EQ(writeConfigCalibration(document.get(), 1), 0);
    setenv("ZT4_ROOT", root().c_str(), 1);
    EXPECT_EQ(slurp(odd + "/home/nvram/zt4calibration_monophase.cfg"), zt4test::fileWrittenFrom(model));
    EXPECT_EQ(slurp(odd + "/home/nvram/zt4calibration_threephase.cfg"), "Connect_1_Cnl_1_CalPref=0x00000001\n");
    EXPECT_FALSE(exists("/home/nvram/pwned"));
    EXPECT_FALSE(exists("/pwned"));
}

// --- The JSON form -------------------------------------------------------------------------------

class CalibrationJsonForm : public zt4test::DeviceTest {};

TEST_F(CalibrationJsonForm, SixConnectorsOfThreeChannelsInKeyOrder) {
    writeFile("/home/nvram/zt4calibration_monophase.cfg",
              "Connect_6_Cnl_3_CalActivePower=0x00000001\nConnect_6_Cnl_3_CalCurrent=0x00000002\n"
              "Connect_6_Cnl_3_CalVoltage=0x00000003\nConnect_6_Cnl_3_CalIOffset=0xffffffff\n"
              "Connect_6_Cnl_3_CalVOffset=0x00000005\nConnect_6_Cnl_3_CalVAGain=0x00000006\n"
              "Connect_6_Cnl_3_CalWOffset=0x00000007\nConnect_6_Cnl_3_CalVARGain=0x00000008\n"
              "Connect_6_Cnl_3_CalVAROffset=0x00000009\nConnect_6_Cnl_3_CalPhaseA=0x0000000a\n"
              "Connect_6_Cnl_3_CalPhaseB=0x0000000b\nConnect_6_Cnl_3_CalPhaseC=0x0000000c\n"
              "Connect_6_Cnl_3_CalVnom=230.50\nConnect_6_Cnl_3_CalInom=5.25\n"
              "Connect_6_Cnl_3_CalPref=0x00000e10\nConnect_6_Cnl_4_CalCurrent=0x00000001\n");
    zt4::JsonRef object(zt4test::parse(R"({"Keep":1})"));
    ASSERT_EQ(readConfigCalibration(object.get(), 2), 0);
    json_t* connectors = json_object_get(object.get(), "Connector");
    ASSERT_EQ(json_array_size(connectors), 6u);
    for (size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(json_array_size(json_object_get(json_array_get(connectors, i), "Cnl")), 3u) << i;
    }
    auto channelText = [&](size_t connector, size_t channel) {
        json_t* value = json_array_get(json_object_get(json_array_get(connectors, connector), "Cnl"), channel);
        char* text = json_dumps(value, JSON_COMPACT);
        std::string result = text ? text : "";
        free(text);
        return result;
    };
    EXPECT_EQ(channelText(5, 2),
              R"({"CalActivePower":1,"CalCurrent":2,"CalVoltage":3,"CalIOffset":4294967295,"CalVOffset":5,)"
              R"("CalVAGain":6,"CalWOffset":7,"CalVARGain":8,"CalVAROffset":9,"CalPhaseA":10,"CalPhaseB":11,)"
              R"("CalPhaseC":12,"CalVnom":230.5,"CalInom":5.25,"CalPref":3600})");
    EXPECT_EQ(channelText(0, 0),
              R"({"CalActivePower":0,"CalCurrent":0,"CalVoltage":0,"CalIOffset":0,"CalVOffset":0,)"
              R"("CalVAGain":0,"CalWOffset":0,"CalVARGain":0,"CalVAROffset":0,"CalPhaseA":0,"CalPhaseB":0,)"
              R"("CalPhaseC":0,"CalVnom":0.0,"CalInom":0.0,"CalPref":0})");
    EXPECT_EQ(json_integer_value(json_object_get(object.get(), "Keep")), 1);
}

struct MissingCase {
    int kind;
    const char* line;
};

class CalibrationJsonFormMissing : public zt4test::DeviceTest, public ::testing::WithParamInterface<MissingCase> {};

TEST_P(CalibrationJsonFormMissing, FailsAndNamesTheFile) {
    zt4::JsonRef object(json_object());
    EXPECT_EQ(readConfigCalibration(object.get(), GetParam().kind), 1);
    EXPECT_TRUE(zt4test::logged(GetParam().line, LOG_ERR)) << zt4test::logDump();
    EXPECT_EQ(json_object_size(object.get()), 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, CalibrationJsonFormMissing,
    ::testing::Values(MissingCase{2, "error.[readConfigCalibration].1 Can't read Calibration Monophase Connector parameter"},
                      MissingCase{1, "error.[readConfigCalibration].2 Can't read Calibration Threephase Connector parameter"},
                      MissingCase{0, "error.[readConfigCalibration].3 Can't read Calibration Connector parameter"},
                      MissingCase{9, "error.[readConfigCalibration].3 Can't read Calibration Connector parameter"}));

// --- The dump ------------------------------------------------------------------------------------

class CalibrationDump : public zt4test::DeviceTest {};

TEST_F(CalibrationDump, OneAlignedLinePerCoefficient) {
    Model model(0);
    ChannelConfig& first = model.connectors[0].channels[0];
    first.CalActivePower = 16;
    first.CalIOffset = 0xffffffffu;
    first.CalVnom = 230.75f;
    first.CalInom = -5.5f;
    first.CalPhaseB = 0xfffffffeu;
    model.connectors[5].channels[2].CalPref = 3600;
    model.connectors[2].channels[3].CalIOffset = 0xfffffff0u;
    model.connectors[2].channels[3].CalVoltage = 77;  // not a neutral coefficient: not shown
    DisplayZT4Calibration(model.connectors);
    const auto& log = zt4test::capturedLog();
    ASSERT_EQ(log.size(), 1u + 6u * (3u * 15u + 2u));
    EXPECT_EQ(log[0].text, "Calibration:");
    const std::vector<std::string> firstChannel = {
        "CalPower[0][0]     : (0x00000010) 16",     "CalCurrent[0][0]   : (0x00000000) 0",
        "CalVoltage[0][0]   : (0x00000000) 0",      "CalIOffset[0][0]   : (0xffffffff) -1",
        "CalVOffset[0][0]   : (0x00000000) 0",      "CalVAGain[0][0]    : (0x00000000) 0",
        "CalWOffset[0][0]   : (0x00000000) 0",      "CalVARGain[0][0]   : (0x00000000) 0",
        "CalVAROffset[0][0] : (0x00000000) 0",      "CalPhaseA[0][0]    : (0x00000000) 0",
        "CalPhaseB[0][0]    : (0xfffffffe) 4294967294", "CalPhaseC[0][0]    : (0x00000000) 0",
        "CalVnom[0][0]      : (0x000000e6) 230.75", "CalInom[0][0]      : (0xfffffffb) -5.50",
        "CalPref[0][0]      : (0x00000000) 0"};
    for (size_t i = 0; i < firstChannel.size(); ++i) EXPECT_EQ(log[1 + i].text, firstChannel[i]) << i;
    EXPECT_EQ(log[1 + 3 * 15].text, "CalCurrent[0][3]   : (0x00000000) 0");
    EXPECT_EQ(log[1 + 3 * 15 + 1].text, "CalIOffset[0][3]   : (0x00000000) 0");
    EXPECT_EQ(log[1 + 2 * 47 + 3 * 15 + 1].text, "CalIOffset[2][3]   : (0xfffffff0) -16");
    EXPECT_EQ(log.back().text, "CalIOffset[5][3]   : (0x00000000) 0");
    EXPECT_EQ(log[log.size() - 3].text, "CalPref[5][2]      : (0x00000e10) 3600");
    for (const auto& entry : log) EXPECT_EQ(entry.priority, LOG_INFO);
}

}  // namespace
