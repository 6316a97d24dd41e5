#include "machines.h"

#include <windows.h>

#include <chrono>

#include "platform_layer/this_machine.h"
#include "settings_journal.h"

namespace {

// The Linux computer the host runs on, through the platform layer. The
// person moves the AC cable; the host keeps a journal of the display level
// and power profile an extended test changes, until they are back.
class ThisComputer : public Machine {
public:
    std::string selectScenario(const std::string &nameOrPath) override {
        return "scenario '" + nameOrPath + "': scenarios exist only on the emulated notebook";
    }
    std::string describe() override { return "this-machine"; }
    void setTimeScale(double scale) override { platform_layer::setThisMachineTimeScale(scale); }
    std::vector<std::pair<std::string, std::string>> scenarioList() override { return {}; }
    uint32_t systemEvents() override { return 0; }
    bool stopRequested() override { return false; }
    void setAcCable(bool) override {}
    bool controlsAcCable() override { return false; }
    bool userIgnoresPrompts() override { return false; }
    nlohmann::json state() override {
        nlohmann::json found = settings_journal::sources();
        platform_layer::SystemPower power;
        if (platform_layer::thisMachine().systemPower(&power) == 0) found["ac"] = power.acOnLine;
        return found;
    }
    std::vector<std::string> putBackWhatARunLeft() override {
        return settings_journal::replayLeft();
    }
    bool recordSettings(std::string &error) override { return settings_journal::record(error); }
    void settingsPutBack() override { settings_journal::close(); }
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
