#include <gtest/gtest.h>

#include <string>

#include "support/test_name.h"
#include "text_escape.h"

// Bytes to what a terminal and a UTF-8 output can hold.

namespace {

struct TextRow {
    const char *name;
    std::string bytes;
    std::string utf8;     // validUtf8
    std::string terminal; // forTerminal
};

const std::string kReplacement = "\xEF\xBF\xBD";
const std::string kFourReplaced = kReplacement + kReplacement + kReplacement + kReplacement;

const TextRow kRows[] = {
    {"plain and accented", "OS-4C57 \xC3\xA9", "OS-4C57 \xC3\xA9", "OS-4C57 \xC3\xA9"},
    {"cut inside a character", "a\xC3", "a" + kReplacement, "a" + kReplacement},
    {"overlong slash", "\xC0\xAF", kReplacement + kReplacement, kReplacement + kReplacement},
    {"surrogate", "\xED\xA0\x80", kReplacement + kReplacement + kReplacement,
     kReplacement + kReplacement + kReplacement},
    {"above the last code point", "\xF4\x90\x80\x80", kFourReplaced, kFourReplaced},
    {"four bytes", "\xF0\x9F\x94\x8B", "\xF0\x9F\x94\x8B", "\xF0\x9F\x94\x8B"},
    {"title escape", "\x1b]0;owned\x07", "\x1b]0;owned\x07", "\\x1b]0;owned\\x07"},
    {"c1 control and delete",
     "\xC2\x9B"
     "2J\x7f",
     "\xC2\x9B"
     "2J\x7f",
     "\\xc2\\x9b2J\\x7f"},
    {"line break and tab stay", "a\n\tb", "a\n\tb", "a\n\tb"},
};

class TextEscape : public ::testing::TestWithParam<TextRow> {};

TEST_P(TextEscape, GivesWhatTheOutputCanHold) {
    const TextRow &row = GetParam();
    EXPECT_EQ(text_escape::validUtf8(row.bytes), row.utf8);
    EXPECT_EQ(text_escape::forTerminal(row.bytes), row.terminal);
    EXPECT_NO_THROW(text_escape::json(nlohmann::json(row.bytes)));
}

INSTANTIATE_TEST_SUITE_P(Rows, TextEscape, ::testing::ValuesIn(kRows), NameBy<&TextRow::name>());

} // namespace
