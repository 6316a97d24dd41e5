// Registry values under HKEY_LOCAL_MACHINE, with RegGetValue's size protocol:
// the DriverVersion under the key of each battery class device.

#include <windows.h>

#include <cstring>
#include <optional>

#include "battery_class.h"
#include "ignoring_case.h"
#include "platform_layer/machine.h"

namespace {

// Key paths and names compare without case; of two devices under one key
// the later one's value stands.
std::optional<std::string> driverVersion(const std::string &keyPath, const std::string &name) {
    using platform_layer::sameIgnoringCase;
    if (!sameIgnoringCase(name, "DriverVersion")) return std::nullopt;
    std::optional<std::string> found;
    for (const platform_layer::SetupDevice &device :
         platform_layer::currentMachine().batteryClassDevices()) {
        if (device.driverKey && device.driverVersion &&
            sameIgnoringCase(keyPath, platform_layer::kDriverClassRoot + *device.driverKey)) {
            found = device.driverVersion;
        }
    }
    return found;
}

} // namespace

extern "C" LSTATUS RegGetValueA(HKEY key, LPCSTR subKey, LPCSTR value, DWORD flags, LPDWORD type,
                                PVOID data, LPDWORD dataSize) {
    if (data != nullptr && dataSize == nullptr) return ERROR_INVALID_PARAMETER;
    if (key != HKEY_LOCAL_MACHINE) return ERROR_FILE_NOT_FOUND;
    const std::optional<std::string> text =
        driverVersion(subKey != nullptr ? subKey : "", value != nullptr ? value : "");
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
