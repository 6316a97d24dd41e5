#include "machine.h"

#include "emulator/notebook.h"

namespace {

class EmulatedMachine : public Machine {
public:
    std::string selectScenario(const std::string &nameOrPath) override {
        const emulator::LoadResult result = emulator::Notebook::instance().load(nameOrPath);
        return result.ok ? std::string() : result.error;
    }
    std::string describe() override {
        const emulator::Scenario &scenario = emulator::Notebook::instance().scenario();
        return "emulated notebook '" + scenario.name + "'";
    }
    void setTimeScale(double scale) override { emulator::Notebook::instance().clock().useRealTime(scale); }
    std::vector<std::string> scenarioList() override {
        std::vector<std::string> lines;
        for (const auto &scenario : emulator::builtinScenarios()) {
            lines.push_back(scenario.name + ": " + scenario.description);
        }
        return lines;
    }
};

} // namespace

Machine &currentMachine() {
    static EmulatedMachine machine;
    return machine;
}
