#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <regex>
#include <sstream>
#include <vector>

#include <nlohmann/json.hpp>

#include "battery_rules/expected_capacity.h"
#include "battery_rules/identifiers.h"
#include "diagnostics/smart_battery_health_test.h"
#include "host/host_outputs_support.h"
#include "model/battery_figures.h"
#include "report/report_charts.h"
#include "smart_battery/smart_battery_component.h"
#include "support/scenario.h"
#include "support/test_name.h"

// The health chart against the module's own verdict, and the fleet metrics
// against promtool.

namespace {

using Point = std::pair<double, double>;

std::vector<Point> pointsOf(const std::string &list) {
    std::vector<Point> points;
    std::istringstream in(list);
    double x = 0, y = 0;
    char comma = 0;
    while (in >> x >> comma >> y) points.emplace_back(x, y);
    return points;
}

bool inside(const std::vector<Point> &polygon, Point point) {
    bool in = false;
    for (size_t i = 0, j = polygon.size() - 1; i < polygon.size(); j = i++) {
        const Point &a = polygon[i], &b = polygon[j];
        if ((a.second > point.second) != (b.second > point.second) &&
            point.first <
                (b.first - a.first) * (point.second - a.second) / (b.second - a.second) + a.first)
            in = !in;
    }
    return in;
}

// The text of attribute `name` in the element that starts at `at`.
std::string attribute(const std::string &page, size_t at, const std::string &name) {
    const size_t end = page.find('>', at);
    const size_t start = page.find(" " + name + "=\"", at);
    if (start == std::string::npos || start > end) return "";
    const size_t value = start + name.size() + 3;
    return page.substr(value, page.find('"', value) - value);
}

// The regions of the health chart on a page that hold the battery's point.
std::vector<std::string> regionsHolding(const std::string &page) {
    const size_t marker = page.find("<circle class=\"marker battery ");
    if (marker == std::string::npos) return {"no point"};
    const Point point{std::stod(attribute(page, marker, "cx")),
                      std::stod(attribute(page, marker, "cy"))};
    std::vector<std::string> regions;
    const std::string region = "<polygon class=\"region ";
    for (size_t at = page.find(region); at != std::string::npos; at = page.find(region, at + 1)) {
        const size_t name = at + region.size();
        if (inside(pointsOf(attribute(page, at, "points")), point)) {
            regions.push_back(page.substr(name, page.find('"', name) - name));
        }
    }
    return regions;
}

const char *regionFor(int result) {
    return result == 0 ? "pass" : result == 5 ? "warn" : result == 1 ? "fail" : "none";
}

class HealthChart : public ::testing::TestWithParam<std::pair<const char *, int>> {};

} // namespace

TEST_P(HealthChart, PutsTheBatteryInTheRegionOfTheModulesVerdict) {
    OutputFolder folder;
    const auto outcome =
        folder.host("--run 12.1.1 --json --no-history --report r.html --scenario " +
                    std::string(GetParam().first));
    const auto json = nlohmann::json::parse(outcome.output.substr(outcome.output.find('{')));
    const int result = json["runs"][0]["result"];
    ASSERT_EQ(result, GetParam().second);
    EXPECT_EQ(regionsHolding(fileText(folder / "r.html")),
              std::vector<std::string>{regionFor(result)});
}

INSTANTIATE_TEST_SUITE_P(Scenarios, HealthChart,
                         ::testing::Values(std::make_pair("default", 0), std::make_pair("worn", 1),
                                           std::make_pair("aged", 5),
                                           std::make_pair("borderline-below", 1),
                                           std::make_pair("borderline-above", 0)),
                         [](const auto &info) {
                             std::string name = info.param.first;
                             name.erase(std::remove(name.begin(), name.end(), '-'), name.end());
                             return name;
                         });

namespace {

// Batteries along the curve, one for each cycle scale from 1 to 250: on the
// n-th scale the battery has firstAge + n - 1 cycles. Its full-charge
// capacity lies `offset` off the expected capacity for its age, or is
// `ratio` of its design capacity.
struct AgeRow {
    const char *what;
    uint32_t firstAge;
    double offset;
    double ratio;
};

class HealthChartOnEveryScale : public ::testing::TestWithParam<AgeRow> {};

// A smart battery in mAh of 10000 mAh design capacity, as the module lists it.
std::string smartBattery(uint32_t full, uint32_t cycles, uint32_t scale) {
    return R"({"name": "h", "controller": {"present": true},
        "batteries": [{"slot": 0, "serialNumber": 4711, "capacityUnit": "mAh",
                       "designVoltage_mV": 11400, "designCapacity": 10000, "fullChargeCapacity": )" +
           std::to_string(full) + ", \"cycleCount\": " + std::to_string(cycles) +
           ", \"cycleScale\": " + std::to_string(scale) + "}]}";
}

// The host's figures of a component, from its properties as the host lists
// them.
std::vector<BatteryFigures> figuresOf(SystemComponent &component) {
    nlohmann::json properties = nlohmann::json::array();
    for (const ComponentProperty &property : component.getInfo().properties) {
        properties.push_back({{"key", property.key}, {"value", property.value}});
    }
    return battery_figures::of(nlohmann::json::array(
        {{{"device", "0"}, {"properties", properties}, {"groups", nlohmann::json::array()}}}));
}

} // namespace

// The host never sees a battery's cycle scale: the chart and the module's
// verdict agree on every scale the module may meet below its smallest.
TEST_P(HealthChartOnEveryScale, PutsTheBatteryInTheRegionOfTheModulesVerdict) {
    const AgeRow &row = GetParam();
    for (uint32_t scale = 1; scale <= 250; ++scale) {
        const uint32_t cycles = row.firstAge + scale - 1;
        const double ratio =
            row.ratio > 0 ? row.ratio : expected_capacity::relativeCapacity(cycles) + row.offset;
        useScenarioText(
            smartBattery(static_cast<uint32_t>(std::lround(ratio * 10000)), cycles, scale));
        SmartBatteryComponent battery(true);
        battery.buildProperties();
        const TestResultCode verdict =
            SmartBatteryHealthTest(ID_SMART_HEALTH_TEST).evaluateCapacity(&battery);
        const std::vector<BatteryFigures> figures = figuresOf(battery);
        ASSERT_EQ(figures.size(), 1u);
        const auto placement = report_charts::healthPlacement(figures[0]);
        ASSERT_TRUE(placement.has_value()) << "scale " << scale;
        EXPECT_EQ(regionsHolding(report_charts::healthChart(*placement, "health")),
                  std::vector<std::string>{regionFor(verdict)})
            << "scale " << scale << ", " << cycles << " cycles, ratio " << ratio;
    }
}

INSTANTIATE_TEST_SUITE_P(Table, HealthChartOnEveryScale,
                         ::testing::Values(AgeRow{"young just above the curve", 1, 0.002, 0},
                                           AgeRow{"young just below the curve", 1, -0.002, 0},
                                           AgeRow{"old just above the curve", 201, 0.002, 0},
                                           AgeRow{"old just below the curve", 201, -0.002, 0},
                                           AgeRow{"old just above half", 201, 0, 0.502},
                                           AgeRow{"old just below half", 201, 0, 0.498}),
                         NameBy<&AgeRow::what>());

// Only battery 1 is tested: both batteries' figures are exported, the
// results of battery 1 alone.
TEST(Metrics, PassPromtoolAndHoldEveryFigureOfEachBattery) {
    OutputFolder folder;
    const long before = static_cast<long>(std::time(nullptr));
    ASSERT_EQ(
        folder.host("-Q 1 --no-history --scenario two-batteries --metrics fleet.prom").exitCode, 0);
    const long after = static_cast<long>(std::time(nullptr));
    const auto check = folder.shell("promtool check metrics < fleet.prom");
    EXPECT_EQ(check.exitCode, 0) << check.output;
    EXPECT_EQ(check.output, "");
    const std::string metrics = fileText(folder / "fleet.prom");
    for (const char *family :
         {"battery_design_capacity_wh", "battery_full_charge_capacity_wh", "battery_health_ratio",
          "battery_charge_cycles", "battery_temperature_celsius", "battery_test_result_code",
          "battery_test_timestamp_seconds"}) {
        EXPECT_NE(metrics.find(std::string("# TYPE ") + family + " gauge"), std::string::npos)
            << family;
    }
    EXPECT_NE(metrics.find("battery_design_capacity_wh{machine=\"emulated notebook "
                           "'two-batteries'\",device=\"1\","),
              std::string::npos)
        << metrics;
    EXPECT_NE(metrics.find("test=\"12.1.4\"} 0\n"), std::string::npos) << metrics;
    EXPECT_EQ(
        metrics.find("device=\"0\",manufacturer=\"Ostrelle\",name=\"OS-4C57\",serial=\"4711\","
                     "test="),
        std::string::npos)
        << "battery 0 ran no test\n"
        << metrics;
    std::smatch stamp;
    ASSERT_TRUE(std::regex_search(metrics, stamp,
                                  std::regex("battery_test_timestamp_seconds\\{[^}]*\\} (\\d+)\n")))
        << metrics;
    EXPECT_GE(std::stol(stamp[1]), before) << "seconds since the epoch";
    EXPECT_LE(std::stol(stamp[1]), after);
}

struct OutputRow {
    const char *name;
    const char *setUp;     // shell line run in the folder first
    const char *arguments; // after -Q --no-history
    int exitCode;
    const char *says;
    bool ran; // whether the quick test ran before the outcome
};

// A bad output path is a usage error before anything runs; one that fails at
// the very end has an exit code of its own and names the path and why.
const OutputRow kOutputRows[] = {
    {"missing folder", "", "--report gone/x", 2, "no folder 'gone' for gone/x", false},
    {"empty report path", "", "--report ''", 2, "an empty path names no file", false},
    {"empty metrics path", "", "--metrics ''", 2, "an empty path names no file", false},
    {"folder as report", "mkdir out", "--report out", 2, "out is a folder", false},
    {"scenario as report", "cp " SCENARIO_DIR "/default.json s.json",
     "--scenario s.json --report s.json", 2, "s.json is the same file as s.json", false},
    // A device of the test's own, never the machine's /dev/full.
    {"metrics on a full device", "mknod full c 1 7 || echo cannot-set-up", "--metrics full", 73,
     "cannot write full: No space left on device", true},
    {"read only folder", "mkdir ro && unshare -m true 2>/dev/null || echo cannot-set-up", "", 2,
     "cannot write in folder 'ro' for ro/x: Read-only file system", false},
};

class OutputPaths : public ::testing::TestWithParam<OutputRow> {};

TEST_P(OutputPaths, AreCheckedBeforeTheRunAndFailuresHaveTheirCode) {
    const OutputRow &row = GetParam();
    OutputFolder folder;
    const auto made = folder.shell(row.setUp);
    if (made.output.find("cannot-set-up") != std::string::npos) GTEST_SKIP() << made.output;
    ASSERT_EQ(made.exitCode, 0) << made.output;
    std::string line = std::string(HOST_PATH) + " -Mbattery -Q --no-history " + row.arguments;
    // A folder the host may not write even as root: a read-only mount of its own.
    if (*row.arguments == '\0') {
        line = "unshare -m sh -c 'mount -t tmpfs none ro && mount -o remount,ro ro && " + line +
               " --report ro/x'";
    }
    const auto outcome = folder.shell(line);
    EXPECT_EQ(outcome.exitCode, row.exitCode) << outcome.output;
    EXPECT_NE(outcome.output.find(row.says), std::string::npos) << outcome.output;
    EXPECT_EQ(outcome.output.find("passed") != std::string::npos, row.ran) << outcome.output;
}

INSTANTIATE_TEST_SUITE_P(Rows, OutputPaths, ::testing::ValuesIn(kOutputRows),
                         NameBy<&OutputRow::name>());

TEST(Metrics, EightHostsWritingOneFileLeaveOneWholeFile) {
    OutputFolder folder;
    const std::string run =
        std::string(HOST_PATH) +
        " -Mbattery -Q --no-history --metrics fleet.prom >/dev/null || echo lost";
    std::string all;
    for (int host = 0; host < 8; ++host) all += "(" + run + ") & ";
    const auto outcome = folder.shell(all + "wait");
    EXPECT_EQ(outcome.output, "");
    const auto check = folder.shell("promtool check metrics < fleet.prom && ls -A");
    EXPECT_EQ(check.exitCode, 0) << check.output;
    EXPECT_EQ(check.output, "fleet.prom\n") << "no temporary left beside it";
}

TEST(Metrics, EscapeAMachineNameWithQuotesAndBackslashes) {
    OutputFolder folder;
    auto scenario = nlohmann::json::parse(fileText(std::string(SCENARIO_DIR) + "/default.json"));
    scenario["name"] = "lab \"7\" \\ desk";
    std::ofstream(folder / "lab.json") << scenario.dump();
    ASSERT_EQ(folder.host("-Q --no-history --scenario lab.json --metrics lab.prom").exitCode, 0);
    const auto check = folder.shell("promtool check metrics < lab.prom");
    EXPECT_EQ(check.exitCode, 0) << check.output;
    EXPECT_NE(fileText(folder / "lab.prom")
                  .find("machine=\"emulated notebook 'lab \\\"7\\\" \\\\ desk'\""),
              std::string::npos)
        << fileText(folder / "lab.prom");
}

// Battery texts are bytes: a name the smart path cuts inside a character and a
// maker with a terminal's escape in it reach every output as that output can
// hold them, and none of them ends the host.
TEST(Outputs, BatteryTextsThatAreNotPlainTextReachEveryOutput) {
    OutputFolder folder;
    auto scenario = nlohmann::json::parse(fileText(std::string(SCENARIO_DIR) + "/default.json"));
    std::string name = "a";
    for (int i = 0; i < 40; ++i) name += "\xC3\xA9";
    scenario["batteries"][0]["deviceName"] = name;
    scenario["batteries"][0]["manufacturer"] = "\x1b]0;owned\x07Maker";
    std::ofstream(folder / "odd.json") << scenario.dump();
    const std::string run = "-Q --scenario odd.json --history-db h.sqlite3 ";
    const auto listed = folder.host(run + "--list --metrics m.prom --report r.html");
    EXPECT_EQ(listed.exitCode, 0) << listed.output;
    EXPECT_NE(listed.output.find("\\x1b]0;owned\\x07Maker"), std::string::npos) << listed.output;
    EXPECT_EQ(listed.output.find('\x1b'), std::string::npos) << "no raw escape on the terminal";
    for (const std::string &line :
         {run + "--json", std::string("--history --json --history-db h.sqlite3")}) {
        const auto shown = folder.host(line);
        EXPECT_EQ(shown.exitCode, 0) << line << "\n" << shown.output;
        const auto document = nlohmann::json::parse(shown.output, nullptr, false);
        EXPECT_FALSE(document.is_discarded()) << line << "\n" << shown.output;
    }
    const auto check = folder.shell("promtool check metrics < m.prom");
    EXPECT_EQ(check.exitCode, 0) << check.output;
    EXPECT_NE(fileText(folder / "r.html").find("&#39;"), std::string::npos);
}
