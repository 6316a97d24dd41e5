#include "portlib/port_gate.h"

#include "emulator/notebook.h"

// Reaches the emulated notebook's embedded controller.
namespace portlib {

Result::~Result() = default;

PortGate &PortGate::Instance() {
    static PortGate gate;
    return gate;
}

Result PortGate::outbyte(uint16_t port, uint8_t value) {
    return Result(emulator::Notebook::instance().portWrite(port, value));
}

Result PortGate::inbyte(uint16_t port, uint8_t *value) {
    return Result(emulator::Notebook::instance().portRead(port, value));
}

} // namespace portlib
