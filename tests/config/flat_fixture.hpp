// Shared by the flat-file, system-document and upgrade tests: the example device's files, the
// expected files kept under tests/config/data, and what a writer puts on a stream.
#pragma once

#include <syslog.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "support/harness.hpp"

namespace zt4test {

inline std::string slurp(const std::string& hostPath) {
    std::ifstream in(hostPath, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}
// A file of the example device ("/home/nvram/zt4system.json"...).
inline std::string exampleFile(const std::string& devicePath) { return slurp(ZT4_EXAMPLE_DEVICE + devicePath); }
// An expected file of tests/config/data.
inline std::string dataFile(const std::string& name) {
    return slurp(std::string(ZT4_EXAMPLE_DEVICE) + "/../../tests/config/data/" + name);
}

// What `write` puts on a stream, and its result.
template <class Write>
std::string linesOf(Write write, int& result) {
    char* text = nullptr;
    size_t size = 0;
    FILE* stream = open_memstream(&text, &size);
    result = write(stream);
    std::fclose(stream);
    std::string lines(text, size);
    std::free(text);
    return lines;
}

// Values of JSON text compared compactly; "(null)" for none. Releases `value`.
inline std::string taken(json_t* value) {
    std::string text = compact(value);
    json_decref(value);
    return text;
}

// The rows of a table under tests/config/data (a JSON array of objects, each with its "name"),
// kept for the whole run.
inline std::vector<const json_t*> dataRows(const std::string& name) {
    json_t* table = json_loads(dataFile(name).c_str(), 0, nullptr);
    std::vector<const json_t*> rows;
    for (size_t i = 0; i < json_array_size(table); ++i) rows.push_back(json_array_get(table, i));
    return rows;
}
inline std::string rowName(const ::testing::TestParamInfo<const json_t*>& info) {
    return json_string_value(json_object_get(info.param, "name"));
}
// A text member of a row, null when absent; a JSON member as compact text, "(null)" when absent.
inline const char* text(const json_t* row, const char* key) { return json_string_value(json_object_get(row, key)); }
inline std::string member(const json_t* row, const char* key) { return compact(json_object_get(row, key)); }
inline int number(const json_t* row, const char* key) { return static_cast<int>(json_integer_value(json_object_get(row, key))); }
// Every line of the row's array `key` was logged (at `priority`).
inline void expectLogged(const json_t* row, const char* key, int priority) {
    const json_t* lines = json_object_get(row, key);
    for (size_t i = 0; i < json_array_size(lines); ++i) {
        const char* line = json_string_value(json_array_get(lines, i));
        EXPECT_TRUE(logged(line, priority)) << line << "\n" << logDump();
    }
}

}  // namespace zt4test
