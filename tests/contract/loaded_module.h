#pragma once

#include <gtest/gtest.h>

#include "battery_module/module_exports.h"
#include "support/shared_library.h"

// The module library opened at run time and its three exports, exactly as a
// host built from the public headers reaches them.
class LoadedModule {
public:
    LoadedModule() : library_(BATTERY_MODULE_PATH) {
        if (!library_.opened()) {
            ADD_FAILURE() << library_.error();
            return;
        }
        getInterface = reinterpret_cast<GetModuleInterfaceInstanceFn>(
            library_.symbol(battery_module::kGetModuleInterfaceInstance));
        getVersion = reinterpret_cast<GetProductVersionFn>(
            library_.symbol(battery_module::kGetProductVersion));
        release = reinterpret_cast<ReleaseModuleInterfaceInstanceFn>(
            library_.symbol(battery_module::kReleaseModuleInterfaceInstance));
    }
    ~LoadedModule() {
        if (release != nullptr) release();
    }
    LoadedModule(const LoadedModule &) = delete;
    LoadedModule &operator=(const LoadedModule &) = delete;

    bool ok() const { return getInterface && getVersion && release; }

    GetModuleInterfaceInstanceFn getInterface = nullptr;
    GetProductVersionFn getVersion = nullptr;
    ReleaseModuleInterfaceInstanceFn release = nullptr;

private:
    SharedLibrary library_;
};
