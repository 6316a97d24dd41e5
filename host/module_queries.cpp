#include "module_queries.h"

#include <cstdio>
#include <sstream>

#include "battery_module/resource.h"
#include "battery_rules/identifiers.h"

namespace module_queries {

bool isSmartPath(ModuleInterface &module) {
    Resource *resource = module.getResource();
    return resource != nullptr && resource->getTestOptions().count(ID_TEMPERATURE_TEST) != 0;
}

void prepareComponents(ModuleInterface &module) {
    SystemComponentManager *manager = module.getComponentManager();
    if (manager != nullptr && !isSmartPath(module)) {
        manager->refreshComponents();
    }
}

std::string idText(const EntityId &id) {
    return std::to_string(id.module()) + "." + std::to_string(id.diagnostic()) + "." +
           std::to_string(id.test());
}

bool parseId(const std::string &text, EntityId &id) {
    unsigned long parts[3];
    char dot1 = 0, dot2 = 0;
    std::istringstream stream(text);
    if (!(stream >> parts[0] >> dot1 >> parts[1] >> dot2 >> parts[2]) || dot1 != '.' ||
        dot2 != '.' || stream.peek() != EOF || parts[0] > 0xFFFF || parts[1] > 0xFFFFFF ||
        parts[2] > 0xFFFFFF) {
        return false;
    }
    id = EntityId(static_cast<uint16_t>(parts[0]), static_cast<uint32_t>(parts[1]),
                  static_cast<uint32_t>(parts[2]));
    return true;
}

bool isExtendedTest(const std::string &testId) {
    EntityId id(0, 0, 0);
    return parseId(testId, id) && id.module() == ID_EXTENDED_DIAGNOSTIC.module() &&
           id.diagnostic() == ID_EXTENDED_DIAGNOSTIC.diagnostic();
}

Test *findTest(ModuleInterface &module, const EntityId &id, Diagnostic **owner) {
    for (uint32_t d = 0; d < module.getDiagnosticCount(); ++d) {
        Diagnostic *diagnostic = module.getDiagnostic(d);
        if (diagnostic == nullptr) continue;
        if (Test *test = diagnostic->findTest(id)) {
            if (owner != nullptr) *owner = diagnostic;
            return test;
        }
    }
    return nullptr;
}

} // namespace module_queries
