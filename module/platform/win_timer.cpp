#include "platform/win_timer.h"

#include <windows.h>

#include "platform/timer.h"

void WinTimer::sleep(uint32_t milliseconds) {
    Sleep(milliseconds);
}

double WinTimer::elapsedSeconds(uint32_t start, uint32_t end) {
    // Unsigned 32-bit subtraction gives the right difference across a wrap.
    const uint32_t ticks = end - start;
    return static_cast<double>(ticks) / 1000.0;
}

uint32_t WinTimer::now() {
    return GetTickCount();
}

void WinTimer::clearTick(uint32_t *tick) {
    *tick = 0;
}

bool WinTimer::isTickClear(uint32_t *tick) {
    return *tick == 0;
}

bool WinTimer::sameTick(uint32_t *first, uint32_t *second) {
    return *first == *second;
}

Timer *moduleTimer() {
    // Made on first use and kept while the library is loaded; an object
    // rather than an allocation, so that unloading the library leaks nothing.
    static WinTimer timer;
    return &timer;
}
