#include "emulator/notebook.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "battery_physics.h"

namespace emulator {

Notebook &Notebook::instance() {
    static Notebook notebook;
    return notebook;
}

std::string Notebook::scenarioFromEnvironment() {
    const char *name = std::getenv("EMULATED_NOTEBOOK");
    return (name != nullptr && *name != '\0') ? name : "default";
}

LoadResult Notebook::load(const std::string &nameOrPath) {
    LoadResult result = loadScenario(nameOrPath);
    if (result.ok) {
        install(result.scenario);
    }
    return result;
}

void Notebook::install(const Scenario &scenario) {
    std::lock_guard<std::recursive_mutex> lock(mutex_);
    scenario_ = scenario;
    clock_.reset(scenario.startTick);
    counters_ = Counters();
    portTrace_.reset();
    controller_.install(scenario);
    batteries_ = scenario.batteries;
    driverRequests_.assign(batteries_.size(), 0);
    physicsAtMs_ = 0;
    nextEvent_ = 0;
    systemEvents_ = 0;
    stopRequested_ = false;
    power_.install(scenario);
    ++installations_;
    installed_ = true;
}

const Scenario &Notebook::scenario() {
    ensureInstalled();
    return scenario_;
}

// A program that uses the machine without loading a scenario first (a host
// that knows nothing of the emulator) gets the one its environment names.
void Notebook::ensureInstalled() {
    std::lock_guard<std::recursive_mutex> lock(mutex_);
    if (installed_) return;
    const LoadResult result = loadScenario(scenarioFromEnvironment());
    if (!result.ok) {
        std::fprintf(stderr, "emulated notebook: %s; using an empty machine\n",
                     result.error.c_str());
    }
    install(result.ok ? result.scenario : Scenario());
}

void Notebook::catchUp() {
    ensureInstalled();
    std::lock_guard<std::recursive_mutex> lock(mutex_);
    const uint64_t now = clock_.elapsedMs();
    const auto &timeline = scenario_.timeline;
    for (;;) {
        const bool eventDue = nextEvent_ < timeline.size() && timeline[nextEvent_].atMs <= now;
        const uint64_t until = eventDue ? std::max(physicsAtMs_, timeline[nextEvent_].atMs) : now;
        for (BatteryDescription &battery : batteries_) {
            advanceCharge(battery, scenario_.physics, power_, until - physicsAtMs_);
        }
        physicsAtMs_ = until;
        if (!eventDue) break;
        apply(timeline[nextEvent_++]);
    }
}

void Notebook::apply(const TimelineEvent &event) {
    using Kind = TimelineEvent::Kind;
    switch (event.kind) {
    case Kind::AcPlug:
    case Kind::AcUnplug:
        power_.ac = event.kind == Kind::AcPlug;
        power_.changes.push_back({event.atMs, "ac", power_.ac ? 1u : 0u});
        break;
    case Kind::BatteryRemove:
    case Kind::BatteryInsert:
        for (BatteryDescription &battery : batteries_) {
            if (battery.slot == event.slot) battery.present = event.kind == Kind::BatteryInsert;
        }
        controller_.setBatteryPresent(event.slot, event.kind == Kind::BatteryInsert);
        break;
    case Kind::SystemEvent:
        systemEvents_ |= event.bits;
        break;
    case Kind::StopRequest:
        stopRequested_ = true;
        break;
    }
}

void Notebook::setAcLine(bool on) {
    catchUp();
    std::lock_guard<std::recursive_mutex> lock(mutex_);
    if (power_.ac == on) return;
    power_.ac = on;
    power_.changes.push_back({clock_.elapsedMs(), "ac", on ? 1u : 0u});
}

uint32_t Notebook::systemEvents() {
    catchUp();
    return systemEvents_;
}

bool Notebook::stopRequested() {
    catchUp();
    return stopRequested_;
}

bool Notebook::userIgnoresPrompts() {
    ensureInstalled();
    return scenario_.user.ignoresPrompts;
}

uint32_t Notebook::systemBatteryPercent() {
    catchUp();
    if (power_.faults.batteryLifePercent >= 0) {
        return static_cast<uint32_t>(power_.faults.batteryLifePercent);
    }
    double sum = 0;
    unsigned present = 0;
    for (const BatteryDescription &battery : batteries_) {
        if (!battery.present) continue;
        sum += battery.chargePercent;
        ++present;
    }
    return present == 0 ? 255u : static_cast<uint32_t>(sum / present);
}

void Notebook::driverRequested(size_t battery) {
    ensureInstalled();
    std::lock_guard<std::recursive_mutex> lock(mutex_);
    ++counters_.batteryRequests;
    if (battery < driverRequests_.size()) ++driverRequests_[battery];
}

bool Notebook::batteryThere(size_t battery) {
    catchUp();
    std::lock_guard<std::recursive_mutex> lock(mutex_);
    if (battery >= batteries_.size()) return false;
    const uint32_t leavesAfter = batteries_[battery].driver.vanishAfterRequests;
    return batteries_[battery].present &&
           (leavesAfter == 0 || driverRequests_[battery] <= leavesAfter);
}

uint32_t Notebook::portWrite(uint16_t port, uint8_t value) {
    ensureInstalled();
    std::lock_guard<std::recursive_mutex> lock(mutex_);
    ++counters_.portAccesses;
    const uint32_t status = controller_.write(port, value);
    if (status != 0) ++counters_.portFailures;
    portTrace_.record({true, port, value, status});
    return status;
}

uint32_t Notebook::portRead(uint16_t port, uint8_t *value) {
    ensureInstalled();
    std::lock_guard<std::recursive_mutex> lock(mutex_);
    ++counters_.portAccesses;
    const uint32_t status = controller_.read(port, value);
    if (status != 0) ++counters_.portFailures;
    portTrace_.record({false, port, value != nullptr ? *value : uint8_t{0}, status});
    return status;
}

} // namespace emulator
