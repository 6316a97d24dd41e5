#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "emulator/emulator_api.h"
#include "emulator/scenario.h"

namespace emulator {

// The operating system's device registry as far as batteries go: the devices
// of the battery setup class, the battery device interfaces, and the
// registry values under the drivers' keys.
struct EMULATOR_API DeviceRegistry {
    void install(const Scenario &scenario);

    // Registry value of type REG_SZ under HKEY_LOCAL_MACHINE, or null.
    const std::string *value(const std::string &keyPath, const std::string &name) const;
    bool keyExists(const std::string &keyPath) const;

    std::vector<ClassDevice> classDevices;
    std::vector<std::string> batteryInterfaces; // device paths, one per battery slot
    std::map<std::string, std::map<std::string, std::string>> values; // folded key path

    uint64_t openSets = 0; // device-information sets not destroyed yet
    uint64_t setsCreated = 0;
};

// Device path of the battery in a controller slot.
EMULATOR_API std::string batteryDevicePath(uint32_t slot);
// Device path under which the operating system shows a battery.
EMULATOR_API std::string batteryDevicePath(const BatteryDescription &battery);

inline constexpr const char *kBatteryClassKey = "{72631E54-78A4-11D0-BCF7-00AA00B7B32A}";
inline constexpr const char *kDriverClassRoot = "SYSTEM\\CurrentControlSet\\Control\\Class\\";

} // namespace emulator
