// The bounded C runtime functions of bounded_crt.h, after the Windows
// runtime's own algorithms so that edge cases (exact fits, _TRUNCATE, what is
// left in the destination on failure) come out the same.

#include "bounded_crt.h"

#include <atomic>
#include <climits>
#include <cstdlib>
#include <cstring>

namespace {

std::atomic<_invalid_parameter_handler> processHandler{nullptr};
thread_local _invalid_parameter_handler threadHandler = nullptr;

// A constraint violation goes to the thread's handler, else the process's;
// without either the process ends, as under the Microsoft runtime, so that
// a test on this system fails where a Windows host would die.
errno_t invalidParameter(errno_t code) {
    if (_invalid_parameter_handler handler = threadHandler) {
        handler(nullptr, nullptr, nullptr, 0, 0);
    } else if (_invalid_parameter_handler handler = processHandler.load()) {
        handler(nullptr, nullptr, nullptr, 0, 0);
    } else {
        std::fputs("invalid parameter passed to a C runtime function\n", stderr);
        std::abort();
    }
    errno = code;
    return code;
}

// A failing bounded function leaves the destination empty when it can.
void resetString(char *destination, size_t size) {
    if (destination != nullptr && size > 0) destination[0] = '\0';
}

void invalidTime(struct tm *result) {
    result->tm_sec = result->tm_min = result->tm_hour = -1;
    result->tm_mday = result->tm_mon = result->tm_year = -1;
    result->tm_wday = result->tm_yday = result->tm_isdst = -1;
}

// Converted text ends at a NUL, at the count, or where the space runs out.
template <typename To, typename From, typename Convert>
errno_t convert(size_t *converted, To *destination, size_t destinationSize, const From *source,
                size_t count, Convert unit) {
    if (converted != nullptr) *converted = 0;
    if (destination == nullptr && destinationSize > 0) return invalidParameter(EINVAL);
    if (destination != nullptr && destinationSize == 0) return invalidParameter(EINVAL);
    if (source == nullptr) {
        if (destination != nullptr) destination[0] = 0;
        return invalidParameter(EINVAL);
    }
    // Without a destination the answer is the size needed, terminator included.
    if (destination == nullptr) {
        size_t needed = 0;
        for (; source[needed] != 0; ++needed) {
            if (!unit(source[needed], nullptr)) return EILSEQ;
        }
        if (converted != nullptr) *converted = needed + 1;
        return 0;
    }
    const bool truncate = count == _TRUNCATE;
    size_t written = 0;
    for (; (truncate || written < count) && source[written] != 0; ++written) {
        if (written + 1 >= destinationSize) {
            if (!truncate) {
                destination[0] = 0;
                return invalidParameter(ERANGE);
            }
            destination[written] = 0;
            if (converted != nullptr) *converted = written + 1;
            return STRUNCATE;
        }
        if (!unit(source[written], &destination[written])) {
            destination[0] = 0;
            return EILSEQ;
        }
    }
    destination[written] = 0;
    if (converted != nullptr) *converted = written + 1;
    return 0;
}

bool narrowUnit(char16_t wide, char *out) {
    if (wide > 0xFF) return false;
    if (out != nullptr) *out = static_cast<char>(static_cast<unsigned char>(wide));
    return true;
}

bool wideUnit(char narrow, char16_t *out) {
    if (out != nullptr) *out = static_cast<char16_t>(static_cast<unsigned char>(narrow));
    return true;
}

// How a bounded copy ends: it fitted, it was cut as _TRUNCATE allows, or it
// did not fit and the destination is left empty.
errno_t endOfBoundedCopy(char *destination, size_t destinationSize, size_t available,
                         size_t count) {
    if (available == 0) {
        if (count == _TRUNCATE) {
            destination[destinationSize - 1] = '\0';
            return STRUNCATE;
        }
        destination[0] = '\0';
        return invalidParameter(ERANGE);
    }
    return 0;
}

} // namespace

extern "C" {

_invalid_parameter_handler _set_invalid_parameter_handler(_invalid_parameter_handler handler) {
    return processHandler.exchange(handler);
}

_invalid_parameter_handler _get_invalid_parameter_handler(void) {
    return processHandler.load();
}

_invalid_parameter_handler
_set_thread_local_invalid_parameter_handler(_invalid_parameter_handler handler) {
    const _invalid_parameter_handler previous = threadHandler;
    threadHandler = handler;
    return previous;
}

_invalid_parameter_handler _get_thread_local_invalid_parameter_handler(void) {
    return threadHandler;
}

int _vscprintf(const char *format, va_list arguments) {
    if (format == nullptr) {
        invalidParameter(EINVAL);
        return -1;
    }
    return std::vsnprintf(nullptr, 0, format, arguments);
}

errno_t strncpy_s(char *destination, size_t destinationSize, const char *source, size_t count) {
    if (count == 0 && destination == nullptr && destinationSize == 0) return 0;
    if (destination == nullptr || destinationSize == 0) return invalidParameter(EINVAL);
    if (count == 0) {
        destination[0] = '\0';
        return 0;
    }
    if (source == nullptr) {
        destination[0] = '\0';
        return invalidParameter(EINVAL);
    }
    char *p = destination;
    size_t available = destinationSize;
    if (count == _TRUNCATE) {
        while ((*p++ = *source++) != 0 && --available > 0) {
        }
    } else {
        while ((*p++ = *source++) != 0 && --available > 0 && --count > 0) {
        }
        if (count == 0) *p = '\0';
    }
    return endOfBoundedCopy(destination, destinationSize, available, count);
}

errno_t strncat_s(char *destination, size_t destinationSize, const char *source, size_t count) {
    if (count == 0 && destination == nullptr && destinationSize == 0) return 0;
    if (destination == nullptr || destinationSize == 0) return invalidParameter(EINVAL);
    if (count != 0 && source == nullptr) {
        destination[0] = '\0';
        return invalidParameter(EINVAL);
    }
    char *p = destination;
    size_t available = destinationSize;
    while (available > 0 && *p != 0) {
        ++p;
        --available;
    }
    if (available == 0) { // the destination was not terminated
        destination[0] = '\0';
        return invalidParameter(EINVAL);
    }
    if (count == _TRUNCATE) {
        while ((*p++ = *source++) != 0 && --available > 0) {
        }
    } else {
        while (count > 0 && (*p++ = *source++) != 0 && --available > 0) {
            --count;
        }
        if (count == 0) *p = '\0';
    }
    return endOfBoundedCopy(destination, destinationSize, available, count);
}

char *strtok_s(char *text, const char *delimiters, char **context) {
    if (delimiters == nullptr || context == nullptr || (text == nullptr && *context == nullptr)) {
        invalidParameter(EINVAL);
        return nullptr;
    }
    char *start = text != nullptr ? text : *context;
    start += std::strspn(start, delimiters);
    if (*start == '\0') {
        *context = start;
        return nullptr;
    }
    char *end = start + std::strcspn(start, delimiters);
    if (*end != '\0') *end++ = '\0';
    *context = end;
    return start;
}

int vsprintf_s(char *buffer, size_t bufferSize, const char *format, va_list arguments) {
    if (format == nullptr || buffer == nullptr || bufferSize == 0) {
        resetString(buffer, bufferSize);
        invalidParameter(EINVAL);
        return -1;
    }
    const size_t limit = bufferSize > INT_MAX ? static_cast<size_t>(INT_MAX) : bufferSize;
    const int length = std::vsnprintf(buffer, limit, format, arguments);
    if (length < 0) {
        buffer[0] = '\0';
        errno = EILSEQ;
        return -1;
    }
    if (static_cast<size_t>(length) >= limit) {
        buffer[0] = '\0';
        invalidParameter(ERANGE);
        return -1;
    }
    return length;
}

int _vsnprintf(char *buffer, size_t count, const char *format, va_list arguments) {
    if (format == nullptr || (buffer == nullptr && count > 0)) {
        invalidParameter(EINVAL);
        return -1;
    }
    va_list measure;
    va_copy(measure, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measure);
    va_end(measure);
    if (length < 0) return -1;
    if (buffer == nullptr) return length; // count 0: the length it needs
    const size_t needed = static_cast<size_t>(length);
    if (needed < count) {
        std::vsnprintf(buffer, count, format, arguments);
        return length;
    }
    // The text fills the buffer or more: as many characters as fit, no
    // terminator.
    char *whole = static_cast<char *>(std::malloc(needed + 1));
    if (whole == nullptr) {
        errno = ENOMEM;
        return -1;
    }
    std::vsnprintf(whole, needed + 1, format, arguments);
    std::memcpy(buffer, whole, count);
    std::free(whole);
    return needed == count ? length : -1;
}

int vfprintf_s(FILE *stream, const char *format, va_list arguments) {
    if (stream == nullptr || format == nullptr) {
        invalidParameter(EINVAL);
        return -1;
    }
    return std::vfprintf(stream, format, arguments);
}

errno_t _localtime64_s(struct tm *result, const int64_t *time) {
    if (result == nullptr) return invalidParameter(EINVAL);
    if (time == nullptr) {
        invalidTime(result);
        return invalidParameter(EINVAL);
    }
    // A time out of range is an ordinary failure, not a violation.
    if (*time < 0 || *time > _MAX__TIME64_T) {
        invalidTime(result);
        return EINVAL;
    }
    const time_t value = static_cast<time_t>(*time);
    if (localtime_r(&value, result) == nullptr) {
        invalidTime(result);
        return EINVAL;
    }
    return 0;
}
}

errno_t wcstombs_s(size_t *converted, char *destination, size_t destinationSize,
                   const char16_t *source, size_t count) {
    return convert(converted, destination, destinationSize, source, count, narrowUnit);
}

errno_t mbstowcs_s(size_t *converted, char16_t *destination, size_t destinationSize,
                   const char *source, size_t count) {
    return convert(converted, destination, destinationSize, source, count, wideUnit);
}

size_t wcsnlen(const char16_t *text, size_t maxLength) {
    size_t length = 0;
    while (length < maxLength && text[length] != 0) ++length;
    return length;
}
