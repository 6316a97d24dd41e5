#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace machine_settings {

// The display level and power profile as found before a run changes them.
struct SettingsSnapshot {
    std::string backlight; // device name; empty when the machine has none
    uint32_t brightness = 0;
    std::string profileSource; // empty when neither source answers
    std::string profile;
};

SettingsSnapshot takeSnapshot();

// Puts back what differs from the snapshot. One line per setting says what
// was done or why it could not be.
std::vector<std::string> putBack(const SettingsSnapshot &snapshot);

} // namespace machine_settings
