#pragma once

#include <string>

#include "emulator/notebook.h"
#include "support/scenario.h"

// One battery on a machine without a controller; `extra` adds or replaces
// fields of the battery, `machine` adds top-level fields.
inline std::string oneBattery(const std::string &extra = "", const std::string &machine = "") {
    return R"({"name": "t", "controller": {"present": false})" + machine + R"(,
        "batteries": [)" +
           withFields(R"({"slot": 0, "manufacturer": "Ostrelle", "deviceName": "OS-4C57",
            "chemistry": "LION", "serialNumber": 4711,
            "manufactureDate": {"year": 2023, "month": 3, "day": 11},
            "designCapacity": 57240, "fullChargeCapacity": 54100, "designVoltage_mV": 11400,
            "temperature_C": 31.6, "cycleCount": 42, "chargePercent": 76,
            "uniqueId": "OS-4C57-4711"})",
                      extra) +
           "]}";
}

inline uint64_t openHandles() {
    return emulator::Notebook::instance().devices().openHandles();
}
