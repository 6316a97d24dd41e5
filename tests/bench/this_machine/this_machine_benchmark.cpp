// The host on this machine over a two-battery testbed: the wall time of the
// whole quick run as a process, and the sysfs reads of one refresh.

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <vector>

#include "generic_battery/generic_battery_component_manager.h"
#include "platform_layer/this_machine.h"
#include "support/umockdev_testbed.h"

extern char **environ;

namespace {

// One run of `battery_host --this-machine -Mbattery -Q`, from start to exit;
// the testbed reaches it through the environment it inherits.
void HostQuickRunOnTwoBatteries(benchmark::State &state) {
    Testbed testbed("two-batteries");
    if (!testbed.ok()) {
        state.SkipWithError("testbed two-batteries does not load");
        return;
    }
    char *arguments[] = {const_cast<char *>(HOST_PATH), const_cast<char *>("--this-machine"),
                         const_cast<char *>("-Mbattery"), const_cast<char *>("-Q"), nullptr};
    posix_spawn_file_actions_t quiet;
    posix_spawn_file_actions_init(&quiet);
    posix_spawn_file_actions_addopen(&quiet, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&quiet, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    // The processor time alone, which a busy machine does not inflate.
    double cpuSeconds = 0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        pid_t child = 0;
        int status = -1;
        rusage usage = {};
        if (posix_spawn(&child, HOST_PATH, &quiet, nullptr, arguments, environ) != 0 ||
            wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) ||
            WEXITSTATUS(status) != 0) {
            state.SkipWithError("the host's quick run did not pass");
            break;
        }
        state.SetIterationTime(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        cpuSeconds += static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
                      static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
    }
    state.counters["host CPU ms/run"] =
        cpuSeconds * 1000 / static_cast<double>(std::max<int64_t>(state.iterations(), 1));
    posix_spawn_file_actions_destroy(&quiet);
}
BENCHMARK(HostQuickRunOnTwoBatteries)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5)
    ->Repetitions(5)
    ->ComputeStatistics("max", [](const std::vector<double> &v) {
        return *std::max_element(v.begin(), v.end());
    });

// A generic refresh of both batteries, counted in attribute files read; a
// file read twice within one request of the layer counts as repeated.
void RefreshOnTwoBatteries(benchmark::State &state) {
    Testbed testbed("two-batteries");
    if (!testbed.ok()) {
        state.SkipWithError("testbed two-batteries does not load");
        return;
    }
    platform_layer::useMachine(&platform_layer::thisMachine());
    {
        GenericBatteryComponentManager manager({12, 0, 0});
        const platform_layer::SysfsReadCounts before = platform_layer::sysfsReadCounts();
        for (auto _ : state) {
            manager.refreshComponents();
            benchmark::DoNotOptimize(manager.getComponent(0));
        }
        const platform_layer::SysfsReadCounts after = platform_layer::sysfsReadCounts();
        const double refreshes = static_cast<double>(state.iterations());
        state.counters["sysfs reads/refresh"] =
            static_cast<double>(after.reads - before.reads) / refreshes;
        state.counters["repeated reads/refresh"] =
            static_cast<double>(after.repeatedReads - before.repeatedReads) / refreshes;
    }
    platform_layer::useMachine(nullptr);
}
BENCHMARK(RefreshOnTwoBatteries)->Unit(benchmark::kMillisecond);

// One power status on a machine with many supplies besides its batteries
// (peripherals' batteries, adapters of a dock): the files read per request
// and per supply, which must stay flat as the supplies grow.
void PowerStatusOverManySupplies(benchmark::State &state) {
    Testbed testbed("two-batteries");
    if (!testbed.ok()) {
        state.SkipWithError("testbed two-batteries does not load");
        return;
    }
    const int64_t extra = state.range(0);
    for (int64_t i = 0; i < extra; ++i) {
        testbed.addSupply("hidpp_battery_" + std::to_string(i), "Battery", "Device");
    }
    platform_layer::useMachine(&platform_layer::thisMachine());
    const platform_layer::SysfsReadCounts before = platform_layer::sysfsReadCounts();
    for (auto _ : state) {
        platform_layer::SystemPower power;
        benchmark::DoNotOptimize(platform_layer::thisMachine().systemPower(&power));
    }
    const platform_layer::SysfsReadCounts after = platform_layer::sysfsReadCounts();
    const double requests = static_cast<double>(state.iterations());
    const double reads = static_cast<double>(after.reads - before.reads) / requests;
    state.counters["supplies"] = static_cast<double>(extra + 3);
    state.counters["sysfs reads/request"] = reads;
    state.counters["reads/supply"] = reads / static_cast<double>(extra + 3);
    state.counters["repeated reads/request"] =
        static_cast<double>(after.repeatedReads - before.repeatedReads) / requests;
    platform_layer::useMachine(nullptr);
}
BENCHMARK(PowerStatusOverManySupplies)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv) {
    runUnderUmockdev(argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
