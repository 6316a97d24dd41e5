// Device-information sets over the machine's battery devices. A set is a
// snapshot taken when it is made, as on Windows.

#include <setupapi.h>

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "battery_class.h"
#include "platform_layer/machine.h"
#include "wide_text.h"

namespace {

using platform_layer::kBatteryClassGuid;

struct DeviceInfoSet {
    bool interfaces = false; // a set of device interfaces rather than of class devices
    size_t members = 0;
    std::vector<platform_layer::SetupDevice> classDevices;
    std::vector<std::string> interfacePaths;
};

std::set<DeviceInfoSet *> &liveSets() {
    static std::set<DeviceInfoSet *> sets;
    return sets;
}

DeviceInfoSet *lookUp(HDEVINFO handle) {
    auto *set = static_cast<DeviceInfoSet *>(handle);
    return liveSets().count(set) != 0 ? set : nullptr;
}

HDEVINFO makeSet(const GUID *guid, DWORD flags) {
    if (guid == nullptr && (flags & DIGCF_ALLCLASSES) == 0) {
        return win32::fail(ERROR_INVALID_PARAMETER, INVALID_HANDLE_VALUE);
    }
    platform_layer::Machine &machine = platform_layer::currentMachine();
    auto set = std::make_unique<DeviceInfoSet>();
    set->interfaces = (flags & DIGCF_DEVICEINTERFACE) != 0;
    const bool battery = guid != nullptr && *guid == kBatteryClassGuid;
    if (battery || (flags & DIGCF_ALLCLASSES) != 0) {
        if (set->interfaces) {
            for (const platform_layer::BatteryDevice &device : machine.batteryDevices()) {
                set->interfacePaths.push_back(platform_layer::batteryInterfacePath(device));
            }
            set->members = set->interfacePaths.size();
        } else {
            set->classDevices = machine.batteryClassDevices();
            set->members = set->classDevices.size();
        }
    }
    machine.note(platform_layer::LayerEvent::DeviceSetOpened);
    DeviceInfoSet *raw = set.release();
    liveSets().insert(raw);
    SetLastError(ERROR_SUCCESS);
    return raw;
}

// Copies a text with its terminator into a caller's buffer of `capacity`
// units, following the two-call size protocol.
template <typename Unit>
BOOL copyOut(const std::basic_string<Unit> &text, Unit *buffer, DWORD capacity, DWORD *needed) {
    const DWORD units = static_cast<DWORD>(text.size() + 1);
    if (needed != nullptr) *needed = units;
    if (buffer == nullptr || capacity < units) return win32::fail(ERROR_INSUFFICIENT_BUFFER, FALSE);
    std::memcpy(buffer, text.c_str(), units * sizeof(Unit));
    return TRUE;
}

template <typename Detail, typename Unit>
BOOL interfaceDetail(HDEVINFO handle, PSP_DEVICE_INTERFACE_DATA data, Detail *detail,
                     DWORD detailSize, PDWORD requiredSize, PSP_DEVINFO_DATA device,
                     const std::basic_string<Unit> &(*convert)(const std::string &,
                                                               std::basic_string<Unit> &)) {
    DeviceInfoSet *set = lookUp(handle);
    if (set == nullptr) return win32::fail(ERROR_INVALID_HANDLE, FALSE);
    if (data == nullptr || !set->interfaces || data->Reserved >= set->members) {
        return win32::fail(ERROR_INVALID_PARAMETER, FALSE);
    }
    std::basic_string<Unit> path;
    convert(set->interfacePaths[data->Reserved], path);
    const DWORD header = offsetof(Detail, DevicePath);
    const DWORD needed = static_cast<DWORD>(header + (path.size() + 1) * sizeof(Unit));
    if (requiredSize != nullptr) *requiredSize = needed;
    if (device != nullptr && device->cbSize == sizeof(SP_DEVINFO_DATA)) {
        device->ClassGuid = kBatteryClassGuid;
        device->DevInst = static_cast<DWORD>(data->Reserved + 1);
        device->Reserved = data->Reserved;
    }
    if (detail == nullptr) return win32::fail(ERROR_INSUFFICIENT_BUFFER, FALSE);
    if (detail->cbSize != sizeof(Detail)) return win32::fail(ERROR_INVALID_USER_BUFFER, FALSE);
    if (detailSize < needed) return win32::fail(ERROR_INSUFFICIENT_BUFFER, FALSE);
    std::memcpy(detail->DevicePath, path.c_str(), (path.size() + 1) * sizeof(Unit));
    return TRUE;
}

const std::string &asNarrow(const std::string &text, std::string &out) {
    return out = text;
}
const std::basic_string<WCHAR> &asWide(const std::string &text, std::basic_string<WCHAR> &out) {
    return out = win32::widen(text);
}

} // namespace

extern "C" {

HDEVINFO SetupDiGetClassDevsA(const GUID *classGuid, PCSTR, HWND, DWORD flags) {
    return makeSet(classGuid, flags);
}

HDEVINFO SetupDiGetClassDevsW(const GUID *classGuid, PCWSTR, HWND, DWORD flags) {
    return makeSet(classGuid, flags);
}

BOOL SetupDiEnumDeviceInfo(HDEVINFO handle, DWORD index, PSP_DEVINFO_DATA data) {
    DeviceInfoSet *set = lookUp(handle);
    if (set == nullptr) return win32::fail(ERROR_INVALID_HANDLE, FALSE);
    if (data == nullptr || data->cbSize != sizeof(SP_DEVINFO_DATA)) {
        return win32::fail(ERROR_INVALID_USER_BUFFER, FALSE);
    }
    if (index >= set->members) return win32::fail(ERROR_NO_MORE_ITEMS, FALSE);
    data->ClassGuid = kBatteryClassGuid;
    data->DevInst = index + 1;
    data->Reserved = index;
    return TRUE;
}

BOOL SetupDiGetDeviceRegistryPropertyA(HDEVINFO handle, PSP_DEVINFO_DATA data, DWORD property,
                                       PDWORD type, PBYTE buffer, DWORD bufferSize,
                                       PDWORD requiredSize) {
    DeviceInfoSet *set = lookUp(handle);
    if (set == nullptr) return win32::fail(ERROR_INVALID_HANDLE, FALSE);
    if (data == nullptr || data->cbSize != sizeof(SP_DEVINFO_DATA) ||
        data->Reserved >= set->members) {
        return win32::fail(ERROR_INVALID_PARAMETER, FALSE);
    }
    if (set->interfaces || data->Reserved >= set->classDevices.size()) {
        return win32::fail(ERROR_INVALID_DATA, FALSE);
    }
    const platform_layer::SetupDevice &device = set->classDevices[data->Reserved];
    std::string text;
    if (property == SPDRP_DRIVER && device.driverKey) {
        text = *device.driverKey;
    } else if (property == SPDRP_DEVICEDESC) {
        text = device.description;
    } else {
        return win32::fail(ERROR_INVALID_DATA, FALSE);
    }
    if (type != nullptr) *type = REG_SZ;
    return copyOut(text, reinterpret_cast<char *>(buffer), bufferSize, requiredSize);
}

BOOL SetupDiEnumDeviceInterfaces(HDEVINFO handle, PSP_DEVINFO_DATA, const GUID *interfaceClass,
                                 DWORD index, PSP_DEVICE_INTERFACE_DATA data) {
    DeviceInfoSet *set = lookUp(handle);
    if (set == nullptr) return win32::fail(ERROR_INVALID_HANDLE, FALSE);
    if (data == nullptr || data->cbSize != sizeof(SP_DEVICE_INTERFACE_DATA)) {
        return win32::fail(ERROR_INVALID_USER_BUFFER, FALSE);
    }
    if (interfaceClass == nullptr) return win32::fail(ERROR_INVALID_PARAMETER, FALSE);
    if (!set->interfaces || *interfaceClass != kBatteryClassGuid || index >= set->members) {
        return win32::fail(ERROR_NO_MORE_ITEMS, FALSE);
    }
    data->InterfaceClassGuid = kBatteryClassGuid;
    data->Flags = SPINT_ACTIVE;
    data->Reserved = index;
    return TRUE;
}

BOOL SetupDiGetDeviceInterfaceDetailW(HDEVINFO handle, PSP_DEVICE_INTERFACE_DATA data,
                                      PSP_DEVICE_INTERFACE_DETAIL_DATA_W detail, DWORD detailSize,
                                      PDWORD requiredSize, PSP_DEVINFO_DATA device) {
    return interfaceDetail<SP_DEVICE_INTERFACE_DETAIL_DATA_W, WCHAR>(
        handle, data, detail, detailSize, requiredSize, device, asWide);
}

BOOL SetupDiGetDeviceInterfaceDetailA(HDEVINFO handle, PSP_DEVICE_INTERFACE_DATA data,
                                      PSP_DEVICE_INTERFACE_DETAIL_DATA_A detail, DWORD detailSize,
                                      PDWORD requiredSize, PSP_DEVINFO_DATA device) {
    return interfaceDetail<SP_DEVICE_INTERFACE_DETAIL_DATA_A, char>(
        handle, data, detail, detailSize, requiredSize, device, asNarrow);
}

BOOL SetupDiDestroyDeviceInfoList(HDEVINFO handle) {
    DeviceInfoSet *set = lookUp(handle);
    if (set == nullptr) return win32::fail(ERROR_INVALID_HANDLE, FALSE);
    liveSets().erase(set);
    delete set;
    platform_layer::currentMachine().note(platform_layer::LayerEvent::DeviceSetDestroyed);
    return TRUE;
}
}

namespace platform_layer {

std::string batteryDriverKey(size_t index) {
    char suffix[16];
    std::snprintf(suffix, sizeof suffix, "\\%04zu", index);
    return std::string(kBatteryClassKey) + suffix;
}

} // namespace platform_layer
