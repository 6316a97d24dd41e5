#include <gtest/gtest.h>

#include <array>

#include "machine_settings/settings_answers.h"
#include "testbed.h"

// The Windows display and scheme requests answered from a testbed.

using machine_settings::DisplayAnswer;
using machine_settings::Scheme;
using machine_settings::SchemeAnswer;

namespace {

constexpr const char *kBrightness = "class/backlight/intel_backlight/brightness";

struct DisplayRow {
    const char *name;
    uint32_t code;
    std::array<uint8_t, 3> input;
    uint32_t inputSize;
    uint32_t outputSize;
    uint32_t error;
    std::array<uint8_t, 3> output; // what a query gives
    const char *raw;               // the device's level afterwards
};

class DisplayRequests : public ::testing::TestWithParam<DisplayRow> {};

constexpr uint32_t kQuery = DisplayAnswer::kQueryBrightness;
constexpr uint32_t kSet = DisplayAnswer::kSetBrightness;

} // namespace

TEST_P(DisplayRequests, AnswerFromTheOneLevel) {
    Testbed testbed;
    testbed.addBacklight("intel_backlight", "raw", 500, 937);
    DisplayAnswer display;
    ASSERT_EQ(display.open(), 0u);
    std::array<uint8_t, 3> output = {};
    uint32_t returned = 99;
    const DisplayRow &row = GetParam();
    EXPECT_EQ(display.control(row.code, row.input.data(), row.inputSize, output.data(),
                              row.outputSize, &returned),
              row.error);
    EXPECT_EQ(output, row.output);
    EXPECT_EQ(returned, row.code == kQuery && row.error == 0 ? 3u : 0u);
    EXPECT_EQ(testbed.readFile(kBrightness), row.raw);
}

INSTANTIATE_TEST_SUITE_P(
    Table, DisplayRequests,
    ::testing::Values(DisplayRow{"QueryGivesItAsBoth", kQuery, {}, 0, 3, 0, {3, 53, 53}, "500"},
                      DisplayRow{"QueryShortBuffer", kQuery, {}, 0, 2, 122, {}, "500"},
                      DisplayRow{"SetBoth", kSet, {3, 40, 40}, 3, 0, 0, {}, "375"},
                      DisplayRow{"SetAcNamesTheAcLevel", kSet, {1, 40, 90}, 3, 0, 0, {}, "375"},
                      DisplayRow{"SetBatteryAlone", kSet, {2, 90, 30}, 3, 0, 0, {}, "281"},
                      DisplayRow{"SetNoPolicy", kSet, {0, 40, 40}, 3, 0, 87, {}, "500"},
                      DisplayRow{"SetAboveHundred", kSet, {3, 101, 40}, 3, 0, 87, {}, "500"},
                      DisplayRow{"SetShortInput", kSet, {3, 40, 40}, 2, 0, 87, {}, "500"},
                      DisplayRow{"OtherRequest", 0x230494, {}, 0, 3, 1, {}, "500"}),
    [](const ::testing::TestParamInfo<DisplayRow> &info) { return std::string(info.param.name); });

TEST(DisplayAnswer, NoBacklightIsNoDisplay) {
    Testbed testbed;
    DisplayAnswer display;
    EXPECT_EQ(display.open(), 2u);
    uint8_t output[3] = {};
    EXPECT_EQ(display.control(kQuery, nullptr, 0, output, 3, nullptr), 2u);
}

TEST(SchemeAnswer, FromThePlatformProfileOrNothing) {
    {
        Testbed testbed;
        SchemeAnswer none;
        Scheme scheme = Scheme::Balanced;
        EXPECT_EQ(none.active(scheme), 50u) << "neither source: the query fails";
        EXPECT_EQ(none.set(Scheme::Balanced), 50u);
        EXPECT_EQ(none.source(), "");
    }
    Testbed testbed;
    testbed.writeFile("firmware/acpi/platform_profile", "quiet\n");
    testbed.writeFile("firmware/acpi/platform_profile_choices", "quiet balanced performance\n");
    SchemeAnswer answer;
    Scheme scheme = Scheme::Balanced;
    ASSERT_EQ(answer.active(scheme), 0u);
    EXPECT_EQ(scheme, Scheme::PowerSaver);
    EXPECT_EQ(answer.set(Scheme::HighPerformance), 0u);
    EXPECT_EQ(testbed.readFile("firmware/acpi/platform_profile"), "performance");
    EXPECT_EQ(answer.set(Scheme::Own), 31u);
    EXPECT_EQ(answer.source(), "platform_profile");
}
