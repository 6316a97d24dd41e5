#pragma once

#include <cstdlib>

#include "battery_module/diagnostic.h"
#include "battery_module/module_interface.h"
#include "battery_module/system_component.h"
#include "battery_module/test.h"
#include "battery_rules/identifiers.h"
#include "emulator/notebook.h"
#include "frame/assembly.h"
#include "support/recording_host.h"

// Assembles the module on the notebook as it now is, reads every battery's
// properties and runs every quick test on each, the way a host does; a
// result out of the known codes is a finding.
inline void runQuickDiagnostic(const emulator::Scenario &scenario) {
    emulator::Notebook::instance().install(scenario);
    ModuleInterface *module = assembleModuleInterface();
    if (module == nullptr) return;
    SystemComponentManager *manager = module->getComponentManager();
    if (manager != nullptr) manager->refreshComponents();
    const uint64_t count = manager != nullptr ? manager->getComponentCount() : 0;
    for (uint32_t c = 0; c < count; ++c) {
        SystemComponent *component = manager->getComponent(c);
        if (component == nullptr) continue;
        component->getInfo();
        component->getInfoGroups();
        for (uint32_t d = 0; d < module->getDiagnosticCount(); ++d) {
            Diagnostic *diagnostic = module->getDiagnostic(d);
            if (diagnostic == nullptr || diagnostic->getEntityId() != ID_QUICK_DIAGNOSTIC) continue;
            for (uint32_t t = 0; t < diagnostic->getTestCount(); ++t) {
                Test *test = diagnostic->getTest(t);
                if (test == nullptr) continue;
                RecordingHost host;
                host.target = component;
                const TestResultCode result = test->execute(&host);
                if (result < ResultSuccess || result > ResultInvalid || result == 2) std::abort();
            }
        }
    }
    releaseModuleInterface(module);
}
