#pragma once

#include <memory>
#include <string>
#include <vector>

#include "module_library.h"

// Where the host finds the module library. Without `--module` it looks
// beside its own file (the real one, wherever a symlink or PATH led to it),
// then in the installed layout's private folder, ../lib/battery_host.
namespace module_location {

// The folder of this program's own file, symlinks resolved; the folder named
// by argv[0] only when the system cannot say.
std::string programFolder(const char *argv0);

// The module library's file name on this system.
const char *libraryFileName();

// The places looked at when the user names none, in order.
std::vector<std::string> searchedPaths(const char *argv0);

// Loads `chosen` when the user named one (--module), else the first of the
// searched paths that exists; when none does, `error` names every place
// looked at.
std::unique_ptr<ModuleLibrary> load(const std::string &chosen, const char *argv0,
                                    std::string &error);

} // namespace module_location
