// The substitute diagnostics host: loads the battery module by path and
// drives it through its three exports and virtual operations only.

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "battery_module/product_version.h"
#include "console_run.h"
#include "exit_codes.h"
#include "machine.h"
#include "module_library.h"
#include "module_session.h"

namespace {

struct Options {
    std::string modulePath;
    std::string scenario;
    bool list = false;
    bool version = false;
    bool help = false;
    std::vector<std::string> runIds;
    uint32_t device = 0;
    double timeScale = 1.0;
};

void printVersion(ModuleLibrary &library) {
    ProductVersion *version = library.getVersion();
    std::printf("battery module %u.%u.%u.%u\n", version->getMajor(), version->getMinor(),
                version->getRevision(), version->getBuild());
}

std::string nameOf(Resource *resource, const EntityId &id, bool diagnostic) {
    if (resource == nullptr) return "";
    return diagnostic ? resource->getDiagnosticName(id) : resource->getTestName(id);
}

void printProperties(const std::vector<ComponentProperty> &properties, const char *indent) {
    for (const ComponentProperty &property : properties) {
        std::printf("%s%s: %s\n", indent, property.key.c_str(), property.value.c_str());
    }
}

void printLists(ModuleInterface &module) {
    Resource *resource = module.getResource();
    std::printf("path: %s\n", module_session::isSmartPath(module) ? "smart (embedded controller)"
                                                                  : "generic (operating system)");
    std::printf("diagnostics:\n");
    for (uint32_t d = 0; d < module.getDiagnosticCount(); ++d) {
        Diagnostic *diagnostic = module.getDiagnostic(d);
        if (diagnostic == nullptr) continue;
        const EntityId id = diagnostic->getEntityId();
        std::printf("  %s  %s\n", module_session::idText(id).c_str(),
                    nameOf(resource, id, true).c_str());
        for (uint32_t t = 0; t < diagnostic->getTestCount(); ++t) {
            Test *test = diagnostic->getTest(t);
            if (test == nullptr) continue;
            const EntityId testId = test->getEntityId();
            std::printf("    %s  %s\n", module_session::idText(testId).c_str(),
                        nameOf(resource, testId, false).c_str());
        }
    }
    std::printf("batteries:\n");
    SystemComponentManager *manager = module.getComponentManager();
    const uint64_t count = manager != nullptr ? manager->getComponentCount() : 0;
    if (count == 0) std::printf("  none\n");
    for (uint32_t c = 0; c < count; ++c) {
        SystemComponent *component = manager->getComponent(c);
        if (component == nullptr) continue;
        const ComponentInfo info = component->getInfo();
        std::printf("  [%u] %s\n", c, info.name.c_str());
        printProperties(info.properties, "      ");
        for (const ComponentInfoGroup &group : component->getInfoGroups()) {
            std::printf("      %s\n", group.name.c_str());
            printProperties(group.properties, "        ");
        }
    }
}

// The module's own help is that of the path it took on this machine.
int printModuleHelp(ModuleLibrary &library, Machine &machine) {
    ModuleInterface *module = library.getInterface();
    Resource *resource = module != nullptr ? module->getResource() : nullptr;
    if (resource == nullptr) {
        std::printf("\nThe module gave no interface on %s, so it has no help to show.\n",
                    machine.describe().c_str());
        if (module != nullptr) library.releaseInterface();
        return exit_codes::kNoModule;
    }
    std::printf("\n%s", resource->getHelpText().c_str());
    library.releaseInterface();
    return exit_codes::kSuccess;
}

int runTests(ModuleInterface &module, const Options &options) {
    std::vector<TestResultCode> results;
    SystemComponentManager *manager = module.getComponentManager();
    SystemComponent *target = manager != nullptr ? manager->getComponent(options.device) : nullptr;
    for (const std::string &text : options.runIds) {
        EntityId id(0, 0, 0);
        Test *test = module_session::parseId(text, id) ? module_session::findTest(module, id) : nullptr;
        if (test == nullptr) {
            std::fprintf(stderr, "error: no test %s in this module\n", text.c_str());
            return exit_codes::kUsage;
        }
        std::printf("%s %s\n", text.c_str(), nameOf(module.getResource(), id, false).c_str());
        ConsoleRun run(target, {});
        const TestResultCode result = test->execute(&run);
        std::printf("  result %d\n", static_cast<int>(result));
        results.push_back(result);
    }
    return exit_codes::forResults(results);
}

} // namespace

int main(int argc, char **argv) {
    Options options;
    CLI::App app{"Runs the battery diagnostics of the battery module."};
    // Help goes on past the host's options to the module's, so it is not
    // CLI11's help that ends the parse.
    app.set_help_flag();
    app.add_flag("-h,--help", options.help,
                 "Print this help, then the module's help for the path it takes");
    app.add_option("--module", options.modulePath, "Path of the module library (default: beside this program)");
    app.add_option("--scenario", options.scenario,
                   "Emulated notebook: a built-in name, a JSON file, or 'list'");
    app.add_flag("--list", options.list, "List diagnostics, tests and batteries");
    app.add_flag("--version", options.version, "Print the host's and the module's version");
    app.add_option("--run", options.runIds, "Run a test by identifier, e.g. 12.1.1");
    app.add_option("--device", options.device, "Index of the battery to test (default 0)");
    app.add_option("--time-scale", options.timeScale, "Emulated time runs this many times faster")
        ->check(CLI::PositiveNumber);
    app.footer("Exit codes: 0 all tests passed; 1 failed, 6 invalid, 4 aborted, 5 warning, 3 not "
               "applicable (the most severe result); 2 usage error; 69 no module or no interface.");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? 0 : exit_codes::kUsage;
    }
    if (options.help) std::printf("%s", app.help().c_str());

    Machine &machine = currentMachine();
    if (options.scenario == "list") {
        for (const std::string &line : machine.scenarioList()) std::printf("%s\n", line.c_str());
        return 0;
    }
    if (!options.scenario.empty()) {
        const std::string error = machine.selectScenario(options.scenario);
        if (!error.empty()) {
            std::fprintf(stderr, "error: %s\n", error.c_str());
            return exit_codes::kUsage;
        }
    }
    machine.setTimeScale(options.timeScale);
    installStopHandler();

    std::string error;
    const std::string path =
        options.modulePath.empty() ? ModuleLibrary::defaultPath(argv[0]) : options.modulePath;
    std::unique_ptr<ModuleLibrary> library = ModuleLibrary::load(path, error);
    if (!library) {
        std::fprintf(stderr, "error: %s\n", error.c_str());
        return exit_codes::kNoModule;
    }
    if (options.help) return printModuleHelp(*library, machine);
    printVersion(*library);
    if (options.version) return 0;

    ModuleInterface *module = library->getInterface();
    if (module == nullptr) {
        std::fprintf(stderr, "error: the module gave no interface on %s\n", machine.describe().c_str());
        return exit_codes::kNoModule;
    }
    module_session::prepareComponents(*module);
    int code = exit_codes::kSuccess;
    if (options.runIds.empty() || options.list) printLists(*module);
    if (!options.runIds.empty()) code = runTests(*module, options);
    library->releaseInterface();
    return code;
}
