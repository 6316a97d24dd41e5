#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "emulator/notebook.h"
#include "smart_battery/smart_battery_component.h"
#include "smart_battery/win_smart_battery_scanner.h"
#include "support/scenario.h"
#include "support/test_name.h"

namespace {

const char *kBattery = R"({"slot": 0, "serialNumber": 4711, "designCapacity": 50000,
                           "fullChargeCapacity": 40000, "designVoltage_mV": 11100})";

std::string scenarioWithClassDevices(const std::string &devices) {
    return std::string(R"({"name": "t", "controller": {"present": true}, "batteries": [)") +
           kBattery + "]" +
           (devices.empty() ? "" : R"(, "os": {"batteryClassDevices": )" + devices + "}") + "}";
}

std::string driverVersionOf(SystemComponent *component) {
    std::string version = "(missing)";
    for (const ComponentProperty &property : component->getInfo().properties) {
        if (property.key == "DRIVER_VERSION") version = property.value;
    }
    return version;
}

void destroy(std::vector<SystemComponent *> &list) {
    for (SystemComponent *component : list) delete component;
    list.clear();
}

struct DriverCase {
    const char *what;
    const char *devices; // the scenario's battery-class devices; empty: the default machine
    int32_t result;
    const char *version; // null when the component leaves the list
};

void PrintTo(const DriverCase &row, std::ostream *out) {
    *out << row.what;
}

class DriverVersion : public ::testing::TestWithParam<DriverCase> {};

TEST_P(DriverVersion, IsLookedUpForEachBattery) {
    useScenarioText(scenarioWithClassDevices(GetParam().devices));
    emulator::Notebook &machine = emulator::Notebook::instance();
    WinSmartBatteryScanner scanner;
    std::vector<SystemComponent *> list;
    ASSERT_FALSE(scanner.scanBatteries(list));
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(scanner.updateBatteries(list), GetParam().result) << GetParam().what;
    if (GetParam().version == nullptr) {
        EXPECT_TRUE(list.empty()) << GetParam().what;
    } else {
        ASSERT_EQ(list.size(), 1u);
        EXPECT_EQ(driverVersionOf(list[0]), GetParam().version) << GetParam().what;
    }
    EXPECT_EQ(machine.registry().openSets, 0u) << "every device-information set is destroyed";
    destroy(list);
}

INSTANTIATE_TEST_SUITE_P(
    Table, DriverVersion,
    ::testing::Values(
        DriverCase{"AC adapter at 0, battery at 1", "", 0, "10.0.22621.2506 [Windows]"},
        DriverCase{"member 1 before member 0",
                   R"([{"driverKey": "K\\0000", "driverVersion": "1.0"},
                       {"driverKey": "K\\0001", "driverVersion": "2.0"}])",
                   0, "2.0 [Windows]"},
        DriverCase{"only member 0", R"([{"driverKey": "K\\0000", "driverVersion": "3.1.4"}])", 0,
                   "3.1.4 [Windows]"},
        DriverCase{"a key without a version", R"([{"driverKey": "K\\0000"}])", 0, "EMPTY"},
        DriverCase{"a device without a driver key", R"([{"description": "odd"}])", 0, "EMPTY"},
        DriverCase{"no battery-class device", "[]", 1, nullptr}),
    NameBy<&DriverCase::what>());

// Fails the update of the main battery only, to see the pass go on.
class MainFailsScanner : public WinSmartBatteryScanner {
public:
    int32_t updateBattery(SmartBatteryComponent *component) override {
        if (component->isMainBattery()) return 1;
        return WinSmartBatteryScanner::updateBattery(component);
    }
};

TEST(WinSmartBatteryScanner, AFailedUpdateRemovesOnlyThatComponent) {
    useScenario("two-batteries");
    MainFailsScanner scanner;
    std::vector<SystemComponent *> list;
    ASSERT_FALSE(scanner.scanBatteries(list));
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(scanner.updateBatteries(list), 0) << "the result of the last update";
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0]->getIndex(), "1");
    EXPECT_EQ(driverVersionOf(list[0]), "10.0.22621.2506 [Windows]");
    destroy(list);

    std::vector<SystemComponent *> empty;
    EXPECT_EQ(scanner.updateBatteries(empty), 1);
}

TEST(WinSmartBatteryScanner, AppendsToTheListAndAsksPresencePerComponent) {
    useScenario("two-batteries");
    WinSmartBatteryScanner scanner;
    EXPECT_NE(scanner.deviceScanner(), nullptr);
    EXPECT_EQ(scanner.checkCommunication(), 0);
    EXPECT_TRUE(scanner.isAnyBatteryPresent());
    std::vector<SystemComponent *> list;
    ASSERT_FALSE(scanner.scanBatteries(list));
    ASSERT_EQ(list.size(), 2u);
    auto *secondary = dynamic_cast<SmartBatteryComponent *>(list[1]);
    ASSERT_NE(secondary, nullptr);
    EXPECT_TRUE(scanner.isBatteryPresent(secondary));
    EXPECT_FALSE(scanner.isBatteryPresent(nullptr));

    useScenario("default"); // the secondary bay is empty now
    EXPECT_FALSE(scanner.isBatteryPresent(secondary));
    destroy(list);

    useScenario("dead-controller");
    EXPECT_EQ(scanner.checkCommunication(), 1);
    EXPECT_FALSE(scanner.isAnyBatteryPresent());
    EXPECT_TRUE(scanner.scanBatteries(list));
    EXPECT_TRUE(list.empty());
}

} // namespace
