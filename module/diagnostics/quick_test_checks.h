#pragma once

#include <cstdint>

#include "battery_module/execution_context.h"
#include "battery_module/test_result_code.h"

// What the three quick tests share: the checks of the host's context, the
// events that spoil a quick run, and the report of such an abort.
namespace quick_test {

// False for a null context and when any of the user channel, the result log,
// the system events or the target component is missing, asked in that order.
bool isContextUsable(ExecutionContext *context);

// Bits 0, 1 and 3 to 7: the low byte without bit 2. Bit 8 spoils only the
// charge tests.
bool isDisruptiveEvent(uint32_t events);

// The event bits as they are now; a host that stops giving them raised none.
uint32_t currentEvents(ExecutionContext &context);

// Progress at 100 and a log entry at level 0 with the same text.
void report(ExecutionContext &context, const char *key);

// The abort report after a system event: always ResultAborted.
TestResultCode abortForSystemEvent(ExecutionContext &context);

} // namespace quick_test
