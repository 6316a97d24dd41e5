#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "battery_module/module_exports.h"
#include "module_library.h"

// The module library opened at run time by the host's own loader, and its
// three exports, exactly as a host built from the public headers reaches
// them. Its instance is released when the test is done with it.
class LoadedModule {
public:
    LoadedModule() {
        std::string error;
        library_ = ModuleLibrary::load(BATTERY_MODULE_PATH, error);
        if (!library_) {
            ADD_FAILURE() << error;
            return;
        }
        getInterface = library_->getInterface;
        getVersion = library_->getVersion;
        release = library_->releaseInterface;
    }
    ~LoadedModule() {
        if (release != nullptr) release();
    }
    LoadedModule(const LoadedModule &) = delete;
    LoadedModule &operator=(const LoadedModule &) = delete;

    bool ok() const { return library_ != nullptr; }

    GetModuleInterfaceInstanceFn getInterface = nullptr;
    GetProductVersionFn getVersion = nullptr;
    ReleaseModuleInterfaceInstanceFn release = nullptr;

private:
    std::unique_ptr<ModuleLibrary> library_;
};
