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

// Two batteries told apart by name and charge; `first` and `second` add or
// replace fields of each.
inline std::string twoBatteries(const std::string &first, const std::string &second) {
    const std::string common = R"("designCapacity": 57240, "fullChargeCapacity": 54100,
        "designVoltage_mV": 11400)";
    return R"({"name": "t", "controller": {"present": false}, "batteries": [)" +
           withFields(R"({"slot": 0, "deviceName": "OS-4C57", "chargePercent": 40, )" + common +
                          "}",
                      first) +
           ", " +
           withFields(R"({"slot": 1, "deviceName": "OS-9B11", "chargePercent": 80, )" + common +
                          "}",
                      second) +
           "]}";
}

inline uint64_t openHandles() {
    return emulator::Notebook::instance().registry().openHandles;
}
