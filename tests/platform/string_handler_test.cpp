#include <gtest/gtest.h>

#include <bounded_crt.h>

#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "platform/string_handler.h"
#include "platform/win_string_handler_imp.h"
#include "wide_text.h"

namespace {

using Strings = std::vector<std::string>;

StringHandler &text() {
    return *StringHandler::instance();
}

TEST(StringHandler, OneSharedWindowsInstance) {
    StringHandler *first = StringHandler::instance();
    EXPECT_EQ(first, StringHandler::instance());
    EXPECT_NE(dynamic_cast<WinStringHandlerImp *>(first), nullptr);
}

// Operations that turn one byte string into another.
TEST(StringHandler, TransformTable) {
    using Transform = std::function<std::string(std::string)>;
    const Transform trim = [](std::string s) { return text().trim(s), s; };
    const Transform upper = [](std::string s) { return text().toUpperCase(s), s; };
    const Transform lower = [](std::string s) { return text().toLowerCase(s), s; };
    // The destination is appended to, not cleared.
    const Transform noSpaces = [](std::string s) {
        std::string out = "<";
        text().removeSpaces(s, out);
        return out;
    };
    const Transform printable = [](std::string s) {
        std::string out = "<";
        text().removeNonPrintable(s, out);
        return out;
    };
    const Transform atNul = [](std::string s) { return text().truncateAtNul(s); };
    struct Row {
        const char *operation;
        const Transform &apply;
        std::string input, expected;
    };
    const Row rows[] = {
        {"trim", trim, "", ""},
        {"trim", trim, "   ", ""},
        {"trim", trim, "\ta", "\ta"},
        {"trim", trim, "  a b  ", "a b"},
        {"trim", trim, "a\n ", "a\n"},
        {"trim", trim, " \xC3\xA9 ", "\xC3\xA9"},
        {"toUpperCase", upper, "abC1-z", "ABC1-Z"},
        {"toUpperCase", upper, "\xC3\xA9", "\xC3\xA9"},
        {"toUpperCase", upper, "", ""},
        {"toLowerCase", lower, "ABc1-Z", "abc1-z"},
        {"removeSpaces", noSpaces, " a b\tc ", "<ab\tc"},
        {"removeSpaces", noSpaces, "", "<"},
        {"removeNonPrintable", printable, std::string("a\x1F b\x7F~\x80\xC3\xA9\t\0c", 12),
         "<a b~c"},
        {"truncateAtNul", atNul, std::string("ab\0cd", 5), "ab"},
        {"truncateAtNul", atNul, std::string("\0ab", 3), ""},
        {"truncateAtNul", atNul, "", ""},
        {"truncateAtNul", atNul, "abc", "abc"},
    };
    for (const Row &row : rows) {
        EXPECT_EQ(row.apply(row.input), row.expected)
            << row.operation << " of \"" << row.input << '"';
    }
}

TEST(StringHandler, PredicateTable) {
    struct Row {
        const char *operation;
        std::function<bool()> ask;
        bool expected;
    };
    const Row rows[] = {
        {"isNumeric 0123456789", [] { return text().isNumeric("0123456789", 20); }, true},
        {"isNumeric 12a, max 2", [] { return text().isNumeric("12a", 2); }, true},
        {"isNumeric 12a, max 3", [] { return text().isNumeric("12a", 3); }, false},
        {"isNumeric empty", [] { return text().isNumeric("", 5); }, true},
        {"isNumeric -1", [] { return text().isNumeric("-1", 5); }, false},
        {"isNumeric 1 2", [] { return text().isNumeric("1 2", 5); }, false},
        {"isNumeric null", [] { return text().isNumeric(nullptr, 5); }, true},
        {"isUpperCase empty", [] { return text().isUpperCase(""); }, false},
        {"isUpperCase ABC", [] { return text().isUpperCase("ABC"); }, true},
        {"isUpperCase 12-!", [] { return text().isUpperCase("12-!"); }, true},
        {"isUpperCase ABc", [] { return text().isUpperCase("ABc"); }, false},
        {"isUpperCase non-ASCII", [] { return text().isUpperCase("\xC3\xA9"); }, true},
        {"startsWith empty prefix", [] { return text().startsWith("abc", ""); }, true},
        {"startsWith ab", [] { return text().startsWith("abc", "ab"); }, true},
        {"startsWith abc", [] { return text().startsWith("abc", "abc"); }, true},
        {"startsWith longer", [] { return text().startsWith("ab", "abc"); }, false},
        {"startsWith b", [] { return text().startsWith("abc", "b"); }, false},
        {"startsWith both empty", [] { return text().startsWith("", ""); }, true},
    };
    for (const Row &row : rows) EXPECT_EQ(row.ask(), row.expected) << row.operation;
}

TEST(StringHandler, SplitAndTokenizeTable) {
    struct Row {
        const char *operation;
        std::string input, delimiters;
        Strings expected;
    };
    const Row rows[] = {
        {"split", "a,,b,", ",", {"a", "", "b"}},
        {"split", "", ",", {}},
        {"split", ",", ",", {""}},
        {"split", ",a", ",", {"", "a"}},
        {"split", "abc", ",", {"abc"}},
        {"split", std::string("a\0b", 3), ",", {std::string("a\0b", 3)}},
        {"tokenize", "a,,b,", ",", {"a", "b"}},
        {"tokenize", ",;a;,b", ",;", {"a", "b"}},
        {"tokenize", "", ",", {}},
        {"tokenize", ",,,", ",", {}},
        {"tokenize", std::string("a,b\0,c", 6), ",", {"a", "b"}},
        {"tokenize", "a b", "", {"a b"}},
    };
    for (const Row &row : rows) {
        const Strings actual = std::string(row.operation) == "split"
                                   ? text().split(row.input, row.delimiters[0])
                                   : text().tokenize(row.input, row.delimiters);
        EXPECT_EQ(actual, row.expected) << row.operation << " of \"" << row.input << '"';
    }
}

TEST(StringHandler, RemoveCharactersRefersToSourceOrDestination) {
    std::string destination = "untouched";
    const std::string empty;
    EXPECT_EQ(&text().removeCharacters("a", empty, destination), &empty);
    const std::string source = "a-b_c";
    EXPECT_EQ(&text().removeCharacters("", source, destination), &source);
    EXPECT_EQ(destination, "untouched");

    EXPECT_EQ(&text().removeCharacters("-_", source, destination), &destination);
    EXPECT_EQ(destination, "abc");
    std::string same = "x.y.z";
    EXPECT_EQ(&text().removeCharacters(".", same, same), &same);
    EXPECT_EQ(same, "xyz");
}

TEST(StringHandler, CompareAndLengthTable) {
    EXPECT_EQ(text().compareN("abc", "abd", 2), 0);
    EXPECT_LT(text().compareN("abc", "abd", 3), 0);
    EXPECT_GT(text().compareN("b", "a", 1), 0);
    EXPECT_EQ(text().compareN("a", "b", 0), 0);
    struct Row {
        const char *narrow;
        const WCHAR *wide;
        size_t maxLength, expected;
    };
    const Row rows[] = {
        {"abc", WIDE_TEXT("abc"), 2, 2}, {"abc", WIDE_TEXT("abc"), 10, 3},
        {"", WIDE_TEXT(""), 5, 0},       {"abc", WIDE_TEXT("abc"), 0, 0},
        {nullptr, nullptr, 5, 0},
    };
    for (const Row &row : rows) {
        EXPECT_EQ(text().lengthN(row.narrow, row.maxLength), row.expected)
            << "lengthN of " << (row.narrow ? row.narrow : "null") << " max " << row.maxLength;
        EXPECT_EQ(text().wideLengthN(row.wide, row.maxLength), row.expected)
            << "wideLengthN of " << (row.narrow ? row.narrow : "null") << " max " << row.maxLength;
    }
}

TEST(StringHandler, FromBytesKeepsEveryByte) {
    const char nuls[4] = {};
    EXPECT_EQ(text().fromBytes(nuls, 4), std::string(4, '\0'));
    EXPECT_EQ(text().fromBytes("ab\0c", 4), std::string("ab\0c", 4));
    EXPECT_EQ(text().fromBytes("abc", 0), "");
    EXPECT_EQ(text().fromBytes(nullptr, 3), "");
}

// A buffer of 16 'X' bytes, so what a call leaves behind shows.
struct Buffer {
    char bytes[16];
    Buffer() { std::memset(bytes, 'X', sizeof(bytes)); }
    Buffer(const char *start) : Buffer() { std::strcpy(bytes, start); }
};

// copyN and concatN carry the strncpy_s and strncat_s contracts.
TEST(StringHandler, BoundedCopyAndConcatenateTable) {
    struct Row {
        const char *operation;
        const char *initial; // the buffer's text before the call
        size_t size;
        const char *source;
        size_t count;
        int result;
        std::string content; // the buffer's bytes up to its first NUL
    };
    const Row rows[] = {
        {"copyN", "", 5, "abcd", 4, 0, "abcd"},
        {"copyN", "", 5, "abcde", 5, ERANGE, ""},
        {"copyN", "", 5, "abcde", 4, 0, "abcd"},
        {"copyN", "", 5, "ab", 10, 0, "ab"},
        {"copyN", "", 5, "abcdefgh", _TRUNCATE, STRUNCATE, "abcd"},
        {"copyN", "", 5, "abcd", _TRUNCATE, 0, "abcd"},
        {"copyN", "old", 5, "abc", 0, 0, ""},
        {"copyN", "old", 0, "abc", 3, EINVAL, "old"},
        {"copyN", "old", 5, nullptr, 3, EINVAL, ""},
        {"copyN", "", 5, "\xC3\xA9", 2, 0, "\xC3\xA9"},
        {"concatN", "ab", 6, "cdef", 3, 0, "abcde"},
        {"concatN", "ab", 6, "cdef", 4, ERANGE, ""},
        {"concatN", "ab", 6, "cdef", _TRUNCATE, STRUNCATE, "abcde"},
        {"concatN", "ab", 6, "cde", _TRUNCATE, 0, "abcde"},
        {"concatN", "ab", 6, "", 3, 0, "ab"},
        {"concatN", "ab", 6, nullptr, 0, 0, "ab"},
        {"concatN", "ab", 6, nullptr, 2, EINVAL, ""},
        {"concatN", "abc", 3, "d", 1, EINVAL, ""}, // no terminator inside the size
        {"concatN", "ab", 0, "c", 1, EINVAL, "ab"},
    };
    for (const Row &row : rows) {
        Buffer buffer(row.initial);
        const int result = std::string(row.operation) == "copyN"
                               ? text().copyN(buffer.bytes, row.size, row.source, row.count)
                               : text().concatN(buffer.bytes, row.size, row.source, row.count);
        SCOPED_TRACE(std::string(row.operation) + " of \"" + (row.source ? row.source : "null") +
                     "\" onto \"" + row.initial + "\", size " + std::to_string(row.size) +
                     ", count " + std::to_string(static_cast<long long>(row.count)));
        EXPECT_EQ(result, row.result);
        EXPECT_EQ(std::string(buffer.bytes, strnlen(buffer.bytes, sizeof(buffer.bytes))),
                  row.content);
        EXPECT_LE(std::strlen(buffer.bytes) + 1, row.size == 0 ? 16 : row.size);
    }
    EXPECT_EQ(text().copyN(nullptr, 0, "a", 0), 0);
    EXPECT_EQ(text().copyN(nullptr, 5, "a", 1), EINVAL);
}

TEST(StringHandler, FormatTable) {
    const char *noFormat = nullptr; // a null format, past the compiler's check
    struct Row {
        const char *operation;
        size_t size;
        std::function<int(char *, size_t)> format;
        int result;
        std::string bytes; // the buffer's first bytes after the call
    };
    const auto bounded = [](const char *word) {
        return [word](char *b, size_t n) { return text().formatBounded(b, n, "%s", word); };
    };
    const auto truncating = [](const char *word) {
        return [word](char *b, size_t n) { return text().formatTruncating(b, n, "%s", word); };
    };
    const Row rows[] = {
        {"formatBounded fits", 6, bounded("hello"), 5, std::string("hello\0", 6)},
        {"formatBounded one too many", 6, bounded("hello!"), -1, std::string("\0", 1)},
        {"formatBounded empty", 1, bounded(""), 0, std::string("\0X", 2)},
        {"formatBounded size 0", 0, bounded("a"), -1, "XX"},
        {"formatBounded number", 3,
         [](char *b, size_t n) { return text().formatBounded(b, n, "%d", 42); }, 2,
         std::string("42\0", 3)},
        {"formatBounded null format", 6,
         [noFormat](char *b, size_t n) { return text().formatBounded(b, n, noFormat); }, -1,
         std::string("\0X", 2)},
        {"formatTruncating fits", 6, truncating("hello"), 5, std::string("hello\0", 6)},
        {"formatTruncating fills", 5, truncating("hello"), 5, "helloX"},
        {"formatTruncating too long", 4, truncating("hello"), -1, "hellX"},
        {"formatTruncating empty", 4, truncating(""), 0, std::string("\0X", 2)},
        {"formatTruncating non-ASCII", 3, truncating("\xC3\xA9"), 2, std::string("\xC3\xA9\0", 3)},
    };
    for (const Row &row : rows) {
        Buffer buffer;
        EXPECT_EQ(row.format(buffer.bytes, row.size), row.result) << row.operation;
        EXPECT_EQ(std::string(buffer.bytes, row.bytes.size()), row.bytes) << row.operation;
    }
    EXPECT_EQ(text().formatTruncating(nullptr, 0, "%s", "hello"), 5); // the length it needs
    EXPECT_EQ(text().formatTruncating(nullptr, 4, "%s", "hello"), -1);
    EXPECT_EQ(text().formatBounded(nullptr, 4, "%s", "a"), -1);
}

TEST(StringHandler, CopyWithOverlapCheckTable) {
    char area[16];
    struct Row {
        const char *name;
        size_t bufferAt, size;
        const char *source; // null: the source is in the area
        size_t sourceAt, maxLength;
        int result;
        const char *content;
    };
    const Row rows[] = {
        {"separate source", 0, 8, "xyz", 0, 10, 0, "xyz"},
        {"cut at the maximum length", 0, 8, "abcdefgh", 0, 7, 0, "abcdefg"},
        {"not below the buffer size", 0, 8, "abcdefgh", 0, 10, -1, ""},
        {"empty source", 0, 8, "", 0, 10, 0, ""},
        {"source inside the buffer", 0, 8, nullptr, 2, 10, -1, ""},
        {"clearing the buffer ends a source before it", 4, 10, nullptr, 0, 10, 0, "abcd"},
        {"source just before the buffer", 2, 8, nullptr, 0, 2, 0, "ab"},
        {"source at the buffer's own address", 0, 8, nullptr, 0, 10, 0, ""},
        {"size 0", 0, 0, "a", 0, 10, -1, "abcdefgh"},
    };
    for (const Row &row : rows) {
        std::memset(area, 0, sizeof(area));
        std::strcpy(area, "abcdefgh");
        const char *source = row.source != nullptr ? row.source : area + row.sourceAt;
        EXPECT_EQ(text().copyWithOverlapCheck(area + row.bufferAt, row.size, source, row.maxLength),
                  row.result)
            << row.name;
        EXPECT_STREQ(area + row.bufferAt, row.content) << row.name;
    }
    EXPECT_EQ(text().copyWithOverlapCheck(nullptr, 8, "a", 10), -1);
    EXPECT_EQ(text().copyWithOverlapCheck(area, 8, nullptr, 10), -1);
}

TEST(StringHandler, WideAndNarrowConversionTable) {
    struct Row {
        const char *name;
        const WCHAR *wide;
        const char *narrow;
        size_t size, count;
        int result;
        size_t converted;
        const WCHAR *wideContent;  // what multibyteToWide leaves
        const char *narrowContent; // what wideToMultibyte leaves
    };
    const Row rows[] = {
        {"fits", WIDE_TEXT("abc"), "abc", 4, _TRUNCATE, 0, 4, WIDE_TEXT("abc"), "abc"},
        {"no room for the terminator", WIDE_TEXT("abc"), "abc", 3, 3, ERANGE, 0, WIDE_TEXT(""), ""},
        {"truncated", WIDE_TEXT("abc"), "abc", 3, _TRUNCATE, STRUNCATE, 3, WIDE_TEXT("ab"), "ab"},
        {"count shorter than the text", WIDE_TEXT("abcdef"), "abcdef", 10, 2, 0, 3, WIDE_TEXT("ab"),
         "ab"},
        {"empty", WIDE_TEXT(""), "", 1, _TRUNCATE, 0, 1, WIDE_TEXT(""), ""},
        {"bytes above 0x7F", WIDE_TEXT("a\u00e9\u00ff"), "a\xE9\xFF", 4, 3, 0, 4,
         WIDE_TEXT("a\u00e9\u00ff"), "a\xE9\xFF"},
        {"null source", nullptr, nullptr, 4, 3, EINVAL, 0, WIDE_TEXT(""), ""},
        {"size 0", WIDE_TEXT("a"), "a", 0, 1, EINVAL, 0, nullptr, nullptr},
    };
    for (const Row &row : rows) {
        char narrow[8];
        WCHAR wide[8];
        std::memset(narrow, 'X', sizeof(narrow));
        std::fill(wide, wide + 8, WCHAR('X'));
        size_t converted = 99;
        EXPECT_EQ(text().wideToMultibyte(&converted, narrow, row.size, row.wide, row.count),
                  row.result)
            << "wideToMultibyte " << row.name;
        EXPECT_EQ(converted, row.result == EINVAL ? converted : row.converted)
            << "wideToMultibyte " << row.name;
        if (row.narrowContent != nullptr) {
            EXPECT_STREQ(narrow, row.narrowContent) << "wideToMultibyte " << row.name;
        }
        converted = 99;
        EXPECT_EQ(text().multibyteToWide(&converted, wide, row.size, row.narrow, row.count),
                  row.result)
            << "multibyteToWide " << row.name;
        if (row.wideContent != nullptr) {
            EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t *>(wide),
                                     text().wideLengthN(wide, 8)),
                      std::u16string(reinterpret_cast<const char16_t *>(row.wideContent)))
                << "multibyteToWide " << row.name;
        }
    }
}

TEST(StringHandler, ConversionEdges) {
    char narrow[8] = "XXXXXXX";
    size_t converted = 99;
    // A unit above 0xFF has no byte: the buffer is left empty.
    EXPECT_EQ(text().wideToMultibyte(&converted, narrow, 8, WIDE_TEXT("a\u20acb"), _TRUNCATE),
              EILSEQ);
    EXPECT_STREQ(narrow, "");
    EXPECT_EQ(converted, 0u);
    // Without a buffer the answer is the size needed, terminator included.
    EXPECT_EQ(text().wideToMultibyte(&converted, nullptr, 0, WIDE_TEXT("abc"), _TRUNCATE), 0);
    EXPECT_EQ(converted, 4u);
    EXPECT_EQ(text().multibyteToWide(&converted, nullptr, 0, "abcde", _TRUNCATE), 0);
    EXPECT_EQ(converted, 6u);
    EXPECT_EQ(text().wideToMultibyte(&converted, nullptr, 4, WIDE_TEXT("abc"), 3), EINVAL);
    EXPECT_EQ(text().wideToMultibyte(nullptr, narrow, 8, WIDE_TEXT("ok"), 2), 0);
    EXPECT_STREQ(narrow, "ok");
}

// Runs a body with the time zone set to UTC and puts the old zone back.
class UtcZone : public ::testing::Test {
protected:
    void SetUp() override {
        const char *zone = std::getenv("TZ");
        hadZone_ = zone != nullptr;
        if (hadZone_) oldZone_ = zone;
        setenv("TZ", "UTC", 1);
        tzset();
    }
    void TearDown() override {
        if (hadZone_) {
            setenv("TZ", oldZone_.c_str(), 1);
        } else {
            unsetenv("TZ");
        }
        tzset();
    }

private:
    bool hadZone_ = false;
    std::string oldZone_;
};

TEST_F(UtcZone, LocalTimeTable) {
    struct Row {
        const char *name;
        int64_t time;
        int result;
        int year, month, day, hour, minute, second, weekday, yearDay;
    };
    const Row rows[] = {
        {"epoch", 0, 0, 70, 0, 1, 0, 0, 0, 4, 0},
        {"latest", 32535244799LL, 0, 1101, 0, 1, 7, 59, 59, 4, 0},
        {"after the latest", 32535244800LL, EINVAL, -1, -1, -1, -1, -1, -1, -1, -1},
        {"before the epoch", -1, EINVAL, -1, -1, -1, -1, -1, -1, -1, -1},
    };
    for (const Row &row : rows) {
        struct tm t = {};
        EXPECT_EQ(text().localTime(&t, &row.time), row.result) << row.name;
        const int actual[] = {t.tm_year, t.tm_mon, t.tm_mday, t.tm_hour,
                              t.tm_min,  t.tm_sec, t.tm_wday, t.tm_yday};
        const int expected[] = {row.year,   row.month,  row.day,     row.hour,
                                row.minute, row.second, row.weekday, row.yearDay};
        for (int i = 0; i < 8; ++i) EXPECT_EQ(actual[i], expected[i]) << row.name << " field " << i;
    }
    struct tm t = {};
    EXPECT_EQ(text().localTime(&t, nullptr), EINVAL);
    EXPECT_EQ(t.tm_year, -1);
    const int64_t zero = 0;
    EXPECT_EQ(text().localTime(nullptr, &zero), EINVAL);
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
        const char *name;
        std::string field;
        size_t fieldLength, bufferSize;
        const char *expected;
    };
    const Row rows[] = {
        {"blanks, letters, NUL, more", std::string("  ab\0x", 6), 6, 12, "ab"},
        {"run longer than the buffer", "abcdefghij", 10, 3, "ab"},
        {"run one shorter than the buffer", "ab", 2, 3, "ab"},
        {"unprintable bytes",
         "a\x7F"
         "b\xC3",
         4, 12, "a?b?"},
        {"a tab is no blank", "\tab ", 4, 12, "?ab"},
        {"blanks only", "      ", 6, 8, ""},
        {"blanks inside stay", " a b  ", 6, 8, "a b"},
        {"not beyond the field length", "ab  cd", 3, 8, "ab"},
        {"leading NUL", std::string("\0ab", 3), 3, 8, ""},
        {"buffer of one byte", "abc", 3, 1, ""},
        {"empty field", "", 0, 4, ""},
    };
    for (const Row &row : rows) {
        Buffer buffer;
        char *result =
            text().sanitizeField(buffer.bytes, row.bufferSize, row.field.data(), row.fieldLength);
        EXPECT_EQ(result, buffer.bytes) << row.name;
        EXPECT_STREQ(buffer.bytes, row.expected) << row.name;
        for (size_t i = std::strlen(row.expected); i < row.bufferSize; ++i) {
            EXPECT_EQ(buffer.bytes[i], '\0') << row.name << ": byte " << i << " not cleared";
        }
        EXPECT_EQ(buffer.bytes[row.bufferSize], 'X') << row.name << ": written past the buffer";
    }
}

} // namespace
