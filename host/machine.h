#pragma once

#include <string>
#include <vector>

// The notebook the host runs on: the emulated one on Linux, the real one on
// Windows. The host uses it to choose a scenario and to set the pace of time.
class Machine {
public:
    virtual ~Machine() = default;
    // Empty on success, else one line naming the file and the field.
    virtual std::string selectScenario(const std::string &nameOrPath) = 0;
    virtual std::string describe() = 0;
    virtual void setTimeScale(double scale) = 0;
    // Built-in scenarios as "name: description" lines.
    virtual std::vector<std::string> scenarioList() = 0;
};

Machine &currentMachine();
