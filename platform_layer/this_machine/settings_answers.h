#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "machine_settings/backlight.h"
#include "machine_settings/power_profile.h"
#include "platform_layer/battery_facts.h"
#include "platform_layer/power_scheme.h"

namespace platform_layer {

// This machine's display, from its backlight. Linux has one level where
// Windows keeps one on AC and one on battery: it shows as both, and a set
// writes the AC level when one is given, else the battery level.
class DisplayAnswer {
public:
    // Finds the backlight; false when the machine has none, as a display
    // that offers no brightness control.
    bool open();
    std::optional<DisplayLevels> levels();
    bool set(std::optional<uint32_t> onAc_percent, std::optional<uint32_t> onBattery_percent);

private:
    std::optional<machine_settings::Backlight> backlight_;
};

// The power scheme from the power profile. The source found first stays
// for the process's life, as the hold it may have taken does. Results are
// error codes: without any source the query fails as Windows's does
// without a power scheme.
class SchemeAnswer {
public:
    uint32_t active(PowerScheme &scheme);
    uint32_t set(PowerScheme scheme);
    // "power-profiles-daemon", "platform_profile" or empty when neither.
    std::string source();

private:
    machine_settings::PowerProfile *profile();
    std::unique_ptr<machine_settings::PowerProfile> profile_;
};

} // namespace platform_layer
