#include "machine_settings/settings_snapshot.h"

#include <memory>

#include "machine_settings/backlight.h"
#include "machine_settings/power_profile.h"

namespace machine_settings {

namespace {
std::vector<std::string> putBackBrightness(const SettingsSnapshot &snapshot) {
    if (snapshot.backlight.empty()) return {};
    std::optional<Backlight> backlight = Backlight::named(snapshot.backlight);
    uint32_t raw = 0;
    uint32_t maximum = 0;
    if (!backlight || !backlight->readRaw(raw, maximum)) {
        return {"backlight " + snapshot.backlight + " is gone; its level is left as it is"};
    }
    if (raw == snapshot.brightness) return {};
    // A journal is a file anyone with the folder could have edited.
    if (snapshot.brightness > maximum) {
        return {"the journal's level " + std::to_string(snapshot.brightness) + " is beyond " +
                snapshot.backlight + "'s " + std::to_string(maximum) +
                "; its level is left as it is"};
    }
    if (!backlight->writeRaw(snapshot.brightness)) {
        return {"could not put back the level of backlight " + snapshot.backlight};
    }
    return {"backlight " + snapshot.backlight + " put back to " +
            std::to_string(snapshot.brightness) + " of " + std::to_string(maximum) + " (was " +
            std::to_string(raw) + ")"};
}

std::vector<std::string> putBackProfile(const SettingsSnapshot &snapshot) {
    std::unique_ptr<PowerProfile> profile;
    if (snapshot.profileSource == "power-profiles-daemon") profile = newDaemonProfile();
    if (snapshot.profileSource == "platform_profile") profile = newPlatformProfile();
    if (!profile) return {};
    std::string current;
    if (!profile->readName(current)) {
        return {snapshot.profileSource + " does not answer; the power profile is left as it is"};
    }
    if (current == snapshot.profile) return {};
    if (!profile->restoreName(snapshot.profile)) {
        return {"could not put back power profile " + snapshot.profile + " through " +
                snapshot.profileSource};
    }
    return {"power profile put back to " + snapshot.profile + " through " + snapshot.profileSource +
            " (was " + current + ")"};
}
} // namespace

SettingsSnapshot takeSnapshot() {
    SettingsSnapshot snapshot;
    uint32_t maximum = 0;
    if (std::optional<Backlight> backlight = Backlight::find()) {
        if (backlight->readRaw(snapshot.brightness, maximum))
            snapshot.backlight = backlight->name();
    }
    if (std::unique_ptr<PowerProfile> profile = PowerProfile::find()) {
        if (profile->readName(snapshot.profile)) snapshot.profileSource = profile->source();
    }
    return snapshot;
}

std::vector<std::string> putBack(const SettingsSnapshot &snapshot) {
    std::vector<std::string> lines = putBackBrightness(snapshot);
    for (std::string &line : putBackProfile(snapshot)) lines.push_back(std::move(line));
    return lines;
}

} // namespace machine_settings
