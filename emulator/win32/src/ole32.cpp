// COM start-up, security and object creation of the platform layer.

#include <objbase.h>
#include <wbemidl.h>

#include "com_objects.h"
#include "emulator/notebook.h"

extern "C" {

const IID IID_IUnknown = {0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

HRESULT CoInitializeEx(LPVOID, DWORD coInit) {
    emulator::Notebook &notebook = emulator::Notebook::instance();
    return notebook.com().initialize(coInit, notebook.counters());
}

void CoUninitialize(void) {
    emulator::Notebook &notebook = emulator::Notebook::instance();
    notebook.com().uninitialize(notebook.counters());
}

HRESULT CoInitializeSecurity(PSECURITY_DESCRIPTOR, LONG, SOLE_AUTHENTICATION_SERVICE *, void *,
                             DWORD, DWORD, void *, DWORD, void *) {
    return emulator::Notebook::instance().com().initializeSecurity();
}

HRESULT CoCreateInstance(REFCLSID clsid, LPUNKNOWN outer, DWORD context, REFIID iid,
                         LPVOID *object) {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    emulator::ComRuntime &com = emulator::Notebook::instance().com();
    if (!com.usable()) return CO_E_NOTINITIALIZED;
    if (com.fails("CoCreateInstance") || clsid != CLSID_WbemLocator ||
        (context & CLSCTX_INPROC_SERVER) == 0) {
        return REGDB_E_CLASSNOTREG;
    }
    if (outer != nullptr) return 0x80040110L /* CLASS_E_NOAGGREGATION */;
    return win32_com::createLocator(iid, object);
}

HRESULT CoSetProxyBlanket(IUnknown *proxy, DWORD, DWORD, OLECHAR *, DWORD, DWORD,
                          RPC_AUTH_IDENTITY_HANDLE, DWORD) {
    if (proxy == nullptr) return E_INVALIDARG;
    if (emulator::Notebook::instance().com().fails("CoSetProxyBlanket")) return E_ACCESSDENIED;
    return S_OK;
}
}
