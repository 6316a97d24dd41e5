#include <gtest/gtest.h>

#include <bounded_crt.h>

// The contracts that the text service does not reach through its own
// operations.
TEST(BoundedCrt, StrtokSRefusesWhatItCannotWalk) {
    char text[] = "a,b";
    char *context = nullptr;
    EXPECT_EQ(strtok_s(text, nullptr, &context), nullptr);
    EXPECT_EQ(strtok_s(text, ",", nullptr), nullptr);
    EXPECT_EQ(strtok_s(nullptr, ",", &context), nullptr); // no walk to continue
    EXPECT_EQ(errno, EINVAL);

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
