#pragma once

#include <cstddef>
#include <cstdint>

#include "emulator/device_table.h"

namespace emulator {

class Notebook;

// The operating system's battery class driver for one battery device: tags,
// every information level, and the status, read live from the battery as
// the notebook has it now. Faults come from the battery's "driver" section.
class BatteryDriver : public Device {
public:
    static constexpr uint32_t kQueryTag = 0x294040;
    static constexpr uint32_t kQueryInformation = 0x294044;
    static constexpr uint32_t kQueryStatus = 0x29404C;

    BatteryDriver(Notebook &notebook, size_t battery) : notebook_(notebook), battery_(battery) {}

    uint32_t open() override;
    uint32_t control(uint32_t code, const void *input, uint32_t inputSize, void *output,
                     uint32_t outputSize, uint32_t *returned) override;

private:
    uint32_t information(uint32_t level, void *output, uint32_t outputSize, uint32_t *returned);
    uint32_t status(void *output, uint32_t outputSize, uint32_t *returned);
    bool present();

    Notebook &notebook_;
    size_t battery_;
    uint32_t requests_ = 0;
    bool vanished_ = false;
};

} // namespace emulator
