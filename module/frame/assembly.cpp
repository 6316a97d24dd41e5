#include "frame/assembly.h"

#include <new>
#include <vector>

#include "battery_module/diagnostic.h"
#include "battery_module/resource.h"
#include "battery_module/system_component.h"
#include "battery_module/test.h"
#include "battery_rules/identifiers.h"
#include "frame/battery_module_interface.h"
#include "frame/keys.h"
#include "frame/path_builders.h"
#include "frame/test_with_device_hint.h"

namespace {

// Appends a test when its allocation succeeded; a null is simply left out.
void appendTest(std::vector<Test *> &list, Test *test) {
    if (test != nullptr) {
        list.push_back(test);
    }
}

void appendDiagnostic(std::vector<Diagnostic *> &list, const EntityId &id,
                      const std::vector<Test *> &tests) {
    if (Diagnostic *diagnostic = new (std::nothrow) Diagnostic(id, tests)) {
        list.push_back(diagnostic);
    }
}

struct AssemblyParts {
    Resource *resource = nullptr;
    SystemComponentManager *manager = nullptr;
    std::vector<Diagnostic *> diagnostics;
    std::vector<Test *> quick;
    std::vector<Test *> extended;

    // Undo a half-built assembly so that a failed allocation leaks nothing.
    void discard() {
        delete resource;
        delete manager;
        for (Test *test : quick) delete test;
        for (Test *test : extended) delete test;
        for (Diagnostic *diagnostic : diagnostics) delete diagnostic;
        *this = AssemblyParts();
    }
};

void assembleSmartPath(SmartPathHandle smart, AssemblyParts &parts) {
    parts.resource = newBatteryResource(ID_BATTERY_MODULE, false);
    appendTest(parts.quick, newSmartHealthTest(HINT_BATTERY(), ID_SMART_HEALTH_TEST));
    appendTest(parts.quick, newTemperatureTest(HINT_BATTERY(), ID_TEMPERATURE_TEST));
    appendDiagnostic(parts.diagnostics, ID_QUICK_DIAGNOSTIC, parts.quick);

    parts.manager = smartPathManager(smart);
    parts.manager->refreshComponents();
    if (parts.manager->getComponentCount() == 1) {
        appendTest(parts.extended, newDischargeTest(HINT_BATTERY_AND_ADAPTER(), ID_DISCHARGE_TEST));
        appendTest(parts.extended, newChargeTest(HINT_BATTERY_AND_ADAPTER(), ID_CHARGE_TEST));
        appendDiagnostic(parts.diagnostics, ID_EXTENDED_DIAGNOSTIC, parts.extended);
    }
}

void assembleGenericPath(AssemblyParts &parts) {
    parts.resource = newBatteryResource(ID_BATTERY_MODULE, true);
    parts.manager = newGenericBatteryManager(ID_BATTERY_MANAGER);
    appendTest(parts.quick, newHealthTest(HINT_BATTERY(), ID_HEALTH_TEST));
    appendDiagnostic(parts.diagnostics, ID_QUICK_DIAGNOSTIC, parts.quick);
    appendTest(parts.extended, newDischargeTest(HINT_BATTERY_AND_ADAPTER(), ID_DISCHARGE_TEST));
    appendTest(parts.extended, newChargeTest(HINT_BATTERY_AND_ADAPTER(), ID_CHARGE_TEST));
    appendDiagnostic(parts.diagnostics, ID_EXTENDED_DIAGNOSTIC, parts.extended);
}

} // namespace

ModuleInterface *assembleModuleInterface() {
    AssemblyParts parts;
    try {
        SmartPathHandle smart = newSmartBatteryManager(ID_BATTERY_MANAGER);
        if (isSmartPathAvailable(smart)) {
            assembleSmartPath(smart, parts);
        } else {
            deleteSmartBatteryManager(smart);
            assembleGenericPath(parts);
        }

        if (parts.manager == nullptr || parts.resource == nullptr) {
            parts.discard();
            return nullptr;
        }
        parts.resource->setRangeLabels({{0, "0 - 2"}, {1, "+ 20"}, {2, "+ 20"}});
        ModuleInterface *moduleInterface = new (std::nothrow)
            BatteryModuleInterface(parts.diagnostics, parts.resource, parts.manager, nullptr);
        if (moduleInterface == nullptr) {
            parts.discard();
        }
        return moduleInterface;
    } catch (...) {
        // Allocation inside a constructor failed: nothing half-built survives.
        parts.discard();
        return nullptr;
    }
}

void releaseModuleInterface(ModuleInterface *moduleInterface) {
    if (moduleInterface == nullptr) {
        return;
    }
    if (Resource *resource = moduleInterface->getResource()) {
        delete resource;
    }
    if (SystemComponentManager *manager = moduleInterface->getComponentManager()) {
        delete manager;
    }
    for (uint32_t d = 0; d < moduleInterface->getDiagnosticCount(); ++d) {
        Diagnostic *diagnostic = moduleInterface->getDiagnostic(d);
        if (diagnostic == nullptr) {
            continue;
        }
        for (uint32_t t = 0; t < diagnostic->getTestCount(); ++t) {
            delete diagnostic->getTest(t);
        }
        delete diagnostic;
    }
    delete moduleInterface;
}
