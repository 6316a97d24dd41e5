#include "diagnostics/battery_health_test.h"

#include <locale>
#include <sstream>

#include "battery_rules/healthy_ratio.h"
#include "diagnostics/charge_report.h"
#include "diagnostics/quick_test_checks.h"
#include "frame/keys.h"
#include "generic_battery/generic_battery_component.h"

namespace {
std::string relativeCapacityText(double ratio) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << keys::RELATIVE_CAPACITY << ": " << ratio;
    return text.str();
}
} // namespace

bool BatteryHealthTest::isContextUsable(ExecutionContext *context) {
    return quick_test::isContextUsable(context);
}

bool BatteryHealthTest::isDisruptiveEvent(uint32_t events) {
    return quick_test::isDisruptiveEvent(events);
}

bool BatteryHealthTest::hasUsableCapacity(SystemComponent *component) {
    auto *generic = dynamic_cast<GenericBatteryComponent *>(component);
    if (generic == nullptr) return false;
    generic->refreshCapacities();
    for (const GenericBatteryInfo &battery : generic->getBatteries()) {
        if (battery.designCapacity > 0 && battery.fullChargeCapacity > 0) return true;
    }
    return false;
}

TestResultCode BatteryHealthTest::evaluateCapacities(ExecutionContext *context) {
    SystemComponent *component = context->getTargetComponent();
    auto *generic = dynamic_cast<GenericBatteryComponent *>(component);
    if (!hasUsableCapacity(component)) {
        // Find out why: a battery that left, or one that does not answer.
        bool present = false;
        if (generic == nullptr || generic->isBatteryPresent(present) != 0) {
            return ResultNotApplicable;
        }
        quick_test::report(*context, present ? keys::DEVICE_COMMUNICATION_FAILURE
                                             : keys::NO_LONGER_APPLICABLE_NOT_ACTIVE);
        return ResultNotApplicable;
    }
    if (context->isStopRequested()) return ResultAborted;
    for (size_t i = 0; i < generic->getBatteries().size(); ++i) {
        const GenericBatteryInfo battery = generic->getBatteries()[i];
        if (battery.designCapacity == 0 || battery.fullChargeCapacity == 0) continue;
        const double ratio = static_cast<double>(battery.fullChargeCapacity) /
                             static_cast<double>(battery.designCapacity);
        if (ratio < healthy_ratio::kGenericLowest) {
            const std::string text = relativeCapacityText(ratio);
            context->getUserChannel()->updateProgress(100, text);
            context->getResultLog()->addEntry(text, 0, 0);
            return ResultFailed;
        }
    }
    return ResultSuccess;
}

TestResultCode BatteryHealthTest::execute(ExecutionContext *context) {
    ChargeReport chargeReport(context, nullptr);
    if (!isContextUsable(context)) return ResultInvalid;
    UserChannel &channel = *context->getUserChannel();
    channel.updateProgress(0, "");
    if (isDisruptiveEvent(quick_test::currentEvents(*context))) {
        return quick_test::abortForSystemEvent(*context);
    }
    if (context->isStopRequested()) return ResultAborted;

    const TestResultCode result = evaluateCapacities(context);
    if (context->isStopRequested()) return ResultAborted;
    channel.updateProgress(100, "");
    if (result == ResultSuccess) return ResultSuccess;
    if (result == ResultFailed) {
        channel.updateProgress(100, keys::LOWER_THAN_EXPECTED_CAPACITY);
        context->getResultLog()->addEntry(keys::LOWER_THAN_EXPECTED_CAPACITY, 2, 0);
        return ResultFailed;
    }
    if (isDisruptiveEvent(quick_test::currentEvents(*context))) {
        return quick_test::abortForSystemEvent(*context);
    }
    return result;
}
