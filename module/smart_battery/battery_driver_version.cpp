// The battery driver's version, from the operating system's device registry.

#include <windows.h>

#include <setupapi.h>

#include <string>
#include <vector>

#include "smart_battery/win_smart_battery_scanner.h"

namespace {

// The device setup class of batteries.
const GUID kBatteryClass = {
    0x72631E54, 0x78A4, 0x11D0, {0xBC, 0xF7, 0x00, 0xAA, 0x00, 0xB7, 0xB3, 0x2A}};
constexpr const char *kDriverClassRoot = "SYSTEM\\CurrentControlSet\\Control\\Class\\";
constexpr const char *kDriverVersionValue = "DriverVersion";
constexpr const char *kUnknownVersion = "EMPTY";
constexpr const char *kVersionSuffix = " [Windows]";
constexpr uint32_t kNoBatteryDevice = 128;

// A device-information set, destroyed whichever way the lookup ends.
class DeviceInformationSet {
public:
    explicit DeviceInformationSet(HDEVINFO handle) : handle_(handle) {}
    ~DeviceInformationSet() {
        if (handle_ != INVALID_HANDLE_VALUE) SetupDiDestroyDeviceInfoList(handle_);
    }
    DeviceInformationSet(const DeviceInformationSet &) = delete;
    DeviceInformationSet &operator=(const DeviceInformationSet &) = delete;
    HDEVINFO handle() const { return handle_; }

private:
    HDEVINFO handle_;
};

// The device's key under the driver class root, through the two-call size
// protocol.
bool readDriverKey(HDEVINFO set, SP_DEVINFO_DATA &device, std::string &key) {
    DWORD size = 0;
    SetupDiGetDeviceRegistryPropertyA(set, &device, SPDRP_DRIVER, nullptr, nullptr, 0, &size);
    if (size == 0) return false;
    std::vector<BYTE> buffer(size);
    if (!SetupDiGetDeviceRegistryPropertyA(set, &device, SPDRP_DRIVER, nullptr, buffer.data(), size,
                                           &size)) {
        return false;
    }
    key.assign(reinterpret_cast<const char *>(buffer.data()));
    return true;
}

// The version text through the two-call size protocol; false when the key
// holds none.
bool readVersion(const std::string &keyPath, std::string &version) {
    DWORD size = 0;
    if (RegGetValueA(HKEY_LOCAL_MACHINE, keyPath.c_str(), kDriverVersionValue, RRF_RT_REG_SZ,
                     nullptr, nullptr, &size) != ERROR_SUCCESS ||
        size == 0) {
        return false;
    }
    std::vector<char> buffer(size);
    if (RegGetValueA(HKEY_LOCAL_MACHINE, keyPath.c_str(), kDriverVersionValue, RRF_RT_REG_SZ,
                     nullptr, buffer.data(), &size) != ERROR_SUCCESS) {
        return false;
    }
    buffer.back() = '\0';
    version.assign(buffer.data());
    return true;
}

} // namespace

// The member at index 1 is taken first: Windows lists the AC adapter at
// index 0 of the battery class when it lists one.
uint32_t WinSmartBatteryScanner::lookUpDriverVersion() {
    driverVersion = kUnknownVersion;
    DeviceInformationSet devices(SetupDiGetClassDevsA(&kBatteryClass, nullptr, nullptr, 0));
    if (devices.handle() == INVALID_HANDLE_VALUE) return kNoBatteryDevice;
    SP_DEVINFO_DATA device{};
    device.cbSize = sizeof(SP_DEVINFO_DATA);
    if (!SetupDiEnumDeviceInfo(devices.handle(), 1, &device) &&
        !SetupDiEnumDeviceInfo(devices.handle(), 0, &device)) {
        return kNoBatteryDevice;
    }
    // A device without a driver key, or a key without a version, is a device
    // of unknown version.
    std::string driverKey;
    std::string version;
    if (!readDriverKey(devices.handle(), device, driverKey) ||
        !readVersion(kDriverClassRoot + driverKey, version)) {
        return 0;
    }
    driverVersion = version + kVersionSuffix;
    return 0;
}
