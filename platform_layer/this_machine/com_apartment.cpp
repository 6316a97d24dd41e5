#include "com_apartment.h"

#include <objbase.h>

namespace platform_layer {

int32_t ComApartment::initialize(uint32_t coInit) {
    std::lock_guard<std::mutex> lock(mutex_);
    const bool multithreaded = (coInit & COINIT_APARTMENTTHREADED) == 0;
    if (startups_ > 0 && multithreaded != multithreaded_) return RPC_E_CHANGED_MODE;
    multithreaded_ = multithreaded;
    return startups_++ == 0 ? S_OK : S_FALSE;
}

void ComApartment::uninitialize() {
    std::lock_guard<std::mutex> lock(mutex_);
    if (startups_ == 0) return;
    if (--startups_ == 0) securitySet_ = false;
}

int32_t ComApartment::initializeSecurity() {
    std::lock_guard<std::mutex> lock(mutex_);
    if (startups_ == 0) return CO_E_NOTINITIALIZED;
    if (securitySet_) return RPC_E_TOO_LATE;
    securitySet_ = true;
    return S_OK;
}

bool ComApartment::usable() {
    std::lock_guard<std::mutex> lock(mutex_);
    return startups_ > 0;
}

} // namespace platform_layer
