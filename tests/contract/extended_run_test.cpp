#include <gtest/gtest.h>

#include <string>

#include "battery_module/diagnostic.h"
#include "battery_module/module_interface.h"
#include "battery_module/system_component.h"
#include "battery_module/test.h"
#include "contract/loaded_module.h"
#include "emulator/notebook.h"
#include "support/recording_host.h"

namespace {

using emulator::PowerScheme;

// One whole extended run through the loaded library, in virtual time, and
// the machine as the run leaves it.
struct ExtendedRun {
    const char *name;
    const char *scenario;
    EntityId test;
    PowerScheme scheme;         // active before the run
    PowerScheme expectedScheme; // active after it
    TestResultCode result;
};

constexpr EntityId kDischarge{12, 2, 2};
constexpr EntityId kCharge{12, 2, 3};

const ExtendedRun kRuns[] = {
    {"DischargeOnTheSmartPath", "default", kDischarge, PowerScheme::Balanced, PowerScheme::Balanced,
     ResultSuccess},
    {"ChargeOnTheSmartPathWithAUsersOwnScheme", "default", kCharge, PowerScheme::Custom,
     PowerScheme::Balanced, ResultSuccess},
    {"DischargeOnTheGenericPath", "generic", kDischarge, PowerScheme::PowerSaver,
     PowerScheme::PowerSaver, ResultSuccess},
    {"ChargeOnTheGenericPath", "generic", kCharge, PowerScheme::HighPerformance,
     PowerScheme::HighPerformance, ResultSuccess},
    {"BatteryThatDoesNotDischarge", "non-discharging", kDischarge, PowerScheme::Balanced,
     PowerScheme::Balanced, ResultFailed},
    {"BatteryThatDoesNotCharge", "non-charging", kCharge, PowerScheme::Custom,
     PowerScheme::Balanced, ResultFailed},
};

class ExtendedRuns : public testing::TestWithParam<ExtendedRun> {};

TEST_P(ExtendedRuns, PassOrFailAndPutTheMachineBack) {
    const ExtendedRun &run = GetParam();
    emulator::LoadResult loaded = emulator::loadScenario(run.scenario);
    ASSERT_TRUE(loaded.ok) << loaded.error;
    loaded.scenario.power.scheme = run.scheme;
    loaded.scenario.display.acLevel = 35;
    loaded.scenario.display.dcLevel = 70;
    emulator::Notebook &notebook = emulator::Notebook::instance();
    notebook.install(loaded.scenario);

    LoadedModule module;
    ASSERT_TRUE(module.ok());
    ModuleInterface *moduleInterface = module.getInterface();
    ASSERT_NE(moduleInterface, nullptr);
    ASSERT_EQ(moduleInterface->getDiagnosticCount(), 2u);
    ::Test *test = moduleInterface->getDiagnostic(1)->findTest(run.test);
    ASSERT_NE(test, nullptr);
    EXPECT_TRUE(test->isInteractive());
    SystemComponentManager *manager = moduleInterface->getComponentManager();
    manager->refreshComponents();
    ASSERT_EQ(manager->getComponentCount(), 1u);

    RecordingHost host;
    host.target = manager->getComponent(0);
    // The user does what the prompt asks.
    host.onInput = [&notebook](const InputRequest &request) {
        notebook.setAcLine(request.message.find("UNPLUG") == std::string::npos);
    };
    host.parameters = test->getParameterDefinitions(nullptr, nullptr, 0);
    host.parameters[0].value = "5";
    EXPECT_EQ(test->execute(&host), run.result);

    // Five virtual minutes and at most one pass more.
    EXPECT_GE(notebook.clock().elapsedMs(), 300000u);
    EXPECT_LE(notebook.clock().elapsedMs(), 300500u);
    const emulator::PowerState &power = notebook.power();
    EXPECT_EQ(power.scheme, run.expectedScheme);
    EXPECT_EQ(power.acBrightness, 35u);
    EXPECT_EQ(power.dcBrightness, 35u);

    const std::vector<RecordingHost::Event> entries = host.entries();
    ASSERT_FALSE(entries.empty());
    if (run.result == ResultFailed) {
        // The device hint comes last, in the log and as the last text.
        EXPECT_EQ(entries.back().text, "POSSIBLE_DEFECTIVE_COMPONENTS: BATTERY, AC_ADAPTER");
        EXPECT_EQ(host.progress().back(), progress(100, entries.back().text));
    } else {
        EXPECT_EQ(entries.back().text.rfind("FINAL_BATTERY_CHARGE: ", 0), 0u);
    }
}

INSTANTIATE_TEST_SUITE_P(, ExtendedRuns, testing::ValuesIn(kRuns),
                         [](const testing::TestParamInfo<ExtendedRun> &info) {
                             return std::string(info.param.name);
                         });

} // namespace
