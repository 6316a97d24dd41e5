#pragma once

#include <cstdint>

namespace emulator {

// What the module did to the machine, for tests and benchmarks.
struct Counters {
    uint64_t portAccesses = 0;
    uint64_t portFailures = 0;

    // COM and the instrumentation service.
    int64_t comObjects = 0;                      // emulated COM objects alive now
    uint64_t comObjectsMade = 0;                 // emulated COM objects ever made
    int64_t comStartups = 0;                     // CoInitializeEx successes not yet balanced
    uint64_t comUnbalancedUninitializations = 0; // CoUninitialize with nothing to balance
    uint64_t wmiQueries = 0;                     // ExecQuery calls that reached the service

    // The battery class driver.
    uint64_t batteryRequests = 0; // DeviceIoControl requests the battery driver answered
    uint64_t reenumerations = 0;  // CM_Reenumerate_DevNode calls on the device tree
};

} // namespace emulator
