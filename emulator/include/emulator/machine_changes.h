#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace emulator {

// One change the software made to the machine's settings, with the virtual
// time at which it happened.
struct MachineChange {
    uint64_t atMs;
    std::string setting; // "scheme", "brightness-ac", "brightness-dc"
    uint32_t value;      // scheme number (0 high performance .. 3 custom) or level
};

using MachineChanges = std::vector<MachineChange>;

} // namespace emulator
