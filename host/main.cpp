// The substitute diagnostics host: loads the battery module by path and
// drives it through its three exports and virtual operations only.

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "battery_module/diagnostic.h"
#include "battery_module/product_version.h"
#include "battery_module/resource.h"
#include "command_line.h"
#include "exit_codes.h"
#include "host_options.h"
#include "host_run.h"
#include "language.h"
#include "machine.h"
#include "module_library.h"
#include "module_session.h"
#include "report.h"
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

void printProperties(const std::vector<ComponentProperty> &properties, const std::string &indent,
                     const RunView &view) {
    for (const ComponentProperty &property : properties) {
        std::printf("%s%s: %s\n", indent.c_str(), view.text(property.key).c_str(),
                    view.text(property.value).c_str());
    }
}

void printLists(ModuleInterface &module, const RunView &view) {
    Resource *resource = module.getResource();
    const bool smart = module_session::isSmartPath(module);
    std::printf("path: %s\n", smart ? "smart (embedded controller)" : "generic (operating system)");
    std::printf("diagnostics:\n");
    for (uint32_t d = 0; d < module.getDiagnosticCount(); ++d) {
        Diagnostic *diagnostic = module.getDiagnostic(d);
        if (diagnostic == nullptr) continue;
        const EntityId id = diagnostic->getEntityId();
        std::printf("  %s  %s\n", module_session::idText(id).c_str(),
                    view.text(resource->getDiagnosticName(id)).c_str());
        std::printf("          %s\n", view.text(resource->getDiagnosticTooltip(id)).c_str());
        for (uint32_t t = 0; t < diagnostic->getTestCount(); ++t) {
            Test *test = diagnostic->getTest(t);
            if (test == nullptr) continue;
            const EntityId testId = test->getEntityId();
            std::printf("    %s  %s\n", module_session::idText(testId).c_str(),
                        view.text(resource->getTestName(testId)).c_str());
        }
    }
    std::printf("batteries:\n");
    SystemComponentManager *manager = module.getComponentManager();
    const uint64_t count = manager->getComponentCount();
    if (count == 0) std::printf("  none\n");
    for (uint32_t c = 0; c < count; ++c) {
        SystemComponent *component = manager->getComponent(c);
        if (component == nullptr) continue;
        const ComponentInfo info = component->getInfo();
        std::printf("  %s  %s\n", run_plan::deviceIdOf(*component, smart).c_str(),
                    view.text(info.name).c_str());
        printProperties(info.properties, "      ", view);
        for (const ComponentInfoGroup &group : component->getInfoGroups()) {
            std::printf("      %s\n", view.text(group.name).c_str());
            printProperties(group.properties, "        ", view);
        }
    }
}

// The parameters a run gets: the test's definitions, with the chosen
// duration filled in.
std::vector<TestParameter> parametersFor(Test &test, const HostOptions &options) {
    std::vector<TestParameter> parameters = test.getParameterDefinitions(nullptr, nullptr, 0);
    if (!options.duration.empty()) {
        for (TestParameter &parameter : parameters) {
            if (parameter.key == "DURATION") parameter.value = options.duration;
        }
    }
    return parameters;
}

std::vector<RunRecord> runPlan(ModuleInterface &module, const RunPlan &plan,
                               const HostOptions &options, Machine &machine, RunView &view) {
    std::vector<RunRecord> records;
    Resource *resource = module.getResource();
    for (Test *test : plan.tests) {
        if (options.holdAboveCharge && test->isInteractive()) {
            TestParameter flow;
            flow.key = "execution_flow";
            flow.lastNumber = 1;
            test->setParameter(flow);
        }
        for (size_t d = 0; d < plan.devices.size() && !stop_signals::requested(); ++d) {
            RunRecord record;
            record.testId = module_session::idText(test->getEntityId());
            record.testName = resource->getTestName(test->getEntityId());
            record.device = plan.deviceIds[d];
            view.begin(record.testName, record.device);
            HostRun run(plan.devices[d], parametersFor(*test, options), machine, view,
                        options.yes ? PromptAnswer::Automatic : PromptAnswer::Ask, record);
            record.result = test->execute(&run);
            view.end(record.result);
            records.push_back(std::move(record));
        }
    }
    return records;
}

} // namespace

int main(int argc, char **argv) {
    std::vector<std::string> args(argv + 1, argv + argc);
    CLI::App app{"Runs the battery diagnostics of the battery module.", "battery_host"};
    HostOptions options;
    buildHostOptions(app, options);
    app.footer(kHostHelpFooter);

    // The module is loaded first: its option tables add options.
    if (command_line::has(args, "--this-machine")) useThisMachine();
    Machine &machine = currentMachine();
    const std::string scenario = command_line::valueOf(args, "--scenario");
    if (scenario == "list") {
        for (const auto &entry : machine.scenarioList()) {
            std::printf("%-24s %s\n", entry.first.c_str(), entry.second.c_str());
        }
        return exit_codes::kSuccess;
    }
    if (command_line::has(args, "--history")) {
        options.outputs.historyPath = command_line::valueOf(args, "--history-db");
        return run_outputs::showHistory(options.outputs, command_line::has(args, "--json"));
    }
    const std::string scenarioError =
        scenario.empty() ? machine.selectDefaultScenario() : machine.selectScenario(scenario);
    if (!scenarioError.empty()) return usageError(scenarioError, app);
    double scale = 1.0;
    const std::string scaleText = command_line::valueOf(args, "--time-scale");
    std::string scaleError;
    if ((!scaleText.empty() || command_line::has(args, "--time-scale")) &&
        !command_line::parseTimeScale(scaleText, scale, scaleError)) {
        return usageError(scaleError, app);
    }
    for (const std::string &line : machine.putBackWhatARunLeft()) {
        std::fprintf(stderr, "restore journal: %s\n", line.c_str());
    }
    machine.setTimeScale(scale);

    std::string loadError;
    std::string path = command_line::valueOf(args, "--module");
    if (path.empty()) path = ModuleLibrary::defaultPath(argv[0]);
    std::unique_ptr<ModuleLibrary> library = ModuleLibrary::load(path, loadError);
    ModuleInterface *module = library ? library->getInterface() : nullptr;

    const bool askedForHelp = command_line::has(args, "--help") || command_line::has(args, "-h");
    const bool askedForVersion = command_line::has(args, "--version");
    if ((!library || module == nullptr) && !askedForHelp && !(library && askedForVersion)) {
        if (!library) {
            std::fprintf(stderr, "error: %s\n", loadError.c_str());
        } else {
            std::fprintf(stderr, "error: the module gave no interface on %s\n",
                         machine.describe().c_str());
        }
        return exit_codes::kNoModule;
    }

    std::vector<DiagnosticChoice> choices;
    if (module != nullptr) {
        command_line::extractDiagnostics(args, run_plan::switchesOf(*module), choices,
                                         options.moduleName);
    }
    std::vector<const char *> rest = {argv[0]};
    for (const std::string &arg : args) rest.push_back(arg.c_str());
    try {
        app.parse(static_cast<int>(rest.size()), const_cast<char **>(rest.data()));
    } catch (const CLI::CallForHelp &) {
        std::printf("%s", app.help().c_str());
        if (module != nullptr) {
            std::printf("\nThe module's help:\n%s", module->getResource()->getHelpText().c_str());
        } else {
            std::printf("\n(no module help: %s)\n",
                        library ? "the module gave no interface" : loadError.c_str());
        }
        if (library) library->releaseInterface();
        return exit_codes::kSuccess;
    } catch (const CLI::ParseError &error) {
        if (library) library->releaseInterface();
        return usageError(error.what(), app);
    }

    if (!library) {
        std::fprintf(stderr, "error: %s\n", loadError.c_str());
        return exit_codes::kNoModule;
    }
    if (options.version) {
        std::printf("battery_host %s\nbattery module %s\n", kHostVersion,
                    report::version(*library->getVersion()).get<std::string>().c_str());
        library->releaseInterface();
        return exit_codes::kSuccess;
    }
    if (module == nullptr) {
        std::fprintf(stderr, "error: the module gave no interface on %s\n",
                     machine.describe().c_str());
        return exit_codes::kNoModule;
    }
    if (!options.moduleName.empty() && lowered(options.moduleName) != "battery") {
        library->releaseInterface();
        return usageError("no module '" + options.moduleName + "' here (this is -Mbattery)", app);
    }

    options.outputs.scenarioPath = scenario;
    const std::string outputError = run_outputs::checkPaths(options.outputs);
    if (!outputError.empty()) {
        library->releaseInterface();
        return usageError(outputError, app);
    }
    module_session::prepareComponents(*module);
    RunPlan plan;
    std::string planError;
    if (!run_plan::chooseTests(*module, choices, options.runIds, plan, planError) ||
        !run_plan::chooseDevices(*module, options.devices, plan, planError)) {
        library->releaseInterface();
        return usageError(planError, app);
    }

    RunView view(RunView::modeFor(options.json), RunView::colourWanted(), options.rawKeys,
                 Language::english());
    const bool listOnly = plan.tests.empty();
    if (!options.json) {
        std::printf("battery module %s on %s\n",
                    report::version(*library->getVersion()).get<std::string>().c_str(),
                    machine.describe().c_str());
        if (listOnly || options.list) printLists(*module, view);
    }
    if (!plan.tests.empty() && plan.devices.empty()) {
        std::fprintf(stderr, "error: no battery to test on %s\n", machine.describe().c_str());
        library->releaseInterface();
        return ResultNotApplicable;
    }
    stop_signals::install();
    const bool changesMachine = run_plan::includesExtended(plan);
    std::string journalError;
    if (changesMachine && !machine.recordSettings(journalError)) {
        std::fprintf(stderr, "error: %s; an extended test needs it to put the machine back\n",
                     journalError.c_str());
        library->releaseInterface();
        return exit_codes::kUsage;
    }
    const std::vector<RunRecord> records = runPlan(*module, plan, options, machine, view);
    if (changesMachine) machine.settingsPutBack();
    std::vector<TestResultCode> results;
    for (const RunRecord &record : records) results.push_back(record.result);
    int code = exit_codes::forResults(results);
    const RunSummary summary{kHostVersion,
                             report::version(*library->getVersion()).get<std::string>(),
                             machine.describe(),
                             module_session::isSmartPath(*module) ? "smart" : "generic",
                             report::batteries(*module),
                             records};
    if (!run_outputs::write(options.outputs, summary, Language::english())) {
        code = exit_codes::kOutputFailed;
    }

    if (options.json) {
        nlohmann::json document = {
            {"host", kHostVersion},
            {"moduleVersion", report::version(*library->getVersion())},
            {"path", module_session::isSmartPath(*module) ? "smart" : "generic"},
            {"machine", machine.describe()},
            {"batteries", report::batteries(*module)},
            {"runs", report::runs(records)},
            {"exitCode", code}};
        if (stop_signals::received() != 0) document["stoppedBy"] = stop_signals::received();
        library->releaseInterface();
        document["machineState"] = machine.state();
        // Texts from a driver may be cut inside a character; they are shown, not refused.
        std::cout << document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace)
                  << std::endl;
        stop_signals::endLikeTheSignal();
        return code;
    }
    library->releaseInterface();
    std::fflush(stdout);
    stop_signals::endLikeTheSignal();
    return code;
}
