#include "text_escape.h"

#include <cstdint>
#include <cstdio>

namespace text_escape {

namespace {

constexpr const char *kReplacement = "\xEF\xBF\xBD"; // U+FFFD

// The length of the valid UTF-8 sequence at `at`, 0 when none starts there:
// no overlong forms, no surrogates, nothing above U+10FFFF.
size_t sequenceAt(std::string_view bytes, size_t at) {
    const auto byte = [&](size_t i) { return static_cast<uint8_t>(bytes[at + i]); };
    const uint8_t lead = byte(0);
    if (lead < 0x80) return 1;
    size_t length = 0;
    uint8_t low = 0x80, high = 0xBF; // the second byte's range
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        if (lead == 0xE0) low = 0xA0;
        if (lead == 0xED) high = 0x9F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        if (lead == 0xF0) low = 0x90;
        if (lead == 0xF4) high = 0x8F;
    } else {
        return 0;
    }
    if (at + length > bytes.size() || byte(1) < low || byte(1) > high) return 0;
    for (size_t i = 2; i < length; ++i) {
        if (byte(i) < 0x80 || byte(i) > 0xBF) return 0;
    }
    return length;
}

bool isControl(std::string_view sequence) {
    if (sequence.size() == 1) {
        const auto c = static_cast<uint8_t>(sequence[0]);
        return (c < 0x20 && c != '\n' && c != '\t') || c == 0x7F;
    }
    // C1 controls, U+0080 to U+009F: some terminals act on them as on ESC [.
    return sequence.size() == 2 && static_cast<uint8_t>(sequence[0]) == 0xC2 &&
           static_cast<uint8_t>(sequence[1]) < 0xA0;
}

std::string escaped(std::string_view sequence) {
    std::string out;
    char hex[8];
    for (const char c : sequence) {
        std::snprintf(hex, sizeof hex, "\\x%02x", static_cast<unsigned>(static_cast<uint8_t>(c)));
        out += hex;
    }
    return out;
}

// Each valid sequence as it is (a control character escaped when asked),
// each byte that starts none as U+FFFD.
std::string shown(std::string_view bytes, bool escapeControls) {
    std::string out;
    out.reserve(bytes.size());
    for (size_t at = 0; at < bytes.size();) {
        const size_t length = sequenceAt(bytes, at);
        if (length == 0) {
            out += kReplacement;
            ++at;
            continue;
        }
        const std::string_view sequence = bytes.substr(at, length);
        if (escapeControls && isControl(sequence)) {
            out += escaped(sequence);
        } else {
            out.append(sequence);
        }
        at += length;
    }
    return out;
}

} // namespace

std::string validUtf8(std::string_view bytes) {
    return shown(bytes, false);
}

std::string forTerminal(std::string_view bytes) {
    return shown(bytes, true);
}

std::string json(const nlohmann::json &document, int indent) {
    return document.dump(indent, ' ', false, nlohmann::json::error_handler_t::replace);
}

} // namespace text_escape
