#pragma once

#include <optional>
#include <string>

#include "platform_layer/battery_facts.h"
#include "power_supply.h"

// What the battery class driver tells of a battery, made from its attributes.
// Nothing means the level fails: an attribute it needs is absent, or one
// it reads is malformed.
namespace platform_layer::battery_records {

std::optional<BatteryFigures> information(PowerSupply &battery);
// Tenths of a kelvin.
std::optional<uint32_t> temperature(PowerSupply &battery);
std::optional<BatteryDate> manufactureDate(PowerSupply &battery);
// Serial number, manufacturer and model name joined with nothing between
// them; a part the kernel does not give is left out.
std::optional<std::string> uniqueId(PowerSupply &battery);
std::optional<BatteryStatus> status(PowerSupply &battery, bool acOnLine);

// Design voltage in millivolts, for the instrumentation service.
std::optional<int64_t> designVoltage_mV(PowerSupply &battery);

} // namespace platform_layer::battery_records
