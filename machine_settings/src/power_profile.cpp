#include "machine_settings/power_profile.h"

#include "machine_settings/sysfs_text.h"
#include "machine_settings/system_bus.h"

namespace machine_settings {

namespace {
constexpr const char *kPlatformProfile = "/sys/firmware/acpi/platform_profile";
} // namespace

Scheme schemeOf(const std::string &profile) {
    if (profile == "performance") return Scheme::HighPerformance;
    if (profile == "balanced") return Scheme::Balanced;
    if (profile == "power-saver" || profile == "low-power" || profile == "quiet" ||
        profile == "cool") {
        return Scheme::PowerSaver;
    }
    return Scheme::Custom;
}

bool PowerProfile::readScheme(Scheme &scheme) {
    std::string name;
    if (!readName(name)) return false;
    scheme = schemeOf(name);
    return true;
}

std::unique_ptr<PowerProfile> PowerProfile::find() {
    std::unique_ptr<PowerProfile> daemon = newDaemonProfile();
    std::string name;
    if (daemon->readName(name)) return daemon;
    if (sysfs_text::readLine(kPlatformProfile, name)) return newPlatformProfile();
    return nullptr;
}

} // namespace machine_settings
