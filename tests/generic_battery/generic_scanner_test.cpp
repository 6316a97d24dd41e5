#include <gtest/gtest.h>

#include <functional>
#include <tuple>

#include "generic_battery/generic_result.h"
#include "generic_battery/win_generic_battery_scanner.h"
#include "generic_fixture.h"
#include "support/test_name.h"

namespace {

GenericBatteryInfo healthy() {
    GenericBatteryInfo info;
    info.capabilities = 0x80000000u;
    info.chemistry = "LITHIUM_ION";
    info.designCapacity = 57240;
    info.fullChargeCapacity = 54100;
    info.designVoltage = "11400";
    info.deviceId = "OS-4C57-4711";
    info.name = "OS-4C57";
    info.cycleCount = 42;
    info.temperature = 3048; // 31.6 degrees Celsius in tenths of a kelvin
    info.serialNumber = "4711";
    info.manufacturer = "Ostrelle";
    info.manufactureYear = 2023;
    info.remainingCapacity = 41116; // 76 % of 54100
    info.rate = -10820;             // on battery
    return info;
}

void expectSame(const GenericBatteryInfo &a, const GenericBatteryInfo &e) {
    EXPECT_EQ(
        std::tie(a.capabilities, a.chemistry, a.designCapacity, a.fullChargeCapacity,
                 a.designVoltage, a.deviceId, a.name, a.cycleCount, a.temperature, a.serialNumber,
                 a.manufacturer, a.manufactureYear, a.remainingCapacity, a.rate),
        std::tie(e.capabilities, e.chemistry, e.designCapacity, e.fullChargeCapacity,
                 e.designVoltage, e.deviceId, e.name, e.cycleCount, e.temperature, e.serialNumber,
                 e.manufacturer, e.manufactureYear, e.remainingCapacity, e.rate));
}

struct ReadCase {
    const char *what;
    std::string batteryFields;
    std::string machineFields;
    uint32_t result;
    std::function<void(GenericBatteryInfo &)> change; // from the healthy record
};

class ReadBattery : public ::testing::TestWithParam<ReadCase> {};

TEST_P(ReadBattery, GivesTheRecordFieldByField) {
    useScenarioText(oneBattery(GetParam().batteryFields, GetParam().machineFields));
    const uint64_t handlesBefore = openHandles();
    WinGenericBatteryScanner scanner;
    DeviceMap devices;
    ASSERT_EQ(scanner.scanDevices(devices), 0u);
    ASSERT_EQ(devices.size(), 1u);

    HANDLE cell = INVALID_HANDLE_VALUE;
    GenericBatteryInfo info;
    EXPECT_EQ(scanner.readBattery(devices.begin()->first, info, &cell), GetParam().result)
        << GetParam().what;
    GenericBatteryInfo expected = healthy();
    if (GetParam().change) GetParam().change(expected);
    if (GetParam().result == generic_result::Success) expectSame(info, expected);
    scanner.deviceScanner()->closeDevice(&cell);
    EXPECT_EQ(openHandles(), handlesBefore);
    EXPECT_EQ(emulator::Notebook::instance().counters().comObjects, 0);
}

using Change = std::function<void(GenericBatteryInfo &)>;
const Change noVoltage = [](GenericBatteryInfo &i) { i.designVoltage.clear(); };
// Without an identifier the device's own name stands in, and the service
// is not asked for the voltage.
const Change noId = [](GenericBatteryInfo &i) {
    i.deviceId = "BAT0";
    i.designVoltage.clear();
};
std::string refused(const std::string &levels) {
    return R"(, "driver": {"failingLevels": [)" + levels + "]}";
}
Change chemistry(const std::string &text) {
    return [text](GenericBatteryInfo &i) { i.chemistry = text; };
}

const std::string k254(254, 'n');
const std::string kFullSerial = R"(, "driver": {"serialNumberText": ")" + k254 + "\"}";
const std::string kLongSerial = R"(, "driver": {"serialNumberText": ")" + k254 + "n\"}";

INSTANTIATE_TEST_SUITE_P(
    Faults, ReadBattery,
    ::testing::Values(
        ReadCase{"healthy", "", "", 0, nullptr},
        ReadCase{"no identifier", R"(, "uniqueId": "")", "", 0, noId},
        ReadCase{"blank identifier", R"(, "uniqueId": "   ")", "", 0, noId},
        ReadCase{"identifier refused", refused(R"("BatteryUniqueID")"), "", 0, noId},
        ReadCase{"temperature refused", refused(R"("BatteryTemperature")"), "", 0,
                 [](GenericBatteryInfo &i) { i.temperature = 0; }},
        ReadCase{"date refused", refused(R"("BatteryManufactureDate")"), "", 0,
                 [](GenericBatteryInfo &i) { i.manufactureYear = 0; }},
        ReadCase{"information refused", refused(R"("BatteryInformation")"), "", 0,
                 [](GenericBatteryInfo &i) {
                     i.capabilities = 0;
                     i.chemistry.clear();
                     i.designCapacity = i.fullChargeCapacity = i.cycleCount = 0;
                 }},
        ReadCase{"name and serial refused",
                 refused(R"("BatteryDeviceName", "BatterySerialNumber")"), "", 0,
                 [](GenericBatteryInfo &i) { i.name = i.serialNumber = ""; }},
        ReadCase{"status fails", R"(, "driver": {"statusFails": true})", "", 0,
                 [](GenericBatteryInfo &i) { i.remainingCapacity = i.rate = 0; }},
        // 254 units and the terminator fill the driver's 255; one unit more
        // leaves no terminator.
        ReadCase{"texts at their limit",
                 R"(, "deviceName": ")" + k254 + R"(", "manufacturer": ")" + k254 + "\"", "", 0,
                 [](GenericBatteryInfo &i) { i.name = i.manufacturer = k254; }},
        ReadCase{"unterminated texts", R"(, "driver": {"unterminatedTexts": true})", "", 0,
                 [](GenericBatteryInfo &i) {
                     i.name = i.manufacturer = i.serialNumber = "";
                     noId(i);
                 }},
        ReadCase{"unknown capacities", R"(, "driver": {"unknownCapacities": true})", "", 0,
                 [](GenericBatteryInfo &i) {
                     i.designCapacity = i.fullChargeCapacity = 0;
                     i.remainingCapacity = 0xFFFFFFFFu;
                     i.rate = INT32_MIN;
                 }},
        ReadCase{"zero capacities", R"(, "designCapacity": 0, "fullChargeCapacity": 0)", "", 0,
                 [](GenericBatteryInfo &i) {
                     i.designCapacity = i.fullChargeCapacity = i.remainingCapacity = 0;
                     i.rate = 0;
                 }},
        ReadCase{"largest capacity", R"(, "designCapacity": 999999, "fullChargeCapacity": 1000000)",
                 "", 0,
                 [](GenericBatteryInfo &i) {
                     i.designCapacity = 999999;
                     i.fullChargeCapacity = 0;
                     i.remainingCapacity = 760000;
                     i.rate = -200000;
                 }},
        ReadCase{"instrumentation fails", "",
                 R"(, "instrumentation": {"failingStep": "ExecQuery"})", 0, noVoltage},
        ReadCase{"blank chemistry", R"(, "chemistry": "    ")", "", 0, chemistry("")},
        ReadCase{"four NUL bytes of chemistry", R"(, "chemistry": "")", "", 0, chemistry("")},
        ReadCase{"serial number with leading blanks",
                 R"(, "driver": {"serialNumberText": "  0815"})", "", 0,
                 [](GenericBatteryInfo &i) { i.serialNumber = "  0815"; }},
        // 254 characters and the terminator fill the 510-byte buffer; one more does not fit.
        ReadCase{"serial number as long as the buffer", kFullSerial, "", 0,
                 [](GenericBatteryInfo &i) { i.serialNumber = k254; }},
        ReadCase{"serial number beyond the buffer", kLongSerial, "", 0,
                 [](GenericBatteryInfo &i) { i.serialNumber = ""; }},
        ReadCase{"unknown chemistry", R"(, "chemistry": "XyZw")", "", 0, chemistry("XyZw")},
        ReadCase{"short chemistry", R"(, "chemistry": "Li")", "", 0,
                 chemistry(std::string("Li\0\0", 4))},
        ReadCase{"alkaline", R"(, "chemistry": "RAM")", "", 0,
                 chemistry("RECHARGEABLE_ALKALINE-MANGANESE")},
        ReadCase{"alternative lithium-ion code", R"(, "chemistry": "Li-I")", "", 0,
                 chemistry("LITHIUM_ION")},
        // Lithium polymer is a smart battery's code, not the driver's.
        ReadCase{"polymer code stays as given", R"(, "chemistry": "LiP")", "", 0,
                 chemistry(std::string("LiP\0", 4))},
        ReadCase{"blanks around the name", R"(, "deviceName": " OS 4 ")", "", 0,
                 [](GenericBatteryInfo &i) { i.name = " OS 4 "; }},
        ReadCase{"vanishes after the tag", R"(, "driver": {"vanishAfterRequests": 1})", "", 38,
                 nullptr},
        ReadCase{"empty slot", R"(, "present": false)", "", 38, nullptr}),
    NameBy<&ReadCase::what>());

TEST(ReadBattery, AKeyNoneOfWhosePathsOpensGivesAFreshRecord) {
    useScenarioText(oneBattery(R"(, "driver": {"openFails": true})"));
    WinGenericBatteryScanner scanner;
    DeviceMap devices;
    ASSERT_EQ(scanner.scanDevices(devices), 0u);
    HANDLE cell = INVALID_HANDLE_VALUE;
    GenericBatteryInfo info;
    EXPECT_EQ(scanner.readBattery(0, info, &cell), 0u);
    expectSame(info, GenericBatteryInfo());
    EXPECT_EQ(cell, INVALID_HANDLE_VALUE);
    EXPECT_EQ(scanner.readBattery(7, info, &cell), 0u) << "an unseen key is no failure";
}

// Two interfaces of one device give one key with two paths, read in order:
// a later path overwrites what an earlier one read, and a path whose tag
// query fails is passed over.
TEST(ReadBattery, WalksEveryPathOfItsKey) {
    const std::string shared = R"("driver": {"sharesDeviceOfSlot": 0)";
    const std::tuple<std::string, std::string, const char *> rows[] = {
        {"", shared + "}", "OS-9B11"},
        {"", shared + R"(, "tagFails": true})", "OS-4C57"},
        {R"("driver": {"tagFails": true})", shared + "}", "OS-9B11"}};
    for (const auto &[first, second, name] : rows) {
        useScenarioText(twoBatteries(first, second));
        WinGenericBatteryScanner scanner;
        DeviceMap devices;
        ASSERT_EQ(scanner.scanDevices(devices), 0u);
        ASSERT_EQ(devices.size(), 1u);
        EXPECT_EQ(devices.at(0).size(), 2u);
        HANDLE cell = INVALID_HANDLE_VALUE;
        GenericBatteryInfo info;
        EXPECT_EQ(scanner.readBattery(0, info, &cell), 0u) << first << second;
        EXPECT_EQ(info.name, name) << first << second;
        scanner.deviceScanner()->closeDevice(&cell);
    }
}

TEST(ReadBattery, TheRecordIsFreshAfterANewScanToo) {
    useScenario("generic-no-battery");
    WinGenericBatteryScanner scanner;
    DeviceMap devices;
    EXPECT_EQ(scanner.scanDevices(devices), 0u);
    EXPECT_TRUE(devices.empty());
    EXPECT_EQ(emulator::Notebook::instance().counters().reenumerations, 1u);
}

TEST(Presence, TellsAnEmptySlotFromARefusingDriver) {
    for (const auto &[fields, present] :
         {std::pair<std::string, bool>{"", true},
          {R"(, "present": false)", false},
          {R"(, "driver": {"failingLevels": ["BatteryInformation"]})", true}}) {
        useScenarioText(oneBattery(fields));
        WinGenericBatteryScanner scanner;
        DeviceMap devices;
        scanner.scanDevices(devices);
        HANDLE cell = INVALID_HANDLE_VALUE;
        ASSERT_EQ(scanner.deviceScanner()->openDevice(devices.at(0).at(0), &cell), 0u);
        bool answer = !present;
        EXPECT_EQ(scanner.isBatteryPresent(&cell, answer), 0u) << fields;
        EXPECT_EQ(answer, present) << fields;
        scanner.deviceScanner()->closeDevice(&cell);
    }
}

TEST(RefreshCapacities, ReadsAnewAndZeroesWhatFails) {
    useScenarioText(oneBattery(R"(, "driver": {"vanishAfterRequests": 3})"));
    WinGenericBatteryScanner scanner;
    DeviceMap devices;
    scanner.scanDevices(devices);
    HANDLE cell = INVALID_HANDLE_VALUE;
    ASSERT_EQ(scanner.deviceScanner()->openDevice(devices.at(0).at(0), &cell), 0u);
    GenericBatteryInfo info;
    EXPECT_EQ(scanner.refreshCapacities(&cell, info), 0u);
    EXPECT_EQ(info.designCapacity, 57240u);
    EXPECT_EQ(info.fullChargeCapacity, 54100u);
    // The third request is the last the battery answers.
    EXPECT_EQ(scanner.refreshCapacities(&cell, info), 38u);
    EXPECT_EQ(info.designCapacity, 0u);
    EXPECT_EQ(info.fullChargeCapacity, 0u);
    scanner.deviceScanner()->closeDevice(&cell);
}

} // namespace
