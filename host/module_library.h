#pragma once

#include <memory>
#include <string>

#include "battery_module/module_exports.h"

// The module library, loaded the way any host loads it: by path, through its
// three exports only.
class ModuleLibrary {
public:
    // Loads the library; on failure `error` holds the loader's message.
    static std::unique_ptr<ModuleLibrary> load(const std::string &path, std::string &error);

    ~ModuleLibrary();
    ModuleLibrary(const ModuleLibrary &) = delete;
    ModuleLibrary &operator=(const ModuleLibrary &) = delete;

    GetModuleInterfaceInstanceFn getInterface = nullptr;
    GetProductVersionFn getVersion = nullptr;
    ReleaseModuleInterfaceInstanceFn releaseInterface = nullptr;

private:
    explicit ModuleLibrary(void *handle) : handle_(handle) {}
    void *handle_;
};
