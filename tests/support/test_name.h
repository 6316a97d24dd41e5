#pragma once

#include <cctype>
#include <string>

#include <gtest/gtest.h>

// A test name from a row's words, so that a run shows the row and the name
// stays the same between builds: "stop at the start" gives StopAtTheStart.
inline std::string testName(const char *words) {
    std::string name;
    bool wordStart = true;
    for (const char *c = words == nullptr ? "none" : words; *c != '\0'; ++c) {
        const auto byte = static_cast<unsigned char>(*c);
        if (std::isalnum(byte) == 0) {
            wordStart = true;
            continue;
        }
        name += static_cast<char>(wordStart ? std::toupper(byte) : byte);
        wordStart = false;
    }
    // A long row keeps its start and its end, where rows tell themselves apart.
    if (name.size() > 64) name = name.substr(0, 40) + "_" + name.substr(name.size() - 23);
    return name.empty() ? "Empty" : name;
}
inline std::string testName(const std::string &words) {
    return testName(words.c_str());
}

// Names each row of a table by one of its text fields.
template <auto field> struct NameBy {
    template <typename Row> std::string operator()(const testing::TestParamInfo<Row> &info) const {
        return testName(info.param.*field);
    }
};
