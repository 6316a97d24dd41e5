#pragma once

#include <string>

#include <windows.h>

namespace win32 {

// Texts cross the layer a byte a unit: a unit beyond one byte becomes '?',
// so a narrow text widened and narrowed again comes back as it was.
inline std::string narrow(LPCWSTR text) {
    std::string out;
    for (; text != nullptr && *text != 0; ++text) {
        const auto unit = static_cast<uint16_t>(*text);
        out.push_back(unit <= 0xFF ? static_cast<char>(unit) : '?');
    }
    return out;
}

inline std::basic_string<WCHAR> widen(const std::string &text) {
    std::basic_string<WCHAR> out;
    for (const char byte : text)
        out.push_back(static_cast<WCHAR>(static_cast<unsigned char>(byte)));
    return out;
}

// A Win32 failure: the error for GetLastError and the given result.
template <typename Result> Result fail(DWORD error, Result result) {
    SetLastError(error);
    return result;
}

} // namespace win32
