#include <sstream>
#include <vector>

#include "machine_settings/power_profile.h"
#include "machine_settings/sysfs_text.h"

namespace machine_settings {

namespace {
constexpr const char *kProfile = "/sys/firmware/acpi/platform_profile";
constexpr const char *kChoices = "/sys/firmware/acpi/platform_profile_choices";

// The firmware's names for each scheme, the most fitting first.
std::vector<std::string> namesFor(Scheme scheme) {
    switch (scheme) {
    case Scheme::HighPerformance:
        return {"performance"};
    case Scheme::Balanced:
        return {"balanced"};
    case Scheme::PowerSaver:
        return {"low-power", "quiet", "cool"};
    default:
        return {};
    }
}

std::vector<std::string> choices() {
    std::string line;
    std::vector<std::string> names;
    if (!sysfs_text::readLine(kChoices, line)) return names;
    std::istringstream words(line);
    for (std::string word; words >> word;) names.push_back(word);
    return names;
}

bool offered(const std::vector<std::string> &offers, const std::string &name) {
    for (const std::string &offer : offers) {
        if (offer == name) return true;
    }
    return false;
}

// The firmware's profile file, written directly (root, or the file's group).
class PlatformProfile : public PowerProfile {
public:
    std::string source() const override { return "platform_profile"; }

    bool readName(std::string &name) override { return sysfs_text::readLine(kProfile, name); }

    bool apply(Scheme scheme) override {
        const std::vector<std::string> offers = choices();
        for (const std::string &name : namesFor(scheme)) {
            if (offered(offers, name)) return sysfs_text::write(kProfile, name);
        }
        return false;
    }

    bool restoreName(const std::string &name) override {
        return offered(choices(), name) && sysfs_text::write(kProfile, name);
    }
};
} // namespace

std::unique_ptr<PowerProfile> newPlatformProfile() {
    return std::make_unique<PlatformProfile>();
}

} // namespace machine_settings
