#pragma once

#include <cstdint>
#include <vector>

class Diagnostic;
class Resource;
class SystemComponentManager;

// The one object a host gets from GetModuleInterfaceInstance. Holds bare
// pointers; ReleaseModuleInterfaceInstance deletes what they point to.
class ModuleInterface {
public:
    ModuleInterface(const std::vector<Diagnostic *> &diagnostics, Resource *resource,
                    SystemComponentManager *manager, void *auxiliary);
    virtual ~ModuleInterface();

    virtual Diagnostic *getDiagnostic(uint32_t index);
    virtual uint64_t getDiagnosticCount();
    virtual Resource *getResource();
    virtual SystemComponentManager *getComponentManager();
    virtual void *getExtension(uint32_t index);
    virtual uint64_t getExtensionCount();
    virtual void *getAuxiliaryObject();
    virtual bool falseQuery();

private:
    std::vector<Diagnostic *> diagnostics_;
    Resource *resource_;
    SystemComponentManager *manager_;
    void *auxiliary_;
    std::vector<void *> extensions_;
};
