#include <gtest/gtest.h>

#include <vector>

#include "bus_mock.h"
#include "machine_settings/power_profile.h"
#include "machine_settings/system_bus.h"
#include "testbed.h"

// The power profile through the firmware's file and through a mock
// power-profiles-daemon on the private bus.

using machine_settings::PowerProfile;
using machine_settings::Scheme;

namespace {

constexpr const char *kProfile = "firmware/acpi/platform_profile";
constexpr const char *kChoices = "firmware/acpi/platform_profile_choices";

struct ReadRow {
    const char *file;
    Scheme scheme;
};

class PlatformProfileRead : public ::testing::TestWithParam<ReadRow> {};

struct WriteRow {
    const char *name;
    const char *choices; // nullptr: no choices file
    Scheme scheme;
    const char *written; // nullptr: refused, the file unchanged
};

class PlatformProfileWrite : public ::testing::TestWithParam<WriteRow> {};

// The module's scheme calls in order, and what the daemon is asked.
struct DaemonRow {
    const char *name;
    const char *active;
    std::vector<Scheme> applied;
    std::vector<std::string> calls;
    const char *activeAfter;
};

class DaemonMapping : public ::testing::TestWithParam<DaemonRow> {};

std::string activeProfile() {
    std::string name;
    machine_settings::SystemBus::instance().getString(
        "net.hadess.PowerProfiles", "/net/hadess/PowerProfiles", "net.hadess.PowerProfiles",
        "ActiveProfile", name);
    return name;
}

bus_mock::Service daemonMock(const std::string &active) {
    return bus_mock::Service(
        "net.hadess.PowerProfiles",
        {"-t", "power_profiles_daemon", "-p", "{\"ActiveProfile\": \"" + active + "\"}"},
        ::testing::TempDir());
}

} // namespace

TEST_P(PlatformProfileRead, NamesMapOntoSchemes) {
    Testbed testbed;
    testbed.writeFile(kProfile, std::string(GetParam().file) + "\n");
    std::unique_ptr<PowerProfile> profile = PowerProfile::find();
    ASSERT_TRUE(profile);
    EXPECT_EQ(profile->source(), "platform_profile");
    Scheme scheme = Scheme::Balanced;
    ASSERT_TRUE(profile->readScheme(scheme));
    EXPECT_EQ(scheme, GetParam().scheme);
}

INSTANTIATE_TEST_SUITE_P(Table, PlatformProfileRead,
                         ::testing::Values(ReadRow{"performance", Scheme::HighPerformance},
                                           ReadRow{"balanced", Scheme::Balanced},
                                           ReadRow{"low-power", Scheme::PowerSaver},
                                           ReadRow{"quiet", Scheme::PowerSaver},
                                           ReadRow{"cool", Scheme::PowerSaver},
                                           ReadRow{"balanced-performance", Scheme::Custom},
                                           ReadRow{"custom", Scheme::Custom}),
                         [](const ::testing::TestParamInfo<ReadRow> &info) {
                             std::string name = info.param.file;
                             for (char &c : name) c = c == '-' ? '_' : c;
                             return name;
                         });

TEST_P(PlatformProfileWrite, TheFirstOfferedNameIsWritten) {
    Testbed testbed;
    testbed.writeFile(kProfile, "balanced-performance\n");
    if (GetParam().choices != nullptr) testbed.writeFile(kChoices, GetParam().choices);
    std::unique_ptr<PowerProfile> profile = PowerProfile::find();
    ASSERT_TRUE(profile);
    EXPECT_EQ(profile->apply(GetParam().scheme), GetParam().written != nullptr);
    EXPECT_EQ(testbed.readFile(kProfile),
              GetParam().written != nullptr ? GetParam().written : "balanced-performance");
}

INSTANTIATE_TEST_SUITE_P(
    Table, PlatformProfileWrite,
    ::testing::Values(
        WriteRow{"Performance", "low-power balanced performance\n", Scheme::HighPerformance,
                 "performance"},
        WriteRow{"Balanced", "low-power balanced performance\n", Scheme::Balanced, "balanced"},
        WriteRow{"LowPower", "cool quiet low-power balanced\n", Scheme::PowerSaver, "low-power"},
        WriteRow{"QuietBeforeCool", "cool quiet balanced performance\n", Scheme::PowerSaver,
                 "quiet"},
        WriteRow{"Cool", "cool balanced performance\n", Scheme::PowerSaver, "cool"},
        WriteRow{"NoSaverOffered", "balanced balanced-performance performance\n",
                 Scheme::PowerSaver, nullptr},
        WriteRow{"NoPerformanceOffered", "low-power balanced\n", Scheme::HighPerformance, nullptr},
        WriteRow{"NoBalancedOffered", "quiet performance\n", Scheme::Balanced, nullptr},
        WriteRow{"NoChoicesFile", nullptr, Scheme::Balanced, nullptr},
        WriteRow{"OwnCannotBeNamed", "balanced-performance balanced\n", Scheme::Custom, nullptr}),
    [](const ::testing::TestParamInfo<WriteRow> &info) { return std::string(info.param.name); });

TEST(PowerProfile, WithNeitherSourceTheQueryFails) {
    Testbed testbed;
    EXPECT_FALSE(PowerProfile::find());
}

TEST(PowerProfile, TheDaemonComesBeforeTheFirmwareFile) {
    Testbed testbed;
    testbed.writeFile(kProfile, "quiet\n");
    bus_mock::Service daemon = daemonMock("power-saver");
    std::unique_ptr<PowerProfile> profile = PowerProfile::find();
    ASSERT_TRUE(profile);
    EXPECT_EQ(profile->source(), "power-profiles-daemon");
    std::string name;
    ASSERT_TRUE(profile->readName(name));
    EXPECT_EQ(name, "power-saver");
}

TEST_P(DaemonMapping, SchemesAreHeldAndReleased) {
    bus_mock::Service daemon = daemonMock(GetParam().active);
    std::unique_ptr<PowerProfile> profile = machine_settings::newDaemonProfile();
    for (Scheme scheme : GetParam().applied) EXPECT_TRUE(profile->apply(scheme));
    EXPECT_EQ(daemon.calls(std::vector<std::string>{"HoldProfile", "ReleaseProfile", "Set"}),
              GetParam().calls);
    EXPECT_EQ(activeProfile(), GetParam().activeAfter);
}

const char *const kSetBalanced =
    "Set /net/hadess/PowerProfiles net.hadess.PowerProfiles.ActiveProfile \"balanced\"";

INSTANTIATE_TEST_SUITE_P(
    Table, DaemonMapping,
    ::testing::Values(
        DaemonRow{"DischargeFromBalanced",
                  "balanced",
                  {Scheme::HighPerformance, Scheme::Balanced},
                  {"HoldProfile \"performance\" \"battery diagnostic running\" \"battery_host\"",
                   "ReleaseProfile 1"},
                  "balanced"},
        DaemonRow{"DischargeFromPowerSaver",
                  "power-saver",
                  {Scheme::HighPerformance, Scheme::PowerSaver},
                  {"HoldProfile \"performance\" \"battery diagnostic running\" \"battery_host\"",
                   "ReleaseProfile 1"},
                  "power-saver"},
        DaemonRow{"SaverFromPerformance",
                  "performance",
                  {Scheme::PowerSaver, Scheme::HighPerformance},
                  {"HoldProfile \"power-saver\" \"battery diagnostic running\" \"battery_host\"",
                   "ReleaseProfile 1"},
                  "performance"},
        DaemonRow{"OneHoldReplacesAnother",
                  "balanced",
                  {Scheme::HighPerformance, Scheme::PowerSaver, Scheme::Balanced},
                  {"HoldProfile \"performance\" \"battery diagnostic running\" \"battery_host\"",
                   "HoldProfile \"power-saver\" \"battery diagnostic running\" \"battery_host\"",
                   "ReleaseProfile 1", "ReleaseProfile 2"},
                  "balanced"},
        // Balanced cannot be held: it is set, and the hold on another goes.
        DaemonRow{"BalancedWhileHoldingLetsTheHoldGo",
                  "power-saver",
                  {Scheme::HighPerformance, Scheme::Balanced},
                  {"HoldProfile \"performance\" \"battery diagnostic running\" \"battery_host\"",
                   "ReleaseProfile 1", kSetBalanced},
                  "balanced"},
        DaemonRow{"TheActiveProfileIsLeftAlone", "balanced", {Scheme::Balanced}, {}, "balanced"},
        DaemonRow{"BalancedCannotBeHeldSoItIsSet",
                  "performance",
                  {Scheme::Balanced},
                  {kSetBalanced},
                  "balanced"}),
    [](const ::testing::TestParamInfo<DaemonRow> &info) { return std::string(info.param.name); });

TEST(PowerProfile, AScopeTheDaemonCannotNameIsRefused) {
    bus_mock::Service daemon = daemonMock("balanced");
    std::unique_ptr<PowerProfile> profile = machine_settings::newDaemonProfile();
    EXPECT_FALSE(profile->apply(Scheme::Custom));
    EXPECT_TRUE(daemon.calls(std::vector<std::string>{"HoldProfile", "Set"}).empty());
}
