#include <gtest/gtest.h>

#include "diagnostics/charge_report.h"
#include "support/recording_host.h"
#include "support/scenario.h"

namespace {

std::string machineAt(int percent) {
    return R"({"name": "r", "power": {"batteryLifePercent": )" + std::to_string(percent) +
           R"(}, "batteries": [{"chargePercent": 50}]})";
}

TEST(ChargeReport, TellsTheTotalChargeLast) {
    useScenarioText(machineAt(76));
    RecordingHost host;
    { ChargeReport report(&host, nullptr); }
    EXPECT_EQ(host.record,
              (std::vector<RecordingHost::Event>{entry("TOTAL_BATTERY_CHARGE: 76%", 0),
                                                 progress(100, "TOTAL_BATTERY_CHARGE: 76%")}));
}

TEST(ChargeReport, CapsAt100AndSaysNothingWithoutAFigure) {
    useScenarioText(machineAt(150));
    RecordingHost host;
    { ChargeReport report(&host, nullptr); }
    EXPECT_EQ(host.entries(),
              (std::vector<RecordingHost::Event>{entry("TOTAL_BATTERY_CHARGE: 100%", 0)}));
    for (int unknown : {255, 128}) {
        useScenarioText(machineAt(unknown));
        RecordingHost quiet;
        {
            ChargeReport report(&quiet, nullptr);
            report.addPendingMessage("LOST");
        }
        EXPECT_TRUE(quiet.record.empty()) << unknown;
    }
}

TEST(ChargeReport, InitialAndFinalChargeWithPendingMessages) {
    useScenarioText(machineAt(80));
    RecordingHost host;
    {
        ChargeReport report(&host, nullptr);
        report.captureInitialCharge();
        report.addPendingMessage("FIRST");
        report.addPendingMessage("SECOND");
        useScenarioText(machineAt(0));
    }
    EXPECT_EQ(host.record,
              (std::vector<RecordingHost::Event>{
                  entry("INITIAL_BATTERY_CHARGE: 80%", 0), entry("FINAL_BATTERY_CHARGE: 0%", 0),
                  progress(100, "INITIAL_BATTERY_CHARGE: 80% || FINAL_BATTERY_CHARGE: 0%"),
                  entry("FIRST SECOND", 0), progress(100, "FIRST SECOND")}));
}

TEST(ChargeReport, AHostWithoutLogOrChannelGetsNothing) {
    useScenarioText(machineAt(60));
    RecordingHost host;
    host.nullLog = true;
    { ChargeReport report(&host, nullptr); }
    EXPECT_TRUE(host.record.empty());
}

} // namespace
