#include "module_library.h"

#include <dlfcn.h>

std::unique_ptr<ModuleLibrary> ModuleLibrary::load(const std::string &path, std::string &error) {
    void *handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        const char *message = dlerror();
        error = message != nullptr ? message : "cannot load " + path;
        return nullptr;
    }
    std::unique_ptr<ModuleLibrary> library(new ModuleLibrary(handle));
    library->getInterface = reinterpret_cast<GetModuleInterfaceInstanceFn>(
        dlsym(handle, battery_module::kGetModuleInterfaceInstance));
    library->getVersion =
        reinterpret_cast<GetProductVersionFn>(dlsym(handle, battery_module::kGetProductVersion));
    library->releaseInterface = reinterpret_cast<ReleaseModuleInterfaceInstanceFn>(
        dlsym(handle, battery_module::kReleaseModuleInterfaceInstance));
    if (!library->getInterface || !library->getVersion || !library->releaseInterface) {
        error = path + ": not a battery module (an export is missing)";
        return nullptr;
    }
    return library;
}

ModuleLibrary::~ModuleLibrary() {
    dlclose(handle_);
}
