#include "smart_battery/smart_battery_component.h"

#include "frame/keys.h"
#include "platform/battery_io_access_windows.h"
#include "smart_battery/controller_register_map.h"

namespace {

const char *authenticityKey(uint32_t masked) {
    switch (masked) {
    case ec::kNotAuthenticated:
        return keys::NOT_AUTHENTICATED;
    case ec::kAuthorized:
        return keys::AUTHORIZED;
    case ec::kGenuine:
        return keys::ZORLAN_GENUINE;
    default:
        return keys::NOT_AVAILABLE;
    }
}

// Capacities in units of 10 mWh are kept in mWh.
constexpr uint32_t kMilliwattHoursPerUnit = 10;

} // namespace

SmartBatteryComponent::SmartBatteryComponent(bool isMain)
    : isMain(isMain), io(new BatteryIOAccessWindows()) {
    // A value that cannot be read keeps its initial value; the component
    // exists with whatever could be read.
    readBatteryData();
    index = isMain ? "0" : "1";
}

SmartBatteryComponent::~SmartBatteryComponent() {
    delete io;
}

int32_t SmartBatteryComponent::zeroQuery() {
    return 0;
}
bool SmartBatteryComponent::firstTrueQuery() {
    return true;
}
bool SmartBatteryComponent::secondTrueQuery() {
    return true;
}
void SmartBatteryComponent::firstNoOp() {}
bool SmartBatteryComponent::thirdTrueQuery() {
    return true;
}
void SmartBatteryComponent::secondNoOp() {}

SmartBatteryInfo SmartBatteryComponent::getBatteryInfo() {
    return batteryInfo;
}

bool SmartBatteryComponent::isMainBattery() const {
    return isMain;
}

uint32_t SmartBatteryComponent::batteryNumber() const {
    return isMain ? 0 : 1;
}

// Every reader selects the battery and its page anew; their results are not
// looked at, a failed value simply stays as it was.
void SmartBatteryComponent::readBatteryData() {
    const uint32_t battery = batteryNumber();
    SmartBatteryInfo &info = batteryInfo;
    io->readDeviceName(battery, info.deviceName);
    io->readDeviceChemistry(battery, info.chemistry);
    io->readManufacturerName(battery, info.manufacturer);
    io->readManufactureDate(battery, info.manufactureDate);
    uint16_t designCapacity = 0;
    uint16_t fullChargeCapacity = 0;
    io->readDesignCapacity(battery, designCapacity);
    io->readFullChargeCapacity(battery, fullChargeCapacity);
    io->readCycleCount(battery, info.cycleCount);
    io->readSerialNumber(battery, info.serialNumber);
    uint32_t mode = static_cast<uint32_t>(info.capacityUnit);
    io->readCapacityMode(battery, mode);
    info.capacityUnit = static_cast<CapacityUnit>(mode);
    io->readDesignVoltage(battery, info.designVoltage);
    io->readTemperature(battery, info.temperature);
    io->readOverTemperatureFlag(battery, info.overTemperature);
    io->readCycleScale(battery, info.cycleScaleTop, info.cycleScale);
    uint32_t authenticity = 0;
    io->readAuthenticity(battery, authenticity);
    info.authenticity = authenticityKey(authenticity);

    if (info.capacityUnit == CapacityUnit::TenMilliwattHours) {
        info.capacityUnit = CapacityUnit::MilliwattHours;
        info.designCapacity = designCapacity * kMilliwattHoursPerUnit;
        info.fullChargeCapacity = fullChargeCapacity * kMilliwattHoursPerUnit;
    } else {
        info.designCapacity = designCapacity;
        info.fullChargeCapacity = fullChargeCapacity;
    }
}

void SmartBatteryComponent::refreshThermalState() {
    io->readTemperature(batteryNumber(), batteryInfo.temperature);
    io->readOverTemperatureFlag(batteryNumber(), batteryInfo.overTemperature);
}

void SmartBatteryComponent::addProperty(const std::string &key, const std::string &value) {
    info.properties.push_back({key, value});
}
