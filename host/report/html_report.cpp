#include "report/html_report.h"

#include "model/battery_figures.h"
#include "report/html_text.h"
#include "report/report_charts.h"
#include "report/report_style.h"

namespace {

const char *verdictText(TestResultCode result) {
    switch (result) {
    case ResultSuccess:
        return "passed";
    case ResultFailed:
        return "failed";
    case ResultNotApplicable:
        return "not applicable";
    case ResultAborted:
        return "aborted";
    case ResultWarning:
        return "warning";
    case ResultInvalid:
        return "invalid";
    default:
        return "unknown";
    }
}

std::string cssName(std::string text) {
    for (char &c : text) {
        if (c == ' ') c = '-';
    }
    return text;
}

class Page {
public:
    explicit Page(const Language &language) : language_(language) {}

    std::string english(const std::string &text) const {
        return escapedHtml(language_.line(text, false));
    }

    void facts(const ReportInput &input) {
        out += "<header><h1>Battery report</h1><table class=\"facts\">";
        row("Machine", escapedHtml(input.machine));
        row("Module version", escapedHtml(input.moduleVersion));
        row("Path",
            input.path == "smart" ? "smart (embedded controller)" : "generic (operating system)");
        row("Date", escapedHtml(input.date));
        row("Host version", escapedHtml(input.hostVersion));
        out += "</table></header>\n";
    }

    void properties(const nlohmann::json &list) {
        out += "<table class=\"properties\">";
        for (const auto &property : list) {
            row(english(property.value("key", "")), english(property.value("value", "")));
        }
        out += "</table>\n";
    }

    void batteries(const ReportInput &input) {
        out += "<section id=\"batteries\"><h2>Batteries</h2>\n";
        if (input.batteries.empty()) out += "<p class=\"note\">No battery was found.</p>\n";
        for (const auto &component : input.batteries) {
            out += "<article class=\"battery\"><h3>" + english(component.value("name", "")) + " (" +
                   escapedHtml(component.value("device", "")) + ")</h3>\n";
            properties(component["properties"]);
            for (const auto &group : component["groups"]) {
                out += "<h4>" + english(group.value("name", "")) + "</h4>\n";
                properties(group["properties"]);
            }
            out += "</article>\n";
        }
        out += "</section>\n";
    }

    void health(const ReportInput &input, const std::vector<BatteryFigures> &figures) {
        if (input.path != "smart") return;
        out += "<section id=\"health\"><h2>Capacity for its age</h2>\n"
               "<p>The smart battery health test compares the battery's full-charge capacity "
               "with what a battery of its age may be expected to keep.</p>\n";
        for (const BatteryFigures &battery : figures) {
            const auto placement = report_charts::healthPlacement(battery);
            if (!placement) continue;
            out += "<figure class=\"health\" data-device=\"" + escapedHtml(battery.device) + "\">" +
                   report_charts::healthChart(*placement, "Battery " + battery.device + ": " +
                                                              battery.identity()) +
                   "</figure>\n";
        }
        out += "</section>\n";
    }

    void runs(const ReportInput &input) {
        out += "<section id=\"runs\"><h2>Tests</h2>\n";
        if (input.runs.empty()) out += "<p class=\"note\">No test was run.</p>\n";
        for (const RunRecord &record : input.runs) run(record);
        out += "</section>\n";
    }

    void history(const ReportInput &input, const std::vector<BatteryFigures> &figures) {
        out += "<section id=\"history\"><h2>Capacity history</h2>\n";
        if (!input.historyNote.empty()) {
            out += "<p class=\"note\">" + escapedHtml(input.historyNote) + "</p>\n";
        }
        for (size_t b = 0; b < input.history.size() && b < figures.size(); ++b) {
            const auto &entries = input.history[b];
            out += "<figure class=\"capacity\" data-runs=\"" + std::to_string(entries.size()) +
                   "\">" +
                   report_charts::capacityChart(entries, "Battery " + figures[b].device + ": " +
                                                             figures[b].identity()) +
                   "</figure>\n";
        }
        out += "</section>\n";
    }

    std::string out;

private:
    void row(const std::string &name, const std::string &value) {
        out += "<tr><th>" + name + "</th><td>" + value + "</td></tr>";
    }

    void run(const RunRecord &record) {
        const std::string verdict = verdictText(record.result);
        out += "<article class=\"run\" data-test=\"" + escapedHtml(record.testId) +
               "\" data-result=\"" + cssName(verdict) + "\"><h3>" + english(record.testName) +
               " on battery " + escapedHtml(record.device) + " <span class=\"verdict " +
               cssName(verdict) + "\">" + verdict + "</span></h3>\n";
        std::string log, charge;
        for (const auto &entry : record.entries) {
            const bool isCharge = isChargeLine(entry.text);
            (isCharge ? charge : log) += "<li>" + english(entry.text) + "</li>";
        }
        if (!log.empty()) out += "<ul class=\"log\">" + log + "</ul>\n";
        if (!charge.empty()) out += "<ul class=\"charge\">" + charge + "</ul>\n";
        if (report_charts::isExtended(record) && record.samples.size() >= 2) {
            out += report_charts::chargeChart(record);
            out += report_charts::displayChart(record);
            out +=
                "<p>Power scheme: " + escapedHtml(report_charts::schemeStory(record)) + ".</p>\n";
        }
        out += "</article>\n";
    }

    const Language &language_;
};

} // namespace

std::string renderHtmlReport(const ReportInput &input, const Language &language) {
    const std::vector<BatteryFigures> figures = battery_figures::of(input.batteries);
    Page page(language);
    page.out = "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">\n"
               "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
               "style-src 'unsafe-inline'\">\n<meta name=\"viewport\" "
               "content=\"width=device-width, initial-scale=1\">\n<title>Battery report, " +
               escapedHtml(input.date) + "</title>\n<style>" + reportStyle() +
               "</style></head>\n<body>\n";
    page.facts(input);
    page.batteries(input);
    page.health(input, figures);
    page.runs(input);
    page.history(input, figures);
    page.out += "</body></html>\n";
    return page.out;
}
