#pragma once

// COM start-up, security and object creation as the module uses them,
// answered by the emulated notebook's small COM runtime.

#include <windows.h>

#ifndef STDMETHODCALLTYPE
#define STDMETHODCALLTYPE
#endif

typedef WCHAR OLECHAR;
typedef OLECHAR *LPOLESTR;
typedef const OLECHAR *LPCOLESTR;
typedef void *PSECURITY_DESCRIPTOR;
typedef void *RPC_AUTH_IDENTITY_HANDLE;
struct SOLE_AUTHENTICATION_SERVICE;

// CoInitializeEx
#define COINIT_MULTITHREADED 0x0
#define COINIT_APARTMENTTHREADED 0x2

// CoCreateInstance
#define CLSCTX_INPROC_SERVER 0x1

// Authentication, authorisation and impersonation of CoInitializeSecurity
// and CoSetProxyBlanket.
#define RPC_C_AUTHN_LEVEL_DEFAULT 0
#define RPC_C_AUTHN_LEVEL_CALL 3
#define RPC_C_IMP_LEVEL_IMPERSONATE 3
#define RPC_C_AUTHN_WINNT 10
#define RPC_C_AUTHZ_NONE 0
#define EOAC_NONE 0

extern "C" WIN32_API const IID IID_IUnknown;

// The base of every COM interface: reference counting and interface lookup.
struct IUnknown {
    virtual HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void **object) = 0;
    virtual ULONG STDMETHODCALLTYPE AddRef() = 0;
    virtual ULONG STDMETHODCALLTYPE Release() = 0;

protected:
    ~IUnknown() = default;
};
typedef IUnknown *LPUNKNOWN;

extern "C" {
WIN32_API HRESULT CoInitializeEx(LPVOID reserved, DWORD coInit);
WIN32_API void CoUninitialize(void);
WIN32_API HRESULT CoInitializeSecurity(PSECURITY_DESCRIPTOR securityDescriptor, LONG authServices,
                                       SOLE_AUTHENTICATION_SERVICE *authServiceList,
                                       void *reserved1, DWORD authnLevel, DWORD impLevel,
                                       void *authList, DWORD capabilities, void *reserved3);
WIN32_API HRESULT CoCreateInstance(REFCLSID clsid, LPUNKNOWN outer, DWORD context, REFIID iid,
                                   LPVOID *object);
WIN32_API HRESULT CoSetProxyBlanket(IUnknown *proxy, DWORD authnService, DWORD authzService,
                                    OLECHAR *serverPrincipal, DWORD authnLevel, DWORD impLevel,
                                    RPC_AUTH_IDENTITY_HANDLE authInfo, DWORD capabilities);
}

static_assert(sizeof(IUnknown) == 8, "an interface is one vtable pointer");
