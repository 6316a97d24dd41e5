// Which machine the layer answers from.

#include <atomic>

#include "platform_layer/machine.h"

namespace platform_layer {

namespace {
std::atomic<Machine *> chosen{nullptr};
}

Machine::~Machine() = default;
ProtocolFaults::~ProtocolFaults() = default;

// A machine that keeps to the protocols.
ProtocolFaults &Machine::faults() {
    static ProtocolFaults none;
    return none;
}

Machine &currentMachine() {
    Machine *machine = chosen.load();
    return machine != nullptr ? *machine : emulatedNotebook();
}

void useMachine(Machine *machine) {
    chosen.store(machine);
}

} // namespace platform_layer
