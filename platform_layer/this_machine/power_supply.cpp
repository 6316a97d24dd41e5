#include "power_supply.h"

namespace platform_layer {

bool PowerSupply::isSystemBattery() {
    return type() == std::optional<std::string>("Battery") &&
           scope() != std::optional<std::string>("Device");
}

bool PowerSupply::isAdapter() {
    const std::optional<std::string> kind = type();
    return kind == std::optional<std::string>("Mains") || kind == std::optional<std::string>("USB");
}

std::optional<PowerSupply::Date> PowerSupply::manufactureDate() {
    const std::optional<int64_t> year = number("manufacture_year");
    const std::optional<int64_t> month = number("manufacture_month");
    const std::optional<int64_t> day = number("manufacture_day");
    if (!year || !month || !day) return std::nullopt;
    if (*year < 0 || *year > 0xFFFF || *month < 1 || *month > 12 || *day < 1 || *day > 31) {
        reading_.markMalformed();
        return std::nullopt;
    }
    return Date{static_cast<uint16_t>(*year), static_cast<uint8_t>(*month),
                static_cast<uint8_t>(*day)};
}

PowerSupply::Reporting PowerSupply::reporting() {
    if (energyFull_uWh() || energyFullDesign_uWh() || energyNow_uWh()) return Reporting::Energy;
    if (chargeFull_uAh() || chargeFullDesign_uAh() || chargeNow_uAh()) return Reporting::Charge;
    return Reporting::Relative;
}

std::vector<std::string> systemBatteries(SysfsReading &reading) {
    std::vector<std::string> found;
    for (const std::string &name : reading.supplies()) {
        if (PowerSupply(reading, name).isSystemBattery()) found.push_back(name);
    }
    return found;
}

std::vector<std::string> adapters(SysfsReading &reading) {
    std::vector<std::string> found;
    for (const std::string &name : reading.supplies()) {
        if (PowerSupply(reading, name).isAdapter()) found.push_back(name);
    }
    return found;
}

bool onAcLine(SysfsReading &reading) {
    bool online = false;
    for (const std::string &name : adapters(reading)) {
        online = PowerSupply(reading, name).online() || online;
    }
    return online;
}

} // namespace platform_layer
