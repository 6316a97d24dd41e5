#include "support/shared_library.h"

#include <dlfcn.h>

SharedLibrary::SharedLibrary(const char *path) : handle_(dlopen(path, RTLD_NOW | RTLD_LOCAL)) {
    if (handle_ == nullptr) error_ = dlerror();
}

SharedLibrary::~SharedLibrary() {
    if (handle_ != nullptr) dlclose(handle_);
}

void *SharedLibrary::symbol(const char *name) const {
    return handle_ != nullptr ? dlsym(handle_, name) : nullptr;
}
