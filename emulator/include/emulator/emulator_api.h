#pragma once
// The emulated notebook is one shared library per process, so that the
// module, the host library stand-ins and the host all see one machine.
#define EMULATOR_API __attribute__((visibility("default")))
