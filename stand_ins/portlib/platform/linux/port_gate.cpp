#include "portlib/port_gate.h"

#include "platform_layer/machine.h"

// Reaches the ports of the machine the platform layer answers from: the
// emulated notebook's embedded controller, or nothing on this machine.
namespace portlib {

Result::~Result() = default;

PortGate &PortGate::Instance() {
    static PortGate gate;
    return gate;
}

Result PortGate::outbyte(uint16_t port, uint8_t value) {
    return Result(platform_layer::currentMachine().writePort(port, value));
}

Result PortGate::inbyte(uint16_t port, uint8_t *value) {
    return Result(platform_layer::currentMachine().readPort(port, value));
}

} // namespace portlib
