// Any bytes in every register page of the embedded controller, for one or
// two batteries, through the real port protocol into the smart path's
// decoders: the component's properties and the quick tests' verdicts.

#include <cstddef>
#include <cstdint>

#include "fuzz/fuzz_input.h"
#include "fuzz/fuzz_run.h"

namespace {

constexpr size_t kPageBytes = 5 * 0x30; // pages 0x02 to 0x06

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    FuzzInput input(data, size);
    emulator::Scenario scenario;
    scenario.name = "fuzz";
    scenario.controller.present = true;
    const uint8_t slots = input.byte();
    for (uint32_t slot = 0; slot < 2; ++slot) {
        if ((slots & (1u << slot)) == 0 && slot == 1) continue;
        emulator::BatteryDescription battery;
        battery.slot = slot;
        battery.present = (slots & (4u << slot)) == 0;
        battery.registerBytes = input.bytes(kPageBytes);
        // Every register reads 0 when the bytes run out, not the encoding.
        battery.registerBytes.resize(kPageBytes, 0);
        scenario.batteries.push_back(battery);
    }
    runQuickDiagnostic(scenario);
    return 0;
}
