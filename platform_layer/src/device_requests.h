#pragma once

#include <cstdint>
#include <string>

#include "platform_layer/machine.h"

// The I/O control requests of the devices the layer opens, answered from
// what the machine says. Results are error codes, 0 success; `returned`
// is set on every path.
namespace platform_layer {

// The battery class driver: tag, information levels and status of the
// battery the machine calls `battery`.
uint32_t batteryRequest(Machine &machine, const std::string &battery, uint32_t code,
                        const void *input, uint32_t inputSize, void *output, uint32_t outputSize,
                        uint32_t *returned);

// The display "\\.\LCD": the brightness query and set.
uint32_t displayRequest(Machine &machine, uint32_t code, const void *input, uint32_t inputSize,
                        void *output, uint32_t outputSize, uint32_t *returned);

} // namespace platform_layer
