#include <gtest/gtest.h>

#include "battery_module/diagnostic.h"
#include "battery_rules/identifiers.h"
#include "frame/battery_module_interface.h"
#include "frame/keys.h"
#include "frame/test_with_device_hint.h"
#include "support/recording_host.h"
#include "support/test_name.h"

namespace {

// A test whose verdict a case chooses; it reports like a real quick test.
class ScriptedTest : public Test {
public:
    explicit ScriptedTest(const EntityId &id) : Test(id) {}
    static TestResultCode nextResult;

    bool prepare(SystemComponent *) override { return true; }
    TestResultCode execute(ExecutionContext *context) override {
        context->getUserChannel()->updateProgress(0, "");
        context->getResultLog()->addEntry("VERDICT", 2, 0);
        return nextResult;
    }
    bool isInteractive() override { return false; }
};
TestResultCode ScriptedTest::nextResult = ResultSuccess;

class DeviceHint : public ::testing::TestWithParam<TestResultCode> {};

} // namespace

TEST_P(DeviceHint, FollowsAFailedVerdictOnly) {
    ScriptedTest::nextResult = GetParam();
    TestWithDeviceHint<ScriptedTest> test(HINT_BATTERY(), ID_SMART_HEALTH_TEST);
    RecordingHost host;
    EXPECT_EQ(test.execute(&host), GetParam());

    std::vector<RecordingHost::Event> expected = {progress(0, ""), entry("VERDICT", 2)};
    if (GetParam() == ResultFailed) {
        expected.push_back(entry(HINT_BATTERY(), 0));
        expected.push_back(progress(100, HINT_BATTERY()));
    }
    EXPECT_EQ(host.record, expected);
}

INSTANTIATE_TEST_SUITE_P(EveryResult, DeviceHint,
                         ::testing::Values(ResultSuccess, ResultFailed, ResultNotApplicable,
                                           ResultAborted, ResultWarning, ResultInvalid),
                         [](const ::testing::TestParamInfo<TestResultCode> &info) {
                             return "Result" + std::to_string(info.param);
                         });

TEST(TestWithDeviceHint, CarriesTheWrappedTestsIdentifierAndBaseAnswers) {
    TestWithDeviceHint<ScriptedTest> test(HINT_BATTERY_AND_ADAPTER(), ID_CHARGE_TEST);
    EXPECT_EQ(test.getEntityId(), ID_CHARGE_TEST);
    EXPECT_EQ(test.getEntityId().test(), 3u);
    EXPECT_FALSE(test.falseQuery());
    EXPECT_TRUE(test.getParameters(nullptr, nullptr, 7).empty());
    std::vector<TestParameterIssue> issues;
    EXPECT_TRUE(test.validateParameters({TestParameter{}}, issues));
    EXPECT_TRUE(issues.empty());
    EXPECT_TRUE(test.applyConfiguration({{"a", {{"b", "c"}}}}, nullptr));
}

TEST(Diagnostic, IndexesAndFindsByComposite) {
    ScriptedTest health(ID_SMART_HEALTH_TEST), temperature(ID_TEMPERATURE_TEST);
    Diagnostic quick(ID_QUICK_DIAGNOSTIC, {&health, &temperature});
    EXPECT_EQ(quick.getTestCount(), 2u);
    EXPECT_EQ(quick.getTest(1), &temperature);
    EXPECT_EQ(quick.getTest(2), nullptr);
    EXPECT_EQ(quick.getTest(0xFFFFFFFF), nullptr);
    EXPECT_EQ(quick.findTest(EntityId(12, 1, 4)), &temperature);
    EXPECT_EQ(quick.findTest(EntityId(12, 0x1000001, 4)), &temperature); // masked to 12.1.4
    EXPECT_EQ(quick.findTest(ID_DISCHARGE_TEST), nullptr);
    EXPECT_EQ(Diagnostic(ID_EXTENDED_DIAGNOSTIC, {}).findTest(ID_CHARGE_TEST), nullptr);
}

TEST(ModuleInterface, HoldsWhatItIsGivenAndNothingMore) {
    Diagnostic quick(ID_QUICK_DIAGNOSTIC, {});
    BatteryModuleInterface module({&quick}, nullptr, nullptr, nullptr);
    EXPECT_EQ(module.getDiagnosticCount(), 1u);
    EXPECT_EQ(module.getDiagnostic(0), &quick);
    EXPECT_EQ(module.getDiagnostic(1), nullptr);
    EXPECT_EQ(module.getExtensionCount(), 0u);
    EXPECT_EQ(module.getExtension(0), nullptr);
    EXPECT_EQ(module.getAuxiliaryObject(), nullptr);
    EXPECT_FALSE(module.falseQuery());
}
