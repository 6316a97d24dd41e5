#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "battery_rules/identifiers.h"
#include "frame/path_builders.h"
#include "smart_battery/smart_battery_component.h"
#include "smart_battery/smart_battery_component_manager.h"
#include "support/port_log.h"
#include "support/scenario.h"
#include "support/test_name.h"

namespace {

std::string valueOf(SystemComponent *component, const std::string &key) {
    for (const ComponentProperty &property : component->getInfo().properties) {
        if (property.key == key) return property.value;
    }
    return "(missing)";
}

// One component as the host sees it: name key, index and one telling value.
struct Seen {
    std::string name, index, serial;
    bool operator==(const Seen &other) const {
        return name == other.name && index == other.index && serial == other.serial;
    }
};

void PrintTo(const Seen &seen, std::ostream *out) {
    *out << seen.name << "/" << seen.index << "/" << seen.serial;
}

std::vector<Seen> seenComponents(SystemComponentManager &manager) {
    std::vector<Seen> seen;
    for (uint32_t i = 0; i < manager.getComponentCount(); ++i) {
        SystemComponent *component = manager.getComponent(i);
        seen.push_back({component->getInfo().name, component->getIndex(),
                        valueOf(component, "SERIAL_NUMBER")});
    }
    return seen;
}

const Seen kMain{"MAIN_BATTERY", "0", "4711"};

struct ManagerCase {
    const char *scenario; // a built-in name or scenario text
    bool communicating, anyPresent;
    std::vector<Seen> components;
};

void PrintTo(const ManagerCase &row, std::ostream *out) {
    *out << row.scenario;
}

void use(const char *scenario) {
    if (scenario[0] == '{') {
        useScenarioText(scenario);
    } else {
        useScenario(scenario);
    }
}

class SmartManager : public ::testing::TestWithParam<ManagerCase> {};

TEST_P(SmartManager, DecidesThePathAndListsTheBatteries) {
    use(GetParam().scenario);
    SmartPathHandle handle = newSmartBatteryManager(ID_BATTERY_MANAGER);
    ASSERT_NE(handle, nullptr);
    SmartBatteryComponentManager &manager = *handle;
    EXPECT_EQ(manager.isCommunicating(), GetParam().communicating);
    EXPECT_EQ(manager.isAnyBatteryPresent(), GetParam().anyPresent);
    const bool available = GetParam().communicating && GetParam().anyPresent;
    EXPECT_EQ(manager.isBatteryAvailable(), available);
    EXPECT_EQ(isSmartPathAvailable(handle), available);
    EXPECT_EQ(smartPathManager(handle), &manager);
    EXPECT_EQ(manager.getComponentCount(), 0u) << "nothing before the first scan";
    manager.refreshComponents();
    EXPECT_EQ(seenComponents(manager), GetParam().components);
    EXPECT_EQ(manager.getComponent(static_cast<uint32_t>(GetParam().components.size())), nullptr);
    deleteSmartBatteryManager(handle);
}

INSTANTIATE_TEST_SUITE_P(
    Scenarios, SmartManager,
    ::testing::Values(
        ManagerCase{"default", true, true, {kMain}},
        ManagerCase{"two-batteries", true, true, {kMain, {"SECONDARY_BATTERY", "1", "815"}}},
        ManagerCase{"secondary-only", true, true, {{"SECONDARY_BATTERY", "1", "815"}}},
        ManagerCase{"worn", true, true, {{"MAIN_BATTERY", "0", "1207"}}},
        ManagerCase{"aged", true, true, {{"MAIN_BATTERY", "0", "1207"}}},
        ManagerCase{"hot", true, true, {kMain}},
        ManagerCase{"busy-controller", true, true, {kMain}},
        ManagerCase{"dead-controller", false, false, {}},
        // The operating system has no battery device: every component leaves.
        ManagerCase{"no-os-battery-device", true, true, {}}),
    NameBy<&ManagerCase::scenario>());

INSTANTIATE_TEST_SUITE_P(
    Faults, SmartManager,
    ::testing::Values(
        ManagerCase{R"({"name": "busy for ever", "controller": {"present": true,
                        "faults": {"busyForever": true}}, "batteries": [{"serialNumber": 4711}]})",
                    false,
                    false,
                    {}},
        // The questions above take 21 commands, the scan's selection and
        // presence check 7 more and the device name 4: from then on every
        // value of the battery is lost.
        ManagerCase{R"({"name": "stuck in the middle of the scan", "controller": {"present": true,
                        "faults": {"busyFromCommand": 33}}, "batteries": [{"serialNumber": 4711}]})",
                    true,
                    true,
                    {{"MAIN_BATTERY", "0", "NOT_AVAILABLE"}}},
        ManagerCase{R"({"name": "status hides the battery", "controller": {"present": true,
                        "faults": {"reportedSlots": []}}, "batteries": [{"serialNumber": 4711}]})",
                    true,
                    false,
                    {}},
        ManagerCase{R"({"name": "status invents a second battery", "controller": {"present": true,
                        "faults": {"reportedSlots": [0, 1]}}, "batteries": [{"serialNumber": 4711}]})",
                    true,
                    true,
                    {kMain, {"SECONDARY_BATTERY", "1", "NOT_AVAILABLE"}}},
        ManagerCase{R"({"name": "selection ignored", "controller": {"present": true,
                        "faults": {"ignoresSelection": true}}, "batteries": [{"slot": 1, "serialNumber": 815}]})",
                    true,
                    true,
                    {{"SECONDARY_BATTERY", "1", "NOT_AVAILABLE"}}},
        // The third index access writes register 0x01 while battery 0 is
        // being selected; battery 1 then answers.
        ManagerCase{R"({"name": "battery 1 answers", "controller": {"present": true,
                        "faults": {"portFaults": [{"port": "index", "nth": 3}]}},
                        "batteries": [{"slot": 1, "serialNumber": 815}]})",
                    true,
                    true,
                    {{"SECONDARY_BATTERY", "1", "815"}}}),
    NameBy<&ManagerCase::scenario>());

TEST(SmartManager, ShowsEveryPropertyWithTheDriverVersionLast) {
    useScenario("default");
    SmartBatteryComponentManager manager(ID_BATTERY_MANAGER);
    manager.refreshComponents();
    ASSERT_EQ(manager.getComponentCount(), 1u);
    std::vector<std::string> keys;
    for (const ComponentProperty &property : manager.getComponent(0)->getInfo().properties) {
        keys.push_back(property.key);
    }
    EXPECT_EQ(keys, (std::vector<std::string>{"UDI", "INDEX", "NAME", "CHEMISTRY", "TEMPERATURE",
                                              "MANUFACTURER", "DESIGN_VOLTAGE", "SERIAL_NUMBER",
                                              "DESIGN_CAPACITY", "FULL_CHARGE_CAPACITY",
                                              "CYCLE_COUNT", "DRIVER_VERSION"}));
    EXPECT_EQ(valueOf(manager.getComponent(0), "DRIVER_VERSION"), "10.0.22621.2506 [Windows]");
    EXPECT_EQ(manager.getEntityId(), ID_BATTERY_MANAGER);
}

TEST(SmartManager, ARefreshReplacesTheComponentsAndARefreshedComponentIsNone) {
    useScenario("two-batteries");
    SmartBatteryComponentManager manager(ID_BATTERY_MANAGER);
    manager.refreshComponents();
    manager.refreshComponents();
    EXPECT_EQ(manager.getComponentCount(), 2u) << "one set, not two";
    for (uint32_t index = 0; index < 3; ++index) {
        EXPECT_EQ(manager.getRefreshedComponent(index), nullptr);
        EXPECT_EQ(manager.getComponentCount(), 0u);
    }
    manager.refreshComponents();
    EXPECT_EQ(manager.getComponentCount(), 2u);
}

// Presence is asked only once communication has succeeded: the controller
// sees the communication check and then, only if it passed, the presence check.
TEST(SmartManager, AsksForPresenceOnlyAfterCommunicationSucceeded) {
    using Question = bool (SmartBatteryComponentManager::*)();
    for (const char *scenario : {"default", R"({"name": "t", "controller": {"present": true,
                                  "faults": {"busyForever": true}}, "batteries": [{}]})"}) {
        bool answer = false;
        const auto accessesOf = [&](Question question) {
            use(scenario);
            SmartBatteryComponentManager manager(ID_BATTERY_MANAGER);
            startPortLog();
            answer = (manager.*question)();
            return portLog();
        };
        std::vector<std::string> expected =
            accessesOf(&SmartBatteryComponentManager::isCommunicating);
        if (answer) {
            const auto presence = accessesOf(&SmartBatteryComponentManager::isAnyBatteryPresent);
            expected.insert(expected.end(), presence.begin(), presence.end());
        }
        ASSERT_FALSE(expected.empty());
        EXPECT_EQ(accessesOf(&SmartBatteryComponentManager::isBatteryAvailable), expected)
            << scenario;
    }
}

TEST(SmartManager, AFullRefreshOfTwoBatteriesCostsWhatTheProtocolPrescribes) {
    useScenario("two-batteries");
    SmartBatteryComponentManager manager(ID_BATTERY_MANAGER);
    emulator::Notebook &machine = emulator::Notebook::instance();
    const uint64_t before = machine.counters().portAccesses;
    manager.refreshComponents();
    // Derived in tests/bench/smart_refresh_benchmark.cpp.
    EXPECT_EQ(machine.counters().portAccesses - before, 807u);
    EXPECT_EQ(machine.clock().sleepCalls(), 0u);
    EXPECT_EQ(machine.counters().portFailures, 0u);
}

} // namespace
