#pragma once

#include <memory>
#include <string>

#include "battery_module/module_interface.h"
#include "module_library.h"

// The module loaded for one invocation of the host and the interface taken
// from it. Ending the session releases the interface, before the library is
// unloaded, on every way out of the host.
class ModuleSession {
public:
    // Loads the library and asks it for its interface; null, with the
    // loader's message in `error`, when the library cannot be loaded.
    static std::unique_ptr<ModuleSession> open(const std::string &path, std::string &error);
    // The session of a library already loaded; null for a null library.
    static std::unique_ptr<ModuleSession> of(std::unique_ptr<ModuleLibrary> library);
    ~ModuleSession();
    ModuleSession(const ModuleSession &) = delete;
    ModuleSession &operator=(const ModuleSession &) = delete;

    // Null when the module gave no interface.
    ModuleInterface *module() const { return module_; }
    // "4.37.0.209": the module's product version.
    std::string versionText() const;

private:
    explicit ModuleSession(std::unique_ptr<ModuleLibrary> library);

    std::unique_ptr<ModuleLibrary> library_;
    ModuleInterface *module_;
};
