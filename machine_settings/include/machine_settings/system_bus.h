#pragma once

#include <cstdint>
#include <string>

struct sd_bus;

namespace machine_settings {

// The connection to the system bus, one per process and kept open for the
// process's life: the power-profile daemon ties a profile hold to the
// connection that asked for it, and drops it when the connection goes.
// Calls fail with a one-line reason instead of throwing.
class SystemBus {
public:
    static SystemBus &instance();
    SystemBus(const SystemBus &) = delete;
    SystemBus &operator=(const SystemBus &) = delete;

    bool getString(const char *service, const char *path, const char *interface,
                   const char *property, std::string &value);
    bool setString(const char *service, const char *path, const char *interface,
                   const char *property, const std::string &value);
    // HoldProfile(profile, reason, application) -> cookie
    bool holdProfile(const std::string &profile, const std::string &reason,
                     const std::string &application, uint32_t &cookie);
    bool releaseProfile(uint32_t cookie);
    // logind's SetBrightness on the caller's own session.
    bool setBrightness(const std::string &subsystem, const std::string &device, uint32_t raw);

    // Why the last call failed.
    const std::string &lastError() const { return lastError_; }

private:
    SystemBus() = default;
    ~SystemBus();
    bool connected();

    sd_bus *bus_ = nullptr;
    std::string lastError_;
};

} // namespace machine_settings
