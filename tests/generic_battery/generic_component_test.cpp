#include <gtest/gtest.h>

#include <memory>
#include <tuple>

#include "generic_battery/generic_battery_component_manager.h"
#include "generic_battery/generic_battery_component_windows.h"
#include "generic_fixture.h"
#include "support/properties.h"

namespace {

GenericBatteryComponentWindows *componentOf(GenericBatteryComponentManager &manager) {
    return dynamic_cast<GenericBatteryComponentWindows *>(manager.getComponent(0));
}

TEST(GenericManager, StartsEmptyAndBuildsOneComponentForTwoBatteries) {
    useScenario("generic-two-batteries");
    GenericBatteryComponentManager manager({12, 0, 0});
    EXPECT_EQ(manager.getComponentCount(), 0u);
    EXPECT_EQ(manager.getComponent(0), nullptr);
    manager.refreshComponents();
    ASSERT_EQ(manager.getComponentCount(), 1u);
    EXPECT_EQ(manager.getComponent(1), nullptr);
    EXPECT_EQ(manager.getRefreshedComponent(0), manager.getComponent(0));

    SystemComponent *component = manager.getComponent(0);
    EXPECT_EQ(component->getIndex(), "0");
    const ComponentInfo info = component->getInfo();
    EXPECT_EQ(info.name, "BATTERY");
    EXPECT_EQ(joined(info.properties), "UDI=bat");
    const auto groups = component->getInfoGroups();
    ASSERT_EQ(groups.size(), 2u);
    EXPECT_EQ(groups[0].name, "BATTERY");
    EXPECT_EQ(joined(groups[0].properties),
              "INDEX=0|NAME=OS-4C57|CHEMISTRY=LITHIUM_ION|MANUFACTURER=Ostrelle|"
              "SERIAL_NUMBER=4711|DESIGN_VOLTAGE=11.4 Volts|"
              "FULL_CHARGE_CAPACITY=54.1 Wh (4745 mAh)|DESIGN_CAPACITY=57.24 Wh (5021 mAh)|"
              "DRIVER_VERSION=10.0.22621.2506");
    const auto &second = groups[1].properties;
    EXPECT_EQ(joined({second.at(0), second.at(2)}), "INDEX=1|CHEMISTRY=NICKEL_METAL_HYDRIDE");
}

TEST(GenericManager, ChargeEntriesAndTheTruncatingMean) {
    useScenario("generic-two-batteries");
    GenericBatteryComponentManager manager({12, 0, 0});
    manager.refreshComponents();
    GenericBatteryComponentWindows *component = componentOf(manager);
    ASSERT_NE(component, nullptr);

    std::vector<BatteryChargeEntry> charges;
    ASSERT_EQ(component->getBatteryCharges(charges), 0u);
    ASSERT_EQ(charges.size(), 2u);
    EXPECT_NEAR(charges[0].percent, 55.7, 0.01);
    EXPECT_EQ(charges[0].serialNumber, "4711");
    EXPECT_NEAR(charges[1].percent, 60.2, 0.01);
    EXPECT_EQ(charges[1].serialNumber, "815");

    double mean = 0;
    ASSERT_EQ(component->getAverageChargePercent(mean), 0u);
    EXPECT_DOUBLE_EQ(mean, 57.5);
    double percent = 0;
    EXPECT_EQ(component->getChargePercent(percent), 0u);
    EXPECT_DOUBLE_EQ(percent, 57.5);

    bool present = false;
    EXPECT_EQ(component->isBatteryPresent(present), 0u);
    EXPECT_TRUE(present);
    EXPECT_EQ(component->refreshCapacities(), 0u);
}

TEST(GenericManager, AFailingDeviceGivesTheSystemFigure) {
    useScenarioText(oneBattery(R"(, "driver": {"vanishAfterRequests": 12})"));
    GenericBatteryComponentManager manager({12, 0, 0});
    manager.refreshComponents();
    GenericBatteryComponentWindows *component = componentOf(manager);
    ASSERT_NE(component, nullptr);
    std::vector<BatteryChargeEntry> charges;
    EXPECT_EQ(component->getBatteryCharges(charges), 1u);
    double percent = 0;
    EXPECT_EQ(component->getChargePercent(percent), 0u);
    EXPECT_DOUBLE_EQ(percent, 76.0);
    bool present = true;
    EXPECT_EQ(component->isBatteryPresent(present), 0u);
    EXPECT_FALSE(present) << "the battery has gone";
    EXPECT_EQ(component->refreshCapacities(), 38u);
    EXPECT_EQ(component->getBatteries().at(0).fullChargeCapacity, 0u);
}

// One failing device of two: the presence walk goes on past it, the other's
// capacities are read anew, and the charge is the operating system's figure
// (the mean of 40 and 80), not the other battery's.
TEST(GenericManager, OneFailingDeviceOfTwo) {
    useScenarioText(twoBatteries(R"("driver": {"tagFails": true})", ""));
    GenericBatteryComponentManager manager({12, 0, 0});
    manager.refreshComponents();
    GenericBatteryComponentWindows *component = componentOf(manager);
    ASSERT_NE(component, nullptr);
    ASSERT_EQ(component->getBatteries().size(), 2u);
    bool present = false;
    EXPECT_EQ(component->isBatteryPresent(present), 0u);
    EXPECT_TRUE(present);
    EXPECT_EQ(component->refreshCapacities(), 0u) << "the last device's result";
    EXPECT_EQ(component->getBatteries().at(1).fullChargeCapacity, 54100u);
    double percent = 0;
    EXPECT_EQ(component->getChargePercent(percent), 0u);
    EXPECT_DOUBLE_EQ(percent, 60.0);
}

// A battery behind the second interface of a device is found although the
// first interface's presence query fails.
TEST(GenericManager, LooksAtEveryPathOfADevice) {
    useScenarioText(
        twoBatteries(R"("driver": {"tagFails": true})", R"("driver": {"sharesDeviceOfSlot": 0})"));
    GenericBatteryComponentManager manager({12, 0, 0});
    EXPECT_TRUE(manager.isBatteryAvailable());
}

TEST(GenericManager, DropsABatteryThatVanishesDuringTheScan) {
    useScenario("generic-vanishing-battery");
    GenericBatteryComponentManager manager({12, 0, 0});
    const uint64_t before = openHandles();
    manager.refreshComponents();
    ASSERT_EQ(manager.getComponentCount(), 1u);
    EXPECT_EQ(manager.getComponent(0)->getInfoGroups().size(), 1u);
    EXPECT_EQ(openHandles(), before + 1) << "only the kept battery's device stays open";
}

TEST(GenericManager, WithoutABatteryKeepsWhatItHad) {
    useScenario("generic-no-battery");
    GenericBatteryComponentManager empty({12, 0, 0});
    EXPECT_FALSE(empty.isBatteryAvailable());
    empty.refreshComponents();
    EXPECT_EQ(empty.getComponentCount(), 0u);

    useScenario("generic");
    GenericBatteryComponentManager manager({12, 0, 0});
    manager.refreshComponents();
    SystemComponent *first = manager.getComponent(0);
    ASSERT_NE(first, nullptr);
    useScenarioText(oneBattery(R"(, "present": false)"));
    manager.refreshComponents();
    EXPECT_EQ(manager.getComponent(0), first);
}

TEST(GenericManager, ARefreshReplacesTheComponentAndItsDevices) {
    useScenario("generic");
    const uint64_t before = openHandles();
    {
        GenericBatteryComponentManager manager({12, 0, 0});
        manager.refreshComponents();
        EXPECT_EQ(openHandles(), before + 1);
        manager.refreshComponents();
        EXPECT_EQ(manager.getComponentCount(), 1u);
        EXPECT_EQ(openHandles(), before + 1) << "the old component's device was closed";
    }
    EXPECT_EQ(openHandles(), before);
}

TEST(GenericManager, FaultyDriverShowsWhatItCan) {
    useScenario("generic-faulty-driver");
    GenericBatteryComponentManager manager({12, 0, 0});
    manager.refreshComponents();
    ASSERT_EQ(manager.getComponentCount(), 1u);
    EXPECT_EQ(joined(manager.getComponent(0)->getInfoGroups().at(0).properties),
              "INDEX=0|NAME=NOT_AVAILABLE|CHEMISTRY=LITHIUM_ION|MANUFACTURER=NOT_AVAILABLE|"
              "SERIAL_NUMBER=NOT_AVAILABLE|DESIGN_VOLTAGE=NOT_AVAILABLE|"
              "FULL_CHARGE_CAPACITY=NOT_AVAILABLE|DESIGN_CAPACITY=NOT_AVAILABLE");
}

// Properties from records alone, without devices.
// Voltage and capacities from records alone, without devices: a relative
// battery has no capacities, a voltage that is no number no milliamp-hours.
TEST(GenericComponent, ShowsVoltageAndCapacitiesAsTheRecordAllows) {
    const std::string usable = "FULL_CHARGE_CAPACITY=45.12 Wh (3957 mAh)|"
                               "DESIGN_CAPACITY=48 Wh (4210 mAh)";
    const std::string noMilliamps = "FULL_CHARGE_CAPACITY=45.12 Wh (0 mAh)|"
                                    "DESIGN_CAPACITY=48 Wh (0 mAh)";
    const std::tuple<uint32_t, std::string, std::string> rows[] = {
        {0, "11400", "DESIGN_VOLTAGE=11.4 Volts|" + usable},
        {1, "11400",
         "DESIGN_VOLTAGE=11.4 Volts|FULL_CHARGE_CAPACITY=NOT_AVAILABLE|"
         "DESIGN_CAPACITY=NOT_AVAILABLE"},
        {0, "0", noMilliamps},
        {0, "abc", noMilliamps},
        {0, "", "DESIGN_VOLTAGE=NOT_AVAILABLE|" + noMilliamps}};
    for (const auto &[capabilities, voltage, tail] : rows) {
        GenericBatteryInfo record;
        record.capabilities = capabilities;
        record.designVoltage = voltage;
        record.designCapacity = 48000;
        record.fullChargeCapacity = 45120;
        GenericBatteryComponentWindows component;
        component.setBatteries({record});
        component.GenericBatteryComponent::buildProperties();
        const auto properties = component.getInfoGroups().at(0).properties;
        ASSERT_GE(properties.size(), 5u);
        // From DESIGN_VOLTAGE on, after index, name, chemistry, maker and serial.
        EXPECT_EQ(joined({properties.begin() + 5, properties.end()}), tail) << voltage;
    }
}

TEST(GenericComponent, AComponentWithoutDevicesAnswersAsItMust) {
    GenericBatteryComponentWindows component;
    bool present = true;
    EXPECT_EQ(component.isBatteryPresent(present), 0u);
    EXPECT_TRUE(present) << "untouched";
    double percent = -1;
    EXPECT_EQ(component.getAverageChargePercent(percent), 1u);
    std::vector<BatteryChargeEntry> charges{{1.0, "x"}};
    EXPECT_EQ(component.getBatteryCharges(charges), 0u);
    EXPECT_TRUE(charges.empty());
    EXPECT_EQ(component.refreshCapacities(), 0u);
    EXPECT_EQ(GenericBatteryComponent::milliampHours(48000, 0), 0);
    // In double and truncated: 30400 / 7.6 lies just below 4000.
    EXPECT_EQ(GenericBatteryComponent::milliampHours(30400, 7600), 3999);
}

// The line status 255 is unknown: a failure that leaves the answer alone,
// not a machine off AC power.
TEST(GenericComponent, AnUnknownAcLineIsAFailureNotOff) {
    const std::tuple<std::string, uint32_t, bool> rows[] = {
        {R"(, "power": {"ac": true})", 0, true},
        {R"(, "power": {"ac": false})", 0, false},
        {R"(, "power": {"ac": false, "faults": ["ac-line-unknown"]})", 1, true}};
    for (const auto &[power, result, onAc] : rows) {
        useScenarioText(oneBattery("", power));
        GenericBatteryComponentWindows component;
        bool answer = true;
        EXPECT_EQ(component.isOnAcPower(answer), result) << power;
        EXPECT_EQ(answer, onAc) << power;
    }
}

} // namespace
