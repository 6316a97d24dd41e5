#pragma once

#include <string>
#include <utility>
#include <vector>

#include "emulator/emulator_api.h"
#include "emulator/scenario.h"

namespace emulator {

struct LoadResult {
    bool ok = false;
    Scenario scenario;
    std::string error; // one line naming the file and the field
};

// A built-in name ("default", "worn", ...) or the path of a JSON file.
EMULATOR_API LoadResult loadScenario(const std::string &nameOrPath);
// Parses scenario text; `source` names it in error messages.
EMULATOR_API LoadResult parseScenario(const std::string &text, const std::string &source);

struct BuiltinScenario {
    std::string name;
    std::string description;
};
EMULATOR_API std::vector<BuiltinScenario> builtinScenarios();

} // namespace emulator
