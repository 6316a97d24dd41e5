#include "diagnostics/smart_battery_health_test.h"

#include "battery_rules/expected_capacity.h"
#include "diagnostics/smart_quick_run.h"
#include "frame/keys.h"
#include "smart_battery/smart_battery_component.h"
#include "smart_battery/win_smart_battery_scanner.h"

double SmartBatteryHealthTest::expectedRelativeCapacity(uint32_t age) {
    return expected_capacity::relativeCapacity(age);
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
    const float ratio =
        static_cast<float>(info.fullChargeCapacity) / static_cast<float>(info.designCapacity);
    return expected_capacity::verdict(ratio,
                                      expected_capacity::ageOf(info.cycleCount, info.cycleScale));
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
