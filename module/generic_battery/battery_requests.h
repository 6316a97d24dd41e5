#pragma once

#include <windows.h>
#include <winioctl.h>

#include <batclass.h>

#include <cstdint>

#include "platform/battery_class.h"

// Capacities the driver reports count only from 1 to 999,999 mWh; its
// unknown marker and anything larger read as 0.
inline uint32_t usableCapacity(uint32_t reported) {
    return reported >= 1 && reported <= 999999 ? reported : 0;
}

// IOCTL_BATTERY_QUERY_STATUS for `tag`, with every other wait field 0.
inline bool requestBatteryStatus(HANDLE device, uint32_t tag, BATTERY_STATUS &status) {
    BATTERY_WAIT_STATUS wait = {};
    wait.BatteryTag = tag;
    DWORD returned = 0;
    return DeviceIoControl(device, IOCTL_BATTERY_QUERY_STATUS, &wait, sizeof wait, &status,
                           sizeof status, &returned, nullptr) != FALSE;
}
