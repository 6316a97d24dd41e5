#pragma once

#include <cstdint>

#include "battery_module/test_result_code.h"

// The wear rule of the smart battery health test, kept apart from the test so
// that the host draws the very curve the module judges by.
namespace expected_capacity {

// Ages run from 1; the curve's last bend is at this age, beyond it a floor.
constexpr uint32_t kLastBendAge = 450;
// Below this relative capacity a battery that aged normally still warns.
constexpr double kHealthyRatio = 0.5;

// The battery's age: its cycle count on the battery's own cycle scale.
uint32_t ageOf(uint32_t cycleCount, uint32_t cycleScale);
// The relative capacity a battery of this age may be expected to keep.
double relativeCapacity(uint32_t age);
// Success, Warning (aged normally, below half) or Failed (worse than its age).
TestResultCode verdict(float ratio, uint32_t age);

} // namespace expected_capacity
