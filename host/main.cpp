// The substitute diagnostics host: loads the battery module by path and
// drives it through its three exports and virtual operations only.

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "battery_module/resource.h"
#include "battery_rules/host_keys.h"
#include "command_line.h"
#include "exit_codes.h"
#include "host_machine.h"
#include "host_options.h"
#include "host_run.h"
#include "language.h"
#include "module_listing.h"
#include "module_location.h"
#include "module_queries.h"
#include "module_session.h"
#include "report/json_report.h"
#include "run_outputs.h"
#include "run_plan.h"
#include "run_view.h"
#include "stop_signals.h"

namespace {

constexpr const char *kHostVersion = "1.0.0";

const char *kHostHelpFooter = R"(
Diagnostics (from the module's option tables; see the module's help below):
  -Q, --quick                run every test of the quick diagnostic
  -Q"h", --quick="h"         run chosen tests, by letter or name
  -E, --extended             run the extended diagnostic (an addition of this host)
  -E"d", --extended="d"      d: discharge test, c: charge test
  [device id(s)]             0/1 on the smart path, bat on the generic path; default all

Exit codes: 0 every test passed; otherwise the most severe result, in the order
1 failed, 6 invalid, 4 aborted, 5 warning, 3 not applicable; 2 a usage error;
69 the module could not be loaded or gave no interface; 73 a report, metrics
or other output could not be written (its path and the reason are named).)";

// One invocation of the host: its arguments as they are taken apart, its
// options, and the machine it runs on. A step that ends the invocation
// gives the exit code.
struct Invocation {
    Invocation(int argc, char **argv) : program(argv[0]), args(argv + 1, argv + argc) {}

    const char *program;
    std::vector<std::string> args;
    CLI::App app{"Runs the battery diagnostics of the battery module.", "battery_host"};
    HostOptions options;
    HostMachine *machine = nullptr;
};
using Ending = std::optional<int>;

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

int usageError(const std::string &message, const CLI::App &app) {
    std::fprintf(stderr, "error: %s\n", message.c_str());
    std::fprintf(stderr,
                 "usage: %s -Mbattery [-Q[\"tests\"] | -E[\"tests\"]] [device ids] "
                 "[options]; see --help\n",
                 app.get_name().c_str());
    return exit_codes::kUsage;
}

int noInterface(HostMachine &machine) {
    std::fprintf(stderr, "error: the module gave no interface on %s\n", machine.describe().c_str());
    return exit_codes::kNoModule;
}

// The machine, its scenario and its pace; what a run that died left changed
// is put back first. Listing the scenarios or the history ends here.
Ending chooseMachine(Invocation &call) {
    if (command_line::has(call.args, "--this-machine")) useThisMachine();
    HostMachine &machine = currentHostMachine();
    call.machine = &machine;
    const std::string scenario = command_line::valueOf(call.args, "--scenario");
    if (scenario == "list") {
        for (const auto &entry : machine.scenarioList()) {
            std::printf("%-24s %s\n", entry.first.c_str(), entry.second.c_str());
        }
        return exit_codes::kSuccess;
    }
    if (command_line::has(call.args, "--history")) {
        call.options.outputs.historyPath = command_line::valueOf(call.args, "--history-db");
        return run_outputs::showHistory(call.options.outputs,
                                        command_line::has(call.args, "--json"));
    }
    const std::string scenarioError =
        scenario.empty() ? machine.selectDefaultScenario() : machine.selectScenario(scenario);
    if (!scenarioError.empty()) return usageError(scenarioError, call.app);
    double scale = 1.0;
    const std::string scaleText = command_line::valueOf(call.args, "--time-scale");
    std::string scaleError;
    if ((!scaleText.empty() || command_line::has(call.args, "--time-scale")) &&
        !command_line::parseTimeScale(scaleText, scale, scaleError)) {
        return usageError(scaleError, call.app);
    }
    for (const std::string &line : machine.putBackWhatARunLeft()) {
        std::fprintf(stderr, "restore journal: %s\n", line.c_str());
    }
    machine.setTimeScale(scale);
    return std::nullopt;
}

// The module named by --module, else the one beside this program.
std::unique_ptr<ModuleSession> loadModule(const Invocation &call, std::string &error) {
    std::unique_ptr<ModuleLibrary> library =
        module_location::load(command_line::valueOf(call.args, "--module"), call.program, error);
    return ModuleSession::of(std::move(library));
}

void printHelp(const Invocation &call, const ModuleSession *session, const std::string &loadError) {
    std::printf("%s", call.app.help().c_str());
    if (session != nullptr && session->module() != nullptr) {
        std::printf("\nThe module's help:\n%s",
                    session->module()->getResource()->getHelpText().c_str());
    } else {
        std::printf("\n(no module help: %s)\n",
                    session != nullptr ? "the module gave no interface" : loadError.c_str());
    }
}

// The rest of the command line, once the module's option tables are known.
// Help and the versions need no interface; everything else does.
Ending readCommandLine(Invocation &call, const ModuleSession *session, const std::string &loadError,
                       std::vector<DiagnosticChoice> &choices) {
    ModuleInterface *module = session != nullptr ? session->module() : nullptr;
    const bool askedForHelp =
        command_line::has(call.args, "--help") || command_line::has(call.args, "-h");
    const bool askedForVersion = command_line::has(call.args, "--version");
    if (module == nullptr && !askedForHelp && !(session != nullptr && askedForVersion)) {
        if (session != nullptr) return noInterface(*call.machine);
        std::fprintf(stderr, "error: %s\n", loadError.c_str());
        return exit_codes::kNoModule;
    }
    if (module != nullptr) {
        command_line::extractDiagnostics(call.args, run_plan::switchesOf(*module), choices,
                                         call.options.moduleName);
    }
    std::vector<const char *> rest = {call.program};
    for (const std::string &arg : call.args) rest.push_back(arg.c_str());
    try {
        call.app.parse(static_cast<int>(rest.size()), const_cast<char **>(rest.data()));
    } catch (const CLI::CallForHelp &) {
        printHelp(call, session, loadError);
        return exit_codes::kSuccess;
    } catch (const CLI::ParseError &error) {
        return usageError(error.what(), call.app);
    }
    if (session == nullptr) {
        std::fprintf(stderr, "error: %s\n", loadError.c_str());
        return exit_codes::kNoModule;
    }
    if (call.options.version) {
        std::printf("battery_host %s\nbattery module %s\n", kHostVersion,
                    session->versionText().c_str());
        return exit_codes::kSuccess;
    }
    if (module == nullptr) return noInterface(*call.machine);
    if (!call.options.moduleName.empty() && lowered(call.options.moduleName) != "battery") {
        return usageError("no module '" + call.options.moduleName + "' here (this is -Mbattery)",
                          call.app);
    }
    return std::nullopt;
}

// The tests and batteries the command line chose, checked before anything
// runs; the lists are shown when nothing is to run or when asked.
Ending planRuns(Invocation &call, ModuleSession &session,
                const std::vector<DiagnosticChoice> &choices, const RunView &view, RunPlan &plan) {
    ModuleInterface &module = *session.module();
    call.options.outputs.scenarioPath = command_line::valueOf(call.args, "--scenario");
    const std::string outputError = run_outputs::checkPaths(call.options.outputs);
    if (!outputError.empty()) return usageError(outputError, call.app);
    module_queries::prepareComponents(module);
    std::string planError;
    if (!run_plan::chooseTests(module, choices, call.options.runIds, plan, planError) ||
        !run_plan::chooseDevices(module, call.options.devices, plan, planError)) {
        return usageError(planError, call.app);
    }
    if (!call.options.json) {
        std::printf("battery module %s on %s\n", session.versionText().c_str(),
                    call.machine->describe().c_str());
        if (plan.tests.empty() || call.options.list) printModuleLists(module, view);
    }
    if (!plan.tests.empty() && plan.devices.empty()) {
        std::fprintf(stderr, "error: no battery to test on %s\n", call.machine->describe().c_str());
        return ResultNotApplicable;
    }
    return std::nullopt;
}

// The parameters a run gets: the test's definitions, with the chosen
// duration filled in.
std::vector<TestParameter> parametersFor(Test &test, const HostOptions &options) {
    std::vector<TestParameter> parameters = test.getParameterDefinitions(nullptr, nullptr, 0);
    if (!options.duration.empty()) {
        for (TestParameter &parameter : parameters) {
            if (parameter.key == keys::DURATION) parameter.value = options.duration;
        }
    }
    return parameters;
}

std::vector<RunRecord> runTests(ModuleInterface &module, const RunPlan &plan,
                                const Invocation &call, RunView &view) {
    std::vector<RunRecord> records;
    Resource *resource = module.getResource();
    for (Test *test : plan.tests) {
        if (call.options.holdAboveCharge && test->isInteractive()) {
            TestParameter flow;
            flow.key = keys::EXECUTION_FLOW;
            flow.lastNumber = 1;
            test->setParameter(flow);
        }
        for (size_t d = 0; d < plan.devices.size() && !stop_signals::requested(); ++d) {
            RunRecord record;
            record.testId = module_queries::idText(test->getEntityId());
            record.testName = resource->getTestName(test->getEntityId());
            record.device = plan.deviceIds[d];
            view.begin(record.testName, record.device);
            HostRun run(plan.devices[d], parametersFor(*test, call.options), *call.machine, view,
                        call.options.yes ? PromptAnswer::Automatic : PromptAnswer::Ask, record);
            record.result = test->execute(&run);
            view.end(record.result);
            records.push_back(std::move(record));
        }
    }
    return records;
}

// Runs the plan; an extended test changes the machine's settings, so they
// are recorded first and put back after.
Ending runPlan(Invocation &call, ModuleInterface &module, const RunPlan &plan, RunView &view,
               std::vector<RunRecord> &records) {
    stop_signals::install();
    const bool changesMachine = run_plan::includesExtended(plan);
    std::string journalError;
    if (changesMachine && !call.machine->recordSettings(journalError)) {
        std::fprintf(stderr, "error: %s; an extended test needs it to put the machine back\n",
                     journalError.c_str());
        return exit_codes::kUsage;
    }
    records = runTests(module, plan, call, view);
    if (changesMachine) call.machine->settingsPutBack();
    return std::nullopt;
}

// The history, the report files and the JSON report. The module is released
// before the machine's state is read and before a stop signal ends the
// program.
int writeOutputs(Invocation &call, std::unique_ptr<ModuleSession> session,
                 std::vector<RunRecord> records) {
    std::vector<TestResultCode> results;
    for (const RunRecord &record : records) results.push_back(record.result);
    int code = exit_codes::forResults(results);
    ModuleInterface &module = *session->module();
    const RunSummary summary{kHostVersion,
                             session->versionText(),
                             call.machine->describe(),
                             module_queries::isSmartPath(module) ? "smart" : "generic",
                             json_report::batteries(module),
                             std::move(records)};
    if (!run_outputs::write(call.options.outputs, summary, Language::english())) {
        code = exit_codes::kOutputFailed;
    }
    nlohmann::json document;
    if (call.options.json)
        document = json_report::document(summary, code, stop_signals::received());
    session.reset();
    if (call.options.json) {
        document["machineState"] = call.machine->state();
        // Texts from a driver may be cut inside a character; they are shown, not refused.
        std::cout << document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace)
                  << std::endl;
    } else {
        std::fflush(stdout);
    }
    stop_signals::endLikeTheSignal();
    return code;
}

int runHost(Invocation &call) {
    buildHostOptions(call.app, call.options);
    call.app.footer(kHostHelpFooter);
    // The module is loaded after the machine is chosen and before the command
    // line is parsed: its option tables add options.
    if (const Ending ending = chooseMachine(call)) return *ending;
    std::string loadError;
    std::unique_ptr<ModuleSession> session = loadModule(call, loadError);
    std::vector<DiagnosticChoice> choices;
    if (const Ending ending = readCommandLine(call, session.get(), loadError, choices)) {
        return *ending;
    }
    RunView view(RunView::modeFor(call.options.json), RunView::colourWanted(), call.options.rawKeys,
                 Language::english());
    RunPlan plan;
    if (const Ending ending = planRuns(call, *session, choices, view, plan)) return *ending;
    std::vector<RunRecord> records;
    if (const Ending ending = runPlan(call, *session->module(), plan, view, records)) {
        return *ending;
    }
    return writeOutputs(call, std::move(session), std::move(records));
}

} // namespace

int main(int argc, char **argv) {
    Invocation call(argc, argv);
    return runHost(call);
}
