#include <gtest/gtest.h>

#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <thread>
#include <utility>
#include <vector>

#include "bus_mock.h"
#include "machine_settings/backlight.h"
#include "testbed.h"

// The display level read from and written to testbed backlights.

using machine_settings::Backlight;

namespace {

struct Device {
    const char *name;
    const char *type;
};

struct ChoiceRow {
    const char *name;
    std::vector<Device> devices;
    const char *chosen; // empty: no display
};

class BacklightChoice : public ::testing::TestWithParam<ChoiceRow> {};

struct LevelRow {
    uint32_t raw;
    uint32_t maximum;
    uint32_t percent;
};

std::string levelName(const ::testing::TestParamInfo<LevelRow> &info) {
    return std::to_string(info.param.raw) + "of" + std::to_string(info.param.maximum) + "is" +
           std::to_string(info.param.percent);
}

class BacklightRead : public ::testing::TestWithParam<LevelRow> {};
class BacklightWrite : public ::testing::TestWithParam<LevelRow> {};

} // namespace

TEST_P(BacklightChoice, PrefersFirmwareThenPlatformThenRaw) {
    Testbed testbed;
    for (const Device &device : GetParam().devices)
        testbed.addBacklight(device.name, device.type, 5, 10);
    const std::optional<Backlight> backlight = Backlight::find();
    EXPECT_EQ(backlight ? backlight->name() : std::string(), GetParam().chosen);
}

INSTANTIATE_TEST_SUITE_P(
    Table, BacklightChoice,
    ::testing::Values(ChoiceRow{"FirmwareFirst",
                                {{"acpi_video0", "firmware"},
                                 {"intel_backlight", "raw"},
                                 {"dell_backlight", "platform"}},
                                "acpi_video0"},
                      ChoiceRow{"PlatformBeforeRaw",
                                {{"intel_backlight", "raw"}, {"thinkpad_screen", "platform"}},
                                "thinkpad_screen"},
                      ChoiceRow{"RawAlone", {{"amdgpu_bl0", "raw"}}, "amdgpu_bl0"},
                      ChoiceRow{"NameOrderWithinAType",
                                {{"nv_backlight", "raw"}, {"intel_backlight", "raw"}},
                                "intel_backlight"},
                      ChoiceRow{"AnUnknownTypeIsNoDisplay", {{"odd", "led"}}, ""},
                      ChoiceRow{"None", {}, ""}),
    [](const ::testing::TestParamInfo<ChoiceRow> &info) { return std::string(info.param.name); });

TEST_P(BacklightRead, PercentIsRounded) {
    Testbed testbed;
    testbed.addBacklight("intel_backlight", "raw", GetParam().raw, GetParam().maximum);
    uint32_t percent = 999;
    ASSERT_TRUE(Backlight::find()->readPercent(percent));
    EXPECT_EQ(percent, GetParam().percent);
}

INSTANTIATE_TEST_SUITE_P(Table, BacklightRead,
                         ::testing::Values(LevelRow{500, 937, 53}, LevelRow{0, 255, 0},
                                           LevelRow{255, 255, 100}, LevelRow{1, 3, 33},
                                           LevelRow{2, 3, 67}, LevelRow{5, 1000, 1},
                                           LevelRow{4, 1000, 0}, LevelRow{120, 100, 100}),
                         levelName);

TEST_P(BacklightWrite, RawIsRounded) {
    Testbed testbed;
    testbed.addBacklight("intel_backlight", "raw", GetParam().maximum, GetParam().maximum);
    std::optional<Backlight> backlight = Backlight::find();
    ASSERT_TRUE(backlight->writePercent(GetParam().percent));
    EXPECT_EQ(testbed.readFile("class/backlight/intel_backlight/brightness"),
              std::to_string(GetParam().raw));
}

INSTANTIATE_TEST_SUITE_P(Table, BacklightWrite,
                         ::testing::Values(LevelRow{497, 937, 53}, LevelRow{40, 100, 40},
                                           LevelRow{8, 15, 50}, LevelRow{0, 937, 0},
                                           LevelRow{19200, 19200, 100},
                                           LevelRow{19200, 19200, 250}),
                         levelName);

TEST(Backlight, TheLevelFoundComesBackExactly) {
    Testbed testbed;
    testbed.addBacklight("intel_backlight", "raw", 500, 937);
    std::optional<Backlight> backlight = Backlight::find();
    ASSERT_TRUE(backlight->writePercent(20));
    EXPECT_EQ(testbed.readFile("class/backlight/intel_backlight/brightness"), "187");
    ASSERT_TRUE(backlight->writePercent(53));
    EXPECT_EQ(testbed.readFile("class/backlight/intel_backlight/brightness"), "500")
        << "53 percent is the level found, not 497";
}

TEST(Backlight, UnreadableFilesGiveNoLevel) {
    const std::pair<const char *, const char *> rows[] = {
        {"abc", "937"}, {"500", "0"}, {"", "937"}, {"500", "-1"}, {"12 34", "100"}};
    for (const auto &row : rows) {
        Testbed testbed;
        testbed.addBacklight("intel_backlight", "raw", 1, 1);
        testbed.writeFile("class/backlight/intel_backlight/brightness", row.first);
        testbed.writeFile("class/backlight/intel_backlight/max_brightness", row.second);
        uint32_t percent = 0;
        EXPECT_FALSE(Backlight::find()->readPercent(percent)) << row.first << " of " << row.second;
        EXPECT_FALSE(Backlight::find()->writePercent(50)) << row.first << " of " << row.second;
    }
}

TEST(Backlight, ANameFromAJournalStaysInTheClassFolder) {
    Testbed testbed;
    testbed.addBacklight("intel_backlight", "raw", 1, 1);
    EXPECT_TRUE(Backlight::named("intel_backlight"));
    for (const char *name : {"", ".", "..", "../backlight/intel_backlight", "missing"}) {
        EXPECT_FALSE(Backlight::named(name)) << name;
    }
}

namespace {

// Runs `work` on a thread of its own that may write only what the files'
// modes allow, as a desktop session's user: without CAP_DAC_OVERRIDE, which
// a test run as root would otherwise have. Capabilities belong to a thread,
// so the rest of the program keeps its own.
template <typename Work> void asUnprivileged(Work work) {
    std::thread([&work] {
        __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
        __user_cap_data_struct data[2] = {};
        ASSERT_EQ(syscall(SYS_capget, &header, data), 0);
        for (__user_cap_data_struct &part : data) part.inheritable = 0;
        data[0].effective &= ~(1u << CAP_DAC_OVERRIDE);
        data[0].permitted &= ~(1u << CAP_DAC_OVERRIDE);
        ASSERT_EQ(syscall(SYS_capset, &header, data), 0);
        work();
    }).join();
}

} // namespace

TEST(Backlight, WithoutWriteAccessLogindSetsTheLevelOfTheOwnSession) {
    Testbed testbed;
    testbed.addBacklight("intel_backlight", "raw", 500, 937);
    const std::string file = testbed.sysFolder() + "/class/backlight/intel_backlight/brightness";
    ASSERT_EQ(chmod(file.c_str(), 0444), 0);
    bus_mock::Service logind("org.freedesktop.login1",
                             {"org.freedesktop.login1", "/org/freedesktop/login1/session/auto",
                              "org.freedesktop.login1.Session"},
                             ::testing::TempDir());
    ASSERT_TRUE(bus_mock::addMethod("org.freedesktop.login1",
                                    "/org/freedesktop/login1/session/auto",
                                    "org.freedesktop.login1.Session", "SetBrightness", "ssu"));
    asUnprivileged([] {
        std::optional<Backlight> backlight = Backlight::find();
        EXPECT_EQ(backlight->route(), Backlight::Route::Logind);
        EXPECT_TRUE(backlight->writePercent(20));
    });
    EXPECT_EQ(logind.calls("SetBrightness"),
              std::vector<std::string>{"SetBrightness \"backlight\" \"intel_backlight\" 187"});
    EXPECT_EQ(testbed.readFile("class/backlight/intel_backlight/brightness"), "500");
}
