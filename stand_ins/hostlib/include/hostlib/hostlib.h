#pragma once

#include "hostlib/device_scanner.h"
#include "hostlib/timer.h"

#include "hostlib_api.h"

// The host library's three exports.
extern "C" {
// A timer on the system tick count; not deleted by the caller.
HOSTLIB_API Timer *get_timer();
// A device scanner for the caller; give it back with release_device_scanner.
HOSTLIB_API DeviceScanner *get_device_scanner();
HOSTLIB_API void release_device_scanner(DeviceScanner *scanner);
}
