// Time, errors and handles of the platform layer.

#include <windows.h>

#include "emulator/notebook.h"

namespace {
thread_local DWORD lastError = ERROR_SUCCESS;
}

extern "C" {

DWORD GetTickCount(void) { return emulator::Notebook::instance().clock().tickCount(); }

void Sleep(DWORD milliseconds) { emulator::Notebook::instance().clock().sleep(milliseconds); }

DWORD GetLastError(void) { return lastError; }

void SetLastError(DWORD error) { lastError = error; }

// No device can be opened yet, so no handle is valid.
BOOL CloseHandle(HANDLE) {
    SetLastError(ERROR_INVALID_HANDLE);
    return FALSE;
}

HLOCAL LocalFree(HLOCAL memory) {
    ::operator delete(memory);
    return nullptr;
}
}
