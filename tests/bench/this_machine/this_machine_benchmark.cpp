// The host on this machine over a two-battery testbed: the wall time of the
// whole quick run as a process, and the sysfs reads of one refresh.

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <spawn.h>
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
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        pid_t child = 0;
        int status = -1;
        if (posix_spawn(&child, HOST_PATH, &quiet, nullptr, arguments, environ) != 0 ||
            waitpid(child, &status, 0) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
            state.SkipWithError("the host's quick run did not pass");
            break;
        }
        state.SetIterationTime(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
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

} // namespace

int main(int argc, char **argv) {
    runUnderUmockdev(argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
