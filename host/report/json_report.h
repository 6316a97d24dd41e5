#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "battery_module/module_interface.h"
#include "model/run_record.h"
#include "model/run_summary.h"

// The JSON report of one invocation of the host. Field names are stable and
// documented in the README.
namespace json_report {

nlohmann::json batteries(ModuleInterface &module);
nlohmann::json runs(const std::vector<RunRecord> &records);
// The whole report but the machine's state, which is read once the module
// is released; `stoppedBy` is the signal that stopped the run, 0 for none.
nlohmann::json document(const RunSummary &summary, int exitCode, int stoppedBy);

} // namespace json_report
