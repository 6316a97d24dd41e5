#pragma once

#include <objbase.h>

#include <cstdint>
#include <mutex>

#include "platform_layer/protocol_faults.h"

namespace platform_layer {

// COM on the module's thread, for either machine: what the thread had
// before the module came (nothing on this machine; a scenario's apartment
// on the emulated notebook), one threading model at a time, and process
// security set once per start-up. A failing step is the machine's fault.
class ComApartment {
public:
    using Apartment = ProtocolFaults::Apartment;

    // Starts over with what the thread has before the module starts COM.
    void reset(Apartment before, bool securitySetBefore);

    HRESULT initialize(DWORD coInit, ProtocolFaults &faults);
    // False when there was no start-up to balance.
    bool uninitialize();
    HRESULT initializeSecurity(ProtocolFaults &faults);
    // Whether the thread can use COM objects at all.
    bool usable();

private:
    std::mutex mutex_;
    Apartment before_ = Apartment::None;
    bool securityBefore_ = false;
    int64_t startups_ = 0;
    bool multithreaded_ = true;
    bool securitySet_ = false;
};

} // namespace platform_layer
