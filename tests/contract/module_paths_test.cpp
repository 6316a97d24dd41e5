#include <gtest/gtest.h>

#include <string>

#include "battery_module/diagnostic.h"
#include "battery_module/module_interface.h"
#include "battery_module/resource.h"
#include "battery_module/system_component.h"
#include "battery_module/test.h"
#include "contract/loaded_module.h"
#include "emulator/notebook.h"
#include "support/recording_host.h"
#include "support/test_name.h"

// The module as any host sees it: through the library's exports and the
// virtual operations of the public headers only.

namespace {

emulator::Notebook &notebook() {
    return emulator::Notebook::instance();
}

void useMachine(const char *scenario) {
    const auto result = notebook().load(scenario);
    ASSERT_TRUE(result.ok) << result.error;
}

struct Shape {
    uint64_t diagnostics;
    std::vector<std::string> quickTests; // identifiers as text
    bool smart;
};

std::string idText(const EntityId &id) {
    return std::to_string(id.module()) + "." + std::to_string(id.diagnostic()) + "." +
           std::to_string(id.test());
}

Shape shapeOf(ModuleInterface &module) {
    Shape shape{module.getDiagnosticCount(), {}, false};
    Diagnostic *quick = module.getDiagnostic(0);
    for (uint32_t t = 0; quick != nullptr && t < quick->getTestCount(); ++t) {
        shape.quickTests.push_back(idText(quick->getTest(t)->getEntityId()));
    }
    shape.smart = module.getResource()->getTestOptions().count(EntityId(12, 1, 4)) != 0;
    return shape;
}

// Nothing that the module opened stays open once it is released.
void expectNothingLeftOpen() {
    EXPECT_EQ(notebook().registry().openHandles, 0u);
    EXPECT_EQ(notebook().registry().openSets, 0u);
    EXPECT_EQ(notebook().counters().comObjects, 0);
}

struct PathRow {
    const char *scenario;
    uint64_t diagnostics;
    std::vector<std::string> quickTests;
    bool smart;
    uint64_t componentsAtFirst;
};

class AssembledPath : public ::testing::TestWithParam<PathRow> {};

} // namespace

TEST_P(AssembledPath, FollowsTheMachine) {
    const PathRow &row = GetParam();
    useMachine(row.scenario);
    {
        LoadedModule library;
        ASSERT_TRUE(library.ok());
        ModuleInterface *module = library.getInterface();
        ASSERT_NE(module, nullptr);
        EXPECT_EQ(library.getInterface(), module) << "the same pointer twice";
        const Shape shape = shapeOf(*module);
        EXPECT_EQ(shape.diagnostics, row.diagnostics);
        EXPECT_EQ(shape.quickTests, row.quickTests);
        EXPECT_EQ(shape.smart, row.smart);
        EXPECT_EQ(module->getComponentManager()->getComponentCount(), row.componentsAtFirst);
        EXPECT_EQ(module->getResource()->getRangeLabels().size(), 3u);
        EXPECT_EQ(module->getDiagnostic(static_cast<uint32_t>(row.diagnostics)), nullptr);
        EXPECT_EQ(module->getExtensionCount(), 0u);
    }
    expectNothingLeftOpen();
}

INSTANTIATE_TEST_SUITE_P(
    Table, AssembledPath,
    ::testing::Values(PathRow{"default", 2, {"12.1.1", "12.1.4"}, true, 1},
                      PathRow{"two-batteries", 1, {"12.1.1", "12.1.4"}, true, 2},
                      PathRow{"no-os-battery-device", 1, {"12.1.1", "12.1.4"}, true, 0},
                      PathRow{"dead-controller", 2, {"12.1.1"}, false, 0},
                      PathRow{"generic", 2, {"12.1.1"}, false, 0},
                      PathRow{"generic-no-battery", 2, {"12.1.1"}, false, 0}),
    NameBy<&PathRow::scenario>());

TEST(Exports, GetReleaseGetBuildsAnewAndDecidesThePathAgain) {
    LoadedModule library;
    ASSERT_TRUE(library.ok());
    useMachine("default");
    ASSERT_NE(library.getInterface(), nullptr);
    EXPECT_TRUE(shapeOf(*library.getInterface()).smart);
    library.release();
    library.release();
    useMachine("generic");
    ModuleInterface *second = library.getInterface();
    ASSERT_NE(second, nullptr);
    EXPECT_FALSE(shapeOf(*second).smart);
    library.release();
    expectNothingLeftOpen();
}

TEST(SmartManager, ARefreshedComponentIsNullAndARefreshLeavesOneSet) {
    useMachine("two-batteries");
    LoadedModule library;
    SystemComponentManager *manager = library.getInterface()->getComponentManager();
    manager->refreshComponents();
    manager->refreshComponents();
    EXPECT_EQ(manager->getComponentCount(), 2u);
    EXPECT_EQ(manager->getComponent(0)->getIndex(), "0");
    EXPECT_EQ(manager->getComponent(1)->getIndex(), "1");
    EXPECT_EQ(manager->getComponent(2), nullptr);
    EXPECT_EQ(manager->getRefreshedComponent(0), nullptr);
    EXPECT_EQ(manager->getComponentCount(), 0u);
}

TEST(GenericManager, StartsEmptyAndARefreshGivesOneComponentWithAGroupPerBattery) {
    useMachine("generic-two-batteries");
    {
        LoadedModule library;
        SystemComponentManager *manager = library.getInterface()->getComponentManager();
        EXPECT_EQ(manager->getComponentCount(), 0u);
        manager->refreshComponents();
        ASSERT_EQ(manager->getComponentCount(), 1u);
        SystemComponent *component = manager->getComponent(0);
        EXPECT_EQ(manager->getRefreshedComponent(0), component);
        EXPECT_EQ(component->getInfo().name, "BATTERY");
        const auto groups = component->getInfoGroups();
        ASSERT_EQ(groups.size(), 2u);
        EXPECT_EQ(groups[1].properties.at(0).key, "INDEX");
        EXPECT_EQ(groups[1].properties.at(0).value, "1");
        manager->refreshComponents();
        EXPECT_EQ(manager->getComponentCount(), 1u);
    }
    expectNothingLeftOpen();
}

struct QuickRunRow {
    const char *scenario;
    EntityId test;
    TestResultCode result;
    std::vector<RecordingHost::Event> events;
};

class QuickRunThroughTheLibrary : public ::testing::TestWithParam<QuickRunRow> {};

TEST_P(QuickRunThroughTheLibrary, GivesTheWholeConversation) {
    const QuickRunRow &row = GetParam();
    useMachine(row.scenario);
    {
        LoadedModule library;
        ModuleInterface *module = library.getInterface();
        ASSERT_NE(module, nullptr);
        SystemComponentManager *manager = module->getComponentManager();
        if (!shapeOf(*module).smart) manager->refreshComponents();
        ::Test *test = module->getDiagnostic(0)->findTest(row.test);
        ASSERT_NE(test, nullptr);
        RecordingHost host;
        host.target = manager->getComponent(0);
        EXPECT_EQ(test->execute(&host), row.result);
        EXPECT_EQ(host.record, row.events);
    }
    expectNothingLeftOpen();
}

namespace {
const char *kLow = "YOUR_BATTERY_HAS_A_LOWER_THAN_EXPECTED_RELATIVE_CAPACITY.";
const char *kHint = "POSSIBLE_DEFECTIVE_COMPONENTS: BATTERY";
} // namespace

INSTANTIATE_TEST_SUITE_P(
    Table, QuickRunThroughTheLibrary,
    ::testing::Values(QuickRunRow{"worn",
                                  EntityId(12, 1, 1),
                                  ResultFailed,
                                  {progress(0, ""), progress(100, ""), progress(100, kLow),
                                   entry(kLow, 2), entry("TOTAL_BATTERY_CHARGE: 57%", 0),
                                   progress(100, "TOTAL_BATTERY_CHARGE: 57%"), entry(kHint, 0),
                                   progress(100, kHint)}},
                      QuickRunRow{"generic-worn",
                                  EntityId(12, 1, 1),
                                  ResultFailed,
                                  {progress(0, ""), progress(100, "RELATIVE_CAPACITY: 0.471698"),
                                   entry("RELATIVE_CAPACITY: 0.471698", 0), progress(100, ""),
                                   progress(100, kLow), entry(kLow, 2),
                                   entry("TOTAL_BATTERY_CHARGE: 64%", 0),
                                   progress(100, "TOTAL_BATTERY_CHARGE: 64%"), entry(kHint, 0),
                                   progress(100, kHint)}}),
    [](const ::testing::TestParamInfo<QuickRunRow> &info) {
        return testName(std::string(info.param.scenario) + " " + " test " +
                        std::to_string(info.param.test.test()));
    });
