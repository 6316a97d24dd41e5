#include "smart_battery/smart_battery_component_manager.h"

#include "smart_battery/win_smart_battery_scanner.h"

SmartBatteryComponentManager::SmartBatteryComponentManager(const EntityId &id)
    : SystemComponentManager(id), scanner(new WinSmartBatteryScanner()) {}

SmartBatteryComponentManager::~SmartBatteryComponentManager() {
    destroyComponents();
    delete scanner;
}

bool SmartBatteryComponentManager::isCommunicating() {
    return scanner->checkCommunication() == 0;
}

bool SmartBatteryComponentManager::isAnyBatteryPresent() {
    return scanner->isAnyBatteryPresent();
}

bool SmartBatteryComponentManager::isBatteryAvailable() {
    return isCommunicating() && isAnyBatteryPresent();
}

// The list is emptied first, so no component is found afterwards.
SystemComponent *SmartBatteryComponentManager::getRefreshedComponent(uint32_t index) {
    destroyComponents();
    return getComponent(index);
}

// A failed scan shows as an empty list; the scanner's results stay here.
void SmartBatteryComponentManager::refreshComponents() {
    destroyComponents();
    if (!scanner->scanBatteries(scanned)) {
        scanner->updateBatteries(scanned);
    }
    components.insert(components.end(), scanned.begin(), scanned.end());
}

void SmartBatteryComponentManager::destroyComponents() {
    for (SystemComponent *component : components) delete component;
    components.clear();
    scanned.clear();
}
