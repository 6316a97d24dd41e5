#pragma once

#include <cstdint>

namespace emulator {

// What the module holds open of the operating system's devices, for tests
// that prove nothing leaks. A new scenario leaves these as they are: what
// the old one leaked is still seen.
struct DeviceRegistry {
    uint64_t openSets = 0; // device-information sets not destroyed yet
    uint64_t setsCreated = 0;
    uint64_t openHandles = 0; // device handles not closed yet
};

} // namespace emulator
