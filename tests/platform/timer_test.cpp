#include <gtest/gtest.h>

#include "hostlib/hostlib.h"
#include "platform/timer.h"
#include "platform/win_timer.h"
#include "support/scenario.h"

TEST(WinTimer, ElapsedSecondsUsesThe32BitDifference) {
    WinTimer timer;
    struct Row {
        uint32_t start, end;
        double seconds;
    };
    const Row rows[] = {
        {1000, 1000, 0.0},
        {0, 500, 0.5},
        {0xFFFFFFF0u, 0x10u, 0.032}, // across the wrap
        {10, 9, 4294967.295},        // an end before the start reads as a long time
    };
    for (const Row &row : rows) {
        EXPECT_DOUBLE_EQ(timer.elapsedSeconds(row.start, row.end), row.seconds)
            << row.start << " to " << row.end;
    }
}

TEST(WinTimer, TickHelpers) {
    WinTimer timer;
    uint32_t tick = 77, other = 77;
    EXPECT_TRUE(timer.sameTick(&tick, &other));
    EXPECT_FALSE(timer.isTickClear(&tick));
    timer.clearTick(&tick);
    EXPECT_TRUE(timer.isTickClear(&tick));
    EXPECT_FALSE(timer.sameTick(&tick, &other));
}

TEST(WinTimer, ModuleAndHostLibraryReadOneClockThatSleepAdvances) {
    useScenarioText(R"({"name": "t", "startTick": 4294967000})");
    Timer *module = moduleTimer();
    EXPECT_EQ(module, moduleTimer());
    Timer *host = get_timer();
    const uint32_t start = module->now();
    EXPECT_EQ(start, 4294967000u);
    module->sleep(500);
    host->sleep(250);
    EXPECT_EQ(host->now(), static_cast<uint32_t>(start + 750)); // wrapped past zero
    EXPECT_DOUBLE_EQ(module->elapsedSeconds(start, host->now()), 0.75);
}
