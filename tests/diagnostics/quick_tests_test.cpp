#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "battery_rules/identifiers.h"
#include "diagnostics/battery_health_test.h"
#include "diagnostics/smart_battery_health_test.h"
#include "diagnostics/temperature_test.h"
#include "emulator/notebook.h"
#include "frame/keys.h"
#include "frame/test_with_device_hint.h"
#include "generic_battery/generic_battery_component_manager.h"
#include "smart_battery/smart_battery_component.h"
#include "support/recording_host.h"
#include "support/scenario.h"
#include "support/test_name.h"

namespace {

using Events = std::vector<RecordingHost::Event>;

// One smart battery in mAh, so that capacities reach the test unscaled. The
// machine reports a charge of 76%.
std::string smartMachine(const std::string &battery) {
    return R"({"name": "q", "controller": {"present": true}, "power": {"batteryLifePercent": 76},
        "batteries": [{"slot": 0, "serialNumber": 4711, "capacityUnit": "mAh",
                       "designVoltage_mV": 11400, "chargePercent": 76)" +
           (battery.empty() ? "" : ", " + battery) + "}]}";
}

std::string genericMachine(const std::string &batteries) {
    return R"({"name": "g", "power": {"batteryLifePercent": 76}, "batteries": [)" + batteries +
           "]}";
}

const RecordingHost::Event kCharge = entry("TOTAL_BATTERY_CHARGE: 76%", 0);
const RecordingHost::Event kChargeProgress = progress(100, "TOTAL_BATTERY_CHARGE: 76%");

// A component of no battery class at all.
class ForeignComponent : public SystemComponent {
public:
    int32_t zeroQuery() override { return 0; }
    bool firstTrueQuery() override { return true; }
    bool secondTrueQuery() override { return true; }
    void firstNoOp() override {}
    bool thirdTrueQuery() override { return true; }
    void secondNoOp() override {}
};

} // namespace

TEST(SmartBatteryHealth, ExpectedCapacityFollowsTheCurve) {
    const std::pair<uint32_t, double> points[] = {
        {1, 0.86},     {10, 0.763219}, {45, 0.70},    {46, 0.6990}, {100, 0.6463},
        {250, 0.4999}, {251, 0.49775}, {300, 0.3875}, {450, 0.05},  {451, 0.05}};
    for (const auto &point : points) {
        EXPECT_NEAR(SmartBatteryHealthTest::expectedRelativeCapacity(point.first), point.second,
                    5e-5)
            << "age " << point.first;
    }
}

struct CurveRow {
    const char *what;
    uint32_t design, full, cycles, scale;
    TestResultCode expected;
};

class SmartHealthVerdict : public ::testing::TestWithParam<CurveRow> {};

TEST_P(SmartHealthVerdict, ComparesTheRatioWithTheCurveForTheBatterysAge) {
    const CurveRow &row = GetParam();
    useScenarioText(smartMachine("\"designCapacity\": " + std::to_string(row.design) +
                                 ", \"fullChargeCapacity\": " + std::to_string(row.full) +
                                 ", \"cycleCount\": " + std::to_string(row.cycles) +
                                 ", \"cycleScale\": " + std::to_string(row.scale)));
    SmartBatteryComponent battery(true);
    SmartBatteryHealthTest test(ID_SMART_HEALTH_TEST);
    EXPECT_EQ(test.evaluateCapacity(&battery), row.expected) << row.what;
}

INSTANTIATE_TEST_SUITE_P(
    Table, SmartHealthVerdict,
    ::testing::Values(
        CurveRow{"new, 0.85 under 0.86", 10000, 8500, 0, 250, ResultFailed},
        CurveRow{"new, 0.87 over 0.86", 10000, 8700, 0, 250, ResultSuccess},
        CurveRow{"scale 0 counts as 250: age 100", 10000, 6500, 100, 0, ResultSuccess},
        CurveRow{"age 100 at 0.64", 10000, 6400, 100, 250, ResultFailed},
        CurveRow{"scale 500: age 150 expects 0.5975", 10000, 5980, 300, 500, ResultSuccess},
        CurveRow{"age 150 just under", 10000, 5970, 300, 500, ResultFailed},
        CurveRow{"age 300 at 0.45 aged normally", 10000, 4500, 300, 250, ResultWarning},
        CurveRow{"ratio exactly 0.5 above the curve", 10000, 5000, 300, 250, ResultSuccess},
        CurveRow{"age 100 at 0.45 worse than its age", 10000, 4500, 100, 250, ResultFailed},
        CurveRow{"age 500 at 0.04", 10000, 400, 500, 250, ResultFailed},
        CurveRow{"age 500 at 0.06", 10000, 600, 500, 250, ResultWarning},
        CurveRow{"above its design value", 10000, 12000, 10, 250, ResultSuccess},
        // Ratios between the two stretches' values on each side of their seam.
        CurveRow{"age 45 is on the logarithm", 65000, 45499, 45, 250, ResultFailed},
        CurveRow{"age 46 is on the line", 65000, 45437, 46, 250, ResultSuccess},
        CurveRow{"scale 1 counts as 250", 10000, 6000, 100, 1, ResultFailed},
        CurveRow{"scale 249 counts as 250", 10000, 5004, 249, 249, ResultFailed},
        CurveRow{"no full-charge capacity", 10000, 0, 10, 250, ResultNotApplicable},
        CurveRow{"no design capacity", 0, 5000, 10, 250, ResultNotApplicable}),
    NameBy<&CurveRow::what>());

namespace {
const char *kLow = keys::LOWER_THAN_EXPECTED_CAPACITY;
const char *kEvent = keys::ABORTED_SYSTEM_EVENT;
const char *kGone = keys::DEVICE_COMMUNICATION_FAILURE;

// What a run tells the host: the start, `middle`, then the charge line.
Events told(Events middle) {
    Events all = {progress(0, "")};
    all.insert(all.end(), middle.begin(), middle.end());
    all.push_back(kCharge);
    all.push_back(kChargeProgress);
    return all;
}
// A judged run: the end of the evaluation, a verdict key at `level`.
Events judged(const char *key = nullptr, uint32_t level = 0) {
    Events middle = {progress(100, "")};
    if (key != nullptr) middle.insert(middle.end(), {progress(100, key), entry(key, level)});
    return told(middle);
}
Events withHint(Events events) {
    events.insert(events.end(), {entry(HINT_BATTERY(), 0), progress(100, HINT_BATTERY())});
    return events;
}
} // namespace

struct RunRow {
    const char *what;
    std::string battery;
    std::vector<uint32_t> events; // the host's system events, by call
    bool stop;
    TestResultCode expected;
    Events told;
};

class SmartHealthRun : public ::testing::TestWithParam<RunRow> {};

TEST_P(SmartHealthRun, TellsTheHostItsVerdictThenTheChargeThenTheHint) {
    const RunRow &row = GetParam();
    useScenarioText(smartMachine(row.battery));
    SmartBatteryComponent battery(true);
    TestWithDeviceHint<SmartBatteryHealthTest> test(HINT_BATTERY(), ID_SMART_HEALTH_TEST);
    RecordingHost host;
    host.target = &battery;
    host.eventsByCall = row.events;
    host.stop = row.stop;
    EXPECT_EQ(test.execute(&host), row.expected) << row.what;
    EXPECT_EQ(host.record, row.told) << row.what;
}

namespace {
const std::string kHealthy = R"("designCapacity": 10000, "fullChargeCapacity": 9000)";
const std::string kWorn =
    R"("designCapacity": 10000, "fullChargeCapacity": 4500, "cycleCount": 100)";
const std::string kAged =
    R"("designCapacity": 10000, "fullChargeCapacity": 4500, "cycleCount": 300)";
const std::string kEmpty = R"("designCapacity": 10000, "fullChargeCapacity": 0)";
} // namespace

INSTANTIATE_TEST_SUITE_P(
    Table, SmartHealthRun,
    ::testing::Values(
        RunRow{"healthy", kHealthy, {}, false, ResultSuccess, judged()},
        RunRow{"worn: the hint follows the charge",
               kWorn,
               {},
               false,
               ResultFailed,
               withHint(judged(kLow, 2))},
        RunRow{"aged normally",
               kAged,
               {},
               false,
               ResultWarning,
               judged(keys::LOW_CAPACITY_NORMAL_USE, 1)},
        RunRow{"stop requested at the start", kHealthy, {}, true, ResultAborted, told({})},
        RunRow{"a system event at the start",
               kHealthy,
               {0x80},
               false,
               ResultAborted,
               told({progress(100, kEvent), entry(kEvent, 0)})},
        RunRow{"bits 0x04 and 0x100 spoil no quick test",
               kWorn,
               {0x104},
               false,
               ResultFailed,
               withHint(judged(kLow, 2))},
        RunRow{"no capacity: the battery stopped answering",
               kEmpty,
               {},
               false,
               ResultAborted,
               judged(kGone, 0)},
        // An event that arrives during the run (after the context check and the
        // check at the start) spoils only a verdict other than 0 and 1.
        RunRow{"an event during a healthy run",
               kHealthy,
               {0, 0, 0x80},
               false,
               ResultSuccess,
               judged()},
        RunRow{"an event during a worn run",
               kWorn,
               {0, 0, 0x80},
               false,
               ResultFailed,
               withHint(judged(kLow, 2))},
        RunRow{"an event during a warning run",
               kAged,
               {0, 0, 0x80},
               false,
               ResultAborted,
               told({progress(100, kEvent), entry(kEvent, 0)})},
        RunRow{"an event during a run that cannot judge",
               kEmpty,
               {0, 0, 0x02},
               false,
               ResultAborted,
               told({progress(100, kEvent), entry(kEvent, 0)})}),
    NameBy<&RunRow::what>());

TEST(QuickTests, RefuseAnUnusableContextAndAForeignBattery) {
    useScenarioText(smartMachine(kHealthy));
    SmartBatteryComponent battery(true);
    ForeignComponent foreign;
    std::unique_ptr<::Test> tests[] = {
        std::make_unique<SmartBatteryHealthTest>(ID_SMART_HEALTH_TEST),
        std::make_unique<OstrelleTemperatureTest>(ID_TEMPERATURE_TEST),
        std::make_unique<BatteryHealthTest>(ID_HEALTH_TEST)};
    const std::function<void(RecordingHost &)> spoil[] = {
        [](RecordingHost &h) { h.nullLog = true; }, [](RecordingHost &h) { h.nullChannel = true; },
        [](RecordingHost &h) { h.nullEvents = true; }, [](RecordingHost &h) { h.target = nullptr; },
        [&foreign](RecordingHost &h) { h.target = &foreign; }};
    for (size_t way = 0; way < 5; ++way) {
        for (size_t i = 0; i < 3; ++i) {
            RecordingHost host;
            host.target = &battery;
            spoil[way](host);
            const bool foreignTarget = way == 4;
            EXPECT_EQ(tests[i]->execute(&host), foreignTarget ? ResultNotApplicable : ResultInvalid)
                << "way " << way << ", test " << i;
            for (const auto &event : host.record) {
                if (!foreignTarget) {
                    EXPECT_EQ(event.text.rfind("TOTAL_BATTERY_CHARGE", 0), 0u);
                }
            }
        }
    }
    EXPECT_EQ(tests[0]->execute(nullptr), ResultInvalid);
}

struct TemperatureRow {
    double celsius;
    bool flag;
    TestResultCode expected;
    Events told;
};

class TemperatureVerdict : public ::testing::TestWithParam<TemperatureRow> {};

TEST_P(TemperatureVerdict, TheBatterysFlagDecidesOnceAReadingExists) {
    const TemperatureRow &row = GetParam();
    useScenarioText(smartMachine("\"temperature_C\": " + std::to_string(row.celsius) +
                                 ", \"overTemperature\": " + (row.flag ? "true" : "false")));
    SmartBatteryComponent battery(true);
    OstrelleTemperatureTest test(ID_TEMPERATURE_TEST);
    RecordingHost host;
    host.target = &battery;
    EXPECT_EQ(test.execute(&host), row.expected) << row.celsius;
    EXPECT_EQ(host.record, row.told) << row.celsius;
}

// A cool battery with its flag set warns in the log only; no reading wins
// over the flag; just above absolute zero is a reading.
INSTANTIATE_TEST_SUITE_P(
    Table, TemperatureVerdict,
    ::testing::Values(TemperatureRow{20.0, true, ResultWarning,
                                     told({progress(100, ""),
                                           entry(keys::TEMPERATURE_ABOVE_LIMIT, 1)})},
                      TemperatureRow{95.0, false, ResultSuccess, judged()},
                      TemperatureRow{-273.15, true, ResultAborted, judged(kGone, 0)},
                      TemperatureRow{-272.8, false, ResultSuccess, judged()}),
    [](const ::testing::TestParamInfo<TemperatureRow> &info) {
        return testName(std::to_string(static_cast<int>(info.param.celsius * 100)) +
                        (info.param.flag ? " centidegrees flag set" : " centidegrees flag clear"));
    });

TEST(TemperatureTest, ReadsTheControllerAnewInEveryRun) {
    useScenarioText(smartMachine(R"("temperature_C": 30, "overTemperature": false)"));
    SmartBatteryComponent battery(true);
    OstrelleTemperatureTest test(ID_TEMPERATURE_TEST);
    RecordingHost host;
    host.target = &battery;
    ASSERT_EQ(test.execute(&host), ResultSuccess);
    // The battery heats up; the scan's record is stale but the run asks anew.
    useScenarioText(smartMachine(R"("temperature_C": 70, "overTemperature": true)"));
    EXPECT_EQ(test.execute(&host), ResultWarning);
}

TEST(SmartQuickTests, ABatteryGoneBeforeTheRunIsNotApplicable) {
    useScenarioText(smartMachine(kHealthy));
    SmartBatteryComponent battery(true);
    emulator::Scenario gone = emulator::Notebook::instance().scenario();
    gone.batteries[0].present = false;
    emulator::Notebook::instance().install(gone);
    SmartBatteryHealthTest health(ID_SMART_HEALTH_TEST);
    OstrelleTemperatureTest temperature(ID_TEMPERATURE_TEST);
    for (::Test *test : {static_cast<::Test *>(&health), static_cast<::Test *>(&temperature)}) {
        RecordingHost host;
        host.target = &battery;
        EXPECT_EQ(test->execute(&host), ResultNotApplicable);
        ASSERT_GE(host.record.size(), 2u);
        EXPECT_EQ(host.record[0], progress(100, kGone));
        EXPECT_EQ(host.record[1], entry(kGone, 0));
    }
}

struct GenericRow {
    const char *what;
    std::string batteries;
    TestResultCode expected;
    std::string ratioText; // empty: no relative-capacity line
};

class BatteryHealthVerdict : public ::testing::TestWithParam<GenericRow> {};

TEST_P(BatteryHealthVerdict, EveryBatteryMustHoldHalfItsDesignCapacity) {
    const GenericRow &row = GetParam();
    useScenarioText(genericMachine(row.batteries));
    GenericBatteryComponentManager manager(ID_BATTERY_MANAGER);
    manager.refreshComponents();
    ASSERT_EQ(manager.getComponentCount(), 1u);
    BatteryHealthTest test(ID_HEALTH_TEST);
    RecordingHost host;
    host.target = manager.getComponent(0);
    EXPECT_EQ(test.execute(&host), row.expected) << row.what;
    Events middle;
    if (!row.ratioText.empty()) middle = {progress(100, row.ratioText), entry(row.ratioText, 0)};
    middle.push_back(progress(100, ""));
    if (row.expected == ResultFailed)
        middle.insert(middle.end(), {progress(100, kLow), entry(kLow, 2)});
    const Events expected = told(middle);
    EXPECT_EQ(host.record, expected) << row.what;
}

namespace {
std::string battery(int slot, int design, int full) {
    return R"({"slot": )" + std::to_string(slot) + R"(, "designCapacity": )" +
           std::to_string(design) + R"(, "fullChargeCapacity": )" + std::to_string(full) +
           R"(, "uniqueId": "B)" + std::to_string(slot) + "\"}";
}
} // namespace

INSTANTIATE_TEST_SUITE_P(
    Table, BatteryHealthVerdict,
    ::testing::Values(
        GenericRow{"exactly half passes", battery(0, 10000, 5000), ResultSuccess, ""},
        GenericRow{"just below half fails", battery(0, 10000, 4999), ResultFailed,
                   "RELATIVE_CAPACITY: 0.4999"},
        GenericRow{"above its design value", battery(0, 10000, 12000), ResultSuccess, ""},
        GenericRow{"the second of two is worn",
                   battery(0, 10000, 9000) + "," + battery(1, 10000, 4000), ResultFailed,
                   "RELATIVE_CAPACITY: 0.4"},
        GenericRow{"the first worn ends the look",
                   battery(0, 10000, 3000) + "," + battery(1, 10000, 4000), ResultFailed,
                   "RELATIVE_CAPACITY: 0.3"},
        GenericRow{"a battery without capacities is passed over",
                   battery(0, 0, 0) + "," + battery(1, 10000, 9000), ResultSuccess, ""},
        GenericRow{"a battery without full-charge capacity is passed over",
                   battery(0, 10000, 0) + "," + battery(1, 10000, 9000), ResultSuccess, ""}),
    NameBy<&GenericRow::what>());

// A battery gone since the scan is no longer applicable; an event that comes
// during that run turns it into the abort report, but leaves a failed verdict.
TEST(BatteryHealthTest, AnEventDuringTheRunSpoilsOnlyARunThatCouldNotJudge) {
    const char *kLeft = keys::NO_LONGER_APPLICABLE_NOT_ACTIVE;
    const Events leftTold = told({progress(100, kLeft), entry(kLeft, 0), progress(100, "")});
    const struct {
        bool left;
        std::vector<uint32_t> events;
        TestResultCode expected;
        Events told;
    } runs[] = {
        {true, {}, ResultNotApplicable, leftTold},
        {true,
         {0, 0, 0x80},
         ResultAborted,
         told({progress(100, kLeft), entry(kLeft, 0), progress(100, ""), progress(100, kEvent),
               entry(kEvent, 0)})},
        {false,
         {0, 0, 0x80},
         ResultFailed,
         told({progress(100, "RELATIVE_CAPACITY: 0.3"), entry("RELATIVE_CAPACITY: 0.3", 0),
               progress(100, ""), progress(100, kLow), entry(kLow, 2)})},
    };
    for (const auto &run : runs) {
        useScenarioText(genericMachine(battery(0, 10000, 3000)));
        GenericBatteryComponentManager manager(ID_BATTERY_MANAGER);
        manager.refreshComponents();
        emulator::Notebook::instance().batteries()[0].present = !run.left;
        BatteryHealthTest test(ID_HEALTH_TEST);
        RecordingHost host;
        host.target = manager.getComponent(0);
        host.eventsByCall = run.events;
        EXPECT_EQ(test.execute(&host), run.expected) << run.left << run.events.size();
        EXPECT_EQ(host.record, run.told) << run.left << run.events.size();
    }
}

TEST(BatteryHealthTest, AStopDuringTheEvaluationKeepsTheRatioButNotTheVerdict) {
    useScenarioText(genericMachine(battery(0, 10000, 3000)));
    GenericBatteryComponentManager manager(ID_BATTERY_MANAGER);
    manager.refreshComponents();
    BatteryHealthTest test(ID_HEALTH_TEST);

    RecordingHost host;
    host.target = manager.getComponent(0);
    host.stopFromCall = 3; // after the checks at the start and before the evaluation
    EXPECT_EQ(test.execute(&host), ResultAborted);
    EXPECT_EQ(host.record[1], progress(100, "RELATIVE_CAPACITY: 0.3"));
    for (const auto &event : host.record) EXPECT_NE(event.text, kLow);
}
