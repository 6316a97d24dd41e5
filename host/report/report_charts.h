#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "battery_module/test_result_code.h"
#include "model/battery_figures.h"
#include "model/history_entry.h"
#include "model/run_record.h"

// The report's charts, each one SVG element.
namespace report_charts {

// Where a battery stands on the expected-capacity curve, judged by the
// module's own rule.
struct HealthPlacement {
    uint32_t age = 1;
    double ratio = 0;
    TestResultCode verdict = ResultSuccess;
    const char *region = "pass"; // "pass", "warn" or "fail"
};

// Nothing when the battery lacks a capacity or a cycle count. The module
// does not show the battery's cycle scale; the smallest, 250, is taken, so
// the age is the cycle count.
std::optional<HealthPlacement> healthPlacement(const BatteryFigures &battery);
std::string healthChart(const HealthPlacement &placement, const std::string &title);

// The extended tests' charts; empty for a run with fewer than two samples.
bool isExtended(const RunRecord &record);
std::string chargeChart(const RunRecord &record);
std::string displayChart(const RunRecord &record);
// "balanced, then high-performance at 0.1 min, ..." over the run.
std::string schemeStory(const RunRecord &record);

// Full-charge capacity over the battery's runs, design capacity beside it.
std::string capacityChart(const std::vector<HistoryEntry> &entries, const std::string &title);

} // namespace report_charts
