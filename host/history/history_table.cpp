#include "history/history_table.h"

#include <cstdio>

namespace {

std::string figure(const std::optional<double> &value, const char *format) {
    if (!value) return "-";
    char text[32];
    std::snprintf(text, sizeof text, format, *value);
    return text;
}

std::string resultsText(const HistoryEntry &entry) {
    static const char *const kNames[] = {"passed",  "failed",  "?",      "n/a",
                                         "aborted", "warning", "invalid"};
    std::string text;
    for (const auto &result : entry.results) {
        const bool known = result.second >= 0 && result.second <= 6;
        text += (text.empty() ? "" : ", ") + result.first + " " +
                (known ? kNames[result.second] : std::to_string(result.second));
    }
    return text.empty() ? "-" : text;
}

nlohmann::json orNull(const std::optional<double> &value) {
    return value ? nlohmann::json(*value) : nlohmann::json(nullptr);
}

} // namespace

std::string historyTable(const std::vector<HistoryEntry> &entries) {
    if (entries.empty()) return "The history holds no run yet.\n";
    std::string out;
    std::string identity;
    char line[512];
    for (const HistoryEntry &entry : entries) {
        if (entry.battery.identity() != identity) {
            identity = entry.battery.identity();
            out += (out.empty() ? "" : "\n") + std::string("battery ") + identity + "\n";
            std::snprintf(line, sizeof line, "  %-20s  %9s  %9s  %7s  %6s  %6s  %s\n", "date (UTC)",
                          "design Wh", "full Wh", "health", "cycles", "°C", "tests");
            out += line;
        }
        std::snprintf(line, sizeof line, "  %-20s  %9s  %9s  %7s  %6s  %6s  %s\n", entry.at.c_str(),
                      figure(entry.battery.designWh, "%.2f").c_str(),
                      figure(entry.battery.fullChargeWh, "%.2f").c_str(),
                      figure(entry.battery.healthRatio().has_value()
                                 ? std::optional<double>(*entry.battery.healthRatio() * 100)
                                 : std::nullopt,
                             "%.1f%%")
                          .c_str(),
                      figure(entry.battery.cycleCount, "%.0f").c_str(),
                      figure(entry.battery.temperatureC, "%.1f").c_str(),
                      resultsText(entry).c_str());
        out += line;
    }
    return out;
}

nlohmann::json historyJson(const std::vector<HistoryEntry> &entries) {
    nlohmann::json batteries = nlohmann::json::array();
    std::string identity;
    for (const HistoryEntry &entry : entries) {
        if (batteries.empty() || entry.battery.identity() != identity) {
            identity = entry.battery.identity();
            batteries.push_back({{"manufacturer", entry.battery.manufacturer},
                                 {"name", entry.battery.name},
                                 {"serial", entry.battery.serial},
                                 {"records", nlohmann::json::array()}});
        }
        nlohmann::json results = nlohmann::json::object();
        for (const auto &result : entry.results) results[result.first] = result.second;
        batteries.back()["records"].push_back({{"run", entry.run},
                                               {"at", entry.at},
                                               {"machine", entry.machine},
                                               {"designWh", orNull(entry.battery.designWh)},
                                               {"fullChargeWh", orNull(entry.battery.fullChargeWh)},
                                               {"healthRatio", orNull(entry.battery.healthRatio())},
                                               {"cycleCount", orNull(entry.battery.cycleCount)},
                                               {"temperatureC", orNull(entry.battery.temperatureC)},
                                               {"results", results}});
    }
    return {{"batteries", batteries}};
}
