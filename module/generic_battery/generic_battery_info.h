#pragma once

#include <cstdint>
#include <string>

// One battery as the operating system's battery class driver shows it. A
// fresh record has empty texts and zero numbers; it is a plain value.
struct GenericBatteryInfo {
    uint32_t capabilities = 0;
    std::string chemistry;           // chemistry key, the raw four bytes, or empty
    uint32_t designCapacity = 0;     // mWh; 0 when unknown or out of range
    uint32_t fullChargeCapacity = 0; // mWh; 0 when unknown or out of range
    std::string designVoltage;       // decimal millivolts from the instrumentation, or empty
    std::string deviceId;            // the driver's unique identifier, or BAT<key>
    std::string name;
    uint32_t cycleCount = 0;
    uint32_t temperature = 0; // tenths of a kelvin, as reported
    std::string serialNumber;
    std::string manufacturer;
    uint16_t manufactureYear = 0;
    uint32_t remainingCapacity = 0; // status at the time of the scan
    int32_t rate = 0;
};
