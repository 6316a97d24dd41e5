#include "real_computer.h"

#include <chrono>

#include <windows.h>

namespace {

// This computer, on wall-clock time.
class RealMachine : public RealComputer {
public:
    std::string describe() override { return "this computer"; }
    void setTimeScale(double) override {}
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
