#include "generic_battery/generic_battery_component_windows.h"

#include <algorithm>
#include <vector>

#include "frame/keys.h"
#include "generic_battery/battery_requests.h"
#include "generic_battery/generic_result.h"
#include "generic_battery/win_generic_battery_scanner.h"
#include "platform/battery_class.h"

GenericBatteryComponentWindows::~GenericBatteryComponentWindows() {
    releaseCells(handles);
    handles.clear();
}

void GenericBatteryComponentWindows::releaseCells(const std::vector<HANDLE *> &cells) {
    for (HANDLE *cell : cells) {
        if (cell == nullptr) continue;
        if (*cell != INVALID_HANDLE_VALUE && *cell != nullptr) CloseHandle(*cell);
        delete cell;
    }
}

void GenericBatteryComponentWindows::buildProperties() {
    GenericBatteryComponent::buildProperties();
    for (ComponentInfoGroup &group : groups) {
        if (readDriverVersion() == generic_result::Success) {
            group.properties.push_back({keys::DRIVER_VERSION, driverVersion});
        }
    }
}

uint32_t GenericBatteryComponentWindows::readDriverVersion() {
    driverVersion = "EMPTY";
    std::string version;
    if (lookUpBatteryDriverVersion(version) != DriverVersionLookup::Found) {
        return generic_result::NoDriverVersion;
    }
    driverVersion = version;
    return generic_result::Success;
}

uint32_t GenericBatteryComponentWindows::readChargeEntry(HANDLE *cell,
                                                         const GenericBatteryInfo &record,
                                                         BatteryChargeEntry &entry) {
    WinGenericBatteryScanner scanner;
    uint32_t tag = 0;
    if (cell == nullptr || scanner.queryTag(cell, tag) != generic_result::Success) {
        return generic_result::Failed;
    }
    BATTERY_STATUS status = {};
    if (!requestBatteryStatus(*cell, tag, status)) return generic_result::Failed;
    if (record.fullChargeCapacity == 0) return generic_result::Failed;
    entry.percent = static_cast<double>(status.Capacity) / record.fullChargeCapacity * 100.0;
    entry.serialNumber = record.serialNumber;
    return generic_result::Success;
}

uint32_t
GenericBatteryComponentWindows::getBatteryCharges(std::vector<BatteryChargeEntry> &charges) {
    charges.clear();
    const size_t count = std::min(handles.size(), batteries.size());
    for (size_t i = 0; i < count; ++i) {
        BatteryChargeEntry entry;
        if (readChargeEntry(handles[i], batteries[i], entry) != generic_result::Success) {
            return generic_result::Failed;
        }
        charges.push_back(entry);
    }
    return generic_result::Success;
}

uint32_t GenericBatteryComponentWindows::getAverageChargePercent(double &percent) {
    const size_t count = std::min(handles.size(), batteries.size());
    if (count == 0) return generic_result::Failed;
    // The running sum drops its fraction at every step, so 55.7 and 60.2
    // give 55, then 115, and a mean of 57.5.
    int64_t sum = 0;
    for (size_t i = 0; i < count; ++i) {
        BatteryChargeEntry entry;
        if (readChargeEntry(handles[i], batteries[i], entry) != generic_result::Success) {
            return generic_result::Failed;
        }
        sum = static_cast<int64_t>(static_cast<double>(sum) + entry.percent);
    }
    percent = static_cast<double>(sum) / static_cast<double>(count);
    return generic_result::Success;
}

uint32_t GenericBatteryComponentWindows::getChargePercent(double &percent) {
    if (getAverageChargePercent(percent) == generic_result::Success) return generic_result::Success;
    return getSystemChargePercent(percent);
}

uint32_t GenericBatteryComponentWindows::isOnAcPower(bool &onAc) {
    SYSTEM_POWER_STATUS status = {};
    if (!GetSystemPowerStatus(&status)) return generic_result::Failed;
    switch (status.ACLineStatus) {
    case 0:
        onAc = false;
        return generic_result::Success;
    case 1:
        onAc = true;
        return generic_result::Success;
    case 255: // unknown
        return generic_result::Failed;
    default:
        return generic_result::Success;
    }
}

uint32_t GenericBatteryComponentWindows::isBatteryPresent(bool &present) {
    if (handles.empty()) return generic_result::Success;
    WinGenericBatteryScanner scanner;
    uint32_t result = generic_result::Success;
    for (HANDLE *cell : handles) {
        bool answer = false;
        result = scanner.isBatteryPresent(cell, answer);
        if (result == generic_result::Success) {
            present = answer;
            return result;
        }
    }
    return result;
}

uint32_t GenericBatteryComponentWindows::refreshCapacities() {
    WinGenericBatteryScanner scanner;
    uint32_t result = generic_result::Success;
    const size_t count = std::min(handles.size(), batteries.size());
    for (size_t i = 0; i < count; ++i) {
        result = scanner.refreshCapacities(handles[i], batteries[i]);
    }
    return result;
}
