#pragma once

#include "platform/battery_charge.h"

// BatteryCharge over GetSystemPowerStatus.
class WinBatteryCharge : public BatteryCharge {
public:
    uint32_t getChargePercent(uint64_t &percent) override;
    uint32_t isOnAcPower(bool &onAc) override;
};
