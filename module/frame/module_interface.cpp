#include "battery_module/module_interface.h"

ModuleInterface::ModuleInterface(const std::vector<Diagnostic *> &diagnostics, Resource *resource,
                                 SystemComponentManager *manager, void *auxiliary)
    : diagnostics_(diagnostics), resource_(resource), manager_(manager), auxiliary_(auxiliary) {}

ModuleInterface::~ModuleInterface() = default;

Diagnostic *ModuleInterface::getDiagnostic(uint32_t index) {
    return index < diagnostics_.size() ? diagnostics_[index] : nullptr;
}

uint64_t ModuleInterface::getDiagnosticCount() { return diagnostics_.size(); }

Resource *ModuleInterface::getResource() { return resource_; }

SystemComponentManager *ModuleInterface::getComponentManager() { return manager_; }

void *ModuleInterface::getExtension(uint32_t index) {
    return index < extensions_.size() ? extensions_[index] : nullptr;
}

uint64_t ModuleInterface::getExtensionCount() { return extensions_.size(); }

void *ModuleInterface::getAuxiliaryObject() { return auxiliary_; }

bool ModuleInterface::falseQuery() { return false; }
