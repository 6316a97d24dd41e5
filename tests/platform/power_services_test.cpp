#include <gtest/gtest.h>

#include <memory>

#include "emulator/notebook.h"
#include "platform/battery_charge.h"
#include "platform/power_manager.h"
#include "support/scenario.h"
#include "support/test_name.h"

namespace {

emulator::PowerState &machinePower() {
    return emulator::Notebook::instance().power();
}

std::string scenarioWith(const std::string &sections) {
    return R"({"name": "power", "batteries": [{"chargePercent": 64.9}],)" + sections + "}";
}

} // namespace

TEST(PowerManager, ReadsAndSetsTheDisplayForAcAndBatteryAlike) {
    useScenarioText(scenarioWith(R"("display": {"acLevel": 70, "dcLevel": 40})"));
    std::unique_ptr<PowerManager> power(newPowerManager());
    uint32_t level = 0;
    ASSERT_EQ(power->getBrightness(level), 0u);
    EXPECT_EQ(level, 70u) << "the AC level, also on battery";
    EXPECT_EQ(power->setBrightness(0), 0u) << "0 is a valid level";
    EXPECT_EQ(machinePower().acBrightness, 0u);
    EXPECT_EQ(machinePower().dcBrightness, 0u);
    EXPECT_EQ(emulator::Notebook::instance().registry().openHandles, 0u) << "device closed";
}

TEST(PowerManager, SchemesByNumberAndAUsersOwnComesBackAsOther) {
    struct Row {
        const char *scheme;
        uint32_t number;
    };
    const Row rows[] = {
        {"high-performance", 0}, {"balanced", 1}, {"power-saver", 2}, {"custom", 3}};
    for (const Row &row : rows) {
        useScenarioText(scenarioWith(std::string(R"("power": {"scheme": ")") + row.scheme + "\"}"));
        std::unique_ptr<PowerManager> power(newPowerManager());
        EXPECT_EQ(power->getPowerScheme(), row.number) << row.scheme;
    }
    std::unique_ptr<PowerManager> power(newPowerManager());
    power->setPowerScheme(3); // nothing to activate
    power->setPowerScheme(7);
    EXPECT_TRUE(machinePower().changes.empty());
    power->setPowerScheme(1);
    EXPECT_EQ(power->getPowerScheme(), 1u);
    ASSERT_EQ(machinePower().changes.size(), 1u);
    EXPECT_EQ(machinePower().changes[0].setting, "scheme");
}

struct FaultRow {
    const char *sections;
    bool brightnessReadable, brightnessSettable, schemeKnown;
};

class PowerFault : public ::testing::TestWithParam<FaultRow> {};

TEST_P(PowerFault, GivesItsStatusAndLeavesOutValuesAlone) {
    useScenarioText(scenarioWith(GetParam().sections));
    std::unique_ptr<PowerManager> power(newPowerManager());
    uint32_t level = 12345;
    EXPECT_EQ(power->getBrightness(level), GetParam().brightnessReadable ? 0u : 1u);
    if (!GetParam().brightnessReadable) {
        EXPECT_EQ(level, 12345u);
    }
    EXPECT_EQ(power->setBrightness(50), GetParam().brightnessSettable ? 0u : 1u);
    power->setPowerScheme(0);
    EXPECT_EQ(power->getPowerScheme(), GetParam().schemeKnown ? 0u : 3u);
    EXPECT_EQ(emulator::Notebook::instance().registry().openHandles, 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Table, PowerFault,
    ::testing::Values(FaultRow{R"("display": {"present": false})", false, false, true},
                      FaultRow{R"("display": {"refusesBrightness": true})", true, false, true},
                      FaultRow{R"("power": {"faults": ["scheme-query-fails"]})", true, true, false},
                      FaultRow{
                          R"("power": {"scheme": "custom", "faults": ["scheme-change-fails"]})",
                          true, true, false}),
    NameBy<&FaultRow::sections>());

TEST(BatteryCharge, WholePercentFromThePowerStatus) {
    struct Row {
        const char *sections;
        uint32_t status;
        uint64_t percent;
    };
    const Row rows[] = {
        {R"("power": {"ac": true})", 0, 64},
        {R"("power": {"batteryLifePercent": 0})", 0, 0},
        {R"("power": {"batteryLifePercent": 255})", 1, 99},
        {R"("power": {"batteryLifePercent": 128})", 1, 99},
        {R"("power": {"faults": ["status-call-fails"]})", 1, 99},
    };
    for (const Row &row : rows) {
        useScenarioText(scenarioWith(row.sections));
        auto charge = newBatteryCharge();
        uint64_t percent = 99;
        EXPECT_EQ(charge->getChargePercent(percent), row.status) << row.sections;
        EXPECT_EQ(percent, row.percent) << row.sections;
    }
}

TEST(BatteryCharge, AcStateOnlyWithABattery) {
    useScenarioText(scenarioWith(R"("power": {"ac": true})"));
    bool onAc = false;
    EXPECT_EQ(newBatteryCharge()->isOnAcPower(onAc), 0u);
    EXPECT_TRUE(onAc);
    useScenarioText(R"({"name": "none", "power": {"ac": true}})");
    onAc = false;
    EXPECT_EQ(newBatteryCharge()->isOnAcPower(onAc), 1u);
    EXPECT_FALSE(onAc);
    std::unique_ptr<PowerManager> power(newPowerManager());
    EXPECT_FALSE(power->isBatteryPresent());
    EXPECT_TRUE(power->isOnAcPower());
    // Each battery is asked; an empty second slot does not hide the first.
    useScenarioText(
        R"({"name": "bay", "batteries": [{"slot": 0}, {"slot": 1, "present": false}]})");
    power.reset(newPowerManager());
    EXPECT_TRUE(power->isBatteryPresent());
}
