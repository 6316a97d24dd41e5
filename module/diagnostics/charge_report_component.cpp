#include "diagnostics/charge_report.h"

#include <memory>
#include <new>
#include <string>
#include <vector>

#include "battery_rules/identifiers.h"
#include "generic_battery/generic_battery_component.h"
#include "generic_battery/generic_battery_component_manager.h"
#include "smart_battery/smart_battery_component.h"

// The charge of a smart component's own battery: the operating system's
// batteries, through a generic manager of the report's own, matched by the
// decimal text of the serial number.
uint32_t ChargeReport::readComponentCharge(uint64_t &percent) {
    std::unique_ptr<GenericBatteryComponentManager> manager(
        new (std::nothrow) GenericBatteryComponentManager(ID_BATTERY_MANAGER));
    if (!manager) return 1;
    manager->refreshComponents();
    auto *generic = dynamic_cast<GenericBatteryComponent *>(manager->getComponent(0));
    if (generic == nullptr) return 1;
    std::vector<BatteryChargeEntry> charges;
    if (generic->getBatteryCharges(charges) != 0) return 1;
    const std::string serial = std::to_string(component->getBatteryInfo().serialNumber);
    for (const BatteryChargeEntry &entry : charges) {
        if (entry.serialNumber == serial) {
            percent = static_cast<uint64_t>(entry.percent);
            return 0;
        }
    }
    return 1;
}
