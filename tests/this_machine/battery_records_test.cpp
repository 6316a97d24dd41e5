// What this machine's battery driver makes of the kernel's attributes: one
// line per battery, every level the module reads and the status.

#include <gtest/gtest.h>

#include <sstream>

#include "this_machine/this_machine_fixture.h"

namespace {

struct RecordRow {
    const char *testbed;
    const char *supply;
    const char *line;
};

class BatteryRecords : public ThisMachineTest, public ::testing::WithParamInterface<RecordRow> {};

std::string rowName(const ::testing::TestParamInfo<RecordRow> &info) {
    std::string name = std::string(info.param.testbed) + "_" + info.param.supply;
    for (char &c : name)
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
    return name;
}

} // namespace

TEST_P(BatteryRecords, FollowTheKernelsAttributes) {
    Testbed testbed(GetParam().testbed);
    ASSERT_TRUE(testbed.ok());
    EXPECT_EQ(driverView(GetParam().supply), GetParam().line);
}

INSTANTIATE_TEST_SUITE_P(
    Testbeds, BatteryRecords,
    ::testing::Values(
        RecordRow{"energy-with-adapter", "sbs-0-000b",
                  "caps=80000000 chem=LION design=41040 full=42450 cycles=12|temp=2930"
                  "|date=2017-7-3|name='GEHC'|maker='UR18650A'|id='0000UR18650AGEHC'"
                  "|serial='0000'|state=3 now=31090 mV=11441 rate=-297"},
        RecordRow{"charge-reporting", "BAT0",
                  "caps=80000000 chem=LION design=32560 full=32071 cycles=0|temp=-|date=-"
                  "|name='MWL31b'|maker='SMP-SDI2'|id='1SMP-SDI2MWL31b'|serial='1'"
                  "|state=1 now=32071 mV=16636 rate=0"},
        RecordRow{"sparse-battery", "BAT0",
                  "caps=80000000 chem=LION design=45640 full=44611 cycles=0|temp=-|date=-"
                  "|name='UX32-65'|maker='ASUSTeK'|id='ASUSTeKUX32-65'|serial=-"
                  "|state=2 now=39459 mV=7982 rate=-16380"},
        RecordRow{"blank-serial", "BAT0",
                  "caps=80000000 chem=LION design=60000 full=52260 cycles=0|temp=-|date=-"
                  "|name='L14M4P23'|maker='SMP'|id='  756SMPL14M4P23'|serial='  756'"
                  "|state=5 now=26660 mV=15840 rate=27656"},
        RecordRow{"two-batteries", "BAT1",
                  "caps=80000000 chem=LION design=60000 full=52260 cycles=0|temp=-|date=-"
                  "|name='L14M4P23'|maker='SMP'|id='756SMPL14M4P23'|serial='756'"
                  "|state=2 now=26660 mV=15840 rate=-27656"},
        RecordRow{"empty-slot", "BAT1", "no tag"},
        RecordRow{"peripheral-battery", "hidpp_battery_0", "no device"}),
    rowName);

namespace {

// One change to a testbed's battery and the part of the driver's line it
// gives.
struct ChangeRow {
    const char *name;
    const char *testbed;
    const char *attributes; // one or more, separated by blanks
    const char *text;       // null: the attributes are taken away
    const char *expected;
};

class AttributeChange : public ThisMachineTest, public ::testing::WithParamInterface<ChangeRow> {};

const std::string kLongName(10000, 'x');

const char *supplyOf(const std::string &testbed) {
    return testbed == "energy-with-adapter" ? "sbs-0-000b" : "BAT0";
}

} // namespace

TEST_P(AttributeChange, ShowsInTheDriversAnswer) {
    const ChangeRow &row = GetParam();
    Testbed testbed(row.testbed);
    ASSERT_TRUE(testbed.ok());
    const std::string supply = supplyOf(row.testbed);
    EXPECT_EQ(driverView(supply).find(row.expected), std::string::npos) << "already before";
    std::istringstream attributes(row.attributes);
    for (std::string attribute; attributes >> attribute;) {
        if (row.text != nullptr) {
            testbed.set(supply, attribute, row.text);
        } else {
            testbed.remove(supply, attribute);
        }
    }
    EXPECT_NE(driverView(supply).find(row.expected), std::string::npos) << driverView(supply);
}

INSTANTIATE_TEST_SUITE_P(
    Chemistry, AttributeChange,
    ::testing::Values(ChangeRow{"LiPoly", "sparse-battery", "technology", "Li-poly", "chem=LiP "},
                      ChangeRow{"NiMH", "sparse-battery", "technology", "NiMH", "chem=NiMH"},
                      ChangeRow{"NiCd", "sparse-battery", "technology", "NiCd", "chem=NiCd"},
                      ChangeRow{"LiFe", "sparse-battery", "technology", "LiFe", "chem=LiFe"},
                      ChangeRow{"LiMn", "sparse-battery", "technology", "LiMn", "chem=LiMn"},
                      ChangeRow{"Unknown", "sparse-battery", "technology", "Unknown", "chem= "},
                      ChangeRow{"Absent", "sparse-battery", "technology", nullptr, "chem= "}),
    [](const auto &info) { return std::string(info.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Figures, AttributeChange,
    ::testing::Values(
        ChangeRow{"NoEnergyNorCharge", "sparse-battery",
                  "energy_full energy_full_design energy_now", nullptr,
                  "caps=C0000000 chem=LION design=4294967295 full=4294967295"},
        ChangeRow{"ChargeWithoutDesignVoltage", "charge-reporting", "voltage_min_design", nullptr,
                  "design=4294967295 full=4294967295"},
        ChangeRow{"NoFlowFigure", "sparse-battery", "power_now", nullptr, "rate=-2147483648"},
        // On AC but held below full: neither charging nor discharging, no flow.
        ChangeRow{"NotCharging", "energy-with-adapter", "status", "Not charging",
                  "|state=1 now=31090 mV=11441 rate=0"},
        ChangeRow{"TakenOut", "sparse-battery", "present", "0", "no tag"},
        ChangeRow{"CycleCount", "sparse-battery", "cycle_count", "311", "cycles=311"}),
    [](const auto &info) { return std::string(info.param.name); });

// Hostile or garbled texts make the level that reads them fail, nothing else.
INSTANTIATE_TEST_SUITE_P(
    Garbage, AttributeChange,
    ::testing::Values(
        ChangeRow{"EnergyWithUnit", "energy-with-adapter", "energy_full", "12abc", "info=-"},
        ChangeRow{"EnergyBeyond64Bits", "energy-with-adapter", "energy_full",
                  "99999999999999999999999", "info=-"},
        ChangeRow{"NegativeDesign", "energy-with-adapter", "energy_full_design", "-5", "info=-"},
        ChangeRow{"CyclesInWords", "energy-with-adapter", "cycle_count", "many", "info=-"},
        ChangeRow{"UnknownTechnology", "energy-with-adapter", "technology", "Plutonium", "info=-"},
        ChangeRow{"TemperatureInWords", "energy-with-adapter", "temp", "hot", "|temp=-"},
        ChangeRow{"BelowAbsoluteZero", "energy-with-adapter", "temp", "-99999", "|temp=-"},
        ChangeRow{"TemperatureAtTheTopOf64Bits", "energy-with-adapter", "temp",
                  "9223372036854775807", "|temp=-"},
        ChangeRow{"ThirteenthMonth", "energy-with-adapter", "manufacture_month", "13", "|date=-"},
        ChangeRow{"EmptyDay", "energy-with-adapter", "manufacture_day", "", "|date=-"},
        ChangeRow{"VoltageWithUnit", "energy-with-adapter", "voltage_now", "12 V", "|status=-"},
        ChangeRow{"UnknownState", "energy-with-adapter", "status", "Exploding", "|status=-"},
        ChangeRow{"ImpossiblePower", "energy-with-adapter", "power_now", "9999999999999999",
                  "|status=-"},
        ChangeRow{"PresenceInWords", "energy-with-adapter", "present", "maybe", "no tag"},
        ChangeRow{"TextTooLong", "energy-with-adapter", "model_name", kLongName.c_str(),
                  "|name=-"}),
    [](const auto &info) { return std::string(info.param.name); });
