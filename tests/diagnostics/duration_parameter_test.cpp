#include <gtest/gtest.h>

#include <tuple>

#include "diagnostics/charge_test.h"
#include "diagnostics/discharge_test.h"
#include "frame/keys.h"

namespace {

TestParameter duration(const std::string &value) {
    TestParameter chosen;
    chosen.key = "DURATION";
    chosen.value = value;
    return chosen;
}

TestParameter named(const std::string &key, uint32_t lastNumber = 0) {
    TestParameter chosen;
    chosen.key = key;
    chosen.lastNumber = lastNumber;
    return chosen;
}

struct DurationValue {
    const char *name;
    std::string value;
    double seconds; // 0: refused, the duration stays
};

const DurationValue kValues[] = {
    {"Five", "5", 300.0},
    {"Twenty", "20", 1200.0},
    {"LeadingZeros", "0010", 600.0},
    {"Four", "4", 0},
    {"TwentyOne", "21", 0},
    {"Empty", "", 0},
    {"Decimal", "10.5", 0},
    {"Negative", "-5", 0},
    {"Plus", "+5", 0},
    {"BlankBefore", " 5", 0},
    {"BlankAfter", "5 ", 0},
    {"Letters", "ten", 0},
    {"TooLongFor32Bits", "99999999999", 0},
};

class DurationValues : public testing::TestWithParam<DurationValue> {};

TEST_P(DurationValues, GoodOnesSetTheDurationBadOnesGiveOneIssue) {
    const DurationValue &row = GetParam();
    DischargeTest test({12, 2, 2});
    std::vector<TestParameterIssue> issues;
    ASSERT_TRUE(test.validateParameters({duration("7")}, issues));
    issues = {{0, "stale", {}}};
    const bool good = test.validateParameters({duration(row.value)}, issues);
    EXPECT_EQ(good, row.seconds != 0);
    if (good) {
        EXPECT_TRUE(issues.empty());
        EXPECT_EQ(test.getDurationSeconds(), row.seconds);
    } else {
        ASSERT_EQ(issues.size(), 1u);
        EXPECT_EQ(issues[0].kind, 1u);
        EXPECT_EQ(issues[0].message, "USE_A_NUMERICAL_VALUE_BETWEEN_5_AND_20");
        EXPECT_EQ(issues[0].parameter.value, row.value);
        EXPECT_EQ(test.getDurationSeconds(), 420.0); // what the earlier choice left
    }
}

INSTANTIATE_TEST_SUITE_P(
    , DurationValues, testing::ValuesIn(kValues),
    [](const testing::TestParamInfo<DurationValue> &info) { return std::string(info.param.name); });

TEST(DurationParameter, TheDefinitionAsTheHostSeesIt) {
    ChargeTest test({12, 2, 3});
    const std::vector<TestParameter> definitions =
        test.getParameterDefinitions(nullptr, nullptr, 0);
    ASSERT_EQ(definitions.size(), 1u);
    const TestParameter &d = definitions[0];
    EXPECT_EQ(std::tie(d.key, d.displayName, d.description, d.defaultValue, d.value, d.range),
              std::make_tuple("DURATION", "DURATION_(MINUTES)",
                              "DEFINES_THE_TEST_DURATION_IN_MINUTES.", "10", "10", "[5:20]"));
    EXPECT_EQ(std::tie(d.type, d.firstFlag, d.lastNumber), std::make_tuple(2u, 0u, 0u));
    EXPECT_EQ(test.getDurationSeconds(), 600.0);
}

TEST(DurationParameter, UnknownKeysComeFirstAndTheDurationStillCounts) {
    DischargeTest test({12, 2, 2});
    std::vector<TestParameterIssue> issues;
    EXPECT_FALSE(test.validateParameters(
        {duration("25"), named("execution_flow"), duration("5"), named("COLOUR")}, issues));
    ASSERT_EQ(issues.size(), 3u);
    EXPECT_EQ(issues[0].kind, 2u);
    EXPECT_EQ(issues[0].message, "INVALID_DURATION_PARAMETER");
    EXPECT_EQ(issues[0].parameter.key, "execution_flow");
    EXPECT_EQ(issues[1].parameter.key, "COLOUR");
    EXPECT_EQ(issues[2].kind, 1u); // only the first "DURATION" counts
    EXPECT_EQ(issues[2].parameter.value, "25");

    EXPECT_FALSE(test.validateParameters({named("COLOUR"), duration("15")}, issues));
    EXPECT_EQ(issues.size(), 1u);
    EXPECT_EQ(test.getDurationSeconds(), 900.0);
    EXPECT_EQ(joinParameterIssues(issues), "COLOUR: INVALID_DURATION_PARAMETER");

    // An empty list changes nothing; reset goes back to ten minutes.
    EXPECT_TRUE(test.validateParameters({}, issues));
    EXPECT_TRUE(issues.empty());
    EXPECT_EQ(test.getDurationSeconds(), 900.0);
    test.reset();
    EXPECT_EQ(test.getDurationSeconds(), 600.0);
}

TEST(DurationParameter, ExecutionFlowIsHeldOnceOtherKeysPileUp) {
    ChargeTest test({12, 2, 3});
    std::vector<TestParameterIssue> issues;
    EXPECT_FALSE(test.validateParametersFor({named("execution_flow")}, nullptr, issues));
    test.setParameter(named("COLOUR"));
    test.setParameter(named("COLOUR"));
    test.setParameter(named("execution_flow", 1));
    test.setParameter(named("execution_flow", 2));
    std::vector<TestParameter> held = test.getParameters(nullptr, nullptr, 0);
    ASSERT_EQ(held.size(), 4u);
    EXPECT_EQ(held[0].key, "DURATION");
    EXPECT_EQ(held[1].key, "COLOUR");
    EXPECT_EQ(held[2].key, "COLOUR");
    EXPECT_EQ(held[3].key, "execution_flow");
    EXPECT_EQ(held[3].lastNumber, 2u);
    EXPECT_TRUE(test.validateParametersFor({named("execution_flow")}, nullptr, issues));

    // Any later parameter takes the place of the held flow.
    test.setParameter(named("SPEED"));
    held = test.getParameters(nullptr, nullptr, 0);
    ASSERT_EQ(held.size(), 4u);
    EXPECT_EQ(held[3].key, "SPEED");
    EXPECT_FALSE(test.validateParametersFor({named("execution_flow")}, nullptr, issues));
}

TEST(DurationParameter, JoinedIssuesSkipKindZero) {
    const std::vector<TestParameterIssue> issues = {
        {2, "INVALID_DURATION_PARAMETER", named("A")},
        {0, "IGNORED", named("B")},
        {1, "USE_A_NUMERICAL_VALUE_BETWEEN_5_AND_20", duration("4")}};
    EXPECT_EQ(joinParameterIssues(issues),
              "A: INVALID_DURATION_PARAMETER; |DURATION: USE_A_NUMERICAL_VALUE_BETWEEN_5_AND_20");
    EXPECT_EQ(joinParameterIssues({issues[1]}), "");
}

} // namespace
