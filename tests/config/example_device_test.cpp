// The example device tree (examples/device) is what users try the tool on and what image
// builders start from: its documents must load the way the library loads them and be written
// the way the library writes them, its calibration files must be in the file format, and the
// tool must run on it (natively and, in a cross build, through ZT4_CLI's emulator).
#include <sys/stat.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "common/json_ref.hpp"
#include "support/cli.hpp"
#include "support/harness.hpp"
#include "zt4config/calibration.h"

namespace {

const std::string kDevice = ZT4_EXAMPLE_DEVICE;

std::string slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

// --- JSON documents --------------------------------------------------------------------------

class ExampleDocument : public ::testing::TestWithParam<const char*> {};

TEST_P(ExampleDocument, LoadsStrictlyInSyntaxVersion1AndIsWrittenLikeTheLibraryWritesIt) {
    const std::string path = kDevice + GetParam();
    const std::string text = slurp(path);
    ASSERT_FALSE(text.empty()) << path;

    json_error_t error;
    zt4::JsonRef document(json_loadb(text.data(), text.size(),
                                     JSON_REJECT_DUPLICATES | JSON_ALLOW_NUL, &error));
    ASSERT_TRUE(document) << path << ":" << error.line << ": " << error.text;
    ASSERT_TRUE(json_is_object(document.get()));

    json_t* version = json_object_get(json_object_get(document.get(), "Syntax"), "Version");
    ASSERT_TRUE(json_is_integer(version)) << path;
    EXPECT_EQ(json_integer_value(version), 1) << path;

    // Insertion order, ASCII only, 17-space indentation, as the document writer dumps.
    char* dumped = json_dumps(document.get(), JSON_PRESERVE_ORDER | JSON_ENSURE_ASCII | JSON_INDENT(17));
    ASSERT_NE(dumped, nullptr);
    EXPECT_EQ(std::string(dumped), text) << path;
    std::free(dumped);

    // Booleans are the integers 0 and 1 everywhere.
    std::vector<json_t*> pending{document.get()};
    while (!pending.empty()) {
        json_t* value = pending.back();
        pending.pop_back();
        EXPECT_FALSE(json_is_boolean(value) || json_is_null(value)) << path;
        const char* key;
        json_t* member;
        size_t index;
        if (json_is_object(value)) {
            json_object_foreach(value, key, member) pending.push_back(member);
        } else if (json_is_array(value)) {
            json_array_foreach(value, index, member) pending.push_back(member);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Documents, ExampleDocument,
                         ::testing::Values("/etc/zt4config_factory.json",
                                           "/etc/zt4config_factory_v1.json",
                                           "/etc/zt4system_factory.json",
                                           "/home/nvram/zt4config.json",
                                           "/home/nvram/zt4system.json"));

// --- Calibration files -----------------------------------------------------------------------

// The lines of a file written from the model: per connector, 15 lines for each of the three
// phase channels, then the neutral channel's current gain and offset.
std::vector<std::string> expectedCalibrationNames() {
    static const char* const keys[] = {
        "CalCurrent", "CalIOffset", "CalVoltage", "CalVOffset", "CalActivePower",
        "CalWOffset", "CalVAGain", "CalVARGain", "CalVAROffset", "CalPhaseA",
        "CalPhaseB", "CalPhaseC", "CalVnom", "CalInom", "CalPref"};
    std::vector<std::string> names;
    for (int connector = 1; connector <= 6; ++connector) {
        std::string prefix = "Connect_" + std::to_string(connector) + "_Cnl_";
        for (int channel = 1; channel <= 3; ++channel) {
            for (const char* key : keys) names.push_back(prefix + std::to_string(channel) + "_" + key);
        }
        names.push_back(prefix + "4_CalCurrent");
        names.push_back(prefix + "4_CalIOffset");
    }
    return names;
}

bool isHexValue(const std::string& value) {
    if (value.size() != 10 || value.compare(0, 2, "0x") != 0) return false;
    return value.find_first_not_of("0123456789abcdef", 2) == std::string::npos;
}

bool isTwoDecimalValue(const std::string& value) {
    size_t dot = value.find('.');
    return dot != std::string::npos && dot > 0 && value.size() == dot + 3 &&
           value.find_first_not_of("0123456789.") == std::string::npos;
}

class ExampleCalibration : public ::testing::TestWithParam<const char*> {};

TEST_P(ExampleCalibration, HasTheLinesOfAFileWrittenFromTheModel) {
    const std::string path = kDevice + GetParam();
    std::ifstream in(path);
    ASSERT_TRUE(in.good()) << path;
    const std::vector<std::string> names = expectedCalibrationNames();
    std::string line;
    size_t number = 0;
    while (std::getline(in, line)) {
        ASSERT_LT(number, names.size()) << path << ": more lines than expected";
        const std::string& name = names[number++];
        ASSERT_LE(line.size(), 127u) << path << ":" << number;
        ASSERT_EQ(line.compare(0, name.size() + 1, name + "="), 0) << path << ":" << number << ": " << line;
        std::string value = line.substr(name.size() + 1);
        const bool isFloat = name.find("CalVnom") != std::string::npos ||
                             name.find("CalInom") != std::string::npos;
        EXPECT_TRUE(isFloat ? isTwoDecimalValue(value) : isHexValue(value))
            << path << ":" << number << ": " << line;
    }
    EXPECT_EQ(number, 282u) << path;
}

INSTANTIATE_TEST_SUITE_P(Files, ExampleCalibration,
                         ::testing::Values("/home/nvram/zt4calibration.cfg",
                                           "/home/nvram/zt4calibration_threephase.cfg",
                                           "/home/nvram/zt4calibration_monophase.cfg"));

// The claim above, checked against the library's writer: each example file, read into a model and
// written back from it, comes out byte for byte as it was.
struct CalibrationKindFile {
    const char* file;
    int kind;
    int (*read)(ConnectorConfig*);
};

class ExampleCalibrationRewrite : public zt4test::DeviceTest,
                                  public ::testing::WithParamInterface<CalibrationKindFile> {};

TEST_P(ExampleCalibrationRewrite, WriterReproducesTheFile) {
    const CalibrationKindFile& c = GetParam();
    const std::string original = slurp(kDevice + c.file);
    writeFile(c.file, original);
    ConnectorConfig connectors[ZT4_CONNECTOR_COUNT] = {};
    ASSERT_EQ(c.read(connectors), 0);
    removeFile(c.file);
    ASSERT_EQ(writeConfigInitCalibration(connectors, c.kind), 0) << zt4test::logDump();
    EXPECT_EQ(readFile(c.file), original);
}

INSTANTIATE_TEST_SUITE_P(
    Files, ExampleCalibrationRewrite,
    ::testing::Values(CalibrationKindFile{"/home/nvram/zt4calibration.cfg", 0, ReadZT4ConfigCalibrationStandard},
                      CalibrationKindFile{"/home/nvram/zt4calibration_threephase.cfg", 1, ReadZT4ConfigCalibrationThreephase},
                      CalibrationKindFile{"/home/nvram/zt4calibration_monophase.cfg", 2, ReadZT4ConfigCalibrationMonophase}));

// --- Device nodes ----------------------------------------------------------------------------

TEST(ExampleDevice, FramImageHoldsTheLayoutVersionByte) {
    const std::string image = slurp(kDevice + "/sys/bus/i2c/devices/0-0050/eeprom");
    ASSERT_EQ(image.size(), 8192u);
    const auto version = static_cast<signed char>(image[4096]);
    EXPECT_GE(version, 0);
    EXPECT_LE(version, 2);
}

TEST(ExampleDevice, LedsHaveTheClassAttributes) {
    int leds = 0;
    for (const auto& entry : std::filesystem::directory_iterator(kDevice + "/sys/class/leds")) {
        ++leds;
        const std::string dir = entry.path().string();
        EXPECT_LE(entry.path().filename().string().size(), 32u) << dir;
        EXPECT_EQ(slurp(dir + "/max_brightness"), "255\n") << dir;
        EXPECT_TRUE(std::filesystem::is_regular_file(dir + "/brightness")) << dir;
        EXPECT_TRUE(std::filesystem::is_regular_file(dir + "/trigger")) << dir;
    }
    EXPECT_GE(leds, 2);
}

// --- The tool on the example device --------------------------------------------------------

struct ToolCase {
    const char* arguments;
    int status;
    const char* output;  // a fragment of stdout and stderr together
};

// Names the cases after their command line in test names and failure messages.
void PrintTo(const ToolCase& c, std::ostream* out) { *out << c.arguments; }

class ExampleTool : public ::testing::TestWithParam<ToolCase> {};

TEST_P(ExampleTool, RunsThroughTheConfiguredCommand) {
    const char* cli = std::getenv("ZT4_CLI");
    ASSERT_NE(cli, nullptr) << "ZT4_CLI is set by CTest";
    const ToolCase& c = GetParam();
    std::string output;
    const std::string command = c.arguments;
    EXPECT_EQ(zt4test::runCli(kDevice, c.arguments, output), c.status) << command << "\n" << output;
    EXPECT_NE(output.find(c.output), std::string::npos) << command << "\n" << output;
}

INSTANTIATE_TEST_SUITE_P(Commands, ExampleTool, ::testing::Values(
    ToolCase{"help", 0, "usage: zt4config [--root DIR]"},
    ToolCase{"no-such-command", 2, "zt4config: unknown command no-such-command"},
    ToolCase{"--debug 12 help", 2, "--debug takes a number from 0 to 9"}));

}  // namespace
