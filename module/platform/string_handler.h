#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <string>
#include <vector>

#include "printf_like.h"

// The module's text service. Everything that touches the platform's text
// functions stands behind this one shared instance. Text is a byte string:
// a byte is a character, and "blank" is the byte 0x20 alone. Wide text is
// the platform's 16-bit WCHAR. The operations that carry a C runtime
// function's name in their contract report as that function does.
class StringHandler {
public:
    // The one WinStringHandlerImp, made at the first call and never destroyed.
    static StringHandler *instance();

    virtual ~StringHandler();

    virtual bool isNumeric(const char *text, size_t maxLength) = 0;
    virtual void removeSpaces(const std::string &source, std::string &destination) = 0;
    virtual void removeNonPrintable(const std::string &source, std::string &destination) = 0;
    virtual const std::string &removeCharacters(const std::string &characters,
                                                const std::string &source,
                                                std::string &destination) = 0;
    virtual void trim(std::string &text) = 0;
    virtual bool isUpperCase(std::string text) = 0;
    virtual void toUpperCase(std::string &text) = 0;
    virtual void toLowerCase(std::string &text) = 0;
    virtual bool startsWith(const std::string &text, const std::string &prefix) = 0;
    virtual std::vector<std::string> split(const std::string &text, char delimiter) = 0;
    virtual int compareN(const char *first, const char *second, size_t count) = 0;
    // sprintf_s: the number of characters, -1 on any failure.
    virtual int formatBounded(char *buffer, size_t bufferSize, const char *format, ...)
        PRINTF_LIKE(4, 5) = 0;
    virtual int copyN(char *buffer, size_t bufferSize, const char *source, size_t count) = 0;
    // 0, or -1 for a null argument, a source that does not fit, or a source
    // that shares bytes with the buffer.
    virtual int copyWithOverlapCheck(char *buffer, size_t bufferSize, const char *source,
                                     size_t maxLength) = 0;
    virtual size_t lengthN(const char *text, size_t maxLength) = 0;
    virtual int concatN(char *buffer, size_t bufferSize, const char *source, size_t count) = 0;
    // wcstombs_s: 0 on success; on failure the buffer is left empty.
    virtual int wideToMultibyte(size_t *converted, char *buffer, size_t bufferSize,
                                const WCHAR *source, size_t count) = 0;
    virtual int multibyteToWide(size_t *converted, WCHAR *buffer, size_t bufferSize,
                                const char *source, size_t count) = 0;
    // 0 for a null pointer.
    virtual size_t wideLengthN(const WCHAR *text, size_t maxLength) = 0;
    virtual int localTime(struct tm *result, const int64_t *time) = 0;
    // _snprintf: -1 when the text does not fit, and no terminator when the
    // text exactly fills the buffer.
    virtual int formatTruncating(char *buffer, size_t count, const char *format, ...)
        PRINTF_LIKE(4, 5) = 0;
    virtual int printToStream(FILE *stream, const char *format, ...) PRINTF_LIKE(3, 4) = 0;
    // Exactly count bytes, NUL bytes included.
    virtual std::string fromBytes(const void *bytes, size_t count) = 0;
    // Pieces between runs of delimiters; never an empty piece.
    virtual std::vector<std::string> tokenize(std::string text, std::string delimiters) = 0;
    virtual std::string truncateAtNul(const std::string &text);
    // A fixed-width field as clean text: blanks trimmed at both ends, cut at
    // the first NUL and at the buffer's size, unprintable bytes as "?".
    virtual char *sanitizeField(char *buffer, size_t bufferSize, const char *field,
                                size_t fieldLength);
};
