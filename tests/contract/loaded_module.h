#pragma once

#include <dlfcn.h>

#include <gtest/gtest.h>

#include "battery_module/module_exports.h"

// The module library opened with dlopen and its three exports, exactly as a
// host built from the public headers reaches them.
class LoadedModule {
public:
    LoadedModule() {
        handle_ = dlopen(BATTERY_MODULE_PATH, RTLD_NOW | RTLD_LOCAL);
        if (handle_ == nullptr) {
            ADD_FAILURE() << dlerror();
            return;
        }
        getInterface = reinterpret_cast<GetModuleInterfaceInstanceFn>(
            dlsym(handle_, battery_module::kGetModuleInterfaceInstance));
        getVersion = reinterpret_cast<GetProductVersionFn>(
            dlsym(handle_, battery_module::kGetProductVersion));
        release = reinterpret_cast<ReleaseModuleInterfaceInstanceFn>(
            dlsym(handle_, battery_module::kReleaseModuleInterfaceInstance));
    }
    ~LoadedModule() {
        if (release != nullptr) release();
        if (handle_ != nullptr) dlclose(handle_);
    }
    LoadedModule(const LoadedModule &) = delete;
    LoadedModule &operator=(const LoadedModule &) = delete;

    bool ok() const { return getInterface && getVersion && release; }

    GetModuleInterfaceInstanceFn getInterface = nullptr;
    GetProductVersionFn getVersion = nullptr;
    ReleaseModuleInterfaceInstanceFn release = nullptr;

private:
    void *handle_ = nullptr;
};
