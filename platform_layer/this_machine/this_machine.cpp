// This machine behind the machine interface: the kernel's power-supply
// class answers for batteries, adapters and the power line. Every request
// starts a fresh reading, so an unplugged cable or a removed battery shows
// at once.

#include "platform_layer/this_machine.h"

#include <sys/utsname.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <map>
#include <mutex>
#include <string>
#include <thread>

#include "battery_device.h"
#include "battery_records.h"
#include "com_apartment.h"
#include "machine_settings/settings_answers.h"
#include "power_supply.h"
#include "sysfs_reading.h"
#include "wql_statement.h"

namespace platform_layer {

namespace {

constexpr uint32_t kErrorFileNotFound = 2;
constexpr uint32_t kErrorInvalidHandle = 6;
constexpr uint32_t kErrorGenFailure = 31;
constexpr uint32_t kErrorNotSupported = 50;
constexpr uint32_t kPortRefused = 1;
constexpr int32_t kInvalidQueryType = static_cast<int32_t>(0x80041018u);
constexpr int32_t kInvalidClass = static_cast<int32_t>(0x80041010u);
constexpr int32_t kInvalidQuery = static_cast<int32_t>(0x80041017u);

// The display's device path, kept as a handle's supply name: no supply name
// holds a backslash.
constexpr const char *kDisplayPath = "\\\\.\\LCD";

std::atomic<double> gTimeScale{1.0};

machine_settings::Scheme settingsScheme(PowerScheme scheme) {
    switch (scheme) {
    case PowerScheme::HighPerformance:
        return machine_settings::Scheme::HighPerformance;
    case PowerScheme::Balanced:
        return machine_settings::Scheme::Balanced;
    case PowerScheme::PowerSaver:
        return machine_settings::Scheme::PowerSaver;
    default:
        return machine_settings::Scheme::Own;
    }
}

PowerScheme windowsScheme(machine_settings::Scheme scheme) {
    switch (scheme) {
    case machine_settings::Scheme::HighPerformance:
        return PowerScheme::HighPerformance;
    case machine_settings::Scheme::Balanced:
        return PowerScheme::Balanced;
    case machine_settings::Scheme::PowerSaver:
        return PowerScheme::PowerSaver;
    default:
        return PowerScheme::Custom;
    }
}

constexpr const char *kBatteryClassKey = "{72631E54-78A4-11D0-BCF7-00AA00B7B32A}";
constexpr const char *kDriverClassRoot = "SYSTEM\\CurrentControlSet\\Control\\Class\\";

SysfsReading newRequest() {
    beginSysfsRequest();
    return SysfsReading();
}

std::string driverKey(size_t index) {
    char suffix[16];
    std::snprintf(suffix, sizeof suffix, "\\%04zu", index);
    return std::string(kBatteryClassKey) + suffix;
}

// The battery drivers' version is the running kernel's.
std::string kernelRelease() {
    utsname names = {};
    return ::uname(&names) == 0 ? std::string(names.release) : std::string();
}

InstrumentationInstance batteryInstance(PowerSupply &battery) {
    InstrumentationInstance instance;
    instance["DeviceID"] = {InstrumentationValue::Text, *battery_records::uniqueId(battery), 0, 0,
                            0};
    const std::optional<std::string> model = battery.modelName();
    instance["Name"] = model ? InstrumentationValue{InstrumentationValue::Text, *model, 0, 0, 0}
                             : InstrumentationValue{};
    // A uint64 property travels as text.
    const std::optional<int64_t> voltage = battery_records::designVoltage_mV(battery);
    instance["DesignVoltage"] = voltage ? InstrumentationValue{InstrumentationValue::Text,
                                                               std::to_string(*voltage), 0, 0, 0}
                                        : InstrumentationValue{};
    return instance;
}

const InstrumentationValue *findProperty(const InstrumentationInstance &instance,
                                         const std::string &name) {
    for (const auto &property : instance) {
        if (sameIgnoringCase(property.first, name)) return &property.second;
    }
    return nullptr;
}

class ThisMachine : public Machine {
public:
    uint32_t tickCount() override {
        const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
        const double milliseconds =
            std::chrono::duration<double, std::milli>(sinceStart).count() * gTimeScale.load();
        return static_cast<uint32_t>(static_cast<uint64_t>(milliseconds));
    }
    void sleep(uint32_t milliseconds) override {
        std::this_thread::sleep_for(
            std::chrono::duration<double, std::milli>(milliseconds / gTimeScale.load()));
    }

    uint32_t openDevice(const std::string &path, void **handle) override {
        if (sameIgnoringCase(path, kDisplayPath)) {
            std::lock_guard<std::mutex> lock(mutex_);
            if (const uint32_t error = display_.open()) return error;
            *handle = newHandle(kDisplayPath);
            return 0;
        }
        SysfsReading reading = newRequest();
        for (const std::string &supply : systemBatteries(reading)) {
            if (!sameIgnoringCase(battery_device::pathOf(supply), path)) continue;
            std::lock_guard<std::mutex> lock(mutex_);
            *handle = newHandle(supply);
            return 0;
        }
        return kErrorFileNotFound;
    }
    uint32_t controlDevice(void *handle, uint32_t code, const void *input, uint32_t inputSize,
                           void *output, uint32_t outputSize, uint32_t *returned) override {
        std::string supply;
        {
            std::lock_guard<std::mutex> lock(mutex_);
            const auto found = handles_.find(handle);
            if (found == handles_.end()) return kErrorInvalidHandle;
            supply = found->second;
            if (supply == kDisplayPath) {
                return display_.control(code, input, inputSize, output, outputSize, returned);
            }
        }
        SysfsReading reading = newRequest();
        return battery_device::answer(reading, supply, code, input, inputSize, output, outputSize,
                                      returned);
    }
    bool closeDevice(void *handle) override {
        std::lock_guard<std::mutex> lock(mutex_);
        return handles_.erase(handle) == 1;
    }

    // The AC adapters first, then each battery, as Windows lists them.
    std::vector<SetupDevice> batteryClassDevices() override {
        SysfsReading reading = newRequest();
        std::vector<SetupDevice> devices;
        for (const std::string &supply : adapters(reading)) {
            devices.push_back({"AC adapter " + supply, driverKey(devices.size())});
        }
        for (const std::string &supply : systemBatteries(reading)) {
            devices.push_back({"Battery " + supply, driverKey(devices.size())});
        }
        return devices;
    }
    std::vector<std::string> batteryInterfacePaths() override {
        SysfsReading reading = newRequest();
        std::vector<std::string> paths;
        for (const std::string &supply : systemBatteries(reading)) {
            paths.push_back(battery_device::pathOf(supply));
        }
        return paths;
    }
    std::optional<std::string> registryText(const std::string &keyPath,
                                            const std::string &name) override {
        if (!sameIgnoringCase(name, "DriverVersion")) return std::nullopt;
        const size_t devices = batteryClassDevices().size();
        for (size_t index = 0; index < devices; ++index) {
            if (sameIgnoringCase(keyPath, kDriverClassRoot + driverKey(index)))
                return kernelRelease();
        }
        return std::nullopt;
    }

    uint32_t systemPower(SystemPower *power) override {
        SysfsReading reading = newRequest();
        power->acOnLine = onAcLine(reading);
        // The AC line stands on its own: a battery figure that cannot be read
        // makes only that battery's charge unknown.
        if (reading.sawMalformed()) return kErrorGenFailure;
        int64_t percentSum = 0;
        unsigned counted = 0;
        for (const std::string &name : systemBatteries(reading)) {
            PowerSupply battery(reading, name);
            if (!battery.present()) continue;
            const std::optional<int64_t> percent = batteryPercent(battery);
            if (!percent) continue;
            percentSum += *percent;
            ++counted;
        }
        power->anyBattery = counted > 0;
        power->batteryPercent = counted > 0 ? static_cast<uint32_t>(percentSum / counted) : 255;
        return 0;
    }
    // power-profiles-daemon or the firmware's platform profile; neither makes
    // the query fail, as Windows's does without a power scheme.
    uint32_t activeScheme(PowerScheme *scheme) override {
        machine_settings::Scheme found = machine_settings::Scheme::Balanced;
        std::lock_guard<std::mutex> lock(mutex_);
        const uint32_t error = schemes_.active(found);
        if (error == 0) *scheme = windowsScheme(found);
        return error;
    }
    uint32_t setActiveScheme(PowerScheme scheme) override {
        std::lock_guard<std::mutex> lock(mutex_);
        return schemes_.set(settingsScheme(scheme));
    }

    int32_t comInitialize(uint32_t coInit) override { return com_.initialize(coInit); }
    void comUninitialize() override { com_.uninitialize(); }
    int32_t comInitializeSecurity() override { return com_.initializeSecurity(); }
    bool comUsable() override { return com_.usable(); }
    bool comStepFails(const char *) override { return false; }
    bool knowsNamespace(const std::string &name) override {
        return sameIgnoringCase(name, "ROOT\\CIMV2");
    }
    InstrumentationAnswer query(const std::string &language, const std::string &wql) override;

    uint32_t writePort(uint16_t, uint8_t) override { return kPortRefused; }
    uint32_t readPort(uint16_t, uint8_t *) override { return kPortRefused; }

private:
    // The kernel's percentage; when it is missing, unreadable (firmware that
    // says -NaN) or outside 0 to 100, the energy (or charge) now against full,
    // as upower does, else the percentage held to 0 to 100.
    static std::optional<int64_t> batteryPercent(PowerSupply &battery) {
        const std::optional<int64_t> percent = battery.capacity_percent();
        if (percent && *percent >= 0 && *percent <= 100) return percent;
        std::optional<int64_t> now = battery.energyNow_uWh(), full = battery.energyFull_uWh();
        if (!now || !full) {
            now = battery.chargeNow_uAh();
            full = battery.chargeFull_uAh();
        }
        if (now && full && *full > 0 && *now >= 0) {
            return *now >= *full ? 100
                                 : static_cast<int64_t>(static_cast<double>(*now) * 100 / *full);
        }
        if (percent) return std::clamp<int64_t>(*percent, 0, 100);
        return std::nullopt;
    }

    void *newHandle(const std::string &supply) {
        void *fresh = reinterpret_cast<void *>(nextHandle_);
        nextHandle_ += 4; // Windows handles are multiples of four
        handles_[fresh] = supply;
        return fresh;
    }

    std::mutex mutex_;
    std::map<void *, std::string> handles_;
    uintptr_t nextHandle_ = 0x2000;
    ComApartment com_;
    machine_settings::DisplayAnswer display_;
    machine_settings::SchemeAnswer schemes_;
};

InstrumentationAnswer ThisMachine::query(const std::string &language, const std::string &wql) {
    InstrumentationAnswer answer;
    if (!sameIgnoringCase(language, "WQL")) {
        answer.status = kInvalidQueryType;
        return answer;
    }
    const std::optional<WqlStatement> statement = parseWql(wql);
    if (!statement) {
        answer.status = kInvalidQuery;
        return answer;
    }
    if (!sameIgnoringCase(statement->className, "Win32_Battery")) {
        answer.status = kInvalidClass;
        return answer;
    }
    SysfsReading reading = newRequest();
    std::vector<InstrumentationInstance> instances;
    for (const std::string &name : systemBatteries(reading)) {
        PowerSupply battery(reading, name);
        if (battery.present() && battery_records::uniqueId(battery)) {
            instances.push_back(batteryInstance(battery));
        }
    }
    // Every name must belong to the class, whether or not a row comes.
    const InstrumentationInstance shape = {{"DeviceID", {}}, {"Name", {}}, {"DesignVoltage", {}}};
    for (const std::string &name : statement->selected) {
        if (findProperty(shape, name) == nullptr) answer.status = kInvalidQuery;
    }
    if (statement->filter && findProperty(shape, statement->filter->first) == nullptr) {
        answer.status = kInvalidQuery;
    }
    if (answer.status != 0) return answer;
    for (const InstrumentationInstance &instance : instances) {
        if (statement->filter) {
            const InstrumentationValue *value = findProperty(instance, statement->filter->first);
            if (value->kind != InstrumentationValue::Text ||
                !sameIgnoringCase(value->text, statement->filter->second)) {
                continue;
            }
        }
        InstrumentationInstance row;
        for (const std::string &name : statement->selected) {
            for (const auto &property : instance) {
                if (sameIgnoringCase(property.first, name)) row[property.first] = property.second;
            }
        }
        answer.rows.push_back(row);
    }
    return answer;
}

} // namespace

Machine &thisMachine() {
    static ThisMachine machine;
    return machine;
}

void setThisMachineTimeScale(double scale) {
    if (scale > 0) gTimeScale.store(scale);
}

} // namespace platform_layer
