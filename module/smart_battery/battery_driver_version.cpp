// The battery driver's version, from the operating system's device registry.

#include "platform/battery_class.h"
#include "smart_battery/win_smart_battery_scanner.h"

namespace {
constexpr const char *kUnknownVersion = "EMPTY";
constexpr const char *kVersionSuffix = " [Windows]";
constexpr uint32_t kNoBatteryDevice = 128;
} // namespace

// A device without a driver key, or a key without a version, is a device of
// unknown version.
uint32_t WinSmartBatteryScanner::lookUpDriverVersion() {
    driverVersion = kUnknownVersion;
    std::string version;
    switch (lookUpBatteryDriverVersion(version)) {
    case DriverVersionLookup::NoDevice:
        return kNoBatteryDevice;
    case DriverVersionLookup::NoVersion:
        return 0;
    case DriverVersionLookup::Found:
        break;
    }
    driverVersion = version + kVersionSuffix;
    return 0;
}
