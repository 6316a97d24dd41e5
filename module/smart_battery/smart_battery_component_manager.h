#pragma once

#include <vector>

#include "battery_module/system_component.h"

class SmartBatteryScanner;

// The component manager of the smart path. Its two questions decide whether
// the module reads the batteries from the embedded controller at all.
class SmartBatteryComponentManager : public SystemComponentManager {
public:
    explicit SmartBatteryComponentManager(const EntityId &id);
    ~SmartBatteryComponentManager() override;
    SmartBatteryComponentManager(const SmartBatteryComponentManager &) = delete;
    SmartBatteryComponentManager &operator=(const SmartBatteryComponentManager &) = delete;

    bool isCommunicating();
    bool isAnyBatteryPresent();

    bool isBatteryAvailable() override;
    SystemComponent *getRefreshedComponent(uint32_t index) override;
    void refreshComponents() override;

private:
    void destroyComponents();

    std::vector<SystemComponent *> scanned; // not owned: the pointers of components
    SmartBatteryScanner *scanner;           // owned
};
