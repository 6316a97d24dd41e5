#pragma once

// The generic health test fails a battery whose full-charge capacity is
// below this share of its design capacity; the smart path judges by the
// expected-capacity curve instead (see expected_capacity.h).
namespace healthy_ratio {

inline constexpr double kGenericLowest = 0.5;

} // namespace healthy_ratio
