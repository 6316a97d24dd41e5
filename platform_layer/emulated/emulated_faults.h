#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "emulator/notebook.h"
#include "platform_layer/protocol_faults.h"

namespace platform_layer {

// A battery of the emulated notebook by the name the layer knows it by: its
// position in the scenario. Nothing when there is no such battery (any
// more).
std::optional<size_t> emulatedBattery(const std::string &name);

// The scenario's faults, as the layer asks for them.
class EmulatedFaults : public ProtocolFaults {
public:
    void driverRequested(const std::string &battery) override;
    bool openFails(const std::string &battery) override;
    bool tagFails(const std::string &battery) override;
    bool statusFails(const std::string &battery) override;
    bool unterminatedTexts(const std::string &battery) override;
    std::optional<RawAnswer> rawAnswer(const std::string &battery, DriverRequest request,
                                       uint32_t level) override;

    bool comStepFails(const char *step) override;
    Apartment apartmentBefore() override;
    bool securitySetBefore() override;
    bool designVoltageAsInt32() override;
    std::map<std::string, RawVariant> rawProperties() override;

private:
    // The driver faults of the named battery; null when there is none.
    const emulator::DriverFaults *driver(const std::string &battery);
};

} // namespace platform_layer
