#include "host_machine.h"
#include "machines.h"

#include "emulator/notebook.h"

namespace {

const char *schemeName(emulator::PowerScheme scheme) {
    switch (scheme) {
    case emulator::PowerScheme::HighPerformance:
        return "high-performance";
    case emulator::PowerScheme::PowerSaver:
        return "power-saver";
    case emulator::PowerScheme::Custom:
        return "custom";
    default:
        return "balanced";
    }
}

class EmulatedMachine : public HostMachine {
public:
    std::string selectScenario(const std::string &nameOrPath) override {
        const emulator::LoadResult result = notebook().load(nameOrPath);
        return result.ok ? std::string() : result.error;
    }
    std::string selectDefaultScenario() override {
        return selectScenario(emulator::Notebook::scenarioFromEnvironment());
    }
    std::string describe() override {
        return "emulated notebook '" + notebook().scenario().name + "'";
    }
    void setTimeScale(double scale) override { notebook().clock().useRealTime(scale); }
    std::vector<std::pair<std::string, std::string>> scenarioList() override {
        std::vector<std::pair<std::string, std::string>> list;
        for (const auto &scenario : emulator::builtinScenarios()) {
            list.emplace_back(scenario.name, scenario.description);
        }
        return list;
    }
    uint32_t systemEvents() override { return notebook().systemEvents(); }
    bool stopRequested() override { return notebook().stopRequested(); }
    void setAcCable(bool plugged) override { notebook().setAcLine(plugged); }
    bool userIgnoresPrompts() override { return notebook().userIgnoresPrompts(); }
    nlohmann::json state() override {
        const emulator::PowerState &power = notebook().power();
        nlohmann::json changes = nlohmann::json::array();
        for (const auto &change : power.changes) {
            changes.push_back(
                {{"atMs", change.atMs}, {"setting", change.setting}, {"value", change.value}});
        }
        return {{"scenario", notebook().scenario().name},
                {"ac", power.ac},
                {"scheme", schemeName(power.scheme)},
                {"acBrightness", power.acBrightness},
                {"dcBrightness", power.dcBrightness},
                {"virtualMs", notebook().clock().elapsedMs()},
                {"changes", changes}};
    }

    MachineSample sample() override {
        const emulator::PowerState &power = notebook().power();
        double sum = 0;
        unsigned present = 0;
        for (const emulator::BatteryDescription &battery : notebook().batteries()) {
            if (!battery.present) continue;
            sum += battery.chargePercent;
            ++present;
        }
        MachineSample sample;
        sample.atMs = static_cast<double>(notebook().clock().elapsedMs());
        sample.chargePercent = present == 0 ? 0 : sum / present;
        sample.ac = power.ac;
        sample.displayLevel = static_cast<int>(power.ac ? power.acBrightness : power.dcBrightness);
        sample.scheme = schemeName(power.scheme);
        return sample;
    }

private:
    static emulator::Notebook &notebook() { return emulator::Notebook::instance(); }
};

} // namespace

HostMachine &emulatedMachine() {
    static EmulatedMachine machine;
    return machine;
}
