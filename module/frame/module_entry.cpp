// The three exports of the module library. No C++ exception leaves them.


#include "battery_module/module_interface.h"
#include "battery_module/product_version.h"
#include "frame/assembly.h"
#include "module_api.h"

namespace {
ModuleInterface *moduleInterfaceInstance = nullptr;
} // namespace

extern "C" BATTERY_MODULE_API ModuleInterface *GetModuleInterfaceInstance() {
    if (moduleInterfaceInstance == nullptr) {
        moduleInterfaceInstance = assembleModuleInterface();
    }
    return moduleInterfaceInstance;
}

extern "C" BATTERY_MODULE_API ProductVersion *GetProductVersion() {
    // Function-local static: its one-time set-up is safe against concurrent
    // first calls.
    static ProductVersion version(4, 37, 0, 209);
    return &version;
}

extern "C" BATTERY_MODULE_API void ReleaseModuleInterfaceInstance() {
    if (moduleInterfaceInstance == nullptr) {
        return;
    }
    try {
        releaseModuleInterface(moduleInterfaceInstance);
    } catch (...) {
        // Destructors do not throw; this only keeps the export's promise.
    }
    moduleInterfaceInstance = nullptr;
}
