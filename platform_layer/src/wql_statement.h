#pragma once

#include <optional>
#include <string>
#include <vector>

namespace platform_layer {

// One WQL statement of the form the instrumentation client sends:
//   SELECT p1, p2 FROM Class [WHERE Property = 'text']
struct WqlStatement {
    std::vector<std::string> selected;
    std::string className;
    std::optional<std::pair<std::string, std::string>> filter; // property and text
};

// Nothing when the text is no such statement.
std::optional<WqlStatement> parseWql(const std::string &text);

} // namespace platform_layer
