#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdio>
#include <fstream>
#include <string>

#include <nlohmann/json.hpp>

#include "support/test_name.h"

// The host run as a program, the way people and scripts use it.

namespace {

struct Outcome {
    std::string output;
    int exitCode = -1;
};

Outcome runHost(const std::string &arguments, const std::string &input = "") {
    std::string command = std::string(HOST_PATH) + " " + arguments + " 2>&1";
    if (!input.empty())
        command = "printf '" + input + "' | " + command;
    else
        command += " < /dev/null";
    Outcome outcome;
    FILE *pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return outcome;
    char chunk[4096];
    for (size_t n; (n = std::fread(chunk, 1, sizeof chunk, pipe)) > 0;)
        outcome.output.append(chunk, n);
    const int status = pclose(pipe);
    outcome.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return outcome;
}

nlohmann::json jsonOf(const std::string &arguments) {
    const Outcome outcome = runHost(arguments + " --json");
    const auto start = outcome.output.find('{');
    EXPECT_NE(start, std::string::npos) << outcome.output;
    return nlohmann::json::parse(outcome.output.substr(start == std::string::npos ? 0 : start));
}

struct UsageRow {
    const char *arguments;
    const char *named; // the one clear line names this
    int exitCode;
};

class HostUsage : public ::testing::TestWithParam<UsageRow> {};

} // namespace

TEST_P(HostUsage, AWrongCommandLineGetsOneClearLine) {
    const Outcome outcome = runHost(GetParam().arguments);
    EXPECT_EQ(outcome.exitCode, GetParam().exitCode) << outcome.output;
    EXPECT_NE(outcome.output.find(GetParam().named), std::string::npos) << outcome.output;
}

INSTANTIATE_TEST_SUITE_P(
    Table, HostUsage,
    ::testing::Values(UsageRow{"--bogus", "--bogus", 2},
                      UsageRow{"-Mbattery --quick=x", "no test 'x'", 2},
                      UsageRow{"-Mbattery -Qz", "no test 'z'", 2},
                      UsageRow{"-Mbattery -Q 7", "no battery '7'", 2},
                      UsageRow{"--scenario generic -Mbattery -Q 0", "no battery '0'", 2},
                      UsageRow{"--scenario two-batteries -Mbattery -E", "12.2.0 is not offered", 2},
                      UsageRow{"-Mprinter -Q", "no module 'printer'", 2},
                      UsageRow{"--scenario no-such-scenario", "unknown built-in scenario", 2},
                      UsageRow{"--time-scale -3", "--time-scale", 2},
                      UsageRow{"--run 12.9.9", "no test with identifier '12.9.9'", 2},
                      UsageRow{"--module /nonexistent/battery_module.so --list",
                               "/nonexistent/battery_module.so", 69}),
    NameBy<&UsageRow::arguments>());

TEST(HostProgram, ExitCodesFollowTheMostSevereResult) {
    const std::pair<const char *, int> rows[] = {
        {"--scenario default -Mbattery -Q", 0},
        {"--scenario worn -Mbattery --quick=\"h\"", 1},
        {"--scenario aged -Mbattery -Qh", 5},
        {"--scenario hot -Mbattery --quick=t", 5},
        {"--scenario no-temperature -Mbattery -Q", 4},
        {"--scenario battery-removed -Mbattery -Q", 3},
        {"--scenario generic -Mbattery -Q bat", 0},
        {"--scenario generic-worn -Mbattery -Q", 1},
        {"--scenario generic-no-battery -Mbattery -Q", 3},
    };
    for (const auto &row : rows) {
        const Outcome outcome = runHost(row.first);
        EXPECT_EQ(outcome.exitCode, row.second) << row.first << "\n" << outcome.output;
    }
}

TEST(HostProgram, TheJsonReportMatchesTheScenario) {
    const nlohmann::json report = jsonOf("--scenario worn -Mbattery -Q 0");
    EXPECT_EQ(report["moduleVersion"], "4.37.0.209");
    EXPECT_EQ(report["path"], "smart");
    EXPECT_EQ(report["exitCode"], 1);
    ASSERT_EQ(report["batteries"].size(), 1u);
    EXPECT_EQ(report["batteries"][0]["device"], "0");
    EXPECT_EQ(report["batteries"][0]["name"], "MAIN_BATTERY");
    bool serial = false;
    for (const auto &property : report["batteries"][0]["properties"]) {
        serial = serial || (property["key"] == "SERIAL_NUMBER" && property["value"] == "1207");
    }
    EXPECT_TRUE(serial) << report["batteries"][0].dump();
    ASSERT_EQ(report["runs"].size(), 2u);
    const auto &health = report["runs"][0];
    EXPECT_EQ(health["id"], "12.1.1");
    EXPECT_EQ(health["name"], "BATTERY_HEALTH_TEST");
    EXPECT_EQ(health["result"], 1);
    EXPECT_EQ(health["resultName"], "ResultFailed");
    EXPECT_EQ(health["log"][0]["level"], 2);
    EXPECT_EQ(health["charge"][0], "TOTAL_BATTERY_CHARGE: 57%");
    EXPECT_EQ(report["runs"][1]["id"], "12.1.4");
}

TEST(HostProgram, ListsBothPaths) {
    const Outcome smart = runHost("--scenario two-batteries --list --keys");
    EXPECT_EQ(smart.exitCode, 0);
    EXPECT_NE(smart.output.find("path: smart"), std::string::npos) << smart.output;
    EXPECT_NE(smart.output.find("SECONDARY_BATTERY"), std::string::npos);
    EXPECT_NE(smart.output.find("12.1.4"), std::string::npos);
    const Outcome generic = runHost("--scenario generic-two-batteries --list");
    EXPECT_EQ(generic.exitCode, 0);
    EXPECT_NE(generic.output.find("path: generic"), std::string::npos) << generic.output;
    EXPECT_NE(generic.output.find("  bat  Battery"), std::string::npos) << "groups, in English";
    EXPECT_NE(generic.output.find("Design capacity"), std::string::npos);
    EXPECT_NE(generic.output.find("12.2.3"), std::string::npos);
}

TEST(HostProgram, ScenarioListNamesEveryBuiltInScenarioWithWhatItShows) {
    const Outcome outcome = runHost("--scenario list");
    EXPECT_EQ(outcome.exitCode, 0);
    for (const char *name : {"default", "worn", "aged", "hot", "generic", "dead-controller"}) {
        EXPECT_NE(outcome.output.find(std::string(name) + " "), std::string::npos) << name;
    }
}

TEST(HostProgram, AScenarioFileWithAnErrorNamesFileAndField) {
    const std::string path = ::testing::TempDir() + "bad-host-scenario.json";
    std::ofstream(path) << R"({"name": "bad", "batteries": [{"designCapacity": -1}]})";
    const Outcome outcome = runHost("--scenario " + path + " --list");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_NE(outcome.output.find(path), std::string::npos) << outcome.output;
    EXPECT_NE(outcome.output.find("batteries[0].designCapacity"), std::string::npos);
    std::remove(path.c_str());
}

TEST(HostProgram, ThePromptIsAnsweredThroughStandardInput) {
    // The charge test asks for the AC cable: Enter plugs it, "n" leaves it.
    const Outcome plugged =
        runHost("--scenario default -Mbattery --extended=c --duration 5 --time-scale 1000", "\\n");
    EXPECT_EQ(plugged.exitCode, 0) << plugged.output;
    EXPECT_NE(plugged.output.find("AC cable plugged in"), std::string::npos) << plugged.output;
    const Outcome declined =
        runHost("--scenario default -Mbattery --extended=c --duration 5 --time-scale 1000", "n\\n");
    EXPECT_EQ(declined.exitCode, 4) << declined.output;
    EXPECT_NE(declined.output.find("because the AC cable is unplugged"), std::string::npos)
        << declined.output;
}

TEST(HostProgram, ExtendedVerdictsOnTheEmulatedNotebook) {
    const std::pair<const char *, int> rows[] = {
        {"--scenario default -Mbattery -E --yes --duration 5", 0},
        {"--scenario non-discharging -Mbattery -Ed --yes --duration 5", 1},
        {"--scenario non-charging -Mbattery -Ec --yes --duration 5", 1},
        {"--scenario generic -Mbattery --extended bat --yes --duration 5", 0},
        {"--scenario default -Mbattery -Ed --duration 21", 4},
    };
    for (const auto &row : rows) {
        const Outcome outcome = runHost(std::string(row.first) + " --time-scale 2000");
        EXPECT_EQ(outcome.exitCode, row.second) << row.first << "\n" << outcome.output;
    }
}

TEST(HostProgram, CtrlCDuringAnExtendedRunPutsTheMachineBack) {
    // Ten real seconds of measurement at this pace; the interrupt comes after one.
    const std::string command = std::string("sh -c '") + HOST_PATH +
                                " --scenario default -Mbattery -Ed --time-scale 60 --json"
                                " </dev/null >" +
                                ::testing::TempDir() +
                                "interrupted.json 2>&1 &"
                                " pid=$!; sleep 1; kill -INT $pid; wait $pid; echo $?'";
    FILE *pipe = popen(command.c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    char status[16] = {};
    ASSERT_NE(std::fgets(status, sizeof status, pipe), nullptr);
    pclose(pipe);
    EXPECT_EQ(std::atoi(status), 4) << "aborted";
    std::ifstream file(::testing::TempDir() + "interrupted.json");
    const nlohmann::json report = nlohmann::json::parse(file);
    EXPECT_EQ(report["runs"][0]["result"], 4);
    const auto &state = report["machineState"];
    EXPECT_EQ(state["scheme"], "balanced") << state.dump();
    EXPECT_EQ(state["acBrightness"], 80) << "the saved AC level";
    EXPECT_EQ(state["dcBrightness"], 80) << "the saved AC level, on battery too";
    EXPECT_FALSE(state["ac"]);
}
