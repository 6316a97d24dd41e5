#pragma once

#include <string>

#include "battery_module/module_interface.h"
#include "emulator/notebook.h"
#include "frame/assembly.h"

// The module as the host sees it, assembled on a built-in scenario of the
// emulated notebook; released when the fuzz target ends.
class FuzzModule {
public:
    explicit FuzzModule(const std::string &scenario) {
        if (!emulator::Notebook::instance().load(scenario).ok) std::abort();
        module_ = assembleModuleInterface();
        if (module_ == nullptr) std::abort();
    }
    ~FuzzModule() { releaseModuleInterface(module_); }
    FuzzModule(const FuzzModule &) = delete;
    FuzzModule &operator=(const FuzzModule &) = delete;

    ModuleInterface &operator*() const { return *module_; }
    ModuleInterface *operator->() const { return module_; }

private:
    ModuleInterface *module_;
};
