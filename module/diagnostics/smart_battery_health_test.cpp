#include "diagnostics/smart_battery_health_test.h"

#include <cmath>

#include "diagnostics/smart_quick_run.h"
#include "frame/keys.h"
#include "smart_battery/smart_battery_component.h"
#include "smart_battery/win_smart_battery_scanner.h"

namespace {
constexpr uint16_t kSmallestCycleScale = 250;
constexpr uint32_t kAgeScale = 250;
constexpr double kHealthyRatio = 0.5;
} // namespace

// The curve of expected wear: logarithmic while young, then two straight
// stretches, then a floor.
double SmartBatteryHealthTest::expectedRelativeCapacity(uint32_t age) {
    if (age <= 45)
        return 0.86 - static_cast<double>(std::log10(static_cast<float>(age))) * 0.096781;
    if (age <= 250) return 0.7439 - age * 0.000976;
    if (age <= 450) return 1.0625 - age * 0.00225;
    return 0.05;
}

// A target of another class is a battery that is not there.
bool SmartBatteryHealthTest::prepare(SystemComponent *component) {
    auto *smart = dynamic_cast<SmartBatteryComponent *>(component);
    if (smart == nullptr) return false;
    WinSmartBatteryScanner scanner;
    return scanner.isBatteryPresent(smart);
}

bool SmartBatteryHealthTest::isContextUsable(ExecutionContext *context) {
    return quick_test::isContextUsable(context);
}

bool SmartBatteryHealthTest::isDisruptiveEvent(uint32_t events) {
    return quick_test::isDisruptiveEvent(events);
}

TestResultCode SmartBatteryHealthTest::evaluateCapacity(SmartBatteryComponent *component) {
    const SmartBatteryInfo info = component->getBatteryInfo();
    if (info.fullChargeCapacity == 0 || info.designCapacity == 0) return ResultNotApplicable;
    const uint32_t scale =
        info.cycleScale < kSmallestCycleScale ? kSmallestCycleScale : info.cycleScale;
    const float ratio =
        static_cast<float>(info.fullChargeCapacity) / static_cast<float>(info.designCapacity);
    uint32_t age = static_cast<uint32_t>(info.cycleCount) * kAgeScale / scale;
    if (age == 0) age = 1;
    const double expected = expectedRelativeCapacity(age);
    const double relative = ratio;
    if (relative > expected) return relative >= kHealthyRatio ? ResultSuccess : ResultWarning;
    return ResultFailed;
}

TestResultCode SmartBatteryHealthTest::runHealthCheck(ExecutionContext *context) {
    auto *component = dynamic_cast<SmartBatteryComponent *>(context->getTargetComponent());
    if (component == nullptr) return ResultNotApplicable;
    WinSmartBatteryScanner scanner;
    return scanner.isBatteryPresent(component) ? evaluateCapacity(component) : ResultNotApplicable;
}

TestResultCode SmartBatteryHealthTest::execute(ExecutionContext *context) {
    return runSmartQuickTest(
        *this, context, [this](ExecutionContext *run) { return runHealthCheck(run); },
        [](ExecutionContext &run, TestResultCode result) {
            const bool failed = result == ResultFailed;
            const char *key =
                failed ? keys::LOWER_THAN_EXPECTED_CAPACITY : keys::LOW_CAPACITY_NORMAL_USE;
            run.getUserChannel()->updateProgress(100, key);
            run.getResultLog()->addEntry(key, failed ? 2 : 1, 0);
        });
}
