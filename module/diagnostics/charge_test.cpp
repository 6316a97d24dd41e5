#include "diagnostics/charge_test.h"

#include <string>

#include "frame/keys.h"
#include "generic_battery/generic_battery_component.h"
#include "platform/power_manager.h"

ChargeTest::ChargeTest(const EntityId &id) : AbstractChargeTest(id) {
    nameKey = keys::BATTERY_CHARGE_TEST;
    acAbortMessage = keys::ABORTED_AC_UNPLUGGED;
    acPrompt = keys::PLEASE_PLUG_AC;
    failureMessage = keys::NOT_CHARGING_PROPERLY;
    powerScheme = PowerManager::kPowerSaver;
}

TestResultCode ChargeTest::checkChargeLevel(ExecutionContext *context,
                                            GenericBatteryComponent *component) {
    double percent = 0.0;
    if (component->getChargePercent(percent) != 0) return internalError(context);
    if (percent > static_cast<double>(maximumChargePercent)) {
        return refuseStart(context, keys::CHARGE_ABOVE_THRESHOLD, shownMaximumChargePercent,
                           keys::PLEASE_DISCHARGE);
    }
    return ResultSuccess;
}

TestResultCode ChargeTest::judgeChargeChange(ExecutionContext *context, double initialPercent,
                                             double finalPercent) {
    return judgeChange(context, finalPercent - initialPercent);
}

TestResultCode ChargeTest::saveBrightness(ExecutionContext *) {
    saveDisplayBrightness();
    return ResultSuccess;
}

TestResultCode ChargeTest::applyLoadStep(int32_t, ExecutionContext *) {
    if (powerManager != nullptr) powerManager->setBrightness(kDimLevel);
    return ResultSuccess;
}

TestResultCode ChargeTest::restoreBrightness(ExecutionContext *) {
    restoreDisplayBrightness();
    return ResultSuccess;
}
