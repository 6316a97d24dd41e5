#pragma once

#include <objbase.h>

// The emulated COM objects of the instrumentation client.
namespace win32_com {

// A new locator for `iid`, with one reference for the caller.
HRESULT createLocator(REFIID iid, LPVOID *object);

} // namespace win32_com
