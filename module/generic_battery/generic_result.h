#pragma once

#include <cstdint>

// Results of the generic path's operations.
namespace generic_result {
inline constexpr uint32_t Success = 0;
inline constexpr uint32_t Failed = 1;
inline constexpr uint32_t WmiQueryFailed = 23;
inline constexpr uint32_t BatteryVanished = 38; // the driver no longer knows the tag
inline constexpr uint32_t NoDriverVersion = 128;
} // namespace generic_result
