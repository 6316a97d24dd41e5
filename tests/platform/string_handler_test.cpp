#include <gtest/gtest.h>

#include <bounded_crt.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "platform/string_handler.h"
#include "platform/win_string_handler_imp.h"
#include "support/time_zone.h"
#include "wide_text.h"

// One table per operation family; the rows are the limits and edges.
namespace {

using Strings = std::vector<std::string>;

StringHandler &text() {
    return *StringHandler::instance();
}

std::string trimmed(std::string s) {
    text().trim(s);
    return s;
}
std::string upper(std::string s) {
    text().toUpperCase(s);
    return s;
}
std::string lower(std::string s) {
    text().toLowerCase(s);
    return s;
}
// The destination is appended to, not cleared.
std::string withoutSpaces(const std::string &s) {
    std::string out = "<";
    text().removeSpaces(s, out);
    return out;
}
std::string printable(const std::string &s) {
    std::string out = "<";
    text().removeNonPrintable(s, out);
    return out;
}
std::string bytes(const char *s, size_t n) {
    return std::string(s, n);
}

// A buffer of 16 'X' bytes, so what a call leaves behind shows.
struct Buffer {
    char bytes[16];
    Buffer(const char *start = nullptr) {
        std::memset(bytes, 'X', sizeof(bytes));
        if (start != nullptr) std::strcpy(bytes, start);
    }
    std::string upToNul() const { return std::string(bytes, strnlen(bytes, sizeof(bytes))); }
};

TEST(StringHandler, OneSharedWindowsInstance) {
    EXPECT_EQ(StringHandler::instance(), &text());
    EXPECT_NE(dynamic_cast<WinStringHandlerImp *>(&text()), nullptr);
}

TEST(StringHandler, Transforms) {
    EXPECT_EQ(trimmed("   "), "");
    EXPECT_EQ(trimmed("\ta"), "\ta"); // only 0x20 is a blank
    EXPECT_EQ(trimmed("  a b  "), "a b");
    EXPECT_EQ(upper("abC1-z\xC3\xA9"), "ABC1-Z\xC3\xA9");
    EXPECT_EQ(lower("ABc1-Z"), "abc1-z");
    EXPECT_EQ(withoutSpaces(" a b\tc "), "<ab\tc");
    EXPECT_EQ(printable(bytes("a\x1F b\x7F~\x80\xC3\xA9\t\0c", 12)), "<a b~c");
    EXPECT_EQ(text().truncateAtNul(bytes("ab\0cd", 5)), "ab");
    EXPECT_EQ(text().truncateAtNul(bytes("\0ab", 3)), "");
    EXPECT_EQ(text().truncateAtNul("abc"), "abc");
    EXPECT_EQ(text().fromBytes("ab\0c", 4), bytes("ab\0c", 4));
    EXPECT_EQ(text().fromBytes(nullptr, 3), "");
}

TEST(StringHandler, Predicates) {
    EXPECT_TRUE(text().isNumeric("0123456789", 20));
    EXPECT_TRUE(text().isNumeric("12a", 2)); // only up to the maximum length
    EXPECT_FALSE(text().isNumeric("12a", 3));
    EXPECT_FALSE(text().isNumeric("-1", 5));
    EXPECT_TRUE(text().isNumeric("", 5));
    EXPECT_TRUE(text().isNumeric(nullptr, 5));
    EXPECT_FALSE(text().isUpperCase(""));
    EXPECT_TRUE(text().isUpperCase("AB12-!\xC3\xA9"));
    EXPECT_FALSE(text().isUpperCase("ABc"));
    EXPECT_TRUE(text().startsWith("abc", "abc"));
    EXPECT_TRUE(text().startsWith("", ""));
    EXPECT_FALSE(text().startsWith("ab", "abc"));
    EXPECT_FALSE(text().startsWith("abc", "b"));
}

TEST(StringHandler, SplitAndTokenize) {
    EXPECT_EQ(text().split("a,,b,", ','), (Strings{"a", "", "b"}));
    EXPECT_EQ(text().split("", ','), Strings{});
    EXPECT_EQ(text().split(",", ','), Strings{""});
    EXPECT_EQ(text().split(bytes("a\0b", 3), ','), Strings{bytes("a\0b", 3)});
    EXPECT_EQ(text().tokenize(",;a;,b", ",;"), (Strings{"a", "b"}));
    EXPECT_EQ(text().tokenize(",,,", ","), Strings{});
    EXPECT_EQ(text().tokenize(bytes("a,b\0,c", 6), ","), (Strings{"a", "b"}));
    EXPECT_EQ(text().tokenize("a b", ""), Strings{"a b"});
}

TEST(StringHandler, RemoveCharactersRefersToSourceOrDestination) {
    std::string destination = "untouched";
    const std::string source = "a-b_c";
    EXPECT_EQ(&text().removeCharacters("", source, destination), &source);
    EXPECT_EQ(destination, "untouched");
    EXPECT_EQ(&text().removeCharacters("-_", source, destination), &destination);
    EXPECT_EQ(destination, "abc");
    std::string same = "x.y.z";
    EXPECT_EQ(&text().removeCharacters(".", same, same), &same);
    EXPECT_EQ(same, "xyz");
}

TEST(StringHandler, CompareAndLength) {
    EXPECT_EQ(text().compareN("abc", "abd", 2), 0);
    EXPECT_LT(text().compareN("abc", "abd", 3), 0);
    EXPECT_GT(text().compareN("b", "a", 1), 0);
    EXPECT_EQ(text().lengthN("abc", 2), 2u);
    EXPECT_EQ(text().lengthN("abc", 10), 3u);
    EXPECT_EQ(text().lengthN(nullptr, 5), 0u);
    EXPECT_EQ(text().wideLengthN(WIDE_TEXT("abc"), 2), 2u);
    EXPECT_EQ(text().wideLengthN(WIDE_TEXT("abc"), 10), 3u);
    EXPECT_EQ(text().wideLengthN(nullptr, 5), 0u);
}

// copyN and concatN carry the strncpy_s and strncat_s contracts.
TEST(StringHandler, BoundedCopyAndConcatenateTable) {
    struct Row {
        bool copy;
        const char *initial, *source;
        size_t size, count;
        int result;
        std::string content; // the buffer's bytes up to its first NUL
    };
    const Row rows[] = {
        {true, "", "abcd", 5, 4, 0, "abcd"},
        {true, "", "abcde", 5, 5, ERANGE, ""},
        {true, "", "ab", 5, 10, 0, "ab"},
        {true, "", "abcdefgh", 5, _TRUNCATE, STRUNCATE, "abcd"},
        {true, "", "abcd", 5, _TRUNCATE, 0, "abcd"},
        {true, "old", "abc", 0, 3, EINVAL, "old"},
        {true, "old", nullptr, 5, 3, EINVAL, ""},
        {false, "ab", "cdef", 6, 3, 0, "abcde"},
        {false, "ab", "cdef", 6, 4, ERANGE, ""},
        {false, "ab", "cdef", 6, _TRUNCATE, STRUNCATE, "abcde"},
        {false, "ab", "cde", 6, _TRUNCATE, 0, "abcde"},
        {false, "ab", nullptr, 6, 0, 0, "ab"},
        {false, "ab", nullptr, 6, 2, EINVAL, ""},
        {false, "abc", "d", 3, 1, EINVAL, ""}, // no terminator inside the size
        {false, "ab", "c", 0, 1, EINVAL, "ab"},
    };
    for (const Row &row : rows) {
        Buffer buffer(row.initial);
        const int result = row.copy ? text().copyN(buffer.bytes, row.size, row.source, row.count)
                                    : text().concatN(buffer.bytes, row.size, row.source, row.count);
        SCOPED_TRACE(std::string(row.copy ? "copyN" : "concatN") + " onto \"" + row.initial +
                     "\", size " + std::to_string(row.size) + ", count " +
                     std::to_string(static_cast<long long>(row.count)));
        EXPECT_EQ(result, row.result);
        EXPECT_EQ(buffer.upToNul(), row.content);
    }
    EXPECT_EQ(text().copyN(nullptr, 0, "a", 0), 0);
    EXPECT_EQ(text().copyN(nullptr, 5, "a", 1), EINVAL);
}

TEST(StringHandler, FormatTable) {
    const char *noFormat = nullptr; // a null format, past the compiler's check
    struct Row {
        bool bounded;
        const char *word;
        size_t size;
        int result;
        std::string bytes; // the buffer's first bytes after the call
    };
    const Row rows[] = {
        {true, "hello", 6, 5, bytes("hello\0", 6)},
        {true, "hello!", 6, -1, bytes("\0", 1)},
        {true, "a", 0, -1, "XX"},
        {true, nullptr, 6, -1, bytes("\0X", 2)},
        {false, "hello", 6, 5, bytes("hello\0", 6)},
        {false, "hello", 5, 5, "helloX"}, // fills: no terminator
        {false, "hello", 4, -1, "hellX"},
        {false, "", 4, 0, bytes("\0X", 2)},
    };
    for (const Row &row : rows) {
        Buffer buffer;
        const int result = !row.bounded
                               ? text().formatTruncating(buffer.bytes, row.size, "%s", row.word)
                           : row.word ? text().formatBounded(buffer.bytes, row.size, "%s", row.word)
                                      : text().formatBounded(buffer.bytes, row.size, noFormat);
        EXPECT_EQ(result, row.result) << row.bounded << row.size;
        EXPECT_EQ(std::string(buffer.bytes, row.bytes.size()), row.bytes)
            << row.bounded << row.size;
    }
    EXPECT_EQ(text().formatTruncating(nullptr, 0, "%s", "hello"), 5); // the length it needs
    EXPECT_EQ(text().formatBounded(nullptr, 4, "%s", "a"), -1);
}

TEST(StringHandler, CopyWithOverlapCheckTable) {
    char area[16];
    struct Row {
        size_t bufferAt, size;
        const char *source; // null: the source is in the area
        size_t sourceAt, maxLength;
        int result;
        const char *content;
    };
    const Row rows[] = {
        {0, 8, "abcdefgh", 0, 7, 0, "abcdefg"}, // cut at the maximum length
        {0, 8, "abcdefgh", 0, 10, -1, ""},      // not below the buffer size
        {0, 8, nullptr, 2, 10, -1, ""},         // source inside the buffer
        {4, 10, nullptr, 0, 10, 0, "abcd"},     // clearing ends a source before it
        {2, 8, nullptr, 0, 2, 0, "ab"},         // source just before the buffer
        {0, 8, nullptr, 0, 10, 0, ""},          // source at the buffer's own address
        {0, 8, nullptr, 1, 2, -1, ""},          // shifted by one: the two bytes overlap by one
        {0, 8, nullptr, 1, 1, 0, "b"},          // shifted by one, one byte: they only touch
        {0, 0, "a", 0, 10, -1, "abcdefgh"},     // size 0
    };
    for (const Row &row : rows) {
        std::memset(area, 0, sizeof(area));
        std::strcpy(area, "abcdefgh");
        const char *source = row.source != nullptr ? row.source : area + row.sourceAt;
        EXPECT_EQ(text().copyWithOverlapCheck(area + row.bufferAt, row.size, source, row.maxLength),
                  row.result)
            << row.bufferAt << "/" << row.size << "/" << row.sourceAt;
        EXPECT_STREQ(area + row.bufferAt, row.content);
    }
    EXPECT_EQ(text().copyWithOverlapCheck(nullptr, 8, "a", 10), -1);
    EXPECT_EQ(text().copyWithOverlapCheck(area, 8, nullptr, 10), -1);
}

TEST(StringHandler, WideAndNarrowConversionTable) {
    struct Row {
        const WCHAR *wide;
        const char *narrow;
        size_t size, count;
        int result;
        size_t converted;
        const char *content; // what both directions leave; null: not looked at
    };
    const Row rows[] = {
        {WIDE_TEXT("abc"), "abc", 4, _TRUNCATE, 0, 4, "abc"},
        {WIDE_TEXT("abc"), "abc", 3, 3, ERANGE, 0, ""},
        {WIDE_TEXT("abc"), "abc", 3, _TRUNCATE, STRUNCATE, 3, "ab"},
        {WIDE_TEXT("abcdef"), "abcdef", 10, 2, 0, 3, "ab"},
        {WIDE_TEXT("a\u00e9\u00ff"), "a\xE9\xFF", 4, 3, 0, 4, "a\xE9\xFF"},
        {nullptr, nullptr, 4, 3, EINVAL, 0, ""},
        {WIDE_TEXT("a"), "a", 0, 1, EINVAL, 0, nullptr},
    };
    for (const Row &row : rows) {
        char narrow[8];
        WCHAR wide[8];
        std::memset(narrow, 'X', sizeof(narrow));
        std::fill(wide, wide + 8, WCHAR('X'));
        size_t converted = 99;
        EXPECT_EQ(text().wideToMultibyte(&converted, narrow, row.size, row.wide, row.count),
                  row.result)
            << row.narrow;
        if (row.result != EINVAL) {
            EXPECT_EQ(converted, row.converted) << row.narrow;
        }
        EXPECT_EQ(text().multibyteToWide(&converted, wide, row.size, row.narrow, row.count),
                  row.result)
            << row.narrow;
        if (row.content == nullptr) continue;
        EXPECT_STREQ(narrow, row.content);
        std::string back;
        for (size_t i = 0; i < text().wideLengthN(wide, 8); ++i) back += char(wide[i]);
        EXPECT_EQ(back, row.content);
    }
    char narrow[8] = "XXXXXXX";
    size_t converted = 99;
    // A unit above 0xFF has no byte: the buffer is left empty.
    EXPECT_EQ(text().wideToMultibyte(&converted, narrow, 8, WIDE_TEXT("a\u20acb"), _TRUNCATE),
              EILSEQ);
    EXPECT_STREQ(narrow, "");
    EXPECT_EQ(converted, 0u);
    // Without a buffer the answer is the size needed, terminator included.
    EXPECT_EQ(text().multibyteToWide(&converted, nullptr, 0, "abcde", _TRUNCATE), 0);
    EXPECT_EQ(converted, 6u);
    EXPECT_EQ(text().wideToMultibyte(nullptr, narrow, 8, WIDE_TEXT("ok"), 2), 0);
    EXPECT_STREQ(narrow, "ok");
}

TEST(StringHandler, LocalTimeInUtcAndItsLimits) {
    ScopedTimeZone utc("UTC0");
    const int64_t times[] = {0, 32535244799LL, 32535244800LL, -1};
    const std::vector<int> expected[] = {{70, 0, 1, 0, 0, 0, 4, 0},
                                         {1101, 0, 1, 7, 59, 59, 4, 0},
                                         std::vector<int>(8, -1),
                                         std::vector<int>(8, -1)};
    for (int i = 0; i < 4; ++i) {
        struct tm t = {};
        EXPECT_EQ(text().localTime(&t, &times[i]), i < 2 ? 0 : EINVAL) << times[i];
        EXPECT_EQ((std::vector<int>{t.tm_year, t.tm_mon, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec,
                                    t.tm_wday, t.tm_yday}),
                  expected[i])
            << times[i];
    }
    struct tm t = {};
    EXPECT_EQ(text().localTime(&t, nullptr), EINVAL);
    EXPECT_EQ(text().localTime(nullptr, &times[0]), EINVAL);
}

TEST(StringHandler, PrintToStream) {
    FILE *file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(text().printToStream(file, "%s-%d", "ab", 7), 4);
    std::rewind(file);
    char read[8] = {};
    EXPECT_EQ(std::fread(read, 1, sizeof(read) - 1, file), 4u);
    EXPECT_STREQ(read, "ab-7");
    std::fclose(file);
    EXPECT_EQ(text().printToStream(nullptr, "%d", 1), -1);
}

TEST(StringHandler, SanitizeFieldTable) {
    struct Row {
        std::string field;
        size_t fieldLength, bufferSize;
        const char *expected;
    };
    const Row rows[] = {
        {bytes("  ab\0x", 6), 6, 12, "ab"},
        {"abcdefghij", 10, 3, "ab"},   // cut at the buffer
        {"abcdefgh", 8, 8, "abcdefg"}, // a run of exactly the buffer's size
        {"a\x7F"
         "b\xC3",
         4, 12, "a?b?"},
        {"\tab ", 4, 12, "?ab"}, // a tab is no blank
        {" a b  ", 6, 8, "a b"},
        {"ab  cd", 3, 8, "ab"}, // not beyond the field length
        {"abc", 3, 1, ""},
    };
    for (const Row &row : rows) {
        Buffer buffer;
        EXPECT_EQ(
            text().sanitizeField(buffer.bytes, row.bufferSize, row.field.data(), row.fieldLength),
            buffer.bytes);
        EXPECT_STREQ(buffer.bytes, row.expected) << row.field;
        for (size_t i = std::strlen(row.expected); i < row.bufferSize; ++i) {
            EXPECT_EQ(buffer.bytes[i], '\0') << row.field << ": byte " << i << " not cleared";
        }
        EXPECT_EQ(buffer.bytes[row.bufferSize], 'X') << row.field << ": written past the buffer";
    }
}

} // namespace
