#include "metrics/metrics_export.h"

#include <cstdio>
#include <optional>
#include <set>

#include "text_escape.h"

namespace {

// A label value is UTF-8 with backslash, quote and line break escaped; a
// value that is not would make the collector drop the whole file.
std::string labelValue(const std::string &text) {
    std::string out;
    for (const char c : text_escape::validUtf8(text)) {
        if (c == '\\' || c == '"') out += '\\';
        if (c == '\n') {
            out += "\\n";
            continue;
        }
        out += c;
    }
    return out;
}

std::string labels(const std::string &machine, const BatteryFigures &battery) {
    return "machine=\"" + labelValue(machine) + "\",device=\"" + labelValue(battery.device) +
           "\",manufacturer=\"" + labelValue(battery.manufacturer) + "\",name=\"" +
           labelValue(battery.name) + "\",serial=\"" + labelValue(battery.serial) + "\"";
}

std::string number(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.6g", value);
    return text;
}

struct Family {
    const char *name;
    const char *help;
    std::optional<double> (*value)(const BatteryFigures &);
};

const Family kBatteryFamilies[] = {
    {"battery_design_capacity_wh", "Design capacity of the battery in watt-hours.",
     [](const BatteryFigures &b) { return b.designWh; }},
    {"battery_full_charge_capacity_wh", "Full-charge capacity of the battery in watt-hours.",
     [](const BatteryFigures &b) { return b.fullChargeWh; }},
    {"battery_health_ratio", "Full-charge capacity divided by design capacity.",
     [](const BatteryFigures &b) { return b.healthRatio(); }},
    {"battery_charge_cycles", "Charge cycles the battery has counted.",
     [](const BatteryFigures &b) { return b.cycleCount; }},
    {"battery_temperature_celsius", "Temperature of the battery in degrees Celsius.",
     [](const BatteryFigures &b) { return b.temperatureC; }},
};

} // namespace

std::string renderMetrics(const std::string &machine, const std::vector<BatteryFigures> &batteries,
                          const std::vector<RunRecord> &records, int64_t unixSeconds) {
    std::string out;
    for (const Family &family : kBatteryFamilies) {
        std::string series;
        for (const BatteryFigures &battery : batteries) {
            const std::optional<double> value = family.value(battery);
            if (value)
                series += std::string(family.name) + "{" + labels(machine, battery) + "} " +
                          number(*value) + "\n";
        }
        if (series.empty()) continue;
        out += std::string("# HELP ") + family.name + " " + family.help + "\n# TYPE " +
               family.name + " gauge\n" + series;
    }
    std::string codes, times;
    std::set<std::string> seen; // a test run twice counts with its last result
    for (const BatteryFigures &battery : batteries) {
        for (auto record = records.rbegin(); record != records.rend(); ++record) {
            if (record->device != battery.device) continue;
            const std::string series =
                "{" + labels(machine, battery) + ",test=\"" + labelValue(record->testId) + "\"} ";
            if (!seen.insert(series).second) continue;
            codes += "battery_test_result_code" + series +
                     std::to_string(static_cast<int>(record->result)) + "\n";
            times += "battery_test_timestamp_seconds" + series + std::to_string(unixSeconds) + "\n";
        }
    }
    if (!codes.empty()) {
        out += "# HELP battery_test_result_code Result code of the test's last run: 0 passed, "
               "1 failed, 3 not applicable, 4 aborted, 5 warning, 6 invalid.\n"
               "# TYPE battery_test_result_code gauge\n" +
               codes +
               "# HELP battery_test_timestamp_seconds When the test last ran, in seconds since "
               "the epoch.\n# TYPE battery_test_timestamp_seconds gauge\n" +
               times;
    }
    return out;
}
