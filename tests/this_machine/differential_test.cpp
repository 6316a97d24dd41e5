// The two machines behind the platform layer agree: for each testbed, an
// emulated notebook with the same batteries gives the module the same
// property list and the same quick test, through the loaded library.

#include <sys/utsname.h>

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "battery_module/diagnostic.h"
#include "battery_module/module_interface.h"
#include "battery_module/resource.h"
#include "battery_module/system_component.h"
#include "battery_module/test.h"
#include "contract/loaded_module.h"
#include "emulator/notebook.h"
#include "platform_layer/this_machine.h"
#include "support/properties.h"
#include "support/recording_host.h"
#include "support/umockdev_testbed.h"

namespace {

struct Seen {
    bool generic = false;
    std::string properties; // every property of every battery
    TestResultCode verdict = ResultInvalid;
    std::vector<RecordingHost::Event> conversation;
};

Seen throughTheLibrary() {
    Seen seen;
    LoadedModule library;
    ModuleInterface *module = library.getInterface();
    if (module == nullptr) return seen;
    seen.generic = module->getResource()->getTestOptions().count(EntityId(12, 1, 4)) == 0;
    SystemComponentManager *manager = module->getComponentManager();
    manager->refreshComponents();
    for (uint32_t c = 0; c < manager->getComponentCount(); ++c) {
        SystemComponent *component = manager->getComponent(c);
        seen.properties += "[" + joined(component->getInfo().properties) + "]";
        for (const ComponentInfoGroup &group : component->getInfoGroups()) {
            seen.properties += "{" + group.name + ":" + joined(group.properties) + "}";
        }
    }
    ::Test *health = module->getDiagnostic(0)->findTest(EntityId(12, 1, 1));
    if (health == nullptr || manager->getComponentCount() == 0) return seen;
    RecordingHost host;
    host.target = manager->getComponent(0);
    seen.verdict = health->execute(&host);
    seen.conversation = host.record;
    return seen;
}

std::string kernelRelease() {
    utsname names = {};
    return uname(&names) == 0 ? names.release : "";
}

// The emulated notebook with the row's batteries, listed in the battery
// setup class as this machine lists them: the adapter first, each driver at
// the running kernel's release.
emulator::Scenario emulatedTwin(const char *batteries, bool ac) {
    nlohmann::json scenario = {{"name", "twin"},
                               {"controller", {{"present", false}}},
                               {"power", {{"ac", ac}}},
                               {"batteries", nlohmann::json::parse(batteries)}};
    nlohmann::json devices = nlohmann::json::array();
    for (size_t i = 0; i <= scenario["batteries"].size(); ++i) {
        devices.push_back(
            {{"driverKey", "{72631E54-78A4-11D0-BCF7-00AA00B7B32A}\\000" + std::to_string(i)},
             {"driverVersion", kernelRelease()}});
    }
    scenario["os"] = {{"batteryClassDevices", devices}};
    const emulator::LoadResult loaded = emulator::parseScenario(scenario.dump(), "twin");
    EXPECT_TRUE(loaded.ok) << loaded.error;
    return loaded.scenario;
}

struct TwinRow {
    const char *testbed;
    bool ac;
    const char *batteries; // the emulated notebook's, in scenario form
};

class TwoMachines : public ::testing::TestWithParam<TwinRow> {
protected:
    void TearDown() override { platform_layer::useMachine(nullptr); }
};

std::string rowName(const ::testing::TestParamInfo<TwinRow> &info) {
    std::string name = info.param.testbed;
    for (char &c : name)
        if (c == '-') c = '_';
    return name;
}

// Levels a battery without temp or date of making does not give.
#define UNDATED R"("driver": {"failingLevels": ["BatteryTemperature", "BatteryManufactureDate"]})"
#define LGC_BATTERY                                                                                \
    R"({"slot": 0, "manufacturer": "LGC", "deviceName": "LNV-45N1", "serialNumber": 44853,)"       \
    R"( "designCapacity": 46970, "fullChargeCapacity": 41250, "designVoltage_mV": 11400,)"         \
    R"( "chargePercent": 100, "uniqueId": "44853LGCLNV-45N1", )" UNDATED "}"

} // namespace

TEST_P(TwoMachines, AgreeThroughTheLibrary) {
    const TwinRow &row = GetParam();
    Seen real;
    {
        Testbed testbed(row.testbed);
        ASSERT_TRUE(testbed.ok());
        platform_layer::useMachine(&platform_layer::thisMachine());
        real = throughTheLibrary();
        platform_layer::useMachine(nullptr);
    }
    emulator::Notebook::instance().install(emulatedTwin(row.batteries, row.ac));
    const Seen emulated = throughTheLibrary();

    EXPECT_TRUE(real.generic) << "this machine has no port library";
    EXPECT_EQ(real.properties, emulated.properties);
    EXPECT_EQ(real.verdict, emulated.verdict);
    EXPECT_EQ(real.conversation, emulated.conversation);
}

INSTANTIATE_TEST_SUITE_P(
    Testbeds, TwoMachines,
    ::testing::Values(
        TwinRow{"energy-with-adapter", true,
                R"([{"slot": 0, "manufacturer": "UR18650A", "deviceName": "GEHC",
                     "serialNumber": 0, "designCapacity": 41040, "fullChargeCapacity": 42450,
                     "designVoltage_mV": 10800, "cycleCount": 12, "chargePercent": 76,
                     "temperature_C": 19.8, "uniqueId": "0000UR18650AGEHC",
                     "manufactureDate": {"year": 2017, "month": 7, "day": 3},
                     "driver": {"serialNumberText": "0000"}}])"},
        TwinRow{"charge-reporting", true,
                R"([{"slot": 0, "manufacturer": "SMP-SDI2", "deviceName": "MWL31b",
                     "serialNumber": 1, "capacityUnit": "mAh", "designCapacity": 2200,
                     "fullChargeCapacity": 2167, "designVoltage_mV": 14800, "chargePercent": 100,
                     "uniqueId": "1SMP-SDI2MWL31b", )" UNDATED "}]"},
        TwinRow{"two-batteries", false,
                "[" LGC_BATTERY R"(, {"slot": 1, "manufacturer": "SMP", "deviceName": "L14M4P23",
                     "serialNumber": 756, "designCapacity": 60000, "fullChargeCapacity": 52260,
                     "designVoltage_mV": 14800, "chargePercent": 51,
                     "uniqueId": "756SMPL14M4P23", )" UNDATED "}]"},
        TwinRow{"peripheral-battery", false, "[" LGC_BATTERY "]"},
        TwinRow{"empty-slot", false, "[" LGC_BATTERY R"(, {"slot": 1, "present": false}])"},
        TwinRow{"sparse-battery", false,
                R"([{"slot": 0, "manufacturer": "ASUSTeK", "deviceName": "UX32-65",
                     "designCapacity": 45640, "fullChargeCapacity": 44611,
                     "designVoltage_mV": 7400, "chargePercent": 88, "uniqueId": "ASUSTeKUX32-65",
                     "driver": {"failingLevels": ["BatteryTemperature", "BatteryManufactureDate",
                                                  "BatterySerialNumber"]}}])"},
        TwinRow{"blank-serial", true,
                R"([{"slot": 0, "manufacturer": "SMP", "deviceName": "L14M4P23",
                     "serialNumber": 756, "designCapacity": 60000, "fullChargeCapacity": 52260,
                     "designVoltage_mV": 14800, "chargePercent": 51,
                     "uniqueId": "  756SMPL14M4P23",
                     "driver": {"serialNumberText": "  756", "failingLevels":
                                ["BatteryTemperature", "BatteryManufactureDate"]}}])"}),
    rowName);
