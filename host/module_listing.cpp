#include "module_listing.h"

#include <cstdio>

#include "battery_module/diagnostic.h"
#include "battery_module/resource.h"
#include "battery_module/system_component.h"
#include "battery_module/test.h"
#include "module_queries.h"
#include "run_plan.h"

namespace {

void printProperties(const std::vector<ComponentProperty> &properties, const std::string &indent,
                     const RunView &view) {
    for (const ComponentProperty &property : properties) {
        std::printf("%s%s: %s\n", indent.c_str(), view.text(property.key).c_str(),
                    view.text(property.value).c_str());
    }
}

} // namespace

void printModuleLists(ModuleInterface &module, const RunView &view) {
    Resource *resource = module.getResource();
    const bool smart = module_queries::isSmartPath(module);
    std::printf("path: %s\n", smart ? "smart (embedded controller)" : "generic (operating system)");
    std::printf("diagnostics:\n");
    for (uint32_t d = 0; d < module.getDiagnosticCount(); ++d) {
        Diagnostic *diagnostic = module.getDiagnostic(d);
        if (diagnostic == nullptr) continue;
        const EntityId id = diagnostic->getEntityId();
        std::printf("  %s  %s\n", module_queries::idText(id).c_str(),
                    view.text(resource->getDiagnosticName(id)).c_str());
        std::printf("          %s\n", view.text(resource->getDiagnosticTooltip(id)).c_str());
        for (uint32_t t = 0; t < diagnostic->getTestCount(); ++t) {
            Test *test = diagnostic->getTest(t);
            if (test == nullptr) continue;
            const EntityId testId = test->getEntityId();
            std::printf("    %s  %s\n", module_queries::idText(testId).c_str(),
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
