#pragma once

#include <windows.h>

#include "hostlib/device_scanner.h"

// The battery device class of Windows, {72631E54-78A4-11D0-BCF7-00AA00B7B32A}:
// both the setup class and the device interface class of batteries, so a
// battery scan passes it as both fields of WinDeviceScanFilter.
inline constexpr GUID kBatteryClassGuid = {
    0x72631E54, 0x78A4, 0x11D0, {0xBC, 0xF7, 0x00, 0xAA, 0x00, 0xB7, 0xB3, 0x2A}};
