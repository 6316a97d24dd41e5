#pragma once

#include <cstdint>

// Display brightness, power scheme and AC line. Statuses: 0 success, 1
// failure. Schemes: 0 high performance, 1 balanced, 2 power saver, 3 any
// other (only getPowerScheme gives 3).
class PowerManager {
public:
    static constexpr uint32_t kHighPerformance = 0;
    static constexpr uint32_t kBalanced = 1;
    static constexpr uint32_t kPowerSaver = 2;
    static constexpr uint32_t kOtherScheme = 3;

    virtual ~PowerManager() = default;
    virtual uint32_t getBrightness(uint32_t &level) = 0;
    virtual uint32_t setBrightness(uint8_t level) = 0;
    virtual uint32_t getPowerScheme() = 0;
    virtual void setPowerScheme(uint32_t scheme) = 0;
    virtual bool isOnAcPower() = 0;
    virtual bool isBatteryPresent() = 0;
};

// A new power manager, owned by the caller; null when allocation failed.
PowerManager *newPowerManager();
