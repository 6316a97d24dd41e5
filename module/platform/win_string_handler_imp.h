#pragma once

#include "platform/string_handler_imp.h"

// The text service over the Windows C runtime.
class WinStringHandlerImp : public StringHandlerImp {
public:
    bool isNumeric(const char *text, size_t maxLength) override;
    void removeSpaces(const std::string &source, std::string &destination) override;
    void removeNonPrintable(const std::string &source, std::string &destination) override;
    const std::string &removeCharacters(const std::string &characters, const std::string &source,
                                        std::string &destination) override;
    void trim(std::string &text) override;
    bool isUpperCase(std::string text) override;
    void toUpperCase(std::string &text) override;
    void toLowerCase(std::string &text) override;
    bool startsWith(const std::string &text, const std::string &prefix) override;
    std::vector<std::string> split(const std::string &text, char delimiter) override;
    int compareN(const char *first, const char *second, size_t count) override;
    PRINTF_LIKE(4, 5)
    int formatBounded(char *buffer, size_t bufferSize, const char *format, ...) override;
    int copyN(char *buffer, size_t bufferSize, const char *source, size_t count) override;
    int copyWithOverlapCheck(char *buffer, size_t bufferSize, const char *source,
                             size_t maxLength) override;
    size_t lengthN(const char *text, size_t maxLength) override;
    int concatN(char *buffer, size_t bufferSize, const char *source, size_t count) override;
    int wideToMultibyte(size_t *converted, char *buffer, size_t bufferSize, const WCHAR *source,
                        size_t count) override;
    int multibyteToWide(size_t *converted, WCHAR *buffer, size_t bufferSize, const char *source,
                        size_t count) override;
    size_t wideLengthN(const WCHAR *text, size_t maxLength) override;
    int localTime(struct tm *result, const int64_t *time) override;
    PRINTF_LIKE(4, 5)
    int formatTruncating(char *buffer, size_t count, const char *format, ...) override;
    PRINTF_LIKE(3, 4) int printToStream(FILE *stream, const char *format, ...) override;
    std::string fromBytes(const void *bytes, size_t count) override;
    std::vector<std::string> tokenize(std::string text, std::string delimiters) override;
};
