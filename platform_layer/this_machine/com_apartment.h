#pragma once

#include <cstdint>
#include <mutex>

namespace platform_layer {

// COM as a process on this machine finds it: nothing started until the
// module starts it, one threading model at a time, and process security
// set once per start-up. Results are HRESULT values.
class ComApartment {
public:
    int32_t initialize(uint32_t coInit);
    void uninitialize();
    int32_t initializeSecurity();
    bool usable();

private:
    std::mutex mutex_;
    int64_t startups_ = 0;
    bool multithreaded_ = true;
    bool securitySet_ = false;
};

} // namespace platform_layer
