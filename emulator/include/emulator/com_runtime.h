#pragma once

#include <cstdint>
#include <string>

#include "emulator/emulator_api.h"
#include "emulator/scenario.h"

namespace emulator {

struct Counters;

// COM as the module's thread finds it: whether an apartment exists, whether
// process security is set, and which step the scenario makes fail. Results
// are HRESULT values.
class EMULATOR_API ComRuntime {
public:
    static constexpr int32_t kOk = 0;
    static constexpr int32_t kFalse = 1;
    static constexpr int32_t kFail = static_cast<int32_t>(0x80004005u);
    static constexpr int32_t kAccessDenied = static_cast<int32_t>(0x80070005u);
    static constexpr int32_t kNotInitialized = static_cast<int32_t>(0x800401F0u);
    static constexpr int32_t kChangedMode = static_cast<int32_t>(0x80010106u);
    static constexpr int32_t kTooLate = static_cast<int32_t>(0x80010119u);

    void install(const Scenario &scenario);

    int32_t initialize(uint32_t coInit, Counters &counters);
    void uninitialize(Counters &counters);
    int32_t initializeSecurity();
    // Whether the thread can use COM objects at all.
    bool usable() const;
    // True when the scenario makes `step` fail.
    bool fails(const char *step) const;

private:
    std::string preexisting_ = "none";
    std::string failingStep_ = "none";
    bool securitySet_ = false;
    bool securityPreset_ = false;
    int64_t startups_ = 0;
};

} // namespace emulator
