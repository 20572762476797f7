// Shared by the flat-file, system-document and upgrade tests: the example device's files, the
// expected files and tables kept under tests/config/data, and what a writer puts on a stream.
#pragma once

#include <syslog.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "support/harness.hpp"

namespace zt4test {

// An expected file or a table kept under tests/config/data.
inline std::string dataFile(const std::string& name) {
    return readText(std::string(ZT4_EXAMPLE_DEVICE) + "/../../tests/config/data/" + name);
}

// What `write` puts on a stream and flushes, and its result.
template <class Write>
std::string linesOf(Write write, int& result) {
    char* text = nullptr;
    size_t size = 0;
    FILE* stream = open_memstream(&text, &size);
    result = write(stream);
    std::string lines(text != nullptr ? text : "", text != nullptr ? size : 0);  // what the writer flushed before returning
    std::fclose(stream);
    std::free(text);
    return lines;
}

// The compact text of `value` ("(null)" for none), released.
inline std::string taken(json_t* value) {
    std::string text = compact(value);
    json_decref(value);
    return text;
}

// The rows of a table under tests/config/data (a JSON array of objects, each with its "name").
inline std::vector<const json_t*> dataRows(const std::string& name) {
    // Kept for the whole run, released at exit.
    static std::vector<std::unique_ptr<json_t, void (*)(json_t*)>> tables;
    json_t* table = json_loads(dataFile(name).c_str(), 0, nullptr);
    tables.emplace_back(table, [](json_t* t) { json_decref(t); });
    std::vector<const json_t*> rows;
    for (size_t i = 0; i < json_array_size(table); ++i) rows.push_back(json_array_get(table, i));
    return rows;
}
inline std::string rowName(const ::testing::TestParamInfo<const json_t*>& info) { return json_string_value(json_object_get(info.param, "name")); }
// A row's text member (null when absent or null), a member as compact text, a number (0 when absent).
inline const char* text(const json_t* row, const char* key) { return json_string_value(json_object_get(row, key)); }
inline std::string member(const json_t* row, const char* key) { return compact(json_object_get(row, key)); }
inline int number(const json_t* row, const char* key) { return static_cast<int>(json_integer_value(json_object_get(row, key))); }
// Every line of the row's array `key` was logged at `priority`; "@" stands for the device root.
inline void expectLogged(const json_t* row, const char* key, int priority, const std::string& root = "") {
    const json_t* lines = json_object_get(row, key);
    for (size_t i = 0; i < json_array_size(lines); ++i) {
        std::string line = json_string_value(json_array_get(lines, i));
        if (line.find('@') != std::string::npos) line.replace(line.find('@'), 1, root);
        EXPECT_TRUE(logged(line, priority)) << line << "\n" << logDump();
    }
}

}  // namespace zt4test
