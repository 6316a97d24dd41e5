#pragma once

// The keys of the module's answers that a host reads to find its way: the
// properties it keeps figures of, the lines of the charge report, the prompt
// that asks to unplug, and the parameters a host fills in. The module writes
// them from here and the host reads them from here.
namespace keys {

// Battery properties.
inline constexpr const char *NAME = "NAME";
inline constexpr const char *MANUFACTURER = "MANUFACTURER";
inline constexpr const char *SERIAL_NUMBER = "SERIAL_NUMBER";
inline constexpr const char *DESIGN_CAPACITY = "DESIGN_CAPACITY";
inline constexpr const char *FULL_CHARGE_CAPACITY = "FULL_CHARGE_CAPACITY";
inline constexpr const char *CYCLE_COUNT = "CYCLE_COUNT";
inline constexpr const char *TEMPERATURE = "TEMPERATURE";

// The charge report: the last lines a charge or discharge test logs.
inline constexpr const char *TOTAL_BATTERY_CHARGE = "TOTAL_BATTERY_CHARGE";
inline constexpr const char *INITIAL_BATTERY_CHARGE = "INITIAL_BATTERY_CHARGE";
inline constexpr const char *FINAL_BATTERY_CHARGE = "FINAL_BATTERY_CHARGE";

// The discharge test's prompt; the charge test's asks to plug the cable in.
inline constexpr const char *PLEASE_UNPLUG_AC =
    "PLEASE_UNPLUG_THE_AC_CABLE_BEFORE_PROCEDING_TO_THE_TEST";

// Test parameters: the charge tests' duration in minutes, and the flow that
// keeps a charge test going when the charge is already above its threshold.
inline constexpr const char *DURATION = "DURATION";
inline constexpr const char *EXECUTION_FLOW = "execution_flow";

} // namespace keys
