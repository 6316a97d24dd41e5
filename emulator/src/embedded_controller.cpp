#include "emulator/embedded_controller.h"

namespace emulator {

namespace {
constexpr uint32_t kNoDevice = 1;
}

void EmbeddedController::install(const Scenario &scenario) {
    present_ = scenario.controller.present;
}

uint32_t EmbeddedController::write(uint16_t port, uint8_t) {
    if (!present_ || (port != kIndexPort && port != kDataPort)) return kNoDevice;
    return kNoDevice;
}

uint32_t EmbeddedController::read(uint16_t port, uint8_t *) {
    if (!present_ || port != kDataPort) return kNoDevice;
    return kNoDevice;
}

} // namespace emulator
