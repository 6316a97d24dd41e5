#pragma once

class ModuleInterface;

// Builds the module's one interface object, deciding between the smart path
// (embedded controller) and the generic path (operating system). Gives null
// when the resource or the manager could not be made.
ModuleInterface *assembleModuleInterface();

// Deletes everything an interface from assembleModuleInterface holds, in the
// order resource, manager, each diagnostic after its tests, interface last.
void releaseModuleInterface(ModuleInterface *moduleInterface);
