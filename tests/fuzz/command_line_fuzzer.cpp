// Any argument vector (arguments split at NUL bytes) through everything the
// host does with its command line before it runs a test: the early looks,
// the diagnostic switches, the option parser, the choice of tests and
// batteries. Nothing is run.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "command_line.h"
#include "fuzz/fuzz_module.h"
#include "host_options.h"
#include "module_queries.h"
#include "run_plan.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static FuzzModule module("two-batteries");
    std::vector<std::string> args(1);
    for (size_t i = 0; i < size; ++i) {
        if (data[i] == 0) {
            args.emplace_back();
        } else {
            args.back() += static_cast<char>(data[i]);
        }
    }
    command_line::valueOf(args, "--scenario");
    command_line::has(args, "--help");
    double scale = 1;
    std::string error;
    command_line::parseTimeScale(command_line::valueOf(args, "--time-scale"), scale, error);

    std::vector<DiagnosticChoice> choices;
    std::string moduleName;
    command_line::extractDiagnostics(args, run_plan::switchesOf(*module), choices, moduleName);
    CLI::App app{"fuzz", "battery_host"};
    HostOptions options;
    buildHostOptions(app, options);
    std::vector<const char *> argv = {"battery_host"};
    for (const std::string &arg : args) argv.push_back(arg.c_str());
    try {
        app.parse(static_cast<int>(argv.size()), const_cast<char **>(argv.data()));
    } catch (const CLI::ParseError &) {
        return 0;
    }
    RunPlan plan;
    if (run_plan::chooseTests(*module, choices, options.runIds, plan, error)) {
        run_plan::chooseDevices(*module, options.devices, plan, error);
    }
    return 0;
}
