#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

/// Holds what the whole applet publishes against a file of tests/data, line by line.
///
/// After a wanted change, write the files anew and read the difference:
///     QUILLON_WRITE_DATA=1 build/release/tests/core_tests --gtest_filter='CheckedIn*' && git diff tests/data
inline void expectCheckedIn(const std::string& name, const std::string& text) {
    const std::string path = QUILLON_SOURCE "/tests/data/" + name;
    if (std::getenv("QUILLON_WRITE_DATA") != nullptr) {
        std::ofstream file(path, std::ios::binary | std::ios::trunc);
        file << text;
        ASSERT_TRUE(file.good()) << path;
    }
    const auto linesOf = [](const std::string& whole) {
        std::istringstream stream(whole);
        std::vector<std::string> lines;
        for (std::string line; std::getline(stream, line);) lines.push_back(line);
        return lines;
    };
    std::ifstream file(path, std::ios::binary);
    const std::string expected(std::istreambuf_iterator<char>(file), {});
    const std::vector<std::string> lines = linesOf(text);
    const std::vector<std::string> expectedLines = linesOf(expected);
    for (size_t i = 0; i < std::max(lines.size(), expectedLines.size()); ++i) {
        ASSERT_EQ(i < lines.size() ? lines[i] : "the end", i < expectedLines.size() ? expectedLines[i] : "the end")
            << name << ", line " << i + 1;
    }
    EXPECT_TRUE(text == expected) << name << ": the line ends differ";
}
