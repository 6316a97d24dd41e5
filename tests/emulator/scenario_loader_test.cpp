#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>

#include "emulator/notebook.h"
#include "emulator/scenario_loader.h"
#include "support/test_name.h"

using emulator::loadScenario;
using emulator::parseScenario;

TEST(ScenarioLoader, EveryBuiltInScenarioLoads) {
    const auto builtins = emulator::builtinScenarios();
    ASSERT_FALSE(builtins.empty());
    for (const auto &builtin : builtins) {
        const auto result = loadScenario(builtin.name);
        EXPECT_TRUE(result.ok) << result.error;
        EXPECT_EQ(result.scenario.name, builtin.name) << "file name and name field differ";
        EXPECT_FALSE(builtin.description.empty()) << builtin.name;
    }
}

TEST(ScenarioLoader, ReadsABatteryInRealUnits) {
    const auto result = parseScenario(R"({
        "name": "x", "startTick": 5, "controller": {"present": true, "busyPolls": 3},
        "batteries": [{"slot": 1, "capacityUnit": "mAh", "designCapacity": 5000,
                       "temperature_C": -5.5, "manufactureDate": {"year": 2017, "month": 3, "day": 11}}]
    })",
                                      "inline");
    ASSERT_TRUE(result.ok) << result.error;
    const auto &battery = result.scenario.batteries.at(0);
    EXPECT_EQ(result.scenario.startTick, 5u);
    EXPECT_TRUE(result.scenario.controller.present);
    EXPECT_EQ(result.scenario.controller.busyPolls, 3u);
    EXPECT_EQ(battery.slot, 1u);
    EXPECT_EQ(battery.capacityUnit, "mAh");
    EXPECT_EQ(battery.designCapacity, 5000u);
    EXPECT_DOUBLE_EQ(battery.temperature_C, -5.5);
    EXPECT_EQ(battery.manufactureDate.year, 2017u);
}

struct BadScenario {
    const char *text;
    const char *expectedInError;
};

void PrintTo(const BadScenario &row, std::ostream *out) {
    *out << row.expectedInError;
}

class MalformedScenario : public ::testing::TestWithParam<BadScenario> {};

TEST_P(MalformedScenario, GivesOneClearErrorNamingFileAndField) {
    const auto result = parseScenario(GetParam().text, "bad.json");
    EXPECT_FALSE(result.ok);
    EXPECT_NE(result.error.find("bad.json"), std::string::npos) << result.error;
    EXPECT_NE(result.error.find(GetParam().expectedInError), std::string::npos) << result.error;
    EXPECT_EQ(result.error.find('\n'), std::string::npos) << "one line";
}

INSTANTIATE_TEST_SUITE_P(
    Table, MalformedScenario,
    ::testing::Values(
        BadScenario{"{ \"name\": ", "not valid JSON"}, BadScenario{"[]", "expected an object"},
        BadScenario{R"({"name": "x", "batteries": [{}, {"cycleCount": -1e999}]})",
                    "field 'batteries[1].cycleCount': number out of range"},
        BadScenario{R"({"name": "x", "timeline": [{"at_ms": 1, "at_ms": 2}]})",
                    "field 'timeline[0].at_ms': given twice in one object"},
        BadScenario{R"({"name": "x", "a\nb": 1})", "field 'a?b': unknown field"},
        BadScenario{"{}", "field 'name': missing"},
        BadScenario{R"({"name": 5})", "field 'name': expected a string"},
        BadScenario{R"({"name": "x", "startTick": -1})", "field 'startTick'"},
        BadScenario{R"({"name": "x", "startTick": 4294967296})", "must not exceed"},
        BadScenario{R"({"name": "x", "controller": {"present": "yes"}})",
                    "field 'controller.present': expected true or false"},
        BadScenario{R"({"name": "x", "batteries": [{"slot": 2}]})", "field 'batteries[0].slot'"},
        BadScenario{R"({"name": "x", "batteries": [{}, {"capacityUnit": "Wh"}]})",
                    "field 'batteries[1].capacityUnit': expected one of mWh, mAh"},
        BadScenario{R"({"name": "x", "batteries": [{"chargePercent": 101}]})",
                    "batteries[0].chargePercent"},
        BadScenario{R"({"name": "x", "batteries": [{}, {}, {}]})", "at most two"},
        BadScenario{R"({"name": "x", "colour": "red"})", "field 'colour': unknown field"},
        BadScenario{
            R"({"name": "x", "batteries": [{"driver": {"failingLevels": ["BatteryColour"]}}]})",
            "field 'batteries[0].driver.failingLevels[0]': expected one of BatteryInformation"},
        BadScenario{R"({"name": "x", "batteries": [{"driver": {"vanishAfterRequests": -1}}]})",
                    "batteries[0].driver.vanishAfterRequests"},
        BadScenario{R"({"name": "x", "batteries": [{"driver": {"lost": true}}]})",
                    "field 'batteries[0].driver.lost': unknown field"},
        BadScenario{R"({"name": "x", "instrumentation": {"failingStep": "Connect"}})",
                    "field 'instrumentation.failingStep': expected one of none, CoInitializeEx"},
        BadScenario{R"({"name": "x", "instrumentation": {"apartment": "both"}})",
                    "field 'instrumentation.apartment'"}),
    NameBy<&BadScenario::expectedInError>());

TEST(ScenarioLoader, UnknownNamesAndMissingFilesAreRefused) {
    const auto unknown = loadScenario("no-such-scenario");
    EXPECT_FALSE(unknown.ok);
    EXPECT_NE(unknown.error.find("unknown built-in scenario 'no-such-scenario'"),
              std::string::npos);
    EXPECT_NE(unknown.error.find("default"), std::string::npos) << "lists the known names";
    const auto missing = loadScenario("/nonexistent/x.json");
    EXPECT_FALSE(missing.ok);
    EXPECT_NE(missing.error.find("cannot be opened"), std::string::npos);
}

TEST(Notebook, AFailedLoadLeavesTheMachineAsItWas) {
    auto &notebook = emulator::Notebook::instance();
    ASSERT_TRUE(notebook.load("default").ok);
    const std::string path = ::testing::TempDir() + "half.json";
    std::ofstream(path) << R"({"name": "half", "batteries": [{"designCapacity": "big"}]})";
    const auto result = notebook.load(path);
    EXPECT_FALSE(result.ok);
    EXPECT_NE(result.error.find("batteries[0].designCapacity"), std::string::npos) << result.error;
    EXPECT_EQ(notebook.scenario().name, "default");
    std::remove(path.c_str());
}

TEST(ScenarioLoader, ReadsControllerFaults) {
    const auto result = parseScenario(R"({"name": "x", "controller": {"present": true, "faults": {
        "busyForever": true, "busyFromCommand": 7, "ignoresSelection": true, "reportedSlots": [0, 1],
        "portFaults": [{"port": "index"}, {"port": "data", "nth": 3}]}}})",
                                      "inline");
    ASSERT_TRUE(result.ok) << result.error;
    const auto &faults = result.scenario.controller.faults;
    EXPECT_TRUE(faults.busyForever);
    EXPECT_EQ(faults.busyFromCommand, 7u);
    EXPECT_TRUE(faults.ignoresSelection);
    EXPECT_TRUE(faults.overridesReportedSlots);
    EXPECT_EQ(faults.reportedSlots, (std::vector<uint32_t>{0, 1}));
    ASSERT_EQ(faults.portFaults.size(), 2u);
    EXPECT_EQ(faults.portFaults[0].port, emulator::ControllerPort::Index);
    EXPECT_EQ(faults.portFaults[0].nth, 0u);
    EXPECT_EQ(faults.portFaults[1].port, emulator::ControllerPort::Data);
    EXPECT_EQ(faults.portFaults[1].nth, 3u);

    const auto plain = parseScenario(R"({"name": "x", "controller": {"faults": {}}})", "inline");
    ASSERT_TRUE(plain.ok) << plain.error;
    EXPECT_FALSE(plain.scenario.controller.faults.overridesReportedSlots)
        << "an absent list keeps the real status";
}

INSTANTIATE_TEST_SUITE_P(
    SmartBatteryLimits, MalformedScenario,
    ::testing::Values(
        BadScenario{R"({"name": "x", "controller": {"faults": {"colour": 1}}})",
                    "field 'controller.faults.colour': unknown field"},
        BadScenario{R"({"name": "x", "controller": {"faults": {"busyFromCommand": 0}}})",
                    "field 'controller.faults.busyFromCommand': counts from 1"},
        BadScenario{R"({"name": "x", "controller": {"faults": {"portFaults": [{"nth": 2}]}}})",
                    "field 'controller.faults.portFaults[0].port': missing"},
        BadScenario{R"({"name": "x", "controller": {"faults": {"portFaults": [{"port": "cmd"}]}}})",
                    "expected one of index, data"},
        BadScenario{
            R"({"name": "x", "controller": {"faults": {"portFaults": [{"port": "data", "nth": 0}]}}})",
            "portFaults[0].nth': counts from 1"},
        BadScenario{R"({"name": "x", "controller": {"faults": {"reportedSlots": [2]}}})",
                    "field 'controller.faults.reportedSlots[0]': must not exceed 1"},
        BadScenario{R"({"name": "x", "controller": {"faults": {"reportedSlots": "both"}}})",
                    "reportedSlots': expected a list"},
        BadScenario{
            R"({"name": "x", "controller": {"present": true}, "batteries": [{"capacityUnit": "mWh", "designCapacity": 655351}]})",
            "batteries[0].designCapacity': must not exceed 655350"},
        BadScenario{
            R"({"name": "x", "controller": {"present": true}, "batteries": [{"capacityUnit": "mAh", "fullChargeCapacity": 65536}]})",
            "batteries[0].fullChargeCapacity': must not exceed 65535"},
        BadScenario{
            R"({"name": "x", "controller": {"present": true}, "batteries": [{"serialNumber": 65536}]})",
            "batteries[0].serialNumber': must not exceed 65535"},
        BadScenario{
            R"({"name": "x", "controller": {"present": true}, "batteries": [{"cycleScale": 4096}]})",
            "cycleScale'"},
        BadScenario{R"({"name": "x", "batteries": [{"cycleScaleTop": 16}]})", "cycleScaleTop'"},
        BadScenario{R"({"name": "x", "batteries": [{"temperature_C": -274}]})",
                    "batteries[0].temperature_C': must lie from -273.15 to 6280.35"},
        BadScenario{R"({"name": "x", "batteries": [{"manufactureDate": {"year": 1979}}]})",
                    "batteries[0].manufactureDate.year': must lie from 1980 to 2107"},
        BadScenario{R"({"name": "x", "batteries": [{"slot": 1}, {"slot": 1}]})",
                    "batteries[1].slot': slot already holds"}),
    NameBy<&BadScenario::expectedInError>());
