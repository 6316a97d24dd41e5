#pragma once

#include <cstdint>
#include <vector>

#include "emulator/emulator_api.h"

namespace emulator {

// One byte through an I/O port, as the machine saw it.
struct PortAccess {
    bool write = false;
    uint16_t port = 0;
    uint8_t value = 0; // written, or read (unchanged when the read failed)
    uint32_t status = 0;

    bool operator==(const PortAccess &other) const {
        return write == other.write && port == other.port && value == other.value &&
               status == other.status;
    }
};

// The port accesses since a test asked for them. Recording is off until
// started, so long runs do not pile up memory.
class EMULATOR_API PortTrace {
public:
    void start() {
        accesses_.clear();
        recording_ = true;
    }
    void stop() { recording_ = false; }
    void reset() {
        accesses_.clear();
        recording_ = false;
    }
    void record(const PortAccess &access) {
        if (recording_) accesses_.push_back(access);
    }
    const std::vector<PortAccess> &accesses() const { return accesses_; }

private:
    bool recording_ = false;
    std::vector<PortAccess> accesses_;
};

} // namespace emulator
