#pragma once

#include <cstdint>
#include <mutex>
#include <string>

#include "emulator/clock.h"
#include "emulator/counters.h"
#include "emulator/device_registry.h"
#include "emulator/embedded_controller.h"
#include "emulator/emulator_api.h"
#include "emulator/port_trace.h"
#include "emulator/power_state.h"
#include "emulator/scenario.h"
#include "emulator/scenario_loader.h"

namespace emulator {

// The one emulated machine of the process. Whatever answers the module's
// Windows calls, and the host, reach it here.
class EMULATOR_API Notebook {
public:
    static Notebook &instance();

    // Loads a built-in scenario or a file. On error the machine stays as it
    // was and the result names the file and the field.
    LoadResult load(const std::string &nameOrPath);
    // Puts the machine into the state the scenario describes: clock,
    // counters and every piece start afresh.
    void install(const Scenario &scenario);
    const Scenario &scenario();

    Clock &clock() {
        ensureInstalled();
        return clock_;
    }
    Counters &counters() {
        ensureInstalled();
        return counters_;
    }

    PortTrace &portTrace() {
        ensureInstalled();
        return portTrace_;
    }
    DeviceRegistry &registry() {
        ensureInstalled();
        return registry_;
    }
    // The power line, scheme and display as they are now.
    PowerState &power() {
        catchUp();
        return power_;
    }
    // The batteries as they are now: they start as the scenario describes
    // them, and their charge moves with time.
    std::vector<BatteryDescription> &batteries() {
        catchUp();
        return batteries_;
    }

    // What the user does: plugs or unplugs the AC cable (recorded as a change).
    void setAcLine(bool on);
    // Signals for the host that runs on this machine: event bits raised and
    // a stop request, both from the scenario's timeline.
    uint32_t systemEvents();
    bool stopRequested();
    bool userIgnoresPrompts();
    // The operating system's battery life percent: 255 without a battery.
    uint32_t systemBatteryPercent();

    uint32_t portWrite(uint16_t port, uint8_t value);
    uint32_t portRead(uint16_t port, uint8_t *value);

    // Scenarios installed so far: whatever a scenario starts afresh (COM on
    // the module's thread) starts again when this changes.
    uint64_t installations() {
        ensureInstalled();
        return installations_;
    }
    // A request reached the battery's driver; a battery whose driver leaves
    // after so many requests is gone from then on.
    void driverRequested(size_t battery);
    // The battery is in its slot and its driver has not left.
    bool batteryThere(size_t battery);

    // The scenario named by EMULATED_NOTEBOOK, or "default".
    static std::string scenarioFromEnvironment();

private:
    Notebook() = default;
    void ensureInstalled();
    // Applies the physics and the timeline up to the clock's present.
    void catchUp();
    void apply(const TimelineEvent &event);

    std::recursive_mutex mutex_;
    bool installed_ = false;
    Scenario scenario_;
    Clock clock_;
    Counters counters_;
    PortTrace portTrace_;
    EmbeddedController controller_;
    DeviceRegistry registry_;
    PowerState power_;
    std::vector<BatteryDescription> batteries_;
    std::vector<uint32_t> driverRequests_; // per battery
    uint64_t installations_ = 0;
    uint64_t physicsAtMs_ = 0;
    size_t nextEvent_ = 0;
    uint32_t systemEvents_ = 0;
    bool stopRequested_ = false;
};

} // namespace emulator
