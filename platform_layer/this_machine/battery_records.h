#pragma once

#include <batclass.h>

#include <optional>
#include <string>

#include "power_supply.h"

// The battery class driver's records, made from one battery's attributes.
// Nothing means the level fails: an attribute it needs is absent, or one
// it reads is malformed.
namespace platform_layer::battery_records {

std::optional<BATTERY_INFORMATION> information(PowerSupply &battery);
// Tenths of a kelvin.
std::optional<ULONG> temperature(PowerSupply &battery);
std::optional<BATTERY_MANUFACTURE_DATE> manufactureDate(PowerSupply &battery);
// Serial number, manufacturer and model name joined with nothing between
// them; a part the kernel does not give is left out.
std::optional<std::string> uniqueId(PowerSupply &battery);
std::optional<BATTERY_STATUS> status(PowerSupply &battery, bool acOnLine);

// Design voltage in millivolts, for the instrumentation service.
std::optional<int64_t> designVoltage_mV(PowerSupply &battery);

} // namespace platform_layer::battery_records
