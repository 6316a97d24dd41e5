#include <gtest/gtest.h>

#include <bounded_crt.h>

#include <cctype>
#include <cstdarg>
#include <cstring>
#include <functional>
#include <string>

// The layer's bounded functions reach the invalid-parameter handler exactly
// where the Microsoft runtime does, and its default ends the process.

namespace {

int handlerCalls = 0;

void countingHandler(const wchar_t *, const wchar_t *, const wchar_t *, unsigned int, uintptr_t) {
    ++handlerCalls;
}

// Installs the counting handler for this thread for as long as it lives.
class ThreadHandler {
public:
    ThreadHandler() : previous_(_set_thread_local_invalid_parameter_handler(countingHandler)) {
        handlerCalls = 0;
    }
    ~ThreadHandler() { _set_thread_local_invalid_parameter_handler(previous_); }

private:
    _invalid_parameter_handler previous_;
};

int format(char *buffer, size_t size, const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int result = vsprintf_s(buffer, size, format, arguments);
    va_end(arguments);
    return result;
}

struct Call {
    const char *what;
    std::function<int()> call;
    int result;
    bool violation;
};

char buffer[8];
const std::u16string kFull(255, u'x'); // 255 units and no terminator in them
const int64_t kFarFuture = 0x793407000LL;
struct tm someTime;

const Call kCalls[] = {
    {"wcstombs_s fits", [] { return int(wcstombs_s(nullptr, buffer, 8, u"1234567", 7)); }, 0,
     false},
    {"wcstombs_s one unit past",
     [] { return int(wcstombs_s(nullptr, buffer, 8, kFull.c_str(), 8)); }, ERANGE, true},
    {"wcstombs_s truncating",
     [] { return int(wcstombs_s(nullptr, buffer, 8, kFull.c_str(), _TRUNCATE)); }, STRUNCATE,
     false},
    {"wcstombs_s unconvertible", [] { return int(wcstombs_s(nullptr, buffer, 8, u"\u20ac", 1)); },
     EILSEQ, false},
    {"mbstowcs_s null source",
     [] {
         char16_t wide[4];
         return int(mbstowcs_s(nullptr, wide, 4, nullptr, 1));
     },
     EINVAL, true},
    {"strncpy_s one past", [] { return int(strncpy_s(buffer, 8, "12345678", 8)); }, ERANGE, true},
    {"strncat_s unterminated destination",
     [] {
         std::memset(buffer, 'x', sizeof buffer);
         return int(strncat_s(buffer, 8, "a", 1));
     },
     EINVAL, true},
    {"vsprintf_s fits", [] { return format(buffer, 8, "%s", "1234567"); }, 7, false},
    {"vsprintf_s one past", [] { return format(buffer, 8, "%s", "12345678"); }, -1, true},
    {"_localtime64_s beyond its range", [] { return int(_localtime64_s(&someTime, &kFarFuture)); },
     EINVAL, false},
    {"_localtime64_s without a time", [] { return int(_localtime64_s(&someTime, nullptr)); },
     EINVAL, true},
};

class BoundedCrt : public ::testing::TestWithParam<Call> {};

TEST_P(BoundedCrt, CallsTheHandlerOnlyOnAViolation) {
    ThreadHandler handler;
    EXPECT_EQ(GetParam().call(), GetParam().result);
    EXPECT_EQ(handlerCalls, GetParam().violation ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(Calls, BoundedCrt, ::testing::ValuesIn(kCalls),
                         [](const ::testing::TestParamInfo<Call> &info) {
                             std::string name = info.param.what;
                             for (char &c : name) {
                                 if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
                             }
                             return name;
                         });

TEST(BoundedCrtDeathTest, WithoutAHandlerAViolationEndsTheProcess) {
    ASSERT_EQ(_get_thread_local_invalid_parameter_handler(), nullptr);
    ASSERT_EQ(_get_invalid_parameter_handler(), nullptr);
    char narrow[255];
    EXPECT_DEATH(wcstombs_s(nullptr, narrow, sizeof narrow, kFull.c_str(), 255),
                 "invalid parameter");
}

TEST(BoundedCrt, StrtokSRefusesWhatItCannotWalk) {
    ThreadHandler handler;
    char text[] = "a,b";
    char *context = nullptr;
    EXPECT_EQ(strtok_s(text, nullptr, &context), nullptr);
    EXPECT_EQ(strtok_s(text, ",", nullptr), nullptr);
    EXPECT_EQ(strtok_s(nullptr, ",", &context), nullptr); // no walk to continue
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(handlerCalls, 3);

    // Two walks with their own contexts do not disturb each other.
    char other[] = "x;y";
    char *otherContext = nullptr;
    EXPECT_STREQ(strtok_s(text, ",", &context), "a");
    EXPECT_STREQ(strtok_s(other, ";", &otherContext), "x");
    EXPECT_STREQ(strtok_s(nullptr, ",", &context), "b");
    EXPECT_STREQ(strtok_s(nullptr, ";", &otherContext), "y");
    EXPECT_EQ(strtok_s(nullptr, ",", &context), nullptr);
}

TEST(BoundedCrt, WcsnlenCountsSixteenBitUnits) {
    EXPECT_EQ(wcsnlen(u"\u00e9\u20ac", 10), 2u);
    EXPECT_EQ(wcsnlen(u"abc", 1), 1u);
}

} // namespace
