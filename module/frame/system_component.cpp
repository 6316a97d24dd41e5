#include "battery_module/system_component.h"

SystemComponent::~SystemComponent() = default;

std::string SystemComponent::getIndex() { return index; }

ComponentInfo SystemComponent::getInfo() { return info; }

std::vector<ComponentInfoGroup> SystemComponent::getInfoGroups() { return groups; }

void SystemComponent::thirdNoOp() {}

// Concrete managers destroy their components before this runs.
SystemComponentManager::~SystemComponentManager() = default;

EntityId SystemComponentManager::getEntityId() { return id_; }

uint64_t SystemComponentManager::getComponentCount() { return components.size(); }

SystemComponent *SystemComponentManager::getComponent(uint32_t index) {
    return index < components.size() ? components[index] : nullptr;
}
