#pragma once

#include <cstdint>

#include "emulator/emulator_api.h"
#include "emulator/machine_changes.h"
#include "emulator/scenario.h"

namespace emulator {

// The AC line, the active power scheme and the display: the machine state
// that a charge test changes and must put back.
struct EMULATOR_API PowerState {
    void install(const Scenario &scenario);

    PowerSection faults; // the scenario's settings; `ac` and `scheme` there are the start values
    bool ac = false;
    PowerScheme scheme = PowerScheme::Balanced;
    bool displayPresent = true;
    bool displayRefuses = false;
    uint32_t acBrightness = 80;
    uint32_t dcBrightness = 60;
    MachineChanges changes;
};

} // namespace emulator
