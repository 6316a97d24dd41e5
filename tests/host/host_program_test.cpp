#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cctype>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>

#include <nlohmann/json.hpp>

#include "support/command_run.h"
#include "support/test_name.h"

// The host run as a program, the way people and scripts use it.

namespace {

using Outcome = CommandOutcome;

// A host that hangs ends after a while with exit code 124.
Outcome runHost(const std::string &arguments, const std::string &input = "",
                const std::string &environment = "") {
    std::string command = environment + " timeout 60 " + HOST_PATH + " " + arguments + " 2>&1";
    if (!input.empty())
        command = "printf '" + input + "' | " + command;
    else
        command += " < /dev/null";
    return runCommand(command);
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
                      UsageRow{"--time-scale -3", "'-3' is not a number from 0.001 to 100000", 2},
                      UsageRow{"--time-scale 1e308 -Mbattery -E --yes", "'1e308' is not a", 2},
                      UsageRow{"--time-scale nan -Mbattery -E --yes", "'nan' is not a", 2},
                      UsageRow{"--time-scale 1e12 -Mbattery -Q", "'1e12' is not a", 2},
                      UsageRow{"--time-scale 0.0001 -Mbattery -Q", "'0.0001' is not a", 2},
                      UsageRow{"--run 12.9.9", "no test with identifier '12.9.9'", 2},
                      UsageRow{"--module /nonexistent/battery_module.so --list",
                               "/nonexistent/battery_module.so", 69}),
    NameBy<&UsageRow::arguments>());

TEST(HostProgram, ExitCodesFollowTheMostSevereResult) {
    const std::pair<const char *, int> rows[] = {
        {"--scenario default -Mbattery -Q", 0},
        {"--scenario worn -Mbattery --quick=\"h\"", 1},
        {"--scenario aged -Mbattery -Qh", 5},
        {"--scenario aged -Mbattery --quick=h,t", 5},
        {"--scenario aged -Mbattery --quick=battery-health-test", 5},
        {"--scenario no-temperature -Mbattery -Q", 4},
        {"--scenario battery-removed -Mbattery -Q", 3},
        {"--scenario generic-worn -Mbattery -Q", 1},
        {"--scenario generic-no-battery -Mbattery -Q", 3},
        {"--scenario default -Mbattery -E --yes --duration 5 --time-scale 2000", 0},
        {"--scenario non-discharging -Mbattery -Ed --yes --duration 5 --time-scale 2000", 1},
        {"--scenario default -Mbattery -Ed --duration 21 --time-scale 2000", 4},
        // The documented bounds of the time scale are themselves accepted.
        {"--time-scale 0.001 --version", 0},
        {"--time-scale 100000 --scenario default -Mbattery -Q", 0},
    };
    for (const auto &row : rows) {
        const Outcome outcome = runHost(row.first);
        EXPECT_EQ(outcome.exitCode, row.second) << row.first << "\n" << outcome.output;
    }
}

TEST(HostProgram, TheJsonReportMatchesTheScenario) {
    // A battery named twice is tested once.
    const nlohmann::json report = jsonOf("--scenario worn -Mbattery -Q 0 0");
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

// A bad scenario is a usage error however it is named: on the command line
// or through the environment.
struct ScenarioFileRow {
    const char *name;
    const char *content; // "<fifo>" and "<directory>" make one of those instead
    bool throughEnvironment;
    const char *named;
};

class HostScenarioFile : public ::testing::TestWithParam<ScenarioFileRow> {};

TEST_P(HostScenarioFile, IsRefusedWithOneLineNamingFileAndField) {
    const ScenarioFileRow &row = GetParam();
    const std::string path = ::testing::TempDir() + "host-scenario-" + row.name;
    const std::string content = row.content;
    if (content == "<fifo>") {
        ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    } else if (content == "<directory>") {
        ASSERT_EQ(mkdir(path.c_str(), 0700), 0);
    } else {
        std::ofstream(path) << content;
    }
    const Outcome outcome = row.throughEnvironment
                                ? runHost("-Mbattery -Q", "", "EMULATED_NOTEBOOK=" + path)
                                : runHost("--scenario " + path + " -Mbattery -Q");
    EXPECT_EQ(outcome.exitCode, 2) << outcome.output;
    const std::string line = outcome.output.substr(0, outcome.output.find('\n'));
    EXPECT_EQ(line, "error: scenario '" + path + "': " + row.named) << outcome.output;
    content == "<directory>" ? rmdir(path.c_str()) : std::remove(path.c_str());
}

INSTANTIATE_TEST_SUITE_P(
    Table, HostScenarioFile,
    ::testing::Values(
        ScenarioFileRow{"negative.json", R"({"name": "n", "batteries": [{"designCapacity": -1}]})",
                        false,
                        "field 'batteries[0].designCapacity': expected a whole number from 0"},
        ScenarioFileRow{"hot.json", R"({"name": "h", "batteries": [{"temperature_C": 1e400}]})",
                        false, "field 'batteries[0].temperature_C': number out of range"},
        ScenarioFileRow{"drain.json", R"({"name": "d", "physics": {"drainPerMinute": 2e308}})",
                        false, "field 'physics.drainPerMinute': number out of range"},
        ScenarioFileRow{"hot-env.json", R"({"name": "h", "batteries": [{"temperature_C": 1e400}]})",
                        true, "field 'batteries[0].temperature_C': number out of range"},
        ScenarioFileRow{"twice.json", R"({"name": "a", "batteries": [{}], "name": "b"})", false,
                        "field 'name': given twice in one object"},
        ScenarioFileRow{"pipe", "<fifo>", false, "is a named pipe, not a file"},
        ScenarioFileRow{"pipe-env", "<fifo>", true, "is a named pipe, not a file"},
        ScenarioFileRow{"folder", "<directory>", false, "is a directory, not a file"}),
    [](const ::testing::TestParamInfo<ScenarioFileRow> &info) {
        std::string name = info.param.name;
        for (char &c : name) c = std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
        return name;
    });

TEST(HostProgram, ThePromptIsAnsweredThroughStandardInput) {
    // The charge test asks for the AC cable: Enter plugs it, "n" leaves it.
    const auto answered = [](const std::string &input, const std::string &more = "") {
        return runHost("--scenario default -Mbattery --extended=c --duration 5 --time-scale 1000" +
                           more,
                       input);
    };
    const Outcome plugged = answered("\\n");
    EXPECT_EQ(plugged.exitCode, 0) << plugged.output;
    EXPECT_NE(plugged.output.find("AC cable plugged in"), std::string::npos) << plugged.output;
    const Outcome declined = answered("n\\n");
    EXPECT_EQ(declined.exitCode, 4) << declined.output;
    EXPECT_NE(declined.output.find("because the AC cable is unplugged"), std::string::npos)
        << declined.output;
    // `printf n | battery_host ...`: the last answer needs no newline.
    EXPECT_EQ(answered("n").exitCode, 4);
    // Standard input closed before any answer: the cable is plugged as asked.
    EXPECT_EQ(answered("").exitCode, 0);
    const Outcome json = answered("\\n", " --json");
    EXPECT_NE(json.output.find("Plug in the AC cable, then press Enter"), std::string::npos)
        << "the way the cable must go, beside a JSON report\n"
        << json.output;
}

struct StopRow {
    const char *name;
    const char *signal;
    const char *tests; // both: the discharge test measures; c waits at the prompt
    int exitCode;      // Ctrl-C reports the aborted run; the others end by their signal
    int dcBrightness;  // a measurement puts back the AC level on both; a prompt changed nothing
};

class HostStop : public ::testing::TestWithParam<StopRow> {};

// The shell loop that waits (at most ten seconds) until the host catches the
// signal: on a loaded machine a signal sent after a fixed pause could still
// find the default action in place, and the host would die without a report.
std::string untilCaught(const std::string &signalName) {
    const std::map<std::string, int> numbers{{"INT", SIGINT}, {"TERM", SIGTERM}, {"HUP", SIGHUP}};
    const std::string bit = std::to_string(numbers.at(signalName) - 1);
    return "for i in $(seq 100); do mask=$(sed -n \"s/^SigCgt:\\t//p\" /proc/$pid/status); "
           "mask=${mask:-0}; "
           "[ $(( 0x$mask >> " +
           bit + " & 1 )) = 1 ] && break; sleep 0.1; done; ";
}

// Ten real seconds of measurement at this pace; the signal comes a second
// after the host is ready for it.
// Standard input is a pipe that stays open and silent, as a person who has
// not answered yet.
TEST_P(HostStop, EveryWayOutPutsTheMachineBack) {
    const std::string folder = ::testing::TempDir() + "stop-" + GetParam().name + "/";
    const std::string command =
        "sh -c 'rm -rf " + folder + "; mkdir -p " + folder + "; mkfifo " + folder + "in; exec 3<>" +
        folder + "in; " + HOST_PATH + " --scenario default -Mbattery -E" + GetParam().tests +
        " --time-scale 60 --json <" + folder + "in >" + folder + "report.json 2>" + folder +
        "errors & pid=$!; " + untilCaught(GetParam().signal) + "sleep 1; kill -" +
        GetParam().signal + " $pid; wait $pid; echo $?'";
    EXPECT_EQ(std::atoi(runCommand(command).output.c_str()), GetParam().exitCode);
    std::ifstream file(folder + "report.json");
    const nlohmann::json report = nlohmann::json::parse(file, nullptr, false);
    ASSERT_FALSE(report.is_discarded()) << "the report is still written";
    EXPECT_EQ(report["runs"][0]["result"], 4) << report["runs"].dump();
    const auto &state = report["machineState"];
    EXPECT_EQ(state["scheme"], "balanced") << state.dump();
    EXPECT_EQ(state["acBrightness"], 80) << "the saved AC level";
    EXPECT_EQ(state["dcBrightness"], GetParam().dcBrightness);
    EXPECT_FALSE(state["ac"]) << "a prompt left unanswered never plugs the cable";
    EXPECT_EQ(report["runs"].size(), 1u) << "no test starts after a stop";
}

INSTANTIATE_TEST_SUITE_P(Table, HostStop,
                         ::testing::Values(StopRow{"CtrlCMeasuring", "INT", "", 4, 80},
                                           StopRow{"TermMeasuring", "TERM", "", 143, 80},
                                           StopRow{"HangUpMeasuring", "HUP", "", 129, 80},
                                           StopRow{"CtrlCAtPrompt", "INT", "c", 4, 60},
                                           StopRow{"TermAtPrompt", "TERM", "c", 143, 60},
                                           StopRow{"HangUpAtPrompt", "HUP", "c", 129, 60}),
                         [](const ::testing::TestParamInfo<StopRow> &info) {
                             return std::string(info.param.name);
                         });
