#include "emulator/com_runtime.h"

#include "emulator/counters.h"

namespace emulator {

void ComRuntime::install(const Scenario &scenario) {
    preexisting_ = scenario.instrumentation.apartment;
    failingStep_ = scenario.instrumentation.failingStep;
    securityPreset_ = scenario.instrumentation.securityAlreadySet;
    securitySet_ = securityPreset_;
    startups_ = 0;
}

bool ComRuntime::fails(const char *step) const {
    return failingStep_ == step;
}

int32_t ComRuntime::initialize(uint32_t coInit, Counters &counters) {
    if (fails("CoInitializeEx")) return kFail;
    const bool multithreaded = (coInit & 0x2u) == 0;
    const std::string wanted = multithreaded ? "multithreaded" : "single-threaded";
    const std::string current = startups_ > 0 && preexisting_ == "none" ? wanted : preexisting_;
    if (current != "none" && current != wanted) return kChangedMode;
    ++startups_;
    ++counters.comStartups;
    return current == "none" ? kOk : kFalse;
}

void ComRuntime::uninitialize(Counters &counters) {
    if (startups_ == 0) {
        ++counters.comUnbalancedUninitializations;
        return;
    }
    --startups_;
    --counters.comStartups;
    // Security belongs to the process's COM; when the last start-up is
    // undone it may be set again.
    if (startups_ == 0 && preexisting_ == "none") securitySet_ = securityPreset_;
}

int32_t ComRuntime::initializeSecurity() {
    if (!usable()) return kNotInitialized;
    if (fails("CoInitializeSecurity")) return kAccessDenied;
    if (securitySet_) return kTooLate;
    securitySet_ = true;
    return kOk;
}

bool ComRuntime::usable() const {
    return startups_ > 0 || preexisting_ != "none";
}

} // namespace emulator
