#include <gtest/gtest.h>

#include "generic_battery/generic_battery_component_manager.h"
#include "generic_battery/generic_battery_component_windows.h"
#include "generic_fixture.h"

namespace {

// Each refresh asks the driver twice for the first battery's presence (tag,
// information), then nine requests per battery (tag, identifier, name,
// manufacturer, serial number, temperature, date, information, status), and
// the instrumentation once per battery with an identifier.
constexpr uint64_t kRequestsPerRefreshOfTwo = 2 + 2 * 9;
constexpr uint64_t kQueriesPerRefreshOfTwo = 2;

TEST(GenericResources, ARefreshOfTwoBatteriesCostsWhatItShould) {
    useScenario("generic-two-batteries");
    GenericBatteryComponentManager manager({12, 0, 0});
    emulator::Counters &counters = emulator::Notebook::instance().counters();
    const uint64_t requests = counters.batteryRequests;
    const uint64_t queries = counters.wmiQueries;
    manager.refreshComponents();
    EXPECT_EQ(counters.batteryRequests - requests, kRequestsPerRefreshOfTwo);
    EXPECT_EQ(counters.wmiQueries - queries, kQueriesPerRefreshOfTwo);
    EXPECT_EQ(counters.reenumerations, 2u);
}

TEST(GenericResources, NothingStaysOpenAfterAThousandCycles) {
    useScenario("generic-two-batteries");
    emulator::Notebook &notebook = emulator::Notebook::instance();
    const uint64_t handles = openHandles();
    for (int cycle = 0; cycle < 1000; ++cycle) {
        GenericBatteryComponentManager manager({12, 0, 0});
        manager.refreshComponents();
        manager.refreshComponents();
        auto *component = dynamic_cast<GenericBatteryComponentWindows *>(manager.getComponent(0));
        ASSERT_NE(component, nullptr);
        double percent = 0;
        bool flag = false;
        component->getChargePercent(percent);
        component->isBatteryPresent(flag);
        component->refreshCapacities();
        component->isOnAcPower(flag);
    }
    EXPECT_EQ(openHandles(), handles);
    EXPECT_EQ(notebook.registry().openSets, 0u);
    EXPECT_EQ(notebook.counters().comObjects, 0);
    EXPECT_EQ(notebook.counters().comStartups, 0);
    EXPECT_EQ(notebook.counters().comUnbalancedUninitializations, 0u);
}

} // namespace
