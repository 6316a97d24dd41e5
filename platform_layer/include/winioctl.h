#pragma once

// I/O control codes.

#include <windows.h>

#define CTL_CODE(DeviceType, Function, Method, Access)                                             \
    (((DWORD)(DeviceType) << 16) | ((DWORD)(Access) << 14) | ((DWORD)(Function) << 2) |            \
     (DWORD)(Method))

#define METHOD_BUFFERED 0
#define FILE_ANY_ACCESS 0
#define FILE_READ_ACCESS 0x0001
#define FILE_WRITE_ACCESS 0x0002
#define FILE_DEVICE_BATTERY 0x00000029
#define FILE_DEVICE_VIDEO 0x00000023
