#include <gtest/gtest.h>

#include "frame/keys.h"
#include "language.h"

TEST(Language, EveryKeyTheModuleSendsHasAnEnglishText) {
    const Language &english = Language::english();
    for (const std::string &key : keys::allHostKeys()) {
        // A composed key is shown line by line, so each of its lines needs a text.
        for (const std::string &line : english.lines(key, false)) {
            EXPECT_NE(line, key) << "no English text for " << key;
            EXPECT_EQ(line.find('_'), std::string::npos) << key << " shows as " << line;
        }
    }
}

TEST(Language, ComposedLinesAndKeysBesideNumbers) {
    const Language &english = Language::english();
    struct Row {
        const char *text;
        std::vector<std::string> lines;
    };
    const Row rows[] = {
        {"AN_INTERNAL_ERROR_OCCURRED._|THIS_DOES_NOT_INDICATE_A_FAILURE._|PLEASE_TRY_AGAIN.",
         {"An internal error occurred.", "This does not indicate a failure.", "Please try again."}},
        {"TOTAL_BATTERY_CHARGE: 76%", {"Battery charge: 76%"}},
        {"RELATIVE_CAPACITY: 0.45", {"Relative capacity: 0.45"}},
        {"POSSIBLE_DEFECTIVE_COMPONENTS: BATTERY, AC_ADAPTER",
         {"Possibly defective: Battery, AC adapter"}},
        {"THE_TEST_WAS_ABORTED_BECAUSE_THE_BATTERY_REMAINING_CHARGE_IS_ABOVE_THE_FOLLOWING_"
         "THRESHOLD: 93%",
         {"The test was stopped because the battery's charge is above 93%"}},
        {"DURATION: USE_A_NUMERICAL_VALUE_BETWEEN_5_AND_20; |DURATION: INVALID_DURATION_PARAMETER",
         {"Duration: use a whole number from 5 to 20",
          "Duration: This test has no such parameter."}},
        {"11.4 Volts", {"11.4 Volts"}},
    };
    for (const Row &row : rows) {
        EXPECT_EQ(english.lines(row.text, false), row.lines) << row.text;
        EXPECT_EQ(english.lines(row.text, true), std::vector<std::string>{row.text});
    }
}
