#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "language.h"
#include "model/run_summary.h"

namespace CLI {
class App;
}

// Where a run's results go besides the terminal: the HTML report, the
// capacity history, the fleet metrics.
struct OutputOptions {
    std::string reportPath;
    std::string metricsPath;
    std::string historyPath;  // empty: the default place
    std::string scenarioPath; // a scenario file the run reads, never to be written over
    bool noHistory = false;
    bool showHistory = false;
};

namespace run_outputs {

void addOptions(CLI::App &app, OutputOptions &options);
// Empty when the report and the metrics can be written at the end, else one
// line: a long run must not end in a file that cannot be written, nor write
// over the history or the scenario it read.
std::string checkPaths(const OutputOptions &options);
// Records the run and writes the report and the metrics. Each failure is one
// line on standard error and keeps nothing else from being written; false
// when the report or the metrics could not be written.
bool write(const OutputOptions &options, const RunSummary &summary, const Language &language);
// --history: each battery's records over time, as a table or as JSON.
int showHistory(const OutputOptions &options, bool json);

} // namespace run_outputs
