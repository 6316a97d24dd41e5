#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "platform/battery_io_access_windows.h"
#include "support/port_log.h"
#include "support/scenario.h"
#include "support/test_name.h"

// The readers against values that the emulated controller encodes from a
// scenario in real units.
namespace {

// Every reader's value in one line: the four texts, then capacity mode,
// design and full capacity, cycle count, serial, voltage, temperature,
// over-temperature flag, cycle scale top/scale and authenticity.
std::string readAll(BatteryIOAccess &io, uint32_t battery) {
    std::string name = "?", device = "?", chemistry = "?", date = "?";
    uint16_t design = 1, full = 1, cycles = 1, serial = 1, voltage = 1, top = 1, scale = 1;
    uint32_t mode = 7, authenticity = 1;
    float celsius = 1.0f;
    uint8_t hot = 7;
    EXPECT_TRUE(io.readManufacturerName(battery, name));
    EXPECT_TRUE(io.readDeviceName(battery, device));
    EXPECT_TRUE(io.readDeviceChemistry(battery, chemistry));
    EXPECT_TRUE(io.readManufactureDate(battery, date));
    EXPECT_TRUE(io.readCapacityMode(battery, mode));
    io.readDesignCapacity(battery, design);
    io.readFullChargeCapacity(battery, full);
    io.readCycleCount(battery, cycles);
    io.readSerialNumber(battery, serial);
    io.readDesignVoltage(battery, voltage);
    io.readTemperature(battery, celsius);
    io.readOverTemperatureFlag(battery, hot);
    io.readCycleScale(battery, top, scale);
    EXPECT_TRUE(io.readAuthenticity(battery, authenticity));
    char numbers[128];
    std::snprintf(numbers, sizeof numbers, "%u %u %u %u %u %u %.2f %u %u/%u 0x%X", mode, design,
                  full, cycles, serial, voltage, celsius, hot, top, scale, authenticity);
    return name + "|" + device + "|" + chemistry + "|" + date + "|" + numbers;
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
    std::string expected;
};

void PrintTo(const ReaderCase &row, std::ostream *out) {
    *out << row.what;
}

class Readers : public ::testing::TestWithParam<ReaderCase> {};

TEST_P(Readers, DecodeWhatTheControllerEncoded) {
    useScenarioText(GetParam().scenario);
    BatteryIOAccessWindows io;
    EXPECT_EQ(readAll(io, GetParam().battery), GetParam().expected);
}

// 31.65 degrees are 3048 tenths of a kelvin, 3/11/2017 the word 0x4A6B.
INSTANTIATE_TEST_SUITE_P(
    Table, Readers,
    ::testing::Values(
        ReaderCase{"typical", kScenario, 0,
                   "Ostrelle|OS-4C57|LION|3/11/2017|1 5724 5410 42 4711 11400 31.65 0 0/250 0x40"},
        ReaderCase{"every word at 0xFFFF, texts of 0, 28 and 27 characters", kScenario, 1,
                   "|" + k28 + "|" + k27 +
                       "|15/31/2107|0 65535 65535 65535 65535 65535 6280.35 1 15/4095 0x20"},
        ReaderCase{"every value 0", kZeros, 0, "|||0/0/1980|1 0 0 0 0 0 -273.15 0 0/0 0x0"}),
    NameBy<&ReaderCase::what>());

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

// A capacity reader keeps the high byte, the other word readers keep their
// value, a text that breaks off is shortened and fails.
TEST(Readers, ALostLowByte) {
    useScenarioText(kLowByteFails);
    BatteryIOAccessWindows io;
    uint16_t capacity = 7;
    io.readDesignCapacity(0, capacity);
    EXPECT_EQ(capacity, 0x1600) << "5724 is 0x165C";
    useScenarioText(kLowByteFails);
    float celsius = 99.0f;
    io.readTemperature(0, celsius);
    EXPECT_EQ(celsius, 99.0f);
    useScenarioText(kLowByteFails);
    std::string date = "keep";
    EXPECT_FALSE(io.readManufactureDate(0, date));
    EXPECT_EQ(date, "keep");
    useScenarioText(kLowByteFails);
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
            false, false, false}),
    NameBy<&PresenceCase::what>());

} // namespace
