#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/battery_io_access_windows.h"
#include "support/port_log.h"
#include "support/scenario.h"

// The readers against values that the emulated controller encodes from a
// scenario in real units.
namespace {

struct Readings {
    std::string manufacturer = "?", deviceName = "?", chemistry = "?", date = "?";
    uint16_t designCapacity = 1, fullChargeCapacity = 1, cycleCount = 1, serial = 1, voltage = 1;
    uint32_t mode = 7;
    float temperature = 1.0f;
    uint8_t overTemperature = 7;
    uint16_t scaleTop = 1, scale = 1;
    uint32_t authenticity = 1;
};

Readings readAll(BatteryIOAccess &io, uint32_t battery) {
    Readings r;
    EXPECT_TRUE(io.readManufacturerName(battery, r.manufacturer));
    EXPECT_TRUE(io.readDeviceName(battery, r.deviceName));
    EXPECT_TRUE(io.readDeviceChemistry(battery, r.chemistry));
    EXPECT_TRUE(io.readManufactureDate(battery, r.date));
    io.readDesignCapacity(battery, r.designCapacity);
    io.readFullChargeCapacity(battery, r.fullChargeCapacity);
    io.readCycleCount(battery, r.cycleCount);
    io.readSerialNumber(battery, r.serial);
    EXPECT_TRUE(io.readCapacityMode(battery, r.mode));
    io.readDesignVoltage(battery, r.voltage);
    io.readTemperature(battery, r.temperature);
    io.readOverTemperatureFlag(battery, r.overTemperature);
    io.readCycleScale(battery, r.scaleTop, r.scale);
    EXPECT_TRUE(io.readAuthenticity(battery, r.authenticity));
    return r;
}

const std::string k27 = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0";
const std::string k28 = "ABCDEFGHIJKLMNOPQRSTUVWXYZ01";

const char *kScenario = R"({"name": "t", "controller": {"present": true}, "batteries": [
    {"slot": 0, "manufacturer": "Ostrelle", "deviceName": "OS-4C57", "chemistry": "LION",
     "serialNumber": 4711, "manufactureDate": {"year": 2017, "month": 3, "day": 11},
     "capacityUnit": "mWh", "designCapacity": 57240, "fullChargeCapacity": 54100,
     "designVoltage_mV": 11400, "temperature_C": 31.6, "cycleCount": 42, "cycleScale": 250,
     "authenticity": "authorized"},
    {"slot": 1, "manufacturer": "", "deviceName": "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123",
     "chemistry": "ABCDEFGHIJKLMNOPQRSTUVWXYZ0", "serialNumber": 65535,
     "manufactureDate": {"year": 2107, "month": 15, "day": 31},
     "capacityUnit": "mAh", "designCapacity": 65535, "fullChargeCapacity": 65535,
     "designVoltage_mV": 65535, "temperature_C": 6280.35, "cycleCount": 65535,
     "cycleScale": 4095, "cycleScaleTop": 15, "overTemperature": true,
     "authenticity": "not-authenticated"}]})";

const char *kZeros = R"({"name": "t", "controller": {"present": true}, "batteries": [
    {"slot": 0, "chemistry": "", "manufactureDate": {"year": 1980, "month": 0, "day": 0},
     "temperature_C": -273.15, "authenticity": "unknown"}]})";

struct ReaderCase {
    const char *what;
    const char *scenario;
    uint32_t battery;
    Readings expected;
};

Readings typical() {
    Readings r;
    r.manufacturer = "Ostrelle";
    r.deviceName = "OS-4C57";
    r.chemistry = "LION";
    r.date = "3/11/2017";
    r.designCapacity = 5724;
    r.fullChargeCapacity = 5410;
    r.cycleCount = 42;
    r.serial = 4711;
    r.mode = 1;
    r.voltage = 11400;
    r.temperature = static_cast<float>(3048 * 0.1 - 273.15);
    r.overTemperature = 0;
    r.scaleTop = 0;
    r.scale = 250;
    r.authenticity = 0x40;
    return r;
}

Readings atTheTop() {
    Readings r;
    r.manufacturer = "";
    r.deviceName = k28;
    r.chemistry = k27;
    r.date = "15/31/2107";
    r.designCapacity = r.fullChargeCapacity = r.cycleCount = r.serial = r.voltage = 0xFFFF;
    r.mode = 0;
    r.temperature = static_cast<float>(65535 * 0.1 - 273.15);
    r.overTemperature = 1;
    r.scaleTop = 0xF;
    r.scale = 0xFFF;
    r.authenticity = 0x20;
    return r;
}

Readings atTheBottom() {
    Readings r;
    r.manufacturer = r.deviceName = r.chemistry = "";
    r.date = "0/0/1980";
    r.designCapacity = r.fullChargeCapacity = r.cycleCount = r.serial = r.voltage = 0;
    r.mode = 1;
    r.temperature = -273.15f;
    r.overTemperature = 0;
    r.scaleTop = r.scale = 0;
    r.authenticity = 0;
    return r;
}

void PrintTo(const ReaderCase &row, std::ostream *out) {
    *out << row.what;
}

class Readers : public ::testing::TestWithParam<ReaderCase> {};

TEST_P(Readers, DecodeWhatTheControllerEncoded) {
    useScenarioText(GetParam().scenario);
    BatteryIOAccessWindows io;
    const Readings got = readAll(io, GetParam().battery);
    const Readings &want = GetParam().expected;
    EXPECT_EQ(got.manufacturer, want.manufacturer);
    EXPECT_EQ(got.deviceName, want.deviceName);
    EXPECT_EQ(got.chemistry, want.chemistry);
    EXPECT_EQ(got.date, want.date);
    EXPECT_EQ(got.designCapacity, want.designCapacity);
    EXPECT_EQ(got.fullChargeCapacity, want.fullChargeCapacity);
    EXPECT_EQ(got.cycleCount, want.cycleCount);
    EXPECT_EQ(got.serial, want.serial);
    EXPECT_EQ(got.mode, want.mode);
    EXPECT_EQ(got.voltage, want.voltage);
    EXPECT_FLOAT_EQ(got.temperature, want.temperature);
    EXPECT_EQ(got.overTemperature, want.overTemperature);
    EXPECT_EQ(got.scaleTop, want.scaleTop);
    EXPECT_EQ(got.scale, want.scale);
    EXPECT_EQ(got.authenticity, want.authenticity);
}

INSTANTIATE_TEST_SUITE_P(Table, Readers,
                         ::testing::Values(ReaderCase{"typical", kScenario, 0, typical()},
                                           ReaderCase{"every word at 0xFFFF, texts of 0, 28 "
                                                      "and 27 characters",
                                                      kScenario, 1, atTheTop()},
                                           ReaderCase{"every value 0", kZeros, 0, atTheBottom()}));

TEST(Readers, TemperatureAndDateDecodeExactly) {
    useScenarioText(kScenario);
    BatteryIOAccessWindows io;
    float celsius = 0;
    io.readTemperature(0, celsius);
    EXPECT_FLOAT_EQ(celsius, 31.65f);
    std::string date;
    EXPECT_TRUE(io.readManufactureDate(0, date));
    EXPECT_EQ(date, "3/11/2017") << "word 0x4A6B";
}

TEST(Readers, EveryReadOfTheSecondBatterySelectsIt) {
    useScenarioText(kScenario);
    BatteryIOAccessWindows io;
    startPortLog();
    readAll(io, 1);
    const std::vector<int> numbers = valuesWrittenTo(0x10);
    EXPECT_EQ(numbers, std::vector<int>(14, 0x01)) << "one selection per value";
}

// Twelve data-port accesses select and choose the page (each write one, each
// wait two); the thirteenth reads the high byte and the fourteenth the low.
const char *kLowByteFails = R"({"name": "t", "controller": {"present": true, "faults":
    {"portFaults": [{"port": "data", "nth": 14}]}},
    "batteries": [{"slot": 0, "capacityUnit": "mAh", "designCapacity": 5724, "temperature_C": 20,
                   "manufacturer": "Ostrelle", "manufactureDate": {"year": 2017, "month": 3, "day": 11}}]})";

TEST(Readers, ALostLowByteLeavesTheHighByteInTheCapacityReaders) {
    useScenarioText(kLowByteFails);
    BatteryIOAccessWindows io;
    uint16_t capacity = 7;
    io.readDesignCapacity(0, capacity);
    EXPECT_EQ(capacity, 0x1600) << "5724 is 0x165C";
}

TEST(Readers, ALostLowByteLeavesTheOtherWordReadersAlone) {
    useScenarioText(kLowByteFails);
    BatteryIOAccessWindows io;
    float celsius = 99.0f;
    io.readTemperature(0, celsius);
    EXPECT_EQ(celsius, 99.0f);
    useScenarioText(kLowByteFails);
    std::string date = "keep";
    EXPECT_FALSE(io.readManufactureDate(0, date));
    EXPECT_EQ(date, "keep");
}

TEST(Readers, ATextThatBreaksOffIsShortenedAndFails) {
    useScenarioText(kLowByteFails);
    BatteryIOAccessWindows io;
    std::string text = "old";
    EXPECT_FALSE(io.readManufacturerName(0, text));
    EXPECT_EQ(text, "O") << "the second character was lost";
}

TEST(Readers, AFailedSelectionEmptiesTheText) {
    useScenarioText(R"({"name": "t"})");
    BatteryIOAccessWindows io;
    std::string text = "old";
    EXPECT_FALSE(io.readDeviceName(0, text));
    EXPECT_EQ(text, "");
    uint32_t mode = 5, masked = 5;
    EXPECT_FALSE(io.readCapacityMode(0, mode));
    EXPECT_FALSE(io.readAuthenticity(0, masked));
    EXPECT_EQ(mode, 5u);
    EXPECT_EQ(masked, 5u);
}

struct PresenceCase {
    const char *what;
    const char *scenario;
    bool battery0, battery1, secondReported;
};

void PrintTo(const PresenceCase &row, std::ostream *out) {
    *out << row.what;
}

class Presence : public ::testing::TestWithParam<PresenceCase> {};

TEST_P(Presence, FollowsTheStatusByte) {
    useScenarioText(GetParam().scenario);
    BatteryIOAccessWindows io;
    EXPECT_EQ(io.isBatteryPresent(0), GetParam().battery0) << GetParam().what;
    EXPECT_EQ(io.isBatteryPresent(1), GetParam().battery1) << GetParam().what;
    EXPECT_EQ(io.isSecondBatteryReported(), GetParam().secondReported) << GetParam().what;
    EXPECT_FALSE(io.isBatteryPresent(2));
}

INSTANTIATE_TEST_SUITE_P(
    Table, Presence,
    ::testing::Values(
        PresenceCase{"0x40", R"({"name": "t", "controller": {"present": true}, "batteries": [{}]})",
                     true, false, false},
        PresenceCase{"0x60", kScenario, true, true, true},
        PresenceCase{
            "0x20", R"({"name": "t", "controller": {"present": true}, "batteries": [{"slot": 1}]})",
            false, true, true},
        PresenceCase{
            "a status that reports an empty slot",
            R"({"name": "t", "controller": {"present": true, "faults": {"reportedSlots": [0, 1]}}})",
            true, true, true},
        PresenceCase{
            "a status that hides both batteries",
            R"({"name": "t", "controller": {"present": true, "faults": {"reportedSlots": []}},
                         "batteries": [{"slot": 0}, {"slot": 1}]})",
            false, false, false},
        PresenceCase{"no controller", R"({"name": "t", "batteries": [{}]})", false, false, false},
        PresenceCase{
            "busy for ever",
            R"({"name": "t", "controller": {"present": true, "faults": {"busyForever": true}},
                         "batteries": [{}]})",
            false, false, false}));

} // namespace
