// Time, errors and memory of the platform layer.

#include <windows.h>

#include <cstdlib>

#include "platform_layer/machine.h"

namespace {
thread_local DWORD lastError = ERROR_SUCCESS;
}

extern "C" {

DWORD GetTickCount(void) {
    return platform_layer::currentMachine().tickCount();
}

void Sleep(DWORD milliseconds) {
    platform_layer::currentMachine().sleep(milliseconds);
}

DWORD GetLastError(void) {
    return lastError;
}

void SetLastError(DWORD error) {
    lastError = error;
}

// Memory handed out by the layer (PowerGetActiveScheme) comes from malloc.
HLOCAL LocalFree(HLOCAL memory) {
    std::free(memory);
    return nullptr;
}
}
