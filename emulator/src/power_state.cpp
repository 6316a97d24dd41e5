#include "emulator/power_state.h"

namespace emulator {

void PowerState::install(const Scenario &scenario) {
    faults = scenario.power;
    ac = scenario.power.ac;
    scheme = scenario.power.scheme;
    displayPresent = scenario.display.present;
    displayRefuses = scenario.display.refusesBrightness;
    acBrightness = scenario.display.acLevel;
    dcBrightness = scenario.display.dcLevel;
    changes.clear();
}

} // namespace emulator
