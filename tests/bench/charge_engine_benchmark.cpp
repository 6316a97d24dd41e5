#include <benchmark/benchmark.h>

#include <ctime>

#include "battery_module/execution_context.h"
#include "diagnostics/discharge_test.h"
#include "emulator/notebook.h"
#include "generic_battery/generic_battery_component_manager.h"

namespace {

// A host that only counts the passes: each pass of the measurement sends
// one progress update with an empty text.
class CountingHost : public ExecutionContext, public ResultLog, public UserChannel {
public:
    SystemComponent *target = nullptr;
    uint32_t events = 0;
    uint64_t passes = 0;
    std::vector<TestParameter> chosen;

    SystemComponent *getTargetComponent() override { return target; }
    ResultLog *getResultLog() override { return this; }
    UserChannel *getUserChannel() override { return this; }
    bool isStopRequested() override { return false; }
    uint32_t *getSystemEvents() override { return &events; }
    std::vector<TestParameter> getParameters() override { return chosen; }
    void addEntry(std::string, uint32_t, uint32_t) override {}
    void updateProgress(uint8_t, const std::string &text) override { passes += text.empty(); }
    void requestInput(const InputRequest &) override {}
    bool isInputRecognized() override { return true; }
    void postNotice(const std::string &, const NoticeList &) override {}
};

// Whole five-minute discharge runs on the emulated notebook in virtual
// time; the CPU time they cost is shared out over their passes. The pass
// sleeps 500 ms, so its own work should stay far below that.
void DischargeMeasurementPass(benchmark::State &state) {
    emulator::Notebook &notebook = emulator::Notebook::instance();
    if (!notebook.load("generic").ok) {
        state.SkipWithError("scenario generic does not load");
        return;
    }
    GenericBatteryComponentManager manager({12, 0, 0});
    manager.refreshComponents();
    CountingHost host;
    host.target = manager.getComponent(0);
    TestParameter duration;
    duration.key = "DURATION";
    duration.value = "5";
    host.chosen = {duration};
    DischargeTest test({12, 2, 2});

    double cpuSeconds = 0;
    for (auto _ : state) {
        state.PauseTiming();
        notebook.load("generic");
        state.ResumeTiming();
        const std::clock_t start = std::clock();
        benchmark::DoNotOptimize(test.execute(&host));
        cpuSeconds += static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    }
    const double passes = static_cast<double>(host.passes);
    if (passes == 0) {
        state.SkipWithError("no measurement pass ran");
        return;
    }
    const double perPass = cpuSeconds / passes;
    state.counters["passes"] = passes;
    state.counters["CPU us/pass"] = perPass * 1e6;
    state.counters["% of the 500 ms period"] = perPass / 0.5 * 100.0;
}
BENCHMARK(DischargeMeasurementPass)->Unit(benchmark::kMillisecond);

} // namespace
