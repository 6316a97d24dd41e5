// How the resources join the assembly.

#include <new>

#include "frame/path_builders.h"
#include "resources/battery_resource.h"

Resource *newBatteryResource(const EntityId &id, bool generic) {
    return new (std::nothrow) BatteryResource(id, generic);
}
