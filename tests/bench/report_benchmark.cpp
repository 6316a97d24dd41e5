#include <benchmark/benchmark.h>

#include <sqlite3.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "history/history_store.h"
#include "language.h"
#include "report/html_report.h"

namespace {

// Wall-clock milliseconds of one call, averaged over the iterations.
template <typename Work> void timed(benchmark::State &state, const char *counter, Work work) {
    double totalMs = 0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        work();
        totalMs +=
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
                .count();
    }
    state.counters[counter] = benchmark::Counter(totalMs, benchmark::Counter::kAvgIterations);
}

// One smart battery as the module lists it.
nlohmann::json oneBattery() {
    return nlohmann::json::parse(R"json([{"device": "0", "index": "0", "name": "MAIN_BATTERY",
        "groups": [], "properties": [
        {"key": "NAME", "value": "OS-4C57"}, {"key": "MANUFACTURER", "value": "Ostrelle"},
        {"key": "SERIAL_NUMBER", "value": "4711"}, {"key": "TEMPERATURE", "value": "31.65 °C"},
        {"key": "DESIGN_CAPACITY", "value": "57.24 Wh (5021 mAh)"},
        {"key": "FULL_CHARGE_CAPACITY", "value": "54.1 Wh (4745 mAh)"},
        {"key": "CYCLE_COUNT", "value": "42"}]}])json");
}

// A 20-minute run sampled every half second.
RunRecord extendedRun(const char *id, double slope) {
    RunRecord record;
    record.testId = id;
    record.testName = "BATTERY_DISCHARGE_TEST";
    record.device = "0";
    for (int i = 0; i < 2400; ++i) {
        record.progress.push_back({static_cast<uint32_t>(i / 24), ""});
        record.samples.push_back({i * 500.0, 76 + slope * i / 2400, slope > 0, (i * 7) % 101,
                                  slope < 0 ? "high-performance" : "power-saver"});
    }
    record.entries.push_back({"INITIAL_BATTERY_CHARGE: 76%", 1});
    return record;
}

HistoryEntry entryOf(int run) {
    HistoryEntry entry;
    entry.run = run;
    entry.at = "2026-01-01T00:00:00Z";
    entry.machine = "emulated notebook 'default'";
    entry.battery.manufacturer = "Ostrelle";
    entry.battery.name = "OS-4C57";
    entry.battery.serial = "4711";
    entry.battery.designWh = 57.24;
    entry.battery.fullChargeWh = 57.24 - run * 0.002;
    entry.results = {{"12.1.1", 0}, {"12.1.4", 0}};
    return entry;
}

void report(benchmark::State &state, const ReportInput &input) {
    size_t bytes = 0;
    timed(state, "ms_per_report", [&] {
        const std::string page = renderHtmlReport(input, Language::english());
        bytes = page.size();
        benchmark::DoNotOptimize(page.data());
    });
    state.counters["page_bytes"] = static_cast<double>(bytes);
}

// Target: under 100 ms a report.
void ReportOfTwentyMinuteExtendedRun(benchmark::State &state) {
    ReportInput input{"1.0.0",
                      "4.37.0.209",
                      "bench",
                      "smart",
                      "2026-01-01T00:00:00Z",
                      oneBattery(),
                      {extendedRun("12.2.2", -4), extendedRun("12.2.3", 4)},
                      {},
                      "No history is kept (--no-history)."};
    report(state, input);
}
BENCHMARK(ReportOfTwentyMinuteExtendedRun)->Unit(benchmark::kMillisecond);

void ReportOfTenThousandRunHistory(benchmark::State &state) {
    ReportInput input{"1.0.0",      "4.37.0.209", "bench", "smart", "2026-01-01T00:00:00Z",
                      oneBattery(), {},           {{}},    ""};
    for (int run = 1; run <= 10000; ++run) input.history[0].push_back(entryOf(run));
    report(state, input);
}
BENCHMARK(ReportOfTenThousandRunHistory)->Unit(benchmark::kMillisecond);

// 10,000 runs of two batteries in one file; the query asks for one of them.
// Target: under 50 ms a query.
void HistoryQueryOfOneBattery(benchmark::State &state) {
    const std::string path =
        (std::filesystem::temp_directory_path() / "battery-history-benchmark.sqlite3").string();
    for (const char *suffix : {"", "-wal", "-shm"}) std::filesystem::remove(path + suffix);
    std::string error;
    if (!HistoryStore::open(path, error)) {
        state.SkipWithError(error.c_str());
        return;
    }
    sqlite3 *db = nullptr;
    sqlite3_open(path.c_str(), &db);
    std::string fill = "BEGIN;";
    for (int run = 1; run <= 10000; ++run) {
        const std::string id = std::to_string(run);
        fill +=
            "INSERT INTO runs(id, at, machine) VALUES(" + id + ", '2026-01-01T00:00:00Z', 'm');";
        for (const char *serial : {"4711", "815"}) {
            fill += "INSERT INTO batteries(run_id, manufacturer, name, serial, design_wh, "
                    "full_charge_wh, cycle_count, temperature_c) VALUES(" +
                    id + ", 'Ostrelle', 'OS-4C57', '" + serial +
                    "', 57.24, 50.0, 42, 30.5);"
                    "INSERT INTO results VALUES(last_insert_rowid(), '12.1.1', 0);";
        }
    }
    sqlite3_exec(db, (fill + "COMMIT;").c_str(), nullptr, nullptr, nullptr);
    sqlite3_close(db);

    std::unique_ptr<HistoryStore> store = HistoryStore::open(path, error);
    BatteryFigures battery;
    battery.manufacturer = "Ostrelle";
    battery.name = "OS-4C57";
    battery.serial = "4711";
    size_t found = 0;
    timed(state, "ms_per_query", [&] { found = store->entries(&battery).size(); });
    if (found != 10000) state.SkipWithError("the query missed runs");
    store.reset();
    for (const char *suffix : {"", "-wal", "-shm"}) std::filesystem::remove(path + suffix);
}
BENCHMARK(HistoryQueryOfOneBattery)->Unit(benchmark::kMillisecond);

} // namespace
