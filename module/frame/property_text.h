#pragma once

#include <cstdint>
#include <sstream>
#include <string>

#include "frame/keys.h"

// Texts of property values as the host shows them, for every kind of battery.
namespace property_text {

inline std::string orNotAvailable(const std::string &text) {
    return text.empty() ? std::string(keys::NOT_AVAILABLE) : text;
}

// General format, six significant digits and no trailing zeros, as a
// default text stream writes a number.
template <typename Number> std::string printed(Number number) {
    std::ostringstream text;
    text << number;
    return text.str();
}

// One capacity as energy and as charge: "54.1 Wh (4745 mAh)".
inline std::string capacityText(double wattHours, int64_t milliampHours) {
    return printed(wattHours) + " " + keys::UNIT_WH + " (" + std::to_string(milliampHours) + " " +
           keys::UNIT_MAH + ")";
}

} // namespace property_text
