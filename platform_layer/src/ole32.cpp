// COM start-up, security and object creation of the platform layer.

#include <objbase.h>
#include <wbemidl.h>

#include "com_objects.h"
#include "platform_layer/machine.h"

extern "C" {

const IID IID_IUnknown = {0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

HRESULT CoInitializeEx(LPVOID, DWORD coInit) {
    return platform_layer::currentMachine().comInitialize(coInit);
}

void CoUninitialize(void) {
    platform_layer::currentMachine().comUninitialize();
}

HRESULT CoInitializeSecurity(PSECURITY_DESCRIPTOR, LONG, SOLE_AUTHENTICATION_SERVICE *, void *,
                             DWORD, DWORD, void *, DWORD, void *) {
    return platform_layer::currentMachine().comInitializeSecurity();
}

HRESULT CoCreateInstance(REFCLSID clsid, LPUNKNOWN outer, DWORD context, REFIID iid,
                         LPVOID *object) {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    platform_layer::Machine &machine = platform_layer::currentMachine();
    if (!machine.comUsable()) return CO_E_NOTINITIALIZED;
    if (machine.comStepFails("CoCreateInstance") || clsid != CLSID_WbemLocator ||
        (context & CLSCTX_INPROC_SERVER) == 0) {
        return REGDB_E_CLASSNOTREG;
    }
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    return win32_com::createLocator(iid, object);
}

HRESULT CoSetProxyBlanket(IUnknown *proxy, DWORD, DWORD, OLECHAR *, DWORD, DWORD,
                          RPC_AUTH_IDENTITY_HANDLE, DWORD) {
    if (proxy == nullptr) return E_INVALIDARG;
    if (platform_layer::currentMachine().comStepFails("CoSetProxyBlanket")) return E_ACCESSDENIED;
    return S_OK;
}
}
