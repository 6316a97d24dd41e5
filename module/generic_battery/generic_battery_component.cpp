#include "generic_battery/generic_battery_component.h"

#include "frame/keys.h"
#include "frame/property_text.h"
#include <algorithm>
#include <cstdlib>
#include <limits>

namespace {

// The leading decimal integer, as atoi reads it; 0 when there is none.
int32_t leadingMillivolts(const std::string &text) {
    const long value = std::strtol(text.c_str(), nullptr, 10);
    const long low = std::numeric_limits<int32_t>::min();
    const long high = std::numeric_limits<int32_t>::max();
    return static_cast<int32_t>(std::min(std::max(value, low), high));
}

using property_text::orNotAvailable;

std::string capacityText(uint32_t capacity, int32_t millivolts) {
    const auto clamped = static_cast<int32_t>(
        std::min<uint32_t>(capacity, static_cast<uint32_t>(std::numeric_limits<int32_t>::max())));
    return property_text::capacityText(capacity * 0.001,
                                       GenericBatteryComponent::milliampHours(clamped, millivolts));
}

} // namespace

GenericBatteryComponent::GenericBatteryComponent() : driverVersion("EMPTY") {
    index = "0";
}

GenericBatteryComponent::~GenericBatteryComponent() = default;

void GenericBatteryComponent::setBatteries(const std::vector<GenericBatteryInfo> &records) {
    batteries = records;
}

void GenericBatteryComponent::setHandles(const std::vector<HANDLE *> &cells) {
    std::vector<HANDLE *> dropped;
    for (HANDLE *held : handles) {
        if (std::find(cells.begin(), cells.end(), held) == cells.end()) dropped.push_back(held);
    }
    releaseCells(dropped);
    handles = cells;
}

std::vector<GenericBatteryInfo> GenericBatteryComponent::getBatteries() const {
    return batteries;
}

int32_t GenericBatteryComponent::milliampHours(int32_t capacity, int32_t voltage) {
    if (voltage == 0) return 0;
    const double hours = capacity / (voltage * 0.001);
    const double low = std::numeric_limits<int32_t>::min();
    const double high = std::numeric_limits<int32_t>::max();
    return static_cast<int32_t>(std::min(std::max(hours, low), high));
}

ComponentInfoGroup GenericBatteryComponent::batteryGroup(size_t position) const {
    const GenericBatteryInfo &battery = batteries[position];
    ComponentInfoGroup group;
    group.name = keys::BATTERY;
    auto add = [&group](const char *key, const std::string &value) {
        group.properties.push_back({key, value});
    };
    add(keys::INDEX, std::to_string(position));
    add(keys::NAME, orNotAvailable(battery.name));
    add(keys::CHEMISTRY, orNotAvailable(battery.chemistry));
    add(keys::MANUFACTURER, orNotAvailable(battery.manufacturer));
    add(keys::SERIAL_NUMBER, orNotAvailable(battery.serialNumber));

    const int32_t millivolts = leadingMillivolts(battery.designVoltage);
    const int32_t usableMillivolts = millivolts >= 1 ? millivolts : 0;
    if (battery.designVoltage.empty()) {
        add(keys::DESIGN_VOLTAGE, keys::NOT_AVAILABLE);
    } else if (millivolts >= 1) {
        add(keys::DESIGN_VOLTAGE, property_text::printed(millivolts * 0.001) + " " + keys::UNIT_VOLTS);
    }

    // Bit 0 of the capabilities marks capacities that are no absolute figures.
    const bool relative = (battery.capabilities & 0x1u) != 0;
    add(keys::FULL_CHARGE_CAPACITY,
        battery.fullChargeCapacity < 1 || relative
            ? std::string(keys::NOT_AVAILABLE)
            : capacityText(battery.fullChargeCapacity, usableMillivolts));
    add(keys::DESIGN_CAPACITY, battery.designCapacity < 1 || relative
                                   ? std::string(keys::NOT_AVAILABLE)
                                   : capacityText(battery.designCapacity, usableMillivolts));
    return group;
}

void GenericBatteryComponent::buildProperties() {
    info.properties.clear();
    info.attributes.clear();
    groups.clear();
    info.name = keys::BATTERY;
    info.properties.push_back({keys::UDI, keys::GENERIC_UDI});
    for (size_t i = 0; i < batteries.size(); ++i) {
        groups.push_back(batteryGroup(i));
    }
}
