#include "platform/win_string_handler_imp.h"

#include <bounded_crt.h>

#include <algorithm>
#include <cctype>
#include <cstdarg>
#include <cstring>
#include <cwchar>
#include <functional>

namespace {

constexpr char kBlank = ' ';

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

bool isPrintable(char byte) {
    const unsigned char value = static_cast<unsigned char>(byte);
    return value >= 32 && value <= 126;
}

// Whether [a, a + n) and [b, b + n) share a byte. std::less gives a total
// order on pointers that need not point into one array.
bool overlaps(const char *a, const char *b, size_t n) {
    if (n == 0) return false;
    const std::less<const char *> before;
    return before(a, b + n) && before(b, a + n);
}

// The bounded C runtime functions call the process's invalid-parameter
// handler on a constraint violation (a buffer too small, a null argument),
// and its default ends the process. That handler belongs to the host, and
// msvcrt.dll, which the mingw-w64 build links, has no per-thread one to put
// in its place; so every call below first checks what the runtime would
// reject, and answers as the runtime does once a handler returns: the same
// error code, the buffer left empty.

// Latest time that _localtime64_s accepts (its _MAX__TIME64_T).
constexpr int64_t kLatestLocalTime = 0x793406fffLL;

void clearText(char *buffer, size_t bufferSize) {
    if (buffer != nullptr && bufferSize > 0) buffer[0] = '\0';
}

// For wcstombs_s and mbstowcs_s, whose rules are the same; 0 lets the
// runtime do the conversion.
template <typename Unit, typename Length>
int conversionViolation(size_t *converted, Unit *buffer, size_t bufferSize, const void *source,
                        size_t count, Length sourceLength) {
    int violation = 0;
    if ((buffer == nullptr) != (bufferSize == 0) || source == nullptr) {
        violation = EINVAL;
    } else if (buffer != nullptr && count != _TRUNCATE && sourceLength(count) >= bufferSize) {
        violation = ERANGE;
    }
    if (violation == 0) return 0;
    if (converted != nullptr) *converted = 0;
    if (buffer != nullptr && bufferSize > 0) buffer[0] = 0;
    return violation;
}

void invalidTime(struct tm *result) {
    result->tm_sec = result->tm_min = result->tm_hour = -1;
    result->tm_mday = result->tm_mon = result->tm_year = -1;
    result->tm_wday = result->tm_yday = result->tm_isdst = -1;
}

} // namespace

bool WinStringHandlerImp::isNumeric(const char *text, size_t maxLength) {
    const size_t length = lengthN(text, maxLength);
    for (size_t i = 0; i < length; ++i) {
        if (!isDigit(text[i])) return false;
    }
    return true;
}

void WinStringHandlerImp::removeSpaces(const std::string &source, std::string &destination) {
    for (char byte : source) {
        if (byte != kBlank) destination.push_back(byte);
    }
}

void WinStringHandlerImp::removeNonPrintable(const std::string &source, std::string &destination) {
    for (char byte : source) {
        if (isPrintable(byte)) destination.push_back(byte);
    }
}

const std::string &WinStringHandlerImp::removeCharacters(const std::string &characters,
                                                         const std::string &source,
                                                         std::string &destination) {
    if (source.empty() || characters.empty()) return source;
    if (&destination != &source) destination = source;
    destination.erase(std::remove_if(destination.begin(), destination.end(),
                                     [&characters](char byte) {
                                         return characters.find(byte) != std::string::npos;
                                     }),
                      destination.end());
    return destination;
}

void WinStringHandlerImp::trim(std::string &text) {
    const size_t first = text.find_first_not_of(kBlank);
    if (first == std::string::npos) {
        text.clear();
        return;
    }
    const size_t last = text.find_last_not_of(kBlank);
    text = text.substr(first, last - first + 1);
}

bool WinStringHandlerImp::isUpperCase(std::string text) {
    if (text.empty()) return false;
    std::string upper = text;
    toUpperCase(upper);
    return upper == text;
}

void WinStringHandlerImp::toUpperCase(std::string &text) {
    for (char &byte : text) {
        byte = static_cast<char>(std::toupper(static_cast<unsigned char>(byte)));
    }
}

void WinStringHandlerImp::toLowerCase(std::string &text) {
    for (char &byte : text) {
        byte = static_cast<char>(std::tolower(static_cast<unsigned char>(byte)));
    }
}

bool WinStringHandlerImp::startsWith(const std::string &text, const std::string &prefix) {
    if (prefix.size() > text.size()) return false;
    return text.compare(0, prefix.size(), prefix) == 0;
}

std::vector<std::string> WinStringHandlerImp::split(const std::string &text, char delimiter) {
    // Read as a stream would be: a delimiter closes a piece, so a trailing
    // one opens no further piece.
    std::vector<std::string> pieces;
    size_t start = 0;
    while (start < text.size()) {
        const size_t end = text.find(delimiter, start);
        if (end == std::string::npos) {
            pieces.push_back(text.substr(start));
            break;
        }
        pieces.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return pieces;
}

int WinStringHandlerImp::compareN(const char *first, const char *second, size_t count) {
    return std::strncmp(first, second, count);
}

int WinStringHandlerImp::formatBounded(char *buffer, size_t bufferSize, const char *format, ...) {
    if (buffer == nullptr || bufferSize == 0 || format == nullptr) {
        clearText(buffer, bufferSize);
        return -1;
    }
    va_list arguments;
    va_start(arguments, format);
    va_list measure;
    va_copy(measure, arguments);
    const int needed = _vscprintf(format, measure);
    va_end(measure);
    int result = -1;
    if (needed < 0 || static_cast<size_t>(needed) >= bufferSize) {
        buffer[0] = '\0';
    } else {
        result = vsprintf_s(buffer, bufferSize, format, arguments);
    }
    va_end(arguments);
    return result < 0 ? -1 : result;
}

int WinStringHandlerImp::copyN(char *buffer, size_t bufferSize, const char *source, size_t count) {
    if (count == 0 && buffer == nullptr && bufferSize == 0) return 0;
    if (buffer == nullptr || bufferSize == 0) return EINVAL;
    if (count != 0 && source == nullptr) {
        buffer[0] = '\0';
        return EINVAL;
    }
    if (count != 0 && count != _TRUNCATE && lengthN(source, count) >= bufferSize) {
        buffer[0] = '\0';
        return ERANGE;
    }
    return strncpy_s(buffer, bufferSize, source, count);
}

int WinStringHandlerImp::copyWithOverlapCheck(char *buffer, size_t bufferSize, const char *source,
                                              size_t maxLength) {
    if (buffer == nullptr || source == nullptr || bufferSize == 0) return -1;
    buffer[0] = '\0';
    const size_t length = lengthN(source, maxLength);
    if (length >= bufferSize) return -1;
    if (overlaps(buffer, source, length)) return -1;
    std::memcpy(buffer, source, length);
    buffer[length] = '\0';
    return 0;
}

size_t WinStringHandlerImp::lengthN(const char *text, size_t maxLength) {
    // strnlen's contract, and nothing to read behind a null pointer.
    if (text == nullptr) return 0;
    return strnlen(text, maxLength);
}

int WinStringHandlerImp::concatN(char *buffer, size_t bufferSize, const char *source,
                                 size_t count) {
    if (count == 0 && buffer == nullptr && bufferSize == 0) return 0;
    if (buffer == nullptr || bufferSize == 0) return EINVAL;
    const size_t present = lengthN(buffer, bufferSize);
    if ((count != 0 && source == nullptr) || present == bufferSize) {
        buffer[0] = '\0';
        return EINVAL;
    }
    const size_t added = lengthN(source, count);
    if (present + added < bufferSize) {
        // Fits whole: asked by its length, since Wine's runtime reports an
        // exact fit under _TRUNCATE as cut short.
        return strncat_s(buffer, bufferSize, source, added);
    }
    if (count != _TRUNCATE) {
        buffer[0] = '\0';
        return ERANGE;
    }
    return strncat_s(buffer, bufferSize, source, count);
}

int WinStringHandlerImp::wideToMultibyte(size_t *converted, char *buffer, size_t bufferSize,
                                         const WCHAR *source, size_t count) {
    const int violation =
        conversionViolation(converted, buffer, bufferSize, source, count,
                            [this, source](size_t most) { return wideLengthN(source, most); });
    if (violation != 0) return violation;
    return wcstombs_s(converted, buffer, bufferSize, source, count);
}

int WinStringHandlerImp::multibyteToWide(size_t *converted, WCHAR *buffer, size_t bufferSize,
                                         const char *source, size_t count) {
    const int violation =
        conversionViolation(converted, buffer, bufferSize, source, count,
                            [this, source](size_t most) { return lengthN(source, most); });
    if (violation != 0) return violation;
    return mbstowcs_s(converted, buffer, bufferSize, source, count);
}

size_t WinStringHandlerImp::wideLengthN(const WCHAR *text, size_t maxLength) {
    if (text == nullptr) return 0;
    return wcsnlen(text, maxLength);
}

int WinStringHandlerImp::localTime(struct tm *result, const int64_t *time) {
    if (result == nullptr) return EINVAL;
    if (time == nullptr || *time < 0 || *time > kLatestLocalTime) {
        invalidTime(result);
        return EINVAL;
    }
    return _localtime64_s(result, time);
}

int WinStringHandlerImp::formatTruncating(char *buffer, size_t count, const char *format, ...) {
    if (format == nullptr || (buffer == nullptr && count > 0)) return -1;
    va_list arguments;
    va_start(arguments, format);
    const int result = _vsnprintf(buffer, count, format, arguments);
    va_end(arguments);
    return result;
}

int WinStringHandlerImp::printToStream(FILE *stream, const char *format, ...) {
    if (stream == nullptr || format == nullptr) return -1;
    va_list arguments;
    va_start(arguments, format);
    const int result = vfprintf_s(stream, format, arguments);
    va_end(arguments);
    return result;
}

std::string WinStringHandlerImp::fromBytes(const void *bytes, size_t count) {
    if (bytes == nullptr || count == 0) return std::string();
    return std::string(static_cast<const char *>(bytes), count);
}

std::vector<std::string> WinStringHandlerImp::tokenize(std::string text, std::string delimiters) {
    // strtok_s keeps its position in a local context rather than in
    // per-thread state, so the walk ends with this call either way.
    std::vector<char> buffer(text.c_str(), text.c_str() + std::strlen(text.c_str()) + 1);
    std::vector<std::string> pieces;
    char *context = nullptr;
    for (char *piece = strtok_s(buffer.data(), delimiters.c_str(), &context); piece != nullptr;
         piece = strtok_s(nullptr, delimiters.c_str(), &context)) {
        pieces.emplace_back(piece);
    }
    return pieces;
}
