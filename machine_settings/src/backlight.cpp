#include "machine_settings/backlight.h"

#include <dirent.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

#include "machine_settings/sysfs_text.h"
#include "machine_settings/system_bus.h"

namespace machine_settings {

namespace {
constexpr const char *kClass = "/sys/class/backlight/";
constexpr const char *kPreferred[] = {"firmware", "platform", "raw"};

std::vector<std::string> deviceNames() {
    std::vector<std::string> names;
    DIR *folder = opendir(kClass);
    if (folder == nullptr) return names;
    while (const dirent *entry = readdir(folder)) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..") names.push_back(name);
    }
    closedir(folder);
    std::sort(names.begin(), names.end());
    return names;
}

// A name from a command line or a journal stays inside the class folder.
bool isPlainName(const std::string &name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
}
} // namespace

std::optional<Backlight> Backlight::find() {
    const std::vector<std::string> names = deviceNames();
    for (const char *wanted : kPreferred) {
        for (const std::string &name : names) {
            std::string type;
            if (sysfs_text::readLine(kClass + name + "/type", type) && type == wanted) {
                return Backlight(name, type);
            }
        }
    }
    return std::nullopt;
}

std::optional<Backlight> Backlight::named(const std::string &name) {
    std::string type;
    if (!isPlainName(name) || !sysfs_text::readLine(kClass + name + "/type", type)) {
        return std::nullopt;
    }
    return Backlight(name, type);
}

std::string Backlight::file(const char *attribute) const {
    return kClass + name_ + "/" + attribute;
}

uint32_t Backlight::percentOf(uint32_t raw, uint32_t maximum) {
    if (maximum == 0) return 0;
    const uint64_t clamped = std::min(raw, maximum);
    return static_cast<uint32_t>((clamped * 200 + maximum) / (2 * uint64_t{maximum}));
}

uint32_t Backlight::rawOf(uint32_t percent, uint32_t maximum) {
    const uint64_t clamped = std::min(percent, 100u);
    return static_cast<uint32_t>((clamped * maximum * 2 + 100) / 200);
}

bool Backlight::readRaw(uint32_t &raw, uint32_t &maximum) const {
    return sysfs_text::readNumber(file("brightness"), raw) &&
           sysfs_text::readNumber(file("max_brightness"), maximum) && maximum > 0;
}

bool Backlight::readPercent(uint32_t &percent) const {
    uint32_t raw = 0;
    uint32_t maximum = 0;
    if (!readRaw(raw, maximum)) return false;
    percent = percentOf(raw, maximum);
    return true;
}

bool Backlight::writePercent(uint32_t percent) {
    uint32_t raw = 0;
    uint32_t maximum = 0;
    if (!readRaw(raw, maximum)) return false;
    if (!foundRaw_) foundRaw_ = raw;
    const bool backToFound = percentOf(*foundRaw_, maximum) == std::min(percent, 100u);
    return writeRaw(backToFound ? *foundRaw_ : rawOf(percent, maximum));
}

Backlight::Route Backlight::route() const {
    return access(file("brightness").c_str(), W_OK) == 0 ? Route::File : Route::Logind;
}

bool Backlight::writeRaw(uint32_t raw) {
    return writeRaw(raw, route());
}

bool Backlight::writeRaw(uint32_t raw, Route route) {
    if (route == Route::File) return sysfs_text::write(file("brightness"), std::to_string(raw));
    return SystemBus::instance().setBrightness("backlight", name_, raw);
}

} // namespace machine_settings
