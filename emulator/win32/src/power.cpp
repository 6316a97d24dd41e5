// System power status, power schemes.

#include <powrprof.h>
#include <windows.h>

#include <cstdlib>

#include "emulator/notebook.h"
#include "wide_text.h"

namespace {

using emulator::PowerScheme;

struct SchemeIdentity {
    PowerScheme scheme;
    GUID guid;
    uint32_t number; // as recorded in the machine's changes
};

// The three schemes Windows ships, and the one a user made.
constexpr SchemeIdentity kSchemes[] = {
    {PowerScheme::HighPerformance,
     {0x8c5e7fda, 0xe8bf, 0x4a96, {0x9a, 0x85, 0xa6, 0xe2, 0x3a, 0x8c, 0x63, 0x5c}},
     0},
    {PowerScheme::Balanced,
     {0x381b4222, 0xf694, 0x41f0, {0x96, 0x85, 0xff, 0x5b, 0xb2, 0x60, 0xdf, 0x2e}},
     1},
    {PowerScheme::PowerSaver,
     {0xa1841308, 0x3541, 0x4fab, {0xbc, 0x81, 0xf7, 0x15, 0x56, 0xf2, 0x0b, 0x4a}},
     2},
    {PowerScheme::Custom,
     {0x5f1c3a0e, 0x2b7d, 0x4e61, {0x8a, 0x3c, 0x91, 0x0d, 0x6e, 0x42, 0x7b, 0x19}},
     3},
};

constexpr BYTE kFlagHigh = 1, kFlagLow = 2, kFlagCritical = 4, kFlagCharging = 8,
               kFlagNoBattery = 128;

} // namespace

extern "C" {

BOOL GetSystemPowerStatus(LPSYSTEM_POWER_STATUS status) {
    emulator::Notebook &notebook = emulator::Notebook::instance();
    const emulator::PowerState &power = notebook.power();
    if (status == nullptr) return win32::fail(ERROR_INVALID_PARAMETER, FALSE);
    if (power.faults.statusFails) return win32::fail(ERROR_GEN_FAILURE, FALSE);
    const uint32_t percent = notebook.systemBatteryPercent();
    bool anyBattery = false;
    for (const auto &battery : notebook.batteries()) anyBattery = anyBattery || battery.present;
    BYTE flag = kFlagNoBattery;
    if (anyBattery) {
        flag = percent > 66 ? kFlagHigh : percent < 5 ? kFlagCritical : percent < 33 ? kFlagLow : 0;
        if (power.ac && percent < 100) flag |= kFlagCharging;
    }
    status->ACLineStatus = power.ac ? 1 : 0;
    status->BatteryFlag = flag;
    status->BatteryLifePercent = static_cast<BYTE>(percent > 255 ? 255 : percent);
    status->SystemStatusFlag = 0;
    status->BatteryLifeTime = 0xFFFFFFFFu;
    status->BatteryFullLifeTime = 0xFFFFFFFFu;
    return TRUE;
}

DWORD PowerGetActiveScheme(HKEY, GUID **activePolicyGuid) {
    if (activePolicyGuid == nullptr) return ERROR_INVALID_PARAMETER;
    const emulator::PowerState &power = emulator::Notebook::instance().power();
    if (power.faults.schemeQueryFails) return ERROR_ACCESS_DENIED;
    auto *guid = static_cast<GUID *>(std::malloc(sizeof(GUID)));
    if (guid == nullptr) return ERROR_NOT_ENOUGH_MEMORY;
    for (const SchemeIdentity &identity : kSchemes) {
        if (identity.scheme == power.scheme) *guid = identity.guid;
    }
    *activePolicyGuid = guid;
    return ERROR_SUCCESS;
}

DWORD PowerSetActiveScheme(HKEY, const GUID *schemeGuid) {
    emulator::Notebook &notebook = emulator::Notebook::instance();
    emulator::PowerState &power = notebook.power();
    if (schemeGuid == nullptr) return ERROR_INVALID_PARAMETER;
    if (power.faults.schemeChangeFails) return ERROR_ACCESS_DENIED;
    for (const SchemeIdentity &identity : kSchemes) {
        if (identity.guid == *schemeGuid) {
            power.scheme = identity.scheme;
            power.changes.push_back({notebook.clock().elapsedMs(), "scheme", identity.number});
            return ERROR_SUCCESS;
        }
    }
    return ERROR_FILE_NOT_FOUND;
}
}
