#include <gtest/gtest.h>

#include "diagnostics/charge_fixture.h"
#include "diagnostics/charge_test.h"
#include "diagnostics/discharge_test.h"
#include "frame/keys.h"

namespace {

const char *kOnBattery = R"({"name": "exact", "power": {"ac": false}})";
const char *kOnAc = R"({"name": "exact", "power": {"ac": true}})";

// Exact charges at the start and the end, and what the test makes of them.
struct Verdict {
    const char *name;
    bool charging;
    double initialPercent;
    double finalPercent;
    TestResultCode result;
    std::vector<RecordingHost::Event> logged; // without the report's lines
};

using Events = std::vector<RecordingHost::Event>;
const Events kNotDischarging = {entry(keys::NOT_DISCHARGING_PROPERLY, 2)};
const Events kNotCharging = {entry(keys::NOT_CHARGING_PROPERLY, 2)};
const Events kBelow = {entry(std::string(keys::CHARGE_BELOW_THRESHOLD) + " 20%", 0),
                       entry(keys::PLEASE_RECHARGE, 0)};
const Events kAbove = {entry(std::string(keys::CHARGE_ABOVE_THRESHOLD) + " 93%", 0),
                       entry(keys::PLEASE_DISCHARGE, 0)};

const Verdict kVerdicts[] = {
    {"FallOfExactlyHalfAPointFails", false, 60.0, 59.5, ResultFailed, kNotDischarging},
    {"FallOfMoreThanHalfAPointPasses", false, 60.0, 59.49, ResultSuccess, {}},
    {"RisingChargeFailsTheDischargeTest", false, 60.0, 61.0, ResultFailed, kNotDischarging},
    {"RiseOfExactlyHalfAPointFails", true, 60.0, 60.5, ResultFailed, kNotCharging},
    {"RiseOfMoreThanHalfAPointPasses", true, 60.0, 60.51, ResultSuccess, {}},
    {"FallingChargeFailsTheChargeTest", true, 60.0, 59.0, ResultFailed, kNotCharging},
    {"ChargeJustBelowTwentyIsRefused", false, 19.99, 10.0, ResultAborted, kBelow},
    {"ChargeOfTwentyStarts", false, 20.0, 19.0, ResultSuccess, {}},
    {"ChargeJustAboveNinetyThreeIsRefused", true, 93.01, 95.0, ResultAborted, kAbove},
    {"ChargeOfNinetyThreeStarts", true, 93.0, 94.0, ResultSuccess, {}},
};

class ChargeVerdicts : public testing::TestWithParam<Verdict> {};

TEST_P(ChargeVerdicts, AtTheEdges) {
    const Verdict &verdict = GetParam();
    useScenarioText(verdict.charging ? kOnAc : kOnBattery);
    ExactBattery battery;
    battery.initialPercent = verdict.initialPercent;
    battery.finalPercent = verdict.finalPercent;
    TimelineHost host;
    host.target = &battery;
    ChargeTest charge({12, 2, 3});
    DischargeTest discharge({12, 2, 2});
    AbstractChargeTest &test =
        verdict.charging ? static_cast<AbstractChargeTest &>(charge) : discharge;
    EXPECT_EQ(test.execute(&host), verdict.result);

    // The test's own entries and last text, without the report's lines.
    const auto own = [](Events events) {
        Events kept;
        for (const auto &event : events) {
            if (event.text.find("_BATTERY_CHARGE: ") == std::string::npos) kept.push_back(event);
        }
        return kept;
    };
    EXPECT_EQ(own(host.entries()), verdict.logged);
    EXPECT_EQ(own(host.progress()).back(),
              progress(100, verdict.logged.empty() ? "" : verdict.logged[0].text));
}

INSTANTIATE_TEST_SUITE_P(, ChargeVerdicts, testing::ValuesIn(kVerdicts),
                         [](const testing::TestParamInfo<Verdict> &info) {
                             return std::string(info.param.name);
                         });

TestParameter executionFlow(uint32_t lastNumber) {
    TestParameter flow;
    flow.key = "execution_flow";
    flow.lastNumber = lastNumber;
    return flow;
}

// A full battery that the host asks to hold keeps the test going, notice
// after notice, until the host stops it; otherwise the duration ends the run
// with no notice. Only a last number of 1 asks, and only above 93.0.
struct Hold {
    const char *name;
    uint32_t lastNumber;
    double percent;
    bool held;
};

class DischargeHold : public testing::TestWithParam<Hold> {};

TEST_P(DischargeHold, HoldsTheRunOnlyWhenAskedAndAboveNinetyThree) {
    const Hold &hold = GetParam();
    useScenarioText(kOnBattery);
    ExactBattery battery;
    battery.initialPercent = battery.finalPercent = hold.percent;
    DischargeTest test({12, 2, 2});
    test.setParameter(executionFlow(hold.lastNumber));
    TimelineHost host;
    host.target = &battery;
    host.stopAfterNotices = 5;
    // A battery that never falls: the verdict is a failure once the run ends.
    EXPECT_EQ(test.execute(&host), hold.held ? ResultAborted : ResultFailed);
    EXPECT_EQ(host.notices(), hold.held ? 5u : 0u);
    EXPECT_EQ(emulator::Notebook::instance().clock().elapsedMs() > 600500u, hold.held);
}

const Hold kHolds[] = {
    {"AskedAboveNinetyThree", 1, 95.0, true},    {"AskedJustAboveNinetyThree", 1, 93.01, true},
    {"AskedAtNinetyThree", 1, 93.0, false},      {"NotAsked", 0, 95.0, false},
    {"LastNumberTwoDoesNotAsk", 2, 95.0, false},
};
INSTANTIATE_TEST_SUITE_P(, DischargeHold, testing::ValuesIn(kHolds),
                         [](const testing::TestParamInfo<Hold> &info) {
                             return std::string(info.param.name);
                         });

TEST(DischargeHoldWithoutAReading, LetsTheDurationEndTheRun) {
    useScenarioText(kOnBattery);
    ExactBattery battery;
    battery.initialPercent = battery.finalPercent = 95.0;
    battery.chargeFailsFrom = 4; // the first question after the duration
    DischargeTest held({12, 2, 2});
    held.setParameter(executionFlow(1));
    TimelineHost host;
    host.target = &battery;
    EXPECT_EQ(held.execute(&host), ResultAborted);
    EXPECT_EQ(host.notices(), 0u);
    EXPECT_LE(emulator::Notebook::instance().clock().elapsedMs(), 600500u);
}

TEST(DischargeWave, OneWaveOfTwentyPassesFromFullToDarkAndBack) {
    const std::vector<uint32_t> wave = {100, 97, 90, 79, 65, 50, 35, 21, 10, 3,
                                        0,   3,  10, 21, 35, 50, 65, 79, 90, 97};
    for (int32_t pass = 0; pass < 40; ++pass)
        EXPECT_EQ(DischargeTest::brightnessOfPass(pass), wave[pass % 20]) << pass;

    // On the machine: the display follows the wave for AC and battery alike,
    // and ends at the AC level it had.
    useScenarioText(R"({"name": "wave", "display": {"acLevel": 42, "dcLevel": 17}})");
    ExactBattery battery;
    TimelineHost host;
    host.target = &battery;
    DischargeTest test({12, 2, 2});
    test.execute(&host);
    std::vector<uint32_t> acLevels;
    for (const emulator::MachineChange &change : emulator::Notebook::instance().power().changes)
        if (change.setting == "brightness-ac") acLevels.push_back(change.value);
    ASSERT_EQ(acLevels.size(), 1202u); // 1200 passes, then two restores
    EXPECT_EQ(std::vector<uint32_t>(acLevels.begin(), acLevels.begin() + 20), wave);
    EXPECT_EQ(acLevels.back(), 42u);
    EXPECT_EQ(emulator::Notebook::instance().power().dcBrightness, 42u);
}

} // namespace
