#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace machine_settings {

// The display's backlight as the kernel's backlight class shows it. Linux
// has one level where Windows keeps one on AC and one on battery; both are
// this one level. Every call reads or writes the files anew.
class Backlight {
public:
    // How a level is written: the file itself, or logind's SetBrightness on
    // the caller's session, which a desktop session may use without root.
    enum class Route { File, Logind };

    // The first device preferring type firmware, then platform, then raw (in
    // name order within a type); none when the machine has no backlight.
    static std::optional<Backlight> find();
    static std::optional<Backlight> named(const std::string &name);

    const std::string &name() const { return name_; }
    const std::string &type() const { return type_; }

    bool readRaw(uint32_t &raw, uint32_t &maximum) const;
    bool readPercent(uint32_t &percent) const;
    // The level read at the first write comes back exactly when that
    // percent is asked for again, though percent steps are coarser than
    // the device's.
    bool writePercent(uint32_t percent);
    bool writeRaw(uint32_t raw);
    bool writeRaw(uint32_t raw, Route route);
    Route route() const;

    static uint32_t percentOf(uint32_t raw, uint32_t maximum);
    static uint32_t rawOf(uint32_t percent, uint32_t maximum);

private:
    Backlight(std::string name, std::string type)
        : name_(std::move(name)), type_(std::move(type)) {}
    std::string file(const char *attribute) const;

    std::string name_;
    std::string type_;
    std::optional<uint32_t> foundRaw_;
};

} // namespace machine_settings
