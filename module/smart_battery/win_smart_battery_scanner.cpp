#include "smart_battery/win_smart_battery_scanner.h"

#include <new>

#include "frame/keys.h"
#include "platform/battery_io_access_windows.h"
#include "smart_battery/smart_battery_component.h"

namespace {

constexpr int32_t kSuccess = 0;
constexpr int32_t kFailure = 1;

// A component that cannot be allocated is left out, as if it were not there.
SystemComponent *newComponent(bool isMain) {
    try {
        return new SmartBatteryComponent(isMain);
    } catch (const std::bad_alloc &) {
        return nullptr;
    }
}

void appendComponent(std::vector<SystemComponent *> &list, bool isMain) {
    if (SystemComponent *component = newComponent(isMain)) list.push_back(component);
}

} // namespace

WinSmartBatteryScanner::WinSmartBatteryScanner() : io(new BatteryIOAccessWindows()) {}

WinSmartBatteryScanner::~WinSmartBatteryScanner() {
    delete io;
}

// The second battery is looked for whatever the first step found: a
// controller may report only a secondary battery.
bool WinSmartBatteryScanner::scanBatteries(std::vector<SystemComponent *> &list) {
    if (io->selectBattery(0) && io->isBatteryPresent(0)) {
        appendComponent(list, true);
    }
    if (io->isSecondBatteryReported() && io->isBatteryPresent(1)) {
        appendComponent(list, false);
    }
    return list.empty();
}

int32_t WinSmartBatteryScanner::checkCommunication() {
    if (io->selectBattery(0)) return kSuccess;
    return io->selectBattery(1) ? kSuccess : kFailure;
}

int32_t WinSmartBatteryScanner::updateBattery(SmartBatteryComponent *component) {
    if (component == nullptr) return kFailure;
    component->buildProperties();
    if (lookUpDriverVersion() != 0) return kFailure;
    component->addProperty(keys::DRIVER_VERSION, driverVersion);
    return kSuccess;
}

int32_t WinSmartBatteryScanner::updateBatteries(std::vector<SystemComponent *> &list) {
    if (list.empty()) return kFailure;
    int32_t result = kFailure;
    for (auto it = list.begin(); it != list.end();) {
        result = updateBattery(dynamic_cast<SmartBatteryComponent *>(*it));
        if (result != kSuccess) {
            delete *it;
            it = list.erase(it);
        } else {
            ++it;
        }
    }
    return result;
}

bool WinSmartBatteryScanner::isAnyBatteryPresent() {
    return io->isBatteryPresent(0) || io->isBatteryPresent(1);
}

bool WinSmartBatteryScanner::isBatteryPresent(SmartBatteryComponent *component) {
    if (component == nullptr) return false;
    return io->isBatteryPresent(component->isMainBattery() ? 0 : 1);
}
