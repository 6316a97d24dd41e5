#include "battery_physics.h"

#include <algorithm>

namespace emulator {

namespace {
constexpr double kSlowChargeBand = 20.0;
constexpr uint64_t kStepMs = 1000;
constexpr double kMsPerMinute = 60000.0;

double schemeFactor(const PhysicsSection &physics, PowerScheme scheme) {
    switch (scheme) {
    case PowerScheme::HighPerformance:
        return physics.highPerformanceFactor;
    case PowerScheme::PowerSaver:
        return physics.powerSaverFactor;
    default:
        return 1.0;
    }
}
} // namespace

double chargeRatePerMinute(const PhysicsSection &physics, const PowerState &power, double percent) {
    if (power.ac) {
        if (physics.chargeStuck) return 0.0;
        const double headroom = std::clamp((100.0 - percent) / kSlowChargeBand, 0.0, 1.0);
        return physics.chargePerMinute * headroom;
    }
    if (physics.dischargeStuck) return 0.0;
    const double display = power.displayPresent ? power.dcBrightness / 100.0 : 0.0;
    const double drain = physics.drainPerMinute + physics.brightnessDrainPerMinute * display;
    return -drain * schemeFactor(physics, power.scheme);
}

void advanceCharge(BatteryDescription &battery, const PhysicsSection &physics,
                   const PowerState &power, uint64_t milliseconds) {
    while (milliseconds > 0 && battery.present) {
        const uint64_t step = std::min(milliseconds, kStepMs);
        const double rate = chargeRatePerMinute(physics, power, battery.chargePercent);
        battery.chargePercent =
            std::clamp(battery.chargePercent + rate * (step / kMsPerMinute), 0.0, 100.0);
        milliseconds -= step;
    }
}

} // namespace emulator
