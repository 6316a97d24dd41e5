#pragma once

#include "emulator/device_table.h"

namespace emulator {

class Notebook;

// The display device "\\.\LCD": answers the brightness requests.
class DisplayDevice : public Device {
public:
    static constexpr const char *kPath = "\\\\.\\LCD";
    static constexpr uint32_t kQueryBrightness = 0x230498;
    static constexpr uint32_t kSetBrightness = 0x23049C;

    explicit DisplayDevice(Notebook &notebook) : notebook_(notebook) {}
    uint32_t control(uint32_t code, const void *input, uint32_t inputSize, void *output,
                     uint32_t outputSize, uint32_t *returned) override;

private:
    Notebook &notebook_;
};

} // namespace emulator
