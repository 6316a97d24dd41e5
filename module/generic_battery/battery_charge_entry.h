#pragma once

#include <string>

// The charge of one battery and the serial number that tells it apart.
struct BatteryChargeEntry {
    double percent = 0.0;
    std::string serialNumber;
};
