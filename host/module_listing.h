#pragma once

#include "battery_module/module_interface.h"
#include "run_view.h"

// --list, and a command line that runs nothing: the module's path, its
// diagnostics and tests, and the batteries with their properties, in the
// view's language.
void printModuleLists(ModuleInterface &module, const RunView &view);
