#pragma once

#include <windows.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

// What a caller hands to DeviceScanner::enumerateDevices to say which devices
// it wants. The scanner reads the fields of WinDeviceScanFilter directly.
class DeviceScanFilter {
public:
    virtual ~DeviceScanFilter() = default;
};

class WinDeviceScanFilter : public DeviceScanFilter {
public:
    WinDeviceScanFilter(const GUID &first, const GUID &second)
        : firstGuid(first), secondGuid(second) {}

    GUID firstGuid;  // device setup class
    GUID secondGuid; // device interface class
};

// One key per battery, ascending; each key with its list of device paths.
using DeviceMap = std::map<uint32_t, std::vector<std::string>>;

// Lists devices and opens them. Results: 0 success, anything else failure.
class DeviceScanner {
public:
    virtual ~DeviceScanner() = default;
    virtual uint32_t enumerateDevices(const DeviceScanFilter &filter, DeviceMap &devices) = 0;
    virtual uint32_t openDevice(const std::string &path, HANDLE *cell) = 0;
    virtual void closeDevice(HANDLE *cell) = 0;
};
