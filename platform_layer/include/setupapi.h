#pragma once

// Device setup: device-information sets of a setup class or a device
// interface class, and their members' properties.

#include <windows.h>

typedef PVOID HDEVINFO;

typedef struct _SP_DEVINFO_DATA {
    DWORD cbSize;
    GUID ClassGuid;
    DWORD DevInst;
    ULONG_PTR Reserved;
} SP_DEVINFO_DATA, *PSP_DEVINFO_DATA;

typedef struct _SP_DEVICE_INTERFACE_DATA {
    DWORD cbSize;
    GUID InterfaceClassGuid;
    DWORD Flags;
    ULONG_PTR Reserved;
} SP_DEVICE_INTERFACE_DATA, *PSP_DEVICE_INTERFACE_DATA;

typedef struct _SP_DEVICE_INTERFACE_DETAIL_DATA_W {
    DWORD cbSize;
    WCHAR DevicePath[1];
} SP_DEVICE_INTERFACE_DETAIL_DATA_W, *PSP_DEVICE_INTERFACE_DETAIL_DATA_W;

typedef struct _SP_DEVICE_INTERFACE_DETAIL_DATA_A {
    DWORD cbSize;
    CHAR DevicePath[1];
} SP_DEVICE_INTERFACE_DETAIL_DATA_A, *PSP_DEVICE_INTERFACE_DETAIL_DATA_A;

#define DIGCF_DEFAULT 0x00000001u
#define DIGCF_PRESENT 0x00000002u
#define DIGCF_ALLCLASSES 0x00000004u
#define DIGCF_PROFILE 0x00000008u
#define DIGCF_DEVICEINTERFACE 0x00000010u

#define SPDRP_DEVICEDESC 0x00000000u
#define SPDRP_DRIVER 0x00000009u

#define SPINT_ACTIVE 0x00000001u

extern "C" {
WIN32_API HDEVINFO SetupDiGetClassDevsA(const GUID *classGuid, PCSTR enumerator, HWND parent,
                                        DWORD flags);
WIN32_API HDEVINFO SetupDiGetClassDevsW(const GUID *classGuid, PCWSTR enumerator, HWND parent,
                                        DWORD flags);
WIN32_API BOOL SetupDiEnumDeviceInfo(HDEVINFO set, DWORD memberIndex, PSP_DEVINFO_DATA data);
WIN32_API BOOL SetupDiGetDeviceRegistryPropertyA(HDEVINFO set, PSP_DEVINFO_DATA data,
                                                 DWORD property, PDWORD propertyType, PBYTE buffer,
                                                 DWORD bufferSize, PDWORD requiredSize);
WIN32_API BOOL SetupDiEnumDeviceInterfaces(HDEVINFO set, PSP_DEVINFO_DATA device,
                                           const GUID *interfaceClass, DWORD memberIndex,
                                           PSP_DEVICE_INTERFACE_DATA data);
WIN32_API BOOL SetupDiGetDeviceInterfaceDetailW(HDEVINFO set, PSP_DEVICE_INTERFACE_DATA data,
                                                PSP_DEVICE_INTERFACE_DETAIL_DATA_W detail,
                                                DWORD detailSize, PDWORD requiredSize,
                                                PSP_DEVINFO_DATA device);
WIN32_API BOOL SetupDiGetDeviceInterfaceDetailA(HDEVINFO set, PSP_DEVICE_INTERFACE_DATA data,
                                                PSP_DEVICE_INTERFACE_DETAIL_DATA_A detail,
                                                DWORD detailSize, PDWORD requiredSize,
                                                PSP_DEVINFO_DATA device);
WIN32_API BOOL SetupDiDestroyDeviceInfoList(HDEVINFO set);
}

#define SetupDiGetClassDevs SetupDiGetClassDevsW
#define SetupDiGetDeviceInterfaceDetail SetupDiGetDeviceInterfaceDetailW
typedef SP_DEVICE_INTERFACE_DETAIL_DATA_W SP_DEVICE_INTERFACE_DETAIL_DATA;
typedef PSP_DEVICE_INTERFACE_DETAIL_DATA_W PSP_DEVICE_INTERFACE_DETAIL_DATA;

static_assert(sizeof(SP_DEVINFO_DATA) == 32, "SP_DEVINFO_DATA is 32 bytes on x64");
static_assert(sizeof(SP_DEVICE_INTERFACE_DATA) == 32, "SP_DEVICE_INTERFACE_DATA is 32 bytes");
static_assert(sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_W) == 8, "detail header is 8 bytes on x64");
static_assert(sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_A) == 8, "detail header is 8 bytes on x64");
