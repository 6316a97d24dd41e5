#include "battery_driver.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

#include "emulator/notebook.h"

namespace emulator {

namespace {
constexpr uint32_t kInvalidFunction = 1;
constexpr uint32_t kFileNotFound = 2;
constexpr uint32_t kAccessDenied = 5;
constexpr uint32_t kGenFailure = 31;
constexpr uint32_t kInvalidParameter = 87;
constexpr uint32_t kInsufficientBuffer = 122;

constexpr uint32_t kUnknown = 0xFFFFFFFFu;
constexpr uint32_t kUnknownRate = 0x80000000u;
constexpr uint32_t kSystemBattery = 0x80000000u;
constexpr uint32_t kPowerOnLine = 1, kDischarging = 2, kCharging = 4;

// Information levels, numbered as the driver interface numbers them.
const char *const kLevelNames[] = {"BatteryInformation",     "BatteryGranularityInformation",
                                   "BatteryTemperature",     "BatteryEstimatedTime",
                                   "BatteryDeviceName",      "BatteryManufactureDate",
                                   "BatteryManufactureName", "BatteryUniqueID",
                                   "BatterySerialNumber"};
constexpr uint32_t kLevelCount = sizeof kLevelNames / sizeof kLevelNames[0];

// Records of the driver interface, laid out as on 64-bit Windows.
struct QueryInformation {
    uint32_t tag;
    uint32_t level;
    int32_t atRate;
};
struct Information {
    uint32_t capabilities;
    uint8_t technology;
    uint8_t reserved[3];
    uint8_t chemistry[4];
    uint32_t designedCapacity;
    uint32_t fullChargedCapacity;
    uint32_t defaultAlert1;
    uint32_t defaultAlert2;
    uint32_t criticalBias;
    uint32_t cycleCount;
};
struct WaitStatus {
    uint32_t tag;
    uint32_t timeout;
    uint32_t powerState;
    uint32_t lowCapacity;
    uint32_t highCapacity;
};
struct Status {
    uint32_t powerState;
    uint32_t capacity;
    uint32_t voltage;
    int32_t rate;
};
static_assert(sizeof(QueryInformation) == 12, "BATTERY_QUERY_INFORMATION is 12 bytes");
static_assert(sizeof(Information) == 36, "BATTERY_INFORMATION is 36 bytes");
static_assert(sizeof(WaitStatus) == 20, "BATTERY_WAIT_STATUS is 20 bytes");
static_assert(sizeof(Status) == 16, "BATTERY_STATUS is 16 bytes");

// The driver speaks milliwatt-hours; a battery described in milliampere-hours
// is converted at its design voltage.
uint32_t milliwattHours(const BatteryDescription &battery, uint32_t capacity) {
    if (battery.capacityUnit == "mWh") return capacity;
    return static_cast<uint32_t>(static_cast<uint64_t>(capacity) * battery.designVoltage_mV / 1000);
}

// The tag names one insertion of the battery; the slot keeps two batteries
// apart.
uint32_t tagOf(const BatteryDescription &battery) {
    return 0x4711u + battery.slot;
}

uint32_t copyText(const std::string &text, bool unterminated, void *output, uint32_t outputSize,
                  uint32_t *returned) {
    const uint32_t units = outputSize / 2;
    auto *out = static_cast<uint8_t *>(output);
    if (unterminated) {
        // Every unit of the buffer holds a character and none is NUL.
        const std::string fill = text.empty() ? std::string("X") : text;
        for (uint32_t i = 0; i < units; ++i) {
            const auto byte = static_cast<uint8_t>(fill[i % fill.size()]);
            out[2 * i] = byte;
            out[2 * i + 1] = 0;
        }
        *returned = units * 2;
        return 0;
    }
    if (text.size() + 1 > units) return kInsufficientBuffer;
    for (size_t i = 0; i < text.size(); ++i) {
        out[2 * i] = static_cast<uint8_t>(text[i]);
        out[2 * i + 1] = 0;
    }
    out[2 * text.size()] = 0;
    out[2 * text.size() + 1] = 0;
    *returned = static_cast<uint32_t>(2 * (text.size() + 1));
    return 0;
}

uint32_t copyRaw(const RawDriverAnswer &answer, void *output, uint32_t outputSize,
                 uint32_t *returned) {
    if (answer.status != 0) return answer.status;
    const size_t count = std::min<size_t>(answer.bytes.size(), output == nullptr ? 0 : outputSize);
    if (count != 0) std::memcpy(output, answer.bytes.data(), count);
    *returned = static_cast<uint32_t>(count);
    return 0;
}

template <typename Record>
uint32_t copyRecord(const Record &record, void *output, uint32_t outputSize, uint32_t *returned) {
    if (output == nullptr || outputSize < sizeof record) return kInsufficientBuffer;
    std::memcpy(output, &record, sizeof record);
    *returned = sizeof record;
    return 0;
}
} // namespace

uint32_t BatteryDriver::open() {
    return notebook_.batteries().at(battery_).driver.openFails ? kAccessDenied : 0;
}

bool BatteryDriver::present() {
    return notebook_.batteries().at(battery_).present && !vanished_;
}

uint32_t BatteryDriver::control(uint32_t code, const void *input, uint32_t inputSize, void *output,
                                uint32_t outputSize, uint32_t *returned) {
    uint32_t ignored = 0;
    if (returned == nullptr) returned = &ignored;
    *returned = 0;
    const BatteryDescription &battery = notebook_.batteries().at(battery_);

    ++notebook_.counters().batteryRequests;
    ++requests_;
    if (battery.driver.vanishAfterRequests != 0 && requests_ > battery.driver.vanishAfterRequests) {
        vanished_ = true;
    }

    // A driver that hands out its own tags takes them back, whatever they are.
    const bool anyTag = battery.driver.rawAnswers.count(DriverFaults::kRawTag) != 0;
    if (code == kQueryTag) {
        if (input == nullptr || inputSize < sizeof(uint32_t)) return kInvalidParameter;
        if (output == nullptr || outputSize < sizeof(uint32_t)) return kInsufficientBuffer;
        // With a wait time of 0 an empty slot answers at once, with no tag.
        if (!present()) return kFileNotFound;
        const auto raw = battery.driver.rawAnswers.find(DriverFaults::kRawTag);
        if (raw != battery.driver.rawAnswers.end())
            return copyRaw(raw->second, output, outputSize, returned);
        const uint32_t result = copyRecord(tagOf(battery), output, outputSize, returned);
        return battery.driver.tagFails && result == 0 ? kGenFailure : result;
    }
    if (code == kQueryInformation) {
        if (input == nullptr || inputSize < sizeof(QueryInformation)) return kInvalidParameter;
        QueryInformation query;
        std::memcpy(&query, input, sizeof query);
        if (!present() || (query.tag != tagOf(battery) && !anyTag)) return kFileNotFound;
        return information(query.level, output, outputSize, returned);
    }
    if (code == kQueryStatus) {
        if (input == nullptr || inputSize < sizeof(WaitStatus)) return kInvalidParameter;
        WaitStatus wait;
        std::memcpy(&wait, input, sizeof wait);
        if (!present() || (wait.tag != tagOf(battery) && !anyTag)) return kFileNotFound;
        if (battery.driver.statusFails) return kGenFailure;
        const auto raw = battery.driver.rawAnswers.find(DriverFaults::kRawStatus);
        if (raw != battery.driver.rawAnswers.end())
            return copyRaw(raw->second, output, outputSize, returned);
        return status(output, outputSize, returned);
    }
    return kInvalidFunction;
}

uint32_t BatteryDriver::information(uint32_t level, void *output, uint32_t outputSize,
                                    uint32_t *returned) {
    const BatteryDescription &battery = notebook_.batteries().at(battery_);
    if (level >= kLevelCount) return kInvalidParameter;
    const auto raw = battery.driver.rawAnswers.find(level);
    if (raw != battery.driver.rawAnswers.end())
        return copyRaw(raw->second, output, outputSize, returned);
    for (const std::string &failing : battery.driver.failingLevels) {
        if (failing == kLevelNames[level]) return kInvalidFunction;
    }
    if (output == nullptr) return kInsufficientBuffer;
    const bool unterminated = battery.driver.unterminatedTexts;

    switch (level) {
    case 0: {
        Information info{};
        info.capabilities = kSystemBattery;
        info.technology = 1; // rechargeable
        std::memcpy(info.chemistry, battery.chemistry.c_str(),
                    battery.chemistry.size() < 4 ? battery.chemistry.size() : 4);
        info.designedCapacity = battery.driver.unknownCapacities
                                    ? kUnknown
                                    : milliwattHours(battery, battery.designCapacity);
        info.fullChargedCapacity = battery.driver.unknownCapacities
                                       ? kUnknown
                                       : milliwattHours(battery, battery.fullChargeCapacity);
        info.defaultAlert1 = info.fullChargedCapacity / 10;
        info.defaultAlert2 = info.fullChargedCapacity / 20;
        info.cycleCount = battery.cycleCount;
        return copyRecord(info, output, outputSize, returned);
    }
    case 2: {
        const double kelvin = (battery.temperature_C + 273.15) * 10.0;
        return copyRecord(static_cast<uint32_t>(std::lround(kelvin < 0 ? 0 : kelvin)), output,
                          outputSize, returned);
    }
    case 3:
        return copyRecord(kUnknown, output, outputSize, returned);
    case 4:
        return copyText(battery.deviceName, unterminated, output, outputSize, returned);
    case 5: {
        const uint8_t date[4] = {static_cast<uint8_t>(battery.manufactureDate.day),
                                 static_cast<uint8_t>(battery.manufactureDate.month),
                                 static_cast<uint8_t>(battery.manufactureDate.year & 0xFF),
                                 static_cast<uint8_t>(battery.manufactureDate.year >> 8)};
        return copyRecord(date, output, outputSize, returned);
    }
    case 6:
        return copyText(battery.manufacturer, unterminated, output, outputSize, returned);
    case 7:
        return copyText(battery.uniqueId, unterminated, output, outputSize, returned);
    case 8:
        return copyText(battery.driver.serialNumberText.empty()
                            ? std::to_string(battery.serialNumber)
                            : battery.driver.serialNumberText,
                        unterminated, output, outputSize, returned);
    default:
        return kInvalidFunction; // granularity: not reported by this driver
    }
}

uint32_t BatteryDriver::status(void *output, uint32_t outputSize, uint32_t *returned) {
    const BatteryDescription &battery = notebook_.batteries().at(battery_);
    const bool ac = notebook_.power().ac;
    const uint32_t full = milliwattHours(battery, battery.fullChargeCapacity);
    Status status{};
    status.voltage = battery.designVoltage_mV;
    if (battery.driver.unknownCapacities) {
        status.capacity = kUnknown;
        status.rate = static_cast<int32_t>(kUnknownRate);
        status.powerState = ac ? kPowerOnLine : kDischarging;
        return copyRecord(status, output, outputSize, returned);
    }
    status.capacity = static_cast<uint32_t>(std::lround(full * battery.chargePercent / 100.0));
    const bool charging = ac && battery.chargePercent < 100.0;
    // A plain notebook: charging at half its capacity per hour, running down
    // at a fifth.
    status.rate = charging ? static_cast<int32_t>(full / 2)
                  : ac     ? 0
                           : -static_cast<int32_t>(full / 5);
    status.powerState = (ac ? kPowerOnLine : kDischarging) | (charging ? kCharging : 0);
    return copyRecord(status, output, outputSize, returned);
}

} // namespace emulator
