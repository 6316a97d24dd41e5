#include "machine.h"

namespace {

// The real notebook: no scenarios, and time is the wall clock.
class RealMachine : public Machine {
public:
    std::string selectScenario(const std::string &nameOrPath) override {
        return "scenario '" + nameOrPath + "': scenarios exist only on the emulated notebook";
    }
    std::string describe() override { return "this computer"; }
    void setTimeScale(double) override {}
    std::vector<std::string> scenarioList() override { return {}; }
};

} // namespace

Machine &currentMachine() {
    static RealMachine machine;
    return machine;
}
