#include "diagnostics/temperature_test.h"

#include "diagnostics/smart_quick_run.h"
#include "frame/keys.h"
#include "smart_battery/smart_battery_component.h"
#include "smart_battery/win_smart_battery_scanner.h"

namespace {
// A raw word of 0 decodes to -273.15: no reading at all.
constexpr float kNoReading = -273.0f;
} // namespace

bool OstrelleTemperatureTest::prepare(SystemComponent *component) {
    auto *smart = dynamic_cast<SmartBatteryComponent *>(component);
    if (smart == nullptr) return false;
    WinSmartBatteryScanner scanner;
    return scanner.isBatteryPresent(smart);
}

bool OstrelleTemperatureTest::isContextUsable(ExecutionContext *context) {
    return quick_test::isContextUsable(context);
}

bool OstrelleTemperatureTest::isDisruptiveEvent(uint32_t events) {
    return quick_test::isDisruptiveEvent(events);
}

// Unlike the health test, this one asks the controller anew in every run.
TestResultCode OstrelleTemperatureTest::runTemperatureCheck(ExecutionContext *context) {
    auto *component = dynamic_cast<SmartBatteryComponent *>(context->getTargetComponent());
    if (component == nullptr) return ResultNotApplicable;
    WinSmartBatteryScanner scanner;
    if (!scanner.isBatteryPresent(component)) return ResultNotApplicable;
    component->refreshThermalState();
    const SmartBatteryInfo info = component->getBatteryInfo();
    if (info.temperature <= kNoReading) return ResultNotApplicable;
    return info.overTemperature != 0 ? ResultWarning : ResultSuccess;
}

TestResultCode OstrelleTemperatureTest::execute(ExecutionContext *context) {
    return runSmartQuickTest(
        *this, context, [this](ExecutionContext *run) { return runTemperatureCheck(run); },
        [](ExecutionContext &run, TestResultCode) {
            // The finding goes to the log only; the user channel says nothing.
            run.getResultLog()->addEntry(keys::TEMPERATURE_ABOVE_LIMIT, 1, 0);
        });
}
