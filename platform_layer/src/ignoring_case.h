#pragma once

#include <cctype>
#include <string>

namespace platform_layer {

// Device paths, registry keys, namespaces and the names and strings of WQL
// compare without regard to case, as Windows compares them.
inline bool sameIgnoringCase(const std::string &a, const std::string &b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        if (std::tolower(static_cast<unsigned char>(a[i])) !=
            std::tolower(static_cast<unsigned char>(b[i]))) {
            return false;
        }
    }
    return true;
}

} // namespace platform_layer
