#pragma once

#include <map>
#include <string>

namespace emulator {
// Name to JSON text of every file under scenarios/, compiled in.
const std::map<std::string, std::string> &builtinScenarioTexts();
} // namespace emulator
