#pragma once
// Functions of the platform layer are exported from its shared library.
#define WIN32_API __attribute__((visibility("default")))
