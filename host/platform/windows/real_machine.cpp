#include "host_machine.h"

#include <chrono>

#include <windows.h>

namespace {

// This computer: no scenarios, wall-clock time, and a person who plugs and
// unplugs the cable when asked.
class RealMachine : public HostMachine {
public:
    std::string selectScenario(const std::string &nameOrPath) override {
        return "scenario '" + nameOrPath + "': scenarios exist only on the emulated notebook";
    }
    std::string describe() override { return "this computer"; }
    void setTimeScale(double) override {}
    std::vector<std::pair<std::string, std::string>> scenarioList() override { return {}; }
    uint32_t systemEvents() override { return 0; }
    bool stopRequested() override { return false; }
    void setAcCable(bool) override {}
    bool controlsAcCable() override { return false; }
    bool userIgnoresPrompts() override { return false; }
    nlohmann::json state() override { return nlohmann::json::object(); }
    // The system's own battery figures; the display level and the scheme's
    // name are not asked for.
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

} // namespace

// Windows answers from this computer already.
void useThisMachine() {}

HostMachine &currentHostMachine() {
    static RealMachine machine;
    return machine;
}
