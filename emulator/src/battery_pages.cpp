#include "battery_pages.h"

#include <algorithm>
#include <cmath>

namespace emulator {

namespace {

// The battery interface of the controller. Words lie low byte first at the
// even register.
constexpr uint8_t kStatusPage = 0x02;
constexpr uint8_t kAuthenticityRegister = 0x12;
constexpr uint8_t kBatteryModeHighRegister = 0x15;
constexpr uint8_t kTemperatureRegister = 0x16;
constexpr uint8_t kFullChargeCapacityRegister = 0x22;
constexpr uint8_t kBatteryStatusRegister = 0x2A;
constexpr uint8_t kCycleCountRegister = 0x2C;

constexpr uint8_t kDesignPage = 0x03;
constexpr uint8_t kDesignCapacityRegister = 0x16;
constexpr uint8_t kDesignVoltageRegister = 0x18;
constexpr uint8_t kSerialNumberRegister = 0x1E;
constexpr uint8_t kCycleScaleRegister = 0x20;
constexpr uint8_t kManufactureDateRegister = 0x22;

constexpr uint8_t kManufacturerPage = 0x04;
constexpr uint8_t kDeviceNamePage = 0x05;
constexpr uint8_t kChemistryPage = 0x06;
constexpr uint8_t kTextFirstRegister = 0x14;
constexpr size_t kTextLength = 28;

// Smart Battery Data values. Bits the module must ignore are set as well, so
// that a reader that forgets a mask reads something else.
constexpr uint8_t kCapacityModeBit = 0x80; // high byte of BatteryMode
constexpr uint8_t kAlarmModeBit = 0x20;    // unused by the module
constexpr uint16_t kOverTemperatureAlarm = 0x1000;
constexpr uint16_t kDischargingBit = 0x0040; // unused by the module
constexpr uint8_t kAuthenticityNoise = 0x0D; // bits below the authenticity field

uint8_t authenticityByte(const std::string &authenticity) {
    uint8_t field = 0x00;
    if (authenticity == "genuine") field = 0x80;
    if (authenticity == "authorized") field = 0x40;
    if (authenticity == "not-authenticated") field = 0x20;
    return static_cast<uint8_t>(field | kAuthenticityNoise);
}

uint16_t clampWord(double value) {
    return static_cast<uint16_t>(std::min(std::max(std::lround(value), 0L), 0xFFFFL));
}

// Capacities in mWh go out in units of 10 mWh.
uint16_t capacityWord(const BatteryDescription &battery, uint32_t capacity) {
    return battery.capacityUnit == "mWh" ? clampWord(capacity / 10.0) : clampWord(capacity);
}

uint16_t tenthsOfKelvin(double celsius) {
    return clampWord((celsius + 273.15) * 10.0);
}

uint16_t dateWord(const ManufactureDate &date) {
    const uint32_t years = date.year >= 1980 ? date.year - 1980 : 0;
    return static_cast<uint16_t>(((years & 0x7F) << 9) | ((date.month & 0x0F) << 5) |
                                 (date.day & 0x1F));
}

} // namespace

BatteryPages::BatteryPages() = default;

BatteryPages::BatteryPages(const BatteryDescription &battery) {
    if (!battery.registerBytes.empty()) {
        const size_t count = std::min(battery.registerBytes.size(), pages_.size() * kRegisterCount);
        for (size_t i = 0; i < count; ++i) {
            pages_[i / kRegisterCount][i % kRegisterCount] = battery.registerBytes[i];
        }
        return;
    }
    putByte(kStatusPage, kAuthenticityRegister, authenticityByte(battery.authenticity));
    putByte(kStatusPage, kBatteryModeHighRegister,
            static_cast<uint8_t>((battery.capacityUnit == "mWh" ? kCapacityModeBit : 0) |
                                 kAlarmModeBit));
    putWord(kStatusPage, kTemperatureRegister, tenthsOfKelvin(battery.temperature_C));
    putWord(kStatusPage, kFullChargeCapacityRegister,
            capacityWord(battery, battery.fullChargeCapacity));
    putWord(kStatusPage, kBatteryStatusRegister,
            static_cast<uint16_t>(kDischargingBit |
                                  (battery.overTemperature ? kOverTemperatureAlarm : 0)));
    putWord(kStatusPage, kCycleCountRegister, clampWord(battery.cycleCount));

    putWord(kDesignPage, kDesignCapacityRegister, capacityWord(battery, battery.designCapacity));
    putWord(kDesignPage, kDesignVoltageRegister, clampWord(battery.designVoltage_mV));
    putWord(kDesignPage, kSerialNumberRegister, clampWord(battery.serialNumber));
    putWord(kDesignPage, kCycleScaleRegister,
            static_cast<uint16_t>(((battery.cycleScaleTop & 0xF) << 12) |
                                  (battery.cycleScale & 0x0FFF)));
    putWord(kDesignPage, kManufactureDateRegister, dateWord(battery.manufactureDate));

    putText(kManufacturerPage, battery.manufacturer);
    putText(kDeviceNamePage, battery.deviceName);
    putText(kChemistryPage, battery.chemistry);
}

uint8_t BatteryPages::read(uint8_t page, uint8_t reg) const {
    if (page < kFirstPage || page > kLastPage || reg >= kRegisterCount) return 0;
    return pages_[page - kFirstPage][reg];
}

void BatteryPages::putByte(uint8_t page, uint8_t reg, uint8_t value) {
    pages_[page - kFirstPage][reg] = value;
}

void BatteryPages::putWord(uint8_t page, uint8_t lowReg, uint16_t value) {
    putByte(page, lowReg, static_cast<uint8_t>(value & 0xFF));
    putByte(page, static_cast<uint8_t>(lowReg + 1), static_cast<uint8_t>(value >> 8));
}

// A text fills the block from its first register; a shorter one is followed
// by a byte 0, a longer one is cut at the end of the block.
void BatteryPages::putText(uint8_t page, const std::string &text) {
    const size_t length = std::min(text.size(), kTextLength);
    for (size_t i = 0; i < length; ++i) {
        putByte(page, static_cast<uint8_t>(kTextFirstRegister + i), static_cast<uint8_t>(text[i]));
    }
}

} // namespace emulator
