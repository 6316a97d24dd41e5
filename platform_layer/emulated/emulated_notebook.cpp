// The emulated notebook behind the machine interface. The notebook knows
// nothing of the layer; this folder is the one that speaks to both.

#include <windows.h>

#include <cmath>
#include <cstdio>
#include <cstring>

#include "battery_class.h"
#include "com_apartment.h"
#include "emulated_faults.h"
#include "emulator/notebook.h"
#include "instrumentation_query.h"
#include "platform_layer/machine.h"

namespace platform_layer {

namespace {

emulator::Notebook &notebook() {
    return emulator::Notebook::instance();
}

// The driver speaks milliwatt-hours; a battery described in milliampere-hours
// is converted at its design voltage.
uint32_t milliwattHours(const emulator::BatteryDescription &battery, uint32_t capacity) {
    if (battery.capacityUnit == "mWh") return capacity;
    return static_cast<uint32_t>(static_cast<uint64_t>(capacity) * battery.designVoltage_mV / 1000);
}

// The level is one the scenario makes the driver refuse.
bool levelFails(const emulator::BatteryDescription &battery, const char *level) {
    for (const std::string &failing : battery.driver.failingLevels) {
        if (failing == level) return true;
    }
    return false;
}

// A battery of the scenario that gives the level, or null.
const emulator::BatteryDescription *giving(const std::string &name, const char *level) {
    const std::optional<size_t> index = emulatedBattery(name);
    if (!index) return nullptr;
    const emulator::BatteryDescription &battery = notebook().batteries()[*index];
    return levelFails(battery, level) ? nullptr : &battery;
}

// The battery devices as Windows shows them: control-method batteries
// numbered by slot, a battery that shares the device of another slot as a
// further interface of it.
BatteryDevice deviceOf(size_t index, const emulator::BatteryDescription &battery) {
    const auto instance = [](uint32_t slot) { return "ACPI#PNP0C0A#" + std::to_string(slot + 1); };
    BatteryDevice device{std::to_string(index), instance(battery.slot), ""};
    if (battery.driver.sharesDeviceOfSlot >= 0) {
        device.instance = instance(static_cast<uint32_t>(battery.driver.sharesDeviceOfSlot));
        device.reference = std::to_string(battery.slot + 1);
    }
    return device;
}

// A machine as Windows shows it when the scenario does not say: the AC
// adapter first, then each battery, each with a driver version.
std::vector<SetupDevice> defaultClassDevices(size_t batteries) {
    std::vector<SetupDevice> devices = {
        {"Microsoft AC Adapter", batteryDriverKey(0), "10.0.22621.1"}};
    for (size_t i = 0; i < batteries; ++i) {
        devices.push_back({"Microsoft ACPI-Compliant Control Method Battery",
                           batteryDriverKey(i + 1), "10.0.22621.2506"});
    }
    return devices;
}

class EmulatedNotebook : public Machine {
public:
    uint32_t tickCount() override { return notebook().clock().tickCount(); }
    void sleep(uint32_t milliseconds) override { notebook().clock().sleep(milliseconds); }

    std::vector<BatteryDevice> batteryDevices() override {
        std::vector<BatteryDevice> devices;
        const auto &batteries = notebook().batteries();
        for (size_t i = 0; i < batteries.size(); ++i) devices.push_back(deviceOf(i, batteries[i]));
        return devices;
    }
    std::optional<uint32_t> batteryTag(const std::string &name) override {
        const std::optional<size_t> index = emulatedBattery(name);
        if (!index || !notebook().batteryThere(*index)) return std::nullopt;
        // The tag names one insertion of the battery; the slot keeps two
        // batteries apart.
        return 0x4711u + notebook().batteries()[*index].slot;
    }
    std::optional<BatteryFigures> batteryFigures(const std::string &name) override;
    std::optional<uint32_t> batteryTemperature_deciKelvin(const std::string &name) override {
        const emulator::BatteryDescription *battery = giving(name, "BatteryTemperature");
        if (battery == nullptr) return std::nullopt;
        const double kelvin = (battery->temperature_C + 273.15) * 10.0;
        return static_cast<uint32_t>(std::lround(kelvin < 0 ? 0 : kelvin));
    }
    // The driver gives the level and never knows the time.
    std::optional<std::optional<uint32_t>> batteryTimeLeft_s(const std::string &name) override {
        if (giving(name, "BatteryEstimatedTime") == nullptr) return std::nullopt;
        return std::optional<uint32_t>();
    }
    std::optional<BatteryDate> batteryManufactureDate(const std::string &name) override {
        const emulator::BatteryDescription *battery = giving(name, "BatteryManufactureDate");
        if (battery == nullptr) return std::nullopt;
        const emulator::ManufactureDate &date = battery->manufactureDate;
        return BatteryDate{static_cast<uint16_t>(date.year), static_cast<uint8_t>(date.month),
                           static_cast<uint8_t>(date.day)};
    }
    std::optional<std::string> batteryText(const std::string &name, BatteryText which) override;
    std::optional<BatteryStatus> batteryStatus(const std::string &name) override;
    std::vector<SetupDevice> batteryClassDevices() override;

    bool hasDisplay() override { return notebook().power().displayPresent; }
    std::optional<DisplayLevels> displayLevels() override {
        const emulator::PowerState &power = notebook().power();
        using InForce = DisplayLevels::InForce;
        return DisplayLevels{power.ac ? InForce::OnAc : InForce::OnBattery, power.acBrightness,
                             power.dcBrightness};
    }
    bool setDisplayLevels(std::optional<uint32_t> onAc, std::optional<uint32_t> onBattery) override;

    uint32_t systemPower(SystemPower *power) override;
    uint32_t activeScheme(PowerScheme *scheme) override {
        const emulator::PowerState &state = notebook().power();
        if (state.faults.schemeQueryFails) return ERROR_ACCESS_DENIED;
        *scheme = state.scheme;
        return 0;
    }
    uint32_t setActiveScheme(PowerScheme scheme) override {
        emulator::PowerState &state = notebook().power();
        if (state.faults.schemeChangeFails) return ERROR_ACCESS_DENIED;
        state.scheme = scheme;
        // Recorded by number: 0 high performance, 1 balanced, 2 power saver, 3 custom.
        state.changes.push_back(
            {notebook().clock().elapsedMs(), "scheme", static_cast<uint32_t>(scheme)});
        return 0;
    }

    // Each scenario starts COM afresh, with the apartment it describes.
    ComApartment &comApartment() override {
        const uint64_t installation = notebook().installations();
        if (installation != apartmentOf_) {
            apartment_.reset(faults_.apartmentBefore(), faults_.securitySetBefore());
            apartmentOf_ = installation;
        }
        return apartment_;
    }
    bool knowsNamespace(const std::string &name) override { return knownNamespace(name); }
    std::vector<BatteryRow> batteryRows() override;

    uint32_t writePort(uint16_t port, uint8_t value) override {
        return notebook().portWrite(port, value);
    }
    uint32_t readPort(uint16_t port, uint8_t *value) override {
        return notebook().portRead(port, value);
    }

    ProtocolFaults &faults() override { return faults_; }
    void note(LayerEvent event) override;

private:
    EmulatedFaults faults_;
    ComApartment apartment_;
    uint64_t apartmentOf_ = ~uint64_t{0};
};

std::optional<BatteryFigures> EmulatedNotebook::batteryFigures(const std::string &name) {
    const emulator::BatteryDescription *battery = giving(name, "BatteryInformation");
    if (battery == nullptr) return std::nullopt;
    BatteryFigures info;
    std::memcpy(info.chemistry.data(), battery->chemistry.c_str(),
                battery->chemistry.size() < 4 ? battery->chemistry.size() : 4);
    // A driver that does not know its capacities still derives its alerts
    // from the full charge it reports.
    uint32_t full = 0xFFFFFFFFu;
    if (!battery->driver.unknownCapacities) {
        info.designedCapacity_mWh = milliwattHours(*battery, battery->designCapacity);
        full = milliwattHours(*battery, battery->fullChargeCapacity);
        info.fullChargedCapacity_mWh = full;
    }
    info.defaultAlert1_mWh = full / 10;
    info.defaultAlert2_mWh = full / 20;
    info.cycleCount = battery->cycleCount;
    return info;
}

std::optional<std::string> EmulatedNotebook::batteryText(const std::string &name,
                                                         BatteryText which) {
    static const char *const kLevels[] = {"BatteryDeviceName", "BatteryManufactureName",
                                          "BatteryUniqueID", "BatterySerialNumber"};
    const emulator::BatteryDescription *battery = giving(name, kLevels[static_cast<size_t>(which)]);
    if (battery == nullptr) return std::nullopt;
    switch (which) {
    case BatteryText::DeviceName:
        return battery->deviceName;
    case BatteryText::Manufacturer:
        return battery->manufacturer;
    case BatteryText::UniqueId:
        return battery->uniqueId;
    default:
        return battery->driver.serialNumberText.empty() ? std::to_string(battery->serialNumber)
                                                        : battery->driver.serialNumberText;
    }
}

std::optional<BatteryStatus> EmulatedNotebook::batteryStatus(const std::string &name) {
    const std::optional<size_t> index = emulatedBattery(name);
    if (!index) return std::nullopt;
    const emulator::BatteryDescription &battery = notebook().batteries()[*index];
    const bool ac = notebook().power().ac;
    BatteryStatus status;
    status.voltage_mV = battery.designVoltage_mV;
    status.onLine = ac;
    status.discharging = !ac;
    if (battery.driver.unknownCapacities) return status;
    const uint32_t full = milliwattHours(battery, battery.fullChargeCapacity);
    status.capacity_mWh = static_cast<uint32_t>(std::lround(full * battery.chargePercent / 100.0));
    status.charging = ac && battery.chargePercent < 100.0;
    // A plain notebook: charging at half its capacity per hour, running down
    // at a fifth.
    status.rate_mW = status.charging ? static_cast<int32_t>(full / 2)
                     : ac            ? 0
                                     : -static_cast<int32_t>(full / 5);
    return status;
}

std::vector<SetupDevice> EmulatedNotebook::batteryClassDevices() {
    const emulator::Scenario &scenario = notebook().scenario();
    if (!scenario.os.classDevicesGiven) return defaultClassDevices(scenario.batteries.size());
    std::vector<SetupDevice> devices;
    for (const emulator::ClassDevice &device : scenario.os.classDevices) {
        SetupDevice shown{device.description, std::nullopt, std::nullopt};
        if (device.hasDriverKey) shown.driverKey = device.driverKey;
        if (device.hasDriverKey && !device.driverVersion.empty()) {
            shown.driverVersion = device.driverVersion;
        }
        devices.push_back(std::move(shown));
    }
    return devices;
}

bool EmulatedNotebook::setDisplayLevels(std::optional<uint32_t> onAc,
                                        std::optional<uint32_t> onBattery) {
    emulator::PowerState &power = notebook().power();
    if (power.displayRefuses) return false;
    const uint64_t now = notebook().clock().elapsedMs();
    if (onAc) {
        power.acBrightness = *onAc;
        power.changes.push_back({now, "brightness-ac", *onAc});
    }
    if (onBattery) {
        power.dcBrightness = *onBattery;
        power.changes.push_back({now, "brightness-dc", *onBattery});
    }
    return true;
}

uint32_t EmulatedNotebook::systemPower(SystemPower *power) {
    const emulator::PowerState &state = notebook().power();
    if (state.faults.statusFails) return ERROR_GEN_FAILURE;
    power->acOnLine = state.ac;
    power->acLineUnknown = state.faults.acLineUnknown;
    power->anyBattery = false;
    for (const auto &battery : notebook().batteries()) {
        power->anyBattery = power->anyBattery || battery.present;
    }
    power->batteryPercent = notebook().systemBatteryPercent();
    return 0;
}

// The service lists the batteries the scenario starts with that have a
// unique identifier.
std::vector<BatteryRow> EmulatedNotebook::batteryRows() {
    const emulator::Scenario &scenario = notebook().scenario();
    const bool voltageGiven = scenario.instrumentation.designVoltageType != "null";
    std::vector<BatteryRow> rows;
    for (const emulator::BatteryDescription &battery : scenario.batteries) {
        if (!battery.present || battery.uniqueId.empty()) continue;
        BatteryRow row{battery.uniqueId, battery.deviceName, std::nullopt};
        if (voltageGiven) row.designVoltage_mV = battery.designVoltage_mV;
        rows.push_back(std::move(row));
    }
    return rows;
}

void EmulatedNotebook::note(LayerEvent event) {
    emulator::Counters &counters = notebook().counters();
    emulator::DeviceRegistry &registry = notebook().registry();
    switch (event) {
    case LayerEvent::DeviceSetOpened:
        ++registry.openSets;
        ++registry.setsCreated;
        break;
    case LayerEvent::DeviceSetDestroyed:
        --registry.openSets;
        break;
    case LayerEvent::DeviceOpened:
        ++registry.openHandles;
        break;
    case LayerEvent::DeviceClosed:
        --registry.openHandles;
        break;
    case LayerEvent::ComObjectMade:
        ++counters.comObjects;
        ++counters.comObjectsMade;
        break;
    case LayerEvent::ComObjectReleased:
        --counters.comObjects;
        break;
    case LayerEvent::ComStarted:
        ++counters.comStartups;
        break;
    case LayerEvent::ComEnded:
        --counters.comStartups;
        break;
    case LayerEvent::ComEndedUnbalanced:
        ++counters.comUnbalancedUninitializations;
        break;
    case LayerEvent::DeviceTreeReenumerated:
        ++counters.reenumerations;
        break;
    case LayerEvent::InstrumentationQueried:
        ++counters.wmiQueries;
        break;
    }
}

} // namespace

Machine &emulatedNotebook() {
    static EmulatedNotebook machine;
    return machine;
}

} // namespace platform_layer
