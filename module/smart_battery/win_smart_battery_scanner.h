#pragma once

#include <string>

#include "smart_battery/smart_battery_scanner.h"

class BatteryIOAccess;

// The scanner over the controller's ports and the operating system's device
// registry, which gives the battery driver's version.
class WinSmartBatteryScanner : public SmartBatteryScanner {
public:
    WinSmartBatteryScanner();
    ~WinSmartBatteryScanner() override;

    bool scanBatteries(std::vector<SystemComponent *> &list) override;
    int32_t checkCommunication() override;
    int32_t updateBattery(SmartBatteryComponent *component) override;
    int32_t updateBatteries(std::vector<SystemComponent *> &list) override;
    bool isAnyBatteryPresent() override;
    bool isBatteryPresent(SmartBatteryComponent *component) override;

private:
    // 0, or 128 when the operating system lists no battery-class device.
    uint32_t lookUpDriverVersion();

    BatteryIOAccess *io; // owned
    std::string driverVersion;
};
