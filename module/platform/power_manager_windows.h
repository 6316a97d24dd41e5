#pragma once

#include "platform/power_manager.h"

// PowerManager over the display device "\\.\LCD", the power scheme calls and
// GetSystemPowerStatus.
class PowerManagerWindows : public PowerManager {
public:
    uint32_t getBrightness(uint32_t &level) override;
    uint32_t setBrightness(uint8_t level) override;
    uint32_t getPowerScheme() override;
    void setPowerScheme(uint32_t scheme) override;
    bool isOnAcPower() override;
    bool isBatteryPresent() override;
};
