#include "diagnostics/charge_report.h"

#include <algorithm>

#include "battery_module/execution_context.h"
#include "frame/keys.h"
#include "platform/battery_charge.h"

namespace {

std::string chargeLine(const char *key, uint64_t percent) {
    return std::string(key) + ": " + std::to_string(std::min<uint64_t>(percent, 100)) + "%";
}

} // namespace

ChargeReport::ChargeReport(ExecutionContext *context, SmartBatteryComponent *component)
    : context(context), component(component) {}

ChargeReport::~ChargeReport() {
    close();
}

void ChargeReport::captureInitialCharge() {
    uint64_t percent = 0;
    if (readCharge(percent) == 0) {
        initialPercent = percent;
        hasInitial = true;
    }
}

void ChargeReport::addPendingMessage(const std::string &text) {
    if (!pendingMessage.empty()) pendingMessage += " ";
    pendingMessage += text;
}

uint32_t ChargeReport::readCharge(uint64_t &percent) {
    if (component != nullptr && readComponentCharge(percent) == 0) return 0;
    const std::shared_ptr<BatteryCharge> charge = newBatteryCharge();
    if (!charge) return 1;
    return charge->getChargePercent(percent);
}

void ChargeReport::close() {
    uint64_t percent = 0;
    if (readCharge(percent) != 0) return;
    // A run that ended because the host gave no log or channel has nobody
    // to tell.
    ResultLog *log = context != nullptr ? context->getResultLog() : nullptr;
    UserChannel *channel = context != nullptr ? context->getUserChannel() : nullptr;
    if (log == nullptr || channel == nullptr) return;

    if (!hasInitial) {
        const std::string line = chargeLine(keys::TOTAL_BATTERY_CHARGE, percent);
        log->addEntry(line, 0, 0);
        channel->updateProgress(100, line);
    } else {
        const std::string initial = chargeLine(keys::INITIAL_BATTERY_CHARGE, initialPercent);
        const std::string final = chargeLine(keys::FINAL_BATTERY_CHARGE, percent);
        log->addEntry(initial, 0, 0);
        log->addEntry(final, 0, 0);
        channel->updateProgress(100, initial + " || " + final);
    }
    if (!pendingMessage.empty()) {
        log->addEntry(pendingMessage, 0, 0);
        channel->updateProgress(100, pendingMessage);
    }
}
