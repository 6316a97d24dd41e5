#pragma once
// The module's .def file names the exports.
#define BATTERY_MODULE_API
