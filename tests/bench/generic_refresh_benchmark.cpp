#include <benchmark/benchmark.h>

#include "emulator/notebook.h"
#include "emulator/scenario_loader.h"
#include "generic_battery/generic_battery_component_manager.h"

namespace {

// A generic refresh of two batteries, with the driver requests and the
// instrumentation queries it costs.
void GenericRefreshOfTwoBatteries(benchmark::State &state) {
    emulator::Notebook &notebook = emulator::Notebook::instance();
    if (!notebook.load("generic-two-batteries").ok) {
        state.SkipWithError("scenario generic-two-batteries does not load");
        return;
    }
    GenericBatteryComponentManager manager({12, 0, 0});
    const uint64_t requests = notebook.counters().batteryRequests;
    const uint64_t queries = notebook.counters().wmiQueries;
    for (auto _ : state) {
        manager.refreshComponents();
        benchmark::DoNotOptimize(manager.getComponent(0));
    }
    const double refreshes = static_cast<double>(state.iterations());
    state.counters["DeviceIoControl/refresh"] =
        static_cast<double>(notebook.counters().batteryRequests - requests) / refreshes;
    state.counters["WMI queries/refresh"] =
        static_cast<double>(notebook.counters().wmiQueries - queries) / refreshes;
}
BENCHMARK(GenericRefreshOfTwoBatteries);

} // namespace

