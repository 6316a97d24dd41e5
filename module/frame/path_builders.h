#pragma once

#include <string>

#include "battery_module/entity_id.h"

class Resource;
class SmartBatteryComponentManager;
class SystemComponentManager;
class Test;

// The composition root's view of the subsystems: one factory per object that
// joins the assembly. Each factory lives beside the class it builds and gives
// null when the object could not be allocated.

using SmartPathHandle = SmartBatteryComponentManager *;

SmartPathHandle newSmartBatteryManager(const EntityId &id);
// True when the manager exists, the controller accepts a battery selection
// and reports a battery, asked in that order.
bool isSmartPathAvailable(SmartPathHandle manager);
void deleteSmartBatteryManager(SmartPathHandle manager);
SystemComponentManager *smartPathManager(SmartPathHandle manager);

SystemComponentManager *newGenericBatteryManager(const EntityId &id);

Resource *newBatteryResource(const EntityId &id, bool generic);

Test *newSmartHealthTest(const std::string &hint, const EntityId &id);
Test *newTemperatureTest(const std::string &hint, const EntityId &id);
Test *newHealthTest(const std::string &hint, const EntityId &id);
Test *newDischargeTest(const std::string &hint, const EntityId &id);
Test *newChargeTest(const std::string &hint, const EntityId &id);
