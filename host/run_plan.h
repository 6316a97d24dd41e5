#pragma once

#include <string>
#include <vector>

#include "battery_module/module_interface.h"
#include "battery_module/system_component.h"
#include "battery_module/test.h"
#include "command_line.h"

// The tests and batteries that a command line chose.
struct RunPlan {
    std::vector<Test *> tests;
    std::vector<SystemComponent *> devices;
    std::vector<std::string> deviceIds;
};

namespace run_plan {

// The diagnostic switches of this module: its own rows, then the host's
// -E/--extended for the extended diagnostic, which the module's tables leave
// out although its help text names it.
std::vector<DiagnosticSwitch> switchesOf(ModuleInterface &module);

// Identifier of a battery on the command line: its index ("0", "1") on the
// smart path, its device name ("bat") on the generic path.
std::string deviceIdOf(SystemComponent &component, bool smartPath);

// Each failure names the test letter, identifier or device that is wrong.
bool chooseTests(ModuleInterface &module, const std::vector<DiagnosticChoice> &choices,
                 const std::vector<std::string> &runIds, RunPlan &plan, std::string &error);
bool chooseDevices(ModuleInterface &module, const std::vector<std::string> &ids, RunPlan &plan,
                   std::string &error);
// Whether a test of the extended diagnostic is among the chosen.
bool includesExtended(const RunPlan &plan);

} // namespace run_plan
