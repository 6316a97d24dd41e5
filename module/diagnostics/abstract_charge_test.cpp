#include "diagnostics/abstract_charge_test.h"

#include <new>

#include "battery_module/execution_context.h"
#include "battery_module/input_request.h"
#include "battery_rules/charge_change.h"
#include "battery_rules/identifiers.h"
#include "diagnostics/charge_report.h"
#include "frame/keys.h"
#include "generic_battery/generic_battery_component.h"
#include "generic_battery/generic_battery_component_manager.h"
#include "platform/power_manager.h"
#include "platform/timer.h"
#include "smart_battery/smart_battery_component.h"
#include "smart_battery/smart_battery_component_manager.h"

namespace {

// Kind of the one request to the user: change the AC state.
constexpr uint32_t kAcStateRequest = 2;

} // namespace

AbstractChargeTest::AbstractChargeTest(const EntityId &id) : Test(id) {
    batteryManager = new (std::nothrow) GenericBatteryComponentManager(ID_BATTERY_MANAGER);
    durationSeconds = kDefaultDurationSeconds;
    parameters.push_back(durationParameterDefinition());
    powerManager = newPowerManager();
    timer = moduleTimer();
}

AbstractChargeTest::~AbstractChargeTest() {
    delete powerManager;
    delete batteryManager;
}

void AbstractChargeTest::reset() {
    durationSeconds = kDefaultDurationSeconds;
}

GenericBatteryComponent *AbstractChargeTest::resolveComponent(SystemComponent *target) {
    if (auto *generic = dynamic_cast<GenericBatteryComponent *>(target)) return generic;
    if (dynamic_cast<SmartBatteryComponent *>(target) == nullptr || batteryManager == nullptr) {
        return nullptr;
    }
    // The charge tests need the operating system's live view of the battery,
    // which only the generic component gives.
    batteryManager->refreshComponents();
    return dynamic_cast<GenericBatteryComponent *>(batteryManager->getComponent(0));
}

bool AbstractChargeTest::prepare(SystemComponent *component) {
    GenericBatteryComponent *battery = resolveComponent(component);
    if (battery == nullptr) {
        errorText = keys::DEVICE_NOT_IDENTIFIED;
        return false;
    }
    // The operating system's view cannot tell two smart batteries apart.
    SmartBatteryComponentManager *smart =
        new (std::nothrow) SmartBatteryComponentManager(EntityId(0, 0, 0));
    if (smart != nullptr) {
        smart->refreshComponents();
        const uint64_t count = smart->getComponentCount();
        delete smart;
        if (count >= 2) {
            errorText = keys::DEVICE_COMMUNICATION_FAILURE;
            return false;
        }
    }
    double percent = 0.0;
    if (battery->getChargePercent(percent) != 0) {
        errorText = keys::CHARGE_NOT_CALCULATED;
        return false;
    }
    return true;
}

void AbstractChargeTest::tell(ExecutionContext *context, uint8_t percent, const std::string &text) {
    if (UserChannel *channel = context->getUserChannel()) channel->updateProgress(percent, text);
}

void AbstractChargeTest::note(ExecutionContext *context, const std::string &text, uint32_t level) {
    if (ResultLog *log = context->getResultLog()) log->addEntry(text, level, 0);
}

TestResultCode AbstractChargeTest::internalError(ExecutionContext *context) {
    note(context, keys::INTERNAL_ERROR, 0);
    tell(context, 100, keys::INTERNAL_ERROR);
    return ResultAborted;
}

TestResultCode AbstractChargeTest::execute(ExecutionContext *context) {
    if (context == nullptr) return ResultInvalid;
    return run(context);
}

TestResultCode AbstractChargeTest::run(ExecutionContext *context) {
    ChargeReport report(context, nullptr);

    if (!prepare(context->getTargetComponent())) {
        tell(context, 100, errorText);
        note(context, errorText, 0);
        return ResultNotApplicable;
    }
    UserChannel *channel = context->getUserChannel();
    if (channel == nullptr || !channel->isInputRecognized()) {
        report.addPendingMessage(keys::INPUT_TYPE_NOT_RECOGNIZED);
        return ResultNotApplicable;
    }
    std::vector<TestParameterIssue> issues;
    if (!validateParameters(context->getParameters(), issues)) {
        tell(context, 100, joinParameterIssues(issues));
        return ResultAborted;
    }
    if (checkForAbort(context)) return ResultAborted;

    beforeRun();
    GenericBatteryComponent *component = resolveComponent(context->getTargetComponent());
    if (component == nullptr) return internalError(context);

    if (channel->isInputRecognized()) {
        const TestResultCode acState = ensureAcState(context, component);
        if (acState != ResultSuccess) return acState;
    }
    if (checkForAbort(context)) return ResultAborted;
    const TestResultCode level = checkChargeLevel(context, component);
    if (level != ResultSuccess) return level;

    double initialPercent = 0.0;
    if (component->getChargePercent(initialPercent) != 0) return internalError(context);
    report.captureInitialCharge();
    if (checkForAbort(context)) return ResultAborted;

    const TestResultCode measured = measure(context, component);
    // A chosen duration serves one measurement only.
    durationSeconds = kDefaultDurationSeconds;
    if (measured != ResultSuccess) return measured;
    if (checkForAbort(context)) return ResultAborted;

    double finalPercent = 0.0;
    if (component->getChargePercent(finalPercent) != 0) return internalError(context);
    tell(context, 100, "");
    return judgeChargeChange(context, initialPercent, finalPercent);
}

bool AbstractChargeTest::checkForAbort(ExecutionContext *context) {
    if (context->isStopRequested()) {
        tell(context, static_cast<uint8_t>(progressPercent), "");
        return true;
    }
    const uint32_t *events = context->getSystemEvents();
    if (events != nullptr && isDisruptiveEvent(*events)) {
        tell(context, 100, keys::ABORTED_SYSTEM_EVENT);
        note(context, keys::ABORTED_SYSTEM_EVENT, 0);
        return true;
    }
    return false;
}

TestResultCode AbstractChargeTest::ensureAcState(ExecutionContext *context,
                                                 GenericBatteryComponent *component) {
    bool onAc = false;
    if (component->isOnAcPower(onAc) != 0) return internalError(context);
    if (!isExpectedAcState(onAc)) {
        // One prompt; what the user did is read back, not asked again.
        const InputRequest request(nameKey, acPrompt, kAcStateRequest, 0, 0);
        if (UserChannel *channel = context->getUserChannel()) channel->requestInput(request);
    }
    return checkAcState(context, component);
}

TestResultCode AbstractChargeTest::checkAcState(ExecutionContext *context,
                                                GenericBatteryComponent *component) {
    bool onAc = false;
    if (component->isOnAcPower(onAc) != 0) return internalError(context);
    bool present = false;
    // A presence that cannot be read is no reason to stop.
    if (component->isBatteryPresent(present) == 0 && !present) {
        tell(context, 100, keys::DEVICE_COMMUNICATION_FAILURE);
        note(context, keys::DEVICE_COMMUNICATION_FAILURE, 1);
        return ResultAborted;
    }
    if (isExpectedAcState(onAc)) return ResultSuccess;
    tell(context, 100, acAbortMessage);
    note(context, acAbortMessage, 0);
    return ResultAborted;
}

int32_t AbstractChargeTest::elapsedPercent(uint32_t start, uint32_t current) {
    const double share = timer->elapsedSeconds(start, current) / durationSeconds * 100.0;
    // Capped before the cut, so that a long overrun cannot overflow it.
    return share >= 100.0 ? 100 : static_cast<int32_t>(share);
}

TestResultCode AbstractChargeTest::measure(ExecutionContext *context,
                                           GenericBatteryComponent *component) {
    const uint32_t start = timer->now();
    uint32_t current = timer->now();
    const uint32_t notedScheme =
        powerManager != nullptr ? powerManager->getPowerScheme() : PowerManager::kOtherScheme;
    if (powerManager != nullptr) powerManager->setPowerScheme(powerScheme);

    TestResultCode result = saveBrightness(context);
    for (int32_t pass = 0; result == ResultSuccess; ++pass) {
        if (timer->elapsedSeconds(start, current) >= durationSeconds) {
            if (isRunComplete(component)) {
                restoreBrightness(context);
                break;
            }
            if (UserChannel *channel = context->getUserChannel()) {
                channel->postNotice(keys::BATTERY_DISCHARGE_TEST,
                                    {{keys::WINDOWS_POLICY_WARNING, ""}});
            }
        }
        progressPercent = elapsedPercent(start, current);
        tell(context, static_cast<uint8_t>(progressPercent), "");
        applyLoadStep(pass, context);
        result = checkAcState(context, component);
        if (result != ResultSuccess) break;
        timer->sleep(kSleepMilliseconds);
        current = timer->now();
        if (checkForAbort(context)) result = ResultAborted;
    }

    // A scheme of the user's own cannot be named, so balanced stands in.
    if (powerManager != nullptr) {
        powerManager->setPowerScheme(
            notedScheme == PowerManager::kOtherScheme ? PowerManager::kBalanced : notedScheme);
    }
    const TestResultCode restored = restoreBrightness(context);
    if (result == ResultSuccess && restored != ResultSuccess) result = restored;
    return result;
}

TestResultCode AbstractChargeTest::checkChargeLevel(ExecutionContext *, GenericBatteryComponent *) {
    return ResultSuccess;
}

TestResultCode AbstractChargeTest::saveBrightness(ExecutionContext *) {
    return ResultSuccess;
}

TestResultCode AbstractChargeTest::applyLoadStep(int32_t, ExecutionContext *) {
    return ResultSuccess;
}

TestResultCode AbstractChargeTest::restoreBrightness(ExecutionContext *) {
    return ResultSuccess;
}

bool AbstractChargeTest::isRunComplete(GenericBatteryComponent *) {
    return true;
}

void AbstractChargeTest::saveDisplayBrightness() {
    uint32_t level = 0;
    brightnessSaved = powerManager != nullptr && powerManager->getBrightness(level) == 0;
    if (brightnessSaved) savedBrightness = level;
}

void AbstractChargeTest::restoreDisplayBrightness() {
    if (!brightnessSaved || powerManager == nullptr) return;
    powerManager->setBrightness(static_cast<uint8_t>(savedBrightness));
}

TestResultCode AbstractChargeTest::refuseStart(ExecutionContext *context, const char *refusal,
                                               int32_t threshold, const char *advice) {
    const std::string text = std::string(refusal) + " " + std::to_string(threshold) + "%";
    note(context, text, 0);
    note(context, advice, 0);
    tell(context, 100, text);
    return ResultAborted;
}

TestResultCode AbstractChargeTest::judgeChange(ExecutionContext *context, double change) {
    if (change > charge_change::kLeastPoints) return ResultSuccess;
    note(context, failureMessage, 2);
    tell(context, 100, failureMessage);
    return ResultFailed;
}
