#pragma once

#include "battery_module/execution_context.h"
#include "diagnostics/charge_report.h"
#include "diagnostics/quick_test_checks.h"
#include "frame/keys.h"
#include "smart_battery/smart_battery_component.h"

// The run both quick tests of the smart path share: the charge report
// opened first, the checks of the context and the battery, the event and
// stop checks around the test's own check, and the verdict told.
//   check(context)   gives 0, 1, 5 or 3 (the battery left or gave nothing)
//   tell(context, r) tells the host the verdict of a result 1 or 5
template <typename QuickTest, typename Check, typename Tell>
TestResultCode runSmartQuickTest(QuickTest &test, ExecutionContext *context, Check check,
                                 Tell tell) {
    SmartBatteryComponent *component =
        context != nullptr ? dynamic_cast<SmartBatteryComponent *>(context->getTargetComponent())
                           : nullptr;
    ChargeReport chargeReport(context, component);
    if (!test.isContextUsable(context)) return ResultInvalid;
    if (!test.prepare(context->getTargetComponent())) {
        quick_test::report(*context, keys::DEVICE_COMMUNICATION_FAILURE);
        return ResultNotApplicable;
    }
    UserChannel &channel = *context->getUserChannel();
    channel.updateProgress(0, "");
    if (test.isDisruptiveEvent(quick_test::currentEvents(*context))) {
        return quick_test::abortForSystemEvent(*context);
    }
    if (context->isStopRequested()) return ResultAborted;

    const TestResultCode result = check(context);
    if (result != ResultSuccess && result != ResultFailed &&
        test.isDisruptiveEvent(quick_test::currentEvents(*context))) {
        return quick_test::abortForSystemEvent(*context);
    }
    channel.updateProgress(100, "");
    TestResultCode verdict = result;
    if (result == ResultFailed || result == ResultWarning) {
        tell(*context, result);
    } else if (result == ResultNotApplicable) {
        // The battery went away during the run, or gave nothing to judge.
        quick_test::report(*context, keys::DEVICE_COMMUNICATION_FAILURE);
        verdict = ResultAborted;
    }
    if (context->isStopRequested()) return ResultAborted;
    return verdict;
}
