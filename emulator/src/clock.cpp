#include "emulator/clock.h"

#include <cmath>
#include <thread>

namespace emulator {

uint64_t Clock::elapsedLocked() {
    if (!realTime_) {
        return virtualMs_;
    }
    const auto wall = std::chrono::duration<double, std::milli>(WallClock::now() - wallStart_);
    return virtualAtWallStart_ + static_cast<uint64_t>(wall.count() * scale_);
}

uint32_t Clock::tickCount() {
    std::lock_guard<std::mutex> lock(mutex_);
    return static_cast<uint32_t>(startTick_ + elapsedLocked());
}

uint64_t Clock::elapsedMs() {
    std::lock_guard<std::mutex> lock(mutex_);
    return elapsedLocked();
}

void Clock::sleep(uint32_t milliseconds) {
    double wait = 0;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        ++sleepCalls_;
        sleptMs_ += milliseconds;
        if (!realTime_) {
            virtualMs_ += milliseconds;
            return;
        }
        wait = milliseconds / scale_;
    }
    std::this_thread::sleep_for(std::chrono::duration<double, std::milli>(wait));
}

void Clock::advance(uint64_t milliseconds) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (realTime_) {
        virtualAtWallStart_ += milliseconds;
    } else {
        virtualMs_ += milliseconds;
    }
}

void Clock::reset(uint32_t startTick) {
    std::lock_guard<std::mutex> lock(mutex_);
    startTick_ = startTick;
    virtualMs_ = 0;
    realTime_ = false;
    scale_ = 1.0;
    sleepCalls_ = 0;
    sleptMs_ = 0;
}

void Clock::useRealTime(double scale) {
    std::lock_guard<std::mutex> lock(mutex_);
    virtualMs_ = elapsedLocked();
    virtualAtWallStart_ = virtualMs_;
    wallStart_ = WallClock::now();
    scale_ = std::isfinite(scale) && scale > 0 ? scale : 1.0;
    realTime_ = true;
}

bool Clock::isRealTime() {
    std::lock_guard<std::mutex> lock(mutex_);
    return realTime_;
}

uint64_t Clock::sleepCalls() {
    std::lock_guard<std::mutex> lock(mutex_);
    return sleepCalls_;
}

uint64_t Clock::sleptMs() {
    std::lock_guard<std::mutex> lock(mutex_);
    return sleptMs_;
}

} // namespace emulator
