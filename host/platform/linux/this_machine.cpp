#include "machines.h"

#include <optional>

#include "machine_settings/backlight.h"
#include "machine_settings/power_profile.h"
#include "platform_layer/this_machine.h"
#include "real_computer.h"
#include "restore_journal.h"

namespace {

// Where the backlight and the profile are read and set, for the report.
nlohmann::json settingsSources() {
    nlohmann::json found = {{"backlight", nullptr}, {"powerProfile", nullptr}};
    if (const std::optional<machine_settings::Backlight> backlight =
            machine_settings::Backlight::find()) {
        found["backlight"] = {
            {"device", backlight->name()},
            {"type", backlight->type()},
            {"writtenThrough",
             backlight->route() == machine_settings::Backlight::Route::File ? "sysfs" : "logind"}};
    }
    if (const std::unique_ptr<machine_settings::PowerProfile> profile =
            machine_settings::PowerProfile::find()) {
        found["powerProfile"] = profile->source();
    }
    return found;
}

// The Linux computer the host runs on, through the platform layer. The
// person moves the AC cable; the host keeps a journal of the display level
// and power profile an extended test changes, until they are back.
class ThisComputer : public RealComputer {
public:
    std::string describe() override { return "this-machine"; }
    void setTimeScale(double scale) override { platform_layer::setThisMachineTimeScale(scale); }
    nlohmann::json state() override {
        nlohmann::json found = settingsSources();
        platform_layer::SystemPower power;
        if (platform_layer::thisMachine().systemPower(&power) == 0) found["ac"] = power.acOnLine;
        return found;
    }
    std::vector<std::string> putBackWhatARunLeft() override { return RestoreJournal::replayLeft(); }
    bool recordSettings(std::string &error) override { return RestoreJournal::record(error); }
    void settingsPutBack() override { RestoreJournal::close(); }
    // The battery figures, the display level and the power scheme as the
    // module's own calls see them, on the machine's (possibly scaled) clock.
    MachineSample sample() override {
        platform_layer::Machine &machine = platform_layer::thisMachine();
        const uint32_t now = machine.tickCount();
        if (!startTick_) startTick_ = now;
        MachineSample sample;
        sample.atMs = static_cast<double>(static_cast<uint32_t>(now - *startTick_));
        platform_layer::SystemPower power;
        if (machine.systemPower(&power) == 0) {
            sample.ac = power.acOnLine;
            if (power.batteryPercent <= 100) sample.chargePercent = power.batteryPercent;
        }
        uint32_t percent = 0;
        const auto backlight = machine_settings::Backlight::find();
        if (backlight && backlight->readPercent(percent)) sample.displayLevel = int(percent);
        platform_layer::PowerScheme scheme{};
        sample.scheme = machine.activeScheme(&scheme) != 0 ? "unknown" : schemeName(scheme);
        return sample;
    }

private:
    static const char *schemeName(platform_layer::PowerScheme scheme) {
        switch (scheme) {
        case platform_layer::PowerScheme::HighPerformance:
            return "high-performance";
        case platform_layer::PowerScheme::PowerSaver:
            return "power-saver";
        case platform_layer::PowerScheme::Custom:
            return "custom";
        default:
            return "balanced";
        }
    }

    std::optional<uint32_t> startTick_;
};

HostMachine *chosen = nullptr;

} // namespace

HostMachine &thisComputer() {
    static ThisComputer machine;
    return machine;
}

void useThisMachine() {
    platform_layer::useMachine(&platform_layer::thisMachine());
    chosen = &thisComputer();
}

HostMachine &currentHostMachine() {
    return chosen != nullptr ? *chosen : emulatedMachine();
}
