#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

// What a machine says of its batteries, display and instrumentation rows, in
// their own terms. The layer turns these into the records, codes and
// variants of the Windows side. An empty optional figure is one the machine
// does not know.
namespace platform_layer {

// How setup shows one battery: the machine's own name of it, its device in
// the form a device path carries it ("ACPI#PNP0C0A#1"), and the reference
// string of a further interface of that device when the battery shows
// through one.
struct BatteryDevice {
    std::string name;
    std::string instance;
    std::string reference; // empty: the device's own interface
};

// The battery's lasting description.
struct BatteryFigures {
    bool relativeOnly = false;             // gives its charge only as a percentage
    std::array<uint8_t, 4> chemistry = {}; // as the battery names it: "LION", four NULs unknown
    std::optional<uint32_t> designedCapacity_mWh;
    std::optional<uint32_t> fullChargedCapacity_mWh;
    uint32_t defaultAlert1_mWh = 0;
    uint32_t defaultAlert2_mWh = 0;
    uint32_t cycleCount = 0;
};

struct BatteryDate {
    uint16_t year = 0;
    uint8_t month = 0;
    uint8_t day = 0;
};

// The texts a battery's driver gives.
enum class BatteryText { DeviceName, Manufacturer, UniqueId, SerialNumber };

// The battery now.
struct BatteryStatus {
    bool onLine = false;
    bool charging = false;
    bool discharging = false;
    std::optional<uint32_t> capacity_mWh;
    std::optional<uint32_t> voltage_mV;
    std::optional<int32_t> rate_mW; // negative while discharging
};

// The display's brightness in percent: a level on AC and one on battery,
// and which of them is in force now (Linux keeps one level for both).
struct DisplayLevels {
    enum class InForce { OnAc, OnBattery, Both } inForce = InForce::Both;
    uint32_t onAc_percent = 0;
    uint32_t onBattery_percent = 0;
};

// One battery as the instrumentation service lists it (Win32_Battery).
struct BatteryRow {
    std::string deviceId;
    std::optional<std::string> name;
    std::optional<int64_t> designVoltage_mV;
};

} // namespace platform_layer
