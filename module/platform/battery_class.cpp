#include "platform/battery_class.h"

#include <setupapi.h>

#include <vector>

namespace {

constexpr const char *kDriverClassRoot = "SYSTEM\\CurrentControlSet\\Control\\Class\\";
constexpr const char *kDriverVersionValue = "DriverVersion";

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

bool readDriverKey(HDEVINFO set, SP_DEVINFO_DATA &device, std::string &key) {
    DWORD size = 0;
    SetupDiGetDeviceRegistryPropertyA(set, &device, SPDRP_DRIVER, nullptr, nullptr, 0, &size);
    if (size == 0) return false;
    std::vector<BYTE> buffer(size + 1, 0);
    if (!SetupDiGetDeviceRegistryPropertyA(set, &device, SPDRP_DRIVER, nullptr, buffer.data(), size,
                                           &size)) {
        return false;
    }
    key.assign(reinterpret_cast<const char *>(buffer.data()));
    return true;
}

bool readVersion(const std::string &keyPath, std::string &version) {
    DWORD size = 0;
    if (RegGetValueA(HKEY_LOCAL_MACHINE, keyPath.c_str(), kDriverVersionValue, RRF_RT_REG_SZ,
                     nullptr, nullptr, &size) != ERROR_SUCCESS ||
        size == 0) {
        return false;
    }
    std::vector<char> buffer(size + 1, '\0');
    if (RegGetValueA(HKEY_LOCAL_MACHINE, keyPath.c_str(), kDriverVersionValue, RRF_RT_REG_SZ,
                     nullptr, buffer.data(), &size) != ERROR_SUCCESS) {
        return false;
    }
    version.assign(buffer.data());
    return true;
}

} // namespace

DriverVersionLookup lookUpBatteryDriverVersion(std::string &version) {
    DeviceInformationSet devices(SetupDiGetClassDevsA(&kBatteryClassGuid, nullptr, nullptr, 0));
    if (devices.handle() == INVALID_HANDLE_VALUE) return DriverVersionLookup::NoDevice;
    SP_DEVINFO_DATA device{};
    device.cbSize = sizeof(SP_DEVINFO_DATA);
    if (!SetupDiEnumDeviceInfo(devices.handle(), 1, &device) &&
        !SetupDiEnumDeviceInfo(devices.handle(), 0, &device)) {
        return DriverVersionLookup::NoDevice;
    }
    std::string driverKey;
    if (!readDriverKey(devices.handle(), device, driverKey) ||
        !readVersion(kDriverClassRoot + driverKey, version)) {
        return DriverVersionLookup::NoVersion;
    }
    return DriverVersionLookup::Found;
}
