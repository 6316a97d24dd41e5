#include "hostlib/hostlib.h"

#include <setupapi.h>

#include <map>
#include <vector>

namespace {

std::string narrowPath(const WCHAR *path) {
    std::string narrow;
    for (; *path != 0; ++path) {
        narrow.push_back(*path < 0x80 ? static_cast<char>(*path) : '?');
    }
    return narrow;
}

std::basic_string<WCHAR> widePath(const std::string &path) {
    std::basic_string<WCHAR> wide;
    for (const char byte : path)
        wide.push_back(static_cast<WCHAR>(static_cast<unsigned char>(byte)));
    return wide;
}

// The device path of one interface, by the two-call size protocol; empty
// when the set does not give it.
std::string interfacePath(HDEVINFO set, SP_DEVICE_INTERFACE_DATA &data) {
    DWORD required = 0;
    if (SetupDiGetDeviceInterfaceDetail(set, &data, nullptr, 0, &required, nullptr) ||
        GetLastError() != ERROR_INSUFFICIENT_BUFFER ||
        required < sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA)) {
        return std::string();
    }
    // Whole 8-byte units keep the record aligned.
    std::vector<uint64_t> storage((required + sizeof(uint64_t) - 1) / sizeof(uint64_t) + 1);
    auto *detail = reinterpret_cast<PSP_DEVICE_INTERFACE_DETAIL_DATA>(storage.data());
    detail->cbSize = sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA);
    if (!SetupDiGetDeviceInterfaceDetail(set, &data, detail, required, nullptr, nullptr)) {
        return std::string();
    }
    return narrowPath(detail->DevicePath);
}

// The device an interface path belongs to: everything before the interface
// class, so that interfaces told apart only by their reference strings share it.
std::string deviceOfPath(const std::string &path) {
    return path.substr(0, path.find("#{"));
}

// Lists the present device interfaces of the filter's interface class and
// opens them for the battery driver's requests. A device is keyed by the
// place of its first interface in the list; all of its interfaces go under
// that key.
class SetupDeviceScanner : public DeviceScanner {
public:
    uint32_t enumerateDevices(const DeviceScanFilter &filter, DeviceMap &devices) override {
        const auto *windowsFilter = dynamic_cast<const WinDeviceScanFilter *>(&filter);
        if (windowsFilter == nullptr) return 1;
        const GUID interfaceClass = windowsFilter->secondGuid;
        HDEVINFO set = SetupDiGetClassDevs(&interfaceClass, nullptr, nullptr,
                                           DIGCF_PRESENT | DIGCF_DEVICEINTERFACE);
        if (set == INVALID_HANDLE_VALUE) return 1;

        std::map<std::string, uint32_t> keyOfDevice;
        for (DWORD index = 0;; ++index) {
            SP_DEVICE_INTERFACE_DATA data = {};
            data.cbSize = sizeof data;
            if (!SetupDiEnumDeviceInterfaces(set, nullptr, &interfaceClass, index, &data)) break;
            const std::string path = interfacePath(set, data);
            if (path.empty()) continue;
            const auto key = keyOfDevice.emplace(deviceOfPath(path), index).first->second;
            devices[key].push_back(path);
        }
        SetupDiDestroyDeviceInfoList(set);
        return 0;
    }

    uint32_t openDevice(const std::string &path, HANDLE *cell) override {
        if (cell == nullptr) return 1;
        HANDLE handle = CreateFile(widePath(path).c_str(), GENERIC_READ | GENERIC_WRITE,
                                   FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                   FILE_ATTRIBUTE_NORMAL, nullptr);
        if (handle == INVALID_HANDLE_VALUE) return 1;
        *cell = handle;
        return 0;
    }

    void closeDevice(HANDLE *cell) override {
        if (cell == nullptr || *cell == INVALID_HANDLE_VALUE || *cell == nullptr) return;
        CloseHandle(*cell);
        *cell = INVALID_HANDLE_VALUE;
    }
};

} // namespace

extern "C" HOSTLIB_API DeviceScanner *get_device_scanner() {
    return new SetupDeviceScanner();
}

extern "C" HOSTLIB_API void release_device_scanner(DeviceScanner *scanner) {
    delete scanner;
}
