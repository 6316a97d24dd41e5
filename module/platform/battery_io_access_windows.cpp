#include "platform/battery_io_access_windows.h"

#include "hostlib/hostlib.h"
#include "portlib/port_gate.h"
#include "smart_battery/controller_register_map.h"

namespace {

constexpr double kReadyTimeoutSeconds = 0.5;
constexpr uint32_t kPollPauseMs = 10;

} // namespace

BatteryIOAccessWindows::BatteryIOAccessWindows() : gate(&portlib::PortGate::Instance()) {}

bool BatteryIOAccessWindows::writeRegister(uint8_t reg, uint8_t value) {
    if (gate->outbyte(ec::kIndexPort, reg).status() != 0) return false;
    return gate->outbyte(ec::kDataPort, value).status() == 0;
}

bool BatteryIOAccessWindows::readRegister(uint8_t reg, uint8_t *value) {
    if (gate->outbyte(ec::kIndexPort, reg).status() != 0) return false;
    return gate->inbyte(ec::kDataPort, value).status() == 0;
}

// The first poll comes at once, so an idle controller costs one poll and no
// pause. Port statuses inside the loop are not looked at: a failed read
// leaves the byte as it was and the loop runs on until the time is up. The
// byte starts out busy so that no failed read can pass for an idle answer.
bool BatteryIOAccessWindows::waitReady() {
    uint8_t status = 0xFF;
    gate->inbyte(ec::kDataPort, &status);
    const uint32_t start = get_timer()->now();
    double elapsed = get_timer()->elapsedSeconds(start, get_timer()->now());
    while (elapsed < kReadyTimeoutSeconds) {
        gate->outbyte(ec::kIndexPort, ec::kCommandRegister);
        gate->inbyte(ec::kDataPort, &status);
        if (status == ec::kIdle) return true;
        get_timer()->sleep(kPollPauseMs);
        elapsed = get_timer()->elapsedSeconds(start, get_timer()->now());
    }
    return false;
}
