// Registry values under HKEY_LOCAL_MACHINE, with RegGetValue's size protocol.

#include <windows.h>

#include <cstring>
#include <optional>

#include "platform_layer/machine.h"

extern "C" LSTATUS RegGetValueA(HKEY key, LPCSTR subKey, LPCSTR value, DWORD flags, LPDWORD type,
                                PVOID data, LPDWORD dataSize) {
    if (data != nullptr && dataSize == nullptr) return ERROR_INVALID_PARAMETER;
    if (key != HKEY_LOCAL_MACHINE) return ERROR_FILE_NOT_FOUND;
    const std::optional<std::string> text = platform_layer::currentMachine().registryText(
        subKey != nullptr ? subKey : "", value != nullptr ? value : "");
    if (!text) return ERROR_FILE_NOT_FOUND;
    if ((flags & RRF_RT_REG_SZ) == 0) return ERROR_UNSUPPORTED_TYPE;
    if (type != nullptr) *type = REG_SZ;

    const DWORD needed = static_cast<DWORD>(text->size() + 1); // with its terminator
    if (data == nullptr) {
        if (dataSize != nullptr) *dataSize = needed;
        return ERROR_SUCCESS;
    }
    if (*dataSize < needed) {
        *dataSize = needed;
        return ERROR_MORE_DATA;
    }
    std::memcpy(data, text->c_str(), needed);
    *dataSize = needed;
    return ERROR_SUCCESS;
}
