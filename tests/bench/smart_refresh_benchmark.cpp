#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>

#include "battery_rules/identifiers.h"
#include "emulator/notebook.h"
#include "frame/path_builders.h"
#include "smart_battery/smart_battery_component_manager.h"

namespace {

emulator::Notebook &machine() {
    return emulator::Notebook::instance();
}

// A built-in name, or scenario text when it starts with a brace.
void load(const char *scenario) {
    const emulator::LoadResult result = scenario[0] == '{'
                                            ? emulator::parseScenario(scenario, "benchmark")
                                            : emulator::loadScenario(scenario);
    if (!result.ok) {
        std::fprintf(stderr, "%s\n", result.error.c_str());
        std::abort();
    }
    machine().install(result.scenario);
}

// A full smart refresh of the built-in "two-batteries" on an idle controller.
//
// Port accesses, one byte each:
//   register write 2 (index, data); register read 2 (index, data);
//   wait on an idle controller 3 (one read with no index, then one poll of
//   index and data), and no sleep;
//   selection: three writes, each followed by a wait = 3 * (2 + 3) = 15;
//   page: one write and a wait = 5; so every value starts with 20.
//   word reader 20 + 2 * 2 = 24, byte reader 20 + 2 = 22,
//   text reader of n < 28 characters 20 + 2 * (n + 1) (the byte 0 is read).
// A component reads three texts, nine words (date, design capacity, full
// charge, cycle count, serial, design voltage, temperature, battery status,
// cycle scale) and two bytes (capacity mode, authenticity):
//   3 * 22 + 2 * (sum of text lengths) + 9 * 24 + 2 * 22 = 326 + 2 * sum.
//   main "OS-4C57", "LION", "Ostrelle": sum 19, 364;
//   secondary "OS-2C19", "LiP", "Ostrelle": sum 18, 362.
// The scan: selection 15, presence of battery 0 22, the main component,
// second battery reported 22, presence of battery 1 22, the secondary
// component: 81 + 364 + 362 = 807. The driver version lookup touches no port.
// The unit test SmartManager.AFullRefreshOfTwoBatteriesCostsWhatTheProtocol-
// Prescribes asserts the same 807.
void BM_SmartRefreshTwoBatteries(benchmark::State &state) {
    load("two-batteries");
    SmartBatteryComponentManager manager(ID_BATTERY_MANAGER);
    const uint64_t accesses = machine().counters().portAccesses;
    const uint64_t sleeps = machine().clock().sleepCalls();
    for (auto _ : state) {
        manager.refreshComponents();
        benchmark::DoNotOptimize(manager.getComponentCount());
    }
    state.counters["port_accesses"] =
        benchmark::Counter(static_cast<double>(machine().counters().portAccesses - accesses),
                           benchmark::Counter::kAvgIterations);
    state.counters["sleeps"] =
        benchmark::Counter(static_cast<double>(machine().clock().sleepCalls() - sleeps),
                           benchmark::Counter::kAvgIterations);
}
BENCHMARK(BM_SmartRefreshTwoBatteries);

// The path decision as the assembly takes it. With no controller every first
// port access fails, so both selections end at once and nothing is waited
// for; a controller that stays busy costs two waits of 0.5 s per selection.
void pathDecision(benchmark::State &state, const char *scenario) {
    load(scenario);
    const uint64_t waited = machine().clock().elapsedMs();
    for (auto _ : state) {
        SmartPathHandle manager = newSmartBatteryManager(ID_BATTERY_MANAGER);
        benchmark::DoNotOptimize(isSmartPathAvailable(manager));
        deleteSmartBatteryManager(manager);
    }
    state.counters["virtual_ms_waited"] =
        benchmark::Counter(static_cast<double>(machine().clock().elapsedMs() - waited),
                           benchmark::Counter::kAvgIterations);
}

void BM_PathDecisionDeadController(benchmark::State &state) {
    pathDecision(state, "dead-controller");
}
BENCHMARK(BM_PathDecisionDeadController);

void BM_PathDecisionStuckController(benchmark::State &state) {
    pathDecision(state, R"({"name": "stuck", "controller": {"present": true,
                            "faults": {"busyForever": true}}, "batteries": [{}]})");
}
BENCHMARK(BM_PathDecisionStuckController);

} // namespace
