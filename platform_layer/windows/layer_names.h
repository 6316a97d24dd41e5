#pragma once

// Forced into every source of the Windows test variant: the module, the
// vendor stand-ins and the platform layer built against the real SDK. Each
// Windows function that the layer answers takes a name of its own, so the
// variant's calls reach the layer's DLL while the C and C++ runtimes linked
// into the same programs keep calling the system's (a renamed GetLastError,
// Sleep or CloseHandle must never serve the runtime's threads and files).
// The SDK's declarations are renamed with them, so types stay the SDK's.

#define CM_Locate_DevNodeA battery_layer_CM_Locate_DevNodeA
#define CM_Reenumerate_DevNode battery_layer_CM_Reenumerate_DevNode
#define CloseHandle battery_layer_CloseHandle
#define CoCreateInstance battery_layer_CoCreateInstance
#define CoInitializeEx battery_layer_CoInitializeEx
#define CoInitializeSecurity battery_layer_CoInitializeSecurity
#define CoSetProxyBlanket battery_layer_CoSetProxyBlanket
#define CoUninitialize battery_layer_CoUninitialize
#define CreateFileA battery_layer_CreateFileA
#define CreateFileW battery_layer_CreateFileW
#define DeviceIoControl battery_layer_DeviceIoControl
#define GetLastError battery_layer_GetLastError
#define GetSystemPowerStatus battery_layer_GetSystemPowerStatus
#define GetTickCount battery_layer_GetTickCount
#define LocalFree battery_layer_LocalFree
#define PowerGetActiveScheme battery_layer_PowerGetActiveScheme
#define PowerSetActiveScheme battery_layer_PowerSetActiveScheme
#define RegGetValueA battery_layer_RegGetValueA
#define SetLastError battery_layer_SetLastError
#define SetupDiDestroyDeviceInfoList battery_layer_SetupDiDestroyDeviceInfoList
#define SetupDiEnumDeviceInfo battery_layer_SetupDiEnumDeviceInfo
#define SetupDiEnumDeviceInterfaces battery_layer_SetupDiEnumDeviceInterfaces
#define SetupDiGetClassDevsA battery_layer_SetupDiGetClassDevsA
#define SetupDiGetClassDevsW battery_layer_SetupDiGetClassDevsW
#define SetupDiGetDeviceInterfaceDetailA battery_layer_SetupDiGetDeviceInterfaceDetailA
#define SetupDiGetDeviceInterfaceDetailW battery_layer_SetupDiGetDeviceInterfaceDetailW
#define SetupDiGetDeviceRegistryPropertyA battery_layer_SetupDiGetDeviceRegistryPropertyA
#define Sleep battery_layer_Sleep
#define SysAllocString battery_layer_SysAllocString
#define SysFreeString battery_layer_SysFreeString
#define SysStringLen battery_layer_SysStringLen
#define VariantClear battery_layer_VariantClear
#define VariantInit battery_layer_VariantInit

#include <windows.h>
