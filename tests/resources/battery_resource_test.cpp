#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "frame/path_builders.h"
#include "resources/battery_resource.h"

namespace {

enum class Path { Generic, Smart };

std::string pathName(const ::testing::TestParamInfo<Path> &info) {
    return info.param == Path::Generic ? "Generic" : "Smart";
}

std::unique_ptr<Resource> makeResource(Path path) {
    return std::make_unique<BatteryResource>(EntityId(12, 0, 0), path == Path::Generic);
}

// The text cut at each newline; the piece after the last newline is kept,
// so a text ending in "\n\n" ends in two empty lines.
std::vector<std::string> linesOf(const std::string &text) {
    std::vector<std::string> lines;
    size_t start = 0;
    for (size_t end; (end = text.find('\n', start)) != std::string::npos; start = end + 1) {
        lines.push_back(text.substr(start, end - start));
    }
    lines.push_back(text.substr(start));
    return lines;
}

const std::vector<std::string> kGenericHelpLines = {
    "Battery Module help:",
    "  Usage: ZorlanDiagnosticsCLI -Mbattery [diagnostic]\"[test(s)]\" [device id(s)]",
    "  Diagnostics:",
    "   -Q, --quick  Runs all test(s) of Quick Battery diagnostic",
    "   -Q\"[test(s)]\", --quick=\"[test(s)]\"\tRuns chosen test(s) of Quick Battery diagnostic",
    "",
    "   -E, --extended        Runs all test(s) of Extended Battery diagnostic",
    "   -E\"[test(s)]\", --extended=\"[test(s)]\"     Runs chosen test(s) of Extended Battery "
    "diagnostic",
    "",
    "  Quick Tests:",
    "   h, battery-health-test\t\t\tBattery Health Test",
    "",
    "  Extended Tests:",
    "   d, discharge-test\t\t\t\tDischarge Test*",
    "   c, charge-test\t\t\t\tCharge Test*",
    "",
    "   * Test not supported on CLI",
    "",
    "  Examples:",
    "  => Performs Battery Health Test of diagnostic Quick on device bat of the battery module",
    "           ZorlanDiagnosticsCLI -Mbattery --quick=\"h\" bat",
    "",
    "",
};

const std::vector<std::string> kSmartHelpLines = {
    "Battery Module help:",
    "  Usage: ZorlanDiagnosticsCLI -Mbattery [diagnostic]\"[test(s)]\" [device id(s)]",
    "",
    " Diagnostics:",
    "   -Q, --quick\tRuns all test(s) of Quick Battery diagnostic",
    "   -Q\"[test(s)]\", --quick=\"[test(s)]\"\tRuns chosen test(s) of Quick Battery diagnostic",
    "",
    "",
    " Quick Tests:",
    "   h, battery-health-test\t\t\tBattery Health Test",
    "   t, battery-temperature-test\t\t\tBattery Temperature Test",
    "",
    " Examples:",
    "  => Performs Battery Health Test of diagnostic Quick on device 0 of the battery module:",
    "           ZorlanDiagnosticsCLI -Mbattery --quick=\"h\" 0",
    "",
    "  => Performs Battery Temperature Test of diagnostic Quick on device 1 of the battery "
    "module:",
    "           ZorlanDiagnosticsCLI -Mbattery --quick=\"t\" 1",
    "",
    "",
};

struct OptionRow {
    EntityId id;
    const char *shortName;
    const char *longName;
    int32_t kind;
};

void expectOptionTable(const Resource::OptionTable &actual, const std::vector<OptionRow> &expected,
                       const char *table) {
    EXPECT_EQ(actual.size(), expected.size()) << table;
    for (const OptionRow &row : expected) {
        SCOPED_TRACE(std::string(table) + " row " + std::to_string(row.id.diagnostic()) + "." +
                     std::to_string(row.id.test()));
        const auto found = actual.find(row.id);
        ASSERT_NE(found, actual.end());
        EXPECT_EQ(found->second.shortName, row.shortName);
        EXPECT_EQ(found->second.longName, row.longName);
        EXPECT_EQ(found->second.kind, row.kind);
    }
}

struct KeyCase {
    EntityId id;
    const char *key; // "" when the identifier names nothing that the lookup answers
};

// Identifiers that no lookup answers, whatever it is asked.
const std::vector<KeyCase> kNobody = {
    {EntityId(12, 0, 0), ""}, {EntityId(12, 1, 2), ""}, {EntityId(12, 1, 3), ""},
    {EntityId(12, 2, 1), ""}, {EntityId(13, 1, 1), ""}, {EntityId(0, 1, 1), ""},
    {EntityId(12, 3, 0), ""},
};

std::vector<KeyCase> with(std::vector<KeyCase> rows) {
    rows.insert(rows.end(), kNobody.begin(), kNobody.end());
    return rows;
}

void expectKeys(Resource &resource, std::string (Resource::*lookUp)(const EntityId &),
                const std::vector<KeyCase> &cases, const char *operation) {
    for (const KeyCase &c : cases) {
        EXPECT_EQ((resource.*lookUp)(c.id), c.key) << operation << " of " << c.id.module() << "."
                                                   << c.id.diagnostic() << "." << c.id.test();
    }
}

class BatteryResourceOnPath : public ::testing::TestWithParam<Path> {};

TEST_P(BatteryResourceOnPath, HelpTextLineByLine) {
    const std::vector<std::string> &expected =
        GetParam() == Path::Generic ? kGenericHelpLines : kSmartHelpLines;
    const std::vector<std::string> actual = linesOf(makeResource(GetParam())->getHelpText());
    for (size_t i = 0; i < expected.size() && i < actual.size(); ++i) {
        EXPECT_EQ(actual[i], expected[i]) << "help text line " << i + 1;
    }
    EXPECT_EQ(actual.size(), expected.size()) << "help text line count";
}

TEST_P(BatteryResourceOnPath, NamesAndOptionTables) {
    std::unique_ptr<Resource> resource = makeResource(GetParam());
    EXPECT_EQ(resource->getModuleName(), "BATTERY");
    EXPECT_EQ(resource->getComponentCode(), "BA");
    EXPECT_EQ(resource->getAuxiliaryObject(), nullptr);
    EXPECT_TRUE(resource->getRangeLabels().empty());
    expectOptionTable(resource->getDiagnosticOptions(), {{EntityId(12, 1, 0), "Q", "quick", 0}},
                      "diagnostic options");
    std::vector<OptionRow> tests = {{EntityId(12, 1, 1), "h", "battery-health-test", 2}};
    if (GetParam() == Path::Smart) {
        tests.push_back({EntityId(12, 1, 4), "t", "battery-temperature-test", 2});
    }
    expectOptionTable(resource->getTestOptions(), tests, "test options");
}

// Each lookup's keys; identifiers of no diagnostic or test give "".
TEST_P(BatteryResourceOnPath, MessageKeysOfEachLookUp) {
    using LookUp = std::string (Resource::*)(const EntityId &);
    const std::tuple<LookUp, const char *, std::vector<KeyCase>> lookUps[] = {
        {&Resource::getDiagnosticName,
         "getDiagnosticName",
         {{EntityId(12, 1, 0), "BATTERY_QUICK_DIAGNOSTIC"},
          {EntityId(12, 2, 0), "BATTERY_EXTENDED_DIAGNOSTIC"},
          {EntityId(12, 1, 1), ""},
          {EntityId(12, 2, 2), ""}}},
        {&Resource::getDiagnosticTooltip,
         "getDiagnosticTooltip",
         {{EntityId(12, 1, 0), "BATTERY_TESTS_TOOLTIP"},
          {EntityId(12, 2, 0), "BATTERY_EXTENDED_TOOLTIP"},
          {EntityId(12, 1, 4), ""}}},
        {&Resource::getTestName,
         "getTestName",
         {{EntityId(12, 1, 1), "BATTERY_HEALTH_TEST"},
          {EntityId(12, 2, 2), "BATTERY_DISCHARGE_TEST"},
          {EntityId(12, 2, 3), "BATTERY_CHARGE_TEST"},
          {EntityId(12, 1, 4), "BATTERY_TEMPERATURE_TEST"},
          // Only the composite counts: the diagnostic field is masked to 24 bits.
          {EntityId(12, 0x1000001, 1), "BATTERY_HEALTH_TEST"},
          {EntityId(12, 1, 0), ""},
          {EntityId(12, 2, 0), ""}}},
        {&Resource::getTestDescription,
         "getTestDescription",
         {{EntityId(12, 1, 1), "BATTERY_HEALTH_TEST_DESCRIPTION"},
          {EntityId(12, 2, 2), "BATTERY_DISCHARGE_TEST_DESCRIPTION"},
          {EntityId(12, 2, 3), "BATTERY_CHARGE_TEST_DESCRIPTION"},
          {EntityId(12, 1, 4), "BATTERY_TEMPERATURE_TEST_DESCRIPTION"},
          {EntityId(12, 1, 0), ""}}}};
    const std::unique_ptr<Resource> resource = makeResource(GetParam());
    for (const auto &[lookUp, name, rows] : lookUps)
        expectKeys(*resource, lookUp, with(rows), name);
}

TEST_P(BatteryResourceOnPath, FactoryBuildsTheResourceOfThePath) {
    std::unique_ptr<Resource> made(
        newBatteryResource(EntityId(12, 0, 0), GetParam() == Path::Generic));
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->getHelpText(), makeResource(GetParam())->getHelpText());
    EXPECT_EQ(made->getTestOptions().size(), GetParam() == Path::Generic ? 1u : 2u);
}

INSTANTIATE_TEST_SUITE_P(BothPaths, BatteryResourceOnPath,
                         ::testing::Values(Path::Generic, Path::Smart), pathName);

TEST(BatteryResource, HelpTextMentionsTestsAndOptionsThatNoTableHolds) {
    BatteryResource generic(EntityId(12, 0, 0), true);
    const std::string text = generic.getHelpText();
    EXPECT_NE(text.find("   d, discharge-test"), std::string::npos);
    EXPECT_NE(text.find("   c, charge-test"), std::string::npos);
    EXPECT_NE(text.find("-E, --extended"), std::string::npos);
    EXPECT_EQ(generic.getDiagnosticOptions().count(EntityId(12, 2, 0)), 0u);

    BatteryResource smart(EntityId(12, 0, 0), false);
    EXPECT_EQ(smart.getHelpText().find("-E"), std::string::npos);
    EXPECT_EQ(smart.getHelpText().find("xtended"), std::string::npos);
}

} // namespace
