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
#include "report/html_report.h"
#include "utc_time.h"

namespace run_outputs {

void addOptions(CLI::App &app, OutputOptions &options) {
    app.add_option("--report", options.reportPath, "Write an HTML report of this run to FILE");
    app.add_option("--metrics", options.metricsPath,
                   "Write the run's figures for node_exporter's textfile collector to FILE");
    app.add_option("--history-db", options.historyPath,
                   "History database (default: $XDG_DATA_HOME/battery_host/history.sqlite3)");
    app.add_flag("--no-history", options.noHistory, "Record nothing in the history");
    app.add_flag("--history", options.showHistory, "Print each battery's recorded history");
}

std::string checkPaths(const OutputOptions &options) {
    for (const std::string *path : {&options.reportPath, &options.metricsPath}) {
        if (path->empty()) continue;
        const std::filesystem::path folder = std::filesystem::path(*path).parent_path();
        std::error_code ignored;
        if (!folder.empty() && !std::filesystem::is_directory(folder, ignored)) {
            return "no folder '" + folder.string() + "' for " + *path;
        }
    }
    return "";
}

namespace {

std::string historyPathOf(const OutputOptions &options) {
    return options.historyPath.empty() ? history::defaultPath() : options.historyPath;
}

void complain(const std::string &what, const std::string &line) {
    std::fprintf(stderr, "%s: %s\n", what.c_str(), line.c_str());
}

} // namespace

void write(const OutputOptions &options, const RunSummary &summary, const Language &language) {
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
    }
    if (!options.metricsPath.empty()) {
        const auto now = std::chrono::duration_cast<std::chrono::seconds>(
            std::chrono::system_clock::now().time_since_epoch());
        const std::string error =
            writeFileAtomically(options.metricsPath, renderMetrics(summary.machine, batteries,
                                                                   summary.records, now.count()));
        if (!error.empty()) complain("error: metrics", error);
    }
}

int showHistory(const OutputOptions &options, bool json) {
    std::string error;
    std::unique_ptr<HistoryStore> store = HistoryStore::open(historyPathOf(options), error);
    if (!store) {
        complain("error", error);
        return exit_codes::kUsage;
    }
    const std::vector<HistoryEntry> entries = store->entries();
    std::printf("%s", json ? (historyJson(entries).dump(2) + "\n").c_str()
                           : historyTable(entries).c_str());
    return exit_codes::kSuccess;
}

} // namespace run_outputs
