#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <regex>
#include <sstream>
#include <vector>

#include <nlohmann/json.hpp>

#include "host/host_outputs_support.h"

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

// The regions of the page's health chart that hold the battery's point.
std::vector<std::string> regionsHolding(const std::string &page) {
    std::smatch marker;
    const std::regex markerPattern("<circle class=\"marker battery \\w+\" cx=\"([0-9.]+)\" "
                                   "cy=\"([0-9.]+)\"");
    if (!std::regex_search(page, marker, markerPattern)) return {"no point"};
    const Point point{std::stod(marker[1]), std::stod(marker[2])};
    std::vector<std::string> regions;
    const std::regex regionPattern(
        "<polygon class=\"region (\\w+)\" data-points=\"\\d+\" points=\"([^\"]*)\"");
    for (std::sregex_iterator it(page.begin(), page.end(), regionPattern), end; it != end; ++it) {
        if (inside(pointsOf((*it)[2]), point)) regions.push_back((*it)[1]);
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
    EXPECT_FALSE(std::filesystem::exists(folder / ".fleet.prom.tmp"));
}

TEST(Outputs, AFolderThatIsNotThereIsAUsageErrorBeforeAnyTestRuns) {
    OutputFolder folder;
    for (const char *option : {"--report", "--metrics"}) {
        const auto outcome = folder.host(std::string("-Q --no-history ") + option + " gone/x");
        EXPECT_EQ(outcome.exitCode, 2) << outcome.output;
        EXPECT_NE(outcome.output.find("no folder 'gone' for gone/x"), std::string::npos)
            << outcome.output;
        EXPECT_EQ(outcome.output.find("passed"), std::string::npos) << outcome.output;
    }
}

// The final rename fails when a folder stands where the file should go.
TEST(Outputs, AFileThatCannotBeReplacedLeavesNoTemporaryFile) {
    OutputFolder folder;
    for (const char *option : {"--report", "--metrics"}) {
        std::filesystem::create_directories(folder / "out/kept");
        const auto outcome = folder.host(std::string("-Q --no-history ") + option + " out");
        EXPECT_NE(outcome.output.find("cannot replace out"), std::string::npos) << outcome.output;
        EXPECT_FALSE(std::filesystem::exists(folder / ".out.tmp")) << option;
        EXPECT_TRUE(std::filesystem::exists(folder / "out/kept")) << option;
    }
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
