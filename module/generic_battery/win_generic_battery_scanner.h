#pragma once

#include <windows.h>
#include <winioctl.h>

#include <batclass.h>

#include <string>

#include "generic_battery/generic_battery_scanner.h"

// The generic scanner over the configuration manager, the battery class
// driver's requests and the instrumentation's Win32_Battery.
class WinGenericBatteryScanner : public GenericBatteryScanner {
public:
    uint32_t scanDevices(DeviceMap &devices) override;
    uint32_t readBattery(const uint32_t &key, GenericBatteryInfo &info, HANDLE *cell) override;
    uint32_t isBatteryPresent(HANDLE *cell, bool &present) override;
    uint32_t refreshCapacities(HANDLE *cell, GenericBatteryInfo &info) override;

    // 0, or 1 when the request failed and left a tag behind.
    uint32_t queryTag(HANDLE *cell, uint32_t &tag);
    // 0, 1, or 38 when the driver no longer knows the tag.
    uint32_t queryInformation(HANDLE *cell, const BATTERY_QUERY_INFORMATION &query,
                              uint32_t outputSize, void *output);
    uint32_t queryText(HANDLE *cell, const BATTERY_QUERY_INFORMATION &query, std::string &text);
    // 0, or 23 when the query failed; `value` is empty without a row.
    uint32_t queryWmiProperty(const char *property, const std::string &deviceId,
                              std::string &value);
    std::string chemistryName(const std::string &code);

private:
    void readDetails(HANDLE *cell, uint32_t tag, GenericBatteryInfo &info);
    void adoptHandle(HANDLE opened, HANDLE *cell);
};
