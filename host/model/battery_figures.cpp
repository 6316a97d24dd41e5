#include "model/battery_figures.h"

#include <cstdlib>

#include "battery_rules/host_keys.h"

std::optional<double> BatteryFigures::healthRatio() const {
    if (!designWh || !fullChargeWh || *designWh <= 0) return std::nullopt;
    return *fullChargeWh / *designWh;
}

std::string BatteryFigures::identity() const {
    return manufacturer + " " + name + " " + serial;
}

namespace battery_figures {

std::optional<double> numberIn(const std::string &value, const std::string &unit) {
    const char *start = value.c_str();
    char *end = nullptr;
    const double number = std::strtod(start, &end);
    if (end == start) return std::nullopt;
    std::string rest(end);
    const size_t first = rest.find_first_not_of(' ');
    if (first == std::string::npos)
        return unit.empty() ? std::optional<double>(number) : std::nullopt;
    rest = rest.substr(first);
    if (rest.compare(0, unit.size(), unit) != 0) return std::nullopt;
    // "Wh" must not match the start of "Whatever"; a blank or an end follows.
    if (rest.size() > unit.size() && rest[unit.size()] != ' ') return std::nullopt;
    return number;
}

namespace {

bool isBattery(const nlohmann::json &properties) {
    for (const auto &property : properties) {
        const std::string key = property.value("key", "");
        if (key == keys::DESIGN_CAPACITY || key == keys::FULL_CHARGE_CAPACITY ||
            key == keys::SERIAL_NUMBER)
            return true;
    }
    return false;
}

BatteryFigures figuresOf(const std::string &device, const nlohmann::json &properties) {
    BatteryFigures figures;
    figures.device = device;
    for (const auto &property : properties) {
        const std::string key = property.value("key", "");
        const std::string value = property.value("value", "");
        if (key == keys::MANUFACTURER) figures.manufacturer = value;
        if (key == keys::NAME) figures.name = value;
        if (key == keys::SERIAL_NUMBER) figures.serial = value;
        if (key == keys::DESIGN_CAPACITY) figures.designWh = numberIn(value, "Wh");
        if (key == keys::FULL_CHARGE_CAPACITY) figures.fullChargeWh = numberIn(value, "Wh");
        if (key == keys::CYCLE_COUNT) figures.cycleCount = numberIn(value, "");
        if (key == keys::TEMPERATURE) figures.temperatureC = numberIn(value, "°C");
    }
    return figures;
}

} // namespace

std::vector<BatteryFigures> of(const nlohmann::json &batteries) {
    std::vector<BatteryFigures> out;
    for (const auto &component : batteries) {
        const std::string device = component.value("device", "");
        if (isBattery(component["properties"])) {
            out.push_back(figuresOf(device, component["properties"]));
        }
        for (const auto &group : component["groups"]) {
            if (isBattery(group["properties"]))
                out.push_back(figuresOf(device, group["properties"]));
        }
    }
    return out;
}

} // namespace battery_figures
