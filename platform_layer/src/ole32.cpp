// COM start-up, security and object creation of the platform layer.

#include <objbase.h>
#include <wbemidl.h>

#include "com_apartment.h"
#include "com_objects.h"
#include "platform_layer/machine.h"

extern "C" {

const IID IID_IUnknown = {0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

HRESULT CoInitializeEx(LPVOID, DWORD coInit) {
    platform_layer::Machine &machine = platform_layer::currentMachine();
    const HRESULT result = machine.comApartment().initialize(coInit, machine.faults());
    if (SUCCEEDED(result)) machine.note(platform_layer::LayerEvent::ComStarted);
    return result;
}

void CoUninitialize(void) {
    platform_layer::Machine &machine = platform_layer::currentMachine();
    machine.note(machine.comApartment().uninitialize()
                     ? platform_layer::LayerEvent::ComEnded
                     : platform_layer::LayerEvent::ComEndedUnbalanced);
}

HRESULT CoInitializeSecurity(PSECURITY_DESCRIPTOR, LONG, SOLE_AUTHENTICATION_SERVICE *, void *,
                             DWORD, DWORD, void *, DWORD, void *) {
    platform_layer::Machine &machine = platform_layer::currentMachine();
    return machine.comApartment().initializeSecurity(machine.faults());
}

HRESULT CoCreateInstance(REFCLSID clsid, LPUNKNOWN outer, DWORD context, REFIID iid,
                         LPVOID *object) {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    platform_layer::Machine &machine = platform_layer::currentMachine();
    if (!machine.comApartment().usable()) return CO_E_NOTINITIALIZED;
    if (machine.faults().comStepFails("CoCreateInstance") || clsid != CLSID_WbemLocator ||
        (context & CLSCTX_INPROC_SERVER) == 0) {
        return REGDB_E_CLASSNOTREG;
    }
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    return win32_com::createLocator(iid, object);
}

HRESULT CoSetProxyBlanket(IUnknown *proxy, DWORD, DWORD, OLECHAR *, DWORD, DWORD,
                          RPC_AUTH_IDENTITY_HANDLE, DWORD) {
    if (proxy == nullptr) return E_INVALIDARG;
    if (platform_layer::currentMachine().faults().comStepFails("CoSetProxyBlanket"))
        return E_ACCESSDENIED;
    return S_OK;
}
}
