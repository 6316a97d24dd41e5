#include <gtest/gtest.h>

#include <ntddvdeo.h>
#include <windows.h>

#include <array>

#include "platform_layer/this_machine.h"
#include "testbed.h"

// This machine's display and power scheme as the Windows names give them,
// answered from a testbed's backlight and platform profile.

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

class DisplayRequests : public ::testing::TestWithParam<DisplayRow> {
protected:
    void SetUp() override { platform_layer::useMachine(&platform_layer::thisMachine()); }
    void TearDown() override { platform_layer::useMachine(nullptr); }
};

constexpr uint32_t kQuery = IOCTL_VIDEO_QUERY_DISPLAY_BRIGHTNESS;
constexpr uint32_t kSet = IOCTL_VIDEO_SET_DISPLAY_BRIGHTNESS;

HANDLE openDisplay() {
    return CreateFileA("\\\\.\\LCD", GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0,
                       nullptr);
}

} // namespace

TEST_P(DisplayRequests, AnswerFromTheOneLevel) {
    Testbed testbed;
    testbed.addBacklight("intel_backlight", "raw", 500, 937);
    HANDLE display = openDisplay();
    ASSERT_NE(display, INVALID_HANDLE_VALUE);
    std::array<uint8_t, 3> output = {};
    DWORD returned = 99;
    const DisplayRow &row = GetParam();
    std::array<uint8_t, 3> input = row.input;
    const BOOL done = DeviceIoControl(display, row.code, input.data(), row.inputSize, output.data(),
                                      row.outputSize, &returned, nullptr);
    EXPECT_EQ(done ? 0u : GetLastError(), row.error);
    EXPECT_EQ(output, row.output);
    EXPECT_EQ(returned, row.code == kQuery && row.error == 0 ? 3u : 0u);
    EXPECT_EQ(testbed.readFile(kBrightness), row.raw);
    EXPECT_TRUE(CloseHandle(display));
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

TEST(ThisMachineSettings, NoBacklightIsNoDisplay) {
    Testbed testbed;
    platform_layer::useMachine(&platform_layer::thisMachine());
    EXPECT_EQ(openDisplay(), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    platform_layer::useMachine(nullptr);
}

TEST(ThisMachineSettings, SchemeFromThePlatformProfileOrNothing) {
    using platform_layer::PowerScheme;
    platform_layer::Machine &machine = platform_layer::thisMachine();
    {
        Testbed testbed;
        PowerScheme scheme = PowerScheme::Balanced;
        EXPECT_EQ(machine.activeScheme(&scheme), 50u) << "neither source: the query fails";
        EXPECT_EQ(machine.setActiveScheme(PowerScheme::Balanced), 50u);
    }
    Testbed testbed;
    testbed.writeFile("firmware/acpi/platform_profile", "quiet\n");
    testbed.writeFile("firmware/acpi/platform_profile_choices", "quiet balanced performance\n");
    PowerScheme scheme = PowerScheme::Balanced;
    ASSERT_EQ(machine.activeScheme(&scheme), 0u);
    EXPECT_EQ(scheme, PowerScheme::PowerSaver);
    EXPECT_EQ(machine.setActiveScheme(PowerScheme::HighPerformance), 0u);
    EXPECT_EQ(testbed.readFile("firmware/acpi/platform_profile"), "performance");
    EXPECT_EQ(machine.setActiveScheme(PowerScheme::Custom), 31u);
}
