#include "com_apartment.h"

namespace platform_layer {

void ComApartment::reset(Apartment before, bool securitySetBefore) {
    std::lock_guard<std::mutex> lock(mutex_);
    before_ = before;
    securityBefore_ = securitySetBefore;
    securitySet_ = securitySetBefore;
    startups_ = 0;
    multithreaded_ = true;
}

// An apartment the thread had before keeps its model; one started here
// keeps the model of its first start-up until the last is undone.
HRESULT ComApartment::initialize(DWORD coInit, ProtocolFaults &faults) {
    if (faults.comStepFails("CoInitializeEx")) return E_FAIL;
    std::lock_guard<std::mutex> lock(mutex_);
    const bool multithreaded = (coInit & COINIT_APARTMENTTHREADED) == 0;
    if (before_ != Apartment::None) {
        if ((before_ == Apartment::Multithreaded) != multithreaded) return RPC_E_CHANGED_MODE;
        ++startups_;
        return S_FALSE;
    }
    if (startups_ > 0 && multithreaded != multithreaded_) return RPC_E_CHANGED_MODE;
    multithreaded_ = multithreaded;
    return startups_++ == 0 ? S_OK : S_FALSE;
}

// Security belongs to the process's COM; when the last start-up of an
// apartment started here is undone, it may be set again.
bool ComApartment::uninitialize() {
    std::lock_guard<std::mutex> lock(mutex_);
    if (startups_ == 0) return false;
    if (--startups_ == 0 && before_ == Apartment::None) securitySet_ = securityBefore_;
    return true;
}

HRESULT ComApartment::initializeSecurity(ProtocolFaults &faults) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (startups_ == 0 && before_ == Apartment::None) return CO_E_NOTINITIALIZED;
    if (faults.comStepFails("CoInitializeSecurity")) return E_ACCESSDENIED;
    if (securitySet_) return RPC_E_TOO_LATE;
    securitySet_ = true;
    return S_OK;
}

bool ComApartment::usable() {
    std::lock_guard<std::mutex> lock(mutex_);
    return startups_ > 0 || before_ != Apartment::None;
}

} // namespace platform_layer
