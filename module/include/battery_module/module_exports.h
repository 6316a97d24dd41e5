#pragma once

// The three functions the module library exports, unmangled. A host looks
// them up by these names (dlsym / GetProcAddress) and reaches everything else
// through virtual operations.

class ModuleInterface;
class ProductVersion;

extern "C" {
using GetModuleInterfaceInstanceFn = ModuleInterface *(*)();
using GetProductVersionFn = ProductVersion *(*)();
using ReleaseModuleInterfaceInstanceFn = void (*)();
}

namespace battery_module {
inline constexpr const char *kGetModuleInterfaceInstance = "GetModuleInterfaceInstance";
inline constexpr const char *kGetProductVersion = "GetProductVersion";
inline constexpr const char *kReleaseModuleInterfaceInstance = "ReleaseModuleInterfaceInstance";
} // namespace battery_module
