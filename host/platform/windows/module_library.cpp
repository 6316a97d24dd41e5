#include "module_library.h"

#include <windows.h>

namespace {
template <typename Function> Function exportOf(HMODULE module, const char *name) {
    return reinterpret_cast<Function>(reinterpret_cast<void *>(GetProcAddress(module, name)));
}
} // namespace

std::unique_ptr<ModuleLibrary> ModuleLibrary::load(const std::string &path, std::string &error) {
    HMODULE module = LoadLibraryA(path.c_str());
    if (module == nullptr) {
        error = "cannot load " + path + " (error " + std::to_string(GetLastError()) + ")";
        return nullptr;
    }
    std::unique_ptr<ModuleLibrary> library(new ModuleLibrary(module));
    library->getInterface =
        exportOf<GetModuleInterfaceInstanceFn>(module, battery_module::kGetModuleInterfaceInstance);
    library->getVersion = exportOf<GetProductVersionFn>(module, battery_module::kGetProductVersion);
    library->releaseInterface = exportOf<ReleaseModuleInterfaceInstanceFn>(
        module, battery_module::kReleaseModuleInterfaceInstance);
    if (!library->getInterface || !library->getVersion || !library->releaseInterface) {
        error = path + ": not a battery module (an export is missing)";
        return nullptr;
    }
    return library;
}

ModuleLibrary::~ModuleLibrary() {
    FreeLibrary(static_cast<HMODULE>(handle_));
}
