#pragma once

// The configuration manager: finding a device node and re-enumerating it.

#include <windows.h>

typedef DWORD DEVINST;
typedef DEVINST *PDEVINST;
typedef CHAR *DEVINSTID_A;
typedef DWORD CONFIGRET;

#define CR_SUCCESS 0x00000000u
#define CR_INVALID_POINTER 0x00000003u
#define CR_INVALID_FLAG 0x00000004u
#define CR_INVALID_DEVNODE 0x00000005u
#define CR_NO_SUCH_DEVNODE 0x0000000Du

#define CM_LOCATE_DEVNODE_NORMAL 0x00000000u
#define CM_LOCATE_DEVNODE_PHANTOM 0x00000001u
#define CM_REENUMERATE_NORMAL 0x00000000u
#define CM_REENUMERATE_SYNCHRONOUS 0x00000001u

extern "C" {
WIN32_API CONFIGRET CM_Locate_DevNodeA(PDEVINST devInst, DEVINSTID_A deviceId, ULONG flags);
WIN32_API CONFIGRET CM_Reenumerate_DevNode(DEVINST devInst, ULONG flags);
}
