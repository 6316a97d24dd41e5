#pragma once

#include <cstdint>

#include "platform_layer/machine.h"

namespace platform_layer {

// Where the kernel shows batteries and AC adapters.
inline constexpr const char *kPowerSupplyClass = "/sys/class/power_supply";

// The Linux computer the process runs on, read from the kernel's
// power-supply class as upower reads it. Nothing is cached: every request
// reads the attributes it needs afresh. Ports are never touched.
WIN32_API Machine &thisMachine();

// How often attribute files were read, for benchmarks and tests: every read
// and the reads of a file already read in the same request (always zero by
// design; counted to prove it).
struct SysfsReadCounts {
    uint64_t reads = 0;
    uint64_t repeatedReads = 0;
};
WIN32_API SysfsReadCounts sysfsReadCounts();

} // namespace platform_layer
