#include "diagnostics/quick_test_checks.h"

#include "frame/keys.h"

namespace quick_test {

namespace {
constexpr uint32_t kQuickDisruptiveEvents = 0xFB;
} // namespace

bool isContextUsable(ExecutionContext *context) {
    return context != nullptr && context->getUserChannel() != nullptr &&
           context->getResultLog() != nullptr && context->getSystemEvents() != nullptr &&
           context->getTargetComponent() != nullptr;
}

bool isDisruptiveEvent(uint32_t events) {
    return (events & kQuickDisruptiveEvents) != 0;
}

uint32_t currentEvents(ExecutionContext &context) {
    const uint32_t *events = context.getSystemEvents();
    return events != nullptr ? *events : 0;
}

void report(ExecutionContext &context, const char *key) {
    context.getUserChannel()->updateProgress(100, key);
    context.getResultLog()->addEntry(key, 0, 0);
}

TestResultCode abortForSystemEvent(ExecutionContext &context) {
    report(context, keys::ABORTED_SYSTEM_EVENT);
    return ResultAborted;
}

} // namespace quick_test
