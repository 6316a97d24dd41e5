#include "platform/string_handler.h"

#include "platform/win_string_handler_imp.h"

StringHandler *StringHandler::instance() {
    // An object in static storage rather than an allocation: it has no
    // state, and unloading the library must leave nothing behind.
    static WinStringHandlerImp handler;
    return &handler;
}

StringHandler::~StringHandler() = default;

std::string StringHandler::truncateAtNul(const std::string &text) {
    return text.substr(0, text.find('\0'));
}

char *StringHandler::sanitizeField(char *buffer, size_t bufferSize, const char *field,
                                   size_t fieldLength) {
    if (buffer == nullptr || bufferSize == 0) return buffer;
    if (field == nullptr) fieldLength = 0;

    size_t start = 0;
    while (start < fieldLength && field[start] == ' ') ++start;
    size_t end = start;
    while (end < fieldLength && field[end] != '\0') ++end;
    while (end > start && field[end - 1] == ' ') --end;

    for (size_t i = 0; i < bufferSize; ++i) buffer[i] = '\0';
    size_t length = end - start;
    if (length >= bufferSize) length = bufferSize - 1;
    for (size_t i = 0; i < length; ++i) {
        const unsigned char byte = static_cast<unsigned char>(field[start + i]);
        buffer[i] = byte >= 32 && byte <= 126 ? static_cast<char>(byte) : '?';
    }
    buffer[length] = '\0';
    return buffer;
}
