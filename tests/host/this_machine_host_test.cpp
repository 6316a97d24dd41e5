// The host on this machine, run as a program under umockdev-run over each
// testbed, the way a person with a Linux notebook runs it.

#include <gtest/gtest.h>

#include <string>

#include <nlohmann/json.hpp>

#include "support/command_run.h"

namespace {

using Outcome = CommandOutcome;

// Under AddressSanitizer the preload library comes before its runtime.
Outcome runOn(const std::string &testbed, const std::string &arguments) {
    const std::string command = "ASAN_OPTIONS=\"${ASAN_OPTIONS:+$ASAN_OPTIONS:}verify_asan_link_"
                                "order=0\" umockdev-run -d " +
                                std::string(TESTBED_DIR) + "/" + testbed + ".umockdev -- " +
                                HOST_PATH + " --this-machine " + arguments + " 2>&1 < /dev/null";
    return runCommand(command);
}

// Each battery as "name/serial/chemistry", then the runs' results.
std::string summaryOf(const nlohmann::json &report) {
    std::string summary = report.value("machine", "?") + ":";
    for (const auto &battery : report["batteries"]) {
        for (const auto &group : battery["groups"]) {
            std::string name, serial, chemistry;
            for (const auto &property : group["properties"]) {
                const std::string key = property["key"];
                if (key == "NAME") name = property["value"];
                if (key == "SERIAL_NUMBER") serial = property["value"];
                if (key == "CHEMISTRY") chemistry = property["value"];
            }
            summary += " " + name + "/" + serial + "/" + chemistry;
        }
    }
    summary += " runs";
    for (const auto &run : report["runs"])
        summary += " " + std::to_string(run["result"].get<int>());
    return summary;
}

struct QuickRow {
    const char *testbed;
    const char *summary;
};

class ThisMachineHost : public ::testing::TestWithParam<QuickRow> {};

std::string rowName(const ::testing::TestParamInfo<QuickRow> &info) {
    std::string name = info.param.testbed;
    for (char &c : name)
        if (c == '-') c = '_';
    return name;
}

} // namespace

TEST_P(ThisMachineHost, QuickRunReportsTheBatteriesAndTheVerdict) {
    const Outcome outcome = runOn(GetParam().testbed, "-Mbattery -Q --json");
    EXPECT_EQ(outcome.exitCode, 0) << outcome.output;
    const auto start = outcome.output.find('{');
    ASSERT_NE(start, std::string::npos) << outcome.output;
    EXPECT_EQ(summaryOf(nlohmann::json::parse(outcome.output.substr(start))), GetParam().summary);
}

INSTANTIATE_TEST_SUITE_P(
    Testbeds, ThisMachineHost,
    ::testing::Values(
        QuickRow{"energy-with-adapter", "this-machine: GEHC/0000/LITHIUM_ION runs 0"},
        QuickRow{"charge-reporting", "this-machine: MWL31b/1/LITHIUM_ION runs 0"},
        QuickRow{"two-batteries",
                 "this-machine: LNV-45N1/44853/LITHIUM_ION L14M4P23/756/LITHIUM_ION runs 0"},
        QuickRow{"peripheral-battery", "this-machine: LNV-45N1/44853/LITHIUM_ION runs 0"},
        QuickRow{"empty-slot", "this-machine: LNV-45N1/44853/LITHIUM_ION runs 0"},
        QuickRow{"sparse-battery", "this-machine: UX32-65/NOT_AVAILABLE/LITHIUM_ION runs 0"},
        QuickRow{"blank-serial", "this-machine: L14M4P23/  756/LITHIUM_ION runs 0"}),
    rowName);

TEST(ThisMachineHostList, ShowsEveryPropertyOfEveryBattery) {
    const Outcome outcome = runOn("two-batteries", "-Mbattery --list");
    EXPECT_EQ(outcome.exitCode, 0) << outcome.output;
    for (const char *line :
         {"on this-machine", "path: generic", "Name: LNV-45N1", "Serial number: 44853",
          "Design capacity: 46.97 Wh", "Name: L14M4P23", "Full-charge capacity: 52.26 Wh",
          "Design voltage: 14.8 Volts", "Driver version: "}) {
        EXPECT_NE(outcome.output.find(line), std::string::npos) << line << "\n" << outcome.output;
    }
}

TEST(ThisMachineHostRefusal, AScenarioGetsOneClearLine) {
    const std::pair<const char *, const char *> refusals[] = {
        {"-Mbattery -Q --scenario worn", "scenarios exist only on the emulated notebook"}};
    for (const auto &refusal : refusals) {
        const Outcome outcome = runOn("energy-with-adapter", refusal.first);
        EXPECT_EQ(outcome.exitCode, 2) << refusal.first << "\n" << outcome.output;
        EXPECT_NE(outcome.output.find(refusal.second), std::string::npos) << outcome.output;
    }
}
