#pragma once

#include <string>

// Chemistry codes and the keys the host shows for them, in one table for
// both kinds of battery.
namespace chemistry {

// Where a code comes from: a smart battery's own registers, or the four-byte
// field of the battery class driver, where a three-letter code is padded
// with a NUL or a blank.
enum class Source { SmartBattery, Driver };

// The key of a code the source uses; null for any other code.
const char *keyOf(const std::string &code, Source source);

} // namespace chemistry
