#pragma once
#define HOSTLIB_API __attribute__((visibility("default")))
