#include "emulator/notebook.h"

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "battery_driver.h"
#include "display_device.h"

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
    controller_.install(scenario);
    com_.install(scenario);
    batteries_ = scenario.batteries;
    registry_.install(scenario);
    power_.install(scenario);
    devices_.clear();
    if (scenario.display.present) {
        devices_.add(DisplayDevice::kPath, std::make_shared<DisplayDevice>(*this));
    }
    for (size_t i = 0; i < batteries_.size(); ++i) {
        devices_.add(batteryDevicePath(batteries_[i].slot),
                     std::make_shared<BatteryDriver>(*this, i));
    }
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

uint32_t Notebook::systemBatteryPercent() {
    ensureInstalled();
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

uint32_t Notebook::portWrite(uint16_t port, uint8_t value) {
    ensureInstalled();
    std::lock_guard<std::recursive_mutex> lock(mutex_);
    ++counters_.portAccesses;
    const uint32_t status = controller_.write(port, value);
    if (status != 0) ++counters_.portFailures;
    return status;
}

uint32_t Notebook::portRead(uint16_t port, uint8_t *value) {
    ensureInstalled();
    std::lock_guard<std::recursive_mutex> lock(mutex_);
    ++counters_.portAccesses;
    const uint32_t status = controller_.read(port, value);
    if (status != 0) ++counters_.portFailures;
    return status;
}

} // namespace emulator
