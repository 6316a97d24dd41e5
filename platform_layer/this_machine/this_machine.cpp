// This machine behind the machine interface: the kernel's power-supply
// class answers for batteries, adapters and the power line. Every request
// starts a fresh reading, so an unplugged cable or a removed battery shows
// at once.

#include "platform_layer/this_machine.h"

#include <sys/utsname.h>
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <string>
#include <thread>

#include "battery_class.h"
#include "battery_records.h"
#include "com_apartment.h"
#include "instrumentation_query.h"
#include "power_supply.h"
#include "settings_answers.h"
#include "sysfs_reading.h"

namespace platform_layer {

namespace {

constexpr uint32_t kPortRefused = 1;

std::atomic<double> gTimeScale{1.0};

SysfsReading newRequest() {
    beginSysfsRequest();
    return SysfsReading();
}

// The reading of the device request under way on this thread: the tag and
// the level it asks for come from one picture of the machine.
thread_local std::optional<SysfsReading> tRequest;

SysfsReading &requestReading() {
    if (!tRequest) tRequest.emplace(newRequest());
    return *tRequest;
}

// The battery drivers' version is the running kernel's.
std::string kernelRelease() {
    utsname names = {};
    return ::uname(&names) == 0 ? std::string(names.release) : std::string();
}

// The tag names the battery in its slot: a battery that is taken out has
// none, and its old tag is refused until it is back.
uint32_t tagOf(const std::string &supply) {
    uint32_t hash = 2166136261u;
    for (const char byte : supply) hash = (hash ^ static_cast<unsigned char>(byte)) * 16777619u;
    return hash == 0 ? 1u : hash;
}

// The kernel's percentage; when it is missing, unreadable (firmware that
// says -NaN) or outside 0 to 100, the energy (or charge) now against full,
// as upower does, else the percentage held to 0 to 100.
std::optional<int64_t> batteryPercent(PowerSupply &battery) {
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

    void beginRequest() override { tRequest.emplace(newRequest()); }

    // One device per system battery, named after its supply.
    std::vector<BatteryDevice> batteryDevices() override {
        SysfsReading reading = newRequest();
        std::vector<BatteryDevice> devices;
        for (const std::string &supply : systemBatteries(reading)) {
            devices.push_back({supply, "POWER_SUPPLY#" + supply, ""});
        }
        return devices;
    }
    // A battery taken out of its slot, or a supply that is gone, has no tag.
    std::optional<uint32_t> batteryTag(const std::string &supply) override {
        PowerSupply battery(requestReading(), supply);
        const bool there =
            battery.isSystemBattery() && battery.present() && !battery.reading().sawMalformed();
        if (!there) return std::nullopt;
        return tagOf(supply);
    }
    std::optional<BatteryFigures> batteryFigures(const std::string &supply) override {
        PowerSupply battery(requestReading(), supply);
        return battery_records::information(battery);
    }
    std::optional<uint32_t> batteryTemperature_deciKelvin(const std::string &supply) override {
        PowerSupply battery(requestReading(), supply);
        return battery_records::temperature(battery);
    }
    // Not given by the kernel's class.
    std::optional<std::optional<uint32_t>> batteryTimeLeft_s(const std::string &) override {
        return std::nullopt;
    }
    std::optional<BatteryDate> batteryManufactureDate(const std::string &supply) override {
        PowerSupply battery(requestReading(), supply);
        return battery_records::manufactureDate(battery);
    }
    std::optional<std::string> batteryText(const std::string &supply, BatteryText which) override;
    std::optional<BatteryStatus> batteryStatus(const std::string &supply) override {
        SysfsReading &reading = requestReading();
        PowerSupply battery(reading, supply);
        return battery_records::status(battery, onAcLine(reading));
    }

    // The AC adapters first, then each battery, as Windows lists them.
    std::vector<SetupDevice> batteryClassDevices() override {
        SysfsReading reading = newRequest();
        const std::string version = kernelRelease();
        std::vector<SetupDevice> devices;
        for (const std::string &supply : adapters(reading)) {
            devices.push_back({"AC adapter " + supply, batteryDriverKey(devices.size()), version});
        }
        for (const std::string &supply : systemBatteries(reading)) {
            devices.push_back({"Battery " + supply, batteryDriverKey(devices.size()), version});
        }
        return devices;
    }

    bool hasDisplay() override {
        std::lock_guard<std::mutex> lock(mutex_);
        return display_.open();
    }
    std::optional<DisplayLevels> displayLevels() override {
        std::lock_guard<std::mutex> lock(mutex_);
        return display_.levels();
    }
    bool setDisplayLevels(std::optional<uint32_t> onAc,
                          std::optional<uint32_t> onBattery) override {
        std::lock_guard<std::mutex> lock(mutex_);
        return display_.set(onAc, onBattery);
    }

    uint32_t systemPower(SystemPower *power) override;
    // power-profiles-daemon or the firmware's platform profile.
    uint32_t activeScheme(PowerScheme *scheme) override {
        std::lock_guard<std::mutex> lock(mutex_);
        return schemes_.active(*scheme);
    }
    uint32_t setActiveScheme(PowerScheme scheme) override {
        std::lock_guard<std::mutex> lock(mutex_);
        return schemes_.set(scheme);
    }

    ComApartment &comApartment() override { return com_; }
    bool knowsNamespace(const std::string &name) override { return knownNamespace(name); }
    // The batteries there that have an identity.
    std::vector<BatteryRow> batteryRows() override {
        SysfsReading reading = newRequest();
        std::vector<BatteryRow> rows;
        for (const std::string &name : systemBatteries(reading)) {
            PowerSupply battery(reading, name);
            if (!battery.present()) continue;
            const std::optional<std::string> id = battery_records::uniqueId(battery);
            if (!id) continue;
            rows.push_back({*id, battery.modelName(), battery_records::designVoltage_mV(battery)});
        }
        return rows;
    }

    uint32_t writePort(uint16_t, uint8_t) override { return kPortRefused; }
    uint32_t readPort(uint16_t, uint8_t *) override { return kPortRefused; }

private:
    std::mutex mutex_;
    ComApartment com_;
    DisplayAnswer display_;
    SchemeAnswer schemes_;
};

std::optional<std::string> ThisMachine::batteryText(const std::string &supply, BatteryText which) {
    PowerSupply battery(requestReading(), supply);
    switch (which) {
    case BatteryText::DeviceName:
        return battery.modelName();
    case BatteryText::Manufacturer:
        return battery.manufacturer();
    case BatteryText::UniqueId:
        return battery_records::uniqueId(battery);
    default:
        return battery.serialNumber();
    }
}

uint32_t ThisMachine::systemPower(SystemPower *power) {
    SysfsReading reading = newRequest();
    power->acOnLine = onAcLine(reading);
    // The AC line stands on its own: a battery figure that cannot be read
    // makes only that battery's charge unknown.
    if (reading.sawMalformed()) return ERROR_GEN_FAILURE;
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

} // namespace

Machine &thisMachine() {
    static ThisMachine machine;
    return machine;
}

void setThisMachineTimeScale(double scale) {
    if (scale > 0) gTimeScale.store(scale);
}

} // namespace platform_layer
