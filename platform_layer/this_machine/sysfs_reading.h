#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform_layer/this_machine.h"

namespace platform_layer {

// The attributes one request of the layer reads from the kernel's
// power-supply class. Each attribute file is read at most once per reading
// and not at all until asked for, so one request sees one consistent
// picture and a later request sees the machine as it is then.
class SysfsReading {
public:
    explicit SysfsReading(std::string classRoot = kPowerSupplyClass);

    // The supplies in name order, as the class folder lists them now.
    const std::vector<std::string> &supplies();
    // The text of one attribute without the newline the kernel ends it
    // with; nothing when the attribute does not exist or cannot be read.
    const std::optional<std::string> &text(const std::string &supply, const std::string &attribute);
    // A decimal attribute; nothing when it is absent or malformed.
    std::optional<int64_t> integer(const std::string &supply, const std::string &attribute);
    // Whether an attribute read so far exists but says nothing this layer
    // understands (not one whole number in range, an unknown word). What a
    // request answers from such a reading fails rather than guesses.
    bool sawMalformed() const { return malformed_; }
    void markMalformed() { malformed_ = true; }

private:
    std::string root_;
    std::optional<std::vector<std::string>> supplies_;
    std::map<std::string, std::optional<std::string>> texts_; // by "supply/attribute"
    bool malformed_ = false;
};

// Starts one request of the layer: a file read twice from here on counts as
// a repeated read.
void beginSysfsRequest();

// Strict decimal: an optional '-' and digits, nothing else.
std::optional<int64_t> parseDecimal(const std::string &text);

} // namespace platform_layer
