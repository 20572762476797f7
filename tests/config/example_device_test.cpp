// The example device tree (examples/device) is what users try the tool on and what image builders
// start from: its documents load in syntax version 1 and are written the way the library writes
// them, and its calibration files come back byte for byte from the library's writer.
#include "config/flat_fixture.hpp"
#include "zt4config.h"

namespace {

class ExampleDevice : public zt4test::DeviceTest {};

TEST_F(ExampleDevice, DocumentsAreWrittenTheWayTheLibraryWritesThem) {
    for (const char* file : {"/etc/zt4config_factory.json", "/etc/zt4config_factory_v1.json", "/etc/zt4system_factory.json",
                             "/home/nvram/zt4config.json", "/home/nvram/zt4system.json"}) {
        const std::string text = zt4test::exampleFile(file);
        json_t* document = json_loads(text.c_str(), JSON_REJECT_DUPLICATES, nullptr);
        EXPECT_EQ(zt4test::compact(json_object_get(document, "Syntax")), R"({"Version":1})") << file;
        ASSERT_EQ(writeJSONZT4ConfigFile(document), 0) << zt4test::logDump();
        EXPECT_EQ(readFile("/home/nvram/zt4config.json"), text) << file;
        json_decref(document);
    }
}

// Each calibration file, read into a model and written back from it, comes out as it was.
TEST_F(ExampleDevice, CalibrationFilesComeBackFromTheWriter) {
    const std::tuple<const char*, int, int (*)(ConnectorConfig*)> files[] = {
        {"/home/nvram/zt4calibration.cfg", 0, ReadZT4ConfigCalibrationStandard},
        {"/home/nvram/zt4calibration_threephase.cfg", 1, ReadZT4ConfigCalibrationThreephase},
        {"/home/nvram/zt4calibration_monophase.cfg", 2, ReadZT4ConfigCalibrationMonophase}};
    for (const auto& [file, kind, read] : files) {
        const std::string original = zt4test::exampleFile(file);
        writeFile(file, original);
        ConnectorConfig connectors[ZT4_CONNECTOR_COUNT] = {};
        ASSERT_EQ(read(connectors), 0) << file;
        removeFile(file);
        ASSERT_EQ(writeConfigInitCalibration(connectors, kind), 0) << zt4test::logDump();
        EXPECT_EQ(readFile(file), original);
    }
}

}  // namespace
