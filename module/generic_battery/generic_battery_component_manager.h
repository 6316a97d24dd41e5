#pragma once

#include "battery_module/system_component.h"

class WinGenericBatteryScanner;

// The manager of the generic path: one scan gives one component for all
// batteries the operating system's driver shows.
class GenericBatteryComponentManager : public SystemComponentManager {
public:
    explicit GenericBatteryComponentManager(const EntityId &id);
    ~GenericBatteryComponentManager() override;
    GenericBatteryComponentManager(const GenericBatteryComponentManager &) = delete;
    GenericBatteryComponentManager &operator=(const GenericBatteryComponentManager &) = delete;

    bool isBatteryAvailable() override;
    // The same as getComponent: this path keeps what the last refresh built.
    SystemComponent *getRefreshedComponent(uint32_t index) override;
    void refreshComponents() override;

private:
    void destroyComponents();

    WinGenericBatteryScanner *scanner;
};
