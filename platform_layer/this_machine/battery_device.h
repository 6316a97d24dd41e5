#pragma once

#include <cstdint>
#include <string>

#include "sysfs_reading.h"

// The battery class driver of this machine: one device per system battery,
// named after its supply, answering the tag, information and status
// requests from the supply's attributes as they are at the request.
namespace platform_layer::battery_device {

std::string pathOf(const std::string &supply);
// Windows error codes, as a battery class driver returns them.
uint32_t answer(SysfsReading &reading, const std::string &supply, uint32_t code, const void *input,
                uint32_t inputSize, void *output, uint32_t outputSize, uint32_t *returned);

} // namespace platform_layer::battery_device
