#pragma once

#include <windows.h>

#include <cstddef>
#include <string>

// Conversions between the module's narrow text and the platform's UTF-16,
// byte for unit as the C locale does it: units up to 0xFF are one byte each,
// anything above cannot be converted. The result codes are those of the C
// runtime's bounded conversions, so callers can treat them alike on every
// system without the runtime's invalid-parameter handler in the way.
namespace text_conversion {

inline constexpr int kConverted = 0;
inline constexpr int kInvalidArgument = 22; // EINVAL
inline constexpr int kOutOfRange = 34;      // ERANGE
inline constexpr int kIllegalSequence = 42; // EILSEQ

// The contract of wcstombs_s: converts up to `count` units or to the first
// NUL into `buffer` and terminates it. On any failure the buffer holds the
// empty text. `converted`, when given, counts the bytes written with the NUL.
int wideToNarrow(size_t *converted, char *buffer, size_t bufferSize, const WCHAR *source,
                 size_t count);

// The contract of mbstowcs_s, the other way round.
int narrowToWide(size_t *converted, WCHAR *buffer, size_t bufferSize, const char *source,
                 size_t count);

// A NUL-terminated UTF-16 copy of narrow text, for handing to the platform.
std::basic_string<WCHAR> widen(const std::string &text);

// The length of `text` up to its first NUL, looking at no more than `limit`.
size_t boundedLength(const char *text, size_t limit);

} // namespace text_conversion
