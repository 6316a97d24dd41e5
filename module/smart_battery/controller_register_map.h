#pragma once

#include <cstdint>

// The battery interface of the embedded controller: two I/O ports in front of
// a register file that shows one battery and one page at a time. A word lies
// in two registers, low byte at the even number; readers fetch the high byte
// first.
namespace ec {

inline constexpr uint16_t kIndexPort = 0x1610;
inline constexpr uint16_t kDataPort = 0x1611;

// Registers of the access protocol.
inline constexpr uint8_t kCommandRegister = 0x00; // reads 0 when idle
inline constexpr uint8_t kSelectionRegister = 0x01;
inline constexpr uint8_t kBatteryRegister = 0x10;
inline constexpr uint8_t kStartSelection = 0xFF;
inline constexpr uint8_t kIdle = 0x00;
inline constexpr uint8_t kMainBattery = 0x00;
inline constexpr uint8_t kSecondaryBattery = 0x01;

// Pages, chosen by writing their number to the command register.
inline constexpr uint8_t kStatusPage = 0x02;
inline constexpr uint8_t kDesignPage = 0x03;
inline constexpr uint8_t kManufacturerPage = 0x04;
inline constexpr uint8_t kDeviceNamePage = 0x05;
inline constexpr uint8_t kChemistryPage = 0x06;

struct ByteRegister {
    uint8_t page;
    uint8_t number;
};

struct WordRegister {
    uint8_t page;
    uint8_t low;
    uint8_t high() const { return static_cast<uint8_t>(low + 1); }
};

// Page 0x02.
inline constexpr ByteRegister kPresenceStatus{kStatusPage, 0x10};
inline constexpr ByteRegister kAuthenticity{kStatusPage, 0x12};
inline constexpr ByteRegister kCapacityMode{kStatusPage, 0x15}; // high byte of BatteryMode
inline constexpr WordRegister kTemperature{kStatusPage, 0x16};
inline constexpr WordRegister kFullChargeCapacity{kStatusPage, 0x22};
inline constexpr WordRegister kBatteryStatus{kStatusPage, 0x2A};
inline constexpr WordRegister kCycleCount{kStatusPage, 0x2C};

// Page 0x03.
inline constexpr WordRegister kDesignCapacity{kDesignPage, 0x16};
inline constexpr WordRegister kDesignVoltage{kDesignPage, 0x18};
inline constexpr WordRegister kSerialNumber{kDesignPage, 0x1E};
inline constexpr WordRegister kCycleScale{kDesignPage, 0x20};
inline constexpr WordRegister kManufactureDate{kDesignPage, 0x22};

// Pages 0x04 to 0x06: one character per register, ended by a byte 0 or by
// the end of the block.
inline constexpr uint8_t kTextFirstRegister = 0x14;
inline constexpr uint8_t kTextLastRegister = 0x2F;
inline constexpr uint8_t kTextTerminator = 0x00;

// Presence status.
inline constexpr uint8_t kBattery0PresentBit = 0x40;
inline constexpr uint8_t kBattery1PresentBit = 0x20;

// Authenticity.
inline constexpr uint8_t kAuthenticityMask = 0xE0;
inline constexpr uint32_t kNotAuthenticated = 0x20;
inline constexpr uint32_t kAuthorized = 0x40;
inline constexpr uint32_t kGenuine = 0x80;

// Capacity mode: CAPACITY_MODE of BatteryMode, set for units of 10 mWh.
inline constexpr uint8_t kCapacityModeBit = 0x80;

// Temperature: tenths of a kelvin.
inline constexpr double kKelvinPerUnit = 0.1;
inline constexpr double kZeroCelsiusInKelvin = 273.15;

// Battery status: OVER_TEMP_ALARM.
inline constexpr uint16_t kOverTemperatureAlarm = 0x1000;

// Cycle scale: the divisor below, four unused bits above.
inline constexpr uint16_t kCycleScaleMask = 0x0FFF;
inline constexpr unsigned kCycleScaleTopShift = 12;

// Manufacture date: day, month, years since 1980.
inline constexpr uint16_t kDayMask = 0x001F;
inline constexpr uint16_t kMonthMask = 0x01E0;
inline constexpr unsigned kMonthShift = 5;
inline constexpr unsigned kYearShift = 9;
inline constexpr uint32_t kYearBase = 1980;

} // namespace ec
