#include "portlib/port_gate.h"

// User-mode port I/O needs a vendor driver: this stand-in refuses every
// access, so the module takes the generic path until the real library
// replaces it.
namespace portlib {

namespace {
constexpr uint32_t kAccessDenied = 5;
}

Result::~Result() = default;

PortGate &PortGate::Instance() {
    static PortGate gate;
    return gate;
}

Result PortGate::outbyte(uint16_t, uint8_t) { return Result(kAccessDenied); }

Result PortGate::inbyte(uint16_t, uint8_t *) { return Result(kAccessDenied); }

} // namespace portlib
