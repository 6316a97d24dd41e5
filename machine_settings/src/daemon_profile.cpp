#include "machine_settings/power_profile.h"
#include "machine_settings/system_bus.h"

namespace machine_settings {

namespace {
constexpr const char *kService = "net.hadess.PowerProfiles";
constexpr const char *kPath = "/net/hadess/PowerProfiles";
constexpr const char *kReason = "battery diagnostic running";
constexpr const char *kApplication = "battery_host";

const char *daemonName(Scheme scheme) {
    switch (scheme) {
    case Scheme::HighPerformance:
        return "performance";
    case Scheme::Balanced:
        return "balanced";
    case Scheme::PowerSaver:
        return "power-saver";
    default:
        return nullptr;
    }
}

// power-profiles-daemon. A scheme the module sets is held rather than set
// where the daemon allows it: the hold lasts only as long as this process's
// bus connection, so even a killed run cannot leave the profile forced, and
// the daemon's own choice (and the user's) comes back when it is released.
class DaemonProfile : public PowerProfile {
public:
    std::string source() const override { return "power-profiles-daemon"; }

    bool readName(std::string &name) override {
        return SystemBus::instance().getString(kService, kPath, kService, "ActiveProfile", name);
    }

    bool apply(Scheme scheme) override {
        const char *wanted = daemonName(scheme);
        if (wanted == nullptr) return false;
        // Putting back the profile found before the hold is letting go of it.
        if (holding_ && scheme == base_) return release();
        std::string current;
        if (!readName(current)) return false;
        if (!holding_ && current == wanted) return true;
        // The daemon holds performance and power-saver only.
        if (scheme == Scheme::Balanced) {
            if (holding_) release();
            return SystemBus::instance().setString(kService, kPath, kService, "ActiveProfile",
                                                   wanted);
        }
        uint32_t cookie = 0;
        if (!SystemBus::instance().holdProfile(wanted, kReason, kApplication, cookie)) {
            return false;
        }
        if (holding_) {
            SystemBus::instance().releaseProfile(cookie_);
        } else {
            base_ = schemeOf(current);
        }
        holding_ = true;
        cookie_ = cookie;
        return true;
    }

    bool restoreName(const std::string &name) override {
        // Only a profile the daemon offers, whatever a journal says.
        const Scheme scheme = schemeOf(name);
        if (scheme == Scheme::Custom || name != daemonName(scheme)) return false;
        if (holding_) release();
        std::string current;
        if (readName(current) && current == name) return true;
        return SystemBus::instance().setString(kService, kPath, kService, "ActiveProfile", name);
    }

private:
    bool release() {
        holding_ = false;
        return SystemBus::instance().releaseProfile(cookie_);
    }

    bool holding_ = false;
    uint32_t cookie_ = 0;
    Scheme base_ = Scheme::Balanced;
};
} // namespace

std::unique_ptr<PowerProfile> newDaemonProfile() {
    return std::make_unique<DaemonProfile>();
}

} // namespace machine_settings
