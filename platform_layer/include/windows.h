#pragma once

// The subset of the Windows API that the module and the host library use,
// answered by the machine the platform layer speaks for. Types have the widths of 64-bit
// Windows: DWORD, ULONG and UINT 32-bit unsigned; LONG, BOOL and HRESULT
// 32-bit signed; WCHAR a 16-bit unit; HANDLE a pointer.

#include <cstddef>
#include <cstdint>

#include "win32_api.h"

typedef uint8_t BYTE;
typedef uint8_t UCHAR;
typedef uint16_t WORD;
typedef uint16_t USHORT;
typedef uint32_t DWORD;
typedef uint32_t ULONG;
typedef uint32_t UINT;
typedef int32_t LONG;
typedef int32_t BOOL;
typedef int32_t HRESULT;
typedef int64_t LONGLONG;
typedef uint64_t ULONGLONG;
typedef uint64_t ULONG_PTR;
typedef int64_t LONG_PTR;
typedef ULONG_PTR DWORD_PTR;
typedef ULONG_PTR SIZE_T;
typedef char CHAR;
typedef char16_t WCHAR;
typedef CHAR *LPSTR;
typedef const CHAR *LPCSTR;
typedef CHAR *PSTR;
typedef const CHAR *PCSTR;
typedef WCHAR *LPWSTR;
typedef const WCHAR *LPCWSTR;
typedef WCHAR *PWSTR;
typedef const WCHAR *PCWSTR;
typedef void *PVOID;
typedef void *LPVOID;
typedef const void *LPCVOID;
typedef BYTE *PBYTE;
typedef BYTE *LPBYTE;
typedef DWORD *PDWORD;
typedef DWORD *LPDWORD;
typedef ULONG *PULONG;
typedef void *HANDLE;
typedef HANDLE *PHANDLE;
typedef HANDLE HLOCAL;
typedef HANDLE HWND;
typedef HANDLE HKEY;
typedef HKEY *PHKEY;
typedef HANDLE HMODULE;
typedef LONG LSTATUS;

#define WINAPI
#define TRUE 1
#define FALSE 0
#define INVALID_HANDLE_VALUE ((HANDLE)(LONG_PTR)-1)

struct GUID {
    uint32_t Data1;
    uint16_t Data2;
    uint16_t Data3;
    uint8_t Data4[8];
};
typedef GUID IID;
typedef GUID CLSID;
typedef const GUID &REFGUID;
typedef const IID &REFIID;
typedef const CLSID &REFCLSID;
typedef GUID *LPGUID;

inline bool operator==(const GUID &a, const GUID &b) {
    if (a.Data1 != b.Data1 || a.Data2 != b.Data2 || a.Data3 != b.Data3) return false;
    for (int i = 0; i < 8; ++i)
        if (a.Data4[i] != b.Data4[i]) return false;
    return true;
}
inline bool operator!=(const GUID &a, const GUID &b) {
    return !(a == b);
}

#include "winerror.h"

// Files and devices.
#define GENERIC_READ 0x80000000u
#define GENERIC_WRITE 0x40000000u
#define FILE_SHARE_READ 0x00000001u
#define FILE_SHARE_WRITE 0x00000002u
#define OPEN_EXISTING 3u
#define FILE_ATTRIBUTE_NORMAL 0x00000080u

struct SECURITY_ATTRIBUTES;
typedef SECURITY_ATTRIBUTES *LPSECURITY_ATTRIBUTES;
struct OVERLAPPED;
typedef OVERLAPPED *LPOVERLAPPED;

// Power status of the system.
typedef struct _SYSTEM_POWER_STATUS {
    BYTE ACLineStatus;
    BYTE BatteryFlag;
    BYTE BatteryLifePercent;
    BYTE SystemStatusFlag;
    DWORD BatteryLifeTime;
    DWORD BatteryFullLifeTime;
} SYSTEM_POWER_STATUS, *LPSYSTEM_POWER_STATUS;

// Registry.
#define HKEY_LOCAL_MACHINE ((HKEY)(ULONG_PTR)((LONG)0x80000002))
#define RRF_RT_REG_SZ 0x00000002u
#define REG_SZ 1u

extern "C" {
WIN32_API DWORD GetTickCount(void);
WIN32_API void Sleep(DWORD milliseconds);
WIN32_API DWORD GetLastError(void);
WIN32_API void SetLastError(DWORD error);
WIN32_API BOOL CloseHandle(HANDLE handle);
WIN32_API HLOCAL LocalFree(HLOCAL memory);
WIN32_API HANDLE CreateFileW(LPCWSTR fileName, DWORD desiredAccess, DWORD shareMode,
                             LPSECURITY_ATTRIBUTES security, DWORD creationDisposition,
                             DWORD flagsAndAttributes, HANDLE templateFile);
WIN32_API HANDLE CreateFileA(LPCSTR fileName, DWORD desiredAccess, DWORD shareMode,
                             LPSECURITY_ATTRIBUTES security, DWORD creationDisposition,
                             DWORD flagsAndAttributes, HANDLE templateFile);
WIN32_API BOOL DeviceIoControl(HANDLE device, DWORD ioControlCode, LPVOID inBuffer,
                               DWORD inBufferSize, LPVOID outBuffer, DWORD outBufferSize,
                               LPDWORD bytesReturned, LPOVERLAPPED overlapped);
WIN32_API BOOL GetSystemPowerStatus(LPSYSTEM_POWER_STATUS status);
WIN32_API LSTATUS RegGetValueA(HKEY key, LPCSTR subKey, LPCSTR value, DWORD flags, LPDWORD type,
                               PVOID data, LPDWORD dataSize);
}

// The platform layer speaks Unicode, as a Windows build with UNICODE does.
#define CreateFile CreateFileW

static_assert(sizeof(SYSTEM_POWER_STATUS) == 12, "SYSTEM_POWER_STATUS is 12 bytes");

static_assert(sizeof(GUID) == 16, "GUID is 16 bytes");
static_assert(sizeof(DWORD) == 4 && sizeof(LONG) == 4 && sizeof(BOOL) == 4, "32-bit integers");
static_assert(sizeof(WCHAR) == 2, "WCHAR is a 16-bit unit");
static_assert(sizeof(HANDLE) == 8, "64-bit handles");
