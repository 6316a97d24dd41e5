#pragma once

#include <cstdint>
#include <string>

// Unit of the two capacities of a smart battery.
enum class CapacityUnit : uint32_t {
    MilliampHours = 0,
    TenMilliwattHours = 1, // as the controller reports it
    MilliwattHours = 2,    // after conversion
};

// One battery as the embedded controller reported it when it was scanned.
// A numeric 0 means that no value was read.
struct SmartBatteryInfo {
    uint32_t designCapacity = 0;
    uint16_t designVoltage = 0; // millivolts
    uint32_t fullChargeCapacity = 0;
    uint16_t cycleCount = 0;
    uint16_t cycleScale = 0;    // divisor of the health test
    uint16_t cycleScaleTop = 0; // read by nobody
    uint16_t serialNumber = 0;
    float temperature = -273.15f; // degrees Celsius; -273.0 or below: no reading
    CapacityUnit capacityUnit = CapacityUnit::MilliampHours;
    std::string authenticity;
    std::string deviceName;
    std::string chemistry;
    std::string manufacturer;
    std::string manufactureDate; // month/day/year
    std::string driverVersion;   // stays empty: the host sees the scanner's
    uint8_t overTemperature = 0;
};
