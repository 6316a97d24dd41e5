#include "run_outputs.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>

#include <CLI/CLI.hpp>

#include "atomic_file.h"
#include "exit_codes.h"
#include "history/history_store.h"
#include "history/history_table.h"
#include "metrics/metrics_export.h"
#include "model/battery_figures.h"
#include "output_file.h"
#include "report/html_report.h"
#include "text_escape.h"
#include "utc_time.h"

namespace run_outputs {

void addOptions(CLI::App &app, OutputOptions &options) {
    const CLI::Validator named(
        [](const std::string &path) { return path.empty() ? "an empty path names no file" : ""; },
        "FILE");
    app.add_option("--report", options.reportPath, "Write an HTML report of this run to FILE")
        ->check(named);
    app.add_option("--metrics", options.metricsPath,
                   "Write the run's figures for node_exporter's textfile collector to FILE")
        ->check(named);
    app.add_option("--history-db", options.historyPath,
                   "History database (default: $XDG_DATA_HOME/battery_host/history.sqlite3)")
        ->check(named);
    app.add_flag("--no-history", options.noHistory, "Record nothing in the history");
    app.add_flag("--history", options.showHistory, "Print each battery's recorded history");
}

namespace {

std::string historyPathOf(const OutputOptions &options) {
    return options.historyPath.empty() ? history::defaultPath() : options.historyPath;
}

} // namespace

std::string checkPaths(const OutputOptions &options) {
    std::vector<std::string> outputs;
    for (const std::string *path : {&options.reportPath, &options.metricsPath}) {
        if (!path->empty()) outputs.push_back(*path);
    }
    std::vector<std::string> inputs = {options.scenarioPath};
    if (!options.noHistory) {
        inputs.push_back(historyPathOf(options));
        if (const std::string problem = history::checkFile(inputs.back()); !problem.empty()) {
            return problem;
        }
    }
    return output_file::checkBeforeRun(outputs, inputs);
}

namespace {

constexpr const char *kNoHistoryPlace =
    "no history folder: neither XDG_DATA_HOME nor HOME names one (--history-db FILE names one)";

void complain(const std::string &what, const std::string &line) {
    std::fprintf(stderr, "%s: %s\n", what.c_str(), line.c_str());
}

} // namespace

bool write(const OutputOptions &options, const RunSummary &summary, const Language &language) {
    bool written = true;
    const std::vector<BatteryFigures> batteries = battery_figures::of(summary.batteries);
    ReportInput report{summary.hostVersion,
                       summary.moduleVersion,
                       summary.machine,
                       summary.path,
                       utcNow(),
                       summary.batteries,
                       summary.records,
                       {},
                       ""};
    if (options.noHistory) {
        report.historyNote = "No history is kept (--no-history).";
    } else if (historyPathOf(options).empty()) {
        complain("warning", kNoHistoryPlace);
        report.historyNote = std::string("No history is kept: ") + kNoHistoryPlace + ".";
    } else {
        std::string error;
        std::unique_ptr<HistoryStore> store = HistoryStore::open(historyPathOf(options), error);
        HistoryRun run{report.date, summary.machine, summary.moduleVersion, batteries,
                       &summary.records};
        if (store && !batteries.empty() && !store->record(run, error)) store.reset();
        if (!store) {
            complain("warning", error);
            report.historyNote = "The history could not be read: " + error;
        } else if (!options.reportPath.empty()) {
            for (const BatteryFigures &battery : batteries) {
                report.history.push_back(store->entries(&battery));
            }
        }
    }
    if (!options.reportPath.empty()) {
        const std::string error =
            writeFileAtomically(options.reportPath, renderHtmlReport(report, language));
        if (!error.empty()) complain("error: report", error);
        written = written && error.empty();
    }
    if (!options.metricsPath.empty()) {
        const auto now = std::chrono::duration_cast<std::chrono::seconds>(
            std::chrono::system_clock::now().time_since_epoch());
        const std::string error =
            writeFileAtomically(options.metricsPath, renderMetrics(summary.machine, batteries,
                                                                   summary.records, now.count()));
        if (!error.empty()) complain("error: metrics", error);
        written = written && error.empty();
    }
    return written;
}

int showHistory(const OutputOptions &options, bool json) {
    const std::string path = historyPathOf(options);
    std::string error = path.empty() ? kNoHistoryPlace : history::checkFile(path);
    std::unique_ptr<HistoryStore> store =
        error.empty() ? HistoryStore::openForReading(path, error) : nullptr;
    if (!store) {
        complain("error", error);
        return exit_codes::kUsage;
    }
    const std::vector<HistoryEntry> entries = store->entries();
    std::printf("%s", json ? (text_escape::json(historyJson(entries), 2) + "\n").c_str()
                           : text_escape::forTerminal(historyTable(entries)).c_str());
    return exit_codes::kSuccess;
}

} // namespace run_outputs
