#pragma once

#include <cstdint>
#include <string>

// The module's only road to the embedded controller. Three primitives reach
// its registers; selection, the readers and the presence questions are
// written once on top of them. No state of the controller is kept: every
// value is fetched anew with selection, page and data. Batteries are
// numbered 0 (main) and 1 (secondary).
class BatteryIOAccess {
public:
    virtual ~BatteryIOAccess();
    // True when both port accesses succeeded.
    virtual bool writeRegister(uint8_t reg, uint8_t value) = 0;
    virtual bool readRegister(uint8_t reg, uint8_t *value) = 0;
    // True when the command register read 0 within the time limit.
    virtual bool waitReady() = 0;

    // Any battery other than 0 counts as 1.
    bool selectBattery(uint32_t battery);

    // Texts: the out string is replaced in every case, so a failed read
    // leaves it empty or shortened.
    bool readManufacturerName(uint32_t battery, std::string &text);
    bool readDeviceName(uint32_t battery, std::string &text);
    bool readDeviceChemistry(uint32_t battery, std::string &text);
    // month/day/year; written only when every read succeeded.
    bool readManufactureDate(uint32_t battery, std::string &date);

    // A failed low-byte read leaves the high byte alone in the value.
    void readDesignCapacity(uint32_t battery, uint16_t &capacity);
    void readFullChargeCapacity(uint32_t battery, uint16_t &capacity);
    void readCycleCount(uint32_t battery, uint16_t &count);
    void readSerialNumber(uint32_t battery, uint16_t &serial);
    void readDesignVoltage(uint32_t battery, uint16_t &millivolts);

    // Written only when every read succeeded.
    bool readCapacityMode(uint32_t battery, uint32_t &mode); // 1: units of 10 mWh
    void readTemperature(uint32_t battery, float &celsius);
    void readOverTemperatureFlag(uint32_t battery, uint8_t &flag);
    void readCycleScale(uint32_t battery, uint16_t &top, uint16_t &scale);
    bool readAuthenticity(uint32_t battery, uint32_t &masked);

    bool isBatteryPresent(uint32_t battery);
    // Whether the status seen through the main battery reports a second one.
    bool isSecondBatteryReported();

private:
    bool choosePage(uint32_t battery, uint8_t page);
    bool readByte(uint32_t battery, uint8_t page, uint8_t reg, uint8_t &value);
    bool readWord(uint32_t battery, uint8_t page, uint8_t low, uint16_t &word);
    void readWordKeepingHighByte(uint32_t battery, uint8_t page, uint8_t low, uint16_t &word);
    bool readText(uint32_t battery, uint8_t page, std::string &text);
    bool presenceBit(uint32_t battery, uint8_t bit);
};
