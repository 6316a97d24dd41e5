#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform_layer/power_scheme.h"

namespace machine_settings {

// The machine's power profile, named as the power schemes. A profile that
// none of the shipped schemes fits is the user's own (Custom).
using Scheme = platform_layer::PowerScheme;

Scheme schemeOf(const std::string &profile);

// Where the profile is read and set: power-profiles-daemon over the system
// bus where it runs, else the firmware's platform_profile.
class PowerProfile {
public:
    virtual ~PowerProfile() = default;

    // None when neither answers; the scheme query then fails.
    static std::unique_ptr<PowerProfile> find();

    // "power-profiles-daemon" or "platform_profile".
    virtual std::string source() const = 0;
    // The profile as the source names it.
    virtual bool readName(std::string &name) = 0;
    bool readScheme(Scheme &scheme);
    // Sets the scheme the way the source puts back best; false when the
    // source has no profile for it.
    virtual bool apply(Scheme scheme) = 0;
    // Sets exactly the named profile, as a journal recorded it.
    virtual bool restoreName(const std::string &name) = 0;
};

std::unique_ptr<PowerProfile> newDaemonProfile();
std::unique_ptr<PowerProfile> newPlatformProfile();

} // namespace machine_settings
