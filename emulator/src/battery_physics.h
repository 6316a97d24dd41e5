#pragma once

#include <cstdint>

#include "emulator/power_state.h"
#include "emulator/scenario.h"

namespace emulator {

// Percentage points per minute by which a battery's charge moves now:
// falling on battery, faster with a bright display and the high-performance
// scheme; rising on AC, slowing over the last 20 points.
double chargeRatePerMinute(const PhysicsSection &physics, const PowerState &power, double percent);

// Moves the charge over `milliseconds` of virtual time, in steps of at most
// a second, and keeps it within 0 to 100.
void advanceCharge(BatteryDescription &battery, const PhysicsSection &physics,
                   const PowerState &power, uint64_t milliseconds);

} // namespace emulator
