#pragma once

#include <windows.h>

#include <cstdint>

#include "generic_battery/generic_battery_info.h"
#include "hostlib/device_scanner.h"

// Lists the battery devices through the host library's device scanner and
// reads each battery from the battery class driver. Handles and records
// belong to the callers; the scanner keeps only the latest device map.
class GenericBatteryScanner {
public:
    GenericBatteryScanner();
    virtual ~GenericBatteryScanner();
    GenericBatteryScanner(const GenericBatteryScanner &) = delete;
    GenericBatteryScanner &operator=(const GenericBatteryScanner &) = delete;

    // The host library's object; the scanner keeps ownership. May be null
    // when the library could not make one.
    virtual DeviceScanner *deviceScanner();
    virtual uint32_t scanDevices(DeviceMap &devices) = 0;
    // 0, 1 or 38. The cell ends up with the handle of the last path opened.
    virtual uint32_t readBattery(const uint32_t &key, GenericBatteryInfo &info, HANDLE *cell) = 0;
    virtual uint32_t isBatteryPresent(HANDLE *cell, bool &present) = 0;
    virtual uint32_t refreshCapacities(HANDLE *cell, GenericBatteryInfo &info) = 0;

protected:
    DeviceScanner *scanner_ = nullptr;
    DeviceMap devices;
};
