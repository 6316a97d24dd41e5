#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "frame/keys.h"
#include "smart_battery/smart_battery_component.h"
#include "support/port_log.h"
#include "support/properties.h"
#include "support/scenario.h"
#include "support/test_name.h"

namespace {

using Properties = std::vector<std::pair<std::string, std::string>>;

Properties propertiesOf(SmartBatteryComponent &component) {
    Properties list;
    for (const ComponentProperty &property : component.getInfo().properties) {
        list.emplace_back(property.key, property.value);
    }
    return list;
}

std::string valueOf(SmartBatteryComponent &component, const std::string &key) {
    for (const auto &property : propertiesOf(component)) {
        if (property.first == key) return property.second;
    }
    return "(missing)";
}

// One battery in slot 0 of an answering controller; `fields` is added to a
// healthy battery in mWh and may override its fields.
std::string batteryScenario(const std::string &fields) {
    const std::string battery = R"({"slot": 0, "deviceName": "OS-4C57", "manufacturer": "Ostrelle",
        "serialNumber": 4711, "capacityUnit": "mWh", "designCapacity": 57240,
        "fullChargeCapacity": 54100, "designVoltage_mV": 11400, "temperature_C": 31.6,
        "cycleCount": 42})";
    return R"({"name": "t", "controller": {"present": true}, "batteries": [)" +
           withFields(battery, fields) + "]}";
}

} // namespace

TEST(SmartBatteryComponent, PropertiesOfAHealthyBatteryInOrder) {
    useScenario("default");
    SmartBatteryComponent component(true);
    component.buildProperties();
    const std::string expected = "UDI=SBAT|INDEX=0|NAME=OS-4C57|CHEMISTRY=LITHIUM_ION|"
                                 "TEMPERATURE=31.65 \xC2\xB0"
                                 "C|MANUFACTURER=Ostrelle|DESIGN_VOLTAGE=11.4 Volts|"
                                 "SERIAL_NUMBER=4711|DESIGN_CAPACITY=57.24 Wh (5021 mAh)|"
                                 "FULL_CHARGE_CAPACITY=54.1 Wh (4745 mAh)|CYCLE_COUNT=42";
    EXPECT_EQ(joined(component.getInfo().properties), expected);
    EXPECT_EQ(component.getInfo().name, "MAIN_BATTERY");
    EXPECT_EQ(component.getIndex(), "0");
    EXPECT_TRUE(component.getInfoGroups().empty());

    component.buildProperties();
    EXPECT_EQ(joined(component.getInfo().properties), expected) << "a rebuild keeps one list";
}

struct PropertyCase {
    const char *fields;
    const char *key;
    const char *value;
};

void PrintTo(const PropertyCase &row, std::ostream *out) {
    *out << row.key << " with " << row.fields;
}

class SmartBatteryProperty : public ::testing::TestWithParam<PropertyCase> {};

TEST_P(SmartBatteryProperty, Shows) {
    useScenarioText(batteryScenario(GetParam().fields));
    SmartBatteryComponent component(true);
    component.buildProperties();
    EXPECT_EQ(valueOf(component, GetParam().key), GetParam().value) << GetParam().fields;
}

std::string propertyCaseName(const testing::TestParamInfo<PropertyCase> &info) {
    return testName(std::string(info.param.key) + " " + info.param.fields);
}

INSTANTIATE_TEST_SUITE_P(
    Chemistry, SmartBatteryProperty,
    ::testing::Values(PropertyCase{R"("chemistry": "PbAc")", "CHEMISTRY", "LEAD_ACID"},
                      PropertyCase{R"("chemistry": "NiCd")", "CHEMISTRY", "NICKEL_CADMIUM"},
                      PropertyCase{R"("chemistry": "NiMH")", "CHEMISTRY", "NICKEL_METAL_HYDRIDE"},
                      PropertyCase{R"("chemistry": "NiZn")", "CHEMISTRY", "NICKEL_ZINC"},
                      PropertyCase{R"("chemistry": "RAM")", "CHEMISTRY",
                                   "RECHARGEABLE_ALKALINE-MANGANESE"},
                      PropertyCase{R"("chemistry": "ZnAr")", "CHEMISTRY", "ZINC_AIR"},
                      PropertyCase{R"("chemistry": "LiP")", "CHEMISTRY", "LITHIUM_POLYMER"},
                      PropertyCase{R"("chemistry": "")", "CHEMISTRY", "NOT_AVAILABLE"},
                      PropertyCase{R"("chemistry": "lion")", "CHEMISTRY", "OTHER"},
                      // The driver's alternative lithium-ion code is not a smart battery's.
                      PropertyCase{R"("chemistry": "Li-I")", "CHEMISTRY", "OTHER"},
                      PropertyCase{R"("chemistry": "PbAcid")", "CHEMISTRY", "OTHER"}),
    propertyCaseName);

INSTANTIATE_TEST_SUITE_P(
    Numbers, SmartBatteryProperty,
    ::testing::Values(
        PropertyCase{R"("temperature_C": -273.15)", "TEMPERATURE", "NOT_AVAILABLE"},
        PropertyCase{R"("temperature_C": -273.05)", "TEMPERATURE", "NOT_AVAILABLE"},
        PropertyCase{R"("temperature_C": -272.95)", "TEMPERATURE",
                     "-272.95 \xC2\xB0"
                     "C"},
        PropertyCase{R"("temperature_C": 6280.35)", "TEMPERATURE",
                     "6280.35 \xC2\xB0"
                     "C"},
        PropertyCase{R"("designVoltage_mV": 0)", "DESIGN_VOLTAGE", "NOT_AVAILABLE"},
        PropertyCase{R"("designVoltage_mV": 0)", "DESIGN_CAPACITY", "57.24 Wh (0 mAh)"},
        PropertyCase{R"("designVoltage_mV": 65535)", "DESIGN_VOLTAGE", "65.535 Volts"},
        PropertyCase{R"("serialNumber": 0)", "SERIAL_NUMBER", "NOT_AVAILABLE"},
        PropertyCase{R"("serialNumber": 65535)", "SERIAL_NUMBER", "65535"},
        PropertyCase{R"("deviceName": "")", "NAME", "NOT_AVAILABLE"},
        PropertyCase{R"("manufacturer": "")", "MANUFACTURER", "NOT_AVAILABLE"},
        PropertyCase{R"("cycleCount": 0)", "CYCLE_COUNT", "0"},
        PropertyCase{R"("fullChargeCapacity": 0)", "CYCLE_COUNT", "NOT_AVAILABLE"},
        PropertyCase{R"("fullChargeCapacity": 0)", "DESIGN_CAPACITY", "NOT_AVAILABLE"},
        PropertyCase{R"("designCapacity": 0)", "FULL_CHARGE_CAPACITY", "NOT_AVAILABLE"},
        PropertyCase{R"("designCapacity": 655350, "designVoltage_mV": 65535)", "DESIGN_CAPACITY",
                     "655.35 Wh (10000 mAh)"},
        PropertyCase{R"("capacityUnit": "mAh", "designCapacity": 5000, "fullChargeCapacity": 4000)",
                     "DESIGN_CAPACITY", "57 Wh (5000 mAh)"},
        PropertyCase{R"("capacityUnit": "mAh", "designCapacity": 5000, "fullChargeCapacity": 4000)",
                     "FULL_CHARGE_CAPACITY", "45.6 Wh (4000 mAh)"},
        PropertyCase{R"("capacityUnit": "mAh", "designCapacity": 5000, "fullChargeCapacity": 4000,
                        "designVoltage_mV": 0)",
                     "DESIGN_CAPACITY", "0 Wh (5000 mAh)"}),
    propertyCaseName);

TEST(SmartBatteryComponent, RecordInMilliwattHoursAfterConversion) {
    useScenarioText(batteryScenario(R"("designCapacity": 57240, "fullChargeCapacity": 40000,
        "cycleScale": 300, "cycleScaleTop": 9, "overTemperature": true,
        "manufactureDate": {"year": 2017, "month": 3, "day": 11})"));
    SmartBatteryComponent component(true);
    const SmartBatteryInfo info = component.getBatteryInfo();
    EXPECT_EQ(info.capacityUnit, CapacityUnit::MilliwattHours);
    EXPECT_EQ(info.designCapacity, 57240u);
    EXPECT_EQ(info.fullChargeCapacity, 40000u);
    EXPECT_EQ(info.cycleScale, 300);
    EXPECT_EQ(info.cycleScaleTop, 9);
    EXPECT_EQ(info.overTemperature, 1);
    EXPECT_EQ(info.manufactureDate, "3/11/2017");
    EXPECT_EQ(info.authenticity, "ZORLAN_GENUINE");
    EXPECT_EQ(info.driverVersion, "");
}

TEST(SmartBatteryComponent, AuthenticityKeys) {
    const std::pair<const char *, const char *> table[] = {
        {"genuine", "ZORLAN_GENUINE"},
        {"authorized", "AUTHORIZED"},
        {"not-authenticated", "NOT_AUTHENTICATED"},
        {"unknown", "NOT_AVAILABLE"}};
    for (const auto &row : table) {
        useScenarioText(batteryScenario(std::string(R"("authenticity": ")") + row.first + "\""));
        SmartBatteryComponent component(true);
        EXPECT_EQ(component.getBatteryInfo().authenticity, row.second) << row.first;
    }
}

TEST(SmartBatteryComponent, OnADeadControllerEveryValueIsNotAvailable) {
    useScenarioText(R"({"name": "t", "batteries": [{}]})");
    SmartBatteryComponent component(false);
    component.buildProperties();
    const SmartBatteryInfo info = component.getBatteryInfo();
    EXPECT_EQ(info.capacityUnit, CapacityUnit::MilliampHours);
    EXPECT_FLOAT_EQ(info.temperature, -273.15f);
    EXPECT_EQ(info.authenticity, "NOT_AVAILABLE");
    EXPECT_EQ(joined(component.getInfo().properties),
              "UDI=SBAT|INDEX=1|NAME=NOT_AVAILABLE|CHEMISTRY=NOT_AVAILABLE|"
              "TEMPERATURE=NOT_AVAILABLE|MANUFACTURER=NOT_AVAILABLE|DESIGN_VOLTAGE=NOT_AVAILABLE|"
              "SERIAL_NUMBER=NOT_AVAILABLE|DESIGN_CAPACITY=NOT_AVAILABLE|"
              "FULL_CHARGE_CAPACITY=NOT_AVAILABLE|CYCLE_COUNT=NOT_AVAILABLE");
    EXPECT_EQ(component.getInfo().name, "SECONDARY_BATTERY");
}

TEST(SmartBatteryComponent, TheSecondaryBatteryIsReadThroughItsOwnSelection) {
    useScenarioText(R"({"name": "t", "controller": {"present": true},
        "batteries": [{"slot": 0, "serialNumber": 1}, {"slot": 1, "serialNumber": 2}]})");
    startPortLog();
    SmartBatteryComponent component(false);
    EXPECT_EQ(component.getIndex(), "1");
    EXPECT_FALSE(component.isMainBattery());
    EXPECT_EQ(component.getBatteryInfo().serialNumber, 2);
    EXPECT_EQ(valuesWrittenTo(0x10), std::vector<int>(14, 0x01)) << "fourteen values";
}

TEST(SmartBatteryComponent, ThermalStateIsReadAgainOnRequest) {
    useScenarioText(batteryScenario(R"("temperature_C": 26.85)"));
    SmartBatteryComponent component(true);
    EXPECT_FLOAT_EQ(component.getBatteryInfo().temperature, 26.85f);
    useScenarioText(batteryScenario(R"("temperature_C": 76.85, "overTemperature": true,
                                       "serialNumber": 99)"));
    component.refreshThermalState();
    const SmartBatteryInfo info = component.getBatteryInfo();
    EXPECT_FLOAT_EQ(info.temperature, 76.85f);
    EXPECT_EQ(info.overTemperature, 1);
    EXPECT_EQ(info.serialNumber, 4711) << "nothing else is read again";
}

TEST(SmartBatteryComponent, FixedAnswersForTheHost) {
    useScenario("default");
    SmartBatteryComponent component(true);
    EXPECT_EQ(component.zeroQuery(), 0);
    EXPECT_TRUE(component.firstTrueQuery());
    EXPECT_TRUE(component.secondTrueQuery());
    EXPECT_TRUE(component.thirdTrueQuery());
    component.addProperty("DRIVER_VERSION", "1.0");
    EXPECT_EQ(valueOf(component, "DRIVER_VERSION"), "1.0");
}
