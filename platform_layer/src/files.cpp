// Opening devices by path and sending them I/O control requests.

#include <windows.h>

#include "platform_layer/machine.h"
#include "wide_text.h"

extern "C" {

HANDLE CreateFileA(LPCSTR fileName, DWORD, DWORD, LPSECURITY_ATTRIBUTES, DWORD disposition, DWORD,
                   HANDLE) {
    if (fileName == nullptr) return win32::fail(ERROR_INVALID_PARAMETER, INVALID_HANDLE_VALUE);
    // Devices exist already; nothing here creates a file.
    if (disposition != OPEN_EXISTING) return win32::fail(ERROR_ACCESS_DENIED, INVALID_HANDLE_VALUE);
    void *handle = nullptr;
    const uint32_t error = platform_layer::currentMachine().openDevice(fileName, &handle);
    if (error != 0) return win32::fail(error, INVALID_HANDLE_VALUE);
    SetLastError(ERROR_SUCCESS);
    return handle;
}

HANDLE CreateFileW(LPCWSTR fileName, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                   DWORD disposition, DWORD flags, HANDLE templateFile) {
    if (fileName == nullptr) return win32::fail(ERROR_INVALID_PARAMETER, INVALID_HANDLE_VALUE);
    const std::string narrow = win32::narrow(fileName);
    return CreateFileA(narrow.c_str(), access, share, security, disposition, flags, templateFile);
}

BOOL DeviceIoControl(HANDLE device, DWORD code, LPVOID input, DWORD inputSize, LPVOID output,
                     DWORD outputSize, LPDWORD bytesReturned, LPOVERLAPPED) {
    uint32_t returned = 0;
    const uint32_t error = platform_layer::currentMachine().controlDevice(
        device, code, input, inputSize, output, outputSize, &returned);
    if (bytesReturned != nullptr) *bytesReturned = returned;
    if (error != 0) return win32::fail(error, FALSE);
    return TRUE;
}

BOOL CloseHandle(HANDLE handle) {
    if (!platform_layer::currentMachine().closeDevice(handle)) {
        return win32::fail(ERROR_INVALID_HANDLE, FALSE);
    }
    return TRUE;
}
}
