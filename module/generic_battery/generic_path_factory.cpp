#include <new>

#include "frame/path_builders.h"
#include "generic_battery/generic_battery_component_manager.h"

SystemComponentManager *newGenericBatteryManager(const EntityId &id) {
    return new (std::nothrow) GenericBatteryComponentManager(id);
}
