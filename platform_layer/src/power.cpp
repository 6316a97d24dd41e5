// System power status, power schemes.

#include <powrprof.h>
#include <windows.h>

#include <cstdlib>

#include "platform_layer/machine.h"
#include "wide_text.h"

namespace {

using platform_layer::PowerScheme;

struct SchemeIdentity {
    PowerScheme scheme;
    GUID guid;
};

// The three schemes Windows ships, and the one a user made.
constexpr SchemeIdentity kSchemes[] = {
    {PowerScheme::HighPerformance,
     {0x8c5e7fda, 0xe8bf, 0x4a96, {0x9a, 0x85, 0xa6, 0xe2, 0x3a, 0x8c, 0x63, 0x5c}}},
    {PowerScheme::Balanced,
     {0x381b4222, 0xf694, 0x41f0, {0x96, 0x85, 0xff, 0x5b, 0xb2, 0x60, 0xdf, 0x2e}}},
    {PowerScheme::PowerSaver,
     {0xa1841308, 0x3541, 0x4fab, {0xbc, 0x81, 0xf7, 0x15, 0x56, 0xf2, 0x0b, 0x4a}}},
    {PowerScheme::Custom,
     {0x5f1c3a0e, 0x2b7d, 0x4e61, {0x8a, 0x3c, 0x91, 0x0d, 0x6e, 0x42, 0x7b, 0x19}}},
};

constexpr BYTE kFlagHigh = 1, kFlagLow = 2, kFlagCritical = 4, kFlagCharging = 8,
               kFlagNoBattery = 128;

} // namespace

extern "C" {

BOOL GetSystemPowerStatus(LPSYSTEM_POWER_STATUS status) {
    if (status == nullptr) return win32::fail(ERROR_INVALID_PARAMETER, FALSE);
    platform_layer::SystemPower power;
    if (const uint32_t error = platform_layer::currentMachine().systemPower(&power)) {
        return win32::fail(error, FALSE);
    }
    const uint32_t percent = power.batteryPercent;
    BYTE flag = kFlagNoBattery;
    if (power.anyBattery) {
        flag = percent > 66 ? kFlagHigh : percent < 5 ? kFlagCritical : percent < 33 ? kFlagLow : 0;
        if (power.acOnLine && percent < 100) flag |= kFlagCharging;
    }
    // Cleared whole: the byte after the percentage is named differently in
    // SDK versions.
    *status = SYSTEM_POWER_STATUS{};
    status->ACLineStatus = power.acLineUnknown ? 255 : power.acOnLine ? 1 : 0;
    status->BatteryFlag = flag;
    status->BatteryLifePercent = static_cast<BYTE>(percent > 255 ? 255 : percent);
    status->BatteryLifeTime = 0xFFFFFFFFu;
    status->BatteryFullLifeTime = 0xFFFFFFFFu;
    return TRUE;
}

DWORD PowerGetActiveScheme(HKEY, GUID **activePolicyGuid) {
    if (activePolicyGuid == nullptr) return ERROR_INVALID_PARAMETER;
    PowerScheme active = PowerScheme::Balanced;
    if (const uint32_t error = platform_layer::currentMachine().activeScheme(&active)) return error;
    auto *guid = static_cast<GUID *>(std::malloc(sizeof(GUID)));
    if (guid == nullptr) return ERROR_NOT_ENOUGH_MEMORY;
    for (const SchemeIdentity &identity : kSchemes) {
        if (identity.scheme == active) *guid = identity.guid;
    }
    *activePolicyGuid = guid;
    return ERROR_SUCCESS;
}

DWORD PowerSetActiveScheme(HKEY, const GUID *schemeGuid) {
    if (schemeGuid == nullptr) return ERROR_INVALID_PARAMETER;
    for (const SchemeIdentity &identity : kSchemes) {
        if (identity.guid == *schemeGuid) {
            return platform_layer::currentMachine().setActiveScheme(identity.scheme);
        }
    }
    return ERROR_FILE_NOT_FOUND;
}
}
