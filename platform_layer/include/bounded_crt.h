#pragma once

// The bounded ("secure") functions of the Microsoft C runtime that the
// module uses, with their Windows contracts, for a C library that lacks
// them. Where Windows calls the invalid-parameter handler (a constraint
// violation), these call it too: the thread's own handler if one is set,
// else the process's, else the default one, which ends the process as the
// Microsoft runtime's does. Once a handler returns, the function returns the
// error code as the runtime does.
// Narrow text is a byte string; the conversions map bytes 0x00..0xFF to the
// wide units of the same value and back, as the runtime's default "C"
// locale does.

#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <ctime>

#include "win32_api.h"

typedef int errno_t;

// Pass as a count to ask for truncation instead of failure.
#define _TRUNCATE ((size_t)-1)
// Returned when _TRUNCATE cut the text short.
#define STRUNCATE 80
// Latest time that _localtime64_s accepts: 3001-01-01 07:59:59 UTC, the
// end of the year 3000 in the westernmost zone that the runtime knows.
#define _MAX__TIME64_T 0x793406fffLL

// The handler's arguments (expression, function, file, line) are null in a
// release runtime, and so they are here.
typedef void (*_invalid_parameter_handler)(const wchar_t *expression, const wchar_t *function,
                                           const wchar_t *file, unsigned int line,
                                           uintptr_t reserved);

extern "C" {
WIN32_API _invalid_parameter_handler
_set_invalid_parameter_handler(_invalid_parameter_handler handler);
WIN32_API _invalid_parameter_handler _get_invalid_parameter_handler(void);
WIN32_API _invalid_parameter_handler
_set_thread_local_invalid_parameter_handler(_invalid_parameter_handler handler);
WIN32_API _invalid_parameter_handler _get_thread_local_invalid_parameter_handler(void);
WIN32_API int _vscprintf(const char *format, va_list arguments);
WIN32_API errno_t strncpy_s(char *destination, size_t destinationSize, const char *source,
                            size_t count);
WIN32_API errno_t strncat_s(char *destination, size_t destinationSize, const char *source,
                            size_t count);
WIN32_API char *strtok_s(char *text, const char *delimiters, char **context);
WIN32_API int vsprintf_s(char *buffer, size_t bufferSize, const char *format, va_list arguments);
WIN32_API int _vsnprintf(char *buffer, size_t count, const char *format, va_list arguments);
WIN32_API int vfprintf_s(FILE *stream, const char *format, va_list arguments);
WIN32_API errno_t _localtime64_s(struct tm *result, const int64_t *time);
}

// The wide text of the platform layer is 16-bit, unlike the C library's
// wchar_t, so these take the layer's own unit and are C++ overloads.
WIN32_API errno_t wcstombs_s(size_t *converted, char *destination, size_t destinationSize,
                             const char16_t *source, size_t count);
WIN32_API errno_t mbstowcs_s(size_t *converted, char16_t *destination, size_t destinationSize,
                             const char *source, size_t count);
WIN32_API size_t wcsnlen(const char16_t *text, size_t maxLength);
