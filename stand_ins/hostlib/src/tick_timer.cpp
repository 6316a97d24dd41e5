#include <windows.h>

#include "hostlib/hostlib.h"

namespace {

// The system tick count, the same clock the module's own timer reads.
class TickTimer : public Timer {
public:
    void sleep(uint32_t milliseconds) override { Sleep(milliseconds); }
    double elapsedSeconds(uint32_t start, uint32_t end) override {
        return static_cast<double>(static_cast<uint32_t>(end - start)) / 1000.0;
    }
    uint32_t now() override { return GetTickCount(); }
    void clearTick(uint32_t *tick) override { *tick = 0; }
    bool isTickClear(uint32_t *tick) override { return *tick == 0; }
    bool sameTick(uint32_t *first, uint32_t *second) override { return *first == *second; }
};

} // namespace

extern "C" HOSTLIB_API Timer *get_timer() {
    static TickTimer timer;
    return &timer;
}
