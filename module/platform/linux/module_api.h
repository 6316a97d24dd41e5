#pragma once
// Symbols the module library exports; everything else is hidden.
#define BATTERY_MODULE_API __attribute__((visibility("default")))
