// The flat parameter file's writers: for each stored section, the exact lines that the daemons
// read, the result, and the lines logged (each written line is also logged at level 6).
#include <map>

#include "config/flat_fixture.hpp"
#include "zt4config/export.h"

extern int debug_level;

namespace {

using zt4test::text;

#define W(name) {#name, name}
const std::map<std::string, int (*)(FILE*)> kWriters = {
    W(setParameterConfigWeb), W(setParameterConfigRadio), W(setParameterConfigWiFi), W(setParameterConfigEthernet), W(setParameterConfigModbus),
    W(setParameterConfigBACnet), W(setParameterConfigConnector), W(setParameterSystemDevice), W(setParameterSystemWeb), W(setParameterSystemRadio),
    W(setParameterSystemWiFi), W(setParameterSystemEthernet), W(setParameterSystemModbus), W(setParameterSystemBACnet), W(setParameterSystemConnector),
    W(setParameterSystemExpert), W(setParameterFactorySystemDevice), W(setParameterUserConfigModbusSyntaxVersion1),
    W(setParameterSystemWebSyntaxVersion1), W(setParameterFactorySystemDeviceSyntaxVersion1)};
const std::map<std::string, int (*)(FILE*, const char*)> kSectionWriters = {W(setParameterConfig), W(setParameterSystem), W(setParameterFactorySystem)};
const std::map<std::string, int (*)(FILE*, const char*, json_t*)> kObjectWriters = {
    W(setParameterConfigJSON), W(setParameterSystemJSON), W(setParameterFactoryJSON)};

// The row's writer on `stream`: given a "section", or a "prefix" and an "object", or neither.
int write(const json_t* row, FILE* stream) {
    const char* writer = text(row, "writer");
    if (json_object_get(row, "prefix") != nullptr) return kObjectWriters.at(writer)(stream, text(row, "prefix"), json_object_get(row, "object"));
    if (json_object_get(row, "section") != nullptr) return kSectionWriters.at(writer)(stream, text(row, "section"));
    return kWriters.at(writer)(stream);
}

// Rows of data/flat_writers.json: the "document" holding the top-level "members" (null: no file),
// the writer (on no stream when "nullStream"), the lines written, the result, a line "logged" at
// "priority" and the number of lines logged ("logCount") at the "debugLevel".
class FlatWriter : public zt4test::DeviceTest, public ::testing::WithParamInterface<const json_t*> {};

TEST_P(FlatWriter, WritesTheLines) {
    const json_t* row = GetParam();
    const std::map<std::string, const char*> paths = {
        {"user", "/home/nvram/zt4config.json"}, {"system", "/home/nvram/zt4system.json"}, {"factory", "/etc/zt4system_factory.json"}};
    for (const auto& entry : paths) writeFile(entry.second, R"({"Syntax": {"Version": 1}})");
    const char* path = paths.at(text(row, "document"));
    if (json_is_object(json_object_get(row, "members"))) {
        json_t* document = json_pack("{s{si}}", "Syntax", "Version", 1);
        json_object_update(document, json_object_get(row, "members"));
        char* dumped = json_dumps(document, JSON_PRESERVE_ORDER);
        writeFile(path, dumped);
        std::free(dumped);
        json_decref(document);
    } else {
        removeFile(path);
    }
    zt4test::clearLog();
    debug_level = zt4test::number(row, "debugLevel");
    static const json_t* current = nullptr;
    current = row;
    int result = 7;
    std::string lines;
    if (json_is_true(json_object_get(row, "nullStream"))) result = write(row, nullptr);
    else lines = zt4test::linesOf([](FILE* stream) { return write(current, stream); }, result);
    EXPECT_EQ(lines, text(row, "lines"));
    EXPECT_EQ(result, zt4test::number(row, "result"));
    if (text(row, "logged") != nullptr) {
        EXPECT_TRUE(zt4test::logged(text(row, "logged"), zt4test::number(row, "priority"))) << zt4test::logDump();
    }
    if (json_object_get(row, "logCount") != nullptr) {
        EXPECT_EQ(zt4test::capturedLog().size(), static_cast<size_t>(zt4test::number(row, "logCount"))) << zt4test::logDump();
    }
}

INSTANTIATE_TEST_SUITE_P(Writers, FlatWriter, ::testing::ValuesIn(zt4test::dataRows("flat_writers.json")), zt4test::rowName);

}  // namespace
