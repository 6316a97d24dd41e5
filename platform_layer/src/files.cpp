// Opening devices by path and sending them I/O control requests: the
// battery devices the machine lists and the display "\\.\LCD". A handle
// names the device by the machine's own name of it, so a battery that is
// taken out keeps its handle, and its requests fail until it is back.

#include <windows.h>

#include <map>
#include <mutex>
#include <string>

#include "battery_class.h"
#include "device_requests.h"
#include "ignoring_case.h"
#include "platform_layer/machine.h"
#include "wide_text.h"

namespace {

using platform_layer::currentMachine;
using platform_layer::LayerEvent;
using platform_layer::Machine;

constexpr const char *kDisplayPath = "\\\\.\\LCD";

struct OpenDevice {
    bool display = false;
    std::string battery; // the machine's name of it
};

struct HandleTable {
    std::mutex mutex;
    std::map<HANDLE, OpenDevice> open;
    uintptr_t next = 0x1000;
};

HandleTable &handles() {
    static HandleTable table;
    return table;
}

HANDLE newHandle(OpenDevice device) {
    HandleTable &table = handles();
    std::lock_guard<std::mutex> lock(table.mutex);
    HANDLE fresh = reinterpret_cast<HANDLE>(table.next);
    table.next += 4; // Windows handles are multiples of four
    table.open[fresh] = std::move(device);
    return fresh;
}

// 0 and the device, or the error of the open.
uint32_t findDevice(Machine &machine, const std::string &path, OpenDevice &device) {
    if (platform_layer::sameIgnoringCase(path, kDisplayPath)) {
        if (!machine.hasDisplay()) return ERROR_FILE_NOT_FOUND;
        device.display = true;
        return ERROR_SUCCESS;
    }
    for (const platform_layer::BatteryDevice &battery : machine.batteryDevices()) {
        if (!platform_layer::sameIgnoringCase(platform_layer::batteryInterfacePath(battery),
                                              path)) {
            continue;
        }
        if (machine.faults().openFails(battery.name)) return ERROR_ACCESS_DENIED;
        device.battery = battery.name;
        return ERROR_SUCCESS;
    }
    return ERROR_FILE_NOT_FOUND;
}

} // namespace

extern "C" {

HANDLE CreateFileA(LPCSTR fileName, DWORD, DWORD, LPSECURITY_ATTRIBUTES, DWORD disposition, DWORD,
                   HANDLE) {
    if (fileName == nullptr) return win32::fail(ERROR_INVALID_PARAMETER, INVALID_HANDLE_VALUE);
    // Devices exist already; nothing here creates a file.
    if (disposition != OPEN_EXISTING) return win32::fail(ERROR_ACCESS_DENIED, INVALID_HANDLE_VALUE);
    Machine &machine = currentMachine();
    OpenDevice device;
    if (const uint32_t error = findDevice(machine, fileName, device)) {
        return win32::fail(error, INVALID_HANDLE_VALUE);
    }
    HANDLE handle = newHandle(std::move(device));
    machine.note(LayerEvent::DeviceOpened);
    SetLastError(ERROR_SUCCESS);
    return handle;
}

HANDLE CreateFileW(LPCWSTR fileName, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                   DWORD disposition, DWORD flags, HANDLE templateFile) {
    if (fileName == nullptr) return win32::fail(ERROR_INVALID_PARAMETER, INVALID_HANDLE_VALUE);
    const std::string narrow = win32::narrow(fileName);
    return CreateFileA(narrow.c_str(), access, share, security, disposition, flags, templateFile);
}

BOOL DeviceIoControl(HANDLE handle, DWORD code, LPVOID input, DWORD inputSize, LPVOID output,
                     DWORD outputSize, LPDWORD bytesReturned, LPOVERLAPPED) {
    OpenDevice device;
    {
        HandleTable &table = handles();
        std::lock_guard<std::mutex> lock(table.mutex);
        const auto found = table.open.find(handle);
        if (found == table.open.end()) {
            if (bytesReturned != nullptr) *bytesReturned = 0;
            return win32::fail(ERROR_INVALID_HANDLE, FALSE);
        }
        device = found->second;
    }
    Machine &machine = currentMachine();
    machine.beginRequest();
    uint32_t returned = 0;
    const uint32_t error =
        device.display ? platform_layer::displayRequest(machine, code, input, inputSize, output,
                                                        outputSize, &returned)
                       : platform_layer::batteryRequest(machine, device.battery, code, input,
                                                        inputSize, output, outputSize, &returned);
    if (bytesReturned != nullptr) *bytesReturned = returned;
    if (error != 0) return win32::fail(error, FALSE);
    return TRUE;
}

BOOL CloseHandle(HANDLE handle) {
    {
        HandleTable &table = handles();
        std::lock_guard<std::mutex> lock(table.mutex);
        if (table.open.erase(handle) != 1) return win32::fail(ERROR_INVALID_HANDLE, FALSE);
    }
    currentMachine().note(LayerEvent::DeviceClosed);
    return TRUE;
}
}
