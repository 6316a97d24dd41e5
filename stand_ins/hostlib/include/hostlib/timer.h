#pragma once

#include <cstdint>

// Clock and sleep in 32-bit millisecond ticks since system start; the tick
// count wraps after about 49.7 days.
class Timer {
public:
    virtual ~Timer() = default;
    virtual void sleep(uint32_t milliseconds) = 0;
    virtual double elapsedSeconds(uint32_t start, uint32_t end) = 0;
    virtual uint32_t now() = 0;
    virtual void clearTick(uint32_t *tick) = 0;
    virtual bool isTickClear(uint32_t *tick) = 0;
    virtual bool sameTick(uint32_t *first, uint32_t *second) = 0;
};
