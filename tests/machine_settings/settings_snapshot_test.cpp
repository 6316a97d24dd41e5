#include <gtest/gtest.h>

#include "bus_mock.h"
#include "machine_settings/backlight.h"
#include "machine_settings/power_profile.h"
#include "machine_settings/settings_snapshot.h"
#include "testbed.h"

// What a journal records before a run, and putting it back after a run that
// died with the machine changed.

using machine_settings::Scheme;

namespace {
constexpr const char *kBrightness = "class/backlight/intel_backlight/brightness";
constexpr const char *kProfile = "firmware/acpi/platform_profile";
} // namespace

TEST(SettingsSnapshot, TheFirmwareMachineComesBack) {
    Testbed testbed;
    testbed.addBacklight("intel_backlight", "raw", 500, 937);
    testbed.writeFile(kProfile, "balanced-performance\n");
    testbed.writeFile("firmware/acpi/platform_profile_choices",
                      "low-power balanced balanced-performance performance\n");
    const machine_settings::SettingsSnapshot found = machine_settings::takeSnapshot();
    EXPECT_EQ(found.backlight, "intel_backlight");
    EXPECT_EQ(found.brightness, 500u);
    EXPECT_EQ(found.profileSource, "platform_profile");
    EXPECT_EQ(found.profile, "balanced-performance");

    ASSERT_TRUE(machine_settings::Backlight::find()->writePercent(20));
    ASSERT_TRUE(machine_settings::PowerProfile::find()->apply(Scheme::HighPerformance));
    const std::vector<std::string> lines = machine_settings::putBack(found);
    EXPECT_EQ(testbed.readFile(kBrightness), "500");
    EXPECT_EQ(testbed.readFile(kProfile), "balanced-performance");
    EXPECT_EQ(lines, (std::vector<std::string>{
                         "backlight intel_backlight put back to 500 of 937 (was 187)",
                         "power profile put back to balanced-performance through "
                         "platform_profile (was performance)"}));
    EXPECT_TRUE(machine_settings::putBack(found).empty()) << "nothing left to put back";
}

TEST(SettingsSnapshot, TheDaemonsProfileComesBack) {
    Testbed testbed;
    bus_mock::Service daemon("net.hadess.PowerProfiles", {"-t", "power_profiles_daemon"},
                             ::testing::TempDir());
    const machine_settings::SettingsSnapshot found = machine_settings::takeSnapshot();
    EXPECT_EQ(found.backlight, "") << "no display";
    EXPECT_EQ(found.profileSource, "power-profiles-daemon");
    EXPECT_EQ(found.profile, "balanced");
    ASSERT_TRUE(machine_settings::newDaemonProfile()->restoreName("power-saver"));
    EXPECT_EQ(machine_settings::putBack(found),
              std::vector<std::string>{"power profile put back to balanced through "
                                       "power-profiles-daemon (was power-saver)"});
    std::string now;
    ASSERT_TRUE(machine_settings::newDaemonProfile()->readName(now));
    EXPECT_EQ(now, "balanced");
}

TEST(SettingsSnapshot, WhatIsGoneIsSaidAndLeft) {
    Testbed testbed;
    machine_settings::SettingsSnapshot found;
    found.backlight = "intel_backlight";
    found.brightness = 500;
    found.profileSource = "platform_profile";
    found.profile = "quiet";
    EXPECT_EQ(machine_settings::putBack(found),
              (std::vector<std::string>{
                  "backlight intel_backlight is gone; its level is left as it is",
                  "platform_profile does not answer; the power profile is left as it is"}));
    // A name the firmware does not offer, as a journal edited by hand may
    // hold, is never written into its file.
    testbed.writeFile(kProfile, "balanced\n");
    testbed.writeFile("firmware/acpi/platform_profile_choices", "balanced performance\n");
    found.backlight.clear();
    EXPECT_EQ(machine_settings::putBack(found),
              std::vector<std::string>{
                  "could not put back power profile quiet through platform_profile"});
    EXPECT_EQ(testbed.readFile(kProfile), "balanced");
}
