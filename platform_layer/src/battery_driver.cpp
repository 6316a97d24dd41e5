// The battery class driver's requests, answered for every machine from what
// it says of its batteries: tag check, input and output sizes, records and
// texts, and the faults a machine makes the driver show.

#include <windows.h>
#include <winioctl.h>

#include <batclass.h>

#include <algorithm>
#include <cstring>

#include "device_requests.h"

namespace platform_layer {

namespace {

template <typename Record>
uint32_t copyRecord(const Record &record, void *output, uint32_t outputSize, uint32_t *returned) {
    if (output == nullptr || outputSize < sizeof record) return ERROR_INSUFFICIENT_BUFFER;
    std::memcpy(output, &record, sizeof record);
    *returned = sizeof record;
    return ERROR_SUCCESS;
}

// A level the driver does not give fails as a request it does not know.
template <typename Record>
uint32_t copyLevel(const std::optional<Record> &record, void *output, uint32_t outputSize,
                   uint32_t *returned) {
    if (!record) return ERROR_INVALID_FUNCTION;
    return copyRecord(*record, output, outputSize, returned);
}

uint32_t copyRaw(const RawAnswer &answer, void *output, uint32_t outputSize, uint32_t *returned) {
    if (answer.status != 0) return answer.status;
    const size_t count = std::min<size_t>(answer.bytes.size(), output == nullptr ? 0 : outputSize);
    if (count != 0) std::memcpy(output, answer.bytes.data(), count);
    *returned = static_cast<uint32_t>(count);
    return ERROR_SUCCESS;
}

// UTF-16 with its terminator, a unit per byte of the text. A driver that
// leaves texts unterminated fills every unit of the buffer instead.
uint32_t copyText(const std::optional<std::string> &text, bool unterminated, void *output,
                  uint32_t outputSize, uint32_t *returned) {
    if (!text) return ERROR_INVALID_FUNCTION;
    if (output == nullptr) return ERROR_INSUFFICIENT_BUFFER;
    const uint32_t units = outputSize / sizeof(WCHAR);
    auto *out = static_cast<uint8_t *>(output);
    const auto putUnit = [out](size_t at, char byte) {
        out[2 * at] = static_cast<uint8_t>(byte);
        out[2 * at + 1] = 0;
    };
    if (unterminated) {
        const std::string fill = text->empty() ? std::string("X") : *text;
        for (uint32_t i = 0; i < units; ++i) putUnit(i, fill[i % fill.size()]);
        *returned = units * sizeof(WCHAR);
        return ERROR_SUCCESS;
    }
    if (text->size() + 1 > units) return ERROR_INSUFFICIENT_BUFFER;
    for (size_t i = 0; i < text->size(); ++i) putUnit(i, (*text)[i]);
    putUnit(text->size(), '\0');
    *returned = static_cast<uint32_t>(sizeof(WCHAR) * (text->size() + 1));
    return ERROR_SUCCESS;
}

ULONG orUnknown(const std::optional<uint32_t> &figure, ULONG unknown) {
    return figure ? static_cast<ULONG>(*figure) : unknown;
}

std::optional<BATTERY_INFORMATION> informationRecord(const std::optional<BatteryFigures> &info) {
    if (!info) return std::nullopt;
    BATTERY_INFORMATION record = {};
    record.Capabilities =
        BATTERY_SYSTEM_BATTERY | (info->relativeOnly ? BATTERY_CAPACITY_RELATIVE : 0);
    record.Technology = 1; // rechargeable
    std::memcpy(record.Chemistry, info->chemistry.data(), sizeof record.Chemistry);
    record.DesignedCapacity = orUnknown(info->designedCapacity_mWh, BATTERY_UNKNOWN_CAPACITY);
    record.FullChargedCapacity = orUnknown(info->fullChargedCapacity_mWh, BATTERY_UNKNOWN_CAPACITY);
    record.DefaultAlert1 = info->defaultAlert1_mWh;
    record.DefaultAlert2 = info->defaultAlert2_mWh;
    record.CycleCount = info->cycleCount;
    return record;
}

std::optional<BATTERY_MANUFACTURE_DATE> dateRecord(const std::optional<BatteryDate> &date) {
    if (!date) return std::nullopt;
    BATTERY_MANUFACTURE_DATE record = {};
    record.Day = date->day;
    record.Month = date->month;
    record.Year = date->year;
    return record;
}

std::optional<BATTERY_STATUS> statusRecord(const std::optional<BatteryStatus> &status) {
    if (!status) return std::nullopt;
    BATTERY_STATUS record = {};
    record.PowerState = (status->onLine ? BATTERY_POWER_ON_LINE : 0) |
                        (status->discharging ? BATTERY_DISCHARGING : 0) |
                        (status->charging ? BATTERY_CHARGING : 0);
    record.Capacity = orUnknown(status->capacity_mWh, BATTERY_UNKNOWN_CAPACITY);
    record.Voltage = orUnknown(status->voltage_mV, BATTERY_UNKNOWN_VOLTAGE);
    record.Rate = status->rate_mW ? static_cast<LONG>(*status->rate_mW)
                                  : static_cast<LONG>(BATTERY_UNKNOWN_RATE);
    return record;
}

uint32_t information(Machine &machine, const std::string &battery, ULONG level, void *output,
                     uint32_t outputSize, uint32_t *returned) {
    if (level > BatterySerialNumber) return ERROR_INVALID_PARAMETER;
    ProtocolFaults &faults = machine.faults();
    if (const auto raw = faults.rawAnswer(battery, DriverRequest::Information, level)) {
        return copyRaw(*raw, output, outputSize, returned);
    }
    const bool unterminated = faults.unterminatedTexts(battery);
    const auto text = [&](BatteryText which) {
        return copyText(machine.batteryText(battery, which), unterminated, output, outputSize,
                        returned);
    };
    switch (level) {
    case BatteryInformation:
        return copyLevel(informationRecord(machine.batteryFigures(battery)), output, outputSize,
                         returned);
    case BatteryTemperature:
        return copyLevel(machine.batteryTemperature_deciKelvin(battery), output, outputSize,
                         returned);
    case BatteryEstimatedTime: {
        const std::optional<std::optional<uint32_t>> timeLeft = machine.batteryTimeLeft_s(battery);
        if (!timeLeft) return ERROR_INVALID_FUNCTION;
        return copyRecord(orUnknown(*timeLeft, BATTERY_UNKNOWN_TIME), output, outputSize, returned);
    }
    case BatteryDeviceName:
        return text(BatteryText::DeviceName);
    case BatteryManufactureDate:
        return copyLevel(dateRecord(machine.batteryManufactureDate(battery)), output, outputSize,
                         returned);
    case BatteryManufactureName:
        return text(BatteryText::Manufacturer);
    case BatteryUniqueID:
        return text(BatteryText::UniqueId);
    case BatterySerialNumber:
        return text(BatteryText::SerialNumber);
    default:
        return ERROR_INVALID_FUNCTION; // granularity: no driver here gives it
    }
}

} // namespace

uint32_t batteryRequest(Machine &machine, const std::string &battery, uint32_t code,
                        const void *input, uint32_t inputSize, void *output, uint32_t outputSize,
                        uint32_t *returned) {
    *returned = 0;
    ProtocolFaults &faults = machine.faults();
    faults.driverRequested(battery);
    // A driver that hands out its own tags takes them back, whatever they are.
    const std::optional<RawAnswer> rawTag = faults.rawAnswer(battery, DriverRequest::Tag, 0);
    const auto tagHolds = [&](ULONG given) {
        const std::optional<uint32_t> tag = machine.batteryTag(battery);
        return tag && (given == *tag || rawTag);
    };
    if (code == IOCTL_BATTERY_QUERY_TAG) {
        if (input == nullptr || inputSize < sizeof(ULONG)) return ERROR_INVALID_PARAMETER;
        if (output == nullptr || outputSize < sizeof(ULONG)) return ERROR_INSUFFICIENT_BUFFER;
        // With a wait time of 0 an empty slot answers at once, with no tag.
        const std::optional<uint32_t> tag = machine.batteryTag(battery);
        if (!tag) return ERROR_FILE_NOT_FOUND;
        if (rawTag) return copyRaw(*rawTag, output, outputSize, returned);
        const uint32_t result = copyRecord(static_cast<ULONG>(*tag), output, outputSize, returned);
        return result == ERROR_SUCCESS && faults.tagFails(battery) ? ERROR_GEN_FAILURE : result;
    }
    if (code == IOCTL_BATTERY_QUERY_INFORMATION) {
        if (input == nullptr || inputSize < sizeof(BATTERY_QUERY_INFORMATION)) {
            return ERROR_INVALID_PARAMETER;
        }
        BATTERY_QUERY_INFORMATION query;
        std::memcpy(&query, input, sizeof query);
        if (!tagHolds(query.BatteryTag)) return ERROR_FILE_NOT_FOUND;
        return information(machine, battery, static_cast<ULONG>(query.InformationLevel), output,
                           outputSize, returned);
    }
    if (code == IOCTL_BATTERY_QUERY_STATUS) {
        if (input == nullptr || inputSize < sizeof(BATTERY_WAIT_STATUS)) {
            return ERROR_INVALID_PARAMETER;
        }
        BATTERY_WAIT_STATUS wait;
        std::memcpy(&wait, input, sizeof wait);
        if (!tagHolds(wait.BatteryTag)) return ERROR_FILE_NOT_FOUND;
        if (faults.statusFails(battery)) return ERROR_GEN_FAILURE;
        if (const auto raw = faults.rawAnswer(battery, DriverRequest::Status, 0)) {
            return copyRaw(*raw, output, outputSize, returned);
        }
        return copyLevel(statusRecord(machine.batteryStatus(battery)), output, outputSize,
                         returned);
    }
    return ERROR_INVALID_FUNCTION;
}

} // namespace platform_layer
