#include "com_apartment.h"

namespace platform_layer {

namespace {
constexpr int32_t kOk = 0;
constexpr int32_t kFalse = 1;
constexpr int32_t kNotInitialized = static_cast<int32_t>(0x800401F0u);
constexpr int32_t kChangedMode = static_cast<int32_t>(0x80010106u);
constexpr int32_t kTooLate = static_cast<int32_t>(0x80010119u);
constexpr uint32_t kApartmentThreaded = 0x2;
} // namespace

int32_t ComApartment::initialize(uint32_t coInit) {
    std::lock_guard<std::mutex> lock(mutex_);
    const bool multithreaded = (coInit & kApartmentThreaded) == 0;
    if (startups_ > 0 && multithreaded != multithreaded_) return kChangedMode;
    multithreaded_ = multithreaded;
    return startups_++ == 0 ? kOk : kFalse;
}

void ComApartment::uninitialize() {
    std::lock_guard<std::mutex> lock(mutex_);
    if (startups_ == 0) return;
    if (--startups_ == 0) securitySet_ = false;
}

int32_t ComApartment::initializeSecurity() {
    std::lock_guard<std::mutex> lock(mutex_);
    if (startups_ == 0) return kNotInitialized;
    if (securitySet_) return kTooLate;
    securitySet_ = true;
    return kOk;
}

bool ComApartment::usable() {
    std::lock_guard<std::mutex> lock(mutex_);
    return startups_ > 0;
}

} // namespace platform_layer
