// The emulated notebook behind the machine interface. The notebook knows
// nothing of the layer; this file is the one that speaks to both.

#include <windows.h>

#include "emulator/instrumentation_service.h"
#include "emulator/notebook.h"
#include "platform_layer/machine.h"

namespace platform_layer {

namespace {

emulator::Notebook &notebook() {
    return emulator::Notebook::instance();
}

InstrumentationAnswer converted(const emulator::WmiAnswer &answer) {
    InstrumentationAnswer result;
    result.status = answer.status;
    for (const emulator::WmiInstance &row : answer.rows) {
        InstrumentationInstance instance;
        for (const auto &property : row) {
            InstrumentationValue value;
            value.kind = static_cast<InstrumentationValue::Kind>(property.second.kind);
            value.text = property.second.text;
            value.number = property.second.number;
            value.variantType = property.second.raw.type;
            value.bits = property.second.raw.bits;
            if (value.kind == InstrumentationValue::Raw) value.text = property.second.raw.text;
            instance.emplace(property.first, value);
        }
        result.rows.push_back(std::move(instance));
    }
    return result;
}

class EmulatedNotebook : public Machine {
public:
    uint32_t tickCount() override { return notebook().clock().tickCount(); }
    void sleep(uint32_t milliseconds) override { notebook().clock().sleep(milliseconds); }

    uint32_t openDevice(const std::string &path, void **handle) override {
        return notebook().devices().open(path, handle);
    }
    uint32_t controlDevice(void *handle, uint32_t code, const void *input, uint32_t inputSize,
                           void *output, uint32_t outputSize, uint32_t *returned) override {
        return notebook().devices().control(handle, code, input, inputSize, output, outputSize,
                                            returned);
    }
    bool closeDevice(void *handle) override { return notebook().devices().close(handle); }

    std::vector<SetupDevice> batteryClassDevices() override {
        std::vector<SetupDevice> devices;
        for (const emulator::ClassDevice &device : notebook().registry().classDevices) {
            SetupDevice shown{device.description, std::nullopt};
            if (device.hasDriverKey) shown.driverKey = device.driverKey;
            devices.push_back(std::move(shown));
        }
        return devices;
    }
    std::vector<std::string> batteryInterfacePaths() override {
        return notebook().registry().batteryInterfaces;
    }
    std::optional<std::string> registryText(const std::string &keyPath,
                                            const std::string &name) override {
        const std::string *text = notebook().registry().value(keyPath, name);
        if (text == nullptr) return std::nullopt;
        return *text;
    }

    uint32_t systemPower(SystemPower *power) override {
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
    uint32_t activeScheme(PowerScheme *scheme) override {
        const emulator::PowerState &state = notebook().power();
        if (state.faults.schemeQueryFails) return ERROR_ACCESS_DENIED;
        *scheme = static_cast<PowerScheme>(state.scheme);
        return 0;
    }
    uint32_t setActiveScheme(PowerScheme scheme) override {
        emulator::PowerState &state = notebook().power();
        if (state.faults.schemeChangeFails) return ERROR_ACCESS_DENIED;
        state.scheme = static_cast<emulator::PowerScheme>(scheme);
        // Recorded by number: 0 high performance, 1 balanced, 2 power saver, 3 custom.
        state.changes.push_back(
            {notebook().clock().elapsedMs(), "scheme", static_cast<uint32_t>(scheme)});
        return 0;
    }

    int32_t comInitialize(uint32_t coInit) override {
        return notebook().com().initialize(coInit, notebook().counters());
    }
    void comUninitialize() override { notebook().com().uninitialize(notebook().counters()); }
    int32_t comInitializeSecurity() override { return notebook().com().initializeSecurity(); }
    bool comUsable() override { return notebook().com().usable(); }
    bool comStepFails(const char *step) override { return notebook().com().fails(step); }
    bool knowsNamespace(const std::string &name) override {
        return emulator::InstrumentationService::knowsNamespace(name);
    }
    InstrumentationAnswer query(const std::string &language, const std::string &wql) override {
        return converted(
            emulator::InstrumentationService::query(notebook().scenario(), language, wql));
    }

    uint32_t writePort(uint16_t port, uint8_t value) override {
        return notebook().portWrite(port, value);
    }
    uint32_t readPort(uint16_t port, uint8_t *value) override {
        return notebook().portRead(port, value);
    }

    void note(LayerEvent event) override {
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
        case LayerEvent::ComObjectMade:
            ++counters.comObjects;
            ++counters.comObjectsMade;
            break;
        case LayerEvent::ComObjectReleased:
            --counters.comObjects;
            break;
        case LayerEvent::DeviceTreeReenumerated:
            ++counters.reenumerations;
            break;
        case LayerEvent::InstrumentationQueried:
            ++counters.wmiQueries;
            break;
        }
    }
};

} // namespace

Machine &emulatedNotebook() {
    static EmulatedNotebook machine;
    return machine;
}

} // namespace platform_layer
