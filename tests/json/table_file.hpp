// Rows of expected values kept in a text file next to the tests: one row a line, fields separated
// by tabs, "#" lines and blank lines skipped. "-" stands for an absent value.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace zt4test {

using Row = std::vector<std::string>;

// The rows of tests/<folder>/data/<name>; fails the test when there are none.
inline std::vector<Row> tableFile(const std::string& folder, const std::string& name) {
    std::ifstream in(std::string(ZT4_EXAMPLE_DEVICE) + "/../../tests/" + folder + "/data/" + name);
    std::vector<Row> rows;
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::stringstream fields(line);
        rows.emplace_back();
        for (std::string field; std::getline(fields, field, '\t');) rows.back().push_back(field);
        if (line.back() == '\t') rows.back().emplace_back();
    }
    EXPECT_FALSE(rows.empty()) << name;
    return rows;
}

inline const char* orNull(const std::string& field) { return field == "-" ? nullptr : field.c_str(); }

}  // namespace zt4test
