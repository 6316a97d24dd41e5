#include "battery_rules/expected_capacity.h"

#include <cmath>

namespace expected_capacity {

namespace {
constexpr uint32_t kSmallestCycleScale = 250;
constexpr uint32_t kAgeScale = 250;
} // namespace

uint32_t ageOf(uint32_t cycleCount, uint32_t cycleScale) {
    const uint32_t scale = cycleScale < kSmallestCycleScale ? kSmallestCycleScale : cycleScale;
    const uint32_t age = cycleCount * kAgeScale / scale;
    return age == 0 ? 1 : age;
}

// Logarithmic while young, then two straight stretches, then a floor.
double relativeCapacity(uint32_t age) {
    if (age <= 45)
        return 0.86 - static_cast<double>(std::log10(static_cast<float>(age))) * 0.096781;
    if (age <= 250) return 0.7439 - age * 0.000976;
    if (age <= kLastBendAge) return 1.0625 - age * 0.00225;
    return 0.05;
}

TestResultCode verdict(float ratio, uint32_t age) {
    const double relative = ratio;
    if (relative > relativeCapacity(age)) {
        return relative >= kHealthyRatio ? ResultSuccess : ResultWarning;
    }
    return ResultFailed;
}

} // namespace expected_capacity
