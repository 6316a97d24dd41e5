#pragma once

#include "smart_battery/battery_io_access.h"

namespace portlib {
class PortGate;
}

// The controller's ports through the port library, timed by hostlib's timer.
class BatteryIOAccessWindows : public BatteryIOAccess {
public:
    BatteryIOAccessWindows();

    bool writeRegister(uint8_t reg, uint8_t value) override;
    bool readRegister(uint8_t reg, uint8_t *value) override;
    bool waitReady() override;

private:
    portlib::PortGate *gate; // not owned
};
