// The properties of a smart battery as the host shows them.

#include "frame/chemistry.h"
#include "frame/keys.h"
#include "frame/property_text.h"
#include "smart_battery/smart_battery_component.h"

namespace {

using property_text::capacityText;
using property_text::orNotAvailable;
using property_text::printed;

std::string chemistryKey(const std::string &code) {
    if (code.empty()) return keys::NOT_AVAILABLE;
    const char *key = chemistry::keyOf(code, chemistry::Source::SmartBattery);
    return key != nullptr ? key : keys::OTHER;
}

// Above this a temperature is a reading; a raw 0 decodes to -273.15.
constexpr float kNoTemperatureBelow = -273.0f;
constexpr double kPerMilli = 0.001;

std::string temperatureText(float celsius) {
    if (!(celsius > kNoTemperatureBelow)) return keys::NOT_AVAILABLE;
    return printed(celsius) + " " + keys::UNIT_DEGREES_CELSIUS;
}

std::string voltageText(uint16_t millivolts) {
    if (millivolts == 0) return keys::NOT_AVAILABLE;
    return printed(millivolts * kPerMilli) + " " + keys::UNIT_VOLTS;
}

std::string serialText(uint16_t serial) {
    return serial == 0 ? keys::NOT_AVAILABLE : std::to_string(serial);
}

// Energy and charge of one capacity, each computed from the other through the
// design voltage; an unknown voltage gives 0 for the computed one.
std::string capacityOf(const SmartBatteryInfo &info, uint32_t capacity) {
    if (info.designCapacity == 0 || info.fullChargeCapacity == 0) return keys::NOT_AVAILABLE;
    double wattHours = 0;
    uint32_t milliampHours = 0;
    if (info.capacityUnit == CapacityUnit::MilliwattHours) {
        wattHours = capacity * kPerMilli;
        milliampHours = info.designVoltage == 0 ? 0 : capacity * 1000u / info.designVoltage;
    } else {
        wattHours = info.designVoltage == 0 ? 0.0
                                            : static_cast<double>(capacity) * info.designVoltage *
                                                  kPerMilli * kPerMilli;
        milliampHours = capacity;
    }
    return capacityText(wattHours, milliampHours);
}

std::string cycleCountText(const SmartBatteryInfo &info) {
    if (info.designCapacity == 0 || info.fullChargeCapacity == 0) return keys::NOT_AVAILABLE;
    return std::to_string(info.cycleCount);
}

} // namespace

// Reads no register: the record of the scan is all there is.
void SmartBatteryComponent::buildProperties() {
    info.properties.clear();
    info.attributes.clear();
    groups.clear();
    info.name = isMain ? keys::MAIN_BATTERY : keys::SECONDARY_BATTERY;

    const SmartBatteryInfo &battery = batteryInfo;
    addProperty(keys::UDI, keys::SBAT);
    addProperty(keys::INDEX, isMain ? "0" : "1");
    addProperty(keys::NAME, orNotAvailable(battery.deviceName));
    addProperty(keys::CHEMISTRY, chemistryKey(battery.chemistry));
    addProperty(keys::TEMPERATURE, temperatureText(battery.temperature));
    addProperty(keys::MANUFACTURER, orNotAvailable(battery.manufacturer));
    addProperty(keys::DESIGN_VOLTAGE, voltageText(battery.designVoltage));
    addProperty(keys::SERIAL_NUMBER, serialText(battery.serialNumber));
    addProperty(keys::DESIGN_CAPACITY, capacityOf(battery, battery.designCapacity));
    addProperty(keys::FULL_CHARGE_CAPACITY, capacityOf(battery, battery.fullChargeCapacity));
    addProperty(keys::CYCLE_COUNT, cycleCountText(battery));
}
