#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "machine_settings/backlight.h"
#include "machine_settings/power_profile.h"

namespace machine_settings {

// The display's brightness requests, as "\\.\LCD" answers them on Windows,
// from the backlight. Linux has one level where Windows keeps one on AC and
// one on battery: a query gives it as both, a set writes the AC level when
// the request names AC, else the battery level. Results are Windows error
// codes, 0 success.
class DisplayAnswer {
public:
    static constexpr uint32_t kQueryBrightness = 0x230498;
    static constexpr uint32_t kSetBrightness = 0x23049C;

    // Finds the backlight; ERROR_FILE_NOT_FOUND when there is none, as for a
    // display that offers no brightness control.
    uint32_t open();
    uint32_t control(uint32_t code, const void *input, uint32_t inputSize, void *output,
                     uint32_t outputSize, uint32_t *returned);
    // The device and the way its level is written, once opened.
    const std::optional<Backlight> &backlight() const { return backlight_; }

private:
    std::optional<Backlight> backlight_;
};

// PowerGetActiveScheme and PowerSetActiveScheme from the power profile. The
// source found first stays for the process's life, as the hold it may have
// taken does.
class SchemeAnswer {
public:
    uint32_t active(Scheme &scheme);
    uint32_t set(Scheme scheme);
    // "power-profiles-daemon", "platform_profile" or empty when neither.
    std::string source();

private:
    PowerProfile *profile();
    std::unique_ptr<PowerProfile> profile_;
};

} // namespace machine_settings
