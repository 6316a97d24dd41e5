#pragma once

#include <batclass.h>
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "platform_layer/this_machine.h"
#include "support/umockdev_testbed.h"

// The platform layer answering from this machine, over a testbed.
class ThisMachineTest : public ::testing::Test {
protected:
    void SetUp() override { platform_layer::useMachine(&platform_layer::thisMachine()); }
    void TearDown() override { platform_layer::useMachine(nullptr); }
};

// The device path of a supply's battery device, as the device setup lists it.
inline std::string batteryPath(const std::string &supply) {
    for (const platform_layer::BatteryDevice &device :
         platform_layer::currentMachine().batteryDevices()) {
        if (device.name == supply) {
            return "\\\\?\\" + device.instance + "#{72631e54-78a4-11d0-bcf7-00aa00b7b32a}";
        }
    }
    return "";
}

inline std::string textOf(const WCHAR *units) {
    std::string text;
    for (; *units != 0; ++units) text.push_back(static_cast<char>(*units));
    return text;
}

// Everything the battery driver tells of one battery, as one line: the
// information levels the module reads, then the status. "-" marks a level
// that failed.
inline std::string driverView(const std::string &supply) {
    HANDLE device = CreateFileA(batteryPath(supply).c_str(), GENERIC_READ, 0, nullptr,
                                OPEN_EXISTING, 0, nullptr);
    if (device == INVALID_HANDLE_VALUE) return "no device";
    DWORD returned = 0, wait = 0;
    ULONG tag = 0;
    if (!DeviceIoControl(device, IOCTL_BATTERY_QUERY_TAG, &wait, sizeof wait, &tag, sizeof tag,
                         &returned, nullptr)) {
        CloseHandle(device);
        return "no tag";
    }
    auto query = [&](BATTERY_QUERY_INFORMATION_LEVEL level, void *out, DWORD size) {
        BATTERY_QUERY_INFORMATION request = {tag, level, 0};
        return DeviceIoControl(device, IOCTL_BATTERY_QUERY_INFORMATION, &request, sizeof request,
                               out, size, &returned, nullptr) != FALSE;
    };
    char part[160];
    std::string line;
    BATTERY_INFORMATION info = {};
    if (query(BatteryInformation, &info, sizeof info)) {
        std::snprintf(part, sizeof part, "caps=%08X chem=%.4s design=%u full=%u cycles=%u",
                      info.Capabilities, reinterpret_cast<const char *>(info.Chemistry),
                      info.DesignedCapacity, info.FullChargedCapacity, info.CycleCount);
        line += part;
    } else {
        line += "info=-";
    }
    ULONG kelvin = 0;
    line += query(BatteryTemperature, &kelvin, sizeof kelvin) ? "|temp=" + std::to_string(kelvin)
                                                              : "|temp=-";
    BATTERY_MANUFACTURE_DATE date = {};
    if (query(BatteryManufactureDate, &date, sizeof date)) {
        std::snprintf(part, sizeof part, "|date=%u-%u-%u", date.Year, date.Month, date.Day);
        line += part;
    } else {
        line += "|date=-";
    }
    const std::pair<BATTERY_QUERY_INFORMATION_LEVEL, const char *> texts[] = {
        {BatteryDeviceName, "name"},
        {BatteryManufactureName, "maker"},
        {BatteryUniqueID, "id"},
        {BatterySerialNumber, "serial"}};
    for (const auto &text : texts) {
        WCHAR units[256] = {};
        line += std::string("|") + text.second + "=" +
                (query(text.first, units, sizeof units) ? "'" + textOf(units) + "'" : "-");
    }
    BATTERY_WAIT_STATUS request = {tag, 0, 0, 0, 0};
    BATTERY_STATUS status = {};
    if (DeviceIoControl(device, IOCTL_BATTERY_QUERY_STATUS, &request, sizeof request, &status,
                        sizeof status, &returned, nullptr)) {
        std::snprintf(part, sizeof part, "|state=%u now=%u mV=%u rate=%d", status.PowerState,
                      status.Capacity, status.Voltage, status.Rate);
        line += part;
    } else {
        line += "|status=-";
    }
    CloseHandle(device);
    return line;
}
