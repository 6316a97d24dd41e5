#include "report/report_charts.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "battery_rules/charge_change.h"
#include "battery_rules/expected_capacity.h"
#include "battery_rules/identifiers.h"
#include "module_queries.h"
#include "report/svg_chart.h"

namespace report_charts {

namespace {

double minutes(const MachineSample &sample, const MachineSample &first) {
    return (sample.atMs - first.atMs) / 60000.0;
}

std::string percentText(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f%%", value);
    return text;
}

} // namespace

std::optional<HealthPlacement> healthPlacement(const BatteryFigures &battery) {
    const std::optional<double> ratio = battery.healthRatio();
    if (!ratio || !battery.cycleCount || *battery.cycleCount < 0) return std::nullopt;
    HealthPlacement placement;
    placement.age = expected_capacity::ageOf(static_cast<uint32_t>(*battery.cycleCount), 0);
    placement.ratio = *ratio;
    placement.verdict = expected_capacity::verdict(static_cast<float>(*ratio), placement.age);
    placement.region = placement.verdict == ResultSuccess   ? "pass"
                       : placement.verdict == ResultWarning ? "warn"
                                                            : "fail";
    return placement;
}

std::string healthChart(const HealthPlacement &placement, const std::string &title) {
    const double lastAge =
        std::max<double>(expected_capacity::kLastBendAge + 50, std::ceil(placement.age * 1.1));
    const double top = std::max(1.0, std::ceil((placement.ratio + 0.1) * 10) / 10);
    SvgChart chart(title, {"age (cycles on the battery's own scale)", 0, lastAge},
                   {"full-charge ÷ design capacity", 0, top});
    SvgChart::Points curve;
    for (uint32_t age = 1; age <= lastAge; ++age) {
        // Past the floor the curve is flat: its two ends are enough.
        if (age > expected_capacity::kLastBendAge + 1 && age < lastAge) continue;
        curve.emplace_back(age, expected_capacity::relativeCapacity(age));
    }
    const double healthy = expected_capacity::kHealthyRatio;
    SvgChart::Points fail = {{1, 0}};
    fail.insert(fail.end(), curve.begin(), curve.end());
    fail.emplace_back(lastAge, 0);
    SvgChart::Points warn;
    SvgChart::Points under; // the curve where it runs below the healthy ratio
    for (const auto &point : curve) {
        if (point.second < healthy) under.push_back(point);
    }
    if (!under.empty()) {
        warn.emplace_back(under.front().first, healthy);
        warn.emplace_back(lastAge, healthy);
        warn.insert(warn.end(), under.rbegin(), under.rend());
    }
    SvgChart::Points pass = {{1, top}, {lastAge, top}};
    for (auto point = curve.rbegin(); point != curve.rend(); ++point) {
        pass.emplace_back(point->first, std::max(point->second, healthy));
    }
    chart.region("pass", "passes", pass);
    chart.region("warn", "warns: aged normally, below half", warn);
    chart.region("fail", "fails: worse than its age explains", fail);
    chart.series("expected", "expected capacity", curve);
    char label[96];
    std::snprintf(label, sizeof label, "this battery: age %u, %.1f%%", placement.age,
                  placement.ratio * 100);
    chart.marker("battery " + std::string(placement.region), label,
                 std::min<double>(placement.age, lastAge), placement.ratio,
                 std::string("data-region=\"") + placement.region + "\"");
    return chart.render();
}

bool isExtended(const RunRecord &record) {
    return module_queries::isExtendedTest(record.testId);
}

std::string chargeChart(const RunRecord &record) {
    if (record.samples.size() < 2) return "";
    const MachineSample &first = record.samples.front();
    const MachineSample &last = record.samples.back();
    const bool discharge = record.testId == module_queries::idText(ID_DISCHARGE_TEST);
    const double change = charge_change::kLeastPoints;
    const double threshold = first.chargePercent + (discharge ? -change : change);
    double low = threshold, high = threshold;
    SvgChart::Points charge;
    for (const MachineSample &sample : record.samples) {
        charge.emplace_back(minutes(sample, first), sample.chargePercent);
        low = std::min(low, sample.chargePercent);
        high = std::max(high, sample.chargePercent);
    }
    const double span = std::max(1.0, minutes(last, first));
    SvgChart chart(
        "Charge over the run", {"minutes", 0, span},
        {"charge (%)", std::max(0.0, std::floor(low) - 1), std::min(100.0, std::ceil(high) + 1)});
    chart.series("charge", "charge", charge);
    chart.horizontal("threshold",
                     std::string(discharge ? "must fall below " : "must rise above ") +
                         percentText(threshold),
                     threshold);
    chart.marker("start", "start " + percentText(first.chargePercent), 0, first.chargePercent);
    chart.marker("end", "end " + percentText(last.chargePercent), minutes(last, first),
                 last.chargePercent);
    return chart.render();
}

std::string displayChart(const RunRecord &record) {
    if (record.samples.size() < 2) return "";
    const MachineSample &first = record.samples.front();
    SvgChart::Points display, ac;
    for (const MachineSample &sample : record.samples) {
        if (sample.displayLevel >= 0)
            display.emplace_back(minutes(sample, first), sample.displayLevel);
        ac.emplace_back(minutes(sample, first), sample.ac ? 100 : 0);
    }
    const double span = std::max(1.0, minutes(record.samples.back(), first));
    SvgChart chart("Display and AC line over the run", {"minutes", 0, span},
                   {"display level (%) / AC line", 0, 100});
    chart.series("ac", "AC line (100: plugged in)", ac, true);
    if (!display.empty()) chart.series("display", "display level", display, true);
    chart.vertical("start", "start", 0);
    chart.vertical("end", "end", minutes(record.samples.back(), first));
    return chart.render();
}

std::string schemeStory(const RunRecord &record) {
    std::string story;
    std::string current;
    for (const MachineSample &sample : record.samples) {
        if (sample.scheme == current) continue;
        char at[48];
        std::snprintf(at, sizeof at, " at %.1f min", minutes(sample, record.samples.front()));
        story += story.empty() ? sample.scheme : ", then " + sample.scheme + at;
        current = sample.scheme;
    }
    return story;
}

std::string capacityChart(const std::vector<HistoryEntry> &entries, const std::string &title) {
    SvgChart::Points full, design;
    double top = 1;
    for (size_t i = 0; i < entries.size(); ++i) {
        const BatteryFigures &battery = entries[i].battery;
        const double run = static_cast<double>(i + 1);
        if (battery.fullChargeWh) full.emplace_back(run, *battery.fullChargeWh);
        if (battery.designWh) design.emplace_back(run, *battery.designWh);
        top = std::max({top, battery.fullChargeWh.value_or(0), battery.designWh.value_or(0)});
    }
    std::string xLabel = "runs";
    if (!entries.empty()) xLabel += ", " + entries.front().at + " to " + entries.back().at;
    const double lastRun = std::max(5.0, static_cast<double>(entries.size()));
    SvgChart chart(title, {xLabel, 1, lastRun, true}, {"capacity (Wh)", 0, std::ceil(top * 1.15)});
    // The design capacity holds to the chart's edge, so one run draws it too.
    if (!design.empty() && design.back().first < lastRun)
        design.emplace_back(lastRun, design.back().second);
    chart.series("design", "design capacity", design, true);
    chart.series("full", "full-charge capacity", full);
    if (!full.empty()) {
        char label[48];
        std::snprintf(label, sizeof label, "now %.2f Wh", full.back().second);
        chart.marker("latest", label, full.back().first, full.back().second);
    }
    return chart.render();
}

} // namespace report_charts
