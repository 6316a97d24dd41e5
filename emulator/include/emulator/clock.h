#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>

#include "emulator/emulator_api.h"

namespace emulator {

// The notebook's millisecond clock. In virtual mode time moves only when a
// test advances it or when somebody sleeps, so minutes of test run in
// microseconds. In real-time mode it follows the wall clock, optionally
// scaled, and sleeping really waits (scaled down).
class EMULATOR_API Clock {
public:
    // Tick count as GetTickCount gives it: 32 bits, wraps.
    uint32_t tickCount();
    // Milliseconds since the clock was last reset, never wrapping.
    uint64_t elapsedMs();

    void sleep(uint32_t milliseconds);
    void advance(uint64_t milliseconds);

    // Starts over at `startTick` in virtual mode.
    void reset(uint32_t startTick);
    void useRealTime(double scale);
    bool isRealTime();

    uint64_t sleepCalls();
    uint64_t sleptMs();

private:
    using WallClock = std::chrono::steady_clock;
    uint64_t elapsedLocked();

    std::mutex mutex_;
    uint32_t startTick_ = 0;
    uint64_t virtualMs_ = 0;
    bool realTime_ = false;
    double scale_ = 1.0;
    WallClock::time_point wallStart_{};
    uint64_t virtualAtWallStart_ = 0;
    uint64_t sleepCalls_ = 0;
    uint64_t sleptMs_ = 0;
};

} // namespace emulator
