#include <gtest/gtest.h>

#include "emulator/notebook.h"

namespace {

emulator::Notebook &notebook() {
    return emulator::Notebook::instance();
}

void install(const std::string &json) {
    const auto result = emulator::parseScenario(json, "test");
    ASSERT_TRUE(result.ok) << result.error;
    notebook().install(result.scenario);
}

double chargeAfterMinutes(const std::string &sections, double minutes) {
    install(R"({"name": "p", "batteries": [{"chargePercent": 50}])" + sections + "}");
    notebook().clock().advance(static_cast<uint64_t>(minutes * 60000));
    return notebook().batteries()[0].chargePercent;
}

} // namespace

TEST(BatteryPhysics, DrainGrowsWithBrightnessAndTheHighPerformanceScheme) {
    const std::string rates =
        R"(, "physics": {"drainPerMinute": 0.4, "brightnessDrainPerMinute": 0.6})";
    const double dark = chargeAfterMinutes(rates + R"(, "display": {"dcLevel": 0})", 10);
    const double bright = chargeAfterMinutes(rates + R"(, "display": {"dcLevel": 100})", 10);
    const double fast = chargeAfterMinutes(
        rates + R"(, "display": {"dcLevel": 100}, "power": {"scheme": "high-performance"})", 10);
    const double saver = chargeAfterMinutes(
        rates + R"(, "display": {"dcLevel": 100}, "power": {"scheme": "power-saver"})", 10);
    EXPECT_NEAR(dark, 46.0, 1e-9);
    EXPECT_NEAR(bright, 40.0, 1e-9);
    EXPECT_NEAR(fast, 35.0, 1e-9);
    EXPECT_NEAR(saver, 43.0, 1e-9);
}

TEST(BatteryPhysics, ChargingSlowsNearTheTopAndNeverPassesFull) {
    EXPECT_NEAR(chargeAfterMinutes(R"(, "power": {"ac": true})", 10), 60.0, 1e-9);
    EXPECT_GT(chargeAfterMinutes(R"(, "power": {"ac": true})", 120), 99.0);
    EXPECT_LE(chargeAfterMinutes(R"(, "power": {"ac": true})", 600), 100.0);
    EXPECT_EQ(
        chargeAfterMinutes(R"(, "power": {"ac": true}, "physics": {"chargeStuck": true})", 10),
        50.0);
    EXPECT_EQ(chargeAfterMinutes(R"(, "physics": {"dischargeStuck": true})", 10), 50.0);
    EXPECT_GE(chargeAfterMinutes("", 600), 0.0);
}

TEST(Timeline, EventsHappenAtTheirVirtualTime) {
    install(R"({"name": "t", "batteries": [{"chargePercent": 50}],
        "physics": {"drainPerMinute": 1, "brightnessDrainPerMinute": 0},
        "timeline": [{"at_ms": 60000, "event": "ac-plug"},
                     {"at_ms": 90000, "event": "system-event", "bits": 256},
                     {"at_ms": 120000, "event": "battery-remove", "slot": 0},
                     {"at_ms": 150000, "event": "stop-request"}]})");
    notebook().clock().advance(59999);
    EXPECT_FALSE(notebook().power().ac);
    notebook().clock().sleep(1);
    EXPECT_TRUE(notebook().power().ac);
    EXPECT_NEAR(notebook().batteries()[0].chargePercent, 49.0, 1e-9) << "drained one minute";
    EXPECT_EQ(notebook().systemEvents(), 0u);
    notebook().clock().advance(30000);
    EXPECT_EQ(notebook().systemEvents(), 256u);
    EXPECT_TRUE(notebook().batteries()[0].present);
    notebook().clock().advance(60000);
    EXPECT_FALSE(notebook().batteries()[0].present);
    EXPECT_TRUE(notebook().stopRequested());
    ASSERT_FALSE(notebook().power().changes.empty());
    EXPECT_EQ(notebook().power().changes[0].setting, "ac");
    EXPECT_EQ(notebook().power().changes[0].atMs, 60000u);
}

TEST(Timeline, OutOfOrderEventsAndUnknownKindsAreRefused) {
    EXPECT_FALSE(
        emulator::parseScenario(R"({"name": "x", "timeline": [{"at_ms": 5, "event": "ac-plug"},
        {"at_ms": 4, "event": "ac-unplug"}]})",
                                "t")
            .ok);
    const auto unknown = emulator::parseScenario(
        R"({"name": "x", "timeline": [{"at_ms": 5, "event": "explode"}]})", "t");
    EXPECT_NE(unknown.error.find("timeline[0].event"), std::string::npos) << unknown.error;
    const auto bitless = emulator::parseScenario(
        R"({"name": "x", "timeline": [{"at_ms": 5, "event": "system-event"}]})", "t");
    EXPECT_NE(bitless.error.find("timeline[0].bits"), std::string::npos) << bitless.error;
}

TEST(Notebook, TheUserCanPlugTheCableAndTheChangeIsRecorded) {
    install(R"({"name": "u", "user": {"ignoresPrompts": true}})");
    EXPECT_TRUE(notebook().userIgnoresPrompts());
    notebook().clock().advance(1500);
    notebook().setAcLine(true);
    notebook().setAcLine(true);
    ASSERT_EQ(notebook().power().changes.size(), 1u);
    EXPECT_EQ(notebook().power().changes[0].atMs, 1500u);
}
