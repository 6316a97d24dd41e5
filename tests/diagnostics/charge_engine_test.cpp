#include <gtest/gtest.h>

#include <memory>

#include "diagnostics/charge_fixture.h"
#include "diagnostics/charge_test.h"
#include "diagnostics/discharge_test.h"
#include "emulator/notebook.h"
#include "frame/keys.h"
#include "platform/power_manager.h"

namespace {

using Keys = std::vector<std::pair<std::string, uint32_t>>;
using emulator::PowerScheme;

enum class Target { Generic, Smart, None, Exact };
enum class Prompt { Obeyed, Ignored };

// One road out of a run: the machine and its timeline, what the host does,
// and what the host and the machine are left with.
struct Road {
    const char *name;
    bool charging;       // the charge test, else the discharge test
    std::string machine; // JSON fields of the notebook, or a built-in scenario's name
    TestResultCode result;
    Keys logged;
    bool machineChanged; // the measurement ran: scheme back, display at the AC level
    Target target = Target::Generic;
    Prompt prompt = Prompt::Obeyed;
    std::vector<bool> recognized = {}; // the host's answers, by call; empty: true
    std::vector<TestParameter> parameters = {};
    uint32_t exactFailsFrom = 0; // with Target::Exact: the failing charge read
    bool exactAcFails = false;
    std::string progressText = ""; // must be among the progress texts
    bool exactPresenceFails = false;

    Road on(Target t) const {
        Road r = *this;
        r.target = t;
        return r;
    }
    Road exact(uint32_t failsFrom, bool acFails = false) const {
        Road r = on(Target::Exact);
        r.exactFailsFrom = failsFrom;
        r.exactAcFails = acFails;
        return r;
    }
    Road presenceUnknown() const {
        Road r = exact(0);
        r.exactPresenceFails = true;
        return r;
    }
    Road recognizing(std::vector<bool> answers) const {
        Road r = *this;
        r.recognized = std::move(answers);
        return r;
    }
    Road ignored() const {
        Road r = *this;
        r.prompt = Prompt::Ignored;
        return r;
    }
};

std::string genericMachine(const std::string &extra, double charge = 76) {
    return R"({"name": "road", "controller": {"present": false}, "batteries": [{"slot": 0,
        "manufacturer": "Ostrelle", "serialNumber": 4711, "designCapacity": 57240,
        "fullChargeCapacity": 54100, "designVoltage_mV": 11400, "chargePercent": )" +
           std::to_string(charge) + "}]" + extra + "}";
}

TestParameter parameter(const std::string &key, const std::string &value) {
    TestParameter chosen;
    chosen.key = key;
    chosen.value = value;
    return chosen;
}

const Keys kMeasured = {{keys::INITIAL_BATTERY_CHARGE, 0}, {keys::FINAL_BATTERY_CHARGE, 0}};
const Keys kTotal = {{keys::TOTAL_BATTERY_CHARGE, 0}};

Keys then(Keys first, const Keys &second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

const std::string kAcOn = R"(, "power": {"ac": true})";
std::string at(uint64_t ms, const std::string &event, const std::string &more = "") {
    return R"(, "timeline": [{"at_ms": )" + std::to_string(ms) + R"(, "event": ")" + event + "\"" +
           more + "}]";
}

// clang-format off
const bool kCharge = true, kDischarge = false;
const Road kRoads[] = {
    {"NormalEndOfTheDischargeTest", kDischarge, genericMachine(""), ResultSuccess, kMeasured, true},
    {"NormalEndOfTheChargeTest", kCharge, genericMachine(kAcOn), ResultSuccess, kMeasured, true},
    Road{"NormalEndOnASmartBattery", kDischarge, "default", ResultSuccess, kMeasured, true}.on(Target::Smart),
    {"PromptObeyedThenNormalEnd", kDischarge, genericMachine(kAcOn), ResultSuccess, kMeasured, true},
    {"NormalEndAcrossTheTickWrap", kDischarge, genericMachine(R"(, "startTick": 4294867295)"),
     ResultSuccess, kMeasured, true},
    {"HarmlessEventAtTheStart", kDischarge, genericMachine(at(0, "system-event", R"(, "bits": 4)")),
     ResultSuccess, kMeasured, true},
    Road{"BatteryThatDoesNotDischarge", kDischarge, "non-discharging", ResultFailed,
     then({{keys::NOT_DISCHARGING_PROPERLY, 2}}, kMeasured), true}.on(Target::Smart),
    Road{"BatteryThatDoesNotCharge", kCharge, "non-charging", ResultFailed,
     then({{keys::NOT_CHARGING_PROPERLY, 2}}, kMeasured), true}.on(Target::Smart),

    {"StopRequestAtTheStart", kDischarge, genericMachine(at(0, "stop-request")), ResultAborted,
     kTotal, false},
    {"SystemEventAtTheStart", kDischarge, genericMachine(at(0, "system-event", R"(, "bits": 256)")),
     ResultAborted, then({{keys::ABORTED_SYSTEM_EVENT, 0}}, kTotal), false},
    {"StopRequestDuringTheLoop", kDischarge, genericMachine(at(60000, "stop-request")),
     ResultAborted, kMeasured, true},
    {"SystemEventDuringTheLoop", kCharge, genericMachine(kAcOn + at(60000, "system-event",
     R"(, "bits": 1)")), ResultAborted, then({{keys::ABORTED_SYSTEM_EVENT, 0}}, kMeasured), true},
    Road{"AcStillPluggedAfterThePrompt", kDischarge, genericMachine(kAcOn), ResultAborted,
     then({{keys::ABORTED_AC_PLUGGED, 0}}, kTotal), false}.ignored(),
    Road{"AcStillUnpluggedAfterThePrompt", kCharge, genericMachine(""), ResultAborted,
     then({{keys::ABORTED_AC_UNPLUGGED, 0}}, kTotal), false}.ignored(),
    {"AcPluggedDuringTheLoop", kDischarge, genericMachine(at(60000, "ac-plug")), ResultAborted,
     then({{keys::ABORTED_AC_PLUGGED, 0}}, kMeasured), true},
    Road{"AcUnpluggedDuringTheLoop", kCharge, "extended-ac-unplugged-midway", ResultAborted,
     then({{keys::ABORTED_AC_UNPLUGGED, 0}}, kMeasured), true}.on(Target::Smart),
    // The operating system knows no battery afterwards, so the report is silent.
    {"BatteryRemovedDuringTheLoop", kDischarge, genericMachine(at(60000, "battery-remove")),
     ResultAborted, {{keys::DEVICE_COMMUNICATION_FAILURE, 1}}, true},
    Road{"AcStateUnreadable", kDischarge, genericMachine(""), ResultAborted,
     then({{keys::INTERNAL_ERROR, 0}}, kTotal), false}.exact(0, true),
    Road{"ChargeUnreadableAtTheThreshold", kDischarge, genericMachine(""), ResultAborted,
     then({{keys::INTERNAL_ERROR, 0}}, kTotal), false}.exact(2),
    Road{"ChargeUnreadableAtTheFirstReading", kDischarge, genericMachine(""), ResultAborted,
     then({{keys::INTERNAL_ERROR, 0}}, kTotal), false}.exact(3),
    // From the fourth read on: the duration ends the run, the last reading fails.
    Road{"ChargeUnreadableAtTheLastReading", kDischarge, genericMachine(""), ResultAborted,
     then({{keys::INTERNAL_ERROR, 0}}, kMeasured), true}.exact(4),

    {"ChargeBelowTheThreshold", kDischarge, genericMachine("", 19), ResultAborted,
     then({{std::string(keys::CHARGE_BELOW_THRESHOLD) + " 20%", 0}, {keys::PLEASE_RECHARGE, 0}},
          kTotal), false},
    {"ChargeAboveTheThreshold", kCharge, genericMachine(kAcOn, 95), ResultAborted,
     then({{std::string(keys::CHARGE_ABOVE_THRESHOLD) + " 93%", 0}, {keys::PLEASE_DISCHARGE, 0}},
          kTotal), false},
    {"ParameterRefusal", kDischarge, genericMachine(""), ResultAborted, kTotal, false,
     Target::Generic, Prompt::Obeyed, {}, {parameter("DURATION", "4"), parameter("COLOUR", "red")},
     0, false, "COLOUR: INVALID_DURATION_PARAMETER; |DURATION: USE_A_NUMERICAL_VALUE_BETWEEN_5_AND_20"},
    Road{"InputChannelNotRecognized", kDischarge, genericMachine(""), ResultNotApplicable,
     then(kTotal, {{keys::INPUT_TYPE_NOT_RECOGNIZED, 0}}), false}.recognizing({false}),
    // Recognized at the start, no longer at the prompt: the loop finds the cable.
    Road{"InputLostBeforeThePromptSkipsIt", kDischarge, genericMachine(kAcOn), ResultAborted,
     then({{keys::ABORTED_AC_PLUGGED, 0}}, kMeasured), true}.recognizing({true, false}),
    Road{"PresenceUnknownIsNoError", kDischarge, genericMachine(""), ResultSuccess, kMeasured,
     true}.presenceUnknown(),
    Road{"NoBatteryComponent", kDischarge, genericMachine(""), ResultNotApplicable,
     then({{keys::DEVICE_NOT_IDENTIFIED, 0}}, kTotal), false}.on(Target::None),
    Road{"TwoSmartBatteries", kDischarge, "two-batteries", ResultNotApplicable,
     then({{keys::DEVICE_COMMUNICATION_FAILURE, 0}}, kTotal), false}.on(Target::Smart),
    Road{"ChargeUnreadableAtPrepare", kDischarge, genericMachine(R"(, "power": {"batteryLifePercent": 255})"),
     ResultNotApplicable, {{keys::CHARGE_NOT_CALCULATED, 0}}, false}.exact(1),
};
// clang-format on

class ChargeEngineRoads : public testing::TestWithParam<Road> {};

TEST_P(ChargeEngineRoads, ResultLogAndMachineState) {
    const Road &road = GetParam();
    if (road.machine.front() == '{')
        useScenarioText(road.machine);
    else
        useScenario(road.machine);
    emulator::Notebook &notebook = emulator::Notebook::instance();
    const PowerScheme schemeBefore = notebook.power().scheme;
    const uint32_t acBefore = notebook.power().acBrightness;
    const uint32_t dcBefore = notebook.power().dcBrightness;

    HostBattery battery;
    ExactBattery exact;
    exact.chargeFailsFrom = road.exactFailsFrom;
    exact.acFails = road.exactAcFails;
    exact.presenceFails = road.exactPresenceFails;
    TimelineHost host;
    host.target = road.target == Target::Generic ? battery.genericComponent()
                  : road.target == Target::Smart ? battery.smartComponent()
                  : road.target == Target::Exact ? &exact
                                                 : nullptr;
    if (road.target != Target::None) {
        ASSERT_NE(host.target, nullptr);
    }
    if (road.prompt == Prompt::Obeyed) host.obeyPrompts();
    host.recognizedByCall = road.recognized;
    host.parameters = road.parameters;

    std::unique_ptr<AbstractChargeTest> test;
    if (road.charging)
        test = std::make_unique<ChargeTest>(EntityId(12, 2, 3));
    else
        test = std::make_unique<DischargeTest>(EntityId(12, 2, 2));
    EXPECT_EQ(test->execute(&host), road.result);
    EXPECT_EQ(loggedKeys(host.entries()), road.logged);

    const emulator::PowerState &power = notebook.power();
    EXPECT_EQ(power.scheme, schemeBefore);
    EXPECT_EQ(power.acBrightness, acBefore);
    EXPECT_EQ(power.dcBrightness, road.machineChanged ? acBefore : dcBefore);
    std::vector<uint32_t> schemes;
    for (const emulator::MachineChange &change : power.changes)
        if (change.setting == "scheme") schemes.push_back(change.value);
    // Forced to high performance (0) or power saver (2) before the loop.
    const std::vector<uint32_t> forced = {road.charging ? 2u : 0u};
    EXPECT_EQ(std::vector<uint32_t>(schemes.begin(), schemes.begin() + (schemes.empty() ? 0 : 1)),
              road.machineChanged ? forced : std::vector<uint32_t>{});
    EXPECT_EQ(test->getDurationSeconds(), 600.0);
    if (road.result == ResultSuccess) {
        // Ten minutes and at most one period more, however the ticks wrapped.
        EXPECT_GE(notebook.clock().elapsedMs(), 600000u);
        EXPECT_LE(notebook.clock().elapsedMs(), 600500u);
    }
    if (!road.progressText.empty()) {
        EXPECT_EQ(host.progress().front(), progress(100, road.progressText));
    }
}

INSTANTIATE_TEST_SUITE_P(, ChargeEngineRoads, testing::ValuesIn(kRoads),
                         [](const testing::TestParamInfo<Road> &info) {
                             return std::string(info.param.name);
                         });

// A stop is answered with the last percent, a system event with 100, and
// the last pass's percent is not the end: step 17 sends 100.
TEST(ChargeEngine, ProgressOfAStopAndOfANormalEnd) {
    useScenarioText(genericMachine(at(300000, "stop-request")));
    HostBattery battery;
    TimelineHost host;
    host.target = battery.genericComponent();
    DischargeTest test({12, 2, 2});
    EXPECT_EQ(test.execute(&host), ResultAborted);
    const auto updates = host.progress();
    ASSERT_GE(updates.size(), 2u);
    const RecordingHost::Event &stop = updates[updates.size() - 2];
    // The pass that began at 299.5 seconds was the last one.
    EXPECT_EQ(stop, progress(49, ""));
    EXPECT_EQ(test.getProgressPercent(), 49);

    useScenarioText(genericMachine(""));
    TimelineHost normal;
    normal.target = battery.genericComponent();
    EXPECT_EQ(test.execute(&normal), ResultSuccess);
    const auto last = normal.progress();
    ASSERT_GE(last.size(), 3u);
    EXPECT_EQ(last[last.size() - 2], progress(100, ""));
    for (const RecordingHost::Event &event : last) EXPECT_LE(event.number, 100u);
}

// A validated duration lasts one measurement; the next run takes ten minutes.
TEST(ChargeEngine, AValidatedDurationLastsOneMeasurement) {
    DischargeTest test({12, 2, 2});
    HostBattery battery;
    for (const char *minutes : {"5", ""}) {
        useScenarioText(genericMachine(""));
        TimelineHost host;
        host.target = battery.genericComponent();
        if (*minutes != '\0') host.parameters = {parameter("DURATION", minutes)};
        EXPECT_EQ(test.execute(&host), ResultSuccess) << minutes;
        EXPECT_EQ(test.getDurationSeconds(), 600.0) << minutes;
        const uint64_t expectedMs = *minutes != '\0' ? 300000u : 600000u;
        EXPECT_GE(emulator::Notebook::instance().clock().elapsedMs(), expectedMs) << minutes;
        EXPECT_LE(emulator::Notebook::instance().clock().elapsedMs(), expectedMs + 500) << minutes;
    }
}

TEST(ChargeEngine, AUsersOwnSchemeComesBackAsBalancedAndAKnownOneAsItWas) {
    for (const auto &[given, expected] : std::vector<std::pair<std::string, PowerScheme>>{
             {"custom", PowerScheme::Balanced},
             {"power-saver", PowerScheme::PowerSaver},
             {"high-performance", PowerScheme::HighPerformance}}) {
        useScenarioText(genericMachine(R"(, "power": {"scheme": ")" + given + "\"}"));
        HostBattery battery;
        TimelineHost host;
        host.target = battery.genericComponent();
        DischargeTest test({12, 2, 2});
        test.execute(&host);
        EXPECT_EQ(emulator::Notebook::instance().power().scheme, expected) << given;
    }
}

// A power manager whose display answers no question but takes every level.
class WriteOnlyDisplay : public PowerManager {
public:
    std::vector<uint32_t> levels;
    uint32_t getBrightness(uint32_t &) override { return 1; }
    uint32_t setBrightness(uint8_t level) override {
        levels.push_back(level);
        return 0;
    }
    uint32_t getPowerScheme() override { return kBalanced; }
    void setPowerScheme(uint32_t) override {}
    bool isOnAcPower() override { return true; }
    bool isBatteryPresent() override { return true; }
};

class ChargeTestOnWriteOnlyDisplay : public ChargeTest {
public:
    ChargeTestOnWriteOnlyDisplay() : ChargeTest({12, 2, 3}) {
        delete powerManager;
        powerManager = display = new WriteOnlyDisplay();
    }
    WriteOnlyDisplay *display;
};

// A display that cannot be read is not written back with a made-up level.
TEST(ChargeEngine, AnUnreadableDisplayIsLeftAsTheSweepLeftIt) {
    useScenarioText(genericMachine(kAcOn));
    HostBattery battery;
    TimelineHost host;
    host.target = battery.genericComponent();
    ChargeTestOnWriteOnlyDisplay test;
    EXPECT_EQ(test.execute(&host), ResultSuccess);
    ASSERT_EQ(test.display->levels.size(), 1200u); // one per pass, nothing restored
    for (uint32_t level : test.display->levels) EXPECT_EQ(level, 10u);
}

TEST(ChargeEngine, DisruptiveEventMaskCountsBitEightButNotBitTwo) {
    DischargeTest test({12, 2, 2});
    EXPECT_FALSE(test.isDisruptiveEvent(0x04));
    EXPECT_FALSE(test.isDisruptiveEvent(0x200));
    for (uint32_t bit : {0x01u, 0x02u, 0x08u, 0x80u, 0x100u})
        EXPECT_TRUE(test.isDisruptiveEvent(bit));
}

TEST(ChargeEngine, PromptIsOneRequestOfKindTwoTitledWithTheTestName) {
    useScenarioText(genericMachine(kAcOn));
    HostBattery battery;
    TimelineHost host;
    host.target = battery.genericComponent();
    std::vector<InputRequest> requests;
    host.onInput = [&requests](const InputRequest &request) { requests.push_back(request); };
    DischargeTest test({12, 2, 2});
    test.execute(&host);
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requests[0].title, keys::BATTERY_DISCHARGE_TEST);
    EXPECT_EQ(requests[0].message, keys::PLEASE_UNPLUG_AC);
    EXPECT_EQ(requests[0].kind, 2u);
    EXPECT_TRUE(requests[0].options.empty());
}

} // namespace
