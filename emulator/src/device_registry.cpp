#include "emulator/device_registry.h"

#include <algorithm>
#include <cctype>
#include <cstdio>

namespace emulator {

namespace {
std::string folded(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::string driverKey(unsigned index) {
    char suffix[8];
    std::snprintf(suffix, sizeof suffix, "\\%04u", index);
    return std::string(kBatteryClassKey) + suffix;
}

// A machine as Windows shows it: the AC adapter first, then each battery.
std::vector<ClassDevice> defaultClassDevices(const Scenario &scenario) {
    std::vector<ClassDevice> devices = {
        {"Microsoft AC Adapter", true, driverKey(0), "10.0.22621.1"}};
    for (size_t i = 0; i < scenario.batteries.size(); ++i) {
        devices.push_back({"Microsoft ACPI-Compliant Control Method Battery", true,
                           driverKey(static_cast<unsigned>(i + 1)), "10.0.22621.2506"});
    }
    return devices;
}
} // namespace

std::string batteryDevicePath(uint32_t slot) {
    return "\\\\?\\ACPI#PNP0C0A#" + std::to_string(slot + 1) +
           "#{72631e54-78a4-11d0-bcf7-00aa00b7b32a}";
}

// A further interface of a device carries a reference string after the
// interface class, as Windows writes it.
std::string batteryDevicePath(const BatteryDescription &battery) {
    if (battery.driver.sharesDeviceOfSlot < 0) return batteryDevicePath(battery.slot);
    return batteryDevicePath(static_cast<uint32_t>(battery.driver.sharesDeviceOfSlot)) + "\\" +
           std::to_string(battery.slot + 1);
}

void DeviceRegistry::install(const Scenario &scenario) {
    classDevices =
        scenario.os.classDevicesGiven ? scenario.os.classDevices : defaultClassDevices(scenario);
    batteryInterfaces.clear();
    for (const BatteryDescription &battery : scenario.batteries) {
        batteryInterfaces.push_back(batteryDevicePath(battery));
    }
    values.clear();
    for (const ClassDevice &device : classDevices) {
        if (!device.hasDriverKey) continue;
        auto &key = values[folded(kDriverClassRoot + device.driverKey)];
        if (!device.driverVersion.empty()) key["driverversion"] = device.driverVersion;
    }
}

const std::string *DeviceRegistry::value(const std::string &keyPath,
                                         const std::string &name) const {
    const auto key = values.find(folded(keyPath));
    if (key == values.end()) return nullptr;
    const auto found = key->second.find(folded(name));
    return found == key->second.end() ? nullptr : &found->second;
}

bool DeviceRegistry::keyExists(const std::string &keyPath) const {
    return values.count(folded(keyPath)) != 0;
}

} // namespace emulator
