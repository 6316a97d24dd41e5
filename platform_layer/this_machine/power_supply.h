#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "sysfs_reading.h"

namespace platform_layer {

// One supply of the power-supply class, read through one request's
// reading. Each family of attributes has its reader, and every name says
// the kernel's unit.
class PowerSupply {
public:
    PowerSupply(SysfsReading &reading, std::string name)
        : reading_(reading), name_(std::move(name)) {}

    const std::string &name() const { return name_; }
    SysfsReading &reading() { return reading_; }

    // Kind: "Battery", "Mains", "USB", ...; scope "System" or "Device".
    std::optional<std::string> type() { return text("type"); }
    std::optional<std::string> scope() { return text("scope"); }
    // A battery of the notebook: type Battery and not the battery of a
    // peripheral.
    bool isSystemBattery();
    // An AC adapter: type Mains or USB.
    bool isAdapter();
    // A slot without a battery says present 0; a supply without the
    // attribute is there.
    bool present() { return number("present").value_or(1) != 0; }
    bool online() { return number("online").value_or(0) == 1; }

    // Energy family, in microwatt-hours.
    std::optional<int64_t> energyFullDesign_uWh() { return number("energy_full_design"); }
    std::optional<int64_t> energyFull_uWh() { return number("energy_full"); }
    std::optional<int64_t> energyNow_uWh() { return number("energy_now"); }
    // Charge family, in microampere-hours.
    std::optional<int64_t> chargeFullDesign_uAh() { return number("charge_full_design"); }
    std::optional<int64_t> chargeFull_uAh() { return number("charge_full"); }
    std::optional<int64_t> chargeNow_uAh() { return number("charge_now"); }
    // Voltage family, in microvolts.
    std::optional<int64_t> voltageMinDesign_uV() { return number("voltage_min_design"); }
    std::optional<int64_t> voltageNow_uV() { return number("voltage_now"); }
    // Flow: power in microwatts, current in microamperes.
    std::optional<int64_t> powerNow_uW() { return number("power_now"); }
    std::optional<int64_t> currentNow_uA() { return number("current_now"); }
    // Tenths of a degree Celsius.
    std::optional<int64_t> temp_deciCelsius() { return number("temp"); }
    std::optional<int64_t> capacity_percent() { return number("capacity"); }
    std::optional<int64_t> cycleCount() { return number("cycle_count"); }

    struct Date {
        uint16_t year;
        uint8_t month;
        uint8_t day;
    };
    // Needs all three of year, month and day, each in its calendar range.
    std::optional<Date> manufactureDate();

    // Identity texts, exactly as the kernel gives them.
    std::optional<std::string> modelName() { return text("model_name"); }
    std::optional<std::string> manufacturer() { return text("manufacturer"); }
    std::optional<std::string> serialNumber() { return text("serial_number"); }
    std::optional<std::string> technology() { return text("technology"); }
    std::optional<std::string> status() { return text("status"); }

    // Does the kernel report energy, charge, or neither?
    enum class Reporting { Energy, Charge, Relative };
    Reporting reporting();

private:
    std::optional<std::string> text(const char *attribute) {
        return reading_.text(name_, attribute);
    }
    std::optional<int64_t> number(const char *attribute) {
        return reading_.integer(name_, attribute);
    }

    SysfsReading &reading_;
    std::string name_;
};

// The supplies that matter, in name order.
std::vector<std::string> systemBatteries(SysfsReading &reading);
std::vector<std::string> adapters(SysfsReading &reading);
// Whether any adapter is online.
bool onAcLine(SysfsReading &reading);

} // namespace platform_layer
