#pragma once

#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

// Texts from a machine or a file (battery names from sysfs bytes, a name the
// smart path cut mid-character, a power profile) are bytes until they are
// shown; each output makes of them what it can hold. None of these throws.
namespace text_escape {

// Valid UTF-8: each byte that starts no valid sequence becomes U+FFFD.
std::string validUtf8(std::string_view bytes);
// For a terminal: valid UTF-8, and control characters (an escape that would
// set the title or move the cursor) shown as \x1b-style escapes. Line breaks
// and tabs stay.
std::string forTerminal(std::string_view bytes);
// A JSON document as text; text that is not UTF-8 is replaced, not refused.
std::string json(const nlohmann::json &document, int indent = -1);

} // namespace text_escape
