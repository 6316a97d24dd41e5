#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/battery_figures.h"
#include "model/run_record.h"

// The run's figures in the Prometheus text exposition format, for
// node_exporter's textfile collector: one series per battery and figure,
// labelled by machine and battery identity, and one per test run.
std::string renderMetrics(const std::string &machine, const std::vector<BatteryFigures> &batteries,
                          const std::vector<RunRecord> &records, int64_t unixSeconds);
