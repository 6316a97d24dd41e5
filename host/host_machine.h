#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "model/machine_sample.h"

// The notebook the host runs on, as the host drives it around a run: on
// Linux the emulated one unless the command line asks for this machine; on
// Windows the real one. The host chooses a scenario and the pace of time
// through it, asks it for the events a run must see, lets it carry out what a
// prompt asks, and keeps and puts back the settings an extended run changes.
// Not the platform layer's platform_layer::Machine, which answers the
// module's Windows calls; on Linux a HostMachine chooses that one too.
class HostMachine {
public:
    virtual ~HostMachine() = default;
    // Empty on success, else one line naming the file and the field.
    virtual std::string selectScenario(const std::string &nameOrPath) = 0;
    // The scenario the machine's surroundings name when the command line
    // names none; checked as strictly as one the command line names.
    virtual std::string selectDefaultScenario() { return ""; }
    virtual std::string describe() = 0;
    virtual void setTimeScale(double scale) = 0;
    // Built-in scenarios as name and one line on what each shows.
    virtual std::vector<std::pair<std::string, std::string>> scenarioList() = 0;

    // System event bits and a stop request that the machine raised.
    virtual uint32_t systemEvents() = 0;
    virtual bool stopRequested() = 0;
    // Does what a prompt asked: plug (true) or unplug the AC cable. The real
    // machine leaves this to the person in front of it.
    virtual void setAcCable(bool plugged) = 0;
    virtual bool userIgnoresPrompts() = 0;
    // Whether setAcCable moves the cable. On a real machine the person does,
    // and the module reads the line as it then is.
    virtual bool controlsAcCable() { return true; }
    // Power scheme, brightness, AC line and their changes, for the report.
    virtual nlohmann::json state() = 0;

    // A real machine keeps what an extended run changes on disk until the
    // run has put it back. At the start, what a run that died left changed
    // is put back (one line each to tell the person); before an extended
    // run the settings are recorded; after it the record is closed.
    virtual std::vector<std::string> putBackWhatARunLeft() { return {}; }
    virtual bool recordSettings(std::string &) { return true; }
    virtual void settingsPutBack() {}
    virtual MachineSample sample() = 0;
};

HostMachine &currentHostMachine();
// Makes this computer the machine of the run and of the module's Windows
// calls, in place of the emulated notebook where there is one.
void useThisMachine();
