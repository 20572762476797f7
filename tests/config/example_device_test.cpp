// The example device tree (examples/device) is what users try the tool on and what image builders
// start from: its documents load in syntax version 1 and are written the way the library writes
// them, its calibration files come back byte for byte from the library's writer, and the tool runs
// on it (natively and, in a cross build, through ZT4_CLI's emulator).
#include "config/flat_fixture.hpp"
#include "common/json_ref.hpp"
#include "support/cli.hpp"
#include "zt4config.h"

namespace {

class ExampleDocument : public zt4test::DeviceTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(ExampleDocument, LoadsInSyntaxVersion1AndIsWrittenLikeTheLibraryWritesIt) {
    const std::string text = zt4test::exampleFile(GetParam());
    json_error_t error;
    zt4::JsonRef document(json_loadb(text.data(), text.size(), JSON_REJECT_DUPLICATES, &error));
    ASSERT_TRUE(json_is_object(document.get())) << GetParam() << ":" << error.line << ": " << error.text;
    EXPECT_EQ(zt4test::compact(json_object_get(document.get(), "Syntax")), R"({"Version":1})") << GetParam();
    // The library's own writer gives the same bytes.
    ASSERT_EQ(writeJSONZT4ConfigFile(document.get()), 0) << zt4test::logDump();
    EXPECT_EQ(readFile("/home/nvram/zt4config.json"), text) << GetParam();
}

INSTANTIATE_TEST_SUITE_P(Documents, ExampleDocument, ::testing::Values("/etc/zt4config_factory.json", "/etc/zt4config_factory_v1.json",
                                                                       "/etc/zt4system_factory.json", "/home/nvram/zt4config.json", "/home/nvram/zt4system.json"));

struct CalibrationKindFile {
    const char* file;
    int kind;
    int (*read)(ConnectorConfig*);
};

class ExampleCalibration : public zt4test::DeviceTest, public ::testing::WithParamInterface<CalibrationKindFile> {};

// Each example file, read into a model and written back from it, comes out as it was.
TEST_P(ExampleCalibration, WriterReproducesTheFile) {
    const CalibrationKindFile& c = GetParam();
    const std::string original = zt4test::exampleFile(c.file);
    writeFile(c.file, original);
    ConnectorConfig connectors[ZT4_CONNECTOR_COUNT] = {};
    ASSERT_EQ(c.read(connectors), 0);
    removeFile(c.file);
    ASSERT_EQ(writeConfigInitCalibration(connectors, c.kind), 0) << zt4test::logDump();
    EXPECT_EQ(readFile(c.file), original);
}

INSTANTIATE_TEST_SUITE_P(Files, ExampleCalibration, ::testing::Values(
    CalibrationKindFile{"/home/nvram/zt4calibration.cfg", 0, ReadZT4ConfigCalibrationStandard},
    CalibrationKindFile{"/home/nvram/zt4calibration_threephase.cfg", 1, ReadZT4ConfigCalibrationThreephase},
    CalibrationKindFile{"/home/nvram/zt4calibration_monophase.cfg", 2, ReadZT4ConfigCalibrationMonophase}));

TEST(ExampleTool, RunsThroughTheConfiguredCommand) {
    const std::tuple<const char*, int, const char*> cases[] = {
        {"help", 0, "usage: zt4config [--root DIR]"},
        {"no-such-command", 2, "zt4config: unknown command no-such-command"},
        {"--debug 12 help", 2, "--debug takes a number from 0 to 9"}};
    for (const auto& [arguments, status, fragment] : cases) {
        std::string output;
        EXPECT_EQ(zt4test::runCli(ZT4_EXAMPLE_DEVICE, arguments, output), status) << arguments << "\n" << output;
        EXPECT_NE(output.find(fragment), std::string::npos) << arguments << "\n" << output;
    }
}

}  // namespace
