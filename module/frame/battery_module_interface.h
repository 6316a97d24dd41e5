#pragma once

#include "battery_module/module_interface.h"

// The concrete interface object of the battery module. Adds nothing.
class BatteryModuleInterface : public ModuleInterface {
public:
    using ModuleInterface::ModuleInterface;
    ~BatteryModuleInterface() override = default;
};
