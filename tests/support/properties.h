#pragma once

#include <string>
#include <vector>

#include "battery_module/system_component.h"

// Properties as one line, "KEY=value|KEY=value", so that a whole list is
// compared at once and a failure shows it whole.
inline std::string joined(const std::vector<ComponentProperty> &properties) {
    std::string line;
    for (const ComponentProperty &property : properties) {
        line += (line.empty() ? "" : "|") + property.key + "=" + property.value;
    }
    return line;
}
