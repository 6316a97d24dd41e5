#include "module_session.h"

#include "battery_module/product_version.h"

std::unique_ptr<ModuleSession> ModuleSession::open(const std::string &path, std::string &error) {
    return of(ModuleLibrary::load(path, error));
}

std::unique_ptr<ModuleSession> ModuleSession::of(std::unique_ptr<ModuleLibrary> library) {
    if (!library) return nullptr;
    return std::unique_ptr<ModuleSession>(new ModuleSession(std::move(library)));
}

ModuleSession::ModuleSession(std::unique_ptr<ModuleLibrary> library)
    : library_(std::move(library)), module_(library_->getInterface()) {}

// A release without an instance does nothing, so a module that gave no
// interface is released as well.
ModuleSession::~ModuleSession() {
    library_->releaseInterface();
}

std::string ModuleSession::versionText() const {
    ProductVersion &version = *library_->getVersion();
    return std::to_string(version.getMajor()) + "." + std::to_string(version.getMinor()) + "." +
           std::to_string(version.getRevision()) + "." + std::to_string(version.getBuild());
}
