#include "support/shared_library.h"

#include <windows.h>

SharedLibrary::SharedLibrary(const char *path) : handle_(LoadLibraryA(path)) {
    if (handle_ == nullptr) error_ = "LoadLibrary failed with " + std::to_string(GetLastError());
}

SharedLibrary::~SharedLibrary() {
    if (handle_ != nullptr) FreeLibrary(static_cast<HMODULE>(handle_));
}

void *SharedLibrary::symbol(const char *name) const {
    if (handle_ == nullptr) return nullptr;
    return reinterpret_cast<void *>(GetProcAddress(static_cast<HMODULE>(handle_), name));
}
