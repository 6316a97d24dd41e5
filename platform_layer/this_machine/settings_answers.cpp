#include "settings_answers.h"

#include <windows.h>

namespace platform_layer {

// The first device found is the one the run changes, the one the journal
// names: when it goes away no other takes its place, and when it comes back
// it is the same object, so the level it had before the first write is still
// known, exactly, when the test puts it back.
bool DisplayAnswer::open() {
    if (backlight_) return machine_settings::Backlight::named(backlight_->name()).has_value();
    std::optional<machine_settings::Backlight> found = machine_settings::Backlight::find();
    if (!found) return false;
    backlight_ = std::move(found);
    return true;
}

std::optional<DisplayLevels> DisplayAnswer::levels() {
    uint32_t percent = 0;
    if (!backlight_ || !backlight_->readPercent(percent)) return std::nullopt;
    return DisplayLevels{DisplayLevels::InForce::Both, percent, percent};
}

bool DisplayAnswer::set(std::optional<uint32_t> onAc, std::optional<uint32_t> onBattery) {
    if (!backlight_ || (!onAc && !onBattery)) return false;
    return backlight_->writePercent(onAc ? *onAc : *onBattery);
}

machine_settings::PowerProfile *SchemeAnswer::profile() {
    if (!profile_) profile_ = machine_settings::PowerProfile::find();
    return profile_.get();
}

uint32_t SchemeAnswer::active(PowerScheme &scheme) {
    machine_settings::PowerProfile *found = profile();
    if (found == nullptr) return ERROR_NOT_SUPPORTED;
    return found->readScheme(scheme) ? ERROR_SUCCESS : ERROR_GEN_FAILURE;
}

uint32_t SchemeAnswer::set(PowerScheme scheme) {
    machine_settings::PowerProfile *found = profile();
    if (found == nullptr) return ERROR_NOT_SUPPORTED;
    return found->apply(scheme) ? ERROR_SUCCESS : ERROR_GEN_FAILURE;
}

std::string SchemeAnswer::source() {
    machine_settings::PowerProfile *found = profile();
    return found == nullptr ? std::string() : found->source();
}

} // namespace platform_layer
