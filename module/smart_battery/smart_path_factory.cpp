// How the smart path joins the assembly.

#include <new>

#include "frame/path_builders.h"
#include "smart_battery/smart_battery_component_manager.h"

SmartPathHandle newSmartBatteryManager(const EntityId &id) {
    try {
        return new SmartBatteryComponentManager(id);
    } catch (const std::bad_alloc &) {
        return nullptr;
    }
}

bool isSmartPathAvailable(SmartPathHandle manager) {
    return manager != nullptr && manager->isCommunicating() && manager->isAnyBatteryPresent();
}

void deleteSmartBatteryManager(SmartPathHandle manager) {
    delete manager;
}

SystemComponentManager *smartPathManager(SmartPathHandle manager) {
    return manager;
}
