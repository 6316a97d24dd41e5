#include "machine_settings/system_bus.h"

#include <cstdlib>
#include <cstring>

#include <systemd/sd-bus.h>

namespace machine_settings {

namespace {
constexpr const char *kProfiles = "net.hadess.PowerProfiles";
constexpr const char *kProfilesPath = "/net/hadess/PowerProfiles";
constexpr const char *kLogin = "org.freedesktop.login1";
constexpr const char *kOwnSession = "/org/freedesktop/login1/session/auto";
// A daemon that does not answer costs seconds, not sd-bus's default 25 s for
// each of the run's calls: the machine must still be put back soon.
constexpr uint64_t kCallTimeoutUs = 2'000'000;

// An sd-bus error, freed on every way out.
struct BusError {
    sd_bus_error error = SD_BUS_ERROR_NULL;
    ~BusError() { sd_bus_error_free(&error); }
    std::string text(int code) const {
        if (error.message != nullptr) return error.message;
        return std::strerror(code < 0 ? -code : code);
    }
};

struct Reply {
    sd_bus_message *message = nullptr;
    ~Reply() { sd_bus_message_unref(message); }
};
} // namespace

SystemBus &SystemBus::instance() {
    static SystemBus bus;
    return bus;
}

SystemBus::~SystemBus() {
    sd_bus_flush_close_unref(bus_);
}

bool SystemBus::connected() {
    if (bus_ != nullptr) return true;
    const int code = sd_bus_open_system(&bus_);
    if (code < 0) {
        bus_ = nullptr;
        lastError_ = std::string("no system bus: ") + std::strerror(-code);
        return false;
    }
    sd_bus_set_method_call_timeout(bus_, kCallTimeoutUs);
    return true;
}

bool SystemBus::getString(const char *service, const char *path, const char *interface,
                          const char *property, std::string &value) {
    if (!connected()) return false;
    BusError error;
    char *text = nullptr;
    const int code =
        sd_bus_get_property_string(bus_, service, path, interface, property, &error.error, &text);
    if (code < 0) {
        lastError_ = error.text(code);
        return false;
    }
    value = text;
    std::free(text);
    return true;
}

bool SystemBus::setString(const char *service, const char *path, const char *interface,
                          const char *property, const std::string &value) {
    if (!connected()) return false;
    BusError error;
    const int code = sd_bus_set_property(bus_, service, path, interface, property, &error.error,
                                         "s", value.c_str());
    if (code < 0) lastError_ = error.text(code);
    return code >= 0;
}

bool SystemBus::holdProfile(const std::string &profile, const std::string &reason,
                            const std::string &application, uint32_t &cookie) {
    if (!connected()) return false;
    BusError error;
    Reply reply;
    int code = sd_bus_call_method(bus_, kProfiles, kProfilesPath, kProfiles, "HoldProfile",
                                  &error.error, &reply.message, "sss", profile.c_str(),
                                  reason.c_str(), application.c_str());
    if (code >= 0) code = sd_bus_message_read(reply.message, "u", &cookie);
    if (code < 0) lastError_ = error.text(code);
    return code >= 0;
}

bool SystemBus::releaseProfile(uint32_t cookie) {
    if (!connected()) return false;
    BusError error;
    const int code = sd_bus_call_method(bus_, kProfiles, kProfilesPath, kProfiles, "ReleaseProfile",
                                        &error.error, nullptr, "u", cookie);
    if (code < 0) lastError_ = error.text(code);
    return code >= 0;
}

bool SystemBus::setBrightness(const std::string &subsystem, const std::string &device,
                              uint32_t raw) {
    if (!connected()) return false;
    BusError error;
    const int code = sd_bus_call_method(bus_, kLogin, kOwnSession, "org.freedesktop.login1.Session",
                                        "SetBrightness", &error.error, nullptr, "ssu",
                                        subsystem.c_str(), device.c_str(), raw);
    if (code < 0) lastError_ = error.text(code);
    return code >= 0;
}

} // namespace machine_settings
