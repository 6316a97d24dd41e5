#pragma once

// Power schemes.

#include <windows.h>

extern "C" {
// The caller frees *activePolicyGuid with LocalFree.
WIN32_API DWORD PowerGetActiveScheme(HKEY userRootPowerKey, GUID **activePolicyGuid);
WIN32_API DWORD PowerSetActiveScheme(HKEY userRootPowerKey, const GUID *schemeGuid);
}
