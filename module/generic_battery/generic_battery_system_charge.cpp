// Kept apart from the driver requests: the battery class header names a
// value BatteryCharge, which would hide the charge service's class.

#include "generic_battery/generic_battery_component_windows.h"
#include "generic_battery/generic_result.h"
#include "platform/battery_charge.h"

uint32_t GenericBatteryComponentWindows::getSystemChargePercent(double &percent) {
    const std::shared_ptr<BatteryCharge> charge = newBatteryCharge();
    if (!charge) return generic_result::Failed;
    uint64_t value = 0;
    const uint32_t result = charge->getChargePercent(value);
    if (result == generic_result::Success) percent = static_cast<double>(value);
    return result;
}
