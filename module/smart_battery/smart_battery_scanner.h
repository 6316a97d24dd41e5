#pragma once

#include <cstdint>
#include <vector>

class DeviceScanner;
class SmartBatteryComponent;
class SystemComponent;

// Finds the batteries behind the embedded controller and completes their
// properties. It holds a device scanner of the host library for its whole
// life, although the smart path asks nothing of it.
class SmartBatteryScanner {
public:
    SmartBatteryScanner();
    virtual ~SmartBatteryScanner();
    SmartBatteryScanner(const SmartBatteryScanner &) = delete;
    SmartBatteryScanner &operator=(const SmartBatteryScanner &) = delete;

    virtual DeviceScanner *deviceScanner();
    // Appends a component per battery found; true when the list is empty.
    virtual bool scanBatteries(std::vector<SystemComponent *> &list) = 0;
    // 0 when battery 0 or, failing that, battery 1 can be selected; else 1.
    virtual int32_t checkCommunication() = 0;
    // 0, or 1 when the component is to leave the list.
    virtual int32_t updateBattery(SmartBatteryComponent *component) = 0;
    // Destroys and removes each component whose update fails; gives the
    // result of the last update, 1 for an empty list.
    virtual int32_t updateBatteries(std::vector<SystemComponent *> &list) = 0;
    virtual bool isAnyBatteryPresent() = 0;
    virtual bool isBatteryPresent(SmartBatteryComponent *component) = 0;

private:
    DeviceScanner *scanner_;
};
