#include "diagnostics/discharge_test.h"

#include <cmath>
#include <cstdlib>
#include <string>

#include "frame/keys.h"
#include "generic_battery/generic_battery_component.h"
#include "platform/power_manager.h"

namespace {

// A battery this full may be held above it by the operating system's
// charging policy; the host can ask the test to wait until it falls.
constexpr double kHoldAbovePercent = 93.0;
// The factor of the wave as it has always been computed; a longer pi would
// move some levels by one.
constexpr double kWavePi = 3.14159265359;

} // namespace

DischargeTest::DischargeTest(const EntityId &id) : AbstractChargeTest(id) {
    nameKey = keys::BATTERY_DISCHARGE_TEST;
    acAbortMessage = keys::ABORTED_AC_PLUGGED;
    acPrompt = keys::PLEASE_UNPLUG_AC;
    failureMessage = keys::NOT_DISCHARGING_PROPERLY;
    powerScheme = PowerManager::kHighPerformance;
}

void DischargeTest::beforeRun() {
    for (const TestParameter &parameter : getParameters(nullptr, nullptr, 0)) {
        if (parameter.lastNumber == 1) holdAboveCharge = true;
    }
}

TestResultCode DischargeTest::checkChargeLevel(ExecutionContext *context,
                                               GenericBatteryComponent *component) {
    double percent = 0.0;
    if (component->getChargePercent(percent) != 0) return internalError(context);
    if (static_cast<double>(minimumChargePercent) > percent) {
        return refuseStart(context, keys::CHARGE_BELOW_THRESHOLD, minimumChargePercent,
                           keys::PLEASE_RECHARGE);
    }
    return ResultSuccess;
}

TestResultCode DischargeTest::judgeChargeChange(ExecutionContext *context, double initialPercent,
                                                double finalPercent) {
    return judgeChange(context, initialPercent - finalPercent);
}

TestResultCode DischargeTest::saveBrightness(ExecutionContext *) {
    saveDisplayBrightness();
    return ResultSuccess;
}

uint8_t DischargeTest::brightnessOfPass(int32_t iteration) {
    const int32_t swing = static_cast<int32_t>(std::cos(iteration * kWavePi / 10.0) * -50.0);
    return static_cast<uint8_t>(std::abs(50 - swing));
}

TestResultCode DischargeTest::applyLoadStep(int32_t iteration, ExecutionContext *) {
    if (powerManager != nullptr) powerManager->setBrightness(brightnessOfPass(iteration));
    return ResultSuccess;
}

TestResultCode DischargeTest::restoreBrightness(ExecutionContext *) {
    restoreDisplayBrightness();
    return ResultSuccess;
}

bool DischargeTest::isRunComplete(GenericBatteryComponent *component) {
    double percent = 0.0;
    // A charge that cannot be read cannot hold the run: the duration ends it.
    if (component->getChargePercent(percent) != 0) return true;
    return !(holdAboveCharge && percent > kHoldAbovePercent);
}
