#include "resources/battery_resource.h"

#include <string>

#include "battery_rules/identifiers.h"
#include "frame/keys.h"

namespace {

// The host's command-line program as its help text names it.
constexpr const char *kProgramName = "ZorlanDiagnosticsCLI";

// Example lines are indented to stand under the text after "=> ".
const std::string kExampleIndent(11, ' ');

constexpr int32_t kDiagnosticRow = 0;
constexpr int32_t kTestRow = 2;

std::string usageLine() {
    return std::string("  Usage: ") + kProgramName +
           " -Mbattery [diagnostic]\"[test(s)]\" [device id(s)]\n";
}

std::string exampleLine(const char *arguments) {
    return kExampleIndent + kProgramName + " -Mbattery " + arguments + "\n\n";
}

// The generic path offers the extended diagnostic; its charge tests cannot be
// run from the command line, which the text says.
std::string genericHelpText() {
    std::string text;
    text += "Battery Module help:\n";
    text += usageLine();
    text += "  Diagnostics:\n";
    text += "   -Q, --quick  Runs all test(s) of Quick Battery diagnostic\n";
    text += "   -Q\"[test(s)]\", --quick=\"[test(s)]\"\tRuns chosen test(s) of Quick Battery "
            "diagnostic\n\n";
    text += "   -E, --extended        Runs all test(s) of Extended Battery diagnostic\n";
    text += "   -E\"[test(s)]\", --extended=\"[test(s)]\"     Runs chosen test(s) of Extended "
            "Battery diagnostic\n\n";
    text += "  Quick Tests:\n";
    text += "   h, battery-health-test\t\t\tBattery Health Test\n\n";
    text += "  Extended Tests:\n";
    text += "   d, discharge-test\t\t\t\tDischarge Test*\n";
    text += "   c, charge-test\t\t\t\tCharge Test*\n";
    text += "\n   * Test not supported on CLI\n";
    text += "\n";
    text += "  Examples:\n";
    text += "  => Performs Battery Health Test of diagnostic Quick on device bat of the battery "
            "module\n";
    text += exampleLine("--quick=\"h\" bat");
    return text;
}

std::string smartHelpText() {
    std::string text;
    text += "Battery Module help:\n";
    text += usageLine();
    text += "\n";
    text += " Diagnostics:\n";
    text += "   -Q, --quick\tRuns all test(s) of Quick Battery diagnostic\n";
    text += "   -Q\"[test(s)]\", --quick=\"[test(s)]\"\tRuns chosen test(s) of Quick Battery "
            "diagnostic\n\n";
    text += "\n";
    text += " Quick Tests:\n";
    text += "   h, battery-health-test\t\t\tBattery Health Test\n";
    text += "   t, battery-temperature-test\t\t\tBattery Temperature Test\n";
    text += "\n";
    text += " Examples:\n";
    text += "  => Performs Battery Health Test of diagnostic Quick on device 0 of the battery "
            "module:\n";
    text += exampleLine("--quick=\"h\" 0");
    text += "  => Performs Battery Temperature Test of diagnostic Quick on device 1 of the "
            "battery module:\n";
    text += exampleLine("--quick=\"t\" 1");
    return text;
}

struct KeyRow {
    EntityId id;
    const char *key;
};

// The first row whose composite matches, or an empty string.
template <size_t N> std::string lookUp(const KeyRow (&rows)[N], const EntityId &id) {
    for (const KeyRow &row : rows) {
        if (row.id.composite() == id.composite()) return row.key;
    }
    return std::string();
}

// The health tests of both paths share 12.1.1 and one name. No per-path
// tables of names (where the "SMART_" keys would stand) are kept: no lookup
// would read them.
const KeyRow kDiagnosticNames[] = {
    {ID_QUICK_DIAGNOSTIC, keys::BATTERY_QUICK_DIAGNOSTIC},
    {ID_EXTENDED_DIAGNOSTIC, keys::BATTERY_EXTENDED_DIAGNOSTIC},
};
const KeyRow kDiagnosticTooltips[] = {
    {ID_QUICK_DIAGNOSTIC, keys::BATTERY_TESTS_TOOLTIP},
    {ID_EXTENDED_DIAGNOSTIC, keys::BATTERY_EXTENDED_TOOLTIP},
};
const KeyRow kTestNames[] = {
    {ID_HEALTH_TEST, keys::BATTERY_HEALTH_TEST},
    {ID_DISCHARGE_TEST, keys::BATTERY_DISCHARGE_TEST},
    {ID_CHARGE_TEST, keys::BATTERY_CHARGE_TEST},
    {ID_TEMPERATURE_TEST, keys::BATTERY_TEMPERATURE_TEST},
};
const KeyRow kTestDescriptions[] = {
    {ID_HEALTH_TEST, keys::BATTERY_HEALTH_TEST_DESCRIPTION},
    {ID_DISCHARGE_TEST, keys::BATTERY_DISCHARGE_TEST_DESCRIPTION},
    {ID_CHARGE_TEST, keys::BATTERY_CHARGE_TEST_DESCRIPTION},
    {ID_TEMPERATURE_TEST, keys::BATTERY_TEMPERATURE_TEST_DESCRIPTION},
};

} // namespace

BatteryResource::BatteryResource(const EntityId &id, bool generic) : Resource(id) {
    moduleName = keys::BATTERY;
    componentCode = keys::COMPONENT_CODES[0];

    // The extended diagnostic and the charge tests have no row: the host's
    // command line cannot run them.
    addDiagnosticOption(ID_QUICK_DIAGNOSTIC, {"Q", "quick", kDiagnosticRow});
    if (generic) {
        addTestOption(ID_HEALTH_TEST, {"h", "battery-health-test", kTestRow});
        helpText = genericHelpText();
    } else {
        addTestOption(ID_SMART_HEALTH_TEST, {"h", "battery-health-test", kTestRow});
        addTestOption(ID_TEMPERATURE_TEST, {"t", "battery-temperature-test", kTestRow});
        helpText = smartHelpText();
    }
}

std::string BatteryResource::getDiagnosticName(const EntityId &id) {
    return lookUp(kDiagnosticNames, id);
}

std::string BatteryResource::getTestName(const EntityId &id) {
    return lookUp(kTestNames, id);
}

std::string BatteryResource::getDiagnosticTooltip(const EntityId &id) {
    return lookUp(kDiagnosticTooltips, id);
}

std::string BatteryResource::getTestDescription(const EntityId &id) {
    return lookUp(kTestDescriptions, id);
}
