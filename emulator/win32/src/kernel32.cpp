// Time, errors and memory of the platform layer.

#include <windows.h>

#include <cstdlib>

#include "emulator/notebook.h"

namespace {
thread_local DWORD lastError = ERROR_SUCCESS;
}

extern "C" {

DWORD GetTickCount(void) {
    return emulator::Notebook::instance().clock().tickCount();
}

void Sleep(DWORD milliseconds) {
    emulator::Notebook::instance().clock().sleep(milliseconds);
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
