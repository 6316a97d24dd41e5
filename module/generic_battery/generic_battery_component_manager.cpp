#include "generic_battery/generic_battery_component_manager.h"

#include <new>
#include <vector>

#include "generic_battery/generic_battery_component_windows.h"
#include "generic_battery/generic_result.h"
#include "generic_battery/win_generic_battery_scanner.h"

GenericBatteryComponentManager::GenericBatteryComponentManager(const EntityId &id)
    : SystemComponentManager(id), scanner(new (std::nothrow) WinGenericBatteryScanner()) {}

GenericBatteryComponentManager::~GenericBatteryComponentManager() {
    destroyComponents();
    delete scanner;
}

void GenericBatteryComponentManager::destroyComponents() {
    for (SystemComponent *component : components) delete component;
    components.clear();
}

SystemComponent *GenericBatteryComponentManager::getRefreshedComponent(uint32_t index) {
    return getComponent(index);
}

bool GenericBatteryComponentManager::isBatteryAvailable() {
    if (scanner == nullptr || scanner->deviceScanner() == nullptr) return false;
    DeviceScanner *devices = scanner->deviceScanner();
    DeviceMap found;
    scanner->scanDevices(found);

    HANDLE cell = INVALID_HANDLE_VALUE;
    for (const auto &entry : found) {
        for (const std::string &path : entry.second) {
            if (devices->openDevice(path, &cell) != 0) continue;
            bool present = false;
            const uint32_t result = scanner->isBatteryPresent(&cell, present);
            devices->closeDevice(&cell);
            cell = INVALID_HANDLE_VALUE;
            if (result == generic_result::Success && present) return true;
        }
    }
    return false;
}

void GenericBatteryComponentManager::refreshComponents() {
    // Without a battery the last scan's component stays.
    if (!isBatteryAvailable()) return;
    destroyComponents();

    DeviceMap found;
    scanner->scanDevices(found);
    std::vector<GenericBatteryInfo> records;
    std::vector<HANDLE *> cells;
    for (const auto &entry : found) {
        HANDLE *cell = new (std::nothrow) HANDLE(INVALID_HANDLE_VALUE);
        if (cell == nullptr) continue;
        GenericBatteryInfo record;
        if (scanner->readBattery(entry.first, record, cell) == generic_result::Success) {
            cells.push_back(cell);
            records.push_back(record);
        } else {
            // A battery that vanished is left out, and its device closed.
            scanner->deviceScanner()->closeDevice(cell);
            delete cell;
        }
    }
    if (records.empty()) return;

    auto *component = new (std::nothrow) GenericBatteryComponentWindows();
    if (component == nullptr) {
        for (HANDLE *cell : cells) {
            scanner->deviceScanner()->closeDevice(cell);
            delete cell;
        }
        return;
    }
    component->setBatteries(records);
    component->setHandles(cells);
    component->buildProperties();
    components.push_back(component);
}
