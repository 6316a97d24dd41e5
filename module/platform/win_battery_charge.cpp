#include "platform/win_battery_charge.h"

#include <windows.h>

#include <memory>
#include <new>

#include "platform/power_manager.h"

namespace {
constexpr BYTE kUnknownPercent = 255;
constexpr BYTE kNoBatteryPercent = 128;
} // namespace

uint32_t WinBatteryCharge::getChargePercent(uint64_t &percent) {
    SYSTEM_POWER_STATUS status = {};
    if (GetSystemPowerStatus(&status) == FALSE) return 1;
    if (status.BatteryLifePercent == kUnknownPercent ||
        status.BatteryLifePercent == kNoBatteryPercent) {
        return 1;
    }
    percent = status.BatteryLifePercent;
    return 0;
}

uint32_t WinBatteryCharge::isOnAcPower(bool &onAc) {
    std::unique_ptr<PowerManager> power(newPowerManager());
    if (!power || !power->isBatteryPresent()) return 1;
    onAc = power->isOnAcPower();
    return 0;
}

std::shared_ptr<BatteryCharge> newBatteryCharge() {
    BatteryCharge *charge = new (std::nothrow) WinBatteryCharge();
    if (charge == nullptr) return nullptr;
    return std::shared_ptr<BatteryCharge>(charge);
}
