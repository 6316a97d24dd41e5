#include "machines.h"

#include <windows.h>

#include <chrono>

#include "platform_layer/this_machine.h"

namespace {

// The Linux computer the host runs on, read through the platform layer:
// no scenarios, wall-clock time, nothing changed.
class ThisComputer : public Machine {
public:
    std::string selectScenario(const std::string &nameOrPath) override {
        return "scenario '" + nameOrPath + "': scenarios exist only on the emulated notebook";
    }
    std::string describe() override { return "this-machine"; }
    void setTimeScale(double) override {}
    std::vector<std::pair<std::string, std::string>> scenarioList() override { return {}; }
    uint32_t systemEvents() override { return 0; }
    bool stopRequested() override { return false; }
    void setAcCable(bool) override {}
    bool userIgnoresPrompts() override { return false; }
    nlohmann::json state() override { return nlohmann::json::object(); }
    bool allowsChanges() override { return false; }
    // The system's battery figures as the module's own calls see them.
    MachineSample sample() override {
        MachineSample sample;
        sample.atMs =
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - started_)
                .count();
        SYSTEM_POWER_STATUS status{};
        if (GetSystemPowerStatus(&status) != 0) {
            if (status.BatteryLifePercent <= 100) sample.chargePercent = status.BatteryLifePercent;
            sample.ac = status.ACLineStatus == 1;
        }
        sample.scheme = "unknown";
        return sample;
    }

private:
    std::chrono::steady_clock::time_point started_ = std::chrono::steady_clock::now();
};

Machine *chosen = nullptr;

} // namespace

Machine &thisComputer() {
    static ThisComputer machine;
    return machine;
}

void useThisMachine() {
    platform_layer::useMachine(&platform_layer::thisMachine());
    chosen = &thisComputer();
}

Machine &currentMachine() {
    return chosen != nullptr ? *chosen : emulatedMachine();
}
