#include "diagnostics/smart_battery_health_test.h"

#include <cmath>

#include "diagnostics/charge_report.h"
#include "diagnostics/quick_test_checks.h"
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
    SmartBatteryComponent *component =
        context != nullptr ? dynamic_cast<SmartBatteryComponent *>(context->getTargetComponent())
                           : nullptr;
    ChargeReport chargeReport(context, component);
    if (!isContextUsable(context)) return ResultInvalid;
    if (!prepare(context->getTargetComponent())) {
        quick_test::report(*context, keys::DEVICE_COMMUNICATION_FAILURE);
        return ResultNotApplicable;
    }
    UserChannel &channel = *context->getUserChannel();
    channel.updateProgress(0, "");
    if (isDisruptiveEvent(quick_test::currentEvents(*context))) {
        return quick_test::abortForSystemEvent(*context);
    }
    if (context->isStopRequested()) return ResultAborted;

    const TestResultCode result = runHealthCheck(context);
    if (result != ResultSuccess && result != ResultFailed &&
        isDisruptiveEvent(quick_test::currentEvents(*context))) {
        return quick_test::abortForSystemEvent(*context);
    }
    channel.updateProgress(100, "");
    TestResultCode verdict = result;
    switch (result) {
    case ResultFailed:
        channel.updateProgress(100, keys::LOWER_THAN_EXPECTED_CAPACITY);
        context->getResultLog()->addEntry(keys::LOWER_THAN_EXPECTED_CAPACITY, 2, 0);
        break;
    case ResultWarning:
        channel.updateProgress(100, keys::LOW_CAPACITY_NORMAL_USE);
        context->getResultLog()->addEntry(keys::LOW_CAPACITY_NORMAL_USE, 1, 0);
        break;
    case ResultNotApplicable:
        // The battery went away during the run, or gave no capacity.
        quick_test::report(*context, keys::DEVICE_COMMUNICATION_FAILURE);
        verdict = ResultAborted;
        break;
    default:
        break;
    }
    if (context->isStopRequested()) return ResultAborted;
    return verdict;
}
