#pragma once

#include <cstdint>

namespace emulator {

// What the module did to the machine, for tests and benchmarks.
struct Counters {
    uint64_t portAccesses = 0;
    uint64_t portFailures = 0;
};

} // namespace emulator
