#pragma once

#include "hostlib/timer.h"

// Timer over GetTickCount and Sleep.
class WinTimer : public Timer {
public:
    void sleep(uint32_t milliseconds) override;
    double elapsedSeconds(uint32_t start, uint32_t end) override;
    uint32_t now() override;
    void clearTick(uint32_t *tick) override;
    bool isTickClear(uint32_t *tick) override;
    bool sameTick(uint32_t *first, uint32_t *second) override;
};
