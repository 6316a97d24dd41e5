#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/battery_io_access_windows.h"
#include "support/port_log.h"
#include "support/scenario.h"
#include "support/test_name.h"

using Log = std::vector<std::string>;

namespace {

emulator::Notebook &machine() {
    return emulator::Notebook::instance();
}

const Log kIdleWait = {"R 1611", "W 1610 00", "R 1611"};

Log join(std::initializer_list<Log> parts) {
    Log all;
    for (const Log &part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}

} // namespace

TEST(BatteryIOAccessWindows, WriteAndReadGoThroughIndexThenData) {
    useScenario("default");
    BatteryIOAccessWindows io;
    startPortLog();
    EXPECT_TRUE(io.writeRegister(0x10, 0x01));
    uint8_t value = 0xEE;
    EXPECT_TRUE(io.readRegister(0x00, &value));
    EXPECT_EQ(value, 0);
    EXPECT_EQ(portLog(), (Log{"W 1610 10", "W 1611 01", "W 1610 00", "R 1611"}));
}

TEST(BatteryIOAccessWindows, AFailedIndexStepLeavesTheDataPortAlone) {
    useScenarioText(
        R"({"name": "t", "controller": {"present": true, "faults": {"portFaults": [{"port": "index"}]}}})");
    BatteryIOAccessWindows io;
    startPortLog();
    EXPECT_FALSE(io.writeRegister(0x00, 0x02));
    uint8_t value = 0xEE;
    EXPECT_FALSE(io.readRegister(0x00, &value));
    EXPECT_EQ(value, 0xEE);
    EXPECT_EQ(portLog(), (Log{"W 1610 00 !", "W 1610 00 !"}));
}

TEST(BatteryIOAccessWindows, AFailedDataStepFails) {
    useScenarioText(
        R"({"name": "t", "controller": {"present": true, "faults": {"portFaults": [{"port": "data"}]}}})");
    BatteryIOAccessWindows io;
    uint8_t value = 0;
    EXPECT_FALSE(io.readRegister(0x10, &value));
    EXPECT_FALSE(io.writeRegister(0x10, 0x00));
}

struct WaitCase {
    const char *controller;
    bool ready;
    uint64_t polls;    // writes of register 0x00 to the index port
    uint64_t sleeps;   // of 10 ms each
    uint64_t waitedMs; // virtual time
};

void PrintTo(const WaitCase &row, std::ostream *out) {
    *out << row.controller;
}

class WaitReady : public ::testing::TestWithParam<WaitCase> {};

// A command comes first, so the controller has something to be busy with.
TEST_P(WaitReady, PollsAtOnceThenEveryTenMillisecondsForHalfASecond) {
    useScenarioText(std::string(R"({"name": "t", "controller": )") + GetParam().controller + "}");
    BatteryIOAccessWindows io;
    ASSERT_TRUE(io.writeRegister(0x00, 0x02));
    startPortLog();
    EXPECT_EQ(io.waitReady(), GetParam().ready);
    const Log log = portLog();
    ASSERT_FALSE(log.empty());
    EXPECT_EQ(log.front(), "R 1611") << "one read with no index first";
    EXPECT_EQ(static_cast<uint64_t>(std::count(log.begin(), log.end(), "W 1610 00")),
              GetParam().polls);
    EXPECT_EQ(machine().clock().sleepCalls(), GetParam().sleeps);
    EXPECT_EQ(machine().clock().elapsedMs(), GetParam().waitedMs);
}

INSTANTIATE_TEST_SUITE_P(
    Table, WaitReady,
    ::testing::Values(WaitCase{R"({"present": true})", true, 1, 0, 0},
                      // The read before the loop is the first of the busy polls.
                      WaitCase{R"({"present": true, "busyPolls": 1})", true, 1, 0, 0},
                      WaitCase{R"({"present": true, "busyPolls": 4})", true, 4, 3, 30},
                      WaitCase{R"({"present": true, "busyPolls": 50})", true, 50, 49, 490},
                      WaitCase{R"({"present": true, "busyPolls": 51})", false, 50, 50, 500},
                      WaitCase{R"({"present": true, "faults": {"busyForever": true}})", false, 50,
                               50, 500},
                      // A poll that cannot read leaves the busy byte of the read before it.
                      WaitCase{
                          R"({"present": true, "busyPolls": 2,
                     "faults": {"portFaults": [{"port": "data", "nth": 3}]}})",
                          true, 3, 2, 20}),
    NameBy<&WaitCase::controller>());

TEST(BatteryIOAccessWindows, WaitReadyOnAnIdleControllerIsOnePoll) {
    useScenario("default");
    BatteryIOAccessWindows io;
    startPortLog();
    EXPECT_TRUE(io.waitReady());
    EXPECT_EQ(portLog(), kIdleWait);
    EXPECT_EQ(machine().clock().sleepCalls(), 0u);
}

struct SelectionCase {
    uint32_t battery;
    const char *number;
};

void PrintTo(const SelectionCase &row, std::ostream *out) {
    *out << "battery " << row.battery;
}

class Selection : public ::testing::TestWithParam<SelectionCase> {};

TEST_P(Selection, StartsWritesTheNumberAndWaitsAfterEachWrite) {
    useScenario("default");
    BatteryIOAccessWindows io;
    startPortLog();
    EXPECT_TRUE(io.selectBattery(GetParam().battery));
    EXPECT_EQ(portLog(), join({{"W 1610 00", "W 1611 FF"},
                               kIdleWait,
                               {"W 1610 01", "W 1611 FF"},
                               kIdleWait,
                               {"W 1610 10", std::string("W 1611 ") + GetParam().number},
                               kIdleWait}));
}

INSTANTIATE_TEST_SUITE_P(Table, Selection,
                         ::testing::Values(SelectionCase{0, "00"}, SelectionCase{1, "01"},
                                           SelectionCase{2, "01"}),
                         [](const ::testing::TestParamInfo<SelectionCase> &info) {
                             return "Battery" + std::to_string(info.param.battery);
                         });

TEST(BatteryIOAccessWindows, ALostStartDoesNotFailTheSelection) {
    useScenarioText(
        R"({"name": "t", "controller": {"present": true, "faults": {"portFaults": [{"port": "index", "nth": 1}]}}})");
    BatteryIOAccessWindows io;
    startPortLog();
    EXPECT_TRUE(io.selectBattery(0));
    EXPECT_EQ(portLog(), join({{"W 1610 00 !", "W 1610 01", "W 1611 FF"},
                               kIdleWait,
                               {"W 1610 10", "W 1611 00"},
                               kIdleWait}));
}

TEST(BatteryIOAccessWindows, ABusyControllerFailsTheSelectionAfterTwoWaits) {
    useScenarioText(
        R"({"name": "t", "controller": {"present": true, "faults": {"busyForever": true}}})");
    BatteryIOAccessWindows io;
    startPortLog();
    EXPECT_FALSE(io.selectBattery(1));
    EXPECT_EQ(valuesWrittenTo(0x10), std::vector<int>{}) << "gives up before the number";
    EXPECT_EQ(machine().clock().elapsedMs(), 1000u);
}

TEST(BatteryIOAccessWindows, AnAbsentControllerFailsTheSelectionWithoutWaiting) {
    useScenarioText(R"({"name": "t"})");
    BatteryIOAccessWindows io;
    startPortLog();
    EXPECT_FALSE(io.selectBattery(0));
    EXPECT_EQ(portLog(), (Log{"W 1610 00 !", "W 1610 01 !"}));
    EXPECT_EQ(machine().clock().elapsedMs(), 0u);
}
