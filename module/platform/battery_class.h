#pragma once

#include <windows.h>

#include <string>

// The battery device class of Windows, {72631E54-78A4-11D0-BCF7-00AA00B7B32A}:
// both the setup class and the device interface class of batteries, so a
// battery scan passes it as both fields of WinDeviceScanFilter.
inline constexpr GUID kBatteryClassGuid = {
    0x72631E54, 0x78A4, 0x11D0, {0xBC, 0xF7, 0x00, 0xAA, 0x00, 0xB7, 0xB3, 0x2A}};

// How the battery class driver's version was looked up.
enum class DriverVersionLookup {
    NoDevice,  // the class lists no device, or it cannot be listed
    NoVersion, // the device has no driver key, or its key no DriverVersion
    Found,
};

// The DriverVersion under the driver key of the battery class's second
// device, or of its first when there is no second: Windows lists the AC
// adapter at index 0 when it lists one. Both texts are read through their
// two-call size protocols.
DriverVersionLookup lookUpBatteryDriverVersion(std::string &version);
