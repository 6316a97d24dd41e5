#pragma once

#include <windows.h>

#include <string>

#include "platform_layer/battery_facts.h"

// The battery class: both the battery setup class and the battery device
// interface class, by its GUID and as its text in keys and paths.
namespace platform_layer {

inline constexpr GUID kBatteryClassGuid = {
    0x72631E54, 0x78A4, 0x11D0, {0xBC, 0xF7, 0x00, 0xAA, 0x00, 0xB7, 0xB3, 0x2A}};
inline constexpr const char *kBatteryClassKey = "{72631E54-78A4-11D0-BCF7-00AA00B7B32A}";
inline constexpr const char *kDriverClassRoot = "SYSTEM\\CurrentControlSet\\Control\\Class\\";

// The key of the n-th device of the class under kDriverClassRoot.
std::string batteryDriverKey(size_t index);

// The device path of a battery's interface, as SetupDiGetDeviceInterfaceDetail
// gives it: a further interface of a device carries its reference string
// after the class, as Windows writes it.
inline std::string batteryInterfacePath(const BatteryDevice &device) {
    std::string path = "\\\\?\\" + device.instance + "#{72631e54-78a4-11d0-bcf7-00aa00b7b32a}";
    if (!device.reference.empty()) path += "\\" + device.reference;
    return path;
}

} // namespace platform_layer
