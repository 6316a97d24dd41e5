#pragma once

#include <string>
#include <vector>

#include "battery_rules/host_keys.h"

// Message keys: texts handed to the host as they stand (full stops, colons
// and "_|" included). The host turns them into display text. They are
// constant-initialised literals, so no static-initialisation order applies.
namespace keys {

// Names and descriptions of the module, its diagnostics and its tests.
inline constexpr const char *BATTERY_QUICK_DIAGNOSTIC = "BATTERY_QUICK_DIAGNOSTIC";
inline constexpr const char *BATTERY_TESTS_TOOLTIP = "BATTERY_TESTS_TOOLTIP";
inline constexpr const char *BATTERY_EXTENDED_DIAGNOSTIC = "BATTERY_EXTENDED_DIAGNOSTIC";
inline constexpr const char *BATTERY_EXTENDED_TOOLTIP = "BATTERY_EXTENDED_TOOLTIP";
inline constexpr const char *BATTERY_HEALTH_TEST = "BATTERY_HEALTH_TEST";
inline constexpr const char *BATTERY_HEALTH_TEST_DESCRIPTION = "BATTERY_HEALTH_TEST_DESCRIPTION";
inline constexpr const char *BATTERY_DISCHARGE_TEST = "BATTERY_DISCHARGE_TEST";
inline constexpr const char *BATTERY_DISCHARGE_TEST_DESCRIPTION =
    "BATTERY_DISCHARGE_TEST_DESCRIPTION";
inline constexpr const char *BATTERY_CHARGE_TEST = "BATTERY_CHARGE_TEST";
inline constexpr const char *BATTERY_CHARGE_TEST_DESCRIPTION = "BATTERY_CHARGE_TEST_DESCRIPTION";
inline constexpr const char *SMART_BATTERY_HEALTH_TEST = "SMART_BATTERY_HEALTH_TEST";
inline constexpr const char *SMART_BATTERY_HEALTH_TEST_DESCRIPTION =
    "SMART_BATTERY_HEALTH_TEST_DESCRIPTION";
inline constexpr const char *BATTERY_TEMPERATURE_TEST = "BATTERY_TEMPERATURE_TEST";
inline constexpr const char *BATTERY_TEMPERATURE_TEST_DESCRIPTION =
    "BATTERY_TEMPERATURE_TEST_DESCRIPTION";

// Messages of the tests.
inline constexpr const char *CHARGE_BELOW_THRESHOLD =
    "THE_TEST_WAS_ABORTED_BECAUSE_THE_BATTERY_REMAINING_CHARGE_IS_BELOW_THE_FOLLOWING_THRESHOLD";
inline constexpr const char *CHARGE_ABOVE_THRESHOLD =
    "THE_TEST_WAS_ABORTED_BECAUSE_THE_BATTERY_REMAINING_CHARGE_IS_ABOVE_THE_FOLLOWING_THRESHOLD:";
inline constexpr const char *PLEASE_RECHARGE = "PLEASE_RECHARGE_THE_BATTERY_AND_TRY_AGAIN";
inline constexpr const char *PLEASE_DISCHARGE = "PLEASE_DISCHARGE_THE_BATTERY_AND_TRY_AGAIN.";
inline constexpr const char *ABORTED_AC_PLUGGED =
    "THE_TEST_WAS_ABORTED_BECAUSE_THE_AC_CABLE_IS_PLUGGED";
inline constexpr const char *ABORTED_AC_UNPLUGGED =
    "THE_TEST_WAS_ABORTED_BECAUSE_THE_AC_CABLE_IS_UNPLUGGED";
inline constexpr const char *PLEASE_PLUG_AC =
    "PLEASE_PLUG_THE_AC_CABLE_BEFORE_PROCEDING_TO_THE_TEST";
inline constexpr const char *INTERNAL_ERROR =
    "AN_INTERNAL_ERROR_OCCURRED._|THIS_DOES_NOT_INDICATE_A_FAILURE._|PLEASE_TRY_AGAIN.";
inline constexpr const char *BATTERY_NOT_ACTIVE =
    "THE_SYSTEM_HAS_SET_THIS_BATTERY_AS_NOT_ACTIVE._|THE_TEST_CANNOT_PROCEED.";
inline constexpr const char *NO_LONGER_APPLICABLE_NOT_ACTIVE =
    "THIS_TEST_IS_NO_LONGER_APPLICABLE_BECAUSE_THE_SYSTEM_HAS_SET_THIS_BATTERY_AS_NOT_ACTIVE.";
inline constexpr const char *LOWER_THAN_EXPECTED_CAPACITY =
    "YOUR_BATTERY_HAS_A_LOWER_THAN_EXPECTED_RELATIVE_CAPACITY.";
inline constexpr const char *LOW_CAPACITY_NORMAL_USE = "LOW_BATTERY_CAPACITY_DUE_TO_NORMAL_USE";
inline constexpr const char *NOT_CHARGING_PROPERLY = "YOUR_BATTERY_IS_NOT_CHARGING_PROPERLY.";
inline constexpr const char *NOT_DISCHARGING_PROPERLY = "YOUR_BATTERY_IS_NOT_DISCHARGING_PROPERLY.";
inline constexpr const char *DEVICE_NOT_IDENTIFIED =
    "THIS_TEST_CANNOT_BE_PERFORMED_BECAUSE_THE_DEVICE_COULD_NOT_BE_IDENTIFIED_OR_HAS_BEEN_"
    "DISCONNECTED";
inline constexpr const char *CHARGE_NOT_CALCULATED =
    "THIS_TEST_CANNOT_BE_PERFORMED_BECAUSE_THE_REMAINING_CHARGE_COULD_NOT_BE_CALCULATED";
inline constexpr const char *DEVICE_COMMUNICATION_FAILURE = "DEVICE_COMMUNICATION_FAILURE";
inline constexpr const char *POSSIBLE_DEFECTIVE_COMPONENTS = "POSSIBLE_DEFECTIVE_COMPONENTS";
inline constexpr const char *WINDOWS_POLICY_WARNING = "WINDOWS_POLICY_WARNING";
inline constexpr const char *INPUT_TYPE_NOT_RECOGNIZED =
    "THIS_TEST_CANNOT_BE_PERFORMED_BECAUSE_THE_APPLICATION_COULD_NOT_RECOGNIZE_THE_INPUT_TYPE";
inline constexpr const char *TEMPERATURE_ABOVE_LIMIT =
    "THE_TEMPERATURE_IN_YOUR_BATTERY_IS_ABOVE_THE_LIMIT_SET_BY_THE_MANUFACTURER.";
inline constexpr const char *ABORTED_SYSTEM_EVENT =
    "TEST_ABORTED_BECAUSE_A_SYSTEM_EVENT_THAT_COULD_COMPROMISE_THE_OUTCOME_HAS_HAPPENED";

// Test parameters.
inline constexpr const char *DURATION_MINUTES = "DURATION_(MINUTES)";
inline constexpr const char *INVALID_DURATION_PARAMETER = "INVALID_DURATION_PARAMETER";
inline constexpr const char *DURATION_DESCRIPTION = "DEFINES_THE_TEST_DURATION_IN_MINUTES.";
inline constexpr const char *USE_VALUE_BETWEEN_5_AND_20 = "USE_A_NUMERICAL_VALUE_BETWEEN_5_AND_20";
inline constexpr const char *DURATION_DEFAULT = "10";
inline constexpr const char *DURATION_RANGE = "[5:20]";

// Battery property keys and their values.
inline constexpr const char *BATTERY = "BATTERY";
inline constexpr const char *MAIN_BATTERY = "MAIN_BATTERY";
inline constexpr const char *SECONDARY_BATTERY = "SECONDARY_BATTERY";
inline constexpr const char *CHEMISTRY = "CHEMISTRY";
inline constexpr const char *DESIGN_VOLTAGE = "DESIGN_VOLTAGE";
inline constexpr const char *RELATIVE_CAPACITY = "RELATIVE_CAPACITY";
inline constexpr const char *DRIVER_VERSION = "DRIVER_VERSION";
inline constexpr const char *NOT_AVAILABLE = "NOT_AVAILABLE";
inline constexpr const char *AUTHORIZED = "AUTHORIZED";
inline constexpr const char *ZORLAN_GENUINE = "ZORLAN_GENUINE";
inline constexpr const char *NOT_AUTHENTICATED = "NOT_AUTHENTICATED";
inline constexpr const char *INDEX = "INDEX";
inline constexpr const char *UDI = "UDI";
inline constexpr const char *SBAT = "SBAT";
inline constexpr const char *GENERIC_UDI = "bat";

// Battery chemistries.
inline constexpr const char *OTHER = "OTHER";
inline constexpr const char *CHEMISTRY_UNKNOWN = "CHEMISTRY_UNKNOWN";
inline constexpr const char *LEAD_ACID = "LEAD_ACID";
inline constexpr const char *NICKEL_CADMIUM = "NICKEL_CADMIUM";
inline constexpr const char *NICKEL_METAL_HYDRIDE = "NICKEL_METAL_HYDRIDE";
inline constexpr const char *NICKEL_ZINC = "NICKEL_ZINC";
inline constexpr const char *LITHIUM_ION = "LITHIUM_ION";
inline constexpr const char *ZINC_AIR = "ZINC_AIR";
inline constexpr const char *LITHIUM_POLYMER = "LITHIUM_POLYMER";
inline constexpr const char *RECHARGEABLE_ALKALINE_MANGANESE = "RECHARGEABLE_ALKALINE-MANGANESE";

// Chemistry codes as the operating system reports them.
inline constexpr const char *CODE_LEAD_ACID = "PbAc";
inline constexpr const char *CODE_LITHIUM_ION = "LION";
inline constexpr const char *CODE_LITHIUM_ION_ALT = "Li-I";
inline constexpr const char *CODE_NICKEL_CADMIUM = "NiCd";
inline constexpr const char *CODE_NICKEL_METAL_HYDRIDE = "NiMH";
inline constexpr const char *CODE_NICKEL_ZINC = "NiZn";
inline constexpr const char *CODE_RECHARGEABLE_ALKALINE_MANGANESE = "RAM";

// Units.
inline constexpr const char *UNIT_WH = "Wh";
inline constexpr const char *UNIT_MWH = "mWh";
inline constexpr const char *UNIT_MAH = "mAh";
inline constexpr const char *UNIT_VOLTS = "Volts";
inline constexpr const char *UNIT_DEGREES_CELSIUS = "\xC2\xB0"
                                                    "C";

// Operating-system names.
inline constexpr const char *DESIGN_VOLTAGE_PROPERTY = "DesignVoltage";
inline constexpr const char *BAT_PREFIX = "BAT";

// Parts of the composed device hints.
inline constexpr const char *AC_ADAPTER = "AC_ADAPTER";

// Two-letter component codes; this module is "BA".
inline constexpr const char *COMPONENT_CODES[] = {"BA", "ME", "HD", "MB", "OD", "WF", "PE", "RD",
                                                  "VC", "DI", "MO", "KB", "FN", "CP", "WE", "AU",
                                                  "SE", "CA", "TS", "AC", "MD", "FP", "BT", "TD"};

// Every key that the module can hand to a host as text (a log entry, a
// progress text, a name, a property key or value). Composed lines such as the
// charge report are built from these.
const std::vector<std::string> &allHostKeys();

} // namespace keys

// The two device hints of TestWithDeviceHint<T>, composed on first use from
// the keys above.
const std::string &HINT_BATTERY();
const std::string &HINT_BATTERY_AND_ADAPTER();
