#include <gtest/gtest.h>

#include <algorithm>
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

TEST(Metrics, PassPromtoolAndHoldEveryFigureOfEachBattery) {
    OutputFolder folder;
    ASSERT_EQ(folder.host("-Q --no-history --scenario two-batteries --metrics fleet.prom").exitCode,
              0);
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
    EXPECT_FALSE(std::filesystem::exists(folder / ".fleet.prom.tmp"));
}
