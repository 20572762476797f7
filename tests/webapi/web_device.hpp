// A test device made from the repository's example device, for the web documents' tests.
#pragma once

#include <jansson.h>

#include <filesystem>
#include <string>

#include "support/harness.hpp"

namespace zt4test {

constexpr const char* kUserFile = "/home/nvram/zt4config.json";

class WebDevice : public DeviceTest {
protected:
    void SetUp() override {
        DeviceTest::SetUp();
        namespace fs = std::filesystem;
        fs::copy(ZT4_EXAMPLE_DEVICE, root(), fs::copy_options::recursive | fs::copy_options::overwrite_existing);
        clearLog();
    }
    // Replaces member `section` of the stored user document by the JSON text `value`.
    void storeSection(const char* section, const char* value) {
        json_t* document = parse(readFile(kUserFile).c_str());
        json_object_set_new(document, section, parse(value));
        storeDocument(document);
        json_decref(document);
    }
    void storeDocument(json_t* document) {
        char* text = json_dumps(document, JSON_INDENT(17) | JSON_PRESERVE_ORDER | JSON_REAL_PRECISION(17));
        writeFile(kUserFile, text);
        free(text);
    }
    // Member `section` of the stored user document (new reference, or null).
    json_t* storedSection(const char* section) {
        json_t* document = parse(readFile(kUserFile).c_str());
        json_t* value = json_incref(json_object_get(document, section));
        json_decref(document);
        return value;
    }
};

// Compact text of a value the caller owns, released ("null" for null).
inline std::string compactOwned(json_t* value) {
    if (value == nullptr) return "null";
    std::string text = compact(value);
    json_decref(value);
    return text;
}

// Names parameterised cases by their rows' `name`.
struct RowName {
    template <class Row>
    std::string operator()(const ::testing::TestParamInfo<Row>& row) const { return row.param.name; }
};

// A JSON value of any kind from its text (the caller owns it).
inline json_t* parseValue(const char* text) {
    json_t* value = json_loads(text, JSON_DECODE_ANY, nullptr);
    EXPECT_NE(value, nullptr) << text;
    return value;
}

}  // namespace zt4test
