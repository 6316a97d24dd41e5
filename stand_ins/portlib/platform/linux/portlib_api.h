#pragma once
#define PORTLIB_API __attribute__((visibility("default")))
