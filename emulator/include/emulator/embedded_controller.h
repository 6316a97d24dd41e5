#pragma once

#include <cstdint>

#include "emulator/scenario.h"

namespace emulator {

struct Counters;

// The embedded controller behind the index port 0x1610 and the data port
// 0x1611. Results are port statuses: 0 success, anything else failure.
class EmbeddedController {
public:
    static constexpr uint16_t kIndexPort = 0x1610;
    static constexpr uint16_t kDataPort = 0x1611;

    void install(const Scenario &scenario);
    uint32_t write(uint16_t port, uint8_t value);
    uint32_t read(uint16_t port, uint8_t *value);

private:
    bool present_ = false;
};

} // namespace emulator
