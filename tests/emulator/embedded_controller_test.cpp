#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "emulator/notebook.h"
#include "support/scenario.h"
#include "support/test_name.h"

// The controller seen from the ports alone, with the register numbers of the
// controller's documentation written out, so that its encoding is checked
// apart from the module's decoders.
namespace {

constexpr uint16_t kIndex = 0x1610;
constexpr uint16_t kData = 0x1611;

emulator::Notebook &machine() {
    return emulator::Notebook::instance();
}

void writeRegister(uint8_t reg, uint8_t value) {
    ASSERT_EQ(machine().portWrite(kIndex, reg), 0u);
    ASSERT_EQ(machine().portWrite(kData, value), 0u);
}

uint8_t readRegister(uint8_t reg) {
    uint8_t value = 0xEE;
    EXPECT_EQ(machine().portWrite(kIndex, reg), 0u);
    EXPECT_EQ(machine().portRead(kData, &value), 0u);
    return value;
}

uint16_t readWord(uint8_t low) {
    return static_cast<uint16_t>(readRegister(static_cast<uint8_t>(low + 1)) << 8 |
                                 readRegister(low));
}

void choose(uint8_t battery, uint8_t page) {
    writeRegister(0x00, 0xFF);
    writeRegister(0x01, 0xFF);
    writeRegister(0x10, battery);
    writeRegister(0x00, page);
}

std::string readText(uint8_t battery, uint8_t page) {
    choose(battery, page);
    std::string text;
    for (uint8_t reg = 0x14; reg <= 0x2F; ++reg) {
        const uint8_t character = readRegister(reg);
        if (character == 0) break;
        text.push_back(static_cast<char>(character));
    }
    return text;
}

const char *kTwoBatteries = R"({"name": "t", "controller": {"present": true},
  "batteries": [
    {"slot": 0, "manufacturer": "Ostrelle", "deviceName": "OS-4C57", "chemistry": "LION",
     "serialNumber": 4711, "manufactureDate": {"year": 2017, "month": 3, "day": 11},
     "capacityUnit": "mWh", "designCapacity": 57240, "fullChargeCapacity": 54100,
     "designVoltage_mV": 11400, "temperature_C": 31.6, "cycleCount": 42, "cycleScale": 250,
     "cycleScaleTop": 3, "authenticity": "genuine"},
    {"slot": 1, "manufacturer": "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789", "chemistry": "NiMH",
     "capacityUnit": "mAh", "designCapacity": 65535, "fullChargeCapacity": 0,
     "designVoltage_mV": 65535, "temperature_C": -273.15, "cycleCount": 65535,
     "serialNumber": 65535, "overTemperature": true, "authenticity": "not-authenticated",
     "manufactureDate": {"year": 2107, "month": 15, "day": 31}}]})";

struct WordCase {
    const char *what;
    uint8_t battery, page, low;
    uint16_t word;
};

void PrintTo(const WordCase &row, std::ostream *out) {
    *out << row.what;
}

class ControllerWord : public ::testing::TestWithParam<WordCase> {};

TEST_P(ControllerWord, EncodesTheScenarioInRealUnits) {
    useScenarioText(kTwoBatteries);
    choose(GetParam().battery, GetParam().page);
    EXPECT_EQ(readWord(GetParam().low), GetParam().word) << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(
    Table, ControllerWord,
    ::testing::Values(WordCase{"temperature 31.6 C in 0.1 K", 0, 0x02, 0x16, 3048},
                      WordCase{"full charge in 10 mWh", 0, 0x02, 0x22, 5410},
                      WordCase{"status: discharging, no alarm", 0, 0x02, 0x2A, 0x0040},
                      WordCase{"cycle count", 0, 0x02, 0x2C, 42},
                      WordCase{"design capacity in 10 mWh", 0, 0x03, 0x16, 5724},
                      WordCase{"design voltage", 0, 0x03, 0x18, 11400},
                      WordCase{"serial number", 0, 0x03, 0x1E, 4711},
                      WordCase{"cycle scale with top bits", 0, 0x03, 0x20, 0x3000 | 250},
                      WordCase{"date 3/11/2017", 0, 0x03, 0x22, 0x4A6B},
                      WordCase{"temperature of absolute zero", 1, 0x02, 0x16, 0},
                      WordCase{"full charge 0", 1, 0x02, 0x22, 0},
                      WordCase{"status with over-temperature alarm", 1, 0x02, 0x2A, 0x1040},
                      WordCase{"cycle count at its limit", 1, 0x02, 0x2C, 0xFFFF},
                      WordCase{"design capacity in mAh", 1, 0x03, 0x16, 0xFFFF},
                      WordCase{"design voltage at its limit", 1, 0x03, 0x18, 0xFFFF},
                      WordCase{"serial at its limit", 1, 0x03, 0x1E, 0xFFFF},
                      WordCase{"latest date", 1, 0x03, 0x22, 0xFFFF}),
    NameBy<&WordCase::what>());

TEST(EmbeddedController, BytesTextsAndPresence) {
    useScenarioText(kTwoBatteries);
    choose(0, 0x02);
    EXPECT_EQ(readRegister(0x10), 0x60) << "both slots present";
    EXPECT_EQ(readRegister(0x12) & 0xE0, 0x80) << "genuine";
    EXPECT_EQ(readRegister(0x15) & 0x80, 0x80) << "capacities in 10 mWh";
    choose(1, 0x02);
    EXPECT_EQ(readRegister(0x10), 0x60) << "the status shows both slots whichever is selected";
    EXPECT_EQ(readRegister(0x12) & 0xE0, 0x20) << "not authenticated";
    EXPECT_EQ(readRegister(0x15) & 0x80, 0x00) << "capacities in mAh";

    EXPECT_EQ(readText(0, 0x04), "Ostrelle");
    EXPECT_EQ(readText(0, 0x05), "OS-4C57");
    EXPECT_EQ(readText(0, 0x06), "LION");
    EXPECT_EQ(readText(1, 0x04), "ABCDEFGHIJKLMNOPQRSTUVWXYZ01") << "a long text fills the block";
    EXPECT_EQ(readText(1, 0x05), "");
}

TEST(EmbeddedController, EachCommandKeepsItBusyForTheScenariosPolls) {
    useScenarioText(R"({"name": "t", "controller": {"present": true, "busyPolls": 3}})");
    writeRegister(0x00, 0x02);
    std::vector<bool> idle;
    for (int poll = 0; poll < 5; ++poll) idle.push_back(readRegister(0x00) == 0);
    EXPECT_EQ(idle, (std::vector<bool>{false, false, false, true, true}));
}

struct FaultCase {
    const char *faults; // the controller's faults; null: no controller
    // Success of: index write, data write, index write, data read of register 0.
    const char *succeeds;
    bool idleAfterCommand;
};

void PrintTo(const FaultCase &row, std::ostream *out) {
    *out << (row.faults ? row.faults : "absent");
}

class ControllerFault : public ::testing::TestWithParam<FaultCase> {};

TEST_P(ControllerFault, ShowsAtThePorts) {
    const FaultCase &row = GetParam();
    useScenarioText(
        row.faults == nullptr ? R"({"name": "t"})" : std::string(R"({"name": "t", "controller":
        {"present": true, "faults": {)") + row.faults + "}}}");
    uint8_t value = 0xEE;
    std::string succeeds;
    succeeds += machine().portWrite(kIndex, 0x00) == 0 ? '1' : '0';
    succeeds += machine().portWrite(kData, 0x02) == 0 ? '1' : '0';
    succeeds += machine().portWrite(kIndex, 0x00) == 0 ? '1' : '0';
    succeeds += machine().portRead(kData, &value) == 0 ? '1' : '0';
    EXPECT_EQ(succeeds, row.succeeds);
    if (succeeds.back() == '1') {
        EXPECT_EQ(value == 0, row.idleAfterCommand);
    }
    EXPECT_EQ(machine().counters().portAccesses, 4u);
    EXPECT_EQ(machine().counters().portFailures,
              static_cast<uint64_t>(std::count(succeeds.begin(), succeeds.end(), '0')));
}

INSTANTIATE_TEST_SUITE_P(
    Table, ControllerFault,
    ::testing::Values(FaultCase{"", "1111", true}, FaultCase{nullptr, "0000", false},
                      FaultCase{R"("busyForever": true)", "1111", false},
                      FaultCase{R"("busyFromCommand": 1)", "1111", false},
                      FaultCase{R"("busyFromCommand": 2)", "1111", true},
                      FaultCase{R"("portFaults": [{"port": "index"}])", "0101", true},
                      FaultCase{R"("portFaults": [{"port": "index", "nth": 2}])", "1101", true},
                      FaultCase{R"("portFaults": [{"port": "data"}])", "1010", false},
                      FaultCase{R"("portFaults": [{"port": "data", "nth": 2}])", "1110", false}),
    NameBy<&FaultCase::faults>());

TEST(EmbeddedController, BusyFromTheNthCommandLastsForEver) {
    useScenarioText(
        R"({"name": "t", "controller": {"present": true, "faults": {"busyFromCommand": 2}}})");
    writeRegister(0x00, 0xFF);
    EXPECT_EQ(readRegister(0x00), 0);
    writeRegister(0x01, 0xFF);
    for (int poll = 0; poll < 100; ++poll) ASSERT_NE(readRegister(0x00), 0);
}

TEST(EmbeddedController, SelectionFaultsAndFalseStatus) {
    useScenarioText(R"({"name": "t", "controller": {"present": true, "faults":
        {"ignoresSelection": true, "reportedSlots": [1]}},
        "batteries": [{"slot": 0, "serialNumber": 1}, {"slot": 1, "serialNumber": 2}]})");
    choose(1, 0x03);
    EXPECT_EQ(readWord(0x1E), 1) << "battery 0 stays selected";
    choose(0, 0x02);
    EXPECT_EQ(readRegister(0x10), 0x20) << "reports slot 1 only";

    useScenarioText(R"({"name": "t", "controller": {"present": true},
        "batteries": [{"slot": 1, "serialNumber": 2}, {"slot": 0, "present": false}]})");
    choose(0, 0x02);
    EXPECT_EQ(readRegister(0x10), 0x20);
    choose(0, 0x03);
    EXPECT_EQ(readWord(0x1E), 0) << "an empty slot reads 0";
    choose(2, 0x03);
    EXPECT_EQ(readWord(0x1E), 0) << "no such battery";
}

} // namespace
