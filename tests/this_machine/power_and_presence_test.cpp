// The power line, the batteries the device setup lists, and that every
// request reads the machine as it is then.

#include <gtest/gtest.h>

#include "this_machine/this_machine_fixture.h"

namespace {

std::string powerLine() {
    SYSTEM_POWER_STATUS status = {};
    if (!GetSystemPowerStatus(&status)) return "fails";
    return "ac=" + std::to_string(status.ACLineStatus) +
           " flag=" + std::to_string(status.BatteryFlag) +
           " percent=" + std::to_string(status.BatteryLifePercent);
}

struct PowerRow {
    const char *name;
    const char *testbed;
    const char *supply; // changed before the reading, or ""
    const char *attribute;
    const char *text; // null: the attribute is taken away
    size_t batteries; // device interfaces listed
    const char *power;
};

class PowerAndPresence : public ThisMachineTest, public ::testing::WithParamInterface<PowerRow> {};

} // namespace

TEST_P(PowerAndPresence, FollowTheSupplies) {
    const PowerRow &row = GetParam();
    Testbed testbed(row.testbed);
    ASSERT_TRUE(testbed.ok());
    if (*row.supply != '\0' && row.text != nullptr)
        testbed.set(row.supply, row.attribute, row.text);
    if (*row.supply != '\0' && row.text == nullptr) testbed.remove(row.supply, row.attribute);
    EXPECT_EQ(platform_layer::currentMachine().batteryDevices().size(), row.batteries);
    EXPECT_EQ(powerLine(), row.power);
}

INSTANTIATE_TEST_SUITE_P(
    Testbeds, PowerAndPresence,
    ::testing::Values(
        // High and charging on AC; the kernel's capacity wins over energy.
        PowerRow{"OnAcCharging", "energy-with-adapter", "", "", "", 1, "ac=1 flag=9 percent=76"},
        PowerRow{"ChargeReporting", "charge-reporting", "", "", "", 1, "ac=1 flag=1 percent=100"},
        // The mean of both batteries.
        PowerRow{"MeanOfTwo", "two-batteries", "", "", "", 2, "ac=0 flag=1 percent=75"},
        // The mouse's 70 percent does not count.
        PowerRow{"MouseIgnored", "peripheral-battery", "", "", "", 1, "ac=0 flag=1 percent=100"},
        // The empty slot is listed but has no charge.
        PowerRow{"EmptySlot", "empty-slot", "", "", "", 2, "ac=0 flag=1 percent=100"},
        // Without capacity: energy now against full.
        PowerRow{"EnergyAgainstFull", "sparse-battery", "", "", "", 1, "ac=0 flag=1 percent=88"},
        // A gauge that reads above full still gives a whole battery.
        PowerRow{"EnergyAboveFull", "sparse-battery", "BAT0", "energy_now", "50000000", 1,
                 "ac=0 flag=1 percent=100"},
        PowerRow{"Critical", "sparse-battery", "BAT0", "energy_now", "1000000", 1,
                 "ac=0 flag=4 percent=2"},
        PowerRow{"EnergyAtTheTopOf64Bits", "sparse-battery", "BAT0", "energy_now",
                 "9223372036854775807", 1, "ac=0 flag=1 percent=100"},
        PowerRow{"NoSystemBattery", "peripheral-battery", "BAT0", "scope", "Device", 0,
                 "ac=0 flag=128 percent=255"},
        // A USB-C supply is the adapter as much as a mains one.
        PowerRow{"UsbAdapterOnLine", "energy-with-adapter", "AC", "type", "USB", 1,
                 "ac=1 flag=9 percent=76"},
        // A supply that has no present attribute is there.
        PowerRow{"NoPresentAttribute", "two-batteries", "BAT1", "present", nullptr, 2,
                 "ac=0 flag=1 percent=75"},
        PowerRow{"CablePlugged", "two-batteries", "AC", "online", "1", 2, "ac=1 flag=9 percent=75"},
        PowerRow{"OnlineInWords", "two-batteries", "AC", "online", "yes", 2, "fails"},
        // A battery's percent that cannot be right falls back to its energy
        // now against full; the AC line stays whatever it says.
        PowerRow{"PercentBeyondHundred", "two-batteries", "BAT1", "capacity", "151", 2,
                 "ac=0 flag=1 percent=75"},
        PowerRow{"PercentNotANumber", "two-batteries", "BAT1", "capacity", "-NaN", 2,
                 "ac=0 flag=1 percent=75"}),
    [](const auto &info) { return std::string(info.param.name); });

TEST_F(ThisMachineTest, EveryRequestReadsTheMachineAsItIsThen) {
    Testbed testbed("energy-with-adapter");
    ASSERT_TRUE(testbed.ok());
    EXPECT_EQ(powerLine(), "ac=1 flag=9 percent=76");
    testbed.set("AC", "online", "0");
    EXPECT_EQ(powerLine(), "ac=0 flag=1 percent=76") << "the cable was pulled";
    const std::string before = driverView("sbs-0-000b");
    testbed.set("sbs-0-000b", "present", "0");
    EXPECT_EQ(driverView("sbs-0-000b"), "no tag") << "the battery was taken out";
    testbed.set("sbs-0-000b", "present", "1");
    EXPECT_EQ(driverView("sbs-0-000b"), before);
}

TEST_F(ThisMachineTest, NoAttributeIsReadTwiceInOneRequest) {
    Testbed testbed("two-batteries");
    ASSERT_TRUE(testbed.ok());
    const platform_layer::SysfsReadCounts before = platform_layer::sysfsReadCounts();
    driverView("BAT0");
    powerLine();
    const platform_layer::SysfsReadCounts after = platform_layer::sysfsReadCounts();
    EXPECT_GT(after.reads, before.reads);
    EXPECT_EQ(after.repeatedReads, before.repeatedReads);
}
