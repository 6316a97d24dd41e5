#include "battery_device.h"

#include <batclass.h>

#include <cstring>
#include <optional>

#include "battery_records.h"

namespace platform_layer::battery_device {

namespace {

// The tag names the battery in its slot: a battery that is taken out has
// none, and its old tag is refused until it is back.
ULONG tagOf(const std::string &supply) {
    uint32_t hash = 2166136261u;
    for (const char byte : supply) hash = (hash ^ static_cast<unsigned char>(byte)) * 16777619u;
    return hash == BATTERY_TAG_INVALID ? 1u : hash;
}

template <typename Record>
uint32_t copyRecord(const std::optional<Record> &record, void *output, uint32_t outputSize,
                    uint32_t *returned) {
    if (!record) return ERROR_INVALID_FUNCTION; // a driver that does not give the level
    if (output == nullptr || outputSize < sizeof(Record)) return ERROR_INSUFFICIENT_BUFFER;
    std::memcpy(output, &*record, sizeof(Record));
    *returned = sizeof(Record);
    return ERROR_SUCCESS;
}

// UTF-16 with its terminator, a unit per byte of the kernel's text.
uint32_t copyText(const std::optional<std::string> &text, void *output, uint32_t outputSize,
                  uint32_t *returned) {
    if (!text) return ERROR_INVALID_FUNCTION;
    const size_t bytes = (text->size() + 1) * sizeof(WCHAR);
    if (output == nullptr || outputSize < bytes) return ERROR_INSUFFICIENT_BUFFER;
    auto *units = static_cast<WCHAR *>(output);
    for (size_t i = 0; i < text->size(); ++i) {
        units[i] = static_cast<WCHAR>(static_cast<unsigned char>((*text)[i]));
    }
    units[text->size()] = 0;
    *returned = static_cast<uint32_t>(bytes);
    return ERROR_SUCCESS;
}

uint32_t information(PowerSupply &battery, ULONG level, void *output, uint32_t outputSize,
                     uint32_t *returned) {
    switch (level) {
    case BatteryInformation:
        return copyRecord(battery_records::information(battery), output, outputSize, returned);
    case BatteryTemperature:
        return copyRecord(battery_records::temperature(battery), output, outputSize, returned);
    case BatteryDeviceName:
        return copyText(battery.modelName(), output, outputSize, returned);
    case BatteryManufactureDate:
        return copyRecord(battery_records::manufactureDate(battery), output, outputSize, returned);
    case BatteryManufactureName:
        return copyText(battery.manufacturer(), output, outputSize, returned);
    case BatteryUniqueID:
        return copyText(battery_records::uniqueId(battery), output, outputSize, returned);
    case BatterySerialNumber:
        return copyText(battery.serialNumber(), output, outputSize, returned);
    case BatteryGranularityInformation:
    case BatteryEstimatedTime:
        return ERROR_INVALID_FUNCTION; // not given by the kernel's class
    default:
        return ERROR_INVALID_PARAMETER;
    }
}

} // namespace

std::string pathOf(const std::string &supply) {
    return "\\\\?\\POWER_SUPPLY#" + supply + "#{72631e54-78a4-11d0-bcf7-00aa00b7b32a}";
}

uint32_t answer(SysfsReading &reading, const std::string &supply, uint32_t code, const void *input,
                uint32_t inputSize, void *output, uint32_t outputSize, uint32_t *returned) {
    *returned = 0;
    PowerSupply battery(reading, supply);
    // A battery taken out of its slot, or a supply that is gone, has no tag.
    const bool there = battery.isSystemBattery() && battery.present() && !reading.sawMalformed();
    const ULONG tag = tagOf(supply);
    if (code == IOCTL_BATTERY_QUERY_TAG) {
        if (input == nullptr || inputSize < sizeof(ULONG)) return ERROR_INVALID_PARAMETER;
        if (output == nullptr || outputSize < sizeof(ULONG)) return ERROR_INSUFFICIENT_BUFFER;
        if (!there) return ERROR_FILE_NOT_FOUND;
        return copyRecord(std::optional<ULONG>(tag), output, outputSize, returned);
    }
    if (code == IOCTL_BATTERY_QUERY_INFORMATION) {
        if (input == nullptr || inputSize < sizeof(BATTERY_QUERY_INFORMATION)) {
            return ERROR_INVALID_PARAMETER;
        }
        BATTERY_QUERY_INFORMATION query;
        std::memcpy(&query, input, sizeof query);
        if (!there || query.BatteryTag != tag) return ERROR_FILE_NOT_FOUND;
        return information(battery, static_cast<ULONG>(query.InformationLevel), output, outputSize,
                           returned);
    }
    if (code == IOCTL_BATTERY_QUERY_STATUS) {
        if (input == nullptr || inputSize < sizeof(BATTERY_WAIT_STATUS)) {
            return ERROR_INVALID_PARAMETER;
        }
        BATTERY_WAIT_STATUS wait;
        std::memcpy(&wait, input, sizeof wait);
        if (!there || wait.BatteryTag != tag) return ERROR_FILE_NOT_FOUND;
        return copyRecord(battery_records::status(battery, onAcLine(reading)), output, outputSize,
                          returned);
    }
    return ERROR_INVALID_FUNCTION;
}

} // namespace platform_layer::battery_device
