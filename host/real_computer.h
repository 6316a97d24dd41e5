#pragma once

#include <string>
#include <utility>
#include <vector>

#include "host_machine.h"

// A real computer, on either system: no scenarios, no events or stop
// requests of its own, and a person who plugs and unplugs the cable when a
// prompt asks, so the module reads the line as it then is.
class RealComputer : public HostMachine {
public:
    std::string selectScenario(const std::string &nameOrPath) override {
        return "scenario '" + nameOrPath + "': scenarios exist only on the emulated notebook";
    }
    std::vector<std::pair<std::string, std::string>> scenarioList() override { return {}; }
    uint32_t systemEvents() override { return 0; }
    bool stopRequested() override { return false; }
    void setAcCable(bool) override {}
    bool controlsAcCable() override { return false; }
    bool userIgnoresPrompts() override { return false; }
};
