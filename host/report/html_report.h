#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "language.h"
#include "model/history_entry.h"
#include "model/run_record.h"

// Everything one run of the host shows in its HTML report.
struct ReportInput {
    std::string hostVersion;
    std::string moduleVersion;
    std::string machine;
    std::string path; // "smart" or "generic"
    std::string date;
    nlohmann::json batteries; // as json_report::batteries gives them
    std::vector<RunRecord> runs;
    // Each battery's history, in the order battery_figures::of gives them;
    // empty with a note when no history is kept.
    std::vector<std::vector<HistoryEntry>> history;
    std::string historyNote;
};

// One self-contained page: inline style sheet and SVG, nothing fetched, no
// script, printable.
std::string renderHtmlReport(const ReportInput &input, const Language &language);
