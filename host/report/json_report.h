#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "battery_module/module_interface.h"
#include "battery_module/product_version.h"
#include "model/run_record.h"

// The JSON report of one invocation of the host. Field names are stable and
// documented in the README.
namespace json_report {

nlohmann::json batteries(ModuleInterface &module);
nlohmann::json runs(const std::vector<RunRecord> &records);
nlohmann::json version(ProductVersion &version);

} // namespace json_report
