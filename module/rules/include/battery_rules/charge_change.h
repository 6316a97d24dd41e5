#pragma once

// The charge and discharge tests pass when the charge moved by more than
// this many percentage points, up or down, over the run.
namespace charge_change {

inline constexpr double kLeastPoints = 0.5;

} // namespace charge_change
