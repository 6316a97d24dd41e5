#include "generic_battery/text_conversion.h"

namespace text_conversion {

int wideToNarrow(size_t *converted, char *buffer, size_t bufferSize, const WCHAR *source,
                 size_t count) {
    if (converted != nullptr) *converted = 0;
    if (buffer == nullptr || bufferSize == 0) return kInvalidArgument;
    buffer[0] = '\0';
    if (source == nullptr) return kInvalidArgument;

    size_t length = 0;
    while (length < count && source[length] != 0) {
        const auto unit = static_cast<uint16_t>(source[length]);
        if (unit > 0xFF) {
            buffer[0] = '\0';
            return kIllegalSequence;
        }
        // The terminator needs a place too, so the text must stay below the size.
        if (length + 1 >= bufferSize) {
            buffer[0] = '\0';
            return kOutOfRange;
        }
        buffer[length] = static_cast<char>(unit);
        ++length;
    }
    buffer[length] = '\0';
    if (converted != nullptr) *converted = length + 1;
    return kConverted;
}

int narrowToWide(size_t *converted, WCHAR *buffer, size_t bufferSize, const char *source,
                 size_t count) {
    if (converted != nullptr) *converted = 0;
    if (buffer == nullptr || bufferSize == 0) return kInvalidArgument;
    buffer[0] = 0;
    if (source == nullptr) return kInvalidArgument;

    size_t length = 0;
    while (length < count && source[length] != '\0') {
        if (length + 1 >= bufferSize) {
            buffer[0] = 0;
            return kOutOfRange;
        }
        buffer[length] = static_cast<WCHAR>(static_cast<unsigned char>(source[length]));
        ++length;
    }
    buffer[length] = 0;
    if (converted != nullptr) *converted = length + 1;
    return kConverted;
}

std::basic_string<WCHAR> widen(const std::string &text) {
    std::basic_string<WCHAR> wide;
    wide.reserve(text.size());
    for (const char byte : text) {
        if (byte == '\0') break;
        wide.push_back(static_cast<WCHAR>(static_cast<unsigned char>(byte)));
    }
    return wide;
}

size_t boundedLength(const char *text, size_t limit) {
    size_t length = 0;
    while (length < limit && text[length] != '\0') ++length;
    return length;
}

} // namespace text_conversion
