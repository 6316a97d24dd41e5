#pragma once

#include <cstdint>
#include <memory>

// The operating system's figure for the battery charge. Statuses: 0 success,
// 1 failure with the out value untouched.
class BatteryCharge {
public:
    virtual ~BatteryCharge() = default;
    virtual uint32_t getChargePercent(uint64_t &percent) = 0;
    virtual uint32_t isOnAcPower(bool &onAc) = 0;
};

// A new charge reader under shared ownership; null when allocation failed.
std::shared_ptr<BatteryCharge> newBatteryCharge();
