#include "smart_battery/battery_io_access.h"

#include "smart_battery/controller_register_map.h"

BatteryIOAccess::~BatteryIOAccess() = default;

// Only the steps after the start decide the outcome: a start that did not get
// through is forgiven, and its wait is not looked at.
bool BatteryIOAccess::selectBattery(uint32_t battery) {
    if (writeRegister(ec::kCommandRegister, ec::kStartSelection)) {
        waitReady();
    }
    if (!writeRegister(ec::kSelectionRegister, ec::kStartSelection)) return false;
    if (!waitReady()) return false;
    const uint8_t number = battery != 0 ? ec::kSecondaryBattery : ec::kMainBattery;
    if (!writeRegister(ec::kBatteryRegister, number)) return false;
    return waitReady();
}

bool BatteryIOAccess::choosePage(uint32_t battery, uint8_t page) {
    return selectBattery(battery) && writeRegister(ec::kCommandRegister, page) && waitReady();
}

bool BatteryIOAccess::readByte(uint32_t battery, uint8_t page, uint8_t reg, uint8_t &value) {
    uint8_t byte = 0;
    if (!choosePage(battery, page) || !readRegister(reg, &byte)) return false;
    value = byte;
    return true;
}

bool BatteryIOAccess::readWord(uint32_t battery, uint8_t page, uint8_t low, uint16_t &word) {
    uint8_t high = 0, lowByte = 0;
    if (!choosePage(battery, page)) return false;
    if (!readRegister(static_cast<uint8_t>(low + 1), &high)) return false;
    if (!readRegister(low, &lowByte)) return false;
    word = static_cast<uint16_t>((high << 8) | lowByte);
    return true;
}

void BatteryIOAccess::readWordKeepingHighByte(uint32_t battery, uint8_t page, uint8_t low,
                                              uint16_t &word) {
    uint8_t high = 0, lowByte = 0;
    if (!choosePage(battery, page)) return;
    if (!readRegister(static_cast<uint8_t>(low + 1), &high)) return;
    word = static_cast<uint16_t>(high << 8);
    if (!readRegister(low, &lowByte)) return;
    word = static_cast<uint16_t>(word | lowByte);
}

bool BatteryIOAccess::readText(uint32_t battery, uint8_t page, std::string &text) {
    std::string collected;
    bool ok = choosePage(battery, page);
    for (unsigned reg = ec::kTextFirstRegister; ok && reg <= ec::kTextLastRegister; ++reg) {
        uint8_t character = 0;
        ok = readRegister(static_cast<uint8_t>(reg), &character);
        if (ok && character == ec::kTextTerminator) break;
        if (ok) collected.push_back(static_cast<char>(character));
    }
    text = collected;
    return ok;
}

bool BatteryIOAccess::readManufacturerName(uint32_t battery, std::string &text) {
    return readText(battery, ec::kManufacturerPage, text);
}

bool BatteryIOAccess::readDeviceName(uint32_t battery, std::string &text) {
    return readText(battery, ec::kDeviceNamePage, text);
}

bool BatteryIOAccess::readDeviceChemistry(uint32_t battery, std::string &text) {
    return readText(battery, ec::kChemistryPage, text);
}

namespace {

// Unpadded month/day/year, without a check that they make a date.
std::string decodeManufactureDate(uint16_t word) {
    const uint32_t day = word & ec::kDayMask;
    const uint32_t month = (word & ec::kMonthMask) >> ec::kMonthShift;
    const uint32_t year = ec::kYearBase + (word >> ec::kYearShift);
    return std::to_string(month) + "/" + std::to_string(day) + "/" + std::to_string(year);
}

} // namespace

bool BatteryIOAccess::readManufactureDate(uint32_t battery, std::string &date) {
    uint16_t word = 0;
    if (!readWord(battery, ec::kManufactureDate.page, ec::kManufactureDate.low, word)) {
        return false;
    }
    date = decodeManufactureDate(word);
    return true;
}

void BatteryIOAccess::readDesignCapacity(uint32_t battery, uint16_t &capacity) {
    readWordKeepingHighByte(battery, ec::kDesignCapacity.page, ec::kDesignCapacity.low, capacity);
}

void BatteryIOAccess::readFullChargeCapacity(uint32_t battery, uint16_t &capacity) {
    readWordKeepingHighByte(battery, ec::kFullChargeCapacity.page, ec::kFullChargeCapacity.low,
                            capacity);
}

void BatteryIOAccess::readCycleCount(uint32_t battery, uint16_t &count) {
    readWordKeepingHighByte(battery, ec::kCycleCount.page, ec::kCycleCount.low, count);
}

void BatteryIOAccess::readSerialNumber(uint32_t battery, uint16_t &serial) {
    readWordKeepingHighByte(battery, ec::kSerialNumber.page, ec::kSerialNumber.low, serial);
}

void BatteryIOAccess::readDesignVoltage(uint32_t battery, uint16_t &millivolts) {
    readWordKeepingHighByte(battery, ec::kDesignVoltage.page, ec::kDesignVoltage.low, millivolts);
}

namespace {

uint32_t decodeCapacityMode(uint8_t modeHighByte) {
    return (modeHighByte & ec::kCapacityModeBit) != 0 ? 1 : 0;
}

} // namespace

bool BatteryIOAccess::readCapacityMode(uint32_t battery, uint32_t &mode) {
    uint8_t byte = 0;
    if (!readByte(battery, ec::kCapacityMode.page, ec::kCapacityMode.number, byte)) return false;
    mode = decodeCapacityMode(byte);
    return true;
}

namespace {

float decodeTemperature(uint16_t tenthsOfKelvin) {
    return static_cast<float>(tenthsOfKelvin * ec::kKelvinPerUnit - ec::kZeroCelsiusInKelvin);
}

} // namespace

void BatteryIOAccess::readTemperature(uint32_t battery, float &celsius) {
    uint16_t word = 0;
    if (readWord(battery, ec::kTemperature.page, ec::kTemperature.low, word)) {
        celsius = decodeTemperature(word);
    }
}

namespace {

uint8_t decodeOverTemperature(uint16_t batteryStatus) {
    return (batteryStatus & ec::kOverTemperatureAlarm) != 0 ? 1 : 0;
}

} // namespace

void BatteryIOAccess::readOverTemperatureFlag(uint32_t battery, uint8_t &flag) {
    uint16_t word = 0;
    if (readWord(battery, ec::kBatteryStatus.page, ec::kBatteryStatus.low, word)) {
        flag = decodeOverTemperature(word);
    }
}

void BatteryIOAccess::readCycleScale(uint32_t battery, uint16_t &top, uint16_t &scale) {
    uint16_t word = 0;
    if (readWord(battery, ec::kCycleScale.page, ec::kCycleScale.low, word)) {
        top = static_cast<uint16_t>(word >> ec::kCycleScaleTopShift);
        scale = static_cast<uint16_t>(word & ec::kCycleScaleMask);
    }
}

bool BatteryIOAccess::readAuthenticity(uint32_t battery, uint32_t &masked) {
    uint8_t byte = 0;
    if (!readByte(battery, ec::kAuthenticity.page, ec::kAuthenticity.number, byte)) return false;
    masked = byte & ec::kAuthenticityMask;
    return true;
}

bool BatteryIOAccess::presenceBit(uint32_t battery, uint8_t bit) {
    uint8_t status = 0;
    if (!readByte(battery, ec::kPresenceStatus.page, ec::kPresenceStatus.number, status)) {
        return false;
    }
    return (status & bit) != 0;
}

bool BatteryIOAccess::isBatteryPresent(uint32_t battery) {
    if (battery == 0) return presenceBit(0, ec::kBattery0PresentBit);
    if (battery == 1) return presenceBit(1, ec::kBattery1PresentBit);
    return false;
}

bool BatteryIOAccess::isSecondBatteryReported() {
    return presenceBit(0, ec::kBattery1PresentBit);
}
