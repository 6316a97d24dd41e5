#include <gtest/gtest.h>

#include <cmath>
#include <regex>
#include <string>
#include <vector>

#include "report/html_text.h"
#include "report/report_charts.h"
#include "report/svg_chart.h"

// The report's charts as drawn: where their lines stand against each other,
// and the texts they carry.

namespace {

// The first number an attribute of a matching element holds.
double attribute(const std::string &svg, const std::string &element, const std::string &name) {
    std::smatch found;
    const std::regex pattern(element + "[^>]*? " + name + "=\"([-0-9.]+)\"");
    return std::regex_search(svg, found, pattern) ? std::stod(found[1]) : NAN;
}

RunRecord extendedRun(const char *testId, double firstPercent, double lastPercent) {
    RunRecord record;
    record.testId = testId;
    for (int minute = 0; minute <= 5; ++minute) {
        MachineSample sample;
        sample.atMs = minute * 60000.0;
        sample.chargePercent = firstPercent + (lastPercent - firstPercent) * minute / 5;
        sample.scheme = minute < 2 ? "balanced" : "high-performance";
        record.samples.push_back(sample);
    }
    return record;
}

struct ThresholdRow {
    const char *testId;
    double first, last;
    const char *label;
    bool belowStart; // drawn lower on the chart than the first sample
};

class ChargeThreshold : public ::testing::TestWithParam<ThresholdRow> {};

} // namespace

TEST_P(ChargeThreshold, StandsOnTheSideTheVerdictLooksAt) {
    const ThresholdRow &row = GetParam();
    const std::string svg =
        report_charts::chargeChart(extendedRun(row.testId, row.first, row.last));
    const double threshold = attribute(svg, "<line class=\"rule threshold\"", "y1");
    const double start = attribute(svg, "<circle class=\"marker start\"", "cy");
    // SVG's y grows downwards.
    EXPECT_EQ(threshold > start, row.belowStart) << svg;
    EXPECT_NE(svg.find(row.label), std::string::npos) << svg;
}

INSTANTIATE_TEST_SUITE_P(
    Table, ChargeThreshold,
    ::testing::Values(ThresholdRow{"12.2.2", 80, 76, "must fall below 79.50%", true},
                      ThresholdRow{"12.2.3", 40, 47, "must rise above 40.50%", false}),
    [](const ::testing::TestParamInfo<ThresholdRow> &info) {
        return std::string(info.param.belowStart ? "Discharge" : "Charge");
    });

// Every run has its place on the axis, and the axis counts whole runs.
TEST(CapacityChart, TicksAreWholeRunsForAnyNumberOfRuns) {
    for (size_t runs = 1; runs <= 60; ++runs) {
        std::vector<HistoryEntry> entries(runs);
        for (HistoryEntry &entry : entries) entry.battery.fullChargeWh = 50;
        const std::string svg = report_charts::capacityChart(entries, "history");
        const std::regex tickPattern("<text class=\"tick\" text-anchor=\"middle\"[^>]*>([^<]*)<");
        std::vector<double> ticks;
        for (std::sregex_iterator it(svg.begin(), svg.end(), tickPattern), end; it != end; ++it) {
            ticks.push_back(std::stod((*it)[1]));
        }
        ASSERT_GE(ticks.size(), 2u) << runs << " runs";
        EXPECT_LE(ticks.size(), 7u) << runs << " runs";
        for (const double tick : ticks) {
            EXPECT_EQ(tick, std::round(tick)) << runs << " runs";
            EXPECT_GE(tick, 1) << runs << " runs";
            EXPECT_LE(tick, std::max<double>(runs, 5)) << runs << " runs";
        }
        const double latest = attribute(svg, "<circle class=\"marker latest\"", "cx");
        EXPECT_LE(latest, SvgChart::kWidth - 16 + 0.01) << runs << " runs: inside the plot";
    }
}

TEST(ReportText, EveryCharacterHtmlGivesAMeaningIsEscaped) {
    EXPECT_EQ(escapedHtml("<a title=\"x\">Tom & 'Jo'</a>"),
              "&lt;a title=&quot;x&quot;&gt;Tom &amp; &#39;Jo&#39;&lt;/a&gt;");
}

TEST(ReportText, TheSchemeStoryTellsEachChangeWhenItCame) {
    EXPECT_EQ(report_charts::schemeStory(extendedRun("12.2.2", 80, 76)),
              "balanced, then high-performance at 2.0 min");
}
