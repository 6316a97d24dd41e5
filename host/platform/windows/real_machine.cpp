#include "machine.h"

namespace {

// This computer: no scenarios, wall-clock time, and a person who plugs and
// unplugs the cable when asked.
class RealMachine : public Machine {
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
    bool userIgnoresPrompts() override { return false; }
    nlohmann::json state() override { return nlohmann::json::object(); }
};

} // namespace

// Windows answers from this computer already.
void useThisMachine() {}

Machine &currentMachine() {
    static RealMachine machine;
    return machine;
}
